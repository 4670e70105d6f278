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

void ApagarPastasVazias(const std::filesystem::path& raiz, std::filesystem::path pasta) {
    // A folder that still holds something cannot be removed, and ends it.
    while (pasta != raiz && RemoveDirectoryW(pasta.c_str()) != 0)
        pasta = pasta.parent_path();
}

// Empty when there is nothing at the path.
std::wstring NomeNoDisco(const std::filesystem::path& caminho) {
    WIN32_FIND_DATAW achado{};
    const HANDLE busca = FindFirstFileW(caminho.c_str(), &achado);
    if (busca == INVALID_HANDLE_VALUE) return {};
    FindClose(busca);
    return achado.cFileName;
}

// By way of another name, because a file system may take a change of letter case alone for no change at all.
bool Renomear(const std::filesystem::path& de, const std::filesystem::path& para) {
    std::filesystem::path meio = para;
    meio += L".forjal.tmp";
    return MoveFileExW(de.c_str(), meio.c_str(), 0) != 0 && MoveFileExW(meio.c_str(), para.c_str(), 0) != 0;
}

}  // namespace

bool Publicados::Ler(const std::filesystem::path& pasta, std::string& erro) {
    entradas_.clear();
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
        Entrada entrada;
        const bool certa = LerNumeroInteiro(TomarAte(linha, '\t'), entrada.crc, 16) &&
                           LerNumeroInteiro(TomarAte(linha, '\t'), entrada.tamanho);
        // A line that somebody has tampered with must not lead out of the folder.
        if (!certa || !update::CaminhoSeguro(linha)) continue;
        Anotar(update::NormalizarCaminho(linha), entrada.crc, entrada.tamanho);
    }
    return true;
}

bool Publicados::Gravar(const std::filesystem::path& pasta) const {
    std::string texto;
    for (const auto& [chave, entrada] : entradas_) {
        texto += Formatar("{:08X}\t{}\t{}\n", entrada.crc, entrada.tamanho, entrada.caminho);
    }
    return GravarArquivoAtomico(pasta / kNomeDoRegistro, texto);
}

void Publicados::Anotar(const std::string& caminho, std::uint32_t crc, std::uint64_t tamanho) {
    entradas_.insert_or_assign(ChaveDoNome(caminho), Entrada{.caminho = caminho, .tamanho = tamanho, .crc = crc});
}

std::size_t Publicados::Antigos(const std::set<std::wstring>& chaves) const {
    return static_cast<std::size_t>(
        std::ranges::count_if(entradas_, [&](const auto& par) { return !chaves.contains(par.first); }));
}

std::size_t Publicados::ApagarAntigos(const std::filesystem::path& pasta, const std::set<std::wstring>& chaves,
                                      std::set<std::string>& avisos) {
    std::size_t apagados = 0;
    std::erase_if(entradas_, [&](const auto& par) {
        const auto& [chave, entrada] = par;
        const std::filesystem::path alvo = pasta / DeUtf8(entrada.caminho);
        InfoArquivo info;
        if (chaves.contains(chave)) return false;
        if (!LerInfoArquivo(alvo, info)) return true;
        const ResultadoHash hash = info.tamanho == entrada.tamanho ? HashArquivo(alvo, 0) : ResultadoHash{};
        if (!hash.ok || hash.crc != entrada.crc) {
            avisos.insert(Formatar("{}: não é mais o que foi publicado; deixado na saída", entrada.caminho));
            return true;
        }
        if (DeleteFileW(alvo.c_str()) == 0) {
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

bool AcertarCaixa(const std::filesystem::path& pasta, const std::string& caminho, std::set<std::string>& certas,
                  std::string& erro) {
    NomeTrocado trocado;
    for (std::string anterior; AcharNomeTrocado(pasta, caminho, certas, trocado); anterior = trocado.caminho) {
        const std::filesystem::path certo = pasta / DeUtf8(trocado.caminho);
        if (trocado.caminho == anterior || !Renomear(certo.parent_path() / trocado.noDisco, certo)) {
            erro = Formatar("{}: não foi possível acertar as maiúsculas e minúsculas do nome em --saida (erro {})",
                            trocado.caminho, GetLastError());
            return false;
        }
    }
    return true;
}

}  // namespace zu::launcher::forjal
