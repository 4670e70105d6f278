// The view against the stand-in for its runtime, which delivers what it owes when the test says so.
#include "ui/site/visao_site.h"

#include <optional>

#include "tests/suporte/janelas.h"
#include "ui/site/runtime_site.h"
#include "ui/site/script_site.h"

// Stands for the keys of machine and user, which a test has no business in.
const std::wstring kRegistro = L"Software\\zu-teste-" + std::to_wstring(GetCurrentProcessId());

// In the place of the import, for this program.
extern "C" {
decltype(&RegOpenKeyExW) __imp_RegOpenKeyExW = [](HKEY raiz, LPCWSTR nome, DWORD, REGSAM acesso, PHKEY chave) {
    const wchar_t* const lugar = raiz == HKEY_CURRENT_USER                                       ? L"\\usuario\\"
                                 : raiz == HKEY_LOCAL_MACHINE && (acesso & KEY_WOW64_32KEY) != 0 ? L"\\maquina\\"
                                                                                                 : L"\\outro\\";
    return RegOpenKeyW(HKEY_CURRENT_USER, (kRegistro + lugar + nome).c_str(), chave);
};
}

namespace zu::launcher {
namespace {

using namespace teste;

using Linhas = std::vector<std::string>;
const std::string kLinhaDeSucesso =
    Formatar("WebView2 {} ({})", kVersaoFalsa, ParaUtf8((kAplicativoFalso / kVersaoFalsa).native()));

class VisaoDoSite : public testing::Test {
 protected:
    static void SetUpTestSuite() { SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32); }  // as the launcher does
    VisaoDoSite() {
        Configurar(pasta_.Caminho(), "");
        SetEnvironmentVariableW(L"ProgramFiles(x86)", (kPastaBin / "runtime_falso").c_str());
        SetEnvironmentVariableW(L"LOCALAPPDATA", L"C:\\Dados");
    }
    ~VisaoDoSite() override { RegDeleteTreeW(HKEY_CURRENT_USER, kRegistro.c_str()); }

    // A view of its own with nothing noted yet, and so many completions delivered.
    void Nova(const RoteiroDoRuntime& roteiro = {}, int entregas = 3,
              const std::wstring& endereco = L"http://site.example/") {
        visao_.reset();
        falso_.Comecar(roteiro);
        terminando_ = false;
        repinturas_ = 0;
        std::filesystem::remove(pasta_ / "ZuLauncher.log");
        visao_.emplace(AmbienteSite{.endereco = endereco,
                                    .seletor = "#a'b\\c",
                                    .terminando = [this] { return terminando_; },
                                    .repintarCentro = [this] { ++repinturas_; },
                                    .abrir = [this](const std::wstring& e) { abertos_ += ParaUtf8(e) + "\n"; }});
        visao_->WebCreate(GetDesktopWindow());
        falso_.Entregar(entregas);
    }
    // The centre has been drawn again for the view's end, and for its coming where it came.
    void EsperarFalha(const std::string& linha, std::size_t antes = 1, int repinturas = 1) {
        EXPECT_TRUE(visao_->site_failed() && visao_->Assentou() && !visao_->Presente()) << linha;
        EXPECT_EQ(repinturas_, repinturas) << linha;
        Linhas linhas(antes, kLinhaDeSucesso);
        linhas.push_back("WebView2: " + linha);
        EXPECT_EQ(LinhasDoLog(pasta_), linhas);
        EsperarNadaVivo(linha);
    }
    void EsperarNadaVivo(const std::string& quando) {
        EXPECT_EQ(falso_.Faltas(), 0) << quando << "\n" << falso_.Chamadas();
    }

    PastaTemporaria pasta_{L"Jogo é"};
    NavegadorFalso& falso_ = RuntimeFalso();
    bool terminando_ = false;
    int repinturas_ = 0;
    std::string abertos_;
    std::optional<VisaoSite> visao_;
};

TEST_F(VisaoDoSite, DoRegistroDaMaquinaAoDoUsuarioAPasta) {
    const std::wstring versao = DeUtf8(kVersaoFalsa);
    const struct {
        const wchar_t* maquina;
        std::wstring pvMaquina;
        bool lugarMaquina;
        std::wstring pvUsuario;
    } casos[] = {
        {L"maquina", versao, true, L"1.2.3.4"},
        {L"maquina", L"0.0.0.0", true, versao},
        {L"maquina", L"", true, versao},
        {L"maquina", L"1.2.3.4", false, versao},
        {L"outro", L"1.2.3.4", true, versao},        // the 64-bit view, where the runtime's installer does not write
        {L"maquina", L"0.0.0.0", true, L"0.0.0.0"},  // the folder has it
    };
    const auto gravar = [](const std::wstring& lugar, const wchar_t* nome, const std::wstring& valor) {
        const std::wstring chave =
            kRegistro + L"\\" + lugar +
            L"\\SOFTWARE\\Microsoft\\EdgeUpdate\\Clients\\{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}";
        RegSetKeyValueW(HKEY_CURRENT_USER, chave.c_str(), nome, REG_SZ, valor.c_str(),
                        static_cast<DWORD>((valor.size() + 1) * sizeof(wchar_t)));
    };
    for (const auto& [maquina, pvMaquina, lugarMaquina, pvUsuario] : casos) {
        RegDeleteTreeW(HKEY_CURRENT_USER, kRegistro.c_str());
        gravar(maquina, L"pv", pvMaquina);
        if (lugarMaquina) gravar(maquina, L"location", kAplicativoFalso.native());
        gravar(L"usuario", L"pv", pvUsuario);
        gravar(L"usuario", L"location", kAplicativoFalso.native());
        Nova();
        EXPECT_EQ(LinhasDoLog(pasta_), Linhas{kLinhaDeSucesso}) << ParaUtf8(pvMaquina);
    }
}

TEST_F(VisaoDoSite, SemRuntimeOuComUmQueNaoCarrega) {
    SetEnvironmentVariableW(L"ProgramFiles(x86)", pasta_.Caminho().c_str());
    const auto dll = [](const std::string& versao) {
        return "Microsoft/EdgeWebView/Application/" + versao + "/EBWebView/x64/EmbeddedBrowserWebView.dll";
    };
    const auto esperarQueNaoCarregue = [&](const char* versao, DWORD erro) {
        Nova();
        EsperarFalha(
            Formatar("não foi possível carregar {} (erro {})", ParaUtf8((pasta_ / dll(versao)).native()), erro), 0);
    };
    Nova();
    EsperarFalha("runtime não instalado; o centro mostra a logo", 0);
    for (const char* versao : {"9.0.0.1", "10.0.0.9", "10.0.0.10", "11.0.0", "11.0.0.0.1", "11.0.0.x"})
        pasta_.Escrever(dll(versao), "não é uma DLL");
    std::filesystem::create_directories((pasta_ / dll("12.0.0.0")).parent_path());
    esperarQueNaoCarregue("10.0.0.10", ERROR_BAD_EXE_FORMAT);
    // A DLL of another kind.
    std::filesystem::create_directories((pasta_ / dll("10.0.1.0")).parent_path());
    std::filesystem::copy_file(std::filesystem::path(VariavelDeAmbiente(L"SystemRoot")) / "system32" / "version.dll",
                               pasta_ / dll("10.0.1.0"));
    esperarQueNaoCarregue("10.0.1.0", ERROR_PROC_NOT_FOUND);
    Nova({}, 0, L"");
    EXPECT_TRUE(visao_->Assentou() && !visao_->site_failed() && !pasta_.Tem("ZuLauncher.log"));
}

TEST_F(VisaoDoSite, NaOrdemEInvisivelAteAPrimeiraPagina) {
    const std::string ordem =
        "entrada C:\\Dados\\ZuLauncher\nambiente\nCreateCoreWebView2Controller\ncontrolador\nget_CoreWebView2\n"
        "put_Bounds 9,49,445,382,\nget_Settings\nput_AreDevToolsEnabled 0\nput_AreDefaultContextMenusEnabled 0\n"
        "put_IsStatusBarEnabled 0\nput_IsZoomControlEnabled 0\nput_IsVisible 0\n"
        "AddScriptToExecuteOnDocumentCreated " +
        ScriptRecorte("#a'b\\c") +
        "\nadd_NavigationCompleted\nadd_NavigationStarting\nadd_NewWindowRequested\nadd_ProcessFailed\n"
        "script\nNavigate http://site.example/\nNotifyParentWindowPositionChanged\n";
    Nova();
    // What the window does meanwhile does not show it early.
    visao_->DefinirVisivel(true);
    visao_->JanelaMoveu();
    visao_->DefinirVisivel(false);
    EXPECT_EQ(falso_.Chamadas(), ordem);
    EXPECT_TRUE(visao_->Presente() && !visao_->Assentou());
    falso_.Ocorrer(Ocorrencia::kNavigationCompleted);
    EXPECT_TRUE(visao_->site_shown() && visao_->Assentou());
    visao_->DefinirVisivel(true);
    falso_.Ocorrer(Ocorrencia::kNavigationCompleted);
    visao_->Liberar();
    visao_->DefinirVisivel(false);
    visao_->JanelaMoveu();
    EXPECT_EQ(falso_.Chamadas(), ordem + "put_IsVisible 0\nput_IsVisible 1\nput_IsVisible 1\nClose\n");
    EsperarNadaVivo("no fim");
    EXPECT_FALSE(visao_->site_failed());
}

TEST_F(VisaoDoSite, FalhaEmCadaEtapa) {
    const std::tuple<const char*, HRESULT, const char*> casos[] = {
        {"entrada", E_ACCESSDENIED, "o ambiente não abriu (0x80070005)"},
        {"ambiente", E_FAIL, "o ambiente não abriu (0x80004005)"},
        {"ambiente", S_OK, "o ambiente não abriu (0x00000000)"},
        {"CreateCoreWebView2Controller", E_INVALIDARG, "o controle não abriu (0x80070057)"},
        {"controlador", E_ABORT, "o controle não abriu (0x80004004)"},
        {"controlador", S_OK, "o controle não abriu (0x00000000)"},
        {"get_CoreWebView2", E_FAIL, "o site não abriu (0x80004005)"},
        {"put_Bounds", E_FAIL, "o site não abriu (0x80004005)"},
        {"get_Settings", E_FAIL, "o site não abriu (0x80004005)"},
        {"AddScriptToExecuteOnDocumentCreated", E_FAIL, "o site não abriu (0x80004005)"},
        {"add_NewWindowRequested", E_FAIL, "o site não abriu (0x80004005)"},
        {"script", E_OUTOFMEMORY, "o site não abriu (0x8007000E)"},
        {"Navigate", E_INVALIDARG, "o site não abriu (0x80070057)"}};
    for (const auto& [etapa, falha, linha] : casos) {
        Nova({.falharEm = etapa, .falha = falha});
        const bool jaPresente = std::string_view(etapa) == "script" || std::string_view(etapa) == "Navigate";
        EsperarFalha(linha, 1, jaPresente ? 2 : 1);
        // The answer to a window that is on its way out is no failure.
        if (std::string_view(etapa) != "ambiente" && std::string_view(etapa) != "controlador") continue;
        Nova({.falharEm = etapa, .falha = falha}, 0);
        terminando_ = true;
        falso_.Entregar();
        EXPECT_FALSE(visao_->site_failed()) << etapa;
        EXPECT_EQ(LinhasDoLog(pasta_), Linhas{kLinhaDeSucesso}) << etapa;
        EsperarNadaVivo(etapa);
    }
    // A view that cannot tell of its end is still a view.
    Nova({.falharEm = "add_ProcessFailed"});
    EXPECT_TRUE(visao_->Presente());
    // The browser's or the page's own process; the end of any other hurts only a part of the view.
    for (std::int32_t tipo = 0; tipo <= 2; ++tipo) {
        Nova();
        falso_.Ocorrer(Ocorrencia::kProcessFailed, {.tipo = tipo});
        EXPECT_EQ(visao_->Presente(), tipo > 1) << tipo;
        if (tipo > 1) continue;
        EsperarFalha(Formatar("o processo do site terminou (tipo {})", tipo), 1, 2);
    }
}

// Nothing is left, nothing dead is called and nothing is said, whatever the launcher was waiting for.
TEST_F(VisaoDoSite, FecharOLauncherEmCadaEtapa) {
    constexpr int kComVisao = 2;
    for (int feitas = 0; feitas <= 3; ++feitas) {
        for (const bool liberada : {false, true}) {
            const std::string quando = Formatar("{} {}", liberada ? "liberada" : "terminando", feitas);
            Nova({}, feitas);
            if (!liberada) falso_.DestruirJanela();
            EXPECT_EQ(visao_->Presente(), feitas >= kComVisao) << quando;
            terminando_ = true;
            if (liberada) visao_->Liberar();
            falso_.Entregar();
            if (feitas < kComVisao || liberada) EsperarNadaVivo(quando);
            falso_.Ocorrer(Ocorrencia::kNavigationCompleted);
            visao_.reset();
            EsperarNadaVivo(quando);
            EXPECT_EQ(repinturas_, feitas >= kComVisao ? 1 : 0) << quando;
            EXPECT_EQ(LinhasDoLog(pasta_), Linhas{kLinhaDeSucesso}) << quando;
        }
    }
}

TEST_F(VisaoDoSite, OQueSaiParaONavegador) {
    const struct {
        EventoDoRuntime evento;
        bool cancela, daRede;
    } casos[] = {{{L"http://site.example/", true}, false, true},              // the launcher's own
                 {{L"http://site.example/inicio", true, true}, false, true},  // redirected
                 {{L"http://site.example/sozinha", false, false}, false, true},
                 {{L"https://loja.example/?a=1&b=\"2\"", true, false}, true, true},
                 {{L"\\\\servidor\\http://", true, false}, true, false},
                 {{L"httpx://site.example/", true, false}, true, false}};
    Nova();
    for (const auto& [evento, cancela, daRede] : casos) {
        const std::string uri = ParaUtf8(evento.uri);
        EXPECT_EQ(falso_.Ocorrer(Ocorrencia::kNavigationStarting, evento), cancela) << uri;
        EXPECT_EQ(std::exchange(abertos_, ""), cancela && daRede ? uri + "\n" : "");
        EXPECT_TRUE(falso_.Ocorrer(Ocorrencia::kNewWindow, evento)) << uri;
        EXPECT_EQ(std::exchange(abertos_, ""), daRede ? uri + "\n" : "");
    }
    visao_.reset();
    EsperarNadaVivo("no fim");
}

}  // namespace
}  // namespace zu::launcher
