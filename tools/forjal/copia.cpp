#include "tools/forjal/copia.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>

#include "core/arquivo.h"
#include "core/crc32.h"
#include "core/formato.h"
#include "core/handle.h"
#include "core/utf16.h"

namespace zu::launcher::forjal {
namespace {

constexpr DWORD kBloco = 1024 * 1024;

using Bloco = std::span<const std::uint8_t>;

HandleArquivo AbrirParaLer(const std::filesystem::path& caminho) {
    return HandleArquivo(CreateFileW(caminho.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

// A file that takes its name only when it is complete.
class ArquivoEmEscrita {
 public:
    explicit ArquivoEmEscrita(const std::filesystem::path& destino) : destino_(destino), temporario_(destino) {
        temporario_ += L".forjal.tmp";
        if (!CriarPastas(destino.parent_path())) return;
        arquivo_.Trocar(
            CreateFileW(temporario_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        criado_ = static_cast<bool>(arquivo_);
    }
    ~ArquivoEmEscrita() {
        arquivo_.Fechar();
        if (criado_) DeleteFileW(temporario_.c_str());
    }
    ArquivoEmEscrita(const ArquivoEmEscrita&) = delete;
    ArquivoEmEscrita& operator=(const ArquivoEmEscrita&) = delete;

    // False: it could not be created.
    explicit operator bool() const { return criado_; }

    bool Escrever(Bloco bloco) {
        DWORD escritos = 0;
        return WriteFile(arquivo_.Valor(), bloco.data(), static_cast<DWORD>(bloco.size()), &escritos, nullptr) != 0 &&
               escritos == bloco.size();
    }

    bool Concluir() {
        if (FlushFileBuffers(arquivo_.Valor()) == 0) return false;
        arquivo_.Fechar();
        if (!MoverSobre(temporario_, destino_)) return false;
        criado_ = false;
        return true;
    }

 private:
    const std::filesystem::path destino_;
    std::filesystem::path temporario_;
    HandleArquivo arquivo_;
    bool criado_ = false;
};

class Copia {
 public:
    Copia(const std::filesystem::path& origem, const std::filesystem::path& saida, std::atomic<std::uint64_t>& bytes,
          const std::atomic<bool>& parar, ResultadoDaCopia& resultado)
        : origem_(AbrirParaLer(origem)), saida_(saida), bytes_(bytes), parar_(parar), resultado_(resultado) {}

    void Rodar(std::span<const Trecho> trechos) {
        if (!origem_) {
            FalharNoSistema("não foi possível abrir");
            return;
        }
        if (!sha256_.hash) {
            resultado_.erro = "o Windows não oferece SHA-256";
            return;
        }
        if (!std::ranges::all_of(trechos, [this](const Trecho& trecho) { return Publicar(trecho); })) return;
        DWORD lidos = 0;
        if (ReadFile(origem_.Valor(), bloco_.get(), 1, &lidos, nullptr) == 0 || lidos != 0) {
            resultado_.erro = kMudou;
            return;
        }
        resultado_.crc = ~crc_;
        Sha256Finish(sha256_, resultado_.sha256);
    }

 private:
    bool Publicar(const Trecho& trecho) {
        const std::filesystem::path destino = saida_ / DeUtf8(trecho.caminho);
        InfoArquivo info;
        const bool existe = LerInfoArquivo(destino, info);
        if (existe && info.Pasta()) {
            resultado_.erro = Formatar("em --saida, {} é uma pasta", trecho.caminho);
            return false;
        }
        std::uint32_t crc = kCrc32Inicial;
        bool igual = false;
        const bool ok = existe && info.tamanho == trecho.tamanho
                            ? Comparar(trecho, destino, crc, igual) && (igual || Recopiar(trecho, destino, crc))
                            : Copiar(trecho, destino, crc);
        if (!ok) return false;
        resultado_.crcDosTrechos.push_back(~crc);
        resultado_.copiados += igual ? 0 : 1;
        return true;
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

    bool Copiar(const Trecho& trecho, const std::filesystem::path& destino, std::uint32_t& crc) {
        ArquivoEmEscrita novo(destino);
        if (!novo) return FalharNaEscrita(trecho);
        return Ler(trecho,
                   [&](Bloco bloco) {
                       Somar(bloco, crc);
                       return novo.Escrever(bloco) || FalharNaEscrita(trecho);
                   }) &&
               (novo.Concluir() || FalharNaEscrita(trecho));
    }

    // The second reading, which must find what the first one hashed.
    bool Recopiar(const Trecho& trecho, const std::filesystem::path& destino, std::uint32_t crc) {
        ArquivoEmEscrita novo(destino);
        if (!novo) return FalharNaEscrita(trecho);
        std::uint32_t outro = kCrc32Inicial;
        const bool lido = Ler(trecho, [&](Bloco bloco) {
            outro = Crc32Update(outro, bloco.data(), bloco.size());
            return novo.Escrever(bloco) || FalharNaEscrita(trecho);
        });
        if (!lido) return false;
        if (outro != crc) {
            resultado_.erro = kMudou;
            return false;
        }
        return novo.Concluir() || FalharNaEscrita(trecho);
    }

    bool Ler(const Trecho& trecho, const std::function<bool(Bloco)>& visita) {
        LARGE_INTEGER inicio{};
        inicio.QuadPart = static_cast<LONGLONG>(trecho.inicio);
        if (SetFilePointerEx(origem_.Valor(), inicio, nullptr, FILE_BEGIN) == 0)
            return FalharNoSistema("erro de leitura");
        for (std::uint64_t restam = trecho.tamanho; restam > 0;) {
            if (parar_) {
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
        bytes_ += bloco.size();
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
    std::atomic<std::uint64_t>& bytes_;
    const std::atomic<bool>& parar_;
    ResultadoDaCopia& resultado_;
    std::unique_ptr<std::uint8_t[]> bloco_ = std::make_unique_for_overwrite<std::uint8_t[]>(kBloco);
    std::unique_ptr<std::uint8_t[]> outro_ = std::make_unique_for_overwrite<std::uint8_t[]>(kBloco);
    std::uint32_t crc_ = kCrc32Inicial;
    Sha256Incremental sha256_ = Sha256Begin();
};

}  // namespace

ResultadoDaCopia PublicarArquivo(const std::filesystem::path& origem, std::span<const Trecho> trechos,
                                 const std::filesystem::path& saida, std::atomic<std::uint64_t>& bytes,
                                 const std::atomic<bool>& parar) {
    ResultadoDaCopia resultado;
    Copia(origem, saida, bytes, parar, resultado).Rodar(trechos);
    return resultado;
}

}  // namespace zu::launcher::forjal
