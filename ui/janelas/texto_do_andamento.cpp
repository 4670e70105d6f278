#include "ui/janelas/texto_do_andamento.h"

#include <cmath>
#include <cstdint>

#include "core/formato.h"

namespace zu::launcher {
namespace {

constexpr double kMega = 1024.0 * 1024;
constexpr double kGiga = 1024 * kMega;
constexpr std::chrono::seconds kPrimeiros{3};  // until the speed means something
constexpr std::uint64_t kMinuto = 60;
constexpr std::uint64_t kHora = 60 * kMinuto;
constexpr std::uint64_t kSemPrevisao = 100 * kHora;

std::string Tamanho(std::uint64_t bytes) {
    const auto valor = static_cast<double>(bytes);
    return valor < kGiga ? Formatar("{:.1f} MB", valor / kMega) : Formatar("{:.2f} GB", valor / kGiga);
}

std::string Contar(std::uint64_t quantos, std::string_view um, std::string_view varios) {
    return Formatar("{} {}", quantos, quantos == 1 ? um : varios);
}

// In whole minutes from one minute on, rounded up so that it never promises too much.
std::string Duracao(std::uint64_t segundos) {
    if (segundos < kMinuto) return Contar(segundos, "segundo", "segundos");
    const std::uint64_t minutos = (segundos + kMinuto - 1) / kMinuto;
    if (minutos < 60) return Contar(minutos, "minuto", "minutos");
    const std::string horas = Contar(minutos / 60, "hora", "horas");
    return minutos % 60 == 0 ? horas : horas + " e " + Contar(minutos % 60, "minuto", "minutos");
}

// "; faltam 3 minutos"; empty when it cannot be known.
std::string TempoQueFalta(const EstadoAtualizacao& estado, std::chrono::milliseconds desde) {
    if (desde < kPrimeiros) return "; calculando...";
    const std::uint64_t bytes = estado.bytesTotal - estado.bytesFeitos;
    const double segundos = std::ceil(static_cast<double>(bytes) / estado.velocidade);
    if (bytes == 0 || segundos > static_cast<double>(kSemPrevisao)) return {};
    const std::string duracao = Duracao(static_cast<std::uint64_t>(segundos));
    return Formatar("; {} {}", duracao.starts_with("1 ") ? "falta" : "faltam", duracao);
}

}  // namespace

std::string TextoDoAndamento(const EstadoAtualizacao& estado, bool atualizando, std::chrono::milliseconds desde) {
    std::string texto = estado.texto;
    if (!atualizando || estado.arquivosTotal == 0) return texto;
    if (!estado.arquivo.empty()) texto += "\n" + estado.arquivo;
    texto += Formatar("\n{} de {}; {} de {}", Tamanho(estado.bytesFeitos), Tamanho(estado.bytesTotal),
                      estado.arquivosFeitos, Contar(estado.arquivosTotal, "arquivo", "arquivos"));
    if (estado.status == StatusUpdate::kBaixando && estado.velocidade > 0) {
        texto += Formatar("\n{:.1f} MB/s{}", estado.velocidade / kMega, TempoQueFalta(estado, desde));
    }
    return texto;
}

}  // namespace zu::launcher
