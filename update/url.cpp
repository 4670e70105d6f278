#include "update/url.h"

#include "core/formato.h"

namespace zu::launcher {
namespace {

bool ViajaComoEsta(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~/").find(c) != std::string_view::npos;
}

}  // namespace

std::string MontarUrl(std::string_view base, std::string_view caminho) {
    std::string url(base);
    if (!url.ends_with('/')) url.push_back('/');
    for (const char c : caminho) {
        if (ViajaComoEsta(c)) {
            url.push_back(c);
        } else {
            url += Formatar("%{:02X}", static_cast<unsigned char>(c));
        }
    }
    return url;
}

}  // namespace zu::launcher
