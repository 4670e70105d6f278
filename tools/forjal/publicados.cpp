#include "tools/forjal/publicados.h"

#include <windows.h>

#include <algorithm>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tools/forjal/varredura.h"
#include "update/caminhos.h"
#include "update/hash_arquivo.h"

namespace zu::launcher::forjal {
namespace {

constexpr std::string_view kMarcaLeitura = "lido\t";

// The same content is the same text.
template <class Mapa>
std::vector<const typename Mapa::value_type*> EmOrdem(const Mapa& mapa) {
    std::vector<const typename Mapa::value_type*> pares;
    pares.reserve(mapa.size());
    for (const auto& par : mapa)
        pares.push_back(&par);
    std::ranges::sort(pares, {}, [](const auto* par) -> const std::string& { return par->first; });
    return pares;
}

void ApagarPastasVazias(const std::filesystem::path& raiz, std::filesystem::path pasta) {
    // A folder that still holds something cannot be removed, and ends it.
    while (pasta != raiz && RemoveDirectoryW(pasta.c_str()) != 0)
        pasta = pasta.parent_path();
}

// "SHA256 TAB CRC TAB SIZE TAB TIME TAB PARTS TAB PATH", behind the mark of such a line.
bool LerLeitura(std::string_view linha, std::string& caminho, Leitura& leitura) {
    const std::string_view sha256 = TomarAte(linha, '\t');
    bool certa = sha256.size() == 2 * leitura.sha256.size();
    for (std::size_t i = 0; certa && i < leitura.sha256.size(); ++i)
        certa = LerNumeroInteiro(sha256.substr(2 * i, 2), leitura.sha256[i], 16);
    caminho = std::string(linha.substr(std::min(linha.rfind('\t') + 1, linha.size())));
    return certa && LerNumeroInteiro(TomarAte(linha, '\t'), leitura.crc, 16) &&
           LerNumeroInteiro(TomarAte(linha, '\t'), leitura.tamanho) &&
           LerNumeroInteiro(TomarAte(linha, '\t'), leitura.modificado) &&
           LerNumeroInteiro(TomarAte(linha, '\t'), leitura.partes);
}

}  // namespace

std::wstring NomeNoDisco(const std::filesystem::path& caminho) {
    WIN32_FIND_DATAW achado{};
    const HANDLE busca = FindFirstFileW(caminho.c_str(), &achado);
    if (busca == INVALID_HANDLE_VALUE) return {};
    FindClose(busca);
    return achado.cFileName;
}

bool Publicados::Ler(const std::filesystem::path& pasta, std::string& erro) {
    entradas_.clear();
    leituras_.clear();
    const std::filesystem::path arquivo = pasta / kNomeDoRegistro;
    InfoArquivo info;
    if (!LerInfoArquivo(arquivo, info)) return true;
    std::string texto;
    if (!LerArquivoInteiro(arquivo, texto)) {
        erro = Formatar("não foi possível ler {} (erro {})", ParaUtf8(arquivo.native()), GetLastError());
        return false;
    }
    for (std::string_view resto = texto; !resto.empty();) {
        std::string_view linha = TomarAte(resto, '\n');
        if (linha.starts_with(kMarcaLeitura)) {
            std::string caminho;
            Leitura leitura;
            if (LerLeitura(linha.substr(kMarcaLeitura.size()), caminho, leitura)) leituras_[caminho] = leitura;
            continue;
        }
        Entrada entrada;
        const bool certa = LerNumeroInteiro(TomarAte(linha, '\t'), entrada.crc, 16) &&
                           LerNumeroInteiro(TomarAte(linha, '\t'), entrada.tamanho);
        // A line that somebody has tampered with must not lead out of the folder.
        if (!certa || !update::CaminhoSeguro(linha)) continue;
        entrada.caminho = update::NormalizarCaminho(linha);
        std::string chave = ChaveDoNome(entrada.caminho);
        entradas_.insert_or_assign(std::move(chave), std::move(entrada));
    }
    return true;
}

std::string Publicados::Texto() const {
    std::string texto;
    for (const auto* par : EmOrdem(entradas_)) {
        const Entrada& entrada = par->second;
        texto += Formatar("{:08X}\t{}\t{}\n", entrada.crc, entrada.tamanho, entrada.caminho);
    }
    for (const auto* par : EmOrdem(leituras_)) {
        const auto& [caminho, leitura] = *par;
        if (!leitura.atual) continue;
        texto += Formatar("{}{}\t{:08X}\t{}\t{}\t{}\t{}\n", kMarcaLeitura, ParaHex(leitura.sha256), leitura.crc,
                          leitura.tamanho, leitura.modificado, leitura.partes, caminho);
    }
    return texto;
}

void Publicados::Anotar(const std::string& caminho, std::uint32_t crc, std::uint64_t tamanho) {
    entradas_.insert_or_assign(ChaveDoNome(caminho),
                               Entrada{.caminho = caminho, .tamanho = tamanho, .crc = crc, .uso = Uso::kAtual});
}

void Publicados::Manter(const std::string& caminho) {
    if (const auto achada = entradas_.find(ChaveDoNome(caminho)); achada != entradas_.end()) {
        achada->second.uso = Uso::kAtual;
    }
}

void Publicados::Conservar(const std::string& caminho) {
    const auto achada = entradas_.find(ChaveDoNome(caminho));
    if (achada != entradas_.end() && achada->second.uso == Uso::kNenhum) achada->second.uso = Uso::kAnterior;
}

const Leitura* Publicados::Lida(const std::string& caminho) const {
    const auto achada = leituras_.find(caminho);
    return achada != leituras_.end() ? &achada->second : nullptr;
}

void Publicados::AnotarLeitura(const std::string& caminho, const Leitura& leitura) {
    leituras_.insert_or_assign(caminho, leitura).first->second.atual = true;
}

bool Publicados::Tamanho(const std::string& caminho, std::uint64_t& tamanho) const {
    const auto achada = entradas_.find(ChaveDoNome(caminho));
    if (achada == entradas_.end()) return false;
    tamanho = achada->second.tamanho;
    return true;
}

Publicados::Antigos Publicados::ContarAntigos() const {
    Antigos antigos;
    for (const auto& [chave, entrada] : entradas_) {
        antigos.livres += entrada.uso == Uso::kNenhum ? 1 : 0;
        antigos.conservados += entrada.uso == Uso::kAnterior ? 1 : 0;
    }
    return antigos;
}

std::size_t Publicados::ApagarAntigos(const std::filesystem::path& pasta, std::set<std::string>& avisos) {
    std::size_t apagados = 0;
    std::erase_if(entradas_, [&](const auto& par) {
        const Entrada& entrada = par.second;
        const std::filesystem::path alvo = pasta / DeUtf8(entrada.caminho);
        InfoArquivo info;
        if (entrada.uso != Uso::kNenhum) return false;
        if (!LerInfoArquivo(alvo, info)) return true;
        const ResultadoHash hash = info.tamanho == entrada.tamanho ? HashArquivo(alvo, 0) : ResultadoHash{};
        if (!hash.ok || hash.crc != entrada.crc) {
            avisos.insert(Formatar("{}: não é mais o que foi publicado; deixado na saída", entrada.caminho));
            return true;
        }
        if (!ApagarArquivo(alvo)) {
            avisos.insert(Formatar("{}: não foi possível apagar (erro {})", entrada.caminho, GetLastError()));
            return false;
        }
        ++apagados;
        ApagarPastasVazias(pasta, alvo.parent_path());
        return true;
    });
    return apagados;
}

bool AcharNomeTrocado(const std::filesystem::path& pasta, const std::string& caminho, std::set<std::string>& certas,
                      NomeTrocado& trocado) {
    std::vector<std::string> partes = PastasDe(caminho);
    partes.push_back(caminho);
    for (const std::string& parte : partes) {
        if (certas.contains(parte)) continue;
        const std::filesystem::path certo = pasta / DeUtf8(parte);
        const std::wstring nome = NomeNoDisco(certo);
        // A search also answers to the short names of long ones: those are other files.
        if (certo.filename() != nome &&
            ChaveDoNome(ParaUtf8(nome)) == ChaveDoNome(ParaUtf8(certo.filename().native()))) {
            trocado = {.caminho = parte, .noDisco = nome};
            return true;
        }
        if (parte.size() < caminho.size()) certas.insert(parte);
    }
    return false;
}

}  // namespace zu::launcher::forjal
