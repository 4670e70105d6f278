#include "ui/janelas/diagnostico.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "app/controlador.h"
#include "core/utf16.h"
#include "game/requisitos.h"
#include "ui/janelas/area_de_transferencia.h"
#include "ui/janelas/conselhos.h"
#include "ui/janelas/modal.h"
#include "ui/janelas/rolagem.h"

namespace zu::launcher {
namespace {

constexpr UINT_PTR kRelogioDaCopia = 9;
constexpr UINT kTempoDaCopia = 2'000;  // ms
constexpr int kDesvioX = -163;         // from the main window's left

constexpr wchar_t kCopiar[] = L"Copiar relatório";

constexpr MoldeModal kMolde{kClasseDoDiagnostico,          L"Diagnóstico completo",      WS_EX_TOOLWINDOW,
                            &EstadoInterface::diagnostico, &EstadoInterface::requisitos, kBotaoAcao};

class JanelaDiagnostico final : public JanelaModal {
 public:
    JanelaDiagnostico(ResultadoRequisitos resultado, AparenciaDiagnostico aparencia, int altura)
        : JanelaModal(kMolde, {kLarguraDoDiagnostico, altura}),
          resultado_(std::move(resultado)),
          aparencia_(std::move(aparencia)),
          rolagem_(RolagemDoDiagnostico(aparencia_, altura)) {}

 private:
    bool Montar() override;
    void PintarConteudo(HDC dc, const AparenciaMoldura& moldura) const override {
        PintarDiagnostico(dc, moldura, aparencia_, FontesDaInterface());
    }
    void AoComando(int id) override;
    void AoRelogio(UINT_PTR relogio) override;
    bool Tratar(UINT mensagem, WPARAM wParam, LPARAM lParam) override;
    [[nodiscard]] int Partes() const override;
    [[nodiscard]] Elemento Parte(int i) const override;

    ResultadoRequisitos resultado_;
    AparenciaDiagnostico aparencia_;
    Rolagem rolagem_;
};

bool JanelaDiagnostico::Montar() {
    const std::wstring acao = DeUtf8(resultado_.acaoTexto);
    std::vector<BotaoDaFila> botoes{{TipoControle::Botao, kBotaoCopiar, kCopiar},
                                    {TipoControle::Botao, kBotaoFecharDiagnostico, L"Fechar"}};
    if (!resultado_.acaoEndereco.empty()) {
        botoes.push_back({TipoControle::BotaoPrincipal, kBotaoAcao, acao.c_str()});
    }
    const std::optional<Trecho> fila = CriarFila(botoes);
    if (!fila) return false;
    aparencia_.botoes = *fila;
    Habilitar(Filho(kBotaoCopiar), !resultado_.relatorio.empty());
    return true;
}

void JanelaDiagnostico::AoComando(int id) {
    switch (id) {
        case kBotaoCopiar:
            SetWindowTextW(Filho(kBotaoCopiar),
                           Copiar(Handle(), TextoParaCopiar(resultado_)) ? L"Copiado!" : L"Não copiou");
            SetTimer(Handle(), kRelogioDaCopia, kTempoDaCopia, nullptr);
            break;
        case kBotaoFecharDiagnostico:
            Fechar();
            break;
        case kBotaoAcao:
            ObterControlador().Acao("driver");
            break;
        default:
            break;
    }
}

void JanelaDiagnostico::AoRelogio(UINT_PTR relogio) {
    if (relogio != kRelogioDaCopia) return;
    KillTimer(Handle(), kRelogioDaCopia);
    SetWindowTextW(Filho(kBotaoCopiar), kCopiar);
}

bool JanelaDiagnostico::Tratar(UINT mensagem, WPARAM wParam, LPARAM lParam) {
    const bool tratada = rolagem_.Tratar(Handle(), mensagem, wParam, lParam);
    if (std::exchange(aparencia_.rolagem, rolagem_.Posicao()) != rolagem_.Posicao()) {
        const RECT area = AreaDasLinhas(static_cast<int>(Medidas().cy));
        InvalidateRect(Handle(), &area, FALSE);
    }
    return tratada;
}

// The columns' titles, then the cells row by row, or what stands in their place.
int JanelaDiagnostico::Partes() const {
    const auto linhas = static_cast<int>(aparencia_.linhas.size());
    return kColunasDoDiagnostico + (linhas == 0 ? 1 : linhas * kColunasDoDiagnostico);
}

Elemento JanelaDiagnostico::Parte(int i) const {
    const int altura = static_cast<int>(Medidas().cy);
    const int coluna = i % kColunasDoDiagnostico;
    const wchar_t* const titulo = ColunaDe(coluna).titulo;
    if (i < kColunasDoDiagnostico) {
        return {.nome = titulo, .papel = ROLE_SYSTEM_COLUMNHEADER, .lugar = LugarDoTitulo(coluna)};
    }
    if (aparencia_.linhas.empty()) {
        return {.nome = aparencia_.semLinhas, .papel = ROLE_SYSTEM_STATICTEXT, .lugar = AreaDasLinhas(altura)};
    }
    const auto linha = static_cast<std::size_t>(i / kColunasDoDiagnostico - 1);
    Elemento e{.nome = titulo,
               .papel = ROLE_SYSTEM_CELL,
               .estado = STATE_SYSTEM_READONLY,
               .lugar = LugarDaCelula(aparencia_, linha, coluna, altura),
               .valor = aparencia_.linhas[linha].*ColunaDe(coluna).texto};
    if (IsRectEmpty(&e.lugar)) e.estado |= STATE_SYSTEM_OFFSCREEN;
    return e;
}

}  // namespace

std::wstring TextoParaCopiar(const ResultadoRequisitos& resultado) {
    std::wstring texto;
    wchar_t antes = L'\0';
    for (const wchar_t c : DeUtf8(resultado.relatorio)) {
        if (c == L'\n' && antes != L'\r') texto += L'\r';
        texto += c;
        antes = c;
    }
    return texto;
}

HWND AbrirDiagnostico() {
    if (ObterInterface().requisitos == nullptr) return nullptr;
    ResultadoRequisitos resultado = ObterRequisitos();
    AparenciaDiagnostico aparencia;
    aparencia.linhas = LinhasDoDiagnostico(resultado);
    aparencia.semLinhas =
        resultado.relatorioLido ? L"O relatório do jogo não traz itens." : ObterVeredito(resultado).texto;
    MedirDiagnostico(aparencia, FontesDaInterface());
    const RECT trabalho = AreaDeTrabalho();
    const int altura = std::min(AlturaDoDiagnostico(aparencia), static_cast<int>(trabalho.bottom - trabalho.top));
    const RECT principal = LugarDaJanelaPrincipal();
    const POINT lugar{principal.left + kDesvioX, (principal.top + principal.bottom - altura) / 2};
    return JanelaModal::Abrir(std::make_unique<JanelaDiagnostico>(std::move(resultado), std::move(aparencia), altura),
                              {lugar.x, NaAreaDeTrabalho(lugar, {kLarguraDoDiagnostico, altura}).y});
}

}  // namespace zu::launcher
