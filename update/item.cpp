// Atualizador::BaixarItem: one file of the list, fetched and proved.

#include <windows.h>

#include <algorithm>
#include <memory>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "update/atualizador.h"
#include "update/caminhos.h"
#include "update/hash_arquivo.h"
#include "update/http.h"
#include "update/seguidor_hash.h"
#include "update/url.h"

namespace zu::launcher {
namespace {

constexpr DWORD kBlocoDeJuncao = 1024 * 1024;
constexpr std::uint64_t kMenorSeguido = 4ULL << 20;  // below it, reading again costs less than a thread

struct Transferencia {
    const update::ItemLista& item;
    const std::filesystem::path& destino;
    const ProgressCallback progresso;
    const std::atomic<bool>& cancelar;
};

// The CRC in the address makes a changed file a new address, so that no cache on the way serves the old one.
std::wstring UrlDoItem(const update::ItemLista& item, std::string_view sufixo) {
    const std::string caminho = update::NormalizarCaminho(item.caminho).append(sufixo);
    return DeUtf8(Formatar("{}?v={:08x}", MontarUrl(ObterConfig().urlUpdate, caminho), item.crc));
}

// A part has no size in the list, so a complete one cannot be told from a partial one; and a server answers a range
// that starts at the end of a file with 416, which throws the part away. Asking for the last byte again avoids both.
void RecuarUmByte(const std::filesystem::path& parte) {
    const HandleArquivo arquivo(CreateFileW(parte.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                            FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER fim{};
    if (!arquivo || GetFileSizeEx(arquivo.Valor(), &fim) == 0 || fim.QuadPart == 0) return;
    --fim.QuadPart;
    if (SetFilePointerEx(arquivo.Valor(), fim, nullptr, FILE_BEGIN) != 0) SetEndOfFile(arquivo.Valor());
}

bool BaixarParte(const Transferencia& t, std::uint32_t parte, std::string& erro) {
    const std::filesystem::path local = CaminhoDaParte(t.destino, parte);
    RecuarUmByte(local);
    // A part's size is not known, but it is not more than the whole.
    return HttpBaixarArquivo(UrlDoItem(t.item, SufixoDaParte(parte)), local, 0, t.progresso, t.cancelar, erro,
                             t.item.tamanho);
}

bool BaixarPartes(const Transferencia& t, std::string& erro) {
    for (std::uint32_t parte = 1; parte <= t.item.partes; ++parte) {
        const std::filesystem::path local = CaminhoDaParte(t.destino, parte);
        const bool havia = TamanhoDoArquivo(local) > 0;
        if (BaixarParte(t, parte, erro)) continue;
        // What an older version left was thrown away: the part starts anew, which is not an attempt of the item's.
        const bool jogadaFora = havia && TamanhoDoArquivo(local) == 0 && !t.cancelar.load();
        if (!jogadaFora || !BaixarParte(t, parte, erro)) return false;
    }
    return true;
}

bool AnexarParte(HANDLE saida, const std::filesystem::path& parte, std::uint8_t* bloco) {
    const HandleArquivo entrada(CreateFileW(parte.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                            FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!entrada) return false;
    while (true) {
        DWORD lidos = 0;
        DWORD escritos = 0;
        if (ReadFile(entrada.Valor(), bloco, kBlocoDeJuncao, &lidos, nullptr) == 0) return false;
        if (lidos == 0) return true;
        if (WriteFile(saida, bloco, lidos, &escritos, nullptr) == 0 || escritos != lidos) return false;
    }
}

bool JuntarPartes(const Transferencia& t, std::string& erro) {
    const HandleArquivo saida(
        CreateFileW(t.destino.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    const auto bloco = std::make_unique_for_overwrite<std::uint8_t[]>(kBlocoDeJuncao);
    bool ok = static_cast<bool>(saida);
    for (std::uint32_t parte = 1; ok && parte <= t.item.partes; ++parte) {
        ok = AnexarParte(saida.Valor(), CaminhoDaParte(t.destino, parte), bloco.get());
    }
    ok = ok && FlushFileBuffers(saida.Valor()) != 0;
    if (!ok) erro = "não foi possível juntar as partes";
    return ok;
}

void ApagarPartes(const Transferencia& t) {
    for (std::uint32_t parte = 1; parte <= t.item.partes; ++parte) {
        DeleteFileW(CaminhoDaParte(t.destino, parte).c_str());
    }
}

// A large file is hashed while it arrives. Not ok when that was not done; then it is read once it is complete.
bool BaixarInteiro(const Transferencia& t, ResultadoHash& hash, std::string& erro) {
    const auto baixar = [&](const ProgressCallback& progresso) {
        return HttpBaixarArquivo(UrlDoItem(t.item, ""), t.destino, t.item.tamanho, progresso, t.cancelar, erro,
                                 t.item.tamanho);
    };
    if (t.item.tamanho < kMenorSeguido) return baixar(t.progresso);

    SeguidorDeHash seguidor(t.destino);
    const std::uint64_t presentes = TamanhoDoArquivo(t.destino);
    std::uint64_t escritos = 0;
    const auto progresso = [&](std::uint64_t bytes) {
        escritos = bytes == 0 ? presentes : escritos + bytes;
        seguidor.Avancar(escritos);
        t.progresso(bytes);
    };
    if (!baixar(progresso)) return false;
    hash = seguidor.Terminar();
    return true;
}

bool BaixarEmPartes(const Transferencia& t, std::string& erro) {
    if (!BaixarPartes(t, erro)) return false;
    const bool juntou = JuntarPartes(t, erro);
    if (!t.cancelar.load()) ApagarPartes(t);
    return juntou;
}

bool Conferir(const Transferencia& t, ResultadoHash hash, std::string& sha256, std::string& erro) {
    if (!hash.ok) hash = HashArquivo(t.destino, 0, {}, &t.cancelar);
    if (!hash.ok && t.cancelar.load()) {
        erro = "cancelado";
        return false;
    }
    sha256 = ParaHex(hash.sha256);
    if (hash.ok && hash.bytes == t.item.tamanho && hash.crc == t.item.crc &&
        (t.item.sha256.empty() || sha256 == t.item.sha256)) {
        return true;
    }
    const std::string crcs =
        hash.crc == t.item.crc ? std::string() : Formatar(": CRC {:08X} esperado {:08X}", hash.crc, t.item.crc);
    erro = Formatar("o arquivo baixado não confere (CRC32/SHA-256{})", crcs);
    DeleteFileW(t.destino.c_str());
    return false;
}

}  // namespace

bool Atualizador::BaixarItem(const update::ItemLista& item, const std::filesystem::path& destino,
                             std::atomic<std::uint64_t>& bytesBaixados, std::string& sha256, std::string& erro) {
    const Transferencia t{item, destino, [&bytesBaixados](std::uint64_t bytes) { bytesBaixados += bytes; }, cancelar_};
    ResultadoHash hash;
    const bool veio = item.partes == 0 ? BaixarInteiro(t, hash, erro) : BaixarEmPartes(t, erro);
    return veio && Conferir(t, hash, sha256, erro);
}

}  // namespace zu::launcher
