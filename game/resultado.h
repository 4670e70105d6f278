// What one run of the requirements probe found: the answers of the game's report and what follows from them. Plain
// data, copied out whole. Every text is UTF-8, as the game wrote it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zu::launcher {

enum class EstadoItem : std::int32_t {
    kOk = 0,
    kAviso = 1,
    kFalha = 2,
};

// One row of the report's table.
struct ItemRequisito {
    std::string nome;       // first column
    std::string valor;      // the columns between, still parted by " | "
    std::string penultima;  // next-to-last column
    std::string ultima;     // last column, the situation in words ("Abaixo do mínimo")
    EstadoItem estado = EstadoItem::kOk;
};

// What is asked for again and again.
struct SituacaoRequisitos {
    bool concluido = false;      // the run has ended, with or without a report
    bool relatorioLido = false;  // the answers, here and below, come from a report
    bool d3d12 = true;           // a report that leaves an answer out never blocks the game
    bool vulkan = true;
};

struct ResultadoRequisitos : SituacaoRequisitos {
    std::string d3d12Detalhe;
    std::string vulkanDetalhe;
    std::string placa;
    std::string memoria;
    std::string sistema;
    std::string geral;   // "falha", "aviso" or another word
    std::string titulo;  // the headline
    std::string relatorio;
    std::vector<ItemRequisito> items;
    std::vector<std::string> oQueFazer;  // the game's advice, in the report's order
    std::string acaoEndereco;            // what the action button opens; empty: no action is offered
    std::string acaoTexto;               // the button's label
};

}  // namespace zu::launcher
