#include "core/config.h"

#include <utility>

namespace zu::launcher {
namespace {

// Never destroyed: threads may still read it while the process ends.
ConfigLauncher& Registro() {
    static auto* const registro = new ConfigLauncher;
    return *registro;
}

}  // namespace

const ConfigLauncher& ObterConfig() {
    return Registro();
}

void DefinirConfig(ConfigLauncher config) {
    Registro() = std::move(config);
}

std::string_view VersaoDoLauncher() {
    return ZU_VERSAO;
}

}  // namespace zu::launcher
