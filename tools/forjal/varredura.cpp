#include "tools/forjal/varredura.h"

#include <windows.h>

#include <algorithm>
#include <map>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/pasta.h"
#include "core/utf16.h"
#include "update/caminhos.h"
#include "update/hash_arquivo.h"

namespace zu::launcher::forjal {
namespace {

bool PastaProtegida(const std::string& caminho) {
    return update::CaminhoProtegido(caminho + "/_");
}

class Varredor {
 public:
    Varredor(const std::filesystem::path& cliente, Varredura& varredura) : cliente_(cliente), varredura_(varredura) {}

    // `prefixo` is empty or ends in "/".
    void Pasta(const std::string& prefixo) {
        if (ListarPasta(cliente_ / DeUtf8(prefixo), [&](const auto& achado) { Achado(prefixo, achado); })) return;
        Recusar(prefixo, Formatar("não foi possível listar a pasta (erro {})", GetLastError()));
    }

 private:
    void Achado(const std::string& prefixo, const WIN32_FIND_DATAW& achado) {
        const std::wstring_view nome = achado.cFileName;
        const std::string caminho = prefixo + ParaUtf8(nome);
        const bool pasta = (achado.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (pasta ? PastaProtegida(caminho) : update::CaminhoProtegido(caminho)) {
            varredura_.protegidos += pasta ? 0 : 1;
        } else if (DeUtf8(caminho) != DeUtf8(prefixo) + achado.cFileName) {
            Recusar(caminho, "nome com letras inválidas");
        } else if (EhLink(achado)) {
            Recusar(caminho, "é um link: ponha no cliente o arquivo ou a pasta de verdade");
        } else if (pasta) {
            Pasta(caminho + "/");
        } else {
            Arquivo(caminho);
        }
    }

    // Asked again: a folder may tell old news of a file that is open or has several names.
    void Arquivo(const std::string& caminho) {
        InfoArquivo info;
        if (LerInfoArquivo(cliente_ / DeUtf8(caminho), info) && !info.Pasta()) {
            varredura_.arquivos.push_back({.caminho = caminho, .tamanho = info.tamanho, .modificado = info.modificado});
        } else {
            Recusar(caminho, Formatar("não foi possível abrir (erro {})", GetLastError()));
        }
    }

    void Recusar(const std::string& caminho, std::string_view motivo) {
        varredura_.recusas.insert(Formatar("{}: {}", caminho, motivo));
    }

    const std::filesystem::path& cliente_;
    Varredura& varredura_;
};

std::vector<std::string> NomesDe(const ArquivoDoCliente& arquivo) {
    // The path itself too when it is split: the player's folder holds the joined file under it.
    std::vector<std::string> nomes{arquivo.caminho};
    for (const Trecho& trecho : TrechosDe(arquivo, 0)) {
        if (trecho.caminho != arquivo.caminho) nomes.push_back(trecho.caminho);
    }
    return nomes;
}

std::string RecusaDoNome(const ArquivoDoCliente& arquivo) {
    const std::string& caminho = arquivo.caminho;
    // A line of the list that begins with ";" is no file.
    if (!update::CaminhoSeguro(caminho) || update::NormalizarCaminho(caminho) != caminho || caminho.front() == ';') {
        return Formatar("{}: a lista não aceita este nome", caminho);
    }
    const std::wstring chave = ChaveDoNome(caminho);
    for (const std::wstring_view reservado : {kNomeDaLista, kNomeDoRegistro, kNomeDaTrava}) {
        if (chave == ChaveDoNome(ParaUtf8(reservado))) return Formatar("{}: nome reservado ao Forjal", caminho);
    }
    if (arquivo.partes > kMaisPartes) {
        return Formatar("{}: daria {} partes, o limite é {}; aumente --partes-mib", caminho, arquivo.partes,
                        kMaisPartes);
    }
    return {};
}

using NomePorChave = std::map<std::wstring, std::string>;

NomePorChave JuntarPastas(std::span<const ArquivoDoCliente> arquivos, std::set<std::string>& recusas) {
    NomePorChave pastas;
    for (const ArquivoDoCliente& arquivo : arquivos) {
        for (const std::string& pasta : PastasDe(arquivo.caminho)) {
            const auto& [chave, antes] = *pastas.emplace(ChaveDoNome(pasta), pasta).first;
            if (antes == pasta) continue;
            recusas.insert(Formatar("{} e {}: pastas que só diferem em maiúsculas e minúsculas", antes, pasta));
        }
    }
    return pastas;
}

}  // namespace

Varredura VarrerCliente(const std::filesystem::path& cliente) {
    Varredura varredura;
    Varredor(cliente, varredura).Pasta({});
    std::ranges::sort(varredura.arquivos, {}, [](const ArquivoDoCliente& arquivo) {
        return std::pair(update::ChaveDoCaminho(arquivo.caminho), arquivo.caminho);
    });
    return varredura;
}

void Dividir(std::span<ArquivoDoCliente> arquivos, std::uint64_t bytesPorParte) {
    for (ArquivoDoCliente& arquivo : arquivos) {
        if (bytesPorParte == 0 || arquivo.tamanho <= bytesPorParte) continue;
        const std::uint64_t partes = (arquivo.tamanho - 1) / bytesPorParte + 1;
        arquivo.partes = static_cast<std::uint32_t>(std::min<std::uint64_t>(partes, UINT32_MAX));
    }
}

std::vector<Trecho> TrechosDe(const ArquivoDoCliente& arquivo, std::uint64_t bytesPorParte) {
    if (arquivo.partes == 0) return {{.caminho = arquivo.caminho, .inicio = 0, .tamanho = arquivo.tamanho}};
    std::vector<Trecho> trechos;
    for (std::uint32_t parte = 1; parte <= arquivo.partes; ++parte) {
        const std::uint64_t inicio = (parte - 1) * bytesPorParte;
        trechos.push_back({.caminho = arquivo.caminho + SufixoDaParte(parte),
                           .inicio = inicio,
                           .tamanho = std::min(bytesPorParte, arquivo.tamanho - inicio)});
    }
    return trechos;
}

std::vector<std::string> PastasDe(const std::string& caminho) {
    std::vector<std::string> pastas;
    for (std::size_t barra = caminho.find('/'); barra != std::string::npos; barra = caminho.find('/', barra + 1)) {
        pastas.push_back(caminho.substr(0, barra));
    }
    return pastas;
}

std::wstring ChaveDoNome(std::string_view caminho) {
    // As file systems do it: one letter for one letter, whatever the language.
    std::wstring chave = DeUtf8(caminho);
    const std::wstring original = chave;
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, original.data(), static_cast<int>(original.size()),
                  chave.data(), static_cast<int>(chave.size()), nullptr, nullptr, 0);
    return chave;
}

std::set<std::string> RecusarNomes(std::span<const ArquivoDoCliente> arquivos) {
    std::set<std::string> recusas;
    const NomePorChave pastas = JuntarPastas(arquivos, recusas);
    NomePorChave publicados;
    for (const ArquivoDoCliente& arquivo : arquivos) {
        if (std::string recusa = RecusaDoNome(arquivo); !recusa.empty()) {
            recusas.insert(std::move(recusa));
            continue;
        }
        for (const std::string& nome : NomesDe(arquivo)) {
            const std::wstring chave = ChaveDoNome(nome);
            const auto [lugar, novo] = publicados.emplace(chave, arquivo.caminho);
            if (!novo) {
                recusas.insert(Formatar("{} e {}: seriam publicados com o mesmo nome", lugar->second, arquivo.caminho));
            }
            if (const auto pasta = pastas.find(chave); pasta != pastas.end()) {
                recusas.insert(Formatar("{} e {}: arquivo e pasta com o mesmo nome", nome, pasta->second));
            }
        }
    }
    return recusas;
}

std::set<std::string> RecusarRemocoes(std::span<const ArquivoDoCliente> arquivos,
                                      std::span<const std::string> remover) {
    std::set<std::wstring> existentes;
    for (const ArquivoDoCliente& arquivo : arquivos) {
        existentes.insert(ChaveDoNome(arquivo.caminho));
        for (const std::string& pasta : PastasDe(arquivo.caminho))
            existentes.insert(ChaveDoNome(pasta));
    }
    std::set<std::string> recusas;
    for (const std::string& caminho : remover) {
        if (existentes.contains(ChaveDoNome(caminho))) {
            recusas.insert(Formatar("--remover={}: o cliente ainda tem este caminho", caminho));
        }
    }
    return recusas;
}

}  // namespace zu::launcher::forjal
