#include <gtest/gtest.h>

#include "app/instancia_unica.h"
#include "app/linha_de_comando.h"
#include "app/selo.h"
#include "core/chaves.h"
#include "core/hash.h"
#include "core/texto.h"
#include "tests/suporte/publicacao.h"

namespace zu::launcher {
namespace {

// Why a file is refused; empty: it is opened. Nothing of a refused one comes out.
std::string Recusa(std::string_view arquivo) {
    CorpoSelado corpo{};
    std::string recusa;
    const bool aberto = AbrirSelado(arquivo, SegredoDoSelo(), corpo, recusa);
    EXPECT_TRUE(aberto == recusa.empty() && aberto == (corpo != CorpoSelado{}));
    return recusa;
}

std::string Com(std::size_t posicao, std::uint8_t valor, const SegredoSelo& segredo = SegredoDoSelo()) {
    CorpoSelado corpo = MontarCorpo({.nome = "Zu", .updateAutomatico = true, .update = "http://s"});
    corpo[posicao] = valor;
    return Selar(corpo, segredo);
}

TEST(Selo, RecusaNaOrdemENadaSai) {
    constexpr const char* kAdulterado = "arquivo adulterado (a verificação de integridade falhou)";
    const std::string bom = Com(0, 'L');
    // By another implementation of the documented format.
    const std::string certo = Selar(MontarCorpo({"Zu", true, "http://s"}), SegredoSelo{1});
    EXPECT_EQ(ParaHex(Sha256Of({reinterpret_cast<const std::uint8_t*>(certo.data()), certo.size()})),
              "608ba8bae6664b84442d69b6f70aff925501789550c206f4cbc9dd626d3fe4b4");
    SegredoSelo outro = SegredoDoSelo();
    outro[31] ^= 1;
    const std::pair<std::string, std::string_view> casos[] = {
        {bom, ""},
        {bom.substr(1), "tamanho inválido (584 bytes, esperado 585): "},
        {bom + "x", "tamanho inválido (586 bytes, esperado 585): "},
        {Com(0, 'L', outro), kAdulterado},
        {Com(0, 'l'), "não é um Launcher.emu válido"},
        {Com(6, 1), "não é um Launcher.emu válido"},
        {Com(4, 2), "versão 2 do arquivo, o launcher lê a 1: gere de novo com o Forjal desta versão"}};
    for (const auto& [arquivo, recusa] : casos)
        EXPECT_EQ(Recusa(arquivo).substr(0, recusa.size()), recusa);
    for (std::size_t i = 0; i < bom.size(); ++i) {
        std::string mudado = bom;
        mudado[i] = static_cast<char>(mudado[i] ^ (1 << (i % 8)));
        EXPECT_EQ(Recusa(mudado), kAdulterado) << i;
    }
}

TEST(Selo, CamposSemZeroSaoCortados) {
    CorpoSelado corpo = MontarCorpo({.nome = std::string(99, 'n'), .update = std::string(127, 'u')});
    EXPECT_EQ(std::exchange(corpo[39], 'N'), 0);
    corpo[168] = 'U';
    corpo[360] = 'S';
    const std::string selado = Selar(corpo, SegredoDoSelo());
    EXPECT_EQ(selado.find("uuuu"), std::string::npos) << "the texts are not to be read without the secret";
    std::string recusa;
    ASSERT_TRUE(AbrirSelado(selado, SegredoDoSelo(), corpo, recusa));
    EXPECT_EQ(corpo[39] + corpo[168] + corpo[360], 0);
    EXPECT_EQ(LerCampos(corpo).nome, std::string(31, 'n'));
    EXPECT_EQ(LerCampos(corpo).update, std::string(127, 'u'));
    EXPECT_EQ(LerCampos(corpo).seletor, "");
}

class Configuracao : public testing::Test {
 protected:
    ConfigLauncher Ler(std::vector<std::wstring> argumentos) {
        argumentos.insert(argumentos.begin(), L"--cliente=" + pasta_.Caminho().native());
        return MontarConfiguracao(argumentos);
    }
    teste::PastaTemporaria pasta_;
};

TEST_F(Configuracao, OpcoesExatasValoresENomeDaPasta) {
    // sha256 of "C:\Zu" in UTF-16LE, by openssl
    EXPECT_EQ(NomeDaInstancia(L"C:\\Zu"), L"Local\\ZuLauncher-45abb51b1c689651");
    const CamposSelados campos{"Zu de teste", true, "http://s/zu", "http://site", "#alvo", "http://registro"};
    pasta_.Escrever("Launcher.emu", Selar(MontarCorpo(campos), SegredoDoSelo()));
    EXPECT_TRUE(Ler({L"--reparar"}).reparar);
    const ConfigLauncher quase =
        Ler({L"--Jogar", L"--jogar=1", L"--jogarx", L"--manifesto=", L"--reparar ", L"--cliente="});
    EXPECT_FALSE(quase.jogar || quase.reparar || quase.semInterface || quase.reaberto != 0 || quase.conexoes != 0);
    EXPECT_EQ(std::tuple(quase.erro, quase.nome, quase.urlUpdate), std::tuple("", L"Zu de teste", "http://s/zu/"));
    EXPECT_EQ(quase.urlSite + quase.seletor + quase.urlRegistro, campos.site + campos.seletor + campos.registro);

    const std::pair<const wchar_t*, int> conexoes[] = {
        {L"0", 1}, {L"abc", 1}, {L"99", 16}, {L"7", 7}, {L"99999999999999", 16}};
    for (const auto& [texto, esperado] : conexoes)
        EXPECT_EQ(Ler({std::wstring(L"--conexoes=") + texto}).conexoes, esperado) << ParaUtf8(texto);
    EXPECT_EQ(Ler({L"--conexoes=3", L"--conexoes=5"}).conexoes, 5);
}

TEST_F(Configuracao, RecusasEAtualizacaoDesligada) {
    pasta_.Escrever("Launcher.emu", "curto");
    EXPECT_EQ(Ler({}).erro,
              "Launcher.emu inválido: tamanho inválido (5 bytes, esperado 585): gerado por outra versão do Forjal ou "
              "adulterado.");
    pasta_.Escrever("Launcher.emu", Selar(MontarCorpo({.update = "http://s"}), SegredoDoSelo()));
    EXPECT_TRUE(Ler({}).nome == L"Zu Launcher" && Ler({}).urlUpdate.empty());
    EXPECT_EQ(Ler({L"--manifesto=http://m/"}).urlUpdate, "http://m/");
}

}  // namespace
}  // namespace zu::launcher
