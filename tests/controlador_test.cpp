#include "app/controlador.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "core/formato.h"
#include "game/jogo.h"
#include "game/opcoes.h"
#include "game/requisitos.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "update/jogo_aberto.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
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
    static void Girar(ControladorLauncher& controlador) {
        teste::Esperar(10s, [&] {
            controlador.Tick();
            return !controlador.Ocupado() && ObterRequisitos().concluido;
        });
        controlador.Tick();
    }
    void Girar() { Girar(controlador_); }
    // A game that still runs would keep the test's folder.
    void EsperarFimDoJogo() const {
        EXPECT_TRUE(teste::Esperar(5s, [this] { return !JogoAberto(pasta_.Caminho()); }));
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
    EsperarFimDoJogo();
}

TEST_F(Controlador, FecharAoJogarEscondeESaiOuMostraDeNovo) {
    Opcoes("d3d12", true);
    pasta_.Escrever("jogo_falso.txt", "viver=10\n");
    Comecar();
    controlador_.Jogar();
    Girar();
    EXPECT_EQ(observador_.eventos, std::vector<int>{0});
    EXPECT_TRUE(saiu_);
    EsperarFimDoJogo();

    std::filesystem::remove(pasta_ / "Zu.exe");
    pasta_.Escrever("Zu.exe", "não é um programa");
    controlador_.Jogar();
    Girar();
    EXPECT_EQ(observador_.eventos, (std::vector<int>{0, 0, 1}));
    EXPECT_EQ(QuantasLinhas("Jogar: não foi possível abrir o Zu.exe (erro "), 1);
    EXPECT_TRUE(controlador_.TomarMensagemFinal().starts_with("não foi possível abrir o Zu.exe (erro "));
    // Handed out once; a launcher that was sealed without updates has no more to say.
    EXPECT_EQ(controlador_.TomarMensagemFinal(), "");
    EXPECT_EQ(QuantasLinhas("[update] Atualização automática não configurada (Launcher.emu: AutoUpdate"), 1);

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
    const std::array<const char*, 3> casos[] = {{"so_vulkan", "d3d12", "vulkan"}, {"so_d3d12", "vulkan", "d3d12"},
                                                {"bom", "vulkan", "vulkan"},      {"so_vulkan", "vulkan", "vulkan"},
                                                {"falha", "d3d12", "d3d12"},      {"nenhum", "vulkan", "vulkan"}};
    for (const auto& [relatorio, gravada, fica] : casos) {
        pasta_.Escrever("jogo_falso.txt", Formatar("relatorio={}\n", relatorio));
        Opcoes(gravada, true);
        ControladorLauncher controlador({.limiteDoDiagnostico = milliseconds(5000)});
        controlador.Iniciar();
        Girar(controlador);
        EXPECT_EQ(LerOpcoesJogo().api, fica) << relatorio << " " << gravada;
    }
    EXPECT_EQ(QuantasLinhas("A API gravada ("), 2);
    EXPECT_EQ(QuantasLinhas("A API gravada (d3d12) não roda neste PC: trocando para a outra"), 1);
}

}  // namespace
}  // namespace zu::launcher
