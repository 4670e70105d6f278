#include "tools/forjal/sonda.h"

#include <algorithm>
#include <memory>

#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "update/http.h"

namespace zu::launcher::forjal {
namespace {

constexpr DWORD kBloco = 64 * 1024;
constexpr std::uint32_t kPrazo = 408;
constexpr std::uint32_t kFaixaRecusada = 416;
constexpr std::uint32_t kPedidosDemais = 429;

// Takes up to one block of the body: an answer that is read to its end leaves its connection to the next question.
// Nothing is kept of it, so whole reads will do. Returns how many bytes came.
std::uint64_t Escoar(const HttpRequest& troca) {
    const auto bloco = std::make_unique_for_overwrite<char[]>(kBloco);
    std::uint64_t vieram = 0;
    DWORD lidos = 0;
    while (vieram < kBloco && WinHttpReadData(troca.requisicao.Valor(), bloco.get(), kBloco, &lidos) != 0 && lidos > 0)
        vieram += lidos;
    return vieram;
}

Achado OutroStatus(const HttpRequest& troca, std::uint32_t status, std::uint32_t esperado) {
    Achado achado{.motivo = Formatar("HTTP {}", status),
                  .falta = status == HTTP_STATUS_NOT_FOUND || status == HTTP_STATUS_GONE,
                  .passageiro = status >= HTTP_STATUS_SERVER_ERROR || status == kPedidosDemais || status == kPrazo};
    if (status == kFaixaRecusada) {
        achado.motivo += Formatar(", Content-Range \"{}\"", HttpCabecalho(troca, L"Content-Range"));
    } else if (status == HTTP_STATUS_OK && esperado == HTTP_STATUS_PARTIAL_CONTENT) {
        achado.motivo += " a um pedido de faixa: nenhum download pode ser retomado";
    }
    return achado;
}

Achado Perguntar(const std::wstring& url, const std::wstring& cabecalhos, std::uint32_t esperado, HttpRequest& troca) {
    Achado achado;
    std::uint32_t status = 0;
    if (!HttpAbrir(url, cabecalhos, troca, status, achado.motivo)) {
        achado.passageiro = true;
        return achado;
    }
    const std::string codificacao = HttpCabecalho(troca, L"Content-Encoding");
    if (status != esperado) {
        achado = OutroStatus(troca, status, esperado);
    } else if (!codificacao.empty() && MinusculasAscii(codificacao) != "identity") {
        achado.motivo = Formatar("Content-Encoding: {}: alguém no caminho recomprime", codificacao);
    }
    if (!achado.motivo.empty()) Escoar(troca);
    return achado;
}

struct Faixa {
    std::uint64_t inicio = 0;
    std::uint64_t fim = 0;
    std::uint64_t total = 0;
};

// Reads "bytes 7-7/8".
bool LerFaixa(std::string_view texto, Faixa& faixa) {
    return MinusculasAscii(std::string(TomarAte(texto, ' '))) == "bytes" &&
           LerNumeroInteiro(TomarAte(texto, '-'), faixa.inicio) && LerNumeroInteiro(TomarAte(texto, '/'), faixa.fim) &&
           LerNumeroInteiro(texto, faixa.total) && faixa.fim >= faixa.inicio && faixa.fim < faixa.total;
}

}  // namespace

Achado SondarFaixa(const std::wstring& url, std::uint64_t inicio, bool soUm, std::uint64_t& total) {
    const std::string pedida = Formatar("{}-{}", inicio, soUm ? std::to_string(inicio) : "");
    HttpRequest troca;
    Achado achado = Perguntar(url, DeUtf8(Formatar("Range: bytes={}\r\n", pedida)), HTTP_STATUS_PARTIAL_CONTENT, troca);
    if (!achado.motivo.empty()) return achado;
    const std::string dada = HttpCabecalho(troca, L"Content-Range");
    const std::uint64_t vieram = Escoar(troca);
    Faixa faixa;
    if (!LerFaixa(dada, faixa) || faixa.inicio != inicio) {
        achado.motivo = Formatar("pedida a faixa {}, veio Content-Range \"{}\"", pedida, dada);
    } else if (const std::uint64_t devidos = faixa.fim - faixa.inicio + 1;
               vieram < std::min<std::uint64_t>(devidos, kBloco)) {
        achado = {.motivo = Formatar("{} byte(s) numa faixa de {}", vieram, devidos), .passageiro = true};
    }
    total = faixa.total;
    return achado;
}

Achado SondarCabeca(const std::wstring& url, std::uint64_t tamanho) {
    HttpRequest troca;
    Achado achado = Perguntar(url, L"", HTTP_STATUS_OK, troca);
    if (!achado.motivo.empty()) return achado;
    std::uint64_t anunciado = tamanho;
    LerNumeroInteiro(HttpCabecalho(troca, L"Content-Length"), anunciado);
    if (anunciado != tamanho) achado.motivo = Formatar("Content-Length diz {} bytes, esperado {}", anunciado, tamanho);
    Escoar(troca);
    return achado;
}

Achado SondarInteiro(const std::wstring& url, const Receber& receber) {
    HttpRequest troca;
    Achado achado = Perguntar(url, L"", HTTP_STATUS_OK, troca);
    if (!achado.motivo.empty()) return achado;
    const auto bloco = std::make_unique_for_overwrite<char[]>(kBloco);
    DWORD lidos = 0;
    do {
        if (!HttpLerChegado(troca, bloco.get(), kBloco, lidos)) {
            return {.motivo = HttpErroTexto("download"), .passageiro = true};
        }
        receber(bloco.get(), lidos);
    } while (lidos > 0);
    return achado;
}

Achado SondarLista(const std::wstring& url) {
    HttpRequest troca;
    Achado achado = Perguntar(url, L"Cache-Control: no-cache\r\nPragma: no-cache\r\n", HTTP_STATUS_OK, troca);
    std::uint64_t idade = 0;
    LerNumeroInteiro(HttpCabecalho(troca, L"Age"), idade);
    if (achado.motivo.empty() && idade > 0) {
        achado.motivo = Formatar("um cache respondeu com o que guarda há {} s a um ?t= nunca visto", idade);
    }
    return achado;
}

}  // namespace zu::launcher::forjal
