#include "tools/forjal/chave_da_lista.h"

#include "core/formato.h"
#include "core/utf16.h"

namespace zu::launcher::forjal {
namespace {

constexpr ULONG kBits = 3072;
constexpr ULONG kTamanhoAssinatura = kBits / 8;

bool Abrir(HandleProvedor& provedor, std::string& erro) {
    const NTSTATUS estado = BCryptOpenAlgorithmProvider(provedor.Receber(), BCRYPT_RSA_ALGORITHM, nullptr, 0);
    if (!BCRYPT_SUCCESS(estado)) {
        erro = Formatar("o Windows não oferece RSA (0x{:08X})", static_cast<std::uint32_t>(estado));
        return false;
    }
    return true;
}

bool Exportar(const HandleChave& chave, const wchar_t* tipo, std::span<std::uint8_t> blob) {
    ULONG tamanho = 0;
    return BCRYPT_SUCCESS(BCryptExportKey(chave.Valor(), nullptr, tipo, blob.data(), static_cast<ULONG>(blob.size()),
                                          &tamanho, 0)) &&
           tamanho == blob.size();
}

}  // namespace

bool ChaveDaLista::Gerar(std::string& erro) {
    if (!Abrir(provedor_, erro)) return false;
    NTSTATUS estado = BCryptGenerateKeyPair(provedor_.Valor(), chave_.Receber(), kBits, 0);
    if (BCRYPT_SUCCESS(estado)) estado = BCryptFinalizeKeyPair(chave_.Valor(), 0);
    if (BCRYPT_SUCCESS(estado)) return true;
    erro = Formatar("não foi possível gerar o par de chaves (0x{:08X})", static_cast<std::uint32_t>(estado));
    return false;
}

bool ChaveDaLista::Ler(const std::filesystem::path& caminho, std::string& erro) {
    BytesSecretos blob;
    if (!blob.Ler(caminho, kTamanhoPrivada, erro) || !Abrir(provedor_, erro)) return false;
    const std::span<std::uint8_t> bytes = blob.Bytes();
    UpdateSigningKey publica;
    if (BCRYPT_SUCCESS(BCryptImportKeyPair(provedor_.Valor(), nullptr, BCRYPT_RSAFULLPRIVATE_BLOB, chave_.Receber(),
                                           bytes.data(), static_cast<ULONG>(bytes.size()), 0)) &&
        ExportarPublica(publica)) {
        return true;
    }
    erro = Formatar("{}: não é a chave privada que \"Forjal chaves\" gera", ParaUtf8(caminho.native()));
    return false;
}

bool ChaveDaLista::ExportarPrivada(std::span<std::uint8_t> privada) const {
    return Exportar(chave_, BCRYPT_RSAFULLPRIVATE_BLOB, privada);
}

bool ChaveDaLista::ExportarPublica(UpdateSigningKey& publica) const {
    publica.resize(kTamanhoPublica);
    return Exportar(chave_, BCRYPT_RSAPUBLIC_BLOB, publica);
}

bool ChaveDaLista::Assinar(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& assinatura) const {
    Sha256Digest digest = Sha256Of(bytes);
    BCRYPT_PKCS1_PADDING_INFO preenchimento{BCRYPT_SHA256_ALGORITHM};
    ULONG tamanho = 0;
    assinatura.resize(kTamanhoAssinatura);
    return BCRYPT_SUCCESS(BCryptSignHash(chave_.Valor(), &preenchimento, digest.data(),
                                         static_cast<ULONG>(digest.size()), assinatura.data(), kTamanhoAssinatura,
                                         &tamanho, BCRYPT_PAD_PKCS1)) &&
           tamanho == kTamanhoAssinatura;
}

}  // namespace zu::launcher::forjal
