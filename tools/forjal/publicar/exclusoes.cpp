#include "tools/forjal/publicar/exclusoes.h"

#include <algorithm>
#include <array>

#include "core/utf16.h"
#include "tools/forjal/varredura.h"

namespace zu::launcher::forjal {
namespace {

constexpr std::array<std::string_view, 6> kDeSempre{".git/", ".svn/", "Thumbs.db", "desktop.ini", ".DS_Store", "*.pdb"};

bool Casa(std::wstring_view padrao, std::wstring_view texto) {
    std::size_t p = 0;
    std::size_t t = 0;
    std::size_t estrela = std::wstring_view::npos;  // the last one, and how far the text is that it stands for
    std::size_t ate = 0;
    while (t < texto.size()) {
        if (p < padrao.size() && padrao[p] == L'*') {
            estrela = p++;
            ate = t;
        } else if (p < padrao.size() && (padrao[p] == L'?' || padrao[p] == texto[t])) {
            ++p;
            ++t;
        } else if (estrela != std::wstring_view::npos) {
            p = estrela + 1;
            t = ++ate;
        } else {
            return false;
        }
    }
    return padrao.find_first_not_of(L'*', p) == std::wstring_view::npos;
}

}  // namespace

void Exclusoes::Acrescentar(std::string_view padrao) {
    std::string normal(padrao);
    std::ranges::replace(normal, '\\', '/');
    padroes_.push_back(std::move(normal));
}

void Exclusoes::AcrescentarAsDeSempre() {
    for (const std::string_view padrao : kDeSempre)
        Acrescentar(padrao);
}

bool Exclusoes::Exclui(const std::string& caminho, bool pasta) const {
    if (padroes_.empty()) return false;
    const std::wstring inteiro = DeUtf8(ChaveDoNome(caminho));
    const std::wstring nome = inteiro.substr(inteiro.rfind(L'/') + 1);
    return std::ranges::any_of(padroes_, [&](std::string_view padrao) {
        if (padrao.ends_with('/')) {
            if (!pasta) return false;
            padrao.remove_suffix(1);
        }
        return Casa(DeUtf8(ChaveDoNome(padrao)), padrao.find('/') != std::string_view::npos ? inteiro : nome);
    });
}

std::string Exclusoes::Texto() const {
    std::string texto;
    for (const std::string& padrao : padroes_)
        texto += (texto.empty() ? "" : " ") + padrao;
    return texto;
}

}  // namespace zu::launcher::forjal
