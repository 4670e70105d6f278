#include <windows.h>

#include <algorithm>
#include <memory>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "update/hash_arquivo.h"
#include "update/lista.h"
#include "update/transferencia.h"

namespace zu::launcher {
namespace {

constexpr DWORD kBlocoDeJuncao = 1024 * 1024;

// The highest part that is on the disk; 0 when there is none.
std::uint32_t UltimaPresente(const Transferencia& t) {
    InfoArquivo info;
    std::uint32_t parte = t.item.partes;
    while (parte > 0 && !LerInfoArquivo(CaminhoDaParte(t.destino, parte), info))
        --parte;
    return parte;
}

// A server answers a range that starts at the end of a file with 416, which throws the part away. A part that is known
// to be complete is asked for its last byte again instead.
void RecuarUmByte(const std::filesystem::path& parte) {
    const std::uint64_t tamanho = TamanhoDoArquivo(parte);
    if (tamanho > 0) EncurtarArquivo(parte, tamanho - 1);
}

// The file of a part, still empty, tells that the part before it is complete.
void Comecar(const std::filesystem::path& parte) {
    const HandleArquivo arquivo(
        CreateFileW(parte.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// A part's own size is not known; `resta` is what the whole has left for it.
bool BaixarParte(const Transferencia& t, std::uint32_t parte, std::uint64_t resta, std::string& erro) {
    const std::filesystem::path local = CaminhoDaParte(t.destino, parte);
    // On the disk, so that a power cut costs one part at most.
    const auto baixar = [&] {
        Recebido recebido;
        if (!HttpBaixarArquivo(UrlDoItem(t.item, SufixoDaParte(parte)), local, 0, t.progresso, t.cancelar, erro, resta,
                               &recebido)) {
            return false;
        }
        if (FlushFileBuffers(recebido.arquivo.Valor()) != 0) return true;
        erro = Formatar("disco cheio ou sem permissão em {}", ParaUtf8(local.native()));
        return false;
    };
    const bool havia = TamanhoDoArquivo(local) > 0;
    if (baixar()) return true;
    // What an older version left was thrown away: the part starts anew, which is not an attempt of the item's.
    const bool jogadaFora = havia && TamanhoDoArquivo(local) == 0 && erro != kErroDeSobra && !t.cancelar.load();
    if (!jogadaFora) return false;
    erro.clear();
    return baixar();
}

bool BaixarPartes(const Transferencia& t, std::string& erro) {
    const bool inteiro = TamanhoDasPartes(t.destino, t.item.partes) == t.item.tamanho;
    const std::uint32_t ultima = UltimaPresente(t);
    std::uint64_t resta = t.item.tamanho;
    for (std::uint32_t parte = 1; parte <= t.item.partes; ++parte) {
        const std::filesystem::path local = CaminhoDaParte(t.destino, parte);
        if (parte < ultima || inteiro) RecuarUmByte(local);
        if (!BaixarParte(t, parte, resta, erro)) return false;
        resta -= std::min(TamanhoDoArquivo(local), resta);
        if (parte < t.item.partes) Comecar(CaminhoDaParte(t.destino, parte + 1));
    }
    return true;
}

// False when the part cannot be copied, or has more than `resta` bytes, or the run was cancelled.
bool AnexarParte(const Transferencia& t, HANDLE saida, std::uint32_t parte, std::uint8_t* bloco, std::uint64_t& resta) {
    const HandleArquivo entrada(CreateFileW(CaminhoDaParte(t.destino, parte).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                            nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!entrada) return false;
    while (!t.cancelar.load()) {
        DWORD lidos = 0;
        DWORD escritos = 0;
        if (ReadFile(entrada.Valor(), bloco, kBlocoDeJuncao, &lidos, nullptr) == 0 || lidos > resta) return false;
        if (lidos == 0) return true;
        if (WriteFile(saida, bloco, lidos, &escritos, nullptr) == 0 || escritos != lidos) return false;
        resta -= lidos;
    }
    return false;
}

bool JuntarPartes(const Transferencia& t, std::string& erro) {
    const HandleArquivo saida = AbrirParaEscrever(t.destino, GENERIC_WRITE, 0, CREATE_ALWAYS);
    const auto bloco = std::make_unique_for_overwrite<std::uint8_t[]>(kBlocoDeJuncao);
    std::uint64_t resta = t.item.tamanho;
    bool ok = static_cast<bool>(saida);
    for (std::uint32_t parte = 1; ok && parte <= t.item.partes; ++parte)
        ok = AnexarParte(t, saida.Valor(), parte, bloco.get(), resta);
    if (!ok) erro = t.cancelar.load() ? "cancelado" : "não foi possível juntar as partes";
    return ok;
}

}  // namespace

std::uint64_t TamanhoDasPartes(const std::filesystem::path& destino, std::uint32_t partes) {
    std::uint64_t soma = 0;
    for (std::uint32_t parte = 1; parte <= partes; ++parte)
        soma += TamanhoDoArquivo(CaminhoDaParte(destino, parte));
    return soma;
}

void ApagarPartes(const std::filesystem::path& destino, std::uint32_t partes) {
    for (std::uint32_t parte = 1; parte <= partes; ++parte)
        DeleteFileW(CaminhoDaParte(destino, parte).c_str());
}

bool BaixarEmPartes(const Transferencia& t, std::string& erro) {
    if (!BaixarPartes(t, erro)) {
        // One of those that came is not what it should be, and nothing tells which.
        if (erro == kErroDeSobra) ApagarPartes(t.destino, t.item.partes);
        return false;
    }
    const bool juntou = JuntarPartes(t, erro);
    if (!juntou && !t.cancelar.load()) ApagarPartes(t.destino, t.item.partes);
    return juntou;
}

}  // namespace zu::launcher
