#include <gtest/gtest.h>

#include "app/instancia_unica.h"
#include "app/linha_de_comando.h"
#include "app/selo.h"
#include "core/chaves.h"
#include "core/hash.h"
#include "tests/suporte/publicacao.h"

namespace zu::launcher {
namespace {

struct Abertura {
    bool ok = false;
    CorpoSelado corpo{};
    std::string recusa;
};

Abertura Abrir(std::string_view arquivo) {
    Abertura a;
    a.ok = AbrirSelado(arquivo, SegredoDoSelo(), a.corpo, a.recusa);
    return a;
}

CorpoSelado CorpoCom(std::size_t posicao, std::uint8_t valor) {
    CorpoSelado corpo = MontarCorpo({.nome = "Zu", .updateAutomatico = true, .update = "http://s"});
    corpo[posicao] = valor;
    return corpo;
}

TEST(Selo, RecusaNaOrdemENadaSai) {
    const std::string bom = Selar(CorpoCom(0, 'L'), SegredoDoSelo());
    ASSERT_EQ(bom.size(), 585U);
    ASSERT_TRUE(Abrir(bom).ok);

    EXPECT_EQ(Abrir(bom.substr(1)).recusa,
              "tamanho inválido (584 bytes, esperado 585): gerado por outra versão do Forjal ou adulterado");
    EXPECT_EQ(Abrir(bom + "x").recusa,
              "tamanho inválido (586 bytes, esperado 585): gerado por outra versão do Forjal ou adulterado");
    for (std::size_t i = 0; i < bom.size(); ++i) {
        std::string mudado = bom;
        mudado[i] = static_cast<char>(mudado[i] ^ (1 << (i % 8)));
        const Abertura a = Abrir(mudado);
        EXPECT_EQ(a.recusa, "arquivo adulterado (a verificação de integridade falhou)") << i;
        EXPECT_EQ(a.corpo, CorpoSelado{}) << i;
    }
    EXPECT_EQ(Abrir(Selar(CorpoCom(0, 'l'), SegredoDoSelo())).recusa, "não é um Launcher.emu válido");
    EXPECT_EQ(Abrir(Selar(CorpoCom(6, 1), SegredoDoSelo())).recusa, "não é um Launcher.emu válido");
    EXPECT_EQ(Abrir(Selar(CorpoCom(4, 2), SegredoDoSelo())).recusa,
              "versão 2 do arquivo, o launcher lê a 1: gere de novo com o Forjal desta versão");
    SegredoSelo outro = SegredoDoSelo();
    outro[31] ^= 1;
    EXPECT_EQ(Abrir(Selar(CorpoCom(0, 'L'), outro)).recusa, "arquivo adulterado (a verificação de integridade falhou)");
}

TEST(Selo, CamposSemZeroSaoCortados) {
    CorpoSelado corpo = MontarCorpo({.nome = std::string(31, 'n'), .update = std::string(127, 'u')});
    corpo[39] = 'N';
    corpo[168] = 'U';
    corpo[360] = 'S';
    const Abertura a = Abrir(Selar(corpo, SegredoDoSelo()));
    ASSERT_TRUE(a.ok);
    EXPECT_EQ(LerCampos(a.corpo).nome, std::string(31, 'n'));
    EXPECT_EQ(LerCampos(a.corpo).update, std::string(127, 'u'));
    EXPECT_EQ(LerCampos(a.corpo).seletor, "");
    // The texts are not to be read without the secret.
    EXPECT_EQ(Selar(corpo, SegredoDoSelo()).find("uuuu"), std::string::npos);
}

class Configuracao : public testing::Test {
 protected:
    ConfigLauncher Ler(std::vector<std::wstring> argumentos) {
        argumentos.insert(argumentos.begin(), L"--cliente=" + pasta_.Caminho().native());
        return MontarConfiguracao(argumentos);
    }
    teste::PastaTemporaria pasta_;
};

TEST_F(Configuracao, OpcoesExatasEValores) {
    pasta_.Escrever("Launcher.emu", teste::Selado("http://s/zu"));
    const ConfigLauncher nada = Ler({});
    EXPECT_EQ(nada.erro, "");
    EXPECT_EQ(nada.nome, L"Zu de teste");
    EXPECT_EQ(nada.urlUpdate, "http://s/zu/");
    EXPECT_EQ(nada.pastaJogo, pasta_.Caminho());
    EXPECT_EQ(nada.conexoes, 0);
    EXPECT_FALSE(nada.jogar || nada.semInterface || nada.reparar || nada.reaberto != 0);

    const ConfigLauncher tudo =
        Ler({L"--jogar", L"--sem-cef", L"--sem-interface", L"--reparar", L"--reaberto", L"--reaberto",
             L"--captura=C:\\x", L"--requisitos-simular=ok", L"--manifesto=http://outro/é", L"--desconhecida"});
    EXPECT_TRUE(tudo.jogar && tudo.semInterface && tudo.reparar);
    EXPECT_EQ(tudo.reaberto, 2U);
    EXPECT_EQ(tudo.captura, L"C:\\x");
    EXPECT_EQ(tudo.requisitosSimular, L"ok");
    EXPECT_EQ(tudo.urlUpdate, "http://outro/é/");
    EXPECT_EQ(tudo.argumentos.size(), 11U);
    EXPECT_EQ(tudo.argumentos.back(), L"--desconhecida");

    const ConfigLauncher quase = Ler({L"--Jogar", L"--jogar=1", L"--jogarx", L"--manifesto=", L"--reparar "});
    EXPECT_FALSE(quase.jogar || quase.reparar);
    EXPECT_EQ(quase.urlUpdate, "http://s/zu/");

    const std::pair<const wchar_t*, int> conexoes[] = {{L"0", 1},   {L"-5", 1}, {L"abc", 1},
                                                       {L"99", 16}, {L"7", 7},  {L"99999999999999", 16}};
    for (const auto& [texto, esperado] : conexoes) {
        EXPECT_EQ(Ler({std::wstring(L"--conexoes=") + texto}).conexoes, esperado) << ParaUtf8(texto);
    }
    EXPECT_EQ(Ler({L"--conexoes=3", L"--conexoes=5"}).conexoes, 5);
}

TEST_F(Configuracao, RecusasEAtualizacaoDesligada) {
    EXPECT_EQ(Ler({}).erro, "Launcher.emu não encontrado na pasta do jogo.");
    pasta_.Escrever("Launcher.emu", "curto");
    EXPECT_EQ(Ler({}).erro,
              "Launcher.emu inválido: tamanho inválido (5 bytes, esperado 585): gerado por outra versão do Forjal ou "
              "adulterado.");
    EXPECT_EQ(Ler({}).nome, L"Zu Launcher");
    pasta_.Escrever("Launcher.emu", teste::Selado("http://s", false));
    EXPECT_EQ(Ler({}).urlUpdate, "");
    EXPECT_EQ(Ler({L"--manifesto=http://m"}).urlUpdate, "http://m/");
}

TEST_F(Configuracao, UmNomePorPasta) {
    EXPECT_EQ(NomeDaInstancia(L"C:\\Zu"), NomeDaInstancia(L"C:\\Zu"));
    EXPECT_NE(NomeDaInstancia(L"C:\\Zu"), NomeDaInstancia(L"C:\\zu"));
    // sha256 of "C:\Zu" in UTF-16LE, by openssl
    EXPECT_EQ(NomeDaInstancia(L"C:\\Zu"), L"Local\\ZuLauncher-45abb51b1c689651");
}

}  // namespace
}  // namespace zu::launcher
