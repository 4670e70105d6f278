// What no window shows of the front ends' one object. The shell's call is replaced, so that nothing opens.
#include "app/controlador.h"

#include <gtest/gtest.h>
#include <windows.h>
// after windows.h
#include <shellapi.h>

#include <optional>

#include "game/jogo.h"
#include "game/requisitos.h"
#include "game/veredito.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"
#include "tests/suporte/servidor.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;

std::wstring abertos;  // targets, a line each

HINSTANCE WINAPI Abrir(HWND, LPCWSTR verbo, LPCWSTR alvo, LPCWSTR parametros, LPCWSTR pasta, INT mostrar) {
    const bool simples = std::wstring(L"open") == verbo && parametros == nullptr && pasta == nullptr;
    abertos += (simples && mostrar == SW_SHOWNORMAL ? L"" : L"errado: ") + std::wstring(alvo) + L"\n";
    return nullptr;
}

// Fault: a launcher that was sealed without updates greets every player with a warning.
TEST(Controlador, SemServicoNadaADizerESemJogoNadaAAbrir) {
    const PastaTemporaria pasta;
    Configurar(pasta.Caminho(), "");
    ControladorLauncher controlador;
    controlador.Iniciar();
    EXPECT_TRUE(Esperar(10s, [&] { return !controlador.Atualizando(); }));
    EXPECT_EQ(controlador.TomarMensagemFinal(), "");
    for (int volta = 0; volta < 3; ++volta) {
        std::string erro;
        EXPECT_FALSE(controlador.PodeJogar() || AbrirJogo(erro));
        EXPECT_EQ(erro, "Zu.exe não encontrado na pasta do jogo. Feche e abra o launcher para baixar de novo.");
        if (volta == 0) std::filesystem::create_directory(pasta / "Zu.exe");
        if (volta == 1) Configurar(pasta / "falta", "");
    }
}

// Faults: after a failure nobody can play; what was to be said is said again, or not at all.
TEST(Controlador, DizUmaVezComoAcabouEDeixaJogarDepoisDeUmErro) {
    const PastaTemporaria pasta;
    Servidor servidor;
    servidor.Definir("UpdateList.txt", Resposta{.corpo = "sem assinatura"});
    Configurar(pasta.Caminho(), servidor.Url());
    std::filesystem::copy_file(kPastaBin / "jogo_falso.exe", pasta / "Zu.exe");
    for (const bool comJogoAberto : {false, true}) {
        std::optional<Programa> jogo;
        if (comJogoAberto) jogo.emplace(pasta / "Zu.exe");
        ControladorLauncher controlador;
        controlador.Iniciar();
        EXPECT_TRUE(Esperar(10s, [&] { return !controlador.Atualizando(); }));
        EXPECT_EQ(controlador.PodeJogar(), !comJogoAberto);
        EXPECT_EQ(controlador.TomarMensagemFinal(), controlador.Estado().texto);
        EXPECT_EQ(controlador.TomarMensagemFinal(), "");
    }
}

TEST(Controlador, ApiQueNaoRodaDaLugarAOutraSeAOutraRoda) {
    const std::tuple<const char*, bool, bool, bool, const char*> casos[] = {{"d3d12", true, false, true, "vulkan"},
                                                                            {"vulkan", true, true, false, "d3d12"},
                                                                            {"vulkan", true, true, true, "vulkan"},
                                                                            {"d3d12", true, false, false, "d3d12"},
                                                                            {"d3d12", false, false, true, "d3d12"}};
    for (const auto& [api, lido, d3d12, vulkan, fica] : casos)
        EXPECT_EQ(ApiQueRoda(api, {.relatorioLido = lido, .d3d12 = d3d12, .vulkan = vulkan}), fica) << api << vulkan;
}

TEST(Controlador, EnderecoSoDaWebEEmMinusculas) {
    abertos.clear();
    for (const char* endereco :
         {"http:/a", "HTTP://a", " https://a", "file:///C:/a", "C:\\a.exe", "http://á", "https://b?c=1 2"})
        AbrirEndereco(endereco);
    EXPECT_EQ(abertos, L"http://á\nhttps://b?c=1 2\n");
}

// The other targets: the windows' test.
TEST(Controlador, PalavraAbreOSeuAlvo) {
    const PastaTemporaria pasta(L"Jogo é");
    std::filesystem::copy_file(kPastaBin / "jogo_falso.exe", pasta / "Zu.exe");
    pasta.Escrever("jogo_falso.json", R"({"relatorio": "Item | a\n[X] DirectX 12 | b | c | d"})");
    DefinirConfig({.pastaJogo = pasta.Caminho(), .urlSite = "https://site/"});
    const std::tuple<const char*, const char*, std::wstring> casos[] = {
        {"registrar", "vazio", L"https://site/\n"},
        {"driver", "copiar", L"ms-settings:windowsupdate\n"},
        {"driver", "vazio", L""},
        // Not the program or the link of the folder's name that may lie beside it.
        {"pasta", "vazio", pasta.Caminho().native() + L"\\\n"}};
    for (const auto& [palavra, relatorio, alvo] : casos) {
        pasta.Escrever("jogo_falso.txt", std::string("relatorio=") + relatorio);
        IniciarRequisitos();
        EXPECT_TRUE(Esperar(30s, [] { return ObterRequisitos().concluido; }));
        abertos.clear();
        ObterControlador().Acao(palavra);
        EXPECT_EQ(abertos, alvo) << palavra << " " << relatorio;
    }
}

}  // namespace
}  // namespace zu::launcher

ZU_DESVIAR(ShellExecuteW, &zu::launcher::Abrir);
