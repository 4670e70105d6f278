#include "core/hash.h"

#include <algorithm>

namespace zu::launcher {
namespace {

constexpr std::uint64_t kMaiorPorChamada = 0x40000000;  // CNG takes 32-bit lengths: 1 GiB at a time

// CNG takes its input through pointers to non-const bytes and never writes to them.
PUCHAR Entrada(const void* dados) {
    return static_cast<PUCHAR>(const_cast<void*>(dados));
}

bool Abrir(HandleProvedor& provedor, DWORD opcoes) {
    return BCRYPT_SUCCESS(BCryptOpenAlgorithmProvider(provedor.Receber(), BCRYPT_SHA256_ALGORITHM, nullptr, opcoes));
}

}  // namespace

Sha256Incremental Sha256Begin() {
    Sha256Incremental contexto;
    if (Abrir(contexto.provedor, 0) &&
        BCRYPT_SUCCESS(
            BCryptCreateHash(contexto.provedor.Valor(), contexto.hash.Receber(), nullptr, 0, nullptr, 0, 0))) {
        return contexto;
    }
    return {};
}

void Sha256Feed(Sha256Incremental& contexto, const void* dados, std::uint64_t tamanho) {
    if (!contexto.hash) return;
    const auto* bytes = static_cast<const std::uint8_t*>(dados);
    while (tamanho > 0) {
        const std::uint64_t agora = std::min(tamanho, kMaiorPorChamada);
        BCryptHashData(contexto.hash.Valor(), Entrada(bytes), static_cast<ULONG>(agora), 0);
        bytes += agora;
        tamanho -= agora;
    }
}

void Sha256Finish(Sha256Incremental& contexto, Sha256Digest& digest) {
    digest.fill(0);
    if (!contexto.hash) return;
    BCryptFinishHash(contexto.hash.Valor(), digest.data(), static_cast<ULONG>(digest.size()), 0);
}

Sha256Digest Sha256Of(std::span<const std::uint8_t> bytes) {
    Sha256Incremental contexto = Sha256Begin();
    Sha256Feed(contexto, bytes.data(), bytes.size());
    Sha256Digest digest{};
    Sha256Finish(contexto, digest);
    return digest;
}

Sha256Digest HmacSha256(std::span<const std::uint8_t> chave, std::span<const std::uint8_t> dados) {
    Sha256Digest digest{};
    HandleProvedor provedor;
    HandleHash hash;
    Sha256Digest feito{};
    if (Abrir(provedor, BCRYPT_ALG_HANDLE_HMAC_FLAG) &&
        BCRYPT_SUCCESS(BCryptCreateHash(provedor.Valor(), hash.Receber(), nullptr, 0, Entrada(chave.data()),
                                        static_cast<ULONG>(chave.size()), 0)) &&
        BCRYPT_SUCCESS(BCryptHashData(hash.Valor(), Entrada(dados.data()), static_cast<ULONG>(dados.size()), 0)) &&
        BCRYPT_SUCCESS(BCryptFinishHash(hash.Valor(), feito.data(), static_cast<ULONG>(feito.size()), 0))) {
        digest = feito;
    }
    return digest;
}

bool RandomBytes(std::span<std::uint8_t> bytes) {
    return BCRYPT_SUCCESS(
        BCryptGenRandom(nullptr, bytes.data(), static_cast<ULONG>(bytes.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG));
}

}  // namespace zu::launcher
