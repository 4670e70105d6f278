#include "game/opcoes.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "core/formato.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"

ZU_RECUSAVEL(L"kernel32", WritePrivateProfileStringW, FALSE);

namespace zu::launcher {
namespace {

constexpr const char* kIni = "Config/Zu.ini";
const std::string kFalhou = " — FALHOU ao gravar alguma chave";

// The options file as the game writes it: with every key that the launcher knows, and keys and sections of the game's
// own before, between and behind them. (No empty lines: Wine drops them.)
std::string TextoDoIni(const OpcoesJogo& o = {}) {
    return Formatar(
        "; opções do jogo\r\n[Idioma]\r\nNome=ação\r\n"
        "[Video]\r\nDlss=3\r\nApi={}\r\nVSync={}\r\nSombras=ultra alta\r\nFpsLimit={}\r\n"
        "[Window]\r\nX=10\r\nWindowMode={}\r\nBorderless={}\r\nResolution={}\r\nTitulo=Zu é Zu\r\n"
        "[Sound]\r\nSoundLevel={}\r\nVoz=1\r\nMusicLevel={}\r\n"
        "[Launcher]\r\nFecharAoJogar={}\r\n[Teclas]\r\nPular=32\r\n",
        o.api, o.vsync, o.fpsLimit, o.windowMode, o.borderless, o.resolution, o.soundLevel, o.musicLevel,
        o.fecharAoJogar);
}

class Opcoes : public testing::Test {
 protected:
    Opcoes() { teste::Configurar(pasta_.Caminho(), ""); }

    OpcoesJogo Lidas(const std::string& ini) {
        pasta_.Escrever(kIni, ini);
        return LerOpcoesJogo();
    }
    // What the line in the log tells.
    [[nodiscard]] std::string Gravar(const OpcoesJogo& opcoes) const {
        GravarOpcoesJogo(opcoes);
        return teste::LinhasDoLog(pasta_).back();
    }
    [[nodiscard]] bool Gravou(const OpcoesJogo& opcoes) const { return !Gravar(opcoes).ends_with(kFalhou); }

    void Proteger(bool sim) const {
        SetFileAttributesW((pasta_ / kIni).c_str(), sim ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL);
    }

    teste::PastaTemporaria pasta_{L"Pasta do Jogo ç"};
};

TEST_F(Opcoes, CadaChaveNaSuaSecaoComPadraoELimites) {
    EXPECT_EQ(LerOpcoesJogo(), OpcoesJogo{});
    EXPECT_FALSE(pasta_.Tem("Config"));
    const std::pair<const char*, OpcoesJogo> casos[] = {
        {"[Video]\nApi=vulkan\nVSync=0\nFpsLimit=7\n[Window]\nWindowMode=0\nBorderless=1\nResolution=0\n"
         "[Sound]\nSoundLevel=9\nMusicLevel=0\n[Launcher]\nFecharAoJogar=0",
         {"vulkan", 0, 1, 0, 0, 7, 9, 0, 0}},
        {"[Video]\nApi=Vulkan\nVSync=-2\nFpsLimit=8\n[Window]\nWindowMode=7\nBorderless=5\nResolution=8\n"
         "[Sound]\nSoundLevel=10\nMusicLevel=10\n[Launcher]\nFecharAoJogar=2",
         {"d3d12", 1, 1, 7, 1, 7, 9, 9, 1}},
        {"[Video]\nApi=\"vulkan \"\nVSync=lixo\nFpsLimit=-1\n[Window]\nResolution=-3\n"
         "[Sound]\nSoundLevel=-1\nMusicLevel=abc",
         {"d3d12", 1, 0, 0, 0, 0, 0, 0, 1}},
        {"[Window]\nApi=vulkan\nVSync=0\nFpsLimit=3\nFecharAoJogar=0\n"
         "[Video]\nWindowMode=0\nBorderless=1\nResolution=1\nSoundLevel=1\nMusicLevel=1",
         {}},
    };
    for (const auto& [ini, esperado] : casos)
        EXPECT_EQ(Lidas(ini), esperado) << ini;
}

// Brought into range, and all else stays. In UTF-16, which only the wide profile functions keep.
TEST_F(Opcoes, GravaSoOQueMudaENoSeuLugar) {
    const auto utf16 = [](const OpcoesJogo& opcoes) {
        const std::wstring largo = L"\uFEFF" + DeUtf8(TextoDoIni(opcoes));
        return std::string(reinterpret_cast<const char*>(largo.data()), largo.size() * sizeof(wchar_t));
    };
    const OpcoesJogo antes{"vulkan", 0, 0, 4, 1, 0, 4, 4, 1};
    EXPECT_EQ(Lidas(utf16(antes)), antes);
    Proteger(true);
    EXPECT_TRUE(Gravou(antes));  // nothing differs, so nothing is written
    Proteger(false);
    // The line tells the record as it was given.
    EXPECT_EQ(Gravar({"Vulkan", -4, 2, 99, 0, 8, 10, -7, 0}),
              "Opções gravadas em Config\\Zu.ini (api Vulkan, modo -4, resolução 99)");
    EXPECT_EQ(pasta_.Ler(kIni), utf16({"d3d12", 1, 1, 7, 0, 7, 9, 0, 0}));
}

TEST_F(Opcoes, ArquivoProtegidoPresoOuSemPastaSoNoLog) {
    EXPECT_TRUE(Gravou({.vsync = 0}));  // into a folder that it makes
    EXPECT_EQ(LerOpcoesJogo(), OpcoesJogo{.vsync = 0});
    pasta_.Escrever(kIni, TextoDoIni());
    Proteger(true);
    EXPECT_FALSE(Gravou({.api = "vulkan"}));  // the first key of all, and the last
    EXPECT_FALSE(Gravou({.fecharAoJogar = 0}));
    Proteger(false);
    teste::recusa = {"WritePrivateProfileStringW", ERROR_SHARING_VIOLATION};
    EXPECT_FALSE(Gravou({"vulkan", 0, 1, 1, 0, 1, 1, 1, 0}));
    EXPECT_EQ(teste::recusa.vezes, 9);  // each is tried
    teste::recusa = {};
    EXPECT_EQ(pasta_.Ler(kIni), TextoDoIni());
    // A file stands where the folder would have to be.
    std::filesystem::remove_all(pasta_ / "Config");
    pasta_.Escrever("Config", "arquivo");
    EXPECT_FALSE(Gravou({}));
}

TEST_F(Opcoes, ChaveVaziaNaoEFaltaDeChave) {
    EXPECT_FALSE(GravarChaveSeDiferente(L"A", L"Falta", L""));  // there is no folder to write to
    pasta_.Escrever(kIni, "[A]\r\nVazia=\r\n");
    EXPECT_TRUE(GravarChaveSeDiferente(L"A", L"Falta", L""));
    EXPECT_NE(pasta_.Ler(kIni).find("Falta="), std::string::npos);
}

}  // namespace
}  // namespace zu::launcher
