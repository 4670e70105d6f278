#include "core/excecao.h"

#include <filesystem>
#include <new>
#include <system_error>

#include "core/formato.h"
#include "core/utf16.h"

namespace zu::launcher {

std::string TextoDaExcecao(const std::exception& falha) {
    if (dynamic_cast<const std::bad_alloc*>(&falha) != nullptr) return "memória insuficiente";
    const auto* const sistema = dynamic_cast<const std::system_error*>(&falha);
    if (sistema == nullptr) return "erro interno do launcher";
    const int codigo = sistema->code().value();
    const auto* const arquivo = dynamic_cast<const std::filesystem::filesystem_error*>(sistema);
    if (arquivo == nullptr) return Formatar("o sistema não atendeu a um pedido (erro {})", codigo);
    return Formatar("não foi possível acessar {} (erro {})", ParaUtf8(arquivo->path1().native()), codigo);
}

}  // namespace zu::launcher
