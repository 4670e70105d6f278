#include "ui/controles/face_guardada.h"

#include "ui/desenho/contraste.h"

namespace zu::launcher {
namespace {

const std::wstring& SegundoTexto(const EstadoControle& estado) {
    const auto escolhido = static_cast<std::size_t>(estado.selected);
    return estado.kind == TipoControle::Lista && escolhido < estado.items.size() ? estado.items[escolhido]
                                                                                 : estado.text;
}

}  // namespace

void FaceGuardada::Mostrar(HDC dc, const RECT& r, const AparenciaControle& a, const Fontes& fontes) {
    const EstadoControle& estado = a.estado;
    Chave chave{r.right - r.left,
                r.bottom - r.top,
                GeracaoDasCores(),
                std::wstring(a.legenda),
                SegundoTexto(estado),
                a.habilitado,
                a.foco,
                estado.hover,
                estado.pressed,
                estado.checked,
                estado.fill,
                estado.fundo,
                estado.hover_level,
                estado.flash};
    const bool pulsa = estado.kind == TipoControle::BotaoPrincipal;
    if (pintadas_.empty() || chave != chave_) pintadas_.assign(pulsa ? kForcasDoPulso : 1, false);
    chave_ = std::move(chave);
    const int linhas = static_cast<int>(pintadas_.size());
    if (!faces_.Medir(dc, {chave_.largura, chave_.altura * linhas})) {
        pintadas_.clear();
        PintarControle(dc, r, a, fontes);
        return;
    }
    const std::size_t forca = pulsa ? ForcaDoPulso(estado) : 0;
    const int topo = chave_.altura * static_cast<int>(forca);
    if (!pintadas_[forca]) PintarControle(faces_.Dc(), {0, topo, chave_.largura, topo + chave_.altura}, a, fontes);
    pintadas_[forca] = true;
    faces_.Copiar(dc, r, {0, topo});
}

}  // namespace zu::launcher
