#include "tools/forjal/publicar/trava.h"

#include <windows.h>

#include "core/arquivo.h"
#include "core/formato.h"

namespace zu::launcher::forjal {

bool Trava::Trancar(const std::filesystem::path& saida, std::string& erro) {
    if (!CriarPastas(saida)) {
        erro = Formatar("não foi possível criar a pasta (erro {})", GetLastError());
        return false;
    }
    trava_.Trocar(CreateFileW((saida / kNomeDaTrava).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (trava_) return true;
    erro = GetLastError() == ERROR_SHARING_VIOLATION
               ? std::string("outra publicação nesta pasta está em andamento")
               : Formatar("não foi possível gravar na pasta (erro {})", GetLastError());
    return false;
}

}  // namespace zu::launcher::forjal
