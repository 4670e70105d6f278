#include "ui/janelas/opcoes.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/controlador.h"
#include "core/utf16.h"
#include "game/requisitos.h"
#include "game/veredito.h"
#include "ui/janelas/medidas_opcoes.h"
#include "ui/janelas/modal.h"
#include "ui/janelas/pintor_opcoes.h"
#include "ui/janelas/requisitos.h"

namespace zu::launcher {
namespace {

constexpr UINT_PTR kRelogio = 8;
constexpr UINT kIntervalo = 250;  // ms

constexpr MoldeModal kMolde{kClasseDasOpcoes, L"Opções", 0, &EstadoInterface::opcoes, &EstadoInterface::principal,
                            kBotaoOk};

// The item that stands for what is stored; for a value that no item has, the last.
std::int32_t ItemGuardado(const ListaDasOpcoes& l, const OpcoesJogo& opcoes) {
    if (l.campo == nullptr) return 0;
    if (l.valores.empty()) return opcoes.*l.campo;
    const auto achado = std::ranges::find(l.valores, opcoes.*l.campo);
    return static_cast<std::int32_t>(achado - l.valores.begin());
}

// A tile's second line.
std::wstring SentencaDaApi(const ResultadoRequisitos& r, bool roda, const std::string& detalhe) {
    if (!r.concluido) return L"Verificando o computador...";
    if (!r.relatorioLido) return L"Sem diagnóstico (Zu.exe não respondeu)";
    if (roda) return L"Roda neste PC";
    return detalhe.empty() ? L"Não roda neste PC" : DeUtf8(detalhe);
}

class JanelaOpcoes final : public JanelaModal {
 public:
    JanelaOpcoes() : JanelaModal(kMolde, kTamanhoDasOpcoes) {}

 private:
    bool Montar() override;
    void PintarConteudo(HDC dc, const AparenciaMoldura& moldura) const override {
        PintarOpcoes(dc, moldura, FontesDaInterface());
    }
    void AoComando(int id) override;
    void AoRelogio(UINT_PTR relogio) override {
        if (relogio == kRelogio) Atualizar();
    }

    void Escolher(bool vulkan) const;
    void Atualizar();
    void TomarApiCorrigida(const SituacaoRequisitos& r);
    [[nodiscard]] bool EmJanela() const { return EstadoDo(Filho(kListaModo)).selected == 0; }
    [[nodiscard]] OpcoesJogo Escolhidas() const;

    bool relatorioVisto_ = false;
};

bool JanelaOpcoes::Montar() {
    const OpcoesJogo& opcoes = ObterInterface().opcoesDoJogo;
    for (const ControleDasOpcoes& c : kControlesDasOpcoes) {
        const HWND controle = CriarControle(Handle(), c.kind, c.id, c.texto, c.lugar);
        if (controle == nullptr) return false;
        EstadoControle& estado = EstadoDo(controle);
        // Buttons stand on the panel.
        if (c.kind == TipoControle::Caixa || c.kind == TipoControle::Opcao) estado.fundo = kCorDaJanela;
        if (c.campo != nullptr) estado.checked = opcoes.*c.campo != 0;
    }
    SetWindowRgn(Filho(kCaixaSemBorda), CreateRectRgnIndirect(&kRegiaoDaSemBorda), FALSE);
    for (const ListaDasOpcoes& l : kListasDasOpcoes) {
        const HWND lista = CriarLista(Handle(), l.id, l.y, {l.itens.begin(), l.itens.end()}, ItemGuardado(l, opcoes));
        if (lista == nullptr) return false;
        // Not drawn there: the words beside it.
        SetWindowTextW(lista, l.rotulo);
    }
    Escolher(opcoes.api == "vulkan");
    relatorioVisto_ = ObterSituacaoRequisitos().relatorioLido && ObterControlador().ApiConferida();
    Atualizar();
    return SetTimer(Handle(), kRelogio, kIntervalo, nullptr) != 0;
}

void JanelaOpcoes::AoComando(int id) {
    switch (id) {
        case kOpcaoD3d12:
        case kOpcaoVulkan:
            Escolher(id == kOpcaoVulkan);
            break;
        case kListaModo:
            Atualizar();
            break;
        case kBotaoRequisitos:
            RodarModal(AbrirRequisitos());
            break;
        case kBotaoOk:
            ObterInterface().opcoesDoJogo = Escolhidas();
            GravarOpcoesJogo(ObterInterface().opcoesDoJogo);
            Fechar();
            break;
        case kBotaoCancelar:
            Fechar();
            break;
        default:
            break;
    }
}

void JanelaOpcoes::Escolher(bool vulkan) const {
    Marcar(Filho(kOpcaoD3d12), !vulkan);
    Marcar(Filho(kOpcaoVulkan), vulkan);
}

// The controller corrects the file when the report arrives. A window that was opened before must not undo that with
// "OK", unless the player has chosen otherwise in it.
void JanelaOpcoes::TomarApiCorrigida(const SituacaoRequisitos& r) {
    if (!r.relatorioLido || std::exchange(relatorioVisto_, true)) return;
    const std::string& aberta = ObterInterface().opcoesDoJogo.api;
    if (Escolhidas().api == aberta) Escolher(ApiQueRoda(aberta, r) == "vulkan");
}

void JanelaOpcoes::Atualizar() {
    Habilitar(Filho(kListaResolucao), EmJanela());
    Habilitar(Filho(kCaixaSemBorda), EmJanela());
    const ResultadoRequisitos r = ObterRequisitos();
    TomarApiCorrigida(r);
    DefinirTexto(Filho(kOpcaoD3d12), SentencaDaApi(r, r.d3d12, r.d3d12Detalhe));
    DefinirTexto(Filho(kOpcaoVulkan), SentencaDaApi(r, r.vulkan, r.vulkanDetalhe));
}

OpcoesJogo JanelaOpcoes::Escolhidas() const {
    OpcoesJogo opcoes = ObterInterface().opcoesDoJogo;
    opcoes.api = EstadoDo(Filho(kOpcaoVulkan)).checked ? "vulkan" : "d3d12";
    for (const ControleDasOpcoes& c : kControlesDasOpcoes) {
        if (c.campo != nullptr) opcoes.*c.campo = EstadoDo(Filho(c.id)).checked ? 1 : 0;
    }
    for (const ListaDasOpcoes& l : kListasDasOpcoes) {
        if (l.campo == nullptr) continue;
        const std::int32_t item = EstadoDo(Filho(l.id)).selected;
        opcoes.*l.campo = l.valores.empty() ? item : l.valores[static_cast<std::size_t>(item)];
    }
    return opcoes;
}

}  // namespace

HWND AbrirOpcoes() {
    EstadoInterface& ui = ObterInterface();
    if (ui.opcoes != nullptr) return ui.opcoes;
    ui.opcoesDoJogo = LerOpcoesJogo();
    const RECT principal = LugarDaJanelaPrincipal();
    const POINT centro{(principal.left + principal.right - kTamanhoDasOpcoes.cx) / 2,
                       (principal.top + principal.bottom - kTamanhoDasOpcoes.cy) / 2};
    return JanelaModal::Abrir(std::make_unique<JanelaOpcoes>(), NaAreaDeTrabalho(centro, kTamanhoDasOpcoes));
}

}  // namespace zu::launcher
