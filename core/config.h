// The one settings record of the process: what the built-in defaults, the command line and the sealed settings file
// say.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zu::launcher {

struct ConfigLauncher {
    std::filesystem::path pastaJogo;     // absolute; root of everything that is kept up to date
    std::wstring nome = L"Zu Launcher";  // shown in window titles and captions
    std::string urlUpdate;               // ends in "/" unless empty; empty: no updating
    std::string urlSite;
    std::string seletor;      // of the page element that the site view shows
    std::string urlRegistro;  // empty: the site takes its place
    std::string erro;         // not empty: the settings were refused, and this is why
    bool jogar = false;
    bool semInterface = false;
    bool reparar = false;
    std::uint32_t reaberto = 0;  // how many times the swap helper has opened this launcher again
    std::int32_t conexoes = 0;   // 1 to 16; 0: not given
    std::wstring captura;
    std::wstring requisitosSimular;
    std::vector<std::wstring> argumentos;  // all behind the program name, verbatim and in order
};

// The record. Any thread may read it; nobody writes it once start-up has filled it.
const ConfigLauncher& ObterConfig();

// Start-up's one write, before any other thread runs.
void DefinirConfig(ConfigLauncher config);

// The version of the program, as in its resources: "1.3.1".
std::string_view VersaoDoLauncher();

}  // namespace zu::launcher
