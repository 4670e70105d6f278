// Finding and loading the installed WebView2 runtime.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "ui/site/webview2.h"

namespace zu::launcher {

// The four numbers of a version, which compare as versions do.
using VersaoDeRuntime = std::array<std::uint32_t, 4>;

// Reads "120.0.2210.91". False, and `versao` without meaning, for anything but four numbers.
bool LerVersaoDeRuntime(std::string_view nome, VersaoDeRuntime& versao);

// The value of an environment variable; empty when it is not set.
std::wstring VariavelDeAmbiente(const wchar_t* nome);

// Loads the runtime's DLL, for the rest of the process, and returns its entry. Null when there is no runtime or it does
// not load; why is in the log.
EntradaDoRuntime CarregarRuntime();

}  // namespace zu::launcher
