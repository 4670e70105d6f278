// SHA-256 (FIPS 180-4), HMAC-SHA256 (RFC 2104) and random bytes, from the system (CNG). No provider is kept open
// between calls. Nothing here reports a message: a failure is false, null handles or zeroed bytes.
#pragma once

#include <windows.h>
// after windows.h
#include <bcrypt.h>

#include <array>
#include <cstdint>
#include <span>

#include "core/handle.h"

namespace zu::launcher {

using Sha256Digest = std::array<std::uint8_t, 32>;

struct TracosProvedor {
    using Tipo = BCRYPT_ALG_HANDLE;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo h) noexcept { BCryptCloseAlgorithmProvider(h, 0); }
};
using HandleProvedor = Handle<TracosProvedor>;

struct TracosHash {
    using Tipo = BCRYPT_HASH_HANDLE;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo h) noexcept { BCryptDestroyHash(h); }
};
using HandleHash = Handle<TracosHash>;

struct TracosChave {
    using Tipo = BCRYPT_KEY_HANDLE;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo h) noexcept { BCryptDestroyKey(h); }
};
using HandleChave = Handle<TracosChave>;

// A digest under way. Both handles are null when opening failed; then feeding does nothing and finishing yields zeros.
struct Sha256Incremental {
    HandleProvedor provedor;  // declared first, so closed last
    HandleHash hash;
};

Sha256Incremental Sha256Begin();
void Sha256Feed(Sha256Incremental& contexto, const void* dados, std::uint64_t tamanho);
void Sha256Finish(Sha256Incremental& contexto, Sha256Digest& digest);
Sha256Digest Sha256Of(std::span<const std::uint8_t> bytes);

// Zeros on failure.
Sha256Digest HmacSha256(std::span<const std::uint8_t> chave, std::span<const std::uint8_t> dados);

// Fills the span from the system's cryptographic source.
bool RandomBytes(std::span<std::uint8_t> bytes);

}  // namespace zu::launcher
