#include "game/jogo.h"

#include <gtest/gtest.h>
#include <windows.h>
// after windows.h
#include <process.h>

#include <algorithm>
#include <stdexcept>

#include "app/controlador.h"
#include "core/excecao.h"
#include "game/requisitos.h"
#include "game/token.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"

ZU_RECUSAVEL(L"kernel32", CreateFileMappingW, nullptr);
ZU_RECUSAVEL(L"kernel32", GetFileInformationByHandle, FALSE);
ZU_RECUSAVEL(L"kernel32", ResumeThread, static_cast<DWORD>(-1));
ZU_RECUSAVEL(L"msvcrt", _beginthreadex, 0);

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;

class Jogo : public testing::Test {
 protected:
    Jogo() {
        Configurar(pasta_.Caminho(), "");
        std::filesystem::copy_file(kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe");
        pasta_.Escrever("../Jogo.exe", "");  // what a path without quotes would start
    }
    ~Jogo() override {
        recusa = {};
        // No game runs or is suspended.
        EXPECT_TRUE(Esperar(10s, [this] { return !EmUso(pasta_ / "Zu.exe"); }));
    }

    [[nodiscard]] bool LogouUmaVez(const std::string& linha) const {
        return std::ranges::count(LinhasDoLog(pasta_), linha) == 1;
    }
    // What the game noted of one start.
    std::string Abrir(const std::string& api) {
        pasta_.Escrever("Config/Zu.ini", "[Video]\r\nApi=" + api);
        std::filesystem::remove(pasta_ / "jogo_falso.log");
        std::string erro = "de antes";
        EXPECT_TRUE(AbrirJogo(erro));
        EXPECT_TRUE(erro.empty() && EmUso(pasta_ / "Zu.exe"));
        return pasta_.Ler("jogo_falso.log");
    }

    PastaTemporaria pasta_{L"Jogo é"};
};

TEST_F(Jogo, ComecaNaSuaPastaComUmaDasDuasApisEUmTokenQueNaoSeRepete) {
    const std::string um = Abrir("vulkan\" --sobra \"");
    const std::string dois = Abrir("d3d12");
    const std::string vulkan = Abrir("vulkan");
    EXPECT_TRUE(um.starts_with(". | --api=d3d12 | --launcher=...\napi d3d12\ntoken certo ")) << um;
    EXPECT_EQ(um.size(), dois.size());
    EXPECT_NE(um, dois);
    EXPECT_TRUE(vulkan.starts_with(". | --api=vulkan | --launcher=...\napi vulkan\ntoken certo ")) << vulkan;
}

TEST_F(Jogo, RecusaDizONumeroDoSistemaENadaFicaAberto) {
    std::string erro;
    recusa = {"ResumeThread", ERROR_NOT_READY};
    EXPECT_FALSE(AbrirJogo(erro));
    EXPECT_EQ(erro, "não foi possível abrir o Zu.exe (erro 21)");
    // Without a channel the game starts all the same.
    recusa = {"CreateFileMappingW", ERROR_ACCESS_DENIED};
    EXPECT_TRUE(AbrirJogo(erro));
    EXPECT_TRUE(LogouUmaVez("Lançamento: o jogo fechou antes de confirmar"));
}

// With `--jogar`, as the window and the run without one ask ten times a second.
TEST_F(Jogo, FalhaDoSistemaUmaVezNoLogENuncaOFimDoPrograma) {
    DefinirConfig({.pastaJogo = pasta_.Caminho(), .jogar = true});
    ControladorLauncher controlador;
    const auto girar = [&](auto condicao) {
        return Esperar(30s, [&] {
            controlador.Tick();
            return condicao();
        });
    };
    const auto concluido = [] { return ObterRequisitos().concluido; };
    const std::string falha = "Jogar: não foi possível acessar " + ParaUtf8((pasta_ / "Zu.exe").native());
    recusa = {"GetFileInformationByHandle", ERROR_IO_DEVICE};
    controlador.Iniciar();
    EXPECT_TRUE(girar(concluido));
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(controlador.PodeJogarAgora());
    EXPECT_THROW((void)controlador.PodeJogar(), std::filesystem::filesystem_error);
    EXPECT_TRUE(LogouUmaVez(falha + " (erro 1117)"));
    recusa.erro = ERROR_SEM_TIMEOUT;
    EXPECT_TRUE(girar([&] { return LogouUmaVez(falha + " (erro 121)"); }));

    const std::string semThread = "o sistema não atendeu a um pedido (erro 11)";
    recusa = {"_beginthreadex", ERROR_NOT_READY};
    EXPECT_TRUE(girar([&] { return LogouUmaVez("Jogar: " + semThread); }));
    EXPECT_THROW(IniciarRequisitos(), std::system_error);
    EXPECT_TRUE(concluido());
    // In the middle of a start: the game that was made for it ends, too.
    recusa = {"CreateFileMappingW"};
    controlador.Jogar();
    EXPECT_TRUE(girar([&] { return LogouUmaVez("Jogar: memória insuficiente"); }));
    recusa = {};
    controlador.Iniciar();
    EXPECT_FALSE(concluido());
    EXPECT_TRUE(Esperar(30s, [&] { return !controlador.Atualizando(); }));
    recusa = {"_beginthreadex", ERROR_NOT_READY};
    EXPECT_TRUE(girar(concluido) && LogouUmaVez("Requisitos: " + semThread));

    EXPECT_EQ(TextoDaExcecao(std::runtime_error("in English")), "erro interno do launcher");
}

TEST(Token, CanalSoComOQueOLauncherPos) {
    constexpr std::uint32_t kPid = 4'000'000'123;
    const wchar_t* const mapa = L"Local\\ZuLauncher-token-4000000123";
    const TokenDeLancamento token{1, 2, 3, 255};
    const HandleKernel morto(CreateEventW(nullptr, TRUE, TRUE, nullptr));
    CanalDoToken canal = AbrirCanal(token, kPid);
    HandleKernel leitura(OpenFileMappingW(FILE_MAP_READ, FALSE, mapa));
    ASSERT_TRUE(canal && leitura);
    // Nobody but this user is let in, and to read alone; a name that somebody else holds already is no channel.
    EXPECT_EQ(OpenFileMappingW(FILE_MAP_WRITE, FALSE, mapa), nullptr);
    EXPECT_FALSE(AbrirCanal(token, kPid));

    // Confirmed, and ended at once.
    const wchar_t* const evento = L"Local\\ZuLauncher-confirmado-4000000123";
    SetEvent(HandleKernel(OpenEventW(EVENT_MODIFY_STATE, FALSE, evento)).Valor());
    EXPECT_EQ(EsperarConfirmacao(morto.Valor(), canal, 0ms), "anti-hack confirmou o token");

    // With the event's name alone taken there is no channel either, and the token is not left to be read.
    leitura.Fechar();
    canal = {};
    const HandleKernel deOutro(CreateEventW(nullptr, TRUE, FALSE, evento));
    canal = AbrirCanal(token, kPid);
    EXPECT_FALSE(canal);
    EXPECT_EQ(OpenFileMappingW(FILE_MAP_READ, FALSE, mapa), nullptr);
}

}  // namespace
}  // namespace zu::launcher
