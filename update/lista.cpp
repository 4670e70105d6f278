#include "update/lista.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "core/base64.h"
#include "core/formato.h"
#include "core/texto.h"
#include "update/caminhos.h"

namespace zu::launcher::update {
namespace {

constexpr std::string_view kAssinatura = ";assinatura\t";
constexpr std::string_view kSeq = ";seq";
constexpr std::string_view kVersao = ";versao";
constexpr std::string_view kChaveAssets = ";chave-assets";
constexpr std::string_view kValidade = ";validade";
constexpr std::string_view kRemover = ";remover";
constexpr std::string_view kBlocos = ";blocos";
constexpr std::string_view kMarcaUtf8 = "\xEF\xBB\xBF";
constexpr std::uint32_t kMaximoDePartes = 999;
constexpr std::size_t kLetrasDoSha256 = 64;

std::string_view SemFim(std::string_view texto, std::string_view letras) {
    const std::size_t ultimo = texto.find_last_not_of(letras);
    return texto.substr(0, ultimo == std::string_view::npos ? 0 : ultimo + 1);
}

// The TAB-separated fields of a line; the sixth and later ones are never looked at.
struct Campos {
    std::array<std::string_view, 5> valor;
    std::size_t quantos = 0;
};

Campos Separar(std::string_view linha) {
    Campos campos;
    while (true) {
        const std::size_t fim = AcharByte(linha, '\t');
        campos.valor[campos.quantos++] = linha.substr(0, fim);
        if (fim == linha.size() || campos.quantos == campos.valor.size()) return campos;
        linha.remove_prefix(fim + 1);
    }
}

// The leading number counts; what follows it does not. No number, or one too large, changes nothing.
void LerSeq(std::string_view texto, std::int64_t& seq) {
    std::int64_t lido = 0;
    if (std::from_chars(texto.data(), texto.data() + texto.size(), lido).ec == std::errc{}) seq = lido;
}

// What is not as it should be is ignored, as by a launcher that does not know the directive.
void LerBlocos(const Campos& campos, UpdateList& lista) {
    IndiceListado indice{.caminho = std::string(campos.valor[1]),
                         .sha256 = MinusculasAscii(std::string(campos.valor[3]))};
    if (CaminhoSeguro(indice.caminho) && LerNumeroInteiro(campos.valor[2], indice.tamanho) &&
        indice.sha256.size() == kLetrasDoSha256) {
        lista.blocos.push_back(std::move(indice));
    }
}

bool LerDiretiva(const Campos& campos, UpdateList& lista, std::string& falha) {
    if (campos.quantos < 2) return true;
    const auto [nome, valor] = std::pair(campos.valor[0], campos.valor[1]);
    if (nome == kSeq) {
        LerSeq(valor, lista.seq);
    } else if (nome == kVersao) {
        lista.versao = valor;
    } else if (nome == kChaveAssets) {
        lista.chaveAssets = valor;
    } else if (nome == kValidade) {
        if (const auto instante = LerInstante(valor)) lista.validade = instante;
    } else if (nome == kBlocos) {
        LerBlocos(campos, lista);
    } else if (nome == kRemover) {
        if (!CaminhoSeguro(valor)) {
            falha = Formatar("caminho inseguro em ;remover ({})", valor);
            return false;
        }
        lista.remover.emplace_back(valor);
    }
    return true;
}

// Every letter is looked at, without a way out in between: so the compiler looks at many at once.
bool TemMaiuscula(std::span<const char, kLetrasDoSha256> letras) {
    unsigned maiusculas = 0;
    for (const char c : letras)
        maiusculas |= static_cast<unsigned>(c >= 'A') & static_cast<unsigned>(c <= 'Z');
    return maiusculas != 0;
}

bool LerArquivo(const Campos& campos, UpdateList& lista, std::string& falha) {
    if (campos.quantos < 3) {
        falha = "esperado caminho, CRC e tamanho separados por TAB";
        return false;
    }
    const auto& [caminho, crc, tamanho, sha256, partes] = campos.valor;
    ItemLista item{.caminho = caminho};
    if (!CaminhoSeguro(caminho)) {
        falha = Formatar("caminho inseguro ({})", caminho);
        return false;
    }
    if (!LerNumeroInteiro(crc, item.crc, 16) || !LerNumeroInteiro(tamanho, item.tamanho)) {
        falha = "CRC/tamanho inválido";
        return false;
    }
    if (sha256.size() == kLetrasDoSha256) {
        const bool escrever = TemMaiuscula(std::span<const char, kLetrasDoSha256>(sha256));
        item.sha256 = escrever ? lista.Guardar(MinusculasAscii(std::string(sha256))) : sha256;
    } else if (!sha256.empty()) {
        falha = "SHA-256 inválido";
        return false;
    }
    if (!partes.empty() && (!LerNumeroInteiro(partes, item.partes) || item.partes > kMaximoDePartes)) {
        falha = "número de partes inválido";
        return false;
    }
    lista.itens.push_back(item);
    return true;
}

bool LerLinha(std::string_view linha, UpdateList& lista, std::string& falha) {
    if (linha.empty()) return true;
    const Campos campos = Separar(linha);
    return linha.front() == ';' ? LerDiretiva(campos, lista, falha) : LerArquivo(campos, lista, falha);
}

}  // namespace

ListaSeparada SepararAssinatura(std::string_view texto) {
    const std::size_t inicio = texto.find(kAssinatura);
    if (inicio == std::string_view::npos || (inicio > 0 && texto[inicio - 1] != '\n')) return {};
    const std::string_view base64 = SemFim(texto.substr(inicio + kAssinatura.size()), " \r\n");
    // A line end inside means text behind the signature line.
    ListaSeparada separada{.assinados = texto.substr(0, inicio), .assinatura = {}};
    separada.ok = base64.find('\n') == std::string_view::npos && Base64Decode(base64, separada.assinatura) &&
                  !separada.assinatura.empty();
    return separada;
}

std::string_view UpdateList::Guardar(std::string texto) {
    if (!textos) textos = std::make_shared<std::deque<std::string>>();
    return textos->emplace_back(std::move(texto));
}

bool LerLista(std::string assinados, UpdateList& lista, std::string& erro) {
    lista = {};
    constexpr std::size_t kLinhaComum = 96;  // bytes; it has a SHA-256
    lista.itens.reserve(assinados.size() / kLinhaComum + 1);
    std::string_view restam = lista.Guardar(std::move(assinados));
    if (restam.starts_with(kMarcaUtf8)) restam.remove_prefix(kMarcaUtf8.size());
    for (std::size_t numero = 1; !restam.empty(); ++numero) {
        const std::string_view linha = SemFim(TomarAte(restam, '\n'), " \r");
        std::string falha;
        if (!LerLinha(linha, lista, falha)) {
            erro = Formatar("linha {}: {}", numero, falha);
            return false;
        }
    }
    if (lista.itens.empty()) {
        erro = "lista vazia";
        return false;
    }
    return true;
}

std::string EscreverLista(const UpdateList& lista) {
    std::string texto = Formatar("{}\t{}\n", kSeq, lista.seq);
    if (!lista.versao.empty()) texto += Formatar("{}\t{}\n", kVersao, lista.versao);
    if (!lista.chaveAssets.empty()) texto += Formatar("{}\t{}\n", kChaveAssets, lista.chaveAssets);
    if (lista.validade) texto += Formatar("{}\t{}\n", kValidade, TextoDoInstante(*lista.validade));
    for (const ItemLista& item : lista.itens) {
        texto += Formatar("{}\t{:08X}\t{}\t{}", item.caminho, item.crc, item.tamanho, item.sha256);
        texto += item.partes == 0 ? std::string("\n") : Formatar("\t{}\n", item.partes);
    }
    for (const IndiceListado& indice : lista.blocos)
        texto += Formatar("{}\t{}\t{}\t{}\n", kBlocos, indice.caminho, indice.tamanho, indice.sha256);
    for (const std::string& caminho : lista.remover)
        texto += Formatar("{}\t{}\n", kRemover, caminho);
    return texto;
}

std::string JuntarAssinatura(std::string_view assinados, std::span<const std::uint8_t> assinatura) {
    return Formatar("{}{}{}\n", assinados, kAssinatura, Base64Encode(assinatura));
}

}  // namespace zu::launcher::update
