#include "ui/janelas/requisitos.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "app/controlador.h"
#include "core/config.h"
#include "core/utf16.h"
#include "game/requisitos.h"
#include "ui/janelas/diagnostico.h"
#include "ui/janelas/modal.h"

namespace zu::launcher {
namespace {

constexpr UINT_PTR kRelogio = 8;
constexpr UINT kIntervalo = 250;  // ms

// From the main window's corner.
constexpr POINT kDesvio{-23, 108};

constexpr MoldeModal kMolde{
    kClasseDosRequisitos, L"Requisitos", WS_EX_TOOLWINDOW, &EstadoInterface::requisitos, &EstadoInterface::opcoes, 0};

constexpr std::array<BotaoDaFila, 3> kBotoes{{
    {TipoControle::Botao, kBotaoDiagnostico, L"Diagnóstico completo"},
    {TipoControle::Botao, kBotaoPasta, L"Abrir pasta do jogo"},
    {TipoControle::Botao, kBotaoRegistro, L"Ver registro do launcher"},
}};

// A report may have no table, or none with this row.
Situacao SituacaoDoItem(const ResultadoRequisitos& r, std::string_view nome) {
    const auto item = std::ranges::find(r.items, nome, &ItemRequisito::nome);
    return item == r.items.end() ? Situacao() : item->estado;
}

LinhaRequisito Linha(const ResultadoRequisitos& r, std::string_view nome, const std::string& valor) {
    return {DeUtf8(nome), valor.empty() ? L"não informado" : DeUtf8(valor), SituacaoDoItem(r, nome)};
}

// The answer that counts is the report's own, not its table's.
LinhaRequisito LinhaDaApi(const ResultadoRequisitos& r, std::string_view nome, bool roda, const std::string& detalhe) {
    const wchar_t* const resposta = roda ? L"Roda neste PC" : L"Não roda neste PC";
    const Situacao daTabela = SituacaoDoItem(r, nome);
    return {DeUtf8(nome), detalhe.empty() ? resposta : DeUtf8(detalhe),
            !roda ? EstadoItem::kFalha : daTabela.value_or(EstadoItem::kOk)};
}

std::wstring Conselhos(const ResultadoRequisitos& r) {
    std::wstring texto;
    for (const std::string& conselho : r.oQueFazer)
        texto += (texto.empty() ? L"" : L"\n") + DeUtf8(conselho);
    return texto;
}

class JanelaRequisitos final : public JanelaModal {
 public:
    JanelaRequisitos() : JanelaModal(kMolde, kTamanhoDosRequisitos) {}

 private:
    bool Montar() override {
        const std::optional<Trecho> fila = CriarFila(kBotoes);
        if (!fila) return false;
        fila_ = *fila;
        Atualizar();
        return SetTimer(Handle(), kRelogio, kIntervalo, nullptr) != 0;
    }
    void PintarConteudo(HDC dc, const AparenciaMoldura& moldura) const override {
        PintarRequisitos(dc, moldura, aparencia_, lugares_, FontesDaInterface());
    }
    [[nodiscard]] std::wstring Descricao() const override { return aparencia_.titulo + L"\n" + aparencia_.texto; }
    [[nodiscard]] int Partes() const override;
    [[nodiscard]] Elemento Parte(int i) const override;
    void AoComando(int id) override;
    void AoRelogio(UINT_PTR relogio) override {
        if (relogio == kRelogio) Atualizar();
    }
    void Atualizar();

    Trecho fila_;
    AparenciaRequisitos aparencia_;
    LugaresDosRequisitos lugares_;
};

void JanelaRequisitos::AoComando(int id) {
    switch (id) {
        case kBotaoDiagnostico:
            RodarModal(AbrirDiagnostico());
            break;
        case kBotaoPasta:
            ObterControlador().Acao("pasta");
            break;
        case kBotaoRegistro:
            ObterControlador().Acao("log");
            break;
        default:
            break;
    }
}

void JanelaRequisitos::Atualizar() {
    const ResultadoRequisitos resultado = ObterRequisitos();
    Habilitar(Filho(kBotaoDiagnostico), resultado.concluido);
    AparenciaRequisitos nova = DescreverRequisitos(resultado);
    nova.botoes = fila_;
    if (nova == aparencia_) return;
    aparencia_ = std::move(nova);
    lugares_ = MedirRequisitos(aparencia_, FontesDaInterface());
    InvalidateRect(Handle(), nullptr, FALSE);
    Avisar(EVENT_OBJECT_REORDER, Handle());
    Avisar(EVENT_OBJECT_DESCRIPTIONCHANGE, Handle());
}

// The rows, the advice where there is any, then the game's folder.
int JanelaRequisitos::Partes() const {
    return static_cast<int>(aparencia_.linhas.size()) + (aparencia_.conselhos.empty() ? 1 : 2);
}

Elemento JanelaRequisitos::Parte(int i) const {
    const auto linha = static_cast<std::size_t>(i);
    if (i == Partes() - 1) {
        return {.nome = L"Pasta do jogo",
                .papel = ROLE_SYSTEM_STATICTEXT,
                .lugar = lugares_.pasta,
                .valor = aparencia_.pasta};
    }
    if (linha == aparencia_.linhas.size()) {
        return {.nome = L"O que fazer",
                .papel = ROLE_SYSTEM_STATICTEXT,
                .lugar = lugares_.conselhos,
                .valor = aparencia_.conselhos};
    }
    const LinhaRequisito& l = aparencia_.linhas[linha];
    return {.nome = l.nome,
            .papel = ROLE_SYSTEM_ROW,
            .estado = STATE_SYSTEM_READONLY,
            .lugar = lugares_.linhas[linha],
            .valor = l.valor,
            .descricao = PalavraDaSituacao(l.situacao)};
}

}  // namespace

AparenciaRequisitos DescreverRequisitos(const ResultadoRequisitos& r) {
    AparenciaRequisitos a;
    a.pasta = ObterConfig().pastaJogo.native();
    if (!r.concluido) {
        a.titulo = L"Verificando os requisitos do computador...";
        return a;
    }
    const VereditoRequisitos veredito = ObterVeredito(r);
    a.titulo = veredito.titulo;
    a.texto = veredito.texto;
    // Without a report there is nothing that could be in order or not.
    if (!r.relatorioLido) return a;
    a.situacao = static_cast<EstadoItem>(veredito.nivel);
    a.linhas = {Linha(r, "Sistema", r.sistema), Linha(r, "Placa de vídeo", r.placa),
                LinhaDaApi(r, "DirectX 12", r.d3d12, r.d3d12Detalhe),
                LinhaDaApi(r, "Vulkan 1.3", r.vulkan, r.vulkanDetalhe)};
    a.conselhos = Conselhos(r);
    return a;
}

HWND AbrirRequisitos() {
    if (ObterInterface().opcoes == nullptr) return nullptr;
    const RECT principal = LugarDaJanelaPrincipal();
    return JanelaModal::Abrir(std::make_unique<JanelaRequisitos>(),
                              {principal.left + kDesvio.x, principal.top + kDesvio.y});
}

}  // namespace zu::launcher
