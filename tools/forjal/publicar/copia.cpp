#include "tools/forjal/publicar/copia.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>

#include "core/arquivo.h"
#include "core/crc32.h"
#include "core/formato.h"
#include "core/handle.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tools/forjal/relatorio.h"
#include "update/blocos_indice.h"

namespace zu::launcher::forjal {
namespace {

constexpr DWORD kBloco = 1024 * 1024;

using Bloco = std::span<const std::uint8_t>;

HandleArquivo AbrirParaLer(const std::filesystem::path& caminho) {
    return HandleArquivo(CreateFileW(caminho.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

class Copia {
 public:
    Copia(const std::filesystem::path& origem, const std::filesystem::path& saida, Troca* troca,
          AndamentoDaCopia andamento, ResultadoDaCopia& resultado)
        : origem_(AbrirParaLer(origem)), saida_(saida), troca_(troca), andamento_(andamento), resultado_(resultado) {}

    void ComIndice(const ArquivoDoCliente& arquivo, std::uint64_t parte) {
        indice_.emplace(arquivo.tamanho, parte);
        comIndice_ = arquivo.caminho;
    }

    void Rodar(std::span<const Trecho> trechos) {
        if (!origem_) {
            FalharNoSistema("não foi possível abrir");
            return;
        }
        if (!sha256_.hash) {
            resultado_.erro = "o Windows não oferece SHA-256";
            return;
        }
        if (!std::ranges::all_of(trechos, [this](const Trecho& trecho) { return Preparar(trecho); })) return;
        DWORD lidos = 0;
        if (ReadFile(origem_.Valor(), bloco_.get(), 1, &lidos, nullptr) == 0 || lidos != 0) {
            resultado_.erro = kMudou;
            return;
        }
        resultado_.crc = ~crc_;
        Sha256Finish(sha256_, resultado_.sha256);
        if (indice_) PrepararIndice();
    }

 private:
    // Whether a file as long as this one stands there. False for a folder too, which is an error.
    bool MesmoTamanho(const Trecho& trecho, const std::filesystem::path& destino) {
        InfoArquivo info;
        if (!LerInfoArquivo(destino, info)) return false;
        if (info.Pasta()) resultado_.erro = Formatar("em --saida, {} é uma pasta", trecho.caminho);
        return !info.Pasta() && info.tamanho == trecho.tamanho;
    }

    bool Preparar(const Trecho& trecho) {
        const std::filesystem::path destino = saida_ / DeUtf8(trecho.caminho);
        const bool mesmoTamanho = MesmoTamanho(trecho, destino);
        if (!resultado_.erro.empty()) return false;
        std::uint32_t crc = kCrc32Inicial;
        bool igual = false;
        const bool ok = mesmoTamanho ? Comparar(trecho, destino, crc, igual) && (igual || Recopiar(trecho, crc))
                                     : Copiar(trecho, crc);
        if (!ok) return false;
        resultado_.crcDosTrechos.push_back(~crc);
        resultado_.copiados += igual ? 0 : 1;
        return true;
    }

    // It comes from the same reading as the digests.
    void PrepararIndice() {
        const std::string bytes = indice_->Terminar();
        if (bytes.empty()) return;
        const Bloco bloco(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        const Trecho trecho{.caminho = NomeDoIndice(comIndice_), .tamanho = bytes.size()};
        const std::filesystem::path destino = saida_ / DeUtf8(trecho.caminho);
        std::string atual;
        resultado_.indiceNovo = !MesmoTamanho(trecho, destino) || !LerArquivoInteiro(destino, atual) || atual != bytes;
        if (!resultado_.erro.empty()) return;
        const ResultadoHash hash = HashDoTexto(bytes);
        resultado_.indice = {.caminho = comIndice_, .sha256 = ParaHex(hash.sha256), .tamanho = hash.bytes};
        resultado_.crcDoIndice = hash.crc;
        if (!resultado_.indiceNovo || troca_ == nullptr) return;
        Troca::Arquivo novo(*troca_, trecho.caminho);
        if (!novo || !novo.Escrever(bloco) || !novo.Concluir()) FalharNaEscrita(trecho);
    }

    bool Comparar(const Trecho& trecho, const std::filesystem::path& destino, std::uint32_t& crc, bool& igual) {
        const HandleArquivo antigo = AbrirParaLer(destino);
        igual = static_cast<bool>(antigo);
        return Ler(trecho, [&](Bloco bloco) {
            Somar(bloco, crc);
            igual = igual && ProximoIgual(antigo, bloco);
            return true;
        });
    }

    bool Copiar(const Trecho& trecho, std::uint32_t& crc) {
        return Escrever(trecho, [&](Bloco bloco) { Somar(bloco, crc); });
    }

    // The second reading, which must find what the first one hashed.
    bool Recopiar(const Trecho& trecho, std::uint32_t crc) {
        if (troca_ == nullptr) return true;
        std::uint32_t outro = kCrc32Inicial;
        if (!Escrever(trecho, [&](Bloco bloco) { outro = Crc32Update(outro, bloco.data(), bloco.size()); })) {
            return false;
        }
        if (outro != crc) resultado_.erro = kMudou;
        return outro == crc;
    }

    bool Escrever(const Trecho& trecho, const std::function<void(Bloco)>& visita) {
        std::optional<Troca::Arquivo> novo;
        if (troca_ != nullptr && !novo.emplace(*troca_, trecho.caminho)) return FalharNaEscrita(trecho);
        const auto passar = [&](Bloco bloco) {
            visita(bloco);
            return !novo || novo->Escrever(bloco) || FalharNaEscrita(trecho);
        };
        return Ler(trecho, passar) && (!novo || novo->Concluir() || FalharNaEscrita(trecho));
    }

    bool Ler(const Trecho& trecho, const std::function<bool(Bloco)>& visita) {
        LARGE_INTEGER inicio{};
        inicio.QuadPart = static_cast<LONGLONG>(trecho.inicio);
        if (SetFilePointerEx(origem_.Valor(), inicio, nullptr, FILE_BEGIN) == 0)
            return FalharNoSistema("erro de leitura");
        for (std::uint64_t restam = trecho.tamanho; restam > 0;) {
            if (andamento_.parar) {
                resultado_.erro = kInterrompido;
                return false;
            }
            DWORD lidos = 0;
            const DWORD pedido = static_cast<DWORD>(std::min<std::uint64_t>(restam, kBloco));
            if (ReadFile(origem_.Valor(), bloco_.get(), pedido, &lidos, nullptr) == 0) {
                return FalharNoSistema("erro de leitura");
            }
            if (lidos == 0) {
                resultado_.erro = kMudou;
                return false;
            }
            if (!visita({bloco_.get(), lidos})) return false;
            restam -= lidos;
        }
        return true;
    }

    void Somar(Bloco bloco, std::uint32_t& crcDoTrecho) {
        crcDoTrecho = Crc32Update(crcDoTrecho, bloco.data(), bloco.size());
        crc_ = Crc32Update(crc_, bloco.data(), bloco.size());
        Sha256Feed(sha256_, bloco.data(), bloco.size());
        if (indice_) indice_->Alimentar(bloco.data(), bloco.size());
        andamento_.bytes += bloco.size();
    }

    bool ProximoIgual(const HandleArquivo& antigo, Bloco bloco) {
        DWORD lidos = 0;
        return ReadFile(antigo.Valor(), outro_.get(), static_cast<DWORD>(bloco.size()), &lidos, nullptr) != 0 &&
               lidos == bloco.size() && std::memcmp(outro_.get(), bloco.data(), lidos) == 0;
    }

    bool FalharNoSistema(std::string_view texto) {
        resultado_.erro = Formatar("{} (erro {})", texto, GetLastError());
        return false;
    }
    bool FalharNaEscrita(const Trecho& trecho) {
        resultado_.erro = Formatar("não foi possível gravar {} em --saida (erro {})", trecho.caminho, GetLastError());
        return false;
    }

    HandleArquivo origem_;
    const std::filesystem::path& saida_;
    Troca* const troca_;
    const AndamentoDaCopia andamento_;
    ResultadoDaCopia& resultado_;
    std::unique_ptr<std::uint8_t[]> bloco_ = std::make_unique_for_overwrite<std::uint8_t[]>(kBloco);
    std::unique_ptr<std::uint8_t[]> outro_ = std::make_unique_for_overwrite<std::uint8_t[]>(kBloco);
    std::uint32_t crc_ = kCrc32Inicial;
    Sha256Incremental sha256_ = Sha256Begin();
    std::optional<update::EscritorDeIndice> indice_;
    std::string comIndice_;  // the file's path in the list
};

}  // namespace

ResultadoDaCopia PrepararArquivo(const std::filesystem::path& cliente, const ArquivoDoCliente& arquivo,
                                 std::uint64_t bytesPorParte, const std::filesystem::path& saida, Troca* troca,
                                 AndamentoDaCopia andamento) {
    ResultadoDaCopia resultado;
    Copia copia(cliente / DeUtf8(arquivo.caminho), saida, troca, andamento, resultado);
    if (arquivo.comIndice) copia.ComIndice(arquivo, arquivo.partes > 0 ? bytesPorParte : 0);
    copia.Rodar(TrechosDe(arquivo, bytesPorParte));
    return resultado;
}

}  // namespace zu::launcher::forjal
