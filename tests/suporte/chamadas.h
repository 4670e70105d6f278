// The calls that an update makes on files and on the network, each told to the test before it is made. A program with
// this object starts no other: what would be started counts as started; and it waits for servers a sixth of the time.
#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <string_view>

namespace zu::launcher::teste {

struct Chamada {
    std::string_view nome;          // "MoveFileExW"
    std::filesystem::path caminho;  // of the file, or where a program would run; empty for calls on the network
    std::filesystem::path destino;  // of a move
    DWORD acesso = 0;               // that an opening asks for
};

// May keep the call waiting. 0 lets it through; anything else is the error with which it fails, unmade.
using Porta = std::function<DWORD(const Chamada&)>;

// While it lives `porta` is asked about each call on the network and on what lies below the folder, the logs apart,
// from the thread that makes it. And a move over a read-only file is refused, as Windows does. One at a time, around
// all use.
class Vigia {
 public:
    Vigia(std::filesystem::path pasta, Porta porta);
    Vigia(const Vigia&) = delete;
    Vigia& operator=(const Vigia&) = delete;
    ~Vigia();

    // The error for this call.
    [[nodiscard]] DWORD Perguntar(const Chamada& chamada) const;

 private:
    std::filesystem::path pasta_;
    Porta porta_;
};

}  // namespace zu::launcher::teste
