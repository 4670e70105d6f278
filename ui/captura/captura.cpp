#include "ui/captura/captura.h"

#include <dwmapi.h>
#include <wincodec.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <vector>

#include "app/controlador.h"
#include "core/config.h"
#include "core/log.h"
#include "core/utf16.h"
#include "game/requisitos.h"
#include "ui/com.h"
#include "ui/controles/controle.h"
#include "ui/desenho/desenho.h"
#include "ui/janelas/diagnostico.h"
#include "ui/janelas/estado_interface.h"
#include "ui/janelas/fim_da_interface.h"
#include "ui/janelas/modal.h"
#include "ui/janelas/opcoes.h"
#include "ui/janelas/principal.h"
#include "ui/janelas/requisitos.h"

namespace zu::launcher {
namespace {

constexpr UINT kIntervalo = 300;             // ms
constexpr ULONGLONG kEsperaMinima = 2'500;   // ms
constexpr ULONGLONG kEsperaMaxima = 30'000;  // ms

constexpr int kTentativas = 20;
constexpr DWORD kPausa = 100;  // ms
// Share of the pixels where the page lies that must differ from the plain drawing, at least.
constexpr std::size_t kPorcentoDiferente = 1;
constexpr int kDiferencaVisivel = 24;  // of a colour's channel, 0 to 255

constexpr UINT kRenderizarTudo = 2;  // PW_RENDERFULLCONTENT

// One picture: its file, and what has to be opened to come to the window, which stands over the ones before.
struct Foto {
    const wchar_t* nome;
    std::array<HWND (*)(), 3> abrir;
};
constexpr std::array<Foto, 4> kFotos{{
    {L"principal.png", {}},
    {L"opcoes.png", {AbrirOpcoes}},
    {L"requisitos.png", {AbrirOpcoes, AbrirRequisitos}},
    {L"diagnostico.png", {AbrirOpcoes, AbrirRequisitos, AbrirDiagnostico}},
}};

// The running session, for the timer's callback, which is given nothing of its own.
SessaoDeCaptura* sessao = nullptr;

BOOL CALLBACK DesenharControle(HWND filho, LPARAM lParam) {
    if (!EhControle(filho) || !IsWindowVisible(filho)) return TRUE;
    const auto dc = reinterpret_cast<HDC>(lParam);
    EstadoDo(filho).phase = 0;  // the same window is the same picture, whenever it is taken
    RECT r{};
    GetWindowRect(filho, &r);
    MapWindowPoints(nullptr, GetParent(filho), reinterpret_cast<POINT*>(&r), 2);
    POINT antes{};
    SetViewportOrgEx(dc, r.left, r.top, &antes);
    SendMessageW(filho, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
    SetViewportOrgEx(dc, antes.x, antes.y, nullptr);
    return TRUE;
}

// A window's drawing in memory: 32 bits a pixel, top row first.
class Quadro {
 public:
    explicit Quadro(SIZE tamanho) : tamanho_(tamanho), dc_(CreateCompatibleDC(nullptr)) {
        const BITMAPINFO info = InfoDoBitmap(tamanho.cx, tamanho.cy);
        void* pixels = nullptr;
        bitmap_.Trocar(CreateDIBSection(dc_.Valor(), &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
        if (pixels == nullptr) return;
        pixels_ = {static_cast<std::uint32_t*>(pixels), static_cast<std::size_t>(tamanho.cx * tamanho.cy)};
        antigo_ = SelectObject(dc_.Valor(), bitmap_.Valor());
    }
    Quadro(const Quadro&) = delete;
    Quadro& operator=(const Quadro&) = delete;
    ~Quadro() {
        if (antigo_ != nullptr) SelectObject(dc_.Valor(), antigo_);
    }

    bool Desenhar(HWND janela, UINT modo) {
        if (pixels_.empty()) return false;
        const bool desenhou = PrintWindow(janela, dc_.Valor(), modo) != FALSE;
        // Wine leaves the children out.
        EnumChildWindows(janela, DesenharControle, reinterpret_cast<LPARAM>(dc_.Valor()));
        GdiFlush();
        return desenhou;
    }
    [[nodiscard]] std::span<std::uint32_t> Pixels() { return pixels_; }
    [[nodiscard]] SIZE Tamanho() const { return tamanho_; }

 private:
    SIZE tamanho_;
    HandleDc dc_;
    HandleGdi bitmap_;
    HGDIOBJ antigo_ = nullptr;
    std::span<std::uint32_t> pixels_;
};

// Of red, green and blue, whichever differs the most. Two drawings of one thing differ by a little.
bool OutraCor(std::uint32_t a, std::uint32_t b) {
    for (int canal = 0; canal < 24; canal += 8) {
        if (std::abs(static_cast<int>(a >> canal & 0xFF) - static_cast<int>(b >> canal & 0xFF)) >= kDiferencaVisivel)
            return true;
    }
    return false;
}

// Whether the page shows in the frame: where it lies, enough looks other than in the plain drawing.
bool MostraPagina(Quadro& quadro, const std::vector<std::uint32_t>& semPagina) {
    std::size_t diferentes = 0;
    for (int y = kCentro.top; y < kCentro.bottom; ++y) {
        for (int x = kCentro.left; x < kCentro.right; ++x) {
            const auto lugar = static_cast<std::size_t>(y * quadro.Tamanho().cx + x);
            if (OutraCor(quadro.Pixels()[lugar], semPagina[lugar])) ++diferentes;
        }
    }
    constexpr auto kArea = std::size_t{kCentro.right - kCentro.left} * std::size_t{kCentro.bottom - kCentro.top};
    return diferentes * 100 > kArea * kPorcentoDiferente;
}

// The page is not drawn by the window but composited by the system, some time after it has loaded.
void DesenharComPagina(HWND janela, Quadro& quadro) {
    const std::vector<std::uint32_t> semPagina(quadro.Pixels().begin(), quadro.Pixels().end());
    for (int i = 0; i < kTentativas; ++i) {
        DwmFlush();
        if (quadro.Desenhar(janela, kRenderizarTudo) && MostraPagina(quadro, semPagina)) return;
        Sleep(kPausa);
    }
    LogLinha("Captura: o DWM não entregou o quadro do site; fica o desenho GDI");
    std::memcpy(quadro.Pixels().data(), semPagina.data(), semPagina.size() * sizeof semPagina[0]);
}

// GDI leaves the alpha channel to chance: opaque within the window's region, nothing beyond it.
void AplicarRegiao(HWND janela, Quadro& quadro) {
    const HandleGdi regiao(CreateRectRgn(0, 0, 0, 0));
    const bool inteira = GetWindowRgn(janela, static_cast<HRGN>(regiao.Valor())) <= NULLREGION;
    const SIZE tamanho = quadro.Tamanho();
    std::size_t lugar = 0;
    for (int y = 0; y < tamanho.cy; ++y) {
        for (int x = 0; x < tamanho.cx; ++x, ++lugar) {
            std::uint32_t& pixel = quadro.Pixels()[lugar];
            const bool dentro = inteira || PtInRegion(static_cast<HRGN>(regiao.Valor()), x, y) != FALSE;
            pixel = dentro ? pixel | 0xFF000000U : 0;
        }
    }
}

bool GravarPng(Quadro& quadro, const std::filesystem::path& arquivo) {
    Com<IWICImagingFactory> fabrica;
    Com<IWICStream> fluxo;
    Com<IWICBitmapEncoder> codificador;
    Com<IWICBitmapFrameEncode> imagem;
    WICPixelFormatGUID formato = GUID_WICPixelFormat32bppBGRA;
    const auto largura = static_cast<UINT>(quadro.Tamanho().cx);
    const auto altura = static_cast<UINT>(quadro.Tamanho().cy);
    const auto bytes = quadro.Pixels().size_bytes();
    return SUCCEEDED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                      reinterpret_cast<void**>(fabrica.Receber()))) &&
           SUCCEEDED(fabrica.Valor()->CreateStream(fluxo.Receber())) &&
           SUCCEEDED(fluxo.Valor()->InitializeFromFilename(arquivo.c_str(), GENERIC_WRITE)) &&
           SUCCEEDED(fabrica.Valor()->CreateEncoder(GUID_ContainerFormatPng, nullptr, codificador.Receber())) &&
           SUCCEEDED(codificador.Valor()->Initialize(fluxo.Valor(), WICBitmapEncoderNoCache)) &&
           SUCCEEDED(codificador.Valor()->CreateNewFrame(imagem.Receber(), nullptr)) &&
           SUCCEEDED(imagem.Valor()->Initialize(nullptr)) && SUCCEEDED(imagem.Valor()->SetSize(largura, altura)) &&
           SUCCEEDED(imagem.Valor()->SetPixelFormat(&formato)) && IsEqualGUID(formato, GUID_WICPixelFormat32bppBGRA) &&
           SUCCEEDED(imagem.Valor()->WritePixels(altura, largura * 4, static_cast<UINT>(bytes),
                                                 reinterpret_cast<BYTE*>(quadro.Pixels().data()))) &&
           SUCCEEDED(imagem.Valor()->Commit()) && SUCCEEDED(codificador.Valor()->Commit());
}

}  // namespace

bool CapturarJanela(HWND janela, const std::filesystem::path& arquivo, bool comSite) {
    // A minimised window is a title bar's size, far off the screen.
    if (IsIconic(janela)) ShowWindow(janela, SW_SHOWNOACTIVATE);
    RECT r{};
    GetWindowRect(janela, &r);
    Quadro quadro({r.right - r.left, r.bottom - r.top});
    // The page's place is known at the main window's full size alone.
    const bool inteira = quadro.Tamanho().cx == kLarguraPrincipal && quadro.Tamanho().cy == kAlturaPrincipal;
    bool gravou = quadro.Desenhar(janela, 0);
    if (gravou) {
        if (comSite && inteira) DesenharComPagina(janela, quadro);
        AplicarRegiao(janela, quadro);
        gravou = GravarPng(quadro, arquivo);
        if (!gravou) DeleteFileW(arquivo.c_str());
    }
    LogLinha("Captura {}: {}", ParaUtf8(arquivo.filename().native()), gravou ? "gravada" : "FALHOU");
    return gravou;
}

void SessaoDeCaptura::Iniciar() {
    sessao = this;
    std::error_code ignorado;
    std::filesystem::create_directories(ObterConfig().captura, ignorado);
    inicio_ = GetTickCount64();
    relogio_ = SetTimer(nullptr, 0, kIntervalo, AoRelogio);
}

SessaoDeCaptura::~SessaoDeCaptura() {
    if (relogio_ == 0) return;
    KillTimer(nullptr, relogio_);
    sessao = nullptr;
}

void CALLBACK SessaoDeCaptura::AoRelogio(HWND, UINT, UINT_PTR, DWORD) {
    if (sessao != nullptr) sessao->Avancar();
}

bool SessaoDeCaptura::Assentou() const {
    const ULONGLONG passado = GetTickCount64() - inicio_;
    if (passado >= kEsperaMaxima) return true;
    return passado >= kEsperaMinima && !ObterControlador().Ocupado() && Principal().Site().Assentou() &&
           ObterSituacaoRequisitos().concluido;
}

void SessaoDeCaptura::Capturar(HWND janela, const wchar_t* nome, bool comSite) {
    if (!CapturarJanela(janela, std::filesystem::path(ObterConfig().captura) / nome, comSite)) falhou_ = true;
}

void SessaoDeCaptura::Avancar() {
    if (passo_ == 0 && !Assentou()) return;
    if (passo_ == kFotos.size()) {
        PedirFim();
        return;
    }
    const EstadoInterface& ui = ObterInterface();
    const Foto& foto = kFotos[passo_++];
    std::vector<HWND> abertas;
    for (const auto abrir : foto.abrir)
        if (abrir != nullptr) abertas.push_back(abrir());
    const HWND janela = abertas.empty() ? ui.principal : abertas.back();
    Capturar(janela, foto.nome, janela == ui.principal && Principal().Site().Presente());
    for (auto aberta = abertas.rbegin(); aberta != abertas.rend(); ++aberta)
        FecharModal(*aberta);
}

}  // namespace zu::launcher
