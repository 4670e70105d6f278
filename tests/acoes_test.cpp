// What the player opens from the launcher. The shell's call is replaced, so that nothing opens.
#include <gtest/gtest.h>
#include <windows.h>
// after windows.h
#include <shellapi.h>

#include "app/controlador.h"
#include "game/jogo.h"
#include "game/requisitos.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"

namespace zu::launcher {
namespace {

std::wstring abertos;  // targets, a line each

HINSTANCE WINAPI Abrir(HWND, LPCWSTR verbo, LPCWSTR alvo, LPCWSTR parametros, LPCWSTR pasta, INT mostrar) {
    const bool simples = std::wstring(L"open") == verbo && parametros == nullptr && pasta == nullptr;
    abertos += (simples && mostrar == SW_SHOWNORMAL ? L"" : L"errado: ") + std::wstring(alvo) + L"\n";
    return nullptr;
}

}  // namespace

// In place of the import library's.
extern "C" {
decltype(&ShellExecuteW) __imp_ShellExecuteW = &Abrir;
}

namespace {

TEST(Acoes, EnderecoSoDaWebEEmMinusculas) {
    abertos.clear();
    for (const char* endereco :
         {"", "http:/a", "https:/a", "HTTP://a", "Https://a", " https://a", "ftp://a", "file:///C:/a",
          "ms-settings:windowsupdate", "javascript:a", "C:\\a.exe", "http://á", "https://b?c=1 2"})
        AbrirEndereco(endereco);
    EXPECT_EQ(abertos, L"http://á\nhttps://b?c=1 2\n");
}

TEST(Acoes, CadaPalavraAbreOSeuAlvo) {
    const teste::PastaTemporaria pasta(L"Jogo é");
    const std::filesystem::path jogo = pasta.Caminho();
    std::filesystem::copy_file(teste::kPastaBin / "jogo_falso.exe", pasta / "Zu.exe");
    const auto unicoItem = [](const std::string& item) {
        return "{\"relatorio\":\"Item | a\\n[X] " + item + " | b | c | d\"}";
    };
    const struct {
        std::string palavra, relatorio, registro;
        std::wstring alvo;
    } casos[] = {
        {"registrar", "", "https://registro/", L"https://registro/\n"},
        {"registrar", "", "", L"https://site/\n"},
        {"driver", unicoItem("DirectX 12"), "", L"ms-settings:windowsupdate\n"},
        {"driver", unicoItem("Driver de vídeo | AMD"), "", L"https://www.amd.com/pt/support/download/drivers.html\n"},
        {"driver", "{}", "", L""},
        // Not the program or the link of the folder's name that may lie beside it.
        {"pasta", "", "", jogo.native() + L"\\\n"},
        {"log", "", "", (jogo / L"ZuLauncher.log").native() + L"\n"},
        {"Pasta", "", "", L""},
    };
    for (const auto& caso : casos) {
        DefinirConfig({.pastaJogo = jogo, .urlSite = "https://site/", .urlRegistro = caso.registro});
        RenovarRequisitos();
        if (!caso.relatorio.empty()) {
            pasta.Escrever("jogo_falso.txt", "relatorio=copiar");
            pasta.Escrever("jogo_falso.json", caso.relatorio);
            IniciarRequisitos();
            EXPECT_TRUE(teste::Esperar(std::chrono::seconds(30), [] { return ObterRequisitos().concluido; }));
        }
        abertos.clear();
        ObterControlador().Acao(caso.palavra);
        EXPECT_EQ(abertos, caso.alvo) << caso.palavra << " " << caso.relatorio;
    }
}

}  // namespace
}  // namespace zu::launcher
