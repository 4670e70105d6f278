// What stands in the options window, and where: the one table that the window and its painter go by.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "game/opcoes.h"
#include "ui/controles/controle.h"
#include "ui/janelas/opcoes.h"

namespace zu::launcher {

constexpr SIZE kTamanhoDasOpcoes{440, 492};

struct ControleDasOpcoes {
    TipoControle kind;
    int id;
    const wchar_t* texto;
    Lugar lugar;
    std::int32_t OpcoesJogo::*campo = nullptr;  // of a check box
};
constexpr std::array<ControleDasOpcoes, 8> kControlesDasOpcoes{{
    {TipoControle::Opcao, kOpcaoD3d12, L"DirectX 12", {14, 52, 201, 60}},
    {TipoControle::Opcao, kOpcaoVulkan, L"Vulkan", {225, 52, 201, 60}},
    {TipoControle::Caixa, kCaixaSemBorda, L"Janela sem borda", {14, 198, 190, 20}, &OpcoesJogo::borderless},
    {TipoControle::Caixa, kCaixaVsync, L"Sincronia vertical (VSync)", {160, 198, 266, 20}, &OpcoesJogo::vsync},
    {TipoControle::Caixa,
     kCaixaFecharAoJogar,
     L"Fechar o launcher ao jogar",
     {14, 366, 260, 20},
     &OpcoesJogo::fecharAoJogar},
    {TipoControle::Botao, kBotaoRequisitos, L"Requisitos", {98, 446, 92, 28}},
    {TipoControle::BotaoPrincipal, kBotaoOk, L"OK", {200, 446, 68, 28}},
    {TipoControle::Botao, kBotaoCancelar, L"Cancelar", {278, 446, 78, 28}},
}};
// The box of "Janela sem borda" reaches over the check box beside it, which keeps its own place.
constexpr RECT kRegiaoDaSemBorda{0, 0, 146, 20};

constexpr std::array<std::wstring_view, 2> kRotulosModo{L"Janela", L"Tela cheia"};
constexpr std::array<std::int32_t, 2> kValoresModo{1, 0};
constexpr std::array<std::wstring_view, 1> kRotulosIdioma{L"Português (Brasil)"};

// A row: a label and its list.
struct ListaDasOpcoes {
    int id;
    int y;
    const wchar_t* rotulo;
    std::span<const std::wstring_view> itens;
    std::int32_t OpcoesJogo::*campo;             // null: nothing is stored
    std::span<const std::int32_t> valores = {};  // what is stored for each item; empty: its index
};
constexpr std::array<ListaDasOpcoes, 6> kListasDasOpcoes{{
    {kListaModo, 140, L"Modo de tela:", kRotulosModo, &OpcoesJogo::windowMode, kValoresModo},
    {kListaResolucao, 168, L"Resolução:", kRotulosResolucao, &OpcoesJogo::resolution},
    {kListaLimiteFps, 224, L"Limite de FPS:", kRotulosLimiteFps, &OpcoesJogo::fpsLimit},
    {kListaEfeitos, 280, L"Efeitos sonoros:", kRotulosVolume, &OpcoesJogo::soundLevel},
    {kListaMusica, 308, L"Música:", kRotulosVolume, &OpcoesJogo::musicLevel},
    {kListaIdioma, 336, L"Idioma:", kRotulosIdioma, nullptr},
}};

}  // namespace zu::launcher
