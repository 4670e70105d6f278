// Windows for tests: what they show, what is done to them, and the message pump.
#pragma once

#include <gmock/gmock.h>

#include <windows.h>
// after windows.h
#include <objbase.h>
#include <shellapi.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <map>
#include <string>
#include <thread>

#include "app/controlador.h"
#include "app/instancia_unica.h"
#include "game/requisitos.h"
#include "tests/runtime_falso/controle.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/superficie.h"
#include "ui/controles/controle.h"
#include "ui/interface.h"
#include "ui/janelas/diagnostico.h"
#include "ui/janelas/estado_interface.h"
#include "ui/janelas/fim_da_interface.h"
#include "ui/janelas/modal.h"
#include "ui/janelas/opcoes.h"
#include "ui/janelas/principal.h"
#include "ui/janelas/requisitos.h"

namespace zu::launcher::teste {

// A click or a key as the window sees it; the window may be another process's. The key waits its turn.
inline void Clicar(HWND controle) {
    SendMessageW(controle, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageW(controle, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
}
inline void Teclar(HWND janela, int tecla, bool repetida = false) {
    PostMessageW(janela, WM_KEYDOWN, static_cast<WPARAM>(tecla), repetida ? LPARAM{KF_REPEAT} << 16 : 0);
}

// What the shell was asked to open, a line each; nothing opens.
inline std::wstring abertos;

// The texts that a window and its controls draw when they are asked to, as a reader meets them: " | " between those of
// one row, and a line a row. A "…" follows one that does not fit its place; what belongs to a disabled control is in
// parentheses, to a checked one in brackets.
std::string LerTela(HWND janela);

// With the drawing kit, its fonts and the classes of every window. What the process keeps of the case before is gone.
class ComDesenho : public testing::Test {
 protected:
    ComDesenho() {
        RenovarRequisitos();
        IniciarDesenho();
        AbrirEstadoDaInterface();
        const HINSTANCE modulo = GetModuleHandleW(nullptr);
        RegistrarControle(modulo);
        RegistrarPrincipal(modulo);
        for (const wchar_t* classe : {kClasseDasOpcoes, kClasseDosRequisitos, kClasseDoDiagnostico})
            Janela::Registrar(modulo, classe);
    }
    ~ComDesenho() override {
        FecharEstadoDaInterface();
        EncerrarDesenho();
    }
};

// The stand-in for the web view's runtime: its folder, as the registry would name it, and its handle.
inline constexpr char kVersaoFalsa[] = "120.0.2210.91";
inline const std::filesystem::path kAplicativoFalso = kPastaBin / "runtime_falso\\Microsoft\\EdgeWebView\\Application";
NavegadorFalso& RuntimeFalso();

// One launcher with its window, on a thread of its own as in the program.
class Interface {
 public:
    Interface()
        : codigo_(std::async(std::launch::async, [] {
              CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
              SetTimer(nullptr, 0, 20, [](HWND, UINT, UINT_PTR, DWORD) {
                  if (const auto* const trabalho = trabalho_.load()) (*trabalho)();
                  trabalho_ = nullptr;
              });
              return RodarInterface();
          })) {
        Esperar(std::chrono::seconds(10),
                [this] { return IsWindowVisible(janela_ = FindWindowW(kClasseDaJanela, nullptr)) != FALSE; });
    }
    ~Interface() { PostMessageW(janela_, WM_CLOSE, 0, 0); }

    [[nodiscard]] HWND Janela() const { return janela_; }
    // What of it the screen does not come to show.
    [[nodiscard]] std::string Provar(const std::string& provas) const {
        std::string faltas;
        Esperar(std::chrono::seconds(10), [&] { return (faltas = Superficie(janela_).Provar(provas)).empty(); });
        return faltas;
    }
    [[nodiscard]] bool Terminou(std::chrono::milliseconds limite = {}) const {
        return codigo_.wait_for(limite) == std::future_status::ready;
    }
    // The run's code, once it has ended by itself; -1 when it does not.
    int EsperarFim(std::chrono::milliseconds limite) { return Terminou(limite) ? codigo_.get() : -1; }
    // Runs on its thread, from its loop of messages, and returns when it has run.
    static void NaThread(const std::function<void()>& trabalho) {
        trabalho_ = &trabalho;
        EXPECT_TRUE(Esperar(std::chrono::seconds(5), [] { return trabalho_ == nullptr; }));
    }

 private:
    static inline std::atomic<const std::function<void()>*> trabalho_ = nullptr;

    HWND janela_ = nullptr;
    std::future<int> codigo_;  // of the run; its end is waited for
};

// A game folder and the server that it is kept up to date from.
class ComServidor : public testing::Test {
 protected:
    ComServidor() {
        RenovarRequisitos();
        Configurar(pasta_.Caminho(), servidor_.Url());
        pasta_.Escrever("Launcher.emu", Selado(servidor_.Url()));
        Publicar({{"a.bin", "a"}});
    }
    // Not before the process's one controller is at rest, which the next case is to find so.
    ~ComServidor() override { EsperarRepouso(); }

    static void EsperarRepouso() {
        EXPECT_TRUE(Esperar(std::chrono::seconds(30), [] { return !ObterControlador().Atualizando(); }));
    }
    void Publicar(const std::map<std::string, std::string>& arquivos) {
        publicacao_.arquivos = arquivos;
        publicacao_.Servir(servidor_);
    }
    // The stand-in as the game, which plays `roteiro`.
    void PorJogo(const std::string& roteiro, bool fecharAoJogar) const {
        std::filesystem::copy_file(kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe");
        pasta_.Escrever("jogo_falso.txt", roteiro);
        if (!fecharAoJogar) pasta_.Escrever("Config/Zu.ini", "[Launcher]\r\nFecharAoJogar=0\r\n");
    }
    // How many lines of the log begin so.
    [[nodiscard]] std::ptrdiff_t QuantasLinhas(const std::string& inicio) const {
        return std::ranges::count_if(LinhasDoLog(pasta_), [&](const auto& linha) { return linha.starts_with(inicio); });
    }
    static HWND CaixaDeMensagem() { return FindWindowW(L"#32770", L"Zu Launcher"); }
    // Once there is one.
    static std::string TextoDaCaixa() {
        constexpr int kTexto = 0xFFFF;
        wchar_t texto[400]{};
        Esperar(std::chrono::seconds(20), [] { return GetDlgItem(CaixaDeMensagem(), kTexto) != nullptr; });
        SendDlgItemMessageW(CaixaDeMensagem(), kTexto, WM_GETTEXT, std::size(texto), reinterpret_cast<LPARAM>(texto));
        return ParaUtf8(texto);
    }

    PastaTemporaria pasta_;
    Servidor servidor_;
    Publicacao publicacao_;
};

// The program, serving the folder that it lies in. Its name there is the one for which the tests' Wine is told that
// there is no window manager: else Wine waits two seconds for that one's answer as the window goes.
struct Lancado {
    explicit Lancado(const PastaTemporaria& pasta)
        : programa(Instalar(pasta / "testes_janela.exe")), nome(NomeDaInstancia(pasta.Caminho())) {}

    static std::filesystem::path Instalar(const std::filesystem::path& destino) {
        if (!std::filesystem::exists(destino)) copy_file(kPastaBin / "ZuLauncher.exe", destino);
        return destino;
    }

    // Its own window, once that is to be seen; null when it never is.
    HWND EsperarJanela() {
        Esperar(std::chrono::seconds(20), [this] {
            janela = JanelaDaInstancia(nome);
            DWORD pid = 0;
            GetWindowThreadProcessId(janela, &pid);
            return pid == programa.Pid() && IsWindowVisible(janela);
        });
        return janela;
    }

    Programa programa;
    std::wstring nome;
    HWND janela = nullptr;
};

// Handles messages until `pronto`; false when `limite` has passed first.
inline bool Bombear(
    std::chrono::milliseconds limite, const std::function<bool()>& pronto = [] { return false; }) {
    return Esperar(limite, [&] {
        MSG m{};
        while (PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&m);
        return pronto();
    });
}

}  // namespace zu::launcher::teste
