#include "game/veredito.h"

#include <algorithm>
#include <utility>

namespace zu::launcher {
namespace {

std::wstring NomeDaApi(bool d3d12) {
    return d3d12 ? L"DirectX 12" : L"Vulkan";
}

// Level and sentence; the headline is not touched.
void Decidir(const ResultadoRequisitos& resultado, VereditoRequisitos& veredito) {
    if (resultado.geral == "falha") {
        veredito.nivel = NivelVeredito::kFalha;
        veredito.texto = L"O jogo não pode ser aberto neste computador. Veja abaixo o que falta e como resolver.";
    } else if (resultado.geral == "aviso") {
        const std::wstring api = NomeDaApi(!resultado.vulkan);
        veredito.nivel = NivelVeredito::kAviso;
        veredito.texto = L"Só o " + api + L" roda neste computador: escolha o " + api +
                         L" em Opções → API gráfica (fica gravado no Config\\Zu.ini).";
    } else if (std::ranges::any_of(resultado.items,
                                   [](const ItemRequisito& item) { return item.estado != EstadoItem::kOk; })) {
        veredito.nivel = NivelVeredito::kAviso;
        veredito.texto =
            L"Há itens em amarelo (abaixo do recomendado ou a atualizar): o jogo roda, mas pode ficar lento.";
    } else if (!resultado.d3d12 || !resultado.vulkan) {
        veredito.texto = L"O jogo roda com " + NomeDaApi(resultado.d3d12) + L" neste computador.";
    } else {
        veredito.texto = L"O jogo roda com DirectX 12 e com Vulkan neste computador (escolha em Opções → API gráfica).";
    }
}

}  // namespace

VereditoRequisitos JulgarRequisitos(const ResultadoRequisitos& resultado, std::wstring titulo) {
    if (!resultado.relatorioLido) {
        return {.titulo = L"Não foi possível fazer o diagnóstico",
                .texto =
                    L"O Zu.exe não respondeu ao --requisitos-json (Zu.exe ausente ou de uma versão antiga). Feche "
                    L"e abra o launcher para baixar o jogo de novo; detalhes no ZuLauncher.log."};
    }
    VereditoRequisitos veredito{.titulo = std::move(titulo)};
    Decidir(resultado, veredito);
    if (veredito.titulo.empty()) {
        veredito.titulo = veredito.nivel == NivelVeredito::kFalha ? L"Seu computador não atende aos requisitos mínimos"
                                                                  : L"Seu computador atende aos requisitos";
    }
    return veredito;
}

std::string ApiQueRoda(const std::string& api, const SituacaoRequisitos& situacao) {
    const bool vulkan = api == "vulkan";
    const bool estaRoda = vulkan ? situacao.vulkan : situacao.d3d12;
    const bool outraRoda = vulkan ? situacao.d3d12 : situacao.vulkan;
    if (!situacao.relatorioLido || estaRoda || !outraRoda) return api;
    return vulkan ? "d3d12" : "vulkan";
}

}  // namespace zu::launcher
