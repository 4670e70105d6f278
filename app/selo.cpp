#include "app/selo.h"

#include <algorithm>
#include <span>
#include <vector>

#include "core/formato.h"
#include "core/hash.h"

namespace zu::launcher {
namespace {

constexpr std::size_t kPosicaoMagica = 0;
constexpr std::size_t kPosicaoVersao = 4;
constexpr std::size_t kPosicaoTamanho = 6;
constexpr std::size_t kPosicaoAutomatico = 40;

constexpr std::string_view kMagica = "LEMU";
constexpr std::uint16_t kVersao = 1;

// One secret serves two purposes, kept apart by what each hashes first.
constexpr std::string_view kRotuloEtiqueta = "Launcher.emu/etiqueta";
constexpr std::string_view kRotuloFluxo = "Launcher.emu/fluxo";

constexpr std::array kCamposDeTexto{kCampoNome, kCampoUpdate, kCampoSite, kCampoSeletor, kCampoRegistro};

std::uint16_t LerU16(const CorpoSelado& corpo, std::size_t posicao) {
    return static_cast<std::uint16_t>(corpo[posicao] | corpo[posicao + 1] << 8);
}

void EscreverU16(CorpoSelado& corpo, std::size_t posicao, std::uint16_t valor) {
    corpo[posicao] = static_cast<std::uint8_t>(valor & 0xFF);
    corpo[posicao + 1] = static_cast<std::uint8_t>(valor >> 8);
}

Sha256Digest Etiqueta(const CorpoSelado& embaralhado, const SegredoSelo& segredo) {
    std::vector<std::uint8_t> dados(kRotuloEtiqueta.begin(), kRotuloEtiqueta.end());
    dados.insert(dados.end(), embaralhado.begin(), embaralhado.end());
    return HmacSha256(segredo, dados);
}

// Its own inverse: XOR with a key stream, block n being the HMAC of the label and n (32-bit, little-endian).
void Embaralhar(CorpoSelado& corpo, const SegredoSelo& segredo) {
    std::vector<std::uint8_t> dados(kRotuloFluxo.begin(), kRotuloFluxo.end());
    dados.resize(dados.size() + 4);
    Sha256Digest bloco{};
    for (std::size_t i = 0; i < corpo.size(); ++i) {
        if (i % bloco.size() == 0) {
            const std::size_t n = i / bloco.size();
            for (std::size_t b = 0; b < 4; ++b) {
                dados[kRotuloFluxo.size() + b] = static_cast<std::uint8_t>(n >> (8 * b) & 0xFF);
            }
            bloco = HmacSha256(segredo, dados);
        }
        corpo[i] ^= bloco[i % bloco.size()];
    }
}

// Looks at every byte whatever it finds, so that the time taken tells nothing about the right tag.
bool IguaisEmTempoConstante(std::span<const std::uint8_t> a, std::string_view b) {
    unsigned diferenca = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        diferenca |= a[i] ^ static_cast<unsigned>(static_cast<std::uint8_t>(b[i]));
    return diferenca == 0;
}

std::string LerTexto(const CorpoSelado& corpo, const CampoDeTexto& campo) {
    const auto* inicio = corpo.data() + campo.posicao;
    return {inicio, std::find(inicio, inicio + campo.Limite(), 0)};
}

void EscreverTexto(CorpoSelado& corpo, const CampoDeTexto& campo, std::string_view texto) {
    std::ranges::copy(texto.substr(0, campo.Limite()), corpo.data() + campo.posicao);
}

}  // namespace

bool AbrirSelado(std::string_view arquivo, const SegredoSelo& segredo, CorpoSelado& corpo, std::string& recusa) {
    if (arquivo.size() != kTamanhoSelado) {
        recusa = Formatar("tamanho inválido ({} bytes, esperado {}): gerado por outra versão do Forjal ou adulterado",
                          arquivo.size(), kTamanhoSelado);
        return false;
    }
    CorpoSelado aberto{};
    std::ranges::copy(arquivo.substr(0, kTamanhoCorpo), aberto.begin());
    const Sha256Digest etiqueta = Etiqueta(aberto, segredo);
    // Zeros are what a hash that failed yields; no file is to pass by that.
    if (!IguaisEmTempoConstante(etiqueta, arquivo.substr(kTamanhoCorpo)) || etiqueta == Sha256Digest{}) {
        recusa = "arquivo adulterado (a verificação de integridade falhou)";
        return false;
    }
    Embaralhar(aberto, segredo);
    if (!std::ranges::equal(kMagica, std::span(aberto).subspan(kPosicaoMagica, kMagica.size())) ||
        LerU16(aberto, kPosicaoTamanho) != kTamanhoCorpo) {
        recusa = "não é um Launcher.emu válido";
        return false;
    }
    if (const std::uint16_t versao = LerU16(aberto, kPosicaoVersao); versao != kVersao) {
        recusa = Formatar("versão {} do arquivo, o launcher lê a {}: gere de novo com o Forjal desta versão", versao,
                          kVersao);
        return false;
    }
    for (const CampoDeTexto& campo : kCamposDeTexto)
        aberto[campo.posicao + campo.Limite()] = 0;
    corpo = aberto;
    return true;
}

CamposSelados LerCampos(const CorpoSelado& corpo) {
    return {.nome = LerTexto(corpo, kCampoNome),
            .updateAutomatico = corpo[kPosicaoAutomatico] != 0,
            .update = LerTexto(corpo, kCampoUpdate),
            .site = LerTexto(corpo, kCampoSite),
            .seletor = LerTexto(corpo, kCampoSeletor),
            .registro = LerTexto(corpo, kCampoRegistro)};
}

CorpoSelado MontarCorpo(const CamposSelados& campos) {
    CorpoSelado corpo{};
    std::ranges::copy(kMagica, corpo.begin() + kPosicaoMagica);
    EscreverU16(corpo, kPosicaoVersao, kVersao);
    EscreverU16(corpo, kPosicaoTamanho, static_cast<std::uint16_t>(kTamanhoCorpo));
    corpo[kPosicaoAutomatico] = campos.updateAutomatico ? 1 : 0;
    EscreverTexto(corpo, kCampoNome, campos.nome);
    EscreverTexto(corpo, kCampoUpdate, campos.update);
    EscreverTexto(corpo, kCampoSite, campos.site);
    EscreverTexto(corpo, kCampoSeletor, campos.seletor);
    EscreverTexto(corpo, kCampoRegistro, campos.registro);
    return corpo;
}

std::string Selar(const CorpoSelado& corpo, const SegredoSelo& segredo) {
    CorpoSelado embaralhado = corpo;
    Embaralhar(embaralhado, segredo);
    const Sha256Digest etiqueta = Etiqueta(embaralhado, segredo);
    std::string arquivo(embaralhado.begin(), embaralhado.end());
    arquivo.append(etiqueta.begin(), etiqueta.end());
    return arquivo;
}

}  // namespace zu::launcher
