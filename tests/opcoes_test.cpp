#include "game/opcoes.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "tests/suporte/ini.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"

ZU_RECUSAVEL(L"kernel32", WritePrivateProfileStringW, FALSE);

namespace zu::launcher {
namespace {

constexpr const char* kIni = "Config/Zu.ini";

class Opcoes : public testing::Test {
 protected:
    Opcoes() { teste::Configurar(pasta_.Caminho(), ""); }

    OpcoesJogo Lidas(const std::string& ini) {
        pasta_.Escrever(kIni, ini);
        return LerOpcoesJogo();
    }
    // The line in the log has an end of its own when a key could not be written.
    [[nodiscard]] bool Gravou(const OpcoesJogo& opcoes) const {
        GravarOpcoesJogo(opcoes);
        return !teste::LinhasDoLog(pasta_).back().ends_with(" — FALHOU ao gravar alguma chave");
    }
    void Proteger(bool sim) const {
        SetFileAttributesW((pasta_ / kIni).c_str(), sim ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL);
    }

    teste::PastaTemporaria pasta_{L"Pasta do Jogo ç"};
};

// In UTF-16, which only the wide profile functions keep.
TEST_F(Opcoes, CadaChaveNoSeuLugarESoAQueMuda) {
    EXPECT_EQ(LerOpcoesJogo(), OpcoesJogo{});
    EXPECT_FALSE(pasta_.Tem("Config"));
    const auto utf16 = [](const OpcoesJogo& opcoes) {
        const std::wstring largo = L"\uFEFF" + DeUtf8(teste::TextoDoIni(opcoes));
        return std::string(reinterpret_cast<const char*>(largo.data()), largo.size() * sizeof(wchar_t));
    };
    const OpcoesJogo antes{"vulkan", 0, 0, 4, 1, 0, 4, 4, 1};
    EXPECT_EQ(Lidas(utf16(antes)), antes);
    Proteger(true);
    EXPECT_TRUE(Gravou(antes));  // nothing differs, so nothing is written
    Proteger(false);
    // Brought into range; the line tells the record as it was given.
    GravarOpcoesJogo({"Vulkan", -4, 2, 99, 0, 8, 10, -7, 0});
    EXPECT_EQ(teste::LinhasDoLog(pasta_).back(),
              "Opções gravadas em Config\\Zu.ini (api Vulkan, modo -4, resolução 99)");
    EXPECT_EQ(pasta_.Ler(kIni), utf16({"d3d12", 1, 1, 7, 0, 7, 9, 0, 0}));
}

TEST_F(Opcoes, ForaDosLimites) {
    EXPECT_EQ(Lidas(teste::TextoDoIni({"Vulkan", 7, 5, 8, -2, 8, 10, 10, 2})),
              (OpcoesJogo{"d3d12", 1, 1, 7, 1, 7, 9, 9, 1}));
    EXPECT_EQ(Lidas("[Video]\nApi=\"vulkan \"\nVSync=lixo\nFpsLimit=-1\n[Sound]\nMusicLevel=abc"),
              (OpcoesJogo{.vsync = 0, .musicLevel = 0}));
}

TEST_F(Opcoes, ArquivoProtegidoPresoOuSemPastaSoNoLog) {
    EXPECT_TRUE(Gravou({.vsync = 0}));  // into a folder that it makes
    pasta_.Escrever(kIni, teste::TextoDoIni());
    Proteger(true);
    EXPECT_FALSE(Gravou({.api = "vulkan"}));  // the first key of all, and the last
    EXPECT_FALSE(Gravou({.fecharAoJogar = 0}));
    Proteger(false);
    teste::recusa = {"WritePrivateProfileStringW", ERROR_SHARING_VIOLATION};
    EXPECT_FALSE(Gravou({"vulkan", 0, 1, 1, 0, 1, 1, 1, 0}));
    EXPECT_EQ(teste::recusa.vezes, 9);  // each is tried
    teste::recusa = {};
    EXPECT_EQ(pasta_.Ler(kIni), teste::TextoDoIni());
    // A file stands where the folder would have to be; an empty value is not a missing key.
    std::filesystem::remove_all(pasta_ / "Config");
    pasta_.Escrever("Config", "arquivo");
    EXPECT_FALSE(Gravou({}) || GravarChaveSeDiferente(L"A", L"Falta", L""));
}

}  // namespace
}  // namespace zu::launcher
