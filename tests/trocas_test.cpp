#include <gtest/gtest.h>

#include <thread>

#include "core/handle.h"
#include "tests/suporte/publicacao.h"
#include "tools/updater_helper/aplicar_trocas.h"
#include "tools/updater_helper/argumentos.h"
#include "update/registros.h"

// after the others, for windows.h
#include <shellapi.h>

namespace zu::launcher {
namespace {

using std::chrono::milliseconds;

class Trocas : public testing::Test {
 protected:
    [[nodiscard]] std::string Texto(const std::string& relativo) const {
        return ParaUtf8((pasta_ / relativo).native());
    }
    LinhaPendente Mover(const std::string& relativo) {
        pasta_.Escrever(relativo + ".novo", "novo " + relativo);
        return {Texto(relativo + ".novo"), Texto(relativo)};
    }
    std::size_t Aplicar(const std::vector<LinhaPendente>& linhas, milliseconds limite = milliseconds(300)) {
        pasta_.Escrever("Config/Launcher.pendente", TextoDosPendentes(linhas));
        return Repetir(limite);
    }
    std::size_t Repetir(milliseconds limite = milliseconds(300)) {
        return AplicarTrocas(pasta_ / "Config/Launcher.pendente",
                             {.limitePorLinha = limite, .intervalo = milliseconds(20)},
                             [this](std::string_view mensagem) { log_ += std::string(mensagem) + "\n"; });
    }
    HandleArquivo Prender(const std::string& relativo) {
        return HandleArquivo(CreateFileW((pasta_ / relativo).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                         OPEN_EXISTING, 0, nullptr));
    }

    teste::PastaTemporaria pasta_{L"Jogo é"};
    std::string log_;
};

TEST_F(Trocas, MoveApagaEReconheceOFeito) {
    pasta_.Escrever("a", "velho");
    pasta_.Escrever("Data/b", "velho");
    pasta_.Escrever("somente leitura", "velho");
    pasta_.Escrever("apagar leitura", "velho");
    for (const char* nome : {"somente leitura", "apagar leitura"}) {
        SetFileAttributesW((pasta_ / nome).c_str(), FILE_ATTRIBUTE_READONLY);
    }
    const std::vector<LinhaPendente> linhas{Mover("a"),
                                            {"", Texto("Data/b")},
                                            Mover("somente leitura"),
                                            {"", Texto("apagar leitura")},
                                            Mover("pasta nova/c")};
    EXPECT_EQ(Aplicar(linhas), 0U) << log_;
    const std::map<std::string, std::string> esperado{
        {"a", "novo a"}, {"somente leitura", "novo somente leitura"}, {"pasta nova/c", "novo pasta nova/c"}};
    EXPECT_EQ(pasta_.Tudo(), esperado);

    // Killed before the list could be removed: everything counts as done.
    EXPECT_EQ(Aplicar(linhas), 0U) << log_;
    EXPECT_EQ(Repetir(), 0U);
    EXPECT_EQ(pasta_.Tudo(), esperado);
}

TEST_F(Trocas, EsperaQuemSoltaEGuardaQuemNaoSolta) {
    pasta_.Escrever("solta", "velho");
    pasta_.Escrever("presa", "velho");
    HandleArquivo solta = Prender("solta");
    const HandleArquivo presa = Prender("presa");
    const std::vector<LinhaPendente> linhas{Mover("presa"), Mover("solta"), {"", Texto("presa")}};
    std::jthread soltar([&] {
        std::this_thread::sleep_for(milliseconds(500));
        solta.Fechar();
    });
    EXPECT_EQ(Aplicar(linhas), 2U);
    EXPECT_EQ(pasta_.Ler("solta"), "novo solta");
    EXPECT_EQ(pasta_.Ler("presa"), "velho");
    EXPECT_EQ(PendentesDoTexto(pasta_.Ler("Config/Launcher.pendente")), (std::vector{linhas[0], linhas[2]}));
    EXPECT_NE(log_.find(Texto("presa") + ": ainda em uso (erro "), std::string::npos) << log_;
}

TEST_F(Trocas, NadaForaDaPastaDoJogo) {
    const teste::PastaTemporaria fora;
    fora.Escrever("alvo", "intacto");
    pasta_.Escrever("meu.novo", "novo");
    const std::string alvo = ParaUtf8((fora / "alvo").native());
    const std::string volta = Texto("Data\\..\\..\\x");
    const std::vector<LinhaPendente> linhas{
        {Texto("meu.novo"), alvo}, {"", alvo},      {alvo, Texto("meu")}, {"", volta}, {"", "alvo"},
        {"", Texto("")},           {"", Texto(".")}};
    EXPECT_EQ(Aplicar(linhas), linhas.size());
    EXPECT_EQ(fora.Ler("alvo"), "intacto");
    EXPECT_EQ(pasta_.Ler("meu.novo"), "novo");
    EXPECT_FALSE(pasta_.Tem("meu"));
    // Neither end of this one is there any more: it cannot be made, and says so.
    EXPECT_EQ(Aplicar({{Texto("sumiu.novo"), Texto("sumiu")}}), 1U);
}

TEST(ArgumentosDoHelper, ComoOLauncherOsEscreveEComoOsPassaAdiante) {
    const ArgumentosDoHelper lidos = LerArgumentosDoHelper(
        L"\"C:\\Zu Jogo\\UpdaterHelper.exe\" --pid=1234 \"--lista=C:\\Zu Jogo\\Config\\Launcher.pendente\" "
        L"\"--reabrir=C:\\Zu Jogo\\ZuLauncher.exe\" -- \"--cliente=C:\\Zu Jogo\\\" \"--sem-interface\" \"\" "
        L"--reaberto");
    EXPECT_EQ(lidos.pid, 1234U);
    EXPECT_EQ(lidos.lista, L"C:\\Zu Jogo\\Config\\Launcher.pendente");
    EXPECT_EQ(lidos.reabrir, L"C:\\Zu Jogo\\ZuLauncher.exe");
    const std::vector<std::wstring> argumentos{L"--cliente=C:\\Zu Jogo\\", L"--sem-interface", L"", L"--reaberto"};
    EXPECT_EQ(lidos.argumentos, argumentos);

    const std::wstring linha = MontarLinhaDeComando(lidos.reabrir, {L"a\\", L"b\"c\\\"", L"", L"é ç\\\\"});
    int quantos = 0;
    wchar_t** const partes = CommandLineToArgvW(linha.c_str(), &quantos);
    const std::vector<std::wstring> volta(partes, partes + quantos);
    LocalFree(static_cast<HLOCAL>(partes));
    EXPECT_EQ(volta, (std::vector<std::wstring>{lidos.reabrir.native(), L"a\\", L"b\"c\\\"", L"", L"é ç\\\\"}));
}

}  // namespace
}  // namespace zu::launcher
