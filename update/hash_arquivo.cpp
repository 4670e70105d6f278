#include "update/hash_arquivo.h"

#include <algorithm>
#include <memory>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"

namespace zu::launcher {
namespace {

constexpr DWORD kMaiorBloco = 1024 * 1024;

struct Observadores {
    const std::function<void(std::span<const std::uint8_t>)>& visita;
    const std::atomic<bool>* cancelar;
};

// A small file does not pay for a large buffer.
DWORD TamanhoDoBloco(HANDLE arquivo) {
    LARGE_INTEGER tamanho{};
    if (GetFileSizeEx(arquivo, &tamanho) == 0) return kMaiorBloco;
    return static_cast<DWORD>(std::clamp<std::int64_t>(tamanho.QuadPart, 1, kMaiorBloco));
}

bool LerUm(const HandleArquivo& arquivo, HashCorrente& hash, const Observadores& observadores) {
    if (!arquivo) return false;
    const DWORD tamanho = TamanhoDoBloco(arquivo.Valor());
    const auto bloco = std::make_unique_for_overwrite<std::uint8_t[]>(tamanho);
    while (true) {
        if (observadores.cancelar != nullptr && observadores.cancelar->load()) return false;
        DWORD lidos = 0;
        if (ReadFile(arquivo.Valor(), bloco.get(), tamanho, &lidos, nullptr) == 0) return false;
        if (lidos == 0) return true;
        hash.Alimentar(bloco.get(), lidos);
        if (observadores.visita) observadores.visita({bloco.get(), lidos});
    }
}

}  // namespace

void HashCorrente::Alimentar(const void* bloco, std::size_t tamanho) {
    crc_ = Crc32Update(crc_, bloco, tamanho);
    Sha256Feed(sha256_, bloco, tamanho);
    bytes_ += tamanho;
}

ResultadoHash HashCorrente::Terminar(bool ok) {
    ResultadoHash resultado{.ok = ok, .bytes = bytes_, .crc = ~crc_};
    Sha256Finish(sha256_, resultado.sha256);
    return resultado;
}

std::string SufixoDaParte(std::uint32_t parte) {
    return Formatar(".p{:03}", parte);
}

std::filesystem::path CaminhoDaParte(const std::filesystem::path& caminho, std::uint32_t parte) {
    return ComSufixo(caminho, DeUtf8(SufixoDaParte(parte)).c_str());
}

HandleArquivo AbrirParaHash(const std::filesystem::path& caminho) {
    return HandleArquivo(CreateFileW(caminho.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                     OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

ResultadoHash HashDoAberto(const HandleArquivo& arquivo,
                           const std::function<void(std::span<const std::uint8_t>)>& visita,
                           const std::atomic<bool>* cancelar) {
    HashCorrente hash;
    const bool ok = LerUm(arquivo, hash, {visita, cancelar});
    return hash.Terminar(ok);
}

ResultadoHash HashArquivo(const std::filesystem::path& caminho, std::uint32_t partes,
                          const std::function<void(std::span<const std::uint8_t>)>& visita,
                          const std::atomic<bool>* cancelar) {
    if (partes == 0) return HashDoAberto(AbrirParaHash(caminho), visita, cancelar);
    HashCorrente hash;
    bool ok = true;
    for (std::uint32_t parte = 1; ok && parte <= partes; ++parte) {
        ok = LerUm(AbrirParaHash(CaminhoDaParte(caminho, parte)), hash, {visita, cancelar});
    }
    return hash.Terminar(ok);
}

}  // namespace zu::launcher
