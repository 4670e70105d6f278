// The real programs, as separate processes, against the scripted server.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "app/instancia_unica.h"
#include "core/formato.h"
#include "core/texto.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "update/jogo_aberto.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using teste::Esperar;
using teste::Pedido;
using teste::Programa;
using teste::Resposta;

class Sistema : public testing::Test {
 protected:
    Sistema() {
        for (const char* programa : {"ZuLauncher.exe", "UpdaterHelper.exe"}) {
            std::filesystem::copy_file(teste::kPastaBin / programa, pasta_ / programa);
        }
        pasta_.Escrever("Launcher.emu", teste::Selado(servidor_.Url()));
        for (unsigned i = 0; i < 30; ++i) {
            publicacao_.arquivos[Formatar("Data/Pasta {:02}/arquivo ç {:02}.bin", i % 4, i)] =
                teste::Bytes(40'000 + 3000 * i, i);
        }
        publicacao_.arquivos["Data/grande.pak"] = teste::Bytes(3'000'000, 99);
        publicacao_.partes["Data/grande.pak"] = 4;
        publicacao_.Servir(servidor_);
    }

    static std::vector<std::wstring> Headless(std::vector<std::wstring> mais = {}) {
        mais.insert(mais.begin(), L"--sem-interface");
        return mais;
    }
    int Rodar(std::vector<std::wstring> mais = {}) {
        return Programa(pasta_ / "ZuLauncher.exe", Headless(std::move(mais))).Esperar();
    }
    [[nodiscard]] bool Logou(std::string_view linha) const {
        const auto linhas = teste::LinhasDoLog(pasta_);
        return std::ranges::any_of(linhas, [&](const std::string& l) { return l.starts_with(linha); });
    }
    // Waits until the launcher that the helper opens again has ended its run.
    bool EsperarReaberto() {
        return Esperar(60s, [&] {
            return Logou("ZuLauncher 1.3.1 | cliente " + ParaUtf8(pasta_.Caminho().native()) + " | update " +
                         servidor_.Url() + " | reaberto pelo UpdaterHelper") &&
                   Logou("ZuLauncher encerrado");
        });
    }
    bool EsperarFimDoJogo() {
        return Esperar(5s, [&] { return !JogoAberto(pasta_.Caminho()); });
    }
    // Every published file is as published, byte for byte.
    void EsperarPublicados() {
        for (const auto& [caminho, conteudo] : publicacao_.arquivos) {
            EXPECT_TRUE(pasta_.Ler(caminho) == conteudo) << caminho;
        }
    }

    teste::PastaTemporaria pasta_{L"Jogo Zú"};
    teste::Servidor servidor_;
    teste::Publicacao publicacao_;
};

TEST_F(Sistema, CodigosDeSaidaELogESemDllPlantadaNaPasta) {
    for (const char* dll : {"winhttp.dll", "bcrypt.dll", "dnsapi.dll", "secur32.dll"})
        pasta_.Escrever(dll, "não é uma DLL");
    EXPECT_EQ(Rodar({L"--conexoes=4"}), 0);
    EsperarPublicados();
    EXPECT_TRUE(Logou("Sem interface: terminou em \"pronto\": Atualização concluída: 31 arquivo(s) novo(s)."));
    EXPECT_EQ(Rodar({L"--reparar"}), 0);
    EXPECT_NE(pasta_.Ler("ZuLauncher.anterior.log").find("31 arquivo(s) novo(s)"), std::string::npos);

    EXPECT_EQ(Rodar({L"--manifesto=http://127.0.0.1:1/"}), 1);
    EXPECT_TRUE(
        Logou("Sem interface: terminou em \"semservidor\": Sem conexão com o servidor de atualização (download: "
              "não conectou ao servidor)."));

    pasta_.Escrever("Launcher.emu", "adulterado");
    EXPECT_EQ(Rodar(), 2);
    EXPECT_TRUE(Logou("Configuração recusada: Launcher.emu inválido: tamanho inválido (10 bytes, esperado 585)"));
    std::filesystem::remove(pasta_ / "Launcher.emu");
    EXPECT_EQ(Rodar(), 2);
    EXPECT_TRUE(Logou("Configuração recusada: Launcher.emu não encontrado na pasta do jogo."));
    EXPECT_EQ(teste::LinhasDoLog(pasta_).size(), 1U);
}

// A file that the update replaces is at every instant the old one or the new one, and whatever was cut short is
// finished by the next run.
TEST_F(Sistema, MortoEmQualquerPontoEContinuado) {
    EXPECT_EQ(Rodar({L"--conexoes=4"}), 0);
    // Two kills in a row leave a mixture of three versions; a torn file is none of them.
    std::map<std::string, std::set<std::string>> versoes;
    for (const auto& [caminho, conteudo] : publicacao_.arquivos)
        versoes[caminho].insert(conteudo);
    std::mt19937 sorteio(20);
    for (unsigned volta = 0; volta < 12; ++volta) {
        publicacao_.seq = volta + 2;
        for (auto& [caminho, conteudo] : publicacao_.arquivos) {
            conteudo = teste::Bytes(conteudo.size() + volta, volta * 1000 + 7);
            versoes[caminho].insert(conteudo);
        }
        publicacao_.Servir(servidor_);
        const DWORD quando = 30 + sorteio() % 900;
        {
            Programa launcher(pasta_ / "ZuLauncher.exe", Headless({L"--conexoes=4"}));
            launcher.Esperar(quando);
            launcher.Matar();
        }
        for (const auto& [caminho, inteiras] : versoes) {
            ASSERT_TRUE(inteiras.contains(pasta_.Ler(caminho))) << caminho << " after " << quando << " ms";
        }
        // Every third kill is followed by another one instead of the run that finishes.
        if (volta % 3 == 2) continue;
        ASSERT_EQ(Rodar({L"--conexoes=4"}), 0) << teste::LerLog(pasta_);
        EsperarPublicados();
    }
    ASSERT_EQ(Rodar(), 0);
    EsperarPublicados();
    for (const auto& [nome, conteudo] : pasta_.Tudo()) {
        EXPECT_FALSE(nome.ends_with(".upd") || nome.find(".upd.p") != std::string::npos || nome.ends_with(".tmp"))
            << nome;
    }
}

TEST_F(Sistema, LauncherSeAtualizaEArquivoEmUsoETrocado) {
    publicacao_.arquivos["Data/em uso.dat"] = "velho";
    publicacao_.Servir(servidor_);
    ASSERT_EQ(Rodar(), 0);

    // A new launcher, which ends in the same way; and a file that another program lets go after a while.
    std::string launcherNovo = pasta_.Ler("ZuLauncher.exe");
    launcherNovo += "sobra que o Windows ignora";
    publicacao_.seq = 2;
    publicacao_.arquivos["ZuLauncher.exe"] = launcherNovo;
    publicacao_.arquivos["Data/em uso.dat"] = "novo";
    publicacao_.Servir(servidor_);
    HandleArquivo preso = pasta_.Prender("Data/em uso.dat");
    // Under another name: nothing holds the launcher's own file, which is swapped all the same.
    std::filesystem::copy_file(pasta_ / "ZuLauncher.exe", pasta_ / "outro nome.exe");
    const std::wstring comBarra = L"--cliente=" + pasta_.Caminho().native() + L"\\";
    EXPECT_EQ(Programa(pasta_ / "outro nome.exe", Headless({comBarra, L"--conexoes=2"})).Esperar(), 3);
    EXPECT_NE((pasta_.Ler("ZuLauncher.log") + pasta_.Ler("ZuLauncher.anterior.log"))
                  .find("UpdaterHelper iniciado para 2 troca(s) pendente(s)"),
              std::string::npos);
    Esperar(1500ms, [&] { return pasta_.Tem("UpdaterHelper.log"); });
    preso.Fechar();
    ASSERT_TRUE(EsperarReaberto()) << teste::LerLog(pasta_) << pasta_.Ler("UpdaterHelper.log");
    EXPECT_TRUE(Logou("Sem interface: terminou em \"pronto\": Cliente em dia."));
    EsperarPublicados();
    EXPECT_FALSE(pasta_.Tem("Config/Launcher.pendente"));
    EXPECT_FALSE(pasta_.Tem("ZuLauncher.exe.novo"));
    const std::string helper = pasta_.Ler("UpdaterHelper.log");
    EXPECT_NE(helper.find("trocado\r\n"), std::string::npos) << helper;
    EXPECT_NE(helper.find("launcher reaberto\r\n"), std::string::npos) << helper;
}

TEST_F(Sistema, SemHelperOuDepoisDeDuasTrocasAcabaEmErro) {
    ASSERT_EQ(Rodar(), 0);
    publicacao_.seq = 2;
    publicacao_.arquivos["Data/grande.pak"] = "pequeno agora";
    publicacao_.partes.clear();
    publicacao_.Servir(servidor_);
    const HandleArquivo preso = pasta_.Prender("Data/grande.pak");
    EXPECT_EQ(Rodar({L"--reaberto", L"--reaberto"}), 1);
    EXPECT_TRUE(
        Logou("Sem interface: terminou em \"erro\": Não foi possível trocar alguns arquivos em uso. Feche outros "
              "programas abertos na pasta do jogo e clique em Tentar de novo."));

    std::filesystem::remove(pasta_ / "UpdaterHelper.exe");
    EXPECT_EQ(Rodar(), 1);
    EXPECT_TRUE(Logou("Sem interface: terminou em \"erro\": UpdaterHelper.exe não encontrado: reinstale o launcher."));
    pasta_.Escrever("UpdaterHelper.exe", "não é um programa");
    EXPECT_EQ(Rodar(), 1);
    EXPECT_TRUE(Logou("Sem interface: terminou em \"erro\": não foi possível abrir o UpdaterHelper.exe (erro "));
}

TEST_F(Sistema, UmLauncherPorPastaEReabertoEspera) {
    // The list takes a while, so the first launcher is surely running still when the others have waited for it.
    const std::string lista = teste::Assinar(update::EscreverLista(publicacao_.Lista()));
    servidor_.Definir("UpdateList.txt", [&](const Pedido&) {
        return Resposta{.corpo = lista, .atraso = milliseconds(servidor_.QuantosPedidos() > 1 ? 0 : 5000)};
    });
    Programa primeiro(pasta_ / "ZuLauncher.exe", Headless());
    Esperar(20s, [&] { return servidor_.QuantosPedidos() > 0; });
    const std::string log = teste::LerLog(pasta_);

    Programa segundo(pasta_ / "ZuLauncher.exe", Headless());
    EXPECT_EQ(Rodar({L"--cliente=" + pasta_.Caminho().native() + L"\\."}), 0);  // hands over, without a word
    EXPECT_EQ(segundo.Esperar(), 0);
    EXPECT_EQ(teste::LerLog(pasta_), log);
    EXPECT_EQ(servidor_.QuantosPedidos(), 1U);

    Programa reaberto(pasta_ / "ZuLauncher.exe", Headless({L"--reaberto"}));
    EXPECT_EQ(primeiro.Esperar(), 0);
    EXPECT_EQ(reaberto.Esperar(), 0);
    EXPECT_TRUE(EsperarReaberto());
    EXPECT_TRUE(Logou("Sem interface: terminou em \"pronto\": Cliente em dia."));
}

// The run ends right after the probe has begun; a game that hangs in it must not be left behind as a running game.
TEST_F(Sistema, DiagnosticoAcabaComOLauncher) {
    std::filesystem::copy_file(teste::kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe");
    pasta_.Escrever("jogo_falso.txt", "relatorio=travar\n");
    for (int volta = 0; volta < 5; ++volta) {
        EXPECT_EQ(Rodar(), 0) << teste::LerLog(pasta_);
        EXPECT_TRUE(EsperarFimDoJogo()) << volta;
    }
}

// The game comes with the update, is asked about the computer and started.
TEST_F(Sistema, JogarComEFecharAoJogarESemJogo) {
    EXPECT_EQ(Rodar({L"--jogar"}), 0);
    std::string jogo;
    ASSERT_TRUE(LerArquivoInteiro(teste::kPastaBin / "jogo_falso.exe", jogo));
    publicacao_.seq = 2;
    publicacao_.arquivos["Zu.exe"] = jogo;
    publicacao_.arquivos["jogo_falso.txt"] = "relatorio=so_vulkan\nviver=200\n";
    publicacao_.Servir(servidor_);
    EXPECT_EQ(Rodar({L"--jogar"}), 3);
    EXPECT_TRUE(Logou("Jogo aberto: Zu.exe --api=vulkan (pid "));
    EXPECT_TRUE(Logou("Lançamento: anti-hack confirmou o token"));
    EXPECT_TRUE(EsperarFimDoJogo());

    pasta_.Escrever("Config/Zu.ini", "[Launcher]\r\nFecharAoJogar=0\r\n[Video]\r\nApi=vulkan\r\n");
    EXPECT_EQ(Rodar({L"--jogar", L"--requisitos-simular=bom"}), 0);
    EXPECT_TRUE(Logou("Requisitos: DirectX 12 sim | Vulkan sim"));
    EXPECT_TRUE(Logou("Jogo aberto: Zu.exe --api=vulkan (pid "));
    EXPECT_TRUE(EsperarFimDoJogo());
}

}  // namespace
}  // namespace zu::launcher
