#include "update/instante.h"

#include "core/formato.h"
#include "core/texto.h"

namespace zu::launcher::update {

std::optional<Instante> LerInstante(std::string_view texto) {
    constexpr std::string_view kForma = "0000-00-00T00:00:00Z";
    if (texto.size() != kForma.size()) return {};
    for (std::size_t i = 0; i < kForma.size(); ++i) {
        const bool digito = texto[i] >= '0' && texto[i] <= '9';
        if (kForma[i] == '0' ? !digito : texto[i] != kForma[i]) return {};
    }
    const auto numero = [texto](std::size_t inicio, std::size_t tamanho) {
        unsigned lido = 0;
        LerNumeroInteiro(texto.substr(inicio, tamanho), lido);
        return lido;
    };
    const std::chrono::year_month_day dia{std::chrono::year(static_cast<int>(numero(0, 4))),
                                          std::chrono::month(numero(5, 2)), std::chrono::day(numero(8, 2))};
    const unsigned hora = numero(11, 2);
    const unsigned minuto = numero(14, 2);
    const unsigned segundo = numero(17, 2);
    if (!dia.ok() || hora > 23 || minuto > 59 || segundo > 59) return {};
    return std::chrono::sys_days(dia) + std::chrono::hours(hora) + std::chrono::minutes(minuto) +
           std::chrono::seconds(segundo);
}

std::string TextoDoInstante(Instante instante) {
    const auto dia = std::chrono::floor<std::chrono::days>(instante);
    const std::chrono::year_month_day data(dia);
    const std::chrono::hh_mm_ss hora(instante - dia);
    return Formatar("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(data.year()),
                    static_cast<unsigned>(data.month()), static_cast<unsigned>(data.day()), hora.hours().count(),
                    hora.minutes().count(), hora.seconds().count());
}

std::string TextoDoDia(Instante instante) {
    const std::chrono::year_month_day data(std::chrono::floor<std::chrono::days>(instante));
    return Formatar("{:02}/{:02}/{:04}", static_cast<unsigned>(data.day()), static_cast<unsigned>(data.month()),
                    static_cast<int>(data.year()));
}

}  // namespace zu::launcher::update
