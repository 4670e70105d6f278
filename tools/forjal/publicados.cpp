#include "tools/forjal/publicados.h"

#include <windows.h>

#include <algorithm>
#include <utility>

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

void ApagarPastasVazias(const std::filesystem::path& raiz, std::filesystem::path pasta) {
    // A folder that still holds something cannot be removed, and ends it.
    while (pasta != raiz && RemoveDirectoryW(pasta.c_str()) != 0)
        pasta = pasta.parent_path();
}

// "SHA256 TAB CRC TAB SIZE TAB TIME TAB PARTS TAB PATH", behind the mark of such a line.
bool LerLeitura(std::string_view linha, Leitura& leitura) {
    const std::string_view sha256 = TomarAte(linha, '\t');
    bool certa = sha256.size() == 2 * leitura.sha256.size();
    for (std::size_t i = 0; certa && i < leitura.sha256.size(); ++i)
        certa = LerNumeroInteiro(sha256.substr(2 * i, 2), leitura.sha256[i], 16);
    certa = certa && LerNumeroInteiro(TomarAte(linha, '\t'), leitura.crc, 16) &&
            LerNumeroInteiro(TomarAte(linha, '\t'), leitura.tamanho) &&
            LerNumeroInteiro(TomarAte(linha, '\t'), leitura.modificado) &&
            LerNumeroInteiro(TomarAte(linha, '\t'), leitura.partes);
    leitura.caminho = linha;
    return certa;
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
    entradas_ = {};
    leituras_ = {};
    const std::filesystem::path arquivo = pasta / kNomeDoRegistro;
    InfoArquivo info;
    if (!LerInfoArquivo(arquivo, info)) return true;
    std::string texto;
    if (!LerArquivoInteiro(arquivo, texto)) {
        erro = Formatar("não foi possível ler {} (erro {})", ParaUtf8(arquivo.native()), GetLastError());
        return false;
    }
    std::vector<Entrada> entradas;
    std::vector<Leitura> leituras;
    for (std::string_view resto = texto; !resto.empty();) {
        std::string_view linha = TomarAte(resto, '\n');
        if (linha.starts_with(kMarcaLeitura)) {
            Leitura leitura;
            if (LerLeitura(linha.substr(kMarcaLeitura.size()), leitura)) leituras.push_back(std::move(leitura));
            continue;
        }
        Entrada entrada;
        const bool certa = LerNumeroInteiro(TomarAte(linha, '\t'), entrada.crc, 16) &&
                           LerNumeroInteiro(TomarAte(linha, '\t'), entrada.tamanho);
        // A line that somebody has tampered with must not lead out of the folder.
        if (!certa || !update::CaminhoSeguro(linha)) continue;
        entrada.caminho = update::NormalizarCaminho(linha);
        entradas.push_back(std::move(entrada));
    }
    entradas_.Juntar(std::move(entradas));
    leituras_.Juntar(std::move(leituras));
    return true;
}

std::string Publicados::Texto() {
    entradas_.Juntar(std::exchange(novas_, {}));
    leituras_.Juntar(std::exchange(novasLeituras_, {}));
    std::string texto;
    for (const Entrada& entrada : entradas_.Itens())
        texto += Formatar("{:08X}\t{}\t{}\n", entrada.crc, entrada.tamanho, entrada.caminho);
    for (const Leitura& leitura : leituras_.Itens()) {
        if (!leitura.atual) continue;
        texto += Formatar("{}{}\t{:08X}\t{}\t{}\t{}\t{}\n", kMarcaLeitura, ParaHex(leitura.sha256), leitura.crc,
                          leitura.tamanho, leitura.modificado, leitura.partes, leitura.caminho);
    }
    return texto;
}

void Publicados::Anotar(const std::string& caminho, std::uint32_t crc, std::uint64_t tamanho) {
    Entrada* const antes = entradas_.Achar(caminho);
    (antes != nullptr ? *antes : novas_.emplace_back()) = {
        .caminho = caminho, .tamanho = tamanho, .crc = crc, .uso = Uso::kAtual};
}

void Publicados::Manter(const std::string& caminho) {
    if (Entrada* const entrada = entradas_.Achar(caminho)) entrada->uso = Uso::kAtual;
}

void Publicados::Conservar(const std::string& caminho) {
    Entrada* const entrada = entradas_.Achar(caminho);
    if (entrada != nullptr && entrada->uso == Uso::kNenhum) entrada->uso = Uso::kAnterior;
}

const Leitura* Publicados::Lida(const std::string& caminho) {
    const Leitura* const leitura = leituras_.Achar(caminho);
    return leitura != nullptr && leitura->caminho == caminho ? leitura : nullptr;
}

void Publicados::AnotarLeitura(Leitura leitura) {
    leitura.atual = true;
    Leitura* const antes = leituras_.Achar(leitura.caminho);
    (antes != nullptr ? *antes : novasLeituras_.emplace_back()) = std::move(leitura);
}

bool Publicados::Tamanho(const std::string& caminho, std::uint64_t& tamanho) {
    const Entrada* const entrada = entradas_.Achar(caminho);
    if (entrada != nullptr) tamanho = entrada->tamanho;
    return entrada != nullptr;
}

Publicados::Antigos Publicados::ContarAntigos() const {
    Antigos antigos;
    for (const Entrada& entrada : entradas_.Itens()) {
        antigos.livres += entrada.uso == Uso::kNenhum ? 1 : 0;
        antigos.conservados += entrada.uso == Uso::kAnterior ? 1 : 0;
    }
    return antigos;
}

std::size_t Publicados::ApagarAntigos(const std::filesystem::path& pasta, std::set<std::string>& avisos) {
    std::size_t apagados = 0;
    entradas_.TirarSe([&](const Entrada& entrada) {
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
    std::vector<std::string_view> partes = PastasDe(caminho);
    partes.push_back(caminho);
    for (const std::string_view parte : partes) {
        if (certas.contains(std::string(parte))) continue;
        const std::filesystem::path certo = pasta / DeUtf8(parte);
        const std::wstring nome = NomeNoDisco(certo);
        // A search also answers to the short names of long ones: those are other files.
        if (certo.filename() != nome &&
            ChaveDoNome(ParaUtf8(nome)) == ChaveDoNome(ParaUtf8(certo.filename().native()))) {
            trocado = {.caminho = std::string(parte), .noDisco = nome};
            return true;
        }
        if (parte.size() < caminho.size()) certas.emplace(parte);
    }
    return false;
}

}  // namespace zu::launcher::forjal
