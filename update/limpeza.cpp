#include "update/limpeza.h"
#include "update/lista.h"

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/log.h"
#include "core/pasta.h"
#include "core/utf16.h"
#include "update/caminhos.h"

namespace zu::launcher {
namespace {

// The key of the file that a download's temporary name was made from; empty for any other name.
std::string_view AlvoDaSobra(std::string_view chave) {
    for (const std::string_view sufixo : {".upd", ".novo"}) {
        if (chave.ends_with(sufixo)) return chave.substr(0, chave.size() - sufixo.size());
    }
    constexpr std::string_view kParte = ".upd.p";
    constexpr std::size_t kDigitos = 3;
    const std::size_t parte = chave.rfind(kParte);
    if (parte == std::string_view::npos || chave.size() != parte + kParte.size() + kDigitos) return {};
    return chave.find_first_not_of("0123456789", parte + kParte.size()) == std::string_view::npos
               ? chave.substr(0, parte)
               : std::string_view{};
}

class Limpeza {
 public:
    explicit Limpeza(const update::UpdateList& lista) {
        for (const update::ItemLista& item : lista.itens)
            listados_.insert(update::ChaveDoCaminho(item.caminho));
    }

    // `prefixo` is empty or ends in "/".
    void Pasta(const std::string& prefixo) {
        ListarPasta(ObterConfig().pastaJogo / DeUtf8(prefixo), [&](const WIN32_FIND_DATAW& achado) {
            const std::string caminho = prefixo + ParaUtf8(achado.cFileName);
            if ((achado.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
                Arquivo(caminho);
            } else if (!EhLink(achado) && !update::CaminhoProtegido(caminho + "/_")) {
                Pasta(caminho + "/");
            }
        });
    }

 private:
    void Arquivo(const std::string& caminho) {
        const std::string chave = update::ChaveDoCaminho(caminho);
        const std::string_view alvo = AlvoDaSobra(chave);
        if (alvo.empty() || listados_.contains(alvo)) return;
        if (ApagarArquivo(ObterConfig().pastaJogo / DeUtf8(caminho))) LogLinha("[update] sobra apagada: {}", caminho);
    }

    std::set<std::string, std::less<>> listados_;
};

}  // namespace

void ApagarSobras(const update::UpdateList& lista) {
    Limpeza(lista).Pasta({});
}

}  // namespace zu::launcher
