#include "update/faixa.h"

#include <algorithm>
#include <memory>

#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "update/http.h"

namespace zu::launcher {
namespace {

constexpr std::uint64_t kBloco = 256ULL * 1024;

// Whether the headers promise the range. A server that does not know the resource's size may leave it open.
bool Prometida(const HttpRequest& troca, std::uint32_t status, const FaixaHttp& faixa) {
    const std::string limites = Formatar("bytes {}-{}/", faixa.inicio, faixa.inicio + faixa.tamanho - 1);
    const std::string dita = MinusculasAscii(HttpCabecalho(troca, L"Content-Range"));
    const std::string tamanho = HttpCabecalho(troca, L"Content-Length");
    return status == HTTP_STATUS_PARTIAL_CONTENT &&
           (dita == limites + std::to_string(faixa.total) || dita == limites + "*") &&
           (tamanho.empty() || tamanho == std::to_string(faixa.tamanho));
}

}  // namespace

FimDaFaixa HttpBaixarFaixa(const std::wstring& url, const FaixaHttp& faixa,
                           const std::function<bool(std::span<const std::uint8_t>)>& receber,
                           const std::atomic<bool>& cancelar, std::string& erro) {
    HttpRequest troca;
    std::uint32_t status = 0;
    const std::string pedida = Formatar("Range: bytes={}-{}\r\n", faixa.inicio, faixa.inicio + faixa.tamanho - 1);
    if (!HttpAbrir(url, DeUtf8(pedida), troca, status, erro)) return FimDaFaixa::kInterrompida;
    if (!Prometida(troca, status, faixa)) {
        erro = Formatar("HTTP {} em {}", status, ParaUtf8(url));
        return FimDaFaixa::kEstranha;
    }
    const auto bloco = std::make_unique_for_overwrite<char[]>(std::min(kBloco, faixa.tamanho));
    std::uint64_t vieram = 0;
    while (!cancelar.load()) {
        // Behind the last byte the end is waited for, too: only then does the connection serve the next request.
        const bool completa = vieram == faixa.tamanho;
        const auto cabem = static_cast<DWORD>(completa ? 1 : std::min(kBloco, faixa.tamanho - vieram));
        DWORD lidos = 0;
        if (!HttpLerChegado(troca, bloco.get(), cabem, lidos)) {
            erro = HttpErroTexto("download");
            return FimDaFaixa::kInterrompida;
        }
        if (completa && lidos == 0) return FimDaFaixa::kInteira;
        if (completa || lidos == 0) {
            erro = completa ? std::string(kErroDeSobra)
                            : Formatar("download incompleto ({} de {} bytes)", vieram, faixa.tamanho);
            // A body that was announced and broke off is the connection's fault.
            return completa || HttpCabecalho(troca, L"Content-Length").empty() ? FimDaFaixa::kEstranha
                                                                               : FimDaFaixa::kInterrompida;
        }
        vieram += lidos;
        if (!receber({reinterpret_cast<const std::uint8_t*>(bloco.get()), lidos})) return FimDaFaixa::kInterrompida;
    }
    erro = "cancelado";
    return FimDaFaixa::kInterrompida;
}

}  // namespace zu::launcher
