#include "tools/forjal/opcoes.h"

#include <algorithm>

#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"

namespace zu::launcher::forjal {

bool Opcoes::Ler(std::span<const std::wstring> argumentos, const Sintaxe& sintaxe, std::string& erro) {
    for (const std::wstring& argumento : argumentos) {
        if (argumento.starts_with(L"--")) {
            if (!LerOpcao(argumento, sintaxe, erro)) return false;
        } else if (sintaxe.arquivo.empty() || !arquivo_.empty() || argumento.empty()) {
            erro = Formatar("argumento a mais: \"{}\"", ParaUtf8(argumento));
            return false;
        } else {
            arquivo_ = argumento;
        }
    }
    for (const RegraDeOpcao& regra : sintaxe.opcoes) {
        if (regra.vezes == Vezes::kUma && !Tem(regra.nome)) {
            erro = Formatar("falta a opção {}=", ParaUtf8(regra.nome));
            return false;
        }
    }
    if (!sintaxe.arquivo.empty() && arquivo_.empty()) {
        erro = Formatar("falta {}", sintaxe.arquivo);
        return false;
    }
    return true;
}

bool Opcoes::LerOpcao(const std::wstring& argumento, const Sintaxe& sintaxe, std::string& erro) {
    const std::size_t igual = argumento.find(L'=');
    const bool comValor = igual != std::wstring::npos;
    const std::wstring nome = argumento.substr(0, igual);
    const std::string visivel = ParaUtf8(nome);
    const auto regra = std::ranges::find(sintaxe.opcoes, std::wstring_view(nome), &RegraDeOpcao::nome);
    if (regra == sintaxe.opcoes.end()) {
        erro = Formatar("opção desconhecida: {}", visivel);
    } else if (regra->vezes != Vezes::kVarias && Tem(nome)) {
        erro = Formatar("{}: dada mais de uma vez; o limite é uma", visivel);
    } else if (regra->valor == Valor::kNenhum && comValor) {
        erro = Formatar("{}: não leva valor", visivel);
    } else if (regra->valor != Valor::kNenhum && !comValor) {
        erro = Formatar("{}: falta o valor, escrito {}=VALOR", visivel, visivel);
    } else if (regra->valor == Valor::kNaoVazio && igual + 1 == argumento.size()) {
        erro = Formatar("{}: o valor não pode ser vazio", visivel);
    } else {
        dadas_.emplace_back(nome, comValor ? argumento.substr(igual + 1) : std::wstring());
        return true;
    }
    return false;
}

bool Opcoes::Tem(std::wstring_view nome) const {
    return std::ranges::any_of(dadas_, [&](const auto& dada) { return dada.first == nome; });
}

std::wstring Opcoes::Texto(std::wstring_view nome) const {
    const std::vector<std::wstring> textos = Textos(nome);
    return textos.empty() ? std::wstring() : textos.front();
}

std::vector<std::wstring> Opcoes::Textos(std::wstring_view nome) const {
    std::vector<std::wstring> textos;
    for (const auto& [dada, valor] : dadas_) {
        if (dada == nome) textos.push_back(valor);
    }
    return textos;
}

bool Opcoes::LerNumero(std::wstring_view nome, std::uint64_t menor, std::uint64_t maior, std::uint64_t& numero,
                       std::string& erro) const {
    if (!Tem(nome)) return true;
    std::uint64_t lido = 0;
    const std::string texto = ParaUtf8(Texto(nome));
    if (LerNumeroInteiro(texto, lido) && lido >= menor && lido <= maior) {
        numero = lido;
        return true;
    }
    erro = Formatar("{}: \"{}\" não é um número inteiro de {} a {}", ParaUtf8(nome), texto, menor, maior);
    return false;
}

}  // namespace zu::launcher::forjal
