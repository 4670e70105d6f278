#include "app/controlador.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/formato.h"
#include "game/jogo.h"
#include "game/opcoes.h"
#include "game/requisitos.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"

namespace zu::launcher {
namespace {

using std::chrono::milliseconds;

class Observador : public ObservadorLauncher {
 public:
    void Notificar(const EventoLauncher& evento) override { eventos.push_back(static_cast<int>(evento.numero)); }
    std::vector<int> eventos;
};

class Controlador : public testing::Test {
 protected:
    Controlador() {
        teste::Configurar(pasta_.Caminho(), "");
        InstalarJogo();
        controlador_.DefinirObservador(&observador_);
        controlador_.DefinirSaida([this] { saiu_ = true; });
    }

    void InstalarJogo() { std::filesystem::copy_file(teste::kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe"); }
    void Opcoes(const std::string& api, bool fechar) {
        OpcoesJogo opcoes;
        opcoes.api = api;
        opcoes.fecharAoJogar = fechar ? 1 : 0;
        GravarOpcoesJogo(opcoes);
    }
    // Ticks until nothing is under way and the probe has been taken in.
    void Girar() {
        for (int i = 0; i < 1000; ++i) {
            controlador_.Tick();
            if (!controlador_.Ocupado() && ObterRequisitos().concluido) break;
            Sleep(10);
        }
        controlador_.Tick();
    }
    void Comecar() {
        controlador_.Iniciar();
        Girar();
    }
    [[nodiscard]] int QuantasLinhas(std::string_view inicio) const {
        const auto linhas = teste::LinhasDoLog(pasta_);
        return static_cast<int>(std::ranges::count_if(linhas, [&](const auto& l) { return l.starts_with(inicio); }));
    }

    teste::PastaTemporaria pasta_{L"Jogo é"};
    Observador observador_;
    bool saiu_ = false;
    ControladorLauncher controlador_{
        {.limiteDoDiagnostico = milliseconds(5000), .esperaConfirmacao = milliseconds(600)}};
};

TEST_F(Controlador, OsTresFinsDoAperto) {
    const std::pair<const char*, const char*> casos[] = {
        {"", "Lançamento: anti-hack confirmou o token"},
        {"aperto=sair\n", "Lançamento: o jogo fechou antes de confirmar"},
        {"aperto=calar\nviver=1500\n", "Lançamento: sem confirmação do anti-hack no tempo do protocolo"},
    };
    Opcoes("vulkan", false);
    Comecar();
    int abertos = 0;
    for (const auto& [modo, linha] : casos) {
        pasta_.Escrever("jogo_falso.txt", modo);
        ASSERT_TRUE(controlador_.PodeJogar());
        controlador_.Jogar();
        EXPECT_TRUE(controlador_.AbrindoJogo());
        EXPECT_FALSE(controlador_.PodeJogar());
        controlador_.Jogar();  // a second press
        Girar();
        EXPECT_EQ(QuantasLinhas(linha), 1) << linha;
        EXPECT_EQ(QuantasLinhas("Jogo aberto: Zu.exe --api=vulkan (pid "), ++abertos);
    }
    EXPECT_TRUE(observador_.eventos.empty());
    EXPECT_FALSE(saiu_);
    EXPECT_EQ(QuantasLinhas("Jogar: "), 0);
    const std::string visto = pasta_.Ler("jogo_falso.log");
    EXPECT_NE(visto.find("api vulkan"), std::string::npos) << visto;
    EXPECT_NE(visto.find("token certo"), std::string::npos) << visto;
    EXPECT_EQ(visto.find("token errado"), std::string::npos) << visto;
    Sleep(1500);  // the last game ends before its folder goes
}

TEST_F(Controlador, FecharAoJogarEscondeESaiOuMostraDeNovo) {
    Opcoes("d3d12", true);
    pasta_.Escrever("jogo_falso.txt", "viver=10\n");
    Comecar();
    controlador_.Jogar();
    Girar();
    EXPECT_EQ(observador_.eventos, std::vector<int>{0});
    EXPECT_TRUE(saiu_);
    Sleep(300);

    std::filesystem::remove(pasta_ / "Zu.exe");
    pasta_.Escrever("Zu.exe", "não é um programa");
    controlador_.Jogar();
    Girar();
    EXPECT_EQ(observador_.eventos, (std::vector<int>{0, 0, 1}));
    EXPECT_EQ(QuantasLinhas("Jogar: não foi possível abrir o Zu.exe (erro "), 1);
    EXPECT_TRUE(controlador_.TomarMensagemFinal().starts_with("não foi possível abrir o Zu.exe (erro "));
    // The run itself has something to say too; everything is handed out once.
    EXPECT_EQ(controlador_.TomarMensagemFinal(),
              "Atualização automática não configurada (Launcher.emu: AutoUpdate/UpdateUrl no Forjal).");
    EXPECT_EQ(controlador_.TomarMensagemFinal(), "");

    for (const bool pasta : {false, true}) {
        std::filesystem::remove(pasta_ / "Zu.exe");
        if (pasta) std::filesystem::create_directory(pasta_ / "Zu.exe");
        EXPECT_FALSE(controlador_.PodeJogar());
        std::string erro;
        EXPECT_FALSE(AbrirJogo(erro));
        EXPECT_EQ(erro, "Zu.exe não encontrado na pasta do jogo. Feche e abra o launcher para baixar de novo.");
    }
}

TEST_F(Controlador, CorrigeAApiQueNaoRodaSeAOutraRoda) {
    struct Caso {
        const char* relatorio;
        const char* gravada;
        const char* fica;
    };
    const Caso casos[] = {{"so_vulkan", "d3d12", "vulkan"}, {"so_d3d12", "vulkan", "d3d12"},
                          {"bom", "vulkan", "vulkan"},      {"so_vulkan", "vulkan", "vulkan"},
                          {"falha", "d3d12", "d3d12"},      {"nenhum", "vulkan", "vulkan"}};
    for (const Caso& caso : casos) {
        pasta_.Escrever("jogo_falso.txt", Formatar("relatorio={}\n", caso.relatorio));
        Opcoes(caso.gravada, true);
        const int antes = QuantasLinhas("A API gravada (");
        ControladorLauncher controlador({.limiteDoDiagnostico = milliseconds(5000)});
        controlador.Iniciar();
        do {
            Sleep(10);
            controlador.Tick();
        } while (controlador.Ocupado() || !ObterRequisitos().concluido);
        controlador.Tick();
        EXPECT_EQ(LerOpcoesJogo().api, caso.fica) << caso.relatorio << " " << caso.gravada;
        EXPECT_EQ(QuantasLinhas("A API gravada (") - antes, std::string_view(caso.gravada) == caso.fica ? 0 : 1);
    }
    EXPECT_EQ(QuantasLinhas("A API gravada (d3d12) não roda neste PC: trocando para a outra"), 1);
}

TEST_F(Controlador, DestruidoNoMeioDeUmaPartida) {
    Opcoes("d3d12", true);
    pasta_.Escrever("jogo_falso.txt", "aperto=calar\nviver=800\nrelatorio=travar\n");
    {
        ControladorLauncher breve({.limiteDoDiagnostico = milliseconds(700), .esperaConfirmacao = milliseconds(400)});
        breve.Iniciar();
        while (breve.Atualizando())
            Sleep(5);
        breve.Tick();
        breve.Jogar();
        EXPECT_TRUE(breve.AbrindoJogo());
    }
    for (int i = 0; i < 300 && !ObterRequisitos().concluido; ++i)
        Sleep(10);
    EXPECT_TRUE(ObterRequisitos().concluido);
    Sleep(900);
    EXPECT_EQ(QuantasLinhas("Lançamento: sem confirmação do anti-hack no tempo do protocolo"), 1);
}

TEST(Status, UmaPalavraPorCodigo) {
    const char* const palavras[] = {"parado",      "conectando", "verificando", "baixando",   "aplicando", "pronto",
                                    "semservidor", "erro",       "reiniciando", "jogoaberto", "",          ""};
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(PalavraDoStatus(static_cast<StatusUpdate>(i)), palavras[i]) << i;
    EXPECT_EQ(PalavraDoStatus(static_cast<StatusUpdate>(-1)), "");
}

}  // namespace
}  // namespace zu::launcher
