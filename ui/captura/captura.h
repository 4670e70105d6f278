// Pictures of the launcher's own windows, for documents and support. UI thread only.
#pragma once

#include <windows.h>

#include <cstddef>
#include <filesystem>

namespace zu::launcher {

// Writes the window as a PNG file, transparent beyond its region, and logs the outcome. `comSite`: a web page covers a
// part of it, which takes a composited frame; without one the plain drawing is saved. False when the file could not be
// written; then there is none.
bool CapturarJanela(HWND janela, const std::filesystem::path& arquivo, bool comSite);

// A capture run: waits until the launcher has settled, then opens, saves and closes one window after the other in the
// folder that the settings name, and ends the interface.
class SessaoDeCaptura {
 public:
    SessaoDeCaptura() = default;
    SessaoDeCaptura(const SessaoDeCaptura&) = delete;
    SessaoDeCaptura& operator=(const SessaoDeCaptura&) = delete;
    ~SessaoDeCaptura();

    // One session at a time.
    void Iniciar();

    // Some picture could not be written.
    [[nodiscard]] bool Falhou() const { return falhou_; }

 private:
    static void CALLBACK AoRelogio(HWND janela, UINT mensagem, UINT_PTR relogio, DWORD agora);
    void Avancar();
    [[nodiscard]] bool Assentou() const;
    void Capturar(HWND janela, const wchar_t* nome, bool comSite);

    UINT_PTR relogio_ = 0;
    ULONGLONG inicio_ = 0;
    std::size_t passo_ = 0;  // pictures taken
    bool falhou_ = false;
};

}  // namespace zu::launcher
