#include "ui/visao_site.h"

#include <gtest/gtest.h>

#include <bit>
#include <optional>

#include "core/formato.h"
#include "tests/runtime_falso/controle.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "ui/runtime_site.h"
#include "ui/script_site.h"

namespace zu::launcher {
namespace {

using Roteiro = teste::RoteiroDoRuntime;

constexpr wchar_t kChave[] = L"SOFTWARE\\Microsoft\\EdgeUpdate\\Clients\\{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}";
constexpr char kVersaoFalsa[] = "120.0.2210.91";
const std::filesystem::path kProgramas = teste::kPastaBin / "runtime_falso";
const std::filesystem::path kAplicativo = kProgramas / "Microsoft" / "EdgeWebView" / "Application";

// The registry as an installation leaves it; gone with the test.
class Registro {
 public:
    Registro(HKEY raiz, REGSAM visao, const std::wstring& pv, const std::wstring& location)
        : raiz_(raiz), visao_(visao) {
        HKEY chave = nullptr;
        RegCreateKeyExW(raiz, kChave, 0, nullptr, 0, KEY_ALL_ACCESS | visao, nullptr, &chave, nullptr);
        Gravar(chave, L"pv", pv);
        if (!location.empty()) Gravar(chave, L"location", location);
        RegCloseKey(chave);
    }
    Registro(const Registro&) = delete;
    Registro& operator=(const Registro&) = delete;
    ~Registro() { RegDeleteKeyExW(raiz_, kChave, visao_, 0); }

 private:
    static void Gravar(HKEY chave, const wchar_t* nome, const std::wstring& valor) {
        RegSetValueExW(chave, nome, 0, REG_SZ, reinterpret_cast<const BYTE*>(valor.c_str()),
                       static_cast<DWORD>((valor.size() + 1) * sizeof(wchar_t)));
    }
    HKEY raiz_;
    REGSAM visao_;
};

class VisaoDoSite : public testing::Test {
 protected:
    static void SetUpTestSuite() { SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32); }  // as the launcher does
    VisaoDoSite() {
        // The registry is everybody's: one such test at a time, and nothing left of one that was killed.
        WaitForSingleObject(vez_.Valor(), 60'000);
        for (const REGSAM visao : {REGSAM{KEY_WOW64_32KEY}, REGSAM{KEY_WOW64_64KEY}})
            RegDeleteKeyExW(HKEY_LOCAL_MACHINE, kChave, visao, 0);
        RegDeleteKeyExW(HKEY_CURRENT_USER, kChave, 0, 0);
        teste::Configurar(pasta_.Caminho(), "");
        SetEnvironmentVariableW(L"ProgramFiles(x86)", kProgramas.c_str());
        SetEnvironmentVariableW(L"LOCALAPPDATA", L"C:\\Dados");
    }

    ~VisaoDoSite() override { ReleaseMutex(vez_.Valor()); }

    static teste::Controle& Falso() {
        static HMODULE const dll = LoadLibraryExW(
            (kAplicativo / kVersaoFalsa / "EBWebView" / "x64" / "EmbeddedBrowserWebView.dll").c_str(), nullptr, 0);
        static teste::Controle* const controle =
            std::bit_cast<teste::ObterControle>(GetProcAddress(dll, "ControleDoRuntime"))();
        return *controle;
    }

    // A view of its own with nothing noted yet.
    void Nova(const Roteiro& roteiro, const std::wstring& endereco = L"http://site.example/") {
        Falso().Comecar(roteiro);
        NovaSemRoteiro(endereco);
    }
    void NovaSemRoteiro(const std::wstring& endereco) {
        terminando_ = false;
        repinturas_ = 0;
        abertos_.clear();
        std::filesystem::remove(pasta_ / "ZuLauncher.log");
        visao_.emplace(AmbienteSite{.endereco = endereco,
                                    .seletor = "#a'b\\c",
                                    .terminando = [this] { return terminando_; },
                                    .repintarCentro = [this] { ++repinturas_; },
                                    .abrir = [this](const std::wstring& e) { abertos_ += ParaUtf8(e) + "\n"; }});
        visao_->WebCreate(GetDesktopWindow());
    }
    [[nodiscard]] std::string Log() const {
        if (!pasta_.Tem("ZuLauncher.log")) return {};
        std::string log;
        for (const std::string& linha : teste::LinhasDoLog(pasta_))
            log += linha + "\n";
        return log;
    }
    void EsperarFalha(const std::string& quando) {
        EXPECT_TRUE(visao_->site_failed() && visao_->Assentou() && !visao_->Presente()) << quando;
        EXPECT_EQ(repinturas_, 1) << quando;
    }
    void EsperarNadaVivo(const std::string& quando) {
        EXPECT_EQ(Falso().Vivos(), 0) << quando << "\n" << Falso().Chamadas();
        EXPECT_EQ(Falso().Faltas(), 0) << quando << "\n" << Falso().Chamadas();
    }

    HandleKernel vez_{CreateMutexW(nullptr, FALSE, L"Local\\zu-teste-registro-do-runtime")};
    teste::PastaTemporaria pasta_{L"Jogo é"};
    bool terminando_ = false;
    int repinturas_ = 0;
    std::string abertos_;
    std::optional<VisaoSite> visao_;
};

const std::string kLinhaDeSucesso =
    Formatar("WebView2 {} ({})\n", kVersaoFalsa, ParaUtf8((kAplicativo / kVersaoFalsa).native()));

TEST_F(VisaoDoSite, DoRegistroDaMaquinaAoDoUsuarioAPasta) {
    const std::wstring& aqui = kAplicativo.native();
    const std::wstring versao = DeUtf8(kVersaoFalsa);
    const std::wstring outra = (pasta_ / "outra").native();
    struct Caso {
        std::wstring pvMaquina, lugarMaquina, pvUsuario, lugarUsuario;
        REGSAM visao = KEY_WOW64_32KEY;
    };
    const Caso casos[] = {
        {versao, aqui, L"1.2.3.4", outra},
        {L"0.0.0.0", outra, versao, aqui},
        {L"", outra, versao, aqui},
        {L"1.2.3.4", L"", versao, aqui},
        {L"1.2.3.4", outra, versao, aqui, KEY_WOW64_64KEY},  // not where the runtime's installer writes
        {L"0.0.0.0", outra, L"0.0.0.0", outra},              // the folder has it
    };
    for (const Caso& caso : casos) {
        const Registro maquina(HKEY_LOCAL_MACHINE, caso.visao, caso.pvMaquina, caso.lugarMaquina);
        const Registro usuario(HKEY_CURRENT_USER, 0, caso.pvUsuario, caso.lugarUsuario);
        NovaSemRoteiro(L"http://site.example/");
        EXPECT_EQ(Log(), kLinhaDeSucesso) << &caso - casos;
        EXPECT_TRUE(visao_->Presente());
        visao_.reset();
    }
}

TEST_F(VisaoDoSite, SemRuntimeOuComUmQueNaoCarrega) {
    SetEnvironmentVariableW(L"ProgramFiles(x86)", pasta_.Caminho().c_str());
    const auto dll = [](const std::string& versao) {
        return "Microsoft/EdgeWebView/Application/" + versao + "/EBWebView/x64/EmbeddedBrowserWebView.dll";
    };
    NovaSemRoteiro(L"http://site.example/");
    EsperarFalha("sem nada");
    EXPECT_EQ(Log(), "WebView2: runtime não instalado; o centro mostra a logo\n");

    for (const char* versao : {"9.0.0.1", "10.0.0.9", "10.0.0.10", "SetupMetrics", "11.0.0", "11.0.0.0.1", "11.0.0.x"})
        pasta_.Escrever(dll(versao), "não é uma DLL");
    std::filesystem::create_directories((pasta_ / dll("12.0.0.0")).parent_path());
    NovaSemRoteiro(L"http://site.example/");
    EsperarFalha("não carrega");
    EXPECT_EQ(Log(), Formatar("WebView2: não foi possível carregar {} (erro {})\n",
                              ParaUtf8((pasta_ / dll("10.0.0.10")).native()), ERROR_BAD_EXE_FORMAT));

    // A DLL of another kind.
    std::filesystem::create_directories((pasta_ / dll("10.0.1.0")).parent_path());
    std::filesystem::copy_file(std::filesystem::path(VariavelDeAmbiente(L"SystemRoot")) / "system32" / "version.dll",
                               pasta_ / dll("10.0.1.0"));
    NovaSemRoteiro(L"http://site.example/");
    EsperarFalha("sem a entrada");
    EXPECT_EQ(Log(), Formatar("WebView2: não foi possível carregar {} (erro {})\n",
                              ParaUtf8((pasta_ / dll("10.0.1.0")).native()), ERROR_PROC_NOT_FOUND));

    NovaSemRoteiro(L"");
    EXPECT_TRUE(visao_->Assentou() && !visao_->site_failed() && !visao_->Presente());
    EXPECT_EQ(Log(), "");
}

TEST_F(VisaoDoSite, NaOrdemEInvisivelAteAPrimeiraPagina) {
    const std::string ordem =
        "entrada C:\\Dados\\ZuLauncher\nambiente\nCreateCoreWebView2Controller\ncontrolador\nget_CoreWebView2\n"
        "put_Bounds 9,49,445,382\nget_Settings\nput_AreDevToolsEnabled 0\nput_AreDefaultContextMenusEnabled 0\n"
        "put_IsStatusBarEnabled 0\nput_IsZoomControlEnabled 0\nput_IsVisible 0\n"
        "AddScriptToExecuteOnDocumentCreated " +
        ScriptRecorte("#a'b\\c") +
        "\nadd_NavigationCompleted\nadd_NavigationStarting\nadd_NewWindowRequested\nadd_ProcessFailed\n"
        "Navigate http://site.example/\n";
    for (const bool depois : {false, true}) {
        Nova({.depois = depois, .segundaChamada = depois});
        EXPECT_EQ(visao_->Presente(), !depois);
        while (Falso().Entregar()) {
        }
        EXPECT_TRUE(visao_->Presente());
        // What the window does meanwhile does not show it early.
        visao_->DefinirVisivel(false);
        visao_->DefinirVisivel(true);
        visao_->JanelaMoveu();
        EXPECT_EQ(Falso().Chamadas(), ordem + "NotifyParentWindowPositionChanged\n");
        EXPECT_FALSE(visao_->Assentou());

        Falso().NavigationStarting(L"http://site.example/", true, false);
        visao_->DefinirVisivel(false);
        Falso().NavigationCompleted();
        EXPECT_TRUE(visao_->site_shown() && visao_->Assentou());
        visao_->DefinirVisivel(true);
        Falso().NavigationCompleted();
        visao_->Liberar();
        EXPECT_EQ(Falso().Chamadas(), ordem + "NotifyParentWindowPositionChanged\nput_IsVisible 0\nput_IsVisible 1\n" +
                                          "put_IsVisible 1\nClose\n");
        visao_->DefinirVisivel(false);
        visao_->JanelaMoveu();
        EsperarNadaVivo(depois ? "depois" : "dentro");
        EXPECT_FALSE(visao_->site_failed());
        EXPECT_EQ(repinturas_, 0);
        EXPECT_EQ(Log(), kLinhaDeSucesso);
    }
}

TEST_F(VisaoDoSite, FalhaEmCadaEtapa) {
    struct Caso {
        const char* etapa;
        HRESULT falha;
        const char* linha;
    };
    const Caso casos[] = {
        {"entrada", E_ACCESSDENIED, "WebView2: o ambiente não abriu (0x80070005)"},
        {"ambiente", E_FAIL, "WebView2: o ambiente não abriu (0x80004005)"},
        {"ambiente", S_OK, "WebView2: o ambiente não abriu (0x00000000)"},
        {"CreateCoreWebView2Controller", E_INVALIDARG, "WebView2: o controle não abriu (0x80070057)"},
        {"controlador", E_ABORT, "WebView2: o controle não abriu (0x80004004)"},
        {"controlador", S_OK, "WebView2: o controle não abriu (0x00000000)"},
        {"get_CoreWebView2", E_FAIL, "WebView2: o site não abriu (0x80004005)"},
        {"put_Bounds", E_FAIL, "WebView2: o site não abriu (0x80004005)"},
        {"get_Settings", E_FAIL, "WebView2: o site não abriu (0x80004005)"},
        {"AddScriptToExecuteOnDocumentCreated", E_FAIL, "WebView2: o site não abriu (0x80004005)"},
        {"add_NewWindowRequested", E_FAIL, "WebView2: o site não abriu (0x80004005)"},
        {"Navigate", E_INVALIDARG, "WebView2: o site não abriu (0x80070057)"},
    };
    for (const Caso& caso : casos) {
        for (const bool depois : {false, true}) {
            const std::string quando = Formatar("{} {}", caso.etapa, depois ? "depois" : "dentro");
            Nova({.depois = depois, .falharEm = caso.etapa, .falha = caso.falha, .segundaChamada = depois});
            while (Falso().Entregar()) {
            }
            EsperarFalha(quando);
            EXPECT_EQ(Log(), kLinhaDeSucesso + caso.linha + "\n") << quando;
            EsperarNadaVivo(quando);
        }
    }
}

// Nothing is left, nothing dead is called and nothing is said, whatever the launcher was waiting for.
TEST_F(VisaoDoSite, FecharOLauncherEmCadaEtapa) {
    constexpr int kEntregas = 2;
    const auto entregar = [](int quantas) {
        for (; quantas > 0; --quantas)
            Falso().Entregar();
    };
    const char* const fins[] = {"terminando", "liberada", "destruída"};
    for (int feitas = 0; feitas <= kEntregas; ++feitas) {
        for (const std::string fim : fins) {
            const std::string quando = Formatar("{} depois de {}", fim, feitas);
            Nova({.depois = true, .segundaChamada = true});
            entregar(feitas);
            if (fim == "terminando") Falso().DestruirJanela();
            EXPECT_EQ(visao_->Presente(), feitas == kEntregas) << quando;
            terminando_ = true;
            if (fim == "liberada") visao_->Liberar();
            if (fim == "destruída") visao_.reset();
            entregar(kEntregas - feitas);
            if (feitas < kEntregas || fim != "terminando") {
                EXPECT_FALSE(visao_ && visao_->Presente()) << quando;
                EsperarNadaVivo(quando);
            }
            Falso().NavigationCompleted();
            visao_.reset();
            EsperarNadaVivo(quando);
            EXPECT_EQ(repinturas_, 0) << quando;
            EXPECT_EQ(Log(), kLinhaDeSucesso) << quando;
        }
    }
    // The answer to a window that is on its way out is no failure.
    for (const char* etapa : {"ambiente", "controlador"}) {
        Nova({.depois = true, .falharEm = etapa, .falha = E_ABORT});
        terminando_ = true;
        entregar(kEntregas);
        EXPECT_FALSE(visao_->site_failed()) << etapa;
        EXPECT_EQ(Log(), kLinhaDeSucesso) << etapa;
        EsperarNadaVivo(etapa);
    }
}

TEST_F(VisaoDoSite, OQueSaiParaONavegador) {
    struct Caso {
        const wchar_t* uri;
        bool doUsuario, redirecionada;
        bool cancela, abre;
    };
    const Caso casos[] = {
        {L"http://site.example/inicio", true, true, false, false},  // the first load, redirected
        {L"http://site.example/sozinha", false, false, false, false},
        {L"http://site.example/clique", true, false, true, true},
        {L"https://loja.example/?a=1&b=\"2\"", true, false, true, true},
        {L"mailto:equipe@site.example", true, false, true, false},
        {L"javascript:alert(1)", true, false, true, false},
        {L"file:///C:/Windows/system32/calc.exe", true, false, true, false},
        {L"ms-settings:windowsupdate", true, false, true, false},
        {L"\\\\servidor\\http://", true, false, true, false},
        {L"httpx://site.example/", true, false, true, false},
        {L"", true, false, true, false},
    };
    Nova({});
    EXPECT_FALSE(Falso().NavigationStarting(L"http://site.example/", true, false));
    for (const Caso& caso : casos) {
        const std::string uri = ParaUtf8(caso.uri);
        abertos_.clear();
        EXPECT_EQ(Falso().NavigationStarting(caso.uri, caso.doUsuario, caso.redirecionada), caso.cancela) << uri;
        EXPECT_EQ(abertos_, caso.abre ? uri + "\n" : "");
        abertos_.clear();
        EXPECT_TRUE(Falso().NewWindowRequested(caso.uri)) << uri;
        EXPECT_EQ(abertos_, uri.starts_with("http:") || uri.starts_with("https:") ? uri + "\n" : "");
    }
    visao_.reset();
    EsperarNadaVivo("no fim");
}

TEST_F(VisaoDoSite, OProcessoQueCaiLevaAVisao) {
    for (int tipo = 0; tipo <= 9; ++tipo) {
        const bool perdida = tipo <= 1;  // the browser's or the page's own process
        const std::string quando = Formatar("tipo {}", tipo);
        Nova({.depois = true, .segundaChamada = true});
        while (Falso().Entregar()) {
        }
        Falso().NavigationCompleted();
        Falso().ProcessFailed(tipo);
        EXPECT_EQ(visao_->Presente(), !perdida) << quando;
        if (perdida) {
            EsperarFalha(quando);
            EsperarNadaVivo(quando);
            EXPECT_EQ(Log(), Formatar("{}WebView2: o processo do site terminou (tipo {})\n", kLinhaDeSucesso, tipo));
        }
        visao_.reset();
        EsperarNadaVivo(quando);
    }
    Nova({.falharEm = "add_ProcessFailed"});
    EXPECT_TRUE(visao_->Presente() && !visao_->site_failed());
}

}  // namespace
}  // namespace zu::launcher
