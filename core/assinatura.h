// The signature of the update list: RSA, PKCS#1 v1.5 (RFC 8017, section 8.2) over SHA-256.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/hash.h"

namespace zu::launcher {

// A public key as CNG's "RSAPUBLICBLOB"; 411 bytes for a 3072-bit key with the usual 3-byte exponent.
using UpdateSigningKey = std::vector<std::uint8_t>;

// True when one of the keys verifies the signature. A key that cannot be imported is passed over. `digest`, which may
// be absent, is then that of the signed bytes.
bool VerifyListSignature(std::span<const UpdateSigningKey> chaves, std::span<const std::uint8_t> assinados,
                         std::span<const std::uint8_t> assinatura, Sha256Digest* digest = nullptr);

}  // namespace zu::launcher
