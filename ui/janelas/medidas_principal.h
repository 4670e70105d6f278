// What stands in the main window, and where: the one table that the window, its painter and its words go by.
#pragma once

#include <windows.h>

#include <array>

#include "ui/controles/controle.h"

namespace zu::launcher {

constexpr int kLarguraPrincipal = 454;
constexpr int kAlturaPrincipal = 516;

constexpr int kBotaoRegistrar = 1001;
constexpr int kBotaoOpcoes = 1004;
constexpr int kBotaoConectar = 1005;
constexpr int kBotaoFechar = 1006;

struct BotaoDaPrincipal {
    int id;
    const wchar_t* texto;
    TipoControle kind;
    Lugar lugar;
};
constexpr std::array<BotaoDaPrincipal, 4> kBotoesDaPrincipal{{
    {kBotaoRegistrar, L"Registrar", TipoControle::Botao, {63, 412, 78, 28}},
    {kBotaoOpcoes, L"Opções", TipoControle::Botao, {104, 472, 72, 28}},
    {kBotaoConectar, L"Conectar", TipoControle::BotaoPrincipal, {191, 472, 76, 28}},
    {kBotaoFechar, L"Fechar", TipoControle::Botao, {282, 472, 68, 28}},
}};
// The capsules behind the buttons and bars, and the footer that they stand on.
constexpr std::array<RECT, 2> kPaineisDaPrincipal{{{52, 395, 402, 457}, {92, 462, 362, 510}}};
constexpr int kRodapeDaPrincipal = 128;

// The middle of the window, where the site is shown.
constexpr RECT kCentro{9, 49, 445, 382};
constexpr RECT kLinhaDaFalha{9, 352, 445, 374};  // in it, that the site could not be opened

constexpr int kAlturaDaBarra = 9;
struct BarraDaPrincipal {
    const wchar_t* nome;
    Lugar lugar;
    RECT percentual;
};
constexpr std::array<BarraDaPrincipal, 2> kBarrasDaPrincipal{{
    {L"Arquivo", {152, 412, 200, kAlturaDaBarra}, {352, 408, 386, 425}},
    {L"Total", {152, 431, 200, kAlturaDaBarra}, {352, 427, 386, 444}},
}};
// What changes with the bars.
constexpr RECT kAreaDoProgresso{152, 409, 386, 443};

}  // namespace zu::launcher
