// The main window: what the player sees first. It shows the update run and the server's page, starts the game and opens
// the other windows. UI thread only.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "app/instancia_unica.h"
#include "ui/janelas/barra_de_tarefas.h"
#include "ui/janelas/dica.h"
#include "ui/janelas/janela.h"
#include "ui/janelas/pintor_principal.h"
#include "ui/site/visao_site.h"

namespace zu::launcher {

constexpr UINT MSG_INICIAR = WM_APP + 1;                    // starts the controller's work
constexpr UINT MSG_ABRIR_ENDERECOS = WM_APP + 2;            // opens in the browser what the site's page asked for
constexpr UINT MSG_TRAZER_FRENTE = MensagemAbrirInstancia;  // another instance asks the window to show itself

constexpr UINT_PTR kRelogioDaPrincipal = 7;  // the refresh

class JanelaPrincipal final : public Janela {
 public:
    explicit JanelaPrincipal(LogoEncaixado logo);

    // The site's view; it may begin once the window is shown, and ends before the window does.
    VisaoSite& Site() { return site_; }

    // One refresh: lets the controller work, then shows how things stand.
    void AtualizarTela();

    [[nodiscard]] std::wstring Descricao() const override;
    [[nodiscard]] int Partes() const override;
    [[nodiscard]] Elemento Parte(int i) const override;

 private:
    bool Montar() override;
    void Pintar(HDC dc) const override;
    void PintarNaTela(HDC dc) override;
    [[nodiscard]] AparenciaPrincipal Agora() const;
    void AoComando(int id) override;
    void AoRelogio(UINT_PTR relogio) override;
    void AoConfirmar() override { JogarAgora(); }
    void AoFechar() override;
    bool Tratar(UINT mensagem, WPARAM wParam, LPARAM lParam) override;

    AmbienteSite AmbienteDoSite();
    void Iniciar();
    void JogarAgora();
    void AbrirEnderecosPedidos();
    [[nodiscard]] CentroDaPrincipal Centro() const;
    void MostrarProgresso();
    [[nodiscard]] std::wstring TextoDaDica(const EstadoAtualizacao& estado, bool atualizando) const;
    void AoMover(POINT ponto);
    void AoPairar(POINT ponto);
    void Mostrar(const AparenciaPrincipal& nova);
    void AvisarMudancas(const AparenciaPrincipal& antes) const;

    PinturaDaPrincipal pintura_;
    AparenciaPrincipal vista_;                    // as it was last shown
    std::vector<std::string> enderecosPorAbrir_;  // UTF-8
    BarraDeTarefas barra_;
    Dica dica_;
    StatusUpdate etapa_ = StatusUpdate::kParado;
    ULONGLONG inicioDaEtapa_ = 0;  // as GetTickCount64
    VisaoSite site_;
};

void RegistrarPrincipal(HINSTANCE modulo);

// The window with its buttons, placed but not yet shown; null with the reason in GetLastError.
HWND CriarPrincipal(LogoEncaixado logo = {});

// The open main window; there must be one.
JanelaPrincipal& Principal();

}  // namespace zu::launcher
