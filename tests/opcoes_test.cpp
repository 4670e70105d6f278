#include "game/opcoes.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>

#include "core/handle.h"
#include "core/texto.h"
#include "tests/suporte/publicacao.h"

namespace zu::launcher {
namespace {

constexpr const char* kIni = "Config/Zu.ini";
constexpr const char* kFalhou = " — FALHOU ao gravar alguma chave";

class Opcoes : public testing::Test {
 protected:
    Opcoes() { teste::Configurar(pasta_.Caminho(), ""); }

    OpcoesJogo Lidas(const std::string& ini) {
        pasta_.Escrever(kIni, ini);
        return LerOpcoesJogo();
    }
    [[nodiscard]] std::string UltimaLinha() const {
        const auto linhas = teste::LinhasDoLog(pasta_);
        return linhas.empty() ? "" : linhas.back();
    }
    [[nodiscard]] std::uint64_t Hora() const {
        InfoArquivo info;
        LerInfoArquivo(pasta_ / kIni, info);
        return info.modificado;
    }
    teste::PastaTemporaria pasta_{L"Pasta do Jogo ç"};
};

std::string Utf16(const std::string& texto) {
    const std::wstring largo = DeUtf8(texto);
    return "\xFF\xFE" + std::string(reinterpret_cast<const char*>(largo.data()), largo.size() * sizeof(wchar_t));
}

std::string Trocado(std::string texto, const std::string& de, const std::string& para) {
    const std::size_t lugar = texto.find(de);
    if (lugar == std::string::npos) throw std::runtime_error("falta " + de);
    return texto.replace(lugar, de.size(), para);
}

TEST_F(Opcoes, LeituraLinhaPorLinha) {
    EXPECT_EQ(LerOpcoesJogo(), OpcoesJogo{});
    EXPECT_FALSE(pasta_.Tem("Config"));

    const struct {
        const char* ini;
        OpcoesJogo esperado;
    } casos[] = {
        {"", {}},
        {"[Video]\nApi=vulkan", {.api = "vulkan"}},
        {"[Video]\nApi=Vulkan", {}},
        {"[Video]\nApi=\"vulkan \"", {}},
        {"[Video]\nApi=vulkan2", {}},
        {"[Window]\nApi=vulkan", {}},
        {"[Video]\nVSync=0\nFpsLimit=7", {.vsync = 0, .fpsLimit = 7}},
        {"[Video]\nVSync=-2\nFpsLimit=8", {.vsync = 1, .fpsLimit = 7}},
        {"[Video]\nVSync=lixo\nFpsLimit=-1", {.vsync = 0, .fpsLimit = 0}},
        {"[Window]\nVSync=0\nFpsLimit=3", {}},
        {"[Window]\nWindowMode=0\nBorderless=5\nResolution=0", {.windowMode = 0, .borderless = 1, .resolution = 0}},
        {"[Window]\nWindowMode=7\nResolution=12", {.resolution = 7}},
        {"[Window]\nResolution=-3", {.resolution = 0}},
        {"[Window]\nResolution=abc", {.resolution = 0}},
        {"[Video]\nResolution=1\nWindowMode=0\nBorderless=1", {}},
        {"[Sound]\nSoundLevel=10\nMusicLevel=9", {.soundLevel = 9, .musicLevel = 9}},
        {"[Sound]\nSoundLevel=-1\nMusicLevel=0", {.soundLevel = 0, .musicLevel = 0}},
        {"[Launcher]\nFecharAoJogar=0", {.fecharAoJogar = 0}},
        {"[Launcher]\nOutra=0", {}},
    };
    for (const auto& caso : casos)
        EXPECT_EQ(Lidas(caso.ini), caso.esperado) << caso.ini;
}

TEST_F(Opcoes, GravaAsNoveDentroDosLimites) {
    GravarOpcoesJogo({.api = "Vulkan",
                      .windowMode = -4,
                      .borderless = 2,
                      .resolution = 99,
                      .vsync = 0,
                      .fpsLimit = -1,
                      .soundLevel = 10,
                      .musicLevel = -7,
                      .fecharAoJogar = 0});
    // The line tells the record as it was given.
    EXPECT_EQ(UltimaLinha(), "Opções gravadas em Config\\Zu.ini (api Vulkan, modo -4, resolução 99)");
    const OpcoesJogo esperado{.api = "d3d12",
                              .windowMode = 1,
                              .borderless = 1,
                              .resolution = 7,
                              .vsync = 0,
                              .fpsLimit = 0,
                              .soundLevel = 9,
                              .musicLevel = 0,
                              .fecharAoJogar = 0};
    EXPECT_EQ(LerOpcoesJogo(), esperado);
    std::string ini = pasta_.Ler(kIni);
    std::erase(ini, '\r');
    std::vector<std::string> linhas;
    for (std::string_view resto = ini; !resto.empty();) {
        const auto linha = TomarAte(resto, '\n');
        if (!linha.empty()) linhas.emplace_back(linha);
    }
    const std::vector<std::string> esperadas{
        "[Video]",      "Api=d3d12", "VSync=0",      "FpsLimit=0",   "[Window]",   "WindowMode=1",   "Borderless=1",
        "Resolution=7", "[Sound]",   "SoundLevel=9", "MusicLevel=0", "[Launcher]", "FecharAoJogar=0"};
    EXPECT_EQ(linhas, esperadas);
}

// What the game wrote, with keys of its own before, between and behind ours. (No empty lines: Wine drops them.)
const std::string kDoJogo =
    "; opções do jogo\r\n[Idioma]\r\nNome=ação\r\n[Video]\r\nDlss=3\r\nApi=d3d12\r\nVSync=1\r\nSombras=ultra "
    "alta\r\nFpsLimit=0\r\n[Window]\r\nX=10\r\nWindowMode=1\r\nBorderless=0\r\nResolution=4\r\nTitulo=Zu é "
    "Zu\r\n[Sound]\r\nSoundLevel=4\r\nVoz=1\r\nMusicLevel=4\r\n[Launcher]\r\nFecharAoJogar=1\r\n[Teclas]\r\nPular="
    "32\r\n";

TEST_F(Opcoes, OutrasChavesFicamNoLugarEmCadaCodificacao) {
    const std::string ansi = [] {
        std::string texto;
        for (const wchar_t c : DeUtf8(kDoJogo))
            texto.push_back(static_cast<char>(c));  // all below U+0100
        return texto;
    }();
    const std::string mudado = Trocado(
        Trocado(Trocado(kDoJogo, "Api=d3d12", "Api=vulkan"), "Resolution=4", "Resolution=7"), "VSync=1", "VSync=0");
    const std::string ansiMudado = Trocado(
        Trocado(Trocado(ansi, "Api=d3d12", "Api=vulkan"), "Resolution=4", "Resolution=7"), "VSync=1", "VSync=0");
    const struct {
        const char* nome;
        std::string antes;
        std::string depois;
    } casos[] = {
        {"ANSI", ansi, ansiMudado},
        {"UTF-16", Utf16(kDoJogo), Utf16(mudado)},
        {"UTF-8", "\xEF\xBB\xBF" + kDoJogo, "\xEF\xBB\xBF" + mudado},
    };
    for (const auto& caso : casos) {
        OpcoesJogo opcoes = Lidas(caso.antes);
        EXPECT_EQ(opcoes, OpcoesJogo{}) << caso.nome;
        const std::uint64_t hora = Hora();
        Sleep(20);
        GravarOpcoesJogo(opcoes);
        EXPECT_EQ(pasta_.Ler(kIni), caso.antes) << caso.nome;
        EXPECT_EQ(Hora(), hora) << caso.nome;

        opcoes.api = "vulkan";
        opcoes.resolution = 7;
        opcoes.vsync = 0;
        GravarOpcoesJogo(opcoes);
        EXPECT_EQ(pasta_.Ler(kIni), caso.depois) << caso.nome;
        EXPECT_EQ(UltimaLinha(), "Opções gravadas em Config\\Zu.ini (api vulkan, modo 1, resolução 7)");
        EXPECT_EQ(LerOpcoesJogo(), opcoes) << caso.nome;
    }
}

TEST_F(Opcoes, LixoNaoAtrapalhaNemSome) {
    const std::string linhaLonga(64 * 1024, 'x');
    const struct {
        std::string ini;
        std::vector<std::string> ficam;
    } casos[] = {
        {"lixo sem chave\r\n=sem nome\r\n[\r\n]\r\n[Video\r\n[Fim]\r\nA=1\r\n", {"lixo sem chave", "[Fim]", "A=1"}},
        {"[Longa]\r\nA=" + linhaLonga + "\r\n" + linhaLonga + "\r\n[Fim]\r\nB=2\r\n", {linhaLonga, "[Fim]", "B=2"}},
        {"[Video]\r\nA=1\r\n[Outra]\r\nB=2\r\n[Video]\r\nC=3\r\n", {"A=1", "[Outra]", "B=2", "C=3"}},
        {std::string("[Zero]\r\nA=1\r\n\0\0\0\r\n[Fim]\r\nB=2\r\n", 36), {"A=1"}},
        {"\r\n\r\n\n\n", {}},
    };
    for (const auto& caso : casos) {
        OpcoesJogo opcoes = Lidas(caso.ini);
        EXPECT_EQ(opcoes, OpcoesJogo{}) << caso.ini.substr(0, 80);
        opcoes.api = "vulkan";
        opcoes.soundLevel = 0;
        GravarOpcoesJogo(opcoes);
        EXPECT_FALSE(UltimaLinha().ends_with(kFalhou)) << caso.ini.substr(0, 80);
        EXPECT_EQ(LerOpcoesJogo(), opcoes) << caso.ini.substr(0, 80);
        const std::string ini = pasta_.Ler(kIni);
        for (const std::string& fica : caso.ficam)
            EXPECT_NE(ini.find(fica), std::string::npos) << fica.substr(0, 80);
    }
}

TEST_F(Opcoes, ArquivoProtegidoOuPresoSoNoLog) {
    pasta_.Escrever(kIni, kDoJogo);
    const auto ini = pasta_ / kIni;
    SetFileAttributesW(ini.c_str(), FILE_ATTRIBUTE_READONLY);
    GravarOpcoesJogo({});
    EXPECT_FALSE(UltimaLinha().ends_with(kFalhou)) << "nothing to write";
    GravarOpcoesJogo({.api = "vulkan", .resolution = 2});
    EXPECT_EQ(UltimaLinha(),
              std::string("Opções gravadas em Config\\Zu.ini (api vulkan, modo 1, resolução 2)") + kFalhou);
    SetFileAttributesW(ini.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(pasta_.Ler(kIni), kDoJogo);

    {
        const HandleArquivo preso(CreateFileW(ini.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(preso);
        LerOpcoesJogo();
        GravarOpcoesJogo({.api = "vulkan", .fpsLimit = 3});
        EXPECT_TRUE(UltimaLinha().ends_with(kFalhou));
    }
    EXPECT_EQ(pasta_.Ler(kIni), kDoJogo);

    // A file stands where the folder would have to be.
    std::filesystem::remove_all(pasta_ / "Config");
    pasta_.Escrever("Config", "arquivo");
    EXPECT_EQ(LerOpcoesJogo(), OpcoesJogo{});
    GravarOpcoesJogo({});
    EXPECT_TRUE(UltimaLinha().ends_with(kFalhou));
}

TEST_F(Opcoes, ChaveVaziaNaoEFaltaDeChave) {
    pasta_.Escrever(kIni, "[A]\r\nVazia=\r\n");
    EXPECT_TRUE(GravarChaveSeDiferente(L"A", L"Vazia", L""));
    EXPECT_EQ(pasta_.Ler(kIni), "[A]\r\nVazia=\r\n");
    EXPECT_TRUE(GravarChaveSeDiferente(L"A", L"Falta", L""));
    EXPECT_NE(pasta_.Ler(kIni).find("Falta="), std::string::npos);
}

}  // namespace
}  // namespace zu::launcher
