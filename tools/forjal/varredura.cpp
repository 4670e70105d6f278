#include "tools/forjal/varredura.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <iterator>
#include <mutex>
#include <thread>
#include <unordered_map>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/pasta.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/publicar/trava.h"
#include "tools/forjal/publicar/troca.h"
#include "update/blocos_indice.h"
#include "update/caminhos.h"
#include "update/hash_arquivo.h"

namespace zu::launcher::forjal {
namespace {

// Of what stands at the top of a published folder.
constexpr std::array kReservados{kNomeDaLista, kNomeDoRegistro, kNomeDaTrava, kNomeDoDiario, kPastaDosNovos};

bool PastaProtegida(const std::string& caminho) {
    return update::CaminhoProtegido(caminho + "/_");
}

// The folders still to be listed are shared by the threads; each takes one at a time.
class Varredor {
 public:
    Varredor(const std::filesystem::path& cliente, const Excluido& excluido, Varredura& varredura)
        : cliente_(cliente), excluido_(excluido), varredura_(varredura) {}

    void Rodar(const std::function<void(std::size_t)>& aviso) {
        std::vector<std::jthread> threads;
        for (unsigned n = std::max(1U, std::thread::hardware_concurrency()); n > 0; --n)
            threads.emplace_back([this] { Trabalhar(); });
        std::unique_lock tranca(mutex_);
        while (!mudou_.wait_for(tranca, kEntreAvisos, [this] { return pendentes_ == 0; })) {
            const std::size_t ate = varredura_.arquivos.size();
            tranca.unlock();
            aviso(ate);
            tranca.lock();
        }
    }

 private:
    void Trabalhar() {
        std::unique_lock tranca(mutex_);
        while (true) {
            mudou_.wait(tranca, [this] { return !pastas_.empty() || pendentes_ == 0; });
            if (pastas_.empty()) return;
            const std::string prefixo = std::move(pastas_.back());
            pastas_.pop_back();
            tranca.unlock();
            Listar(prefixo);
            tranca.lock();
            if (--pendentes_ == 0) mudou_.notify_all();
        }
    }

    // `prefixo` is empty or ends in "/".
    void Listar(const std::string& prefixo) {
        Varredura daPasta;
        std::vector<std::string> dentro;
        const auto visitar = [&](const WIN32_FIND_DATAW& achado) { Achado(prefixo, achado, daPasta, dentro); };
        if (!ListarPasta(cliente_ / DeUtf8(prefixo), visitar)) {
            Recusar(daPasta, prefixo, Formatar("não foi possível listar a pasta (erro {})", GetLastError()));
        }
        const std::lock_guard tranca(mutex_);
        varredura_.arquivos.insert(varredura_.arquivos.end(), std::move_iterator(daPasta.arquivos.begin()),
                                   std::move_iterator(daPasta.arquivos.end()));
        varredura_.protegidos += daPasta.protegidos;
        varredura_.excluidos.merge(daPasta.excluidos);
        varredura_.recusas.merge(daPasta.recusas);
        pendentes_ += dentro.size();
        for (std::string& pasta : dentro)
            pastas_.push_back(std::move(pasta));
        mudou_.notify_all();
    }

    void Achado(const std::string& prefixo, const WIN32_FIND_DATAW& achado, Varredura& daPasta,
                std::vector<std::string>& dentro) {
        const std::wstring_view nome = achado.cFileName;
        const std::string visivel = ParaUtf8(nome);
        const std::string caminho = prefixo + visivel;
        const bool pasta = (achado.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (pasta ? PastaProtegida(caminho) : update::CaminhoProtegido(caminho)) {
            daPasta.protegidos += pasta ? 0 : 1;
        } else if (excluido_(caminho, pasta)) {
            daPasta.excluidos.insert(caminho + (pasta ? "/" : ""));
        } else if (DeUtf8(visivel) != nome) {
            Recusar(daPasta, caminho, "nome com letras inválidas");
        } else if (EhLink(achado)) {
            Recusar(daPasta, caminho, "é um link: ponha no cliente o arquivo ou a pasta de verdade");
        } else if (pasta) {
            dentro.push_back(caminho + "/");
        } else {
            Arquivo(caminho, daPasta);
        }
    }

    // Asked again: a folder may tell old news of a file that is open or has several names.
    void Arquivo(const std::string& caminho, Varredura& daPasta) {
        InfoArquivo info;
        if (LerInfoArquivo(cliente_ / DeUtf8(caminho), info) && !info.Pasta()) {
            daPasta.arquivos.push_back({.caminho = caminho, .tamanho = info.tamanho, .modificado = info.modificado});
        } else {
            Recusar(daPasta, caminho, Formatar("não foi possível abrir (erro {})", GetLastError()));
        }
    }

    static void Recusar(Varredura& daPasta, const std::string& caminho, std::string_view motivo) {
        daPasta.recusas.insert(Formatar("{}: {}", caminho, motivo));
    }

    static constexpr std::chrono::milliseconds kEntreAvisos{200};

    const std::filesystem::path& cliente_;
    const Excluido& excluido_;
    Varredura& varredura_;
    std::mutex mutex_;  // of all below, and of `varredura_`
    std::condition_variable mudou_;
    std::vector<std::string> pastas_{std::string()};
    std::size_t pendentes_ = 1;  // folders that wait or are being listed
};

std::vector<std::string> NomesDe(const ArquivoDoCliente& arquivo) {
    // The path itself too when it is split: the player's folder holds the joined file under it.
    std::vector<std::string> nomes{arquivo.caminho};
    for (const Trecho& trecho : TrechosDe(arquivo, 0)) {
        if (trecho.caminho != arquivo.caminho) nomes.push_back(trecho.caminho);
    }
    if (arquivo.comIndice) nomes.push_back(NomeDoIndice(arquivo.caminho));
    return nomes;
}

std::string RecusaDoNome(const ArquivoDoCliente& arquivo) {
    const std::string& caminho = arquivo.caminho;
    // A line of the list that begins with ";" is no file.
    if (!update::CaminhoSeguro(caminho) || update::NormalizarCaminho(caminho) != caminho || caminho.front() == ';') {
        return Formatar("{}: a lista não aceita este nome", caminho);
    }
    const std::string primeiro = ChaveDoNome(caminho.substr(0, caminho.find('/')));
    for (const std::wstring_view reservado : kReservados) {
        if (primeiro == ChaveDoNome(ParaUtf8(reservado))) return Formatar("{}: nome reservado ao Forjal", caminho);
    }
    if (arquivo.partes > kMaisPartes) {
        return Formatar("{}: daria {} partes, o limite é {}; aumente --partes-mib", caminho, arquivo.partes,
                        kMaisPartes);
    }
    return {};
}

using NomePorChave = std::unordered_map<std::string, std::string_view>;

NomePorChave JuntarPastas(std::span<const ArquivoDoCliente> arquivos, std::set<std::string>& recusas) {
    NomePorChave pastas;
    VisitarPastas(arquivos, [&](std::string_view pasta) {
        const auto& [chave, antes] = *pastas.emplace(ChaveDoNome(pasta), pasta).first;
        if (antes == pasta) return;
        recusas.insert(Formatar("{} e {}: pastas que só diferem em maiúsculas e minúsculas", antes, pasta));
    });
    return pastas;
}

}  // namespace

Varredura VarrerCliente(const std::filesystem::path& cliente, const Excluido& excluido,
                        const std::function<void(std::size_t)>& aviso) {
    Varredura varredura;
    Varredor(cliente, excluido, varredura).Rodar(aviso);
    std::vector<std::pair<std::string, std::size_t>> ordem;
    for (const ArquivoDoCliente& arquivo : varredura.arquivos)
        ordem.emplace_back(update::ChaveDoCaminho(arquivo.caminho) + '\0' + arquivo.caminho, ordem.size());
    std::ranges::sort(ordem);
    std::vector<ArquivoDoCliente> arquivos;
    arquivos.reserve(ordem.size());
    for (const auto& [chave, i] : ordem)
        arquivos.push_back(std::move(varredura.arquivos[i]));
    varredura.arquivos = std::move(arquivos);
    return varredura;
}

void Dividir(std::span<ArquivoDoCliente> arquivos, std::uint64_t bytesPorParte) {
    for (ArquivoDoCliente& arquivo : arquivos) {
        if (bytesPorParte == 0 || arquivo.tamanho <= bytesPorParte) continue;
        const std::uint64_t partes = (arquivo.tamanho - 1) / bytesPorParte + 1;
        arquivo.partes = static_cast<std::uint32_t>(std::min<std::uint64_t>(partes, UINT32_MAX));
    }
}

void PedirIndices(std::span<ArquivoDoCliente> arquivos) {
    for (ArquivoDoCliente& arquivo : arquivos) {
        arquivo.comIndice =
            arquivo.tamanho >= update::kMenorComIndice && update::CaminhoSeguro(NomeDoIndice(arquivo.caminho));
    }
}

std::string NomeDoIndice(std::string_view caminho) {
    return Formatar("{}{}", caminho, update::kSufixoDoIndice);
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

std::vector<std::string_view> PastasDe(std::string_view caminho) {
    std::vector<std::string_view> pastas;
    for (std::size_t barra = caminho.find('/'); barra != std::string::npos; barra = caminho.find('/', barra + 1)) {
        pastas.push_back(caminho.substr(0, barra));
    }
    return pastas;
}

std::string ChaveDoNome(std::string_view caminho) {
    if (std::ranges::all_of(caminho, [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
        return MinusculasAscii(std::string(caminho));
    }
    // As file systems do it: one letter for one letter, whatever the language.
    const std::wstring original = DeUtf8(caminho);
    std::wstring chave = original;
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, original.data(), static_cast<int>(original.size()),
                  chave.data(), static_cast<int>(chave.size()), nullptr, nullptr, 0);
    return MinusculasAscii(ParaUtf8(chave));
}

std::set<std::string> RecusarNomes(std::span<const ArquivoDoCliente> arquivos, const std::function<void()>& aviso) {
    std::set<std::string> recusas;
    std::vector<std::string> porArquivo(arquivos.size());
    EmFatias(
        arquivos.size(), [&](std::size_t i) { porArquivo[i] = RecusaDoNome(arquivos[i]); }, aviso);
    const NomePorChave pastas = JuntarPastas(arquivos, recusas);
    NomePorChave publicados;
    publicados.reserve(arquivos.size());
    for (std::size_t i = 0; i < arquivos.size(); ++i) {
        const ArquivoDoCliente& arquivo = arquivos[i];
        if (!porArquivo[i].empty()) {
            recusas.insert(std::move(porArquivo[i]));
            continue;
        }
        for (const std::string& nome : NomesDe(arquivo)) {
            const auto [lugar, novo] = publicados.emplace(ChaveDoNome(nome), arquivo.caminho);
            if (!novo) {
                recusas.insert(Formatar("{} e {}: seriam publicados com o mesmo nome", lugar->second, arquivo.caminho));
            }
            if (const auto pasta = pastas.find(lugar->first); pasta != pastas.end()) {
                recusas.insert(Formatar("{} e {}: arquivo e pasta com o mesmo nome", nome, pasta->second));
            }
        }
    }
    return recusas;
}

}  // namespace zu::launcher::forjal
