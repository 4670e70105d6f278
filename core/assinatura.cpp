#include "core/assinatura.h"

namespace zu::launcher {

bool VerifyListSignature(std::span<const UpdateSigningKey> chaves, std::span<const std::uint8_t> assinados,
                         std::span<const std::uint8_t> assinatura, Sha256Digest* digest) {
    HandleProvedor provedor;
    if (!BCRYPT_SUCCESS(BCryptOpenAlgorithmProvider(provedor.Receber(), BCRYPT_RSA_ALGORITHM, nullptr, 0)))
        return false;

    Sha256Digest doTexto = Sha256Of(assinados);
    if (digest != nullptr) *digest = doTexto;
    BCRYPT_PKCS1_PADDING_INFO preenchimento{BCRYPT_SHA256_ALGORITHM};
    for (const UpdateSigningKey& blob : chaves) {
        HandleChave chave;
        if (!BCRYPT_SUCCESS(BCryptImportKeyPair(provedor.Valor(), nullptr, BCRYPT_RSAPUBLIC_BLOB, chave.Receber(),
                                                const_cast<PUCHAR>(blob.data()), static_cast<ULONG>(blob.size()), 0))) {
            continue;
        }
        if (BCRYPT_SUCCESS(BCryptVerifySignature(
                chave.Valor(), &preenchimento, doTexto.data(), static_cast<ULONG>(doTexto.size()),
                const_cast<PUCHAR>(assinatura.data()), static_cast<ULONG>(assinatura.size()), BCRYPT_PAD_PKCS1))) {
            return true;
        }
    }
    return false;
}

}  // namespace zu::launcher
