// The lock on a published folder: two publications at once would leave a list beside the other's files.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "core/handle.h"

namespace zu::launcher::forjal {

constexpr std::wstring_view kNomeDaTrava = L"Forjal.trava";

class Trava {
 public:
    // Makes the folder when it is missing, and has it from then on. False with the reason in `erro`.
    bool Trancar(const std::filesystem::path& saida, std::string& erro);

 private:
    HandleArquivo trava_;
};

}  // namespace zu::launcher::forjal
