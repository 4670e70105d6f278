// Where the files of an update list lie on this computer.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zu::launcher {

// A normalised and safe list path below the game folder.
std::filesystem::path CaminhoNoCliente(std::string_view normal);

// The same for who asks for many: as text, which the next question overwrites.
class CaminhosNoCliente {
 public:
    CaminhosNoCliente();
    const wchar_t* De(std::string_view normal);

 private:
    std::wstring caminho_;
    std::size_t inicio_;  // where the part below the game folder begins
};

}  // namespace zu::launcher
