// Atualizador::BaixarItem: one file of the list, fetched and proved.

#include <windows.h>

#include <utility>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "update/atualizador.h"
#include "update/blocos.h"
#include "update/caminhos.h"
#include "update/hash_arquivo.h"
#include "update/lista.h"
#include "update/seguidor_hash.h"
#include "update/transferencia.h"
#include "update/url.h"

namespace zu::launcher {
namespace {

constexpr std::uint64_t kMenorSeguido = 4ULL << 20;  // below it, reading again costs less than a thread

// A file is hashed while it arrives: a small one as it is written, when nothing of it was there. Not ok when that was
// not done; then it is read once it is complete.
bool BaixarInteiro(const Transferencia& t, ResultadoHash& hash, HandleArquivo& arquivo, std::string& erro) {
    Recebido recebido{.vazio = t.vazio};
    const auto baixar = [&](const ProgressCallback& progresso) {
        const bool veio = HttpBaixarArquivo(UrlDoItem(t.item, ""), t.destino, t.item.tamanho, progresso, t.cancelar,
                                            erro, t.item.tamanho, &recebido);
        arquivo = std::move(recebido.arquivo);
        return veio;
    };
    if (t.item.tamanho < kMenorSeguido) {
        HashCorrente corrente;
        recebido.bloco = [&](const void* bloco, DWORD tamanho) { corrente.Alimentar(bloco, tamanho); };
        if (!baixar(t.progresso)) return false;
        hash = corrente.Terminar(true);
        hash.ok = hash.bytes == t.item.tamanho;
        return true;
    }

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

bool Igual(const ResultadoHash& hash, const update::ItemLista& item, const std::string& sha256) {
    return hash.ok && hash.bytes == item.tamanho && hash.crc == item.crc &&
           (item.sha256.empty() || sha256 == item.sha256);
}

// Reads the file, also when somebody holds a fresh one for a moment.
ResultadoHash Ler(const std::filesystem::path& caminho, const std::atomic<bool>& cancelar) {
    constexpr std::chrono::milliseconds kPasso{50};
    Paciencia paciencia(Paciencia::kPorArquivo, &cancelar);
    ResultadoHash hash = HashArquivo(caminho, 0, {}, &cancelar);
    while (!hash.ok && hash.bytes == 0 && paciencia.Gastar(kPasso))
        hash = HashArquivo(caminho, 0, {}, &cancelar);
    return hash;
}

}  // namespace

std::wstring UrlDoItem(const update::ItemLista& item, std::string_view sufixo) {
    const std::string caminho = update::NormalizarCaminho(item.caminho).append(sufixo);
    return DeUtf8(Formatar("{}?v={:08x}", MontarUrl(ObterConfig().urlUpdate, caminho), item.crc));
}

bool Atualizador::ConferirItem(const update::ItemLista& item, const std::filesystem::path& arquivo,
                               ItemBaixado& baixado, std::string& erro, ResultadoHash hash) {
    if (!hash.ok) {
        baixado.arquivo.Fechar();
        hash = Ler(arquivo, cancelar_);
    }
    if (!hash.ok && Cancelado()) {
        erro = "cancelado";
        return false;
    }
    baixado.sha256 = ParaHex(hash.sha256);
    if (Igual(hash, item, baixado.sha256)) return true;
    const std::string crcs =
        hash.crc == item.crc ? std::string() : Formatar(": CRC {:08X} esperado {:08X}", hash.crc, item.crc);
    erro = Formatar("o arquivo baixado não confere (CRC32/SHA-256{})", crcs);
    baixado.arquivo.Fechar();
    DeleteFileW(arquivo.c_str());
    return false;
}

bool Atualizador::BaixarItem(const update::ItemLista& item, const std::filesystem::path& destino,
                             std::atomic<std::uint64_t>& bytesBaixados, ItemBaixado& baixado, std::string& erro,
                             bool vazio) {
    baixado = {};
    const Transferencia t{item, destino, [&bytesBaixados](std::uint64_t bytes) { bytesBaixados += bytes; }, cancelar_,
                          vazio};
    Reuso reuso = blocos_->Baixar(t, andamento_, erro);
    if (reuso.fim == FimDoReuso::kInterrompido) return false;
    if (reuso.fim == FimDoReuso::kMontado) {
        baixado.arquivo = std::move(reuso.arquivo);
        if (ConferirItem(item, destino, baixado, erro, reuso.hash)) return true;
        if (Cancelado()) return false;
        // Blocks that only seemed to match, or bytes that were wrong before: all of it comes anew.
        andamento_.SomarReaproveitados(-static_cast<std::int64_t>(reuso.doDisco));
        blocos_->Desistir(item, erro);
        erro.clear();
    }
    ResultadoHash hash;
    if (item.partes == 0) {
        return BaixarInteiro(t, hash, baixado.arquivo, erro) && ConferirItem(item, destino, baixado, erro, hash);
    }
    // Joined by a run that was interrupted before it could use the file.
    const bool junto =
        item.tamanho > 0 && TamanhoDoArquivo(destino) == item.tamanho && ConferirItem(item, destino, baixado, erro);
    if (!junto && (Cancelado() || !BaixarEmPartes(t, erro))) return false;
    if (junto || ConferirItem(item, destino, baixado, erro)) {
        baixado.partes = item.partes;
        return true;
    }
    if (!Cancelado()) ApagarPartes(destino, item.partes);
    return false;
}

bool Atualizador::DescarregarItem(const std::filesystem::path& destino, ItemBaixado& baixado, std::string& erro) const {
    constexpr std::chrono::milliseconds kPasso{50};
    const HandleArquivo arquivo = std::move(baixado.arquivo);
    Paciencia paciencia(Paciencia::kPorArquivo, &cancelar_);
    bool feito = arquivo ? FlushFileBuffers(arquivo.Valor()) != 0 : DescarregarArquivo(destino);
    while (!feito && !arquivo && PodePassar(GetLastError()) && paciencia.Gastar(kPasso))
        feito = DescarregarArquivo(destino);
    if (feito) {
        ApagarPartes(destino, baixado.partes);
    } else {
        erro = baixado.partes > 0 ? "não foi possível juntar as partes"
                                  : Formatar("disco cheio ou sem permissão em {}", ParaUtf8(destino.native()));
    }
    return feito;
}

}  // namespace zu::launcher
