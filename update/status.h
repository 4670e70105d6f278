// How an update run stands: plain data, copied out whole.
#pragma once

#include <cstdint>
#include <string>

namespace zu::launcher {

enum class StatusUpdate : int {
    kParado = 0,
    kConectando = 1,
    kVerificando = 2,
    kBaixando = 3,
    kAplicando = 4,
    kPronto = 5,
    kSemServidor = 6,
    kErro = 7,
    kReiniciando = 8,
    kJogoAberto = 9,
};

struct EstadoAtualizacao {
    StatusUpdate status = StatusUpdate::kParado;
    std::string texto;    // the last sentence for the user
    std::string erro;     // the sentence again when the status is 7, else empty
    std::string versao;   // of the list that was accepted
    std::string arquivo;  // in work: the one that was begun last
    std::uint64_t bytesFeitos = 0;
    std::uint64_t bytesTotal = 0;
    std::uint64_t arquivosFeitos = 0;
    std::uint64_t arquivosTotal = 0;
    std::uint64_t estacionados = 0;  // files of this run that wait for a swap
    double fracao = 0;               // bytes done of all, 0 to 1
    double velocidade = 0;           // bytes a second, smoothed
    bool reparar = false;
};

}  // namespace zu::launcher
