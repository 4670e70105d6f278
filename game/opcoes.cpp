#include "game/opcoes.h"

#include <windows.h>

#include <algorithm>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/log.h"
#include "core/utf16.h"

namespace zu::launcher {
namespace {

constexpr std::string_view kVulkan = "vulkan";
constexpr std::string_view kD3d12 = "d3d12";

std::int32_t SimOuNao(std::int32_t valor) {
    return valor != 0 ? 1 : 0;
}
template <const auto& Rotulos>
std::int32_t IndiceDe(std::int32_t valor) {
    return std::clamp(valor, 0, static_cast<std::int32_t>(Rotulos.size()) - 1);
}

struct CampoInteiro {
    const wchar_t* secao;
    const wchar_t* chave;
    std::int32_t OpcoesJogo::*campo;
    std::int32_t (*ajustar)(std::int32_t);
};

// In the order in which they are written, behind the interface's own key.
constexpr std::array kCampos{
    CampoInteiro{L"Window", L"WindowMode", &OpcoesJogo::windowMode, SimOuNao},
    CampoInteiro{L"Window", L"Borderless", &OpcoesJogo::borderless, SimOuNao},
    CampoInteiro{L"Window", L"Resolution", &OpcoesJogo::resolution, IndiceDe<kRotulosResolucao>},
    CampoInteiro{L"Video", L"VSync", &OpcoesJogo::vsync, SimOuNao},
    CampoInteiro{L"Video", L"FpsLimit", &OpcoesJogo::fpsLimit, IndiceDe<kRotulosLimiteFps>},
    CampoInteiro{L"Sound", L"SoundLevel", &OpcoesJogo::soundLevel, IndiceDe<kRotulosVolume>},
    CampoInteiro{L"Sound", L"MusicLevel", &OpcoesJogo::musicLevel, IndiceDe<kRotulosVolume>},
    CampoInteiro{L"Launcher", L"FecharAoJogar", &OpcoesJogo::fecharAoJogar, SimOuNao},
};

std::string_view ApiConhecida(std::string_view texto) {
    return texto == kVulkan ? kVulkan : kD3d12;
}

std::wstring LerTexto(const std::filesystem::path& arquivo, const wchar_t* secao, const wchar_t* chave,
                      const wchar_t* padrao) {
    std::array<wchar_t, 256> texto{};
    const DWORD tamanho =
        GetPrivateProfileStringW(secao, chave, padrao, texto.data(), static_cast<DWORD>(texto.size()), arquivo.c_str());
    return {texto.data(), tamanho};
}

}  // namespace

std::filesystem::path CaminhoOpcoesJogo() {
    return ObterConfig().pastaJogo / L"Config" / L"Zu.ini";
}

OpcoesJogo LerOpcoesJogo() {
    const std::filesystem::path arquivo = CaminhoOpcoesJogo();
    OpcoesJogo opcoes;
    opcoes.api = ApiConhecida(ParaUtf8(LerTexto(arquivo, L"Video", L"Api", L"d3d12")));
    for (const CampoInteiro& c : kCampos) {
        // The function's result is unsigned but holds a negative number as it stands in the file.
        const UINT lido = GetPrivateProfileIntW(c.secao, c.chave, opcoes.*c.campo, arquivo.c_str());
        opcoes.*c.campo = c.ajustar(static_cast<std::int32_t>(lido));
    }
    return opcoes;
}

void GravarOpcoesJogo(const OpcoesJogo& opcoes) {
    CriarPastas(CaminhoOpcoesJogo().parent_path());
    bool tudo = GravarChaveSeDiferente(L"Video", L"Api", DeUtf8(ApiConhecida(opcoes.api)));
    for (const CampoInteiro& c : kCampos) {
        tudo = GravarChaveSeDiferente(c.secao, c.chave, std::to_wstring(c.ajustar(opcoes.*c.campo))) && tudo;
    }
    LogLinha("Opções gravadas em Config\\Zu.ini (api {}, modo {}, resolução {}){}", opcoes.api, opcoes.windowMode,
             opcoes.resolution, tudo ? "" : " — FALHOU ao gravar alguma chave");
}

bool GravarChaveSeDiferente(const std::wstring& secao, const std::wstring& chave, const std::wstring& valor) {
    const std::filesystem::path arquivo = CaminhoOpcoesJogo();
    // No stored text equals this default, so a missing key differs even from an empty value.
    if (LerTexto(arquivo, secao.c_str(), chave.c_str(), L"\x01") == valor) return true;
    // A protected file is not written on whoever's behalf the launcher runs.
    InfoArquivo info;
    if (LerInfoArquivo(arquivo, info) && info.SomenteLeitura()) return false;
    return WritePrivateProfileStringW(secao.c_str(), chave.c_str(), valor.c_str(), arquivo.c_str()) != 0;
}

}  // namespace zu::launcher
