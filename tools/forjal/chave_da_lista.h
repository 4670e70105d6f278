// The key pair that signs the update list: RSA with 3072 bits. The private half is kept as CNG's full private
// blob, the public half as the blob that the launcher carries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "core/assinatura.h"
#include "core/hash.h"
#include "tools/forjal/arquivo_secreto.h"

namespace zu::launcher::forjal {

constexpr std::size_t kTamanhoPrivada = 1755;  // bytes of "lista.chave"
constexpr std::size_t kTamanhoPublica = 411;   // bytes of "lista.pub"

class ChaveDaLista {
 public:
    // Makes a new pair. False with the reason in `erro`.
    bool Gerar(std::string& erro);

    // Reads "lista.chave". False with the reason in `erro`.
    bool Ler(const std::filesystem::path& caminho, std::string& erro);

    // Each is false when the system refuses. `privada` must have `kTamanhoPrivada` bytes.
    bool ExportarPrivada(std::span<std::uint8_t> privada) const;
    bool ExportarPublica(UpdateSigningKey& publica) const;

    // Signs as `VerifyListSignature` checks: PKCS#1 v1.5 over SHA-256.
    bool Assinar(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& assinatura) const;

 private:
    HandleProvedor provedor_;  // declared first, so closed last
    HandleChave chave_;
};

}  // namespace zu::launcher::forjal
