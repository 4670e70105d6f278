// The game's options as the launcher shows and saves them. The one store is the game's own INI file, "Config\Zu.ini",
// which is reached through the system's profile functions alone: they know the encoding the game wrote it in and leave
// every key that is not named here where it is. The record that a window edits belongs to the front end's thread; every
// other thread works on a copy.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace zu::launcher {

// What the stored indexes mean. The order is the game's: not sorted.
constexpr std::array<std::wstring_view, 8> kRotulosResolucao{L"640 x 480",   L"800 x 600",  L"1024 x 768",
                                                             L"1280 x 1024", L"1280 x 720", L"1366 x 768",
                                                             L"1600 x 900",  L"1920 x 1080"};
constexpr std::array<std::wstring_view, 8> kRotulosLimiteFps{L"Sem limite", L"30",  L"60",  L"90",
                                                             L"100",        L"120", L"144", L"240"};
constexpr std::array<std::wstring_view, 10> kRotulosVolume{L"Mudo", L"1", L"2", L"3", L"4",
                                                           L"5",    L"6", L"7", L"8", L"9"};

// Fields of "0 or 1" and indexes into the labels above.
struct OpcoesJogo {
    std::string api = "d3d12";       // "d3d12" or "vulkan"
    std::int32_t windowMode = 1;     // 1: window, 0: full screen
    std::int32_t borderless = 0;     // 0 or 1
    std::int32_t resolution = 4;     // kRotulosResolucao
    std::int32_t vsync = 1;          // 0 or 1
    std::int32_t fpsLimit = 0;       // kRotulosLimiteFps
    std::int32_t soundLevel = 4;     // kRotulosVolume
    std::int32_t musicLevel = 4;     // kRotulosVolume
    std::int32_t fecharAoJogar = 1;  // 0 or 1

    bool operator==(const OpcoesJogo&) const = default;
};

// The INI file's full path, made anew from the settings.
std::filesystem::path CaminhoOpcoesJogo();

// Never fails: what is missing or cannot be read has its default, what is out of range is brought into it. Creates
// nothing.
OpcoesJogo LerOpcoesJogo();

// Brings the values into range and writes each key whose stored text differs; unchanged options leave the file as it
// is. Every key is tried. One line in the log tells the outcome.
void GravarOpcoesJogo(const OpcoesJogo& opcoes);

// True when the key holds exactly this text, already or from now on.
bool GravarChaveSeDiferente(const std::wstring& secao, const std::wstring& chave, const std::wstring& valor);

}  // namespace zu::launcher
