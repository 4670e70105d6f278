#include "update/blocos.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

#include "core/arquivo.h"
#include "core/excecao.h"
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

// A file on the disk, which anybody may go on using, and even change.
class ArquivoEmUso {
 public:
    explicit ArquivoEmUso(const std::filesystem::path& caminho)
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

    // Before anything is asked of the server. What of an item in parts stands in the destination is lost on a plain
    // download, which does not know where its parts begin: the index pays for that alone.
    [[nodiscard]] bool PodeValer() const {
        constexpr std::uint64_t kVezesMenor = 8;
        const std::uint64_t juntos = TamanhoDoArquivo(t_.destino);
        const bool emPartes = t_.item.partes > 0;
        const std::uint64_t presentes = emPartes ? TamanhoDasPartes(t_.destino, t_.item.partes) : juntos;
        return (velho_.Tamanho() != 0 || (emPartes && juntos != 0)) && std::max(juntos, presentes) < t_.item.tamanho &&
               listado_.tamanho <= update::LimiteDoIndice(t_.item.tamanho) &&
               listado_.tamanho <= (t_.item.tamanho - presentes) / kVezesMenor;
    }

    bool Rodar(Andamento& andamento, Reuso& reuso) {
        try {
            return Preparar() && Anunciar() && Montar(andamento, reuso);
        } catch (const std::exception& falha) {
            return Falhar(TextoDaExcecao(falha));  // a plain download takes less memory
        }
    }

    // The plain download takes over what has been put together so far.
    void Devolver() const {
        if (parte_ != 0) RepartirPrefixo(t_, parte_);
    }

    [[nodiscard]] bool Interrompida() const { return interrompida_; }
    [[nodiscard]] const std::string& Erro() const { return erro_; }
    [[nodiscard]] std::uint64_t DoDisco() const { return doDisco_; }

 private:
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
        return BuscarIndice(indice) && Juntar(indice.parte) && ProvarComeco(indice) && BuscarNoVelho(indice, onde) &&
               Planejar(indice, onde);
    }

    bool Anunciar() {
        if (!dono_.Anotar(t_.item)) return true;
        constexpr double kPorMiB = 1.0 / (1 << 20);
        LogLinha("[update] {}: {:.1f} de {:.1f} MB já estavam no disco", update::NormalizarCaminho(t_.item.caminho),
                 static_cast<double>(t_.item.tamanho - plano_.daRede) * kPorMiB,
                 static_cast<double>(t_.item.tamanho) * kPorMiB);
        return true;
    }

    bool Montar(Andamento& andamento, Reuso& reuso) {
        if (TamanhoDoArquivo(t_.destino) != presentes_) return FalharNoComeco();
        HandleArquivo destino = AbrirParaEscrever(t_.destino, FILE_APPEND_DATA, FILE_SHARE_READ, OPEN_ALWAYS);
        if (!destino) {
            const DWORD codigo = GetLastError();
            interrompida_ = true;
            return Falhar(Formatar("não foi possível gravar {} (erro {})", ParaUtf8(t_.destino.native()), codigo));
        }
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
        const bool veio = HttpBaixarTexto(url, bytes, erro_, listado_.tamanho, &t_.cancelar);
        if (!veio && Cancelada()) return false;
        // Where it has come before, a connection that breaks is nothing but that.
        const bool rompeu = bytes.size() < listado_.tamanho && !erro_.starts_with("HTTP ");
        interrompida_ = rompeu && dono_.Planejado(t_.item);
        if (!veio) return false;
        if (interrompida_)
            return Falhar(Formatar("download incompleto ({} de {} bytes)", bytes.size(), listado_.tamanho));
        const Sha256Digest sha256 = Sha256Of({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        const update::ItemLista& item = t_.item;
        const auto partes = [&] { return (indice.tamanho - 1) / indice.parte + 1; };
        const bool serve = bytes.size() == listado_.tamanho && ParaHex(sha256) == listado_.sha256 &&
                           update::LerIndice(bytes, indice) && indice.tamanho == item.tamanho &&
                           (indice.parte == 0 ? item.partes == 0 : item.partes == partes());
        return serve || Falhar("o índice de blocos não confere");
    }

    // Nothing is lost when it cannot be done: then the parts are as they were.
    bool Juntar(std::uint64_t parte) {
        if (parte != 0 && !JuntarPrefixo(t_, parte)) return !Cancelada() && Falhar("não foi possível juntar as partes");
        parte_ = parte;
        return true;
    }

    // What is there may be the beginning of another version, whose download was interrupted: it ends where the new file
    // differs.
    bool ProvarComeco(const update::IndiceDeBlocos& indice) {
        const ArquivoEmUso comeco(t_.destino);
        std::uint64_t iguais = 0;
        if (!update::ContarIguais(indice, EmOrdem(comeco), iguais)) return !interrompida_ && FalharNoComeco();
        presentes_ = comeco.Tamanho();
        if (presentes_ != TamanhoDoArquivo(t_.destino)) return FalharNoComeco();
        if (presentes_ > iguais && !EncurtarArquivo(t_.destino, iguais)) return FalharNoComeco();
        presentes_ = iguais;
        return presentes_ < t_.item.tamanho || Falhar("já veio tudo");
    }

    bool BuscarNoVelho(const update::IndiceDeBlocos& indice, std::vector<std::uint64_t>& onde) {
        return update::BuscarBlocos(indice, EmOrdem(velho_), onde) || (!interrompida_ && FalharNoVelho());
    }

    update::LeitorEmOrdem EmOrdem(const ArquivoEmUso& arquivo) {
        return [this, &arquivo, ate = std::uint64_t{0}](std::span<std::uint8_t> bytes, std::size_t& lidos) mutable {
            const bool leu = !Cancelada() && arquivo.Ler(ate, bytes, lidos);
            ate += lidos;
            return leu;
        };
    }

    bool FalharNoComeco() { return Falhar("o começo mudou ou não pode ser lido"); }

    bool FalharNoVelho() { return Falhar("o arquivo antigo mudou ou não pode ser lido"); }

    bool Planejar(const update::IndiceDeBlocos& indice, std::span<const std::uint64_t> onde) {
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
    const ArquivoEmUso velho_;
    update::Plano plano_;
    std::uint64_t parte_ = 0;      // once the parts are joined
    std::uint64_t presentes_ = 0;  // bytes that were there before
    std::uint64_t doDisco_ = 0;
    bool vieram_ = false;  // bytes of a range
    bool interrompida_ = false;
    std::string erro_;
};

void ReusoDeBlocos::Esquecer() {
    const std::lock_guard guarda(trava_);
    recusados_.clear();
    planejados_.clear();
}

void ReusoDeBlocos::Usar(const update::UpdateList& lista) {
    const std::lock_guard guarda(trava_);
    listados_.clear();
    for (const update::IndiceListado& listado : lista.blocos)
        listados_[update::ChaveDoCaminho(listado.caminho)] = listado;
}

std::optional<update::IndiceListado> ReusoDeBlocos::Achar(const update::ItemLista& item) {
    const std::lock_guard guarda(trava_);
    const std::string chave = update::ChaveDoCaminho(item.caminho);
    const auto listado = listados_.find(chave);
    if (listado == listados_.end() || recusados_.contains(chave)) return std::nullopt;
    return listado->second;
}

bool ReusoDeBlocos::Planejado(const update::ItemLista& item) {
    const std::lock_guard guarda(trava_);
    return planejados_.contains(update::ChaveDoCaminho(item.caminho));
}

bool ReusoDeBlocos::Anotar(const update::ItemLista& item) {
    const std::lock_guard guarda(trava_);
    return planejados_.insert(update::ChaveDoCaminho(item.caminho)).second;
}

void ReusoDeBlocos::Desistir(const update::ItemLista& item, const std::string& motivo) {
    LogLinha("[update] {}: blocos não reaproveitados ({})", update::NormalizarCaminho(item.caminho), motivo);
    const std::lock_guard guarda(trava_);
    recusados_.insert(update::ChaveDoCaminho(item.caminho));
}

Reuso ReusoDeBlocos::Baixar(const Transferencia& t, Andamento& andamento, std::string& erro) {
    Reuso reuso;
    const std::optional<update::IndiceListado> listado = Achar(t.item);
    if (!listado) return reuso;
    Montagem montagem(*this, t, *listado);
    if (!montagem.PodeValer()) return reuso;
    const bool feito = montagem.Rodar(andamento, reuso);
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
