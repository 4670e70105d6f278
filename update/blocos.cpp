#include "update/blocos.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/handle.h"
#include "core/hash.h"
#include "core/log.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "update/blocos_plano.h"
#include "update/caminhos.h"
#include "update/cliente.h"
#include "update/faixa.h"
#include "update/prefixo.h"
#include "update/seguidor_hash.h"

namespace zu::launcher {
namespace {

// The file on the disk, which anybody may go on using, and even change.
class ArquivoVelho {
 public:
    explicit ArquivoVelho(const std::filesystem::path& caminho)
        : arquivo_(CreateFileW(caminho.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                               nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr)),
          tamanho_(Olhar(modificado_)) {}

    [[nodiscard]] std::uint64_t Tamanho() const { return tamanho_; }

    // As many bytes as there are. False when it cannot be read, or is not what it was when it was opened.
    bool Ler(std::uint64_t onde, std::span<std::uint8_t> bytes, std::size_t& lidos) const {
        lidos = 0;
        while (lidos < bytes.size() && onde + lidos < tamanho_) {
            OVERLAPPED lugar{};
            lugar.Offset = static_cast<DWORD>(onde + lidos);
            lugar.OffsetHigh = static_cast<DWORD>((onde + lidos) >> 32);
            const auto pedidos = static_cast<DWORD>(std::min<std::uint64_t>(bytes.size() - lidos, kMaiorLeitura));
            DWORD agora = 0;
            if (ReadFile(arquivo_.Valor(), bytes.data() + lidos, pedidos, &agora, &lugar) == 0 || agora == 0)
                return false;
            lidos += agora;
        }
        return !Mudou();
    }

 private:
    static constexpr std::uint64_t kMaiorLeitura = 1 << 20;

    std::uint64_t Olhar(std::uint64_t& modificado) const {
        FILETIME hora{};
        LARGE_INTEGER tamanho{};
        if (!arquivo_ || GetFileTime(arquivo_.Valor(), nullptr, nullptr, &hora) == 0 ||
            GetFileSizeEx(arquivo_.Valor(), &tamanho) == 0) {
            return 0;
        }
        modificado = std::uint64_t{hora.dwHighDateTime} << 32 | hora.dwLowDateTime;
        return static_cast<std::uint64_t>(tamanho.QuadPart);
    }
    [[nodiscard]] bool Mudou() const {
        std::uint64_t modificado = 0;
        return Olhar(modificado) != tamanho_ || modificado != modificado_;
    }

    HandleArquivo arquivo_;
    std::uint64_t modificado_ = 0;
    std::uint64_t tamanho_ = 0;  // 0 also when there is nothing to read
};

}  // namespace

// One item's way. Each step returns false with the reason in `erro_` when it cannot go on.
class ReusoDeBlocos::Montagem {
 public:
    Montagem(ReusoDeBlocos& dono, const Transferencia& t, update::IndiceListado listado)
        : dono_(dono),
          t_(t),
          listado_(std::move(listado)),
          velho_(CaminhoNoCliente(update::NormalizarCaminho(t.item.caminho))) {}

    // Before anything is asked of the server.
    [[nodiscard]] bool PodeValer() const {
        constexpr std::uint64_t kVezesMenor = 8;
        const std::uint64_t presentes =
            std::max(TamanhoDoArquivo(t_.destino), TamanhoDasPartes(t_.destino, t_.item.partes));
        return velho_.Tamanho() != 0 && presentes < t_.item.tamanho &&
               listado_.tamanho <= update::LimiteDoIndice(t_.item.tamanho) &&
               listado_.tamanho <= (t_.item.tamanho - presentes) / kVezesMenor;
    }

    // Few do this at a time.
    bool Preparar() {
        using namespace std::chrono_literals;
        while (!dono_.buscas_.try_acquire_for(50ms))
            if (Cancelada()) return false;
        struct Vez {
            std::counting_semaphore<2>& buscas;
            ~Vez() { buscas.release(); }
        } const vez{dono_.buscas_};
        update::IndiceDeBlocos indice;
        std::vector<std::uint64_t> onde;
        return BuscarIndice(indice) && BuscarNoVelho(indice, onde) && Planejar(indice, onde);
    }

    bool Montar(Andamento& andamento, Reuso& reuso) {
        if (t_.item.partes > 0 && !JuntarPrefixo(t_, parte_))
            return !Cancelada() && Falhar("não foi possível juntar as partes");
        if (TamanhoDoArquivo(t_.destino) != presentes_) return Falhar("o começo mudou");
        HandleArquivo destino(CreateFileW(t_.destino.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!destino) return FalharAoGravar();
        SeguidorDeHash seguidor(t_.destino);
        std::uint64_t escritos = presentes_;
        const auto gravar = [&](std::span<const std::uint8_t> bytes) {
            DWORD agora = 0;
            const auto tamanho = static_cast<DWORD>(bytes.size());
            if (WriteFile(destino.Valor(), bytes.data(), tamanho, &agora, nullptr) == 0 || agora != tamanho)
                return FalharAoGravar();
            escritos += agora;
            seguidor.Avancar(escritos);
            return true;
        };
        const auto doDisco = [&](std::span<const std::uint8_t> bytes) {
            if (Cancelada() || !gravar(bytes)) return false;
            doDisco_ += bytes.size();
            andamento.SomarReaproveitados(static_cast<std::int64_t>(bytes.size()));
            return true;
        };
        const bool feito = update::Montar(
            plano_, {[&](std::uint64_t onde, std::span<std::uint8_t> bytes) { return LerVelho(onde, bytes); },
                     [&](const update::Trecho& trecho) { return BuscarFaixa(trecho, gravar); }, doDisco});
        if (!feito) return false;
        reuso.hash = seguidor.Terminar();
        reuso.arquivo = std::move(destino);
        return true;
    }

    // The plain download takes over what has been put together so far.
    void Devolver() const {
        if (parte_ != 0) RepartirPrefixo(t_, parte_);
    }

    [[nodiscard]] bool Interrompida() const { return interrompida_; }
    [[nodiscard]] const std::string& Erro() const { return erro_; }
    [[nodiscard]] std::uint64_t DoDisco() const { return doDisco_; }
    // Bytes of the item that need not come.
    [[nodiscard]] std::uint64_t NoDisco() const { return t_.item.tamanho - plano_.daRede; }

 private:
    bool Falhar(std::string erro) {
        erro_ = std::move(erro);
        return false;
    }
    bool FalharAoGravar() {
        interrompida_ = true;  // a plain download could not write either
        return Falhar(Formatar("disco cheio ou sem permissão em {}", ParaUtf8(t_.destino.native())));
    }
    bool Cancelada() {
        if (!t_.cancelar.load()) return false;
        interrompida_ = true;
        Falhar("cancelado");
        return true;
    }

    bool BuscarIndice(update::IndiceDeBlocos& indice) {
        std::string bytes;
        const std::wstring url = UrlDoItem(t_.item, update::kSufixoDoIndice);
        if (!HttpBaixarTexto(url, bytes, erro_, listado_.tamanho, &t_.cancelar)) {
            interrompida_ = t_.cancelar.load();
            return false;
        }
        const Sha256Digest sha256 = Sha256Of({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        const update::ItemLista& item = t_.item;
        const auto partes = [&] { return (indice.tamanho - 1) / indice.parte + 1; };
        const bool serve = bytes.size() == listado_.tamanho && ParaHex(sha256) == listado_.sha256 &&
                           update::LerIndice(bytes, indice) && indice.tamanho == item.tamanho &&
                           (indice.parte == 0 ? item.partes == 0 : item.partes == partes());
        return serve || Falhar("o índice de blocos não confere");
    }

    bool BuscarNoVelho(const update::IndiceDeBlocos& indice, std::vector<std::uint64_t>& onde) {
        std::uint64_t lidosAteAqui = 0;
        const auto ler = [&](std::span<std::uint8_t> bytes, std::size_t& lidos) {
            const bool leu = !Cancelada() && velho_.Ler(lidosAteAqui, bytes, lidos);
            lidosAteAqui += lidos;
            return leu;
        };
        return update::BuscarBlocos(indice, ler, onde) || (!interrompida_ && FalharNoVelho());
    }

    bool FalharNoVelho() { return Falhar("o arquivo antigo mudou ou não pode ser lido"); }

    bool Planejar(const update::IndiceDeBlocos& indice, std::span<const std::uint64_t> onde) {
        parte_ = indice.parte;
        presentes_ = PrefixoPresente(t_, parte_);
        if (presentes_ >= t_.item.tamanho) return Falhar("já veio tudo");
        plano_ = update::Planejar(indice, onde, presentes_);
        return plano_.ValeAPena() || Falhar("pouco em comum");
    }

    bool LerVelho(std::uint64_t onde, std::span<std::uint8_t> bytes) {
        std::size_t lidos = 0;
        return (velho_.Ler(onde, bytes, lidos) && lidos == bytes.size()) || FalharNoVelho();
    }

    bool BuscarFaixa(const update::Trecho& trecho, const std::function<bool(std::span<const std::uint8_t>)>& gravar) {
        FaixaHttp faixa{.inicio = trecho.inicio, .tamanho = trecho.tamanho, .total = t_.item.tamanho};
        std::string sufixo;
        if (parte_ != 0) {
            const std::uint64_t numero = trecho.inicio / parte_;
            sufixo = SufixoDaParte(static_cast<std::uint32_t>(numero + 1));
            faixa.inicio -= numero * parte_;
            faixa.total = std::min(parte_, t_.item.tamanho - numero * parte_);
        }
        const auto receber = [&](std::span<const std::uint8_t> bytes) {
            vieram_ = true;
            if (!gravar(bytes)) return false;
            t_.progresso(bytes.size());
            return true;
        };
        const FimDaFaixa fim = HttpBaixarFaixa(UrlDoItem(t_.item, sufixo), faixa, receber, t_.cancelar, erro_);
        // A connection that breaks may come back; one that never gave anything may be why.
        if (fim == FimDaFaixa::kInterrompida && (vieram_ || t_.cancelar.load())) interrompida_ = true;
        return fim == FimDaFaixa::kInteira;
    }

    ReusoDeBlocos& dono_;
    const Transferencia& t_;
    const update::IndiceListado listado_;
    const ArquivoVelho velho_;
    update::Plano plano_;
    std::uint64_t parte_ = 0;      // known once the index is
    std::uint64_t presentes_ = 0;  // bytes that were there before
    std::uint64_t doDisco_ = 0;
    bool vieram_ = false;  // bytes of a range
    bool interrompida_ = false;
    std::string erro_;
};

void ReusoDeBlocos::Esquecer() {
    const std::lock_guard guarda(trava_);
    recusados_.clear();
    avisados_.clear();
}

void ReusoDeBlocos::Usar(const update::UpdateList& lista) {
    const std::lock_guard guarda(trava_);
    listados_.clear();
    for (const update::IndiceListado& listado : lista.blocos)
        listados_[update::ChaveDoCaminho(listado.caminho)] = listado;
}

std::optional<update::IndiceListado> ReusoDeBlocos::Achar(const std::string& chave) {
    const std::lock_guard guarda(trava_);
    const auto listado = listados_.find(chave);
    if (listado == listados_.end() || recusados_.contains(chave)) return std::nullopt;
    return listado->second;
}

bool ReusoDeBlocos::PrimeiraVez(const std::string& chave) {
    const std::lock_guard guarda(trava_);
    return avisados_.insert(chave).second;
}

void ReusoDeBlocos::Desistir(const update::ItemLista& item, const std::string& motivo) {
    LogLinha("[update] {}: blocos não reaproveitados ({})", update::NormalizarCaminho(item.caminho), motivo);
    const std::lock_guard guarda(trava_);
    recusados_.insert(update::ChaveDoCaminho(item.caminho));
}

Reuso ReusoDeBlocos::Baixar(const Transferencia& t, Andamento& andamento, std::string& erro) {
    Reuso reuso;
    const std::string chave = update::ChaveDoCaminho(t.item.caminho);
    const std::optional<update::IndiceListado> listado = Achar(chave);
    if (!listado) return reuso;
    Montagem montagem(*this, t, *listado);
    if (!montagem.PodeValer()) return reuso;
    bool feito = montagem.Preparar();
    if (feito) {
        constexpr double kPorMiB = 1.0 / (1 << 20);
        if (PrimeiraVez(chave)) {
            LogLinha("[update] {}: {:.1f} de {:.1f} MB já estavam no disco", update::NormalizarCaminho(t.item.caminho),
                     static_cast<double>(montagem.NoDisco()) * kPorMiB, static_cast<double>(t.item.tamanho) * kPorMiB);
        }
        feito = montagem.Montar(andamento, reuso);
    }
    reuso.doDisco = montagem.DoDisco();
    if (feito) {
        reuso.fim = FimDoReuso::kMontado;
    } else if (montagem.Interrompida()) {
        reuso.fim = FimDoReuso::kInterrompido;
        erro = montagem.Erro();
    } else {
        Desistir(t.item, montagem.Erro());
        montagem.Devolver();
    }
    return reuso;
}

}  // namespace zu::launcher
