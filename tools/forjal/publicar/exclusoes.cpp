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
    Padrao novo{.escrito = std::string(padrao)};
    std::ranges::replace(novo.escrito, '\\', '/');
    novo.soPastas = novo.escrito.ends_with('/');
    const std::string_view nome =
        std::string_view(novo.escrito).substr(0, novo.escrito.size() - (novo.soPastas ? 1 : 0));
    novo.chave = DeUtf8(ChaveDoNome(nome));
    novo.caminhoInteiro = nome.find('/') != std::string_view::npos;
    padroes_.push_back(std::move(novo));
}

void Exclusoes::AcrescentarAsDeSempre() {
    for (const std::string_view padrao : kDeSempre)
        Acrescentar(padrao);
}

bool Exclusoes::Exclui(const std::string& caminho, bool pasta) const {
    if (padroes_.empty()) return false;
    const std::wstring inteiro = DeUtf8(ChaveDoNome(caminho));
    const std::wstring_view nome = std::wstring_view(inteiro).substr(inteiro.rfind(L'/') + 1);
    return std::ranges::any_of(padroes_, [&](const Padrao& padrao) {
        return (pasta || !padrao.soPastas) && Casa(padrao.chave, padrao.caminhoInteiro ? inteiro : nome);
    });
}

std::string Exclusoes::Texto() const {
    std::string texto;
    for (const Padrao& padrao : padroes_)
        texto += (texto.empty() ? "" : " ") + padrao.escrito;
    return texto;
}

}  // namespace zu::launcher::forjal
