// Addresses on the update server. Nothing here touches the network.
#pragma once

#include <string>
#include <string_view>

namespace zu::launcher {

// Joins a base address and a relative UTF-8 path. Letters, digits and "-._~/" of the path stay (RFC 3986, section 2.3,
// and the separator); every other byte is percent-encoded in upper case.
std::string MontarUrl(std::string_view base, std::string_view caminho);

}  // namespace zu::launcher
