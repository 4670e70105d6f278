#include <cstdlib>

#include "core/base64.h"

using namespace zu::launcher;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint8_t> volta;
    const bool aceito = Base64Decode({reinterpret_cast<const char*>(dados), tamanho}, bytes);
    if (aceito && (!Base64Decode(Base64Encode(bytes), volta) || volta != bytes)) std::abort();
    if (!Base64Decode(Base64Encode({dados, tamanho}), bytes) ||
        bytes != std::vector<std::uint8_t>(dados, dados + tamanho)) {
        std::abort();
    }
    return 0;
}
