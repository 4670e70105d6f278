#include "tools/forjal/publicar/na_saida.h"

#include <windows.h>

#include <mutex>
#include <vector>

#include "core/formato.h"
#include "core/pasta.h"
#include "core/utf16.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/varredura.h"

namespace zu::launcher::forjal {

bool NaSaida::Ler(const std::filesystem::path& saida, const std::set<std::string>& pastas, std::string& erro) {
    const std::vector<std::string> ordem(pastas.begin(), pastas.end());
    const std::vector<std::uint64_t> tamanhos(ordem.size());
    std::mutex mutex;
    const auto listar = [&](std::size_t i) {
        const std::string prefixo = ordem[i].empty() ? std::string() : ordem[i] + "/";
        std::vector<Entrada> achadas;
        const bool listada = ListarPasta(saida / DeUtf8(prefixo), [&](const WIN32_FIND_DATAW& achado) {
            achadas.push_back({.nome = ParaUtf8(achado.cFileName),
                               .tamanho = std::uint64_t{achado.nFileSizeHigh} << 32 | achado.nFileSizeLow,
                               .pasta = (achado.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
        });
        const DWORD falha = GetLastError();
        Pasta naPasta(std::move(achadas));
        const std::lock_guard tranca(mutex);
        pastas_.insert_or_assign(ChaveDoNome(ordem[i]), std::move(naPasta));
        // A file where the folder would be is told by who needs the folder.
        if (listada || falha == ERROR_FILE_NOT_FOUND || falha == ERROR_PATH_NOT_FOUND || falha == ERROR_DIRECTORY)
            return;
        erro = Formatar("não foi possível listar a pasta {} (erro {})", ordem[i], falha);
    };
    EmParalelo(tamanhos, listar, [] {});
    return erro.empty();
}

const NaSaida::Entrada* NaSaida::Achar(std::string_view caminho) {
    const std::size_t barra = caminho.rfind('/');
    const std::string_view pasta = caminho.substr(0, barra == std::string_view::npos ? 0 : barra);
    if (ultima_ == nullptr || pasta != daUltima_) {
        const auto achada = pastas_.find(ChaveDoNome(pasta));
        ultima_ = achada != pastas_.end() ? &achada->second : nullptr;
        daUltima_ = pasta;
    }
    return ultima_ != nullptr ? ultima_->Achar(caminho.substr(barra + 1)) : nullptr;
}

bool NaSaida::OutraCaixa(std::string_view caminho) {
    const Entrada* const entrada = Achar(caminho);
    return entrada != nullptr && entrada->nome != caminho.substr(caminho.rfind('/') + 1);
}

}  // namespace zu::launcher::forjal
