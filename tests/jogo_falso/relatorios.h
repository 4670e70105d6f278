// The reports that the stand-in game can write.
#pragma once

#include <string>
#include <string_view>

namespace zu::launcher::teste {

// The JSON text (UTF-8) of one report; empty for any other name:
//   bom               everything runs
//   so_d3d12, so_vulkan   one interface is missing
//   avisos            rows in yellow, both interfaces run
//   falha             nothing runs, an old driver is to blame
//   sem_driver        the card has no driver
//   abaixo_do_minimo  the card is too weak
//   sessenta          a table of 60 rows
//   longos            texts of 2,000 characters
//   sem_itens         a report text without table and advice
//   vazio             an object without members
//   quebrado          no JSON
//   metade            the first half of "bom"
std::string MontarRelatorio(std::string_view nome);

}  // namespace zu::launcher::teste
