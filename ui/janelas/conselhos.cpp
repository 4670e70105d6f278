#include "ui/janelas/conselhos.h"

#include <windows.h>

#include <cstddef>
#include <string>
#include <utility>

#include "core/utf16.h"

namespace zu::launcher {
namespace {

// Where the words stand in the text as words of their own, whatever the case; npos: nowhere.
std::size_t LugarDe(const std::wstring& palavras, const std::wstring& texto) {
    if (palavras.empty()) return std::wstring::npos;
    for (std::size_t inicio = 0;; ++inicio) {
        const int achado =
            FindStringOrdinal(FIND_FROMSTART, texto.c_str() + inicio, static_cast<int>(texto.size() - inicio),
                              palavras.c_str(), static_cast<int>(palavras.size()), TRUE);
        if (achado < 0) return std::wstring::npos;
        inicio += static_cast<std::size_t>(achado);
        const std::size_t fim = inicio + palavras.size();
        const bool comeca = inicio == 0 || !IsCharAlphaNumericW(texto[inicio - 1]);
        if (comeca && (fim == texto.size() || !IsCharAlphaNumericW(texto[fim]))) return inicio;
    }
}

bool ForaDeOrdem(const LinhaDiagnostico& linha) {
    return linha.estado.value_or(EstadoItem::kOk) != EstadoItem::kOk;
}

// The row that the advice is about, or null: the one whose first word it has the earliest ("driver" for "Driver de
// vídeo"), and of several such the one of which it has the whole name ("Memória de vídeo" before "Memória").
LinhaDiagnostico* DonaDoConselho(std::vector<LinhaDiagnostico>& linhas, const std::wstring& conselho) {
    LinhaDiagnostico* dona = nullptr;
    std::pair melhor{std::wstring::npos, std::size_t{0}};  // the place, and what is missing of the longest name
    for (LinhaDiagnostico& linha : linhas) {
        const std::size_t lugar = LugarDe(linha.nome.substr(0, linha.nome.find(L' ')), conselho);
        if (!ForaDeOrdem(linha) || lugar == std::wstring::npos) continue;
        const bool inteira = LugarDe(linha.nome, conselho) == lugar;
        const std::pair este{lugar, std::wstring::npos - (inteira ? linha.nome.size() : 0)};
        if (este >= melhor) continue;
        melhor = este;
        dona = &linha;
    }
    return dona;
}

}  // namespace

std::vector<LinhaDiagnostico> LinhasDoDiagnostico(const ResultadoRequisitos& resultado) {
    std::vector<LinhaDiagnostico> linhas;
    for (const ItemRequisito& item : resultado.items) {
        linhas.push_back(
            {DeUtf8(item.nome), DeUtf8(item.valor), DeUtf8(item.penultima), DeUtf8(item.ultima), L"", item.estado});
    }
    std::vector<LinhaDiagnostico> semDona;
    for (const std::string& texto : resultado.oQueFazer) {
        const std::wstring conselho = DeUtf8(texto);
        if (LinhaDiagnostico* const dona = DonaDoConselho(linhas, conselho))
            dona->conselho += (dona->conselho.empty() ? L"" : L"\n") + conselho;
        else
            semDona.push_back({L"", L"", L"", L"", conselho, {}});
    }
    linhas.insert(linhas.end(), semDona.begin(), semDona.end());
    return linhas;
}

}  // namespace zu::launcher
