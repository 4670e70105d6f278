#include "ui/janelas/diagnostico.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "app/controlador.h"
#include "core/utf16.h"
#include "game/requisitos.h"
#include "ui/janelas/modal.h"
#include "ui/janelas/molde.h"

namespace zu::launcher {
namespace {

constexpr UINT_PTR kRelogioDaCopia = 9;
constexpr UINT kTempoDaCopia = 2'000;  // ms
constexpr int kDesvioX = -163;         // from the main window's left

constexpr int kPassoDaRoda = 75;  // pixels a notch
constexpr int kPassoDaTecla = 25;

constexpr wchar_t kCopiar[] = L"Copiar relatório";

constexpr MoldeModal kMolde{kClasseDoDiagnostico,          L"Diagnóstico completo",      WS_EX_TOOLWINDOW,
                            &EstadoInterface::diagnostico, &EstadoInterface::requisitos, kBotaoAcao};

// Puts the text on the clipboard. False when another program holds it.
bool Copiar(HWND janela, const std::wstring& texto) {
    if (!OpenClipboard(janela)) return false;
    const std::size_t bytes = (texto.size() + 1) * sizeof(wchar_t);
    HGLOBAL bloco = GlobalAlloc(GMEM_MOVEABLE, bytes);
    bool copiou = false;
    if (void* const destino = bloco == nullptr ? nullptr : GlobalLock(bloco); destino != nullptr) {
        std::memcpy(destino, texto.c_str(), bytes);
        GlobalUnlock(bloco);
        // The clipboard owns the block from here on.
        copiou = EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, bloco) != nullptr;
    }
    if (!copiou) GlobalFree(bloco);
    CloseClipboard();
    return copiou;
}

// Where the words stand in the text as words of their own, whatever the case; npos: nowhere.
std::size_t LugarDe(const std::wstring& palavras, const std::wstring& texto) {
    if (palavras.empty()) return std::wstring::npos;
    for (std::size_t inicio = 0;; ++inicio) {
        const int achado =
            FindStringOrdinal(FIND_FROMSTART, texto.c_str() + inicio, static_cast<int>(texto.size() - inicio),
                              palavras.c_str(), static_cast<int>(palavras.size()), TRUE);
        if (achado < 0) return std::wstring::npos;
        inicio += static_cast<std::size_t>(achado);
        const std::size_t fim = inicio + palavras.size();
        const bool comeca = inicio == 0 || !IsCharAlphaNumericW(texto[inicio - 1]);
        if (comeca && (fim == texto.size() || !IsCharAlphaNumericW(texto[fim]))) return inicio;
    }
}

bool ForaDeOrdem(const LinhaDiagnostico& linha) {
    return linha.estado.value_or(EstadoItem::kOk) != EstadoItem::kOk;
}

// The row that the advice is about, or null: the one whose first word it has the earliest ("driver" for "Driver de
// vídeo"), and of several such the one of which it has the whole name ("Memória de vídeo" before "Memória").
LinhaDiagnostico* DonaDoConselho(std::vector<LinhaDiagnostico>& linhas, const std::wstring& conselho) {
    LinhaDiagnostico* dona = nullptr;
    std::pair melhor{std::wstring::npos, std::size_t{0}};  // the place, and what is missing of the longest name
    for (LinhaDiagnostico& linha : linhas) {
        const std::size_t lugar = LugarDe(linha.nome.substr(0, linha.nome.find(L' ')), conselho);
        if (!ForaDeOrdem(linha) || lugar == std::wstring::npos) continue;
        const bool inteira = LugarDe(linha.nome, conselho) == lugar;
        const std::pair este{lugar, std::wstring::npos - (inteira ? linha.nome.size() : 0)};
        if (este >= melhor) continue;
        melhor = este;
        dona = &linha;
    }
    return dona;
}

class JanelaDiagnostico final : public JanelaModal {
 public:
    JanelaDiagnostico(ResultadoRequisitos resultado, AparenciaDiagnostico aparencia, int altura)
        : JanelaModal(kMolde, {kLarguraDoDiagnostico, altura}),
          resultado_(std::move(resultado)),
          aparencia_(std::move(aparencia)) {}

 private:
    bool Montar() override;
    void PintarConteudo(HDC dc, const AparenciaMoldura& moldura) const override {
        PintarDiagnostico(dc, moldura, aparencia_, FontesDaInterface());
    }
    void AoComando(int id) override;
    void AoRelogio(UINT_PTR relogio) override;
    bool Tratar(UINT mensagem, WPARAM wParam, LPARAM lParam) override;

    void AoGirar(int giro);
    [[nodiscard]] int Altura() const { return static_cast<int>(Medidas().cy); }
    bool AoTeclar(WPARAM tecla);
    bool AoPressionar(POINT ponto);
    void Arrastar(int y);
    void RolarAte(int rolagem);

    ResultadoRequisitos resultado_;
    AparenciaDiagnostico aparencia_;
    int resto_ = 0;            // of the wheel's turn, less than a pixel
    bool arrastando_ = false;  // the scroll bar's thumb follows the pointer
    int pegada_ = 0;           // where the pointer holds the thumb, from its top
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
    switch (mensagem) {
        case WM_MOUSEWHEEL:
            AoGirar(GET_WHEEL_DELTA_WPARAM(wParam));
            return true;
        case WM_KEYDOWN:
            return AoTeclar(wParam);
        case WM_LBUTTONDOWN:
            return AoPressionar(PontoDe(lParam));
        case WM_MOUSEMOVE:
            if (arrastando_) Arrastar(PontoDe(lParam).y);
            return arrastando_;
        case WM_LBUTTONUP:
            if (!arrastando_) return false;
            ReleaseCapture();
            return true;
        case WM_CAPTURECHANGED:
            arrastando_ = false;
            return true;
        default:
            return false;
    }
}

// A touchpad turns the wheel by fractions of a notch.
void JanelaDiagnostico::AoGirar(int giro) {
    const int pixels = giro * kPassoDaRoda + resto_;
    resto_ = pixels % WHEEL_DELTA;
    RolarAte(aparencia_.rolagem - pixels / WHEEL_DELTA);
}

bool JanelaDiagnostico::AoTeclar(WPARAM tecla) {
    const RECT area = AreaDasLinhas(Altura());
    const int pagina = static_cast<int>(area.bottom - area.top) - kPassoDaTecla;
    int rolagem = aparencia_.rolagem;
    switch (tecla) {
        case VK_UP:
            rolagem -= kPassoDaTecla;
            break;
        case VK_DOWN:
            rolagem += kPassoDaTecla;
            break;
        case VK_PRIOR:
            rolagem -= pagina;
            break;
        case VK_NEXT:
            rolagem += pagina;
            break;
        case VK_HOME:
            rolagem = 0;
            break;
        case VK_END:
            rolagem = LimiteDaRolagem(aparencia_, Altura());
            break;
        default:
            return false;
    }
    RolarAte(rolagem);
    return true;
}

// On the track beside the thumb, the thumb comes under the pointer.
bool JanelaDiagnostico::AoPressionar(POINT ponto) {
    const RECT trilho = TrilhoDaRolagem(Altura());
    if (LimiteDaRolagem(aparencia_, Altura()) == 0 || !PtInRect(&trilho, ponto)) return false;
    const RECT polegar = PolegarDaRolagem(aparencia_, Altura());
    pegada_ = PtInRect(&polegar, ponto) ? ponto.y - polegar.top : (polegar.bottom - polegar.top) / 2;
    arrastando_ = true;
    SetCapture(Handle());
    Arrastar(ponto.y);
    return true;
}

void JanelaDiagnostico::Arrastar(int y) {
    const RECT trilho = TrilhoDaRolagem(Altura());
    const RECT polegar = PolegarDaRolagem(aparencia_, Altura());
    const int curso = (trilho.bottom - trilho.top) - (polegar.bottom - polegar.top);
    if (curso > 0) RolarAte((y - pegada_ - trilho.top) * LimiteDaRolagem(aparencia_, Altura()) / curso);
}

void JanelaDiagnostico::RolarAte(int rolagem) {
    const int nova = std::clamp(rolagem, 0, LimiteDaRolagem(aparencia_, Altura()));
    if (std::exchange(aparencia_.rolagem, nova) == nova) return;
    const RECT area = AreaDasLinhas(Altura());
    InvalidateRect(Handle(), &area, FALSE);
}

}  // namespace

std::vector<LinhaDiagnostico> LinhasDoDiagnostico(const ResultadoRequisitos& resultado) {
    std::vector<LinhaDiagnostico> linhas;
    for (const ItemRequisito& item : resultado.items) {
        linhas.push_back(
            {DeUtf8(item.nome), DeUtf8(item.valor), DeUtf8(item.penultima), DeUtf8(item.ultima), L"", item.estado});
    }
    const auto juntar = [](LinhaDiagnostico& linha, const std::wstring& conselho) {
        linha.conselho += (linha.conselho.empty() ? L"" : L"\n") + conselho;
    };
    std::vector<std::wstring> semDona;
    for (const std::string& texto : resultado.oQueFazer) {
        const std::wstring conselho = DeUtf8(texto);
        LinhaDiagnostico* const dona = DonaDoConselho(linhas, conselho);
        if (dona == nullptr)
            semDona.push_back(conselho);
        else
            juntar(*dona, conselho);
    }
    for (const std::wstring& conselho : semDona) {
        const auto livre = std::ranges::find_if(
            linhas, [](const LinhaDiagnostico& linha) { return ForaDeOrdem(linha) && linha.conselho.empty(); });
        if (livre == linhas.end())
            linhas.push_back({L"", L"", L"", L"", conselho, {}});
        else
            juntar(*livre, conselho);
    }
    return linhas;
}

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
