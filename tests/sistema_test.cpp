// The real programs, as separate processes, against the scripted server.
#include <gmock/gmock.h>

#include <windows.h>

#include <set>

#include "core/arquivo.h"
#include "core/texto.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "update/jogo_aberto.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;
using namespace testing;

// The DLLs of the import table; delayed ones stand in another table.
std::set<std::string> Importadas(const BYTE* imagem, const IMAGE_NT_HEADERS64& cabeca) {
    const DWORD tabela = cabeca.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    std::set<std::string> nomes;
    for (const auto* dll = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(imagem + tabela); dll->Name != 0; ++dll)
        nomes.insert(MinusculasAscii(reinterpret_cast<const char*>(imagem + dll->Name)));
    return nomes;
}

// As the properties of the file show it.
std::string Versao(const std::filesystem::path& caminho, const std::wstring& campo) {
    std::vector<char> dados(GetFileVersionInfoSizeW(caminho.c_str(), nullptr));
    wchar_t* texto = nullptr;
    UINT tamanho = 0;
    GetFileVersionInfoW(caminho.c_str(), 0, static_cast<DWORD>(dados.size()), dados.data());
    const std::wstring lugar = L"\\StringFileInfo\\041604B0\\" + campo;
    return VerQueryValueW(dados.data(), lugar.c_str(), reinterpret_cast<void**>(&texto), &tamanho) ? ParaUtf8(texto)
                                                                                                   : "";
}

// What in the image names the machine that has built it: whole names, in narrow and in wide characters. "../src" of the
// compiler's library is none.
std::vector<std::string> NomesDaMaquina(std::string imagem) {
    std::ranges::replace(imagem, '\\', '/');
    std::string textos[]{imagem, "", ""};
    for (std::size_t i = 0; i < imagem.size(); ++i)
        textos[1 + i % 2] += imagem[i];
    std::vector<std::string> achados;
    for (const std::string& nome : std::vector<std::string>{ZU_DA_MAQUINA})
        for (const std::string& texto : textos)
            for (std::size_t i = 0; (i = texto.find(nome, i)) != std::string::npos; ++i)
                if (texto[i - 1] != '.' && !isalnum(texto[i - 1]) && !isalnum(texto[i + nome.size()]))
                    achados.push_back(texto.substr(i, 100).c_str());
    return achados;
}

[[gnu::noinline]] void EscreverZeros(std::size_t quantos) {
    char vetor[16];
    for (volatile char* p = vetor; quantos > 0; --quantos)
        *p++ = 0;
}

class Sistema : public Test {
 protected:
    Sistema() {
        for (const char* programa : {"ZuLauncher.exe", "UpdaterHelper.exe"})
            std::filesystem::copy_file(kPastaBin / programa, pasta_ / programa);
        pasta_.Escrever("Launcher.emu", Selado(servidor_.Url()));
        publicacao_.arquivos = {{"Data/Pasta/ç.bin", Bytes(40'000)}, {"Data/grande.pak", Bytes(3'000'000)}};
        publicacao_.partes["Data/grande.pak"] = 4;
        publicacao_.Servir(servidor_);
    }

    Programa Abrir(std::vector<std::wstring> mais = {}, const char* nome = "ZuLauncher.exe") {
        mais.insert(mais.begin(), L"--sem-interface");
        return {pasta_ / nome, mais};
    }
    // The exit code and what the run ended in.
    std::string Rodar(std::vector<std::wstring> mais = {}) {
        std::string fim = std::to_string(Abrir(std::move(mais)).Esperar());
        for (std::string_view linha : Log())
            if (linha.starts_with(kFim)) fim += linha.substr(kFim.size());
        return fim;
    }
    [[nodiscard]] std::vector<std::string> Log() const { return LinhasDoLog(pasta_); }
    // Until the launcher that the helper opens again has ended its run.
    void EsperarReaberto() {
        Esperar(60s, [this] {
            const std::string log = pasta_.Ler("ZuLauncher.log");
            return log.find("reaberto pelo UpdaterHelper\r") < log.find("ZuLauncher encerrado") + 1;
        });
        EXPECT_THAT(Log(), IsSupersetOf({"ZuLauncher 1.3.1 | cliente " + ParaUtf8(pasta_.Caminho().native()) +
                                             " | update " + servidor_.Url() + " | reaberto pelo UpdaterHelper",
                                         std::string("Sem interface: terminou em \"pronto\": Cliente em dia.")}));
    }
    // Not where the stand-in for the game runs, which is no match for them.
    void PlantarDlls() {
        for (const char* dll : {"winhttp.dll", "bcrypt.dll", "dnsapi.dll", "secur32.dll"})
            pasta_.Escrever(dll, "não é uma DLL");
    }
    // Every published file is as published, byte for byte.
    void EsperarPublicados() {
        for (const auto& [caminho, conteudo] : publicacao_.arquivos)
            EXPECT_TRUE(pasta_.Ler(caminho) == conteudo) << caminho;
    }

    static constexpr std::string_view kFim = "Sem interface: terminou em";
    PastaTemporaria pasta_{L"Jogo Zú"};
    Servidor servidor_;
    Publicacao publicacao_;
};

TEST_F(Sistema, CodigosDeSaidaELogESemDllPlantadaNaPasta) {
    PlantarDlls();
    EXPECT_EQ(Rodar({L"--conexoes=4"}), "0 \"pronto\": Atualização concluída: 2 arquivo(s) novo(s).");
    EsperarPublicados();
    EXPECT_EQ(Rodar({L"--manifesto=http://127.0.0.1:1/"}),
              "1 \"semservidor\": Sem conexão com o servidor de atualização (download: não conectou ao servidor).");
    pasta_.Escrever("Launcher.emu", "adulterado");
    EXPECT_EQ(Rodar(), "2");
    EXPECT_THAT(Log(), ElementsAre(StartsWith("Configuração recusada: Launcher.emu inválido: tamanho inválido (10 ")));
}

TEST_F(Sistema, LauncherSeAtualizaEArquivoEmUsoETrocado) {
    PlantarDlls();
    publicacao_.arquivos["Data/em uso.dat"] = "velho";
    publicacao_.Servir(servidor_);
    EXPECT_THAT(Rodar(), StartsWith("0 "));

    // A new launcher, which ends in the same way; and a file that another program lets go after a while.
    publicacao_.seq = 2;
    publicacao_.arquivos["ZuLauncher.exe"] = pasta_.Ler("ZuLauncher.exe") + "sobra que o Windows ignora";
    publicacao_.arquivos["Data/em uso.dat"] = "novo";
    publicacao_.Servir(servidor_);
    HandleArquivo preso = pasta_.Prender("Data/em uso.dat");
    // Under another name: nothing holds the launcher's own file, which is swapped all the same.
    std::filesystem::copy_file(pasta_ / "ZuLauncher.exe", pasta_ / "outro nome.exe");
    const std::wstring comBarra = L"--cliente=" + pasta_.Caminho().native() + L"\\";
    EXPECT_EQ(Abrir({comBarra, L"--conexoes=2"}, "outro nome.exe").Esperar(), 3);
    EXPECT_THAT(pasta_.Ler("ZuLauncher.log") + pasta_.Ler("ZuLauncher.anterior.log"),
                HasSubstr("UpdaterHelper iniciado para 2 troca(s) pendente(s)"));
    Esperar(1500ms, [&] { return pasta_.Tem("UpdaterHelper.log"); });
    preso.Fechar();
    EsperarReaberto();
    EsperarPublicados();
    EXPECT_FALSE(pasta_.Tem("Config/Launcher.pendente") || pasta_.Tem("ZuLauncher.exe.novo"));
}

TEST_F(Sistema, SemHelperOuDepoisDeDuasTrocasAcabaEmErro) {
    EXPECT_THAT(Rodar(), StartsWith("0 "));
    publicacao_.seq = 2;
    publicacao_.arquivos["Data/grande.pak"] = "pequeno agora";
    publicacao_.partes.clear();
    publicacao_.Servir(servidor_);
    const HandleArquivo preso = pasta_.Prender("Data/grande.pak");
    EXPECT_EQ(Rodar({L"--reaberto", L"--reaberto"}),
              "1 \"erro\": Não foi possível trocar alguns arquivos em uso. Feche outros programas abertos na pasta do "
              "jogo e clique em Tentar de novo.");
    std::filesystem::remove(pasta_ / "UpdaterHelper.exe");
    EXPECT_EQ(Rodar(), "1 \"erro\": UpdaterHelper.exe não encontrado: reinstale o launcher.");
    pasta_.Escrever("UpdaterHelper.exe", "não é um programa");
    EXPECT_THAT(Rodar(), StartsWith("1 \"erro\": não foi possível abrir o UpdaterHelper.exe (erro "));
}

TEST_F(Sistema, UmLauncherPorPastaEReabertoEspera) {
    // The list takes a while, so the first launcher is surely running still when the others have waited for it.
    const std::string lista = Assinar(update::EscreverLista(publicacao_.Lista()));
    servidor_.Definir("UpdateList.txt", [&](const Pedido&) {
        return Resposta{.corpo = lista, .atraso = servidor_.QuantosPedidos() > 1 ? 0s : 5s};
    });
    Programa primeiro = Abrir();
    Esperar(20s, [&] { return servidor_.QuantosPedidos() > 0; });
    const auto log = Log();
    EXPECT_EQ(Rodar({L"--cliente=" + pasta_.Caminho().native() + L"\\."}), "0");  // hands over, without a word
    EXPECT_EQ(Log(), log);
    EXPECT_EQ(servidor_.QuantosPedidos(), 1U);

    Programa reaberto = Abrir({L"--reaberto"});
    EXPECT_EQ(primeiro.Esperar(), 0);
    EXPECT_EQ(reaberto.Esperar(), 0);
    EsperarReaberto();
}

TEST_F(Sistema, DiagnosticoEJogarSemJogoESemFecharAoJogar) {
    EXPECT_THAT(Rodar({L"--jogar"}), StartsWith("0 "));
    std::filesystem::copy_file(kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe");
    pasta_.Escrever("Config/Zu.ini", "[Launcher]\r\nFecharAoJogar=0\r\n");
    // A run ends right after its probe has begun: a game that hangs in it must not be left behind as a running game.
    pasta_.Escrever("jogo_falso.txt", "relatorio=travar\n");
    for (int volta = 0; volta < 5; ++volta) {
        EXPECT_THAT(Rodar(), StartsWith("0 "));
        EXPECT_TRUE(Esperar(5s, [&] { return !JogoAberto(pasta_.Caminho()); }));
    }
    pasta_.Escrever("jogo_falso.txt", "relatorio=so_vulkan\nviver=200\n");
    EXPECT_THAT(Rodar({L"--jogar"}), StartsWith("0 "));
    EXPECT_THAT(Log(), Contains(StartsWith("Jogo aberto: Zu.exe --api=vulkan (pid ")));
    EXPECT_TRUE(Esperar(5s, [&] { return !JogoAberto(pasta_.Caminho()); }));
}

// What Windows sees of the shipped programs' files. They may be started in a folder that anybody can write to, so what
// is loaded for them before their first line runs must come from Windows' own list of known DLLs, which no folder can
// replace.
TEST(Importacoes, SoDllsQueOSistemaGuardaECabecaVersaoIconeEManifesto) {
    // From "KnownDLLs" of the session manager's registry key.
    const std::set<std::string> conhecidas{"advapi32.dll", "gdi32.dll",   "kernel32.dll", "msvcrt.dll",
                                           "ole32.dll",    "shell32.dll", "user32.dll"};
    const std::pair<const wchar_t*, WORD> programas[] = {{L"ZuLauncher.exe", IMAGE_SUBSYSTEM_WINDOWS_GUI},
                                                         {L"UpdaterHelper.exe", IMAGE_SUBSYSTEM_WINDOWS_GUI},
                                                         {L"Forjal.exe", IMAGE_SUBSYSTEM_WINDOWS_CUI}};
    std::string commit, bytes;
    ASSERT_TRUE(LerArquivoInteiro(kPastaBin / "../gerado/commit.rci", commit));
    for (const auto& [nome, subsistema] : programas) {
        const std::filesystem::path programa = kPastaBin / nome;
        SCOPED_TRACE(programa.string());
        HMODULE const modulo = LoadLibraryExW(programa.c_str(), nullptr, LOAD_LIBRARY_AS_IMAGE_RESOURCE);
        ASSERT_NE(modulo, nullptr);
        const BYTE* const imagem = reinterpret_cast<const BYTE*>(reinterpret_cast<ULONG_PTR>(modulo) & ~ULONG_PTR{3});
        const auto& cabeca = *reinterpret_cast<const IMAGE_NT_HEADERS64*>(
            imagem + reinterpret_cast<const IMAGE_DOS_HEADER*>(imagem)->e_lfanew);
        EXPECT_EQ(cabeca.OptionalHeader.Subsystem, subsistema);
        EXPECT_EQ(cabeca.OptionalHeader.MajorSubsystemVersion, 10);
        EXPECT_EQ(cabeca.OptionalHeader.MajorOperatingSystemVersion, 10);
        EXPECT_EQ(cabeca.OptionalHeader.DllCharacteristics,
                  IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA | IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE |
                      IMAGE_DLLCHARACTERISTICS_NX_COMPAT | IMAGE_DLLCHARACTERISTICS_TERMINAL_SERVER_AWARE);
        EXPECT_EQ(cabeca.FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED, 0);
        EXPECT_EQ(cabeca.FileHeader.TimeDateStamp, 0U);
        ASSERT_TRUE(LerArquivoInteiro(programa, bytes));
        EXPECT_THAT(NomesDaMaquina(bytes), IsEmpty());
        EXPECT_THAT(Importadas(imagem, cabeca), AllOf(Contains("kernel32.dll"), IsSubsetOf(conhecidas)));
        EXPECT_EQ(Versao(programa, L"FileVersion"), ZU_VERSAO);
        EXPECT_EQ("#define ZU_COMMIT \"" + Versao(programa, L"ProductVersion").substr(sizeof ZU_VERSAO) + "\"\n",
                  commit);
        EXPECT_NE(FindResourceW(modulo, MAKEINTRESOURCEW(1), RT_GROUP_ICON), nullptr);
        EXPECT_NE(FindResourceW(modulo, MAKEINTRESOURCEW(1), RT_MANIFEST), nullptr);
        FreeLibrary(modulo);
    }
}

// Zeros, so that a guard that nobody has set is found out too.
TEST(Importacoes, PilhaEstragadaAcabaComOPrograma) {
    const auto sair = [] {
        AddVectoredExceptionHandler(1, [](EXCEPTION_POINTERS*) -> LONG { ExitProcess(1); });
        EscreverZeros(64);
    };
    EXPECT_EXIT(sair(), ExitedWithCode(static_cast<int>(STATUS_STACK_BUFFER_OVERRUN)), "");
}

}  // namespace
}  // namespace zu::launcher
