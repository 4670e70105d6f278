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
        std::vector<std::pair<std::string, Entrada>> achadas;
        const bool listada = ListarPasta(saida / DeUtf8(prefixo), [&](const WIN32_FIND_DATAW& achado) {
            Entrada entrada{.nome = ParaUtf8(achado.cFileName),
                            .tamanho = std::uint64_t{achado.nFileSizeHigh} << 32 | achado.nFileSizeLow,
                            .pasta = (achado.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0};
            std::string chave = ChaveDoNome(prefixo + entrada.nome);
            achadas.emplace_back(std::move(chave), std::move(entrada));
        });
        const DWORD falha = GetLastError();
        const std::lock_guard tranca(mutex);
        for (auto& [chave, entrada] : achadas)
            entradas_.emplace(std::move(chave), std::move(entrada));
        // A file where the folder would be is told by who needs the folder.
        if (listada || falha == ERROR_FILE_NOT_FOUND || falha == ERROR_PATH_NOT_FOUND || falha == ERROR_DIRECTORY)
            return;
        erro = Formatar("não foi possível listar a pasta {} (erro {})", ordem[i], falha);
    };
    EmParalelo(tamanhos, listar, [] {});
    return erro.empty();
}

const NaSaida::Entrada* NaSaida::Achar(const std::string& caminho) const {
    const auto achada = entradas_.find(ChaveDoNome(caminho));
    return achada != entradas_.end() ? &achada->second : nullptr;
}

bool NaSaida::OutraCaixa(const std::string& caminho) const {
    const Entrada* const entrada = Achar(caminho);
    return entrada != nullptr && entrada->nome != caminho.substr(caminho.rfind('/') + 1);
}

}  // namespace zu::launcher::forjal
