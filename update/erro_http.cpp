#include "update/erro_http.h"

#include <algorithm>
#include <array>

#include "core/formato.h"

namespace zu::launcher {
namespace {

struct Frase {
    std::uint32_t codigo;  // ERROR_WINHTTP_ and its number in winhttp.h
    std::string_view texto;
};

constexpr std::array kFrases{
    Frase{12002, "tempo esgotado"},                            // TIMEOUT
    Frase{12005, "URL inválida"},                              // INVALID_URL
    Frase{12006, "URL deve começar com http:// ou https://"},  // UNRECOGNIZED_SCHEME
    Frase{12007, "servidor não encontrado (DNS)"},             // NAME_NOT_RESOLVED
    Frase{12029, "não conectou ao servidor"},                  // CANNOT_CONNECT
    Frase{12030, "conexão interrompida"},                      // CONNECTION_ERROR
    Frase{12175, "certificado HTTPS inválido"},                // SECURE_FAILURE
};

}  // namespace

std::string TextoDoErroHttp(std::string_view etapa, std::uint32_t codigo) {
    const auto* const frase = std::ranges::find(kFrases, codigo, &Frase::codigo);
    return frase == kFrases.end() ? Formatar("{}: erro {}", etapa, codigo) : Formatar("{}: {}", etapa, frase->texto);
}

}  // namespace zu::launcher
