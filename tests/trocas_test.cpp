#include <gmock/gmock.h>

#include <future>
#include <new>

#include "core/formato.h"
#include "core/instancia.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "tools/updater_helper/execucao.h"
#include "update/registros.h"

// after the others, for windows.h
#include <shellapi.h>

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;
using namespace testing;

class Trocas : public Test {
 protected:
    [[nodiscard]] std::string Texto(const std::string& nome) const { return ParaUtf8((pasta_ / nome).native()); }
    LinhaPendente Mover(const std::string& nome) {
        pasta_.Escrever(nome + ".novo", "novo " + nome);
        return {Texto(nome + ".novo"), Texto(nome)};
    }
    void Listar(const std::vector<LinhaPendente>& linhas) { pasta_.Escrever(kLista, TextoDosPendentes(linhas)); }
    bool Aplicar(const std::vector<LinhaPendente>& linhas, std::chrono::milliseconds limite = 300ms) {
        Listar(linhas);
        log_.clear();
        return AplicarTrocas(pasta_ / kLista, {.limite = limite, .intervalo = 20ms}, Log());
    }
    // The whole run: its exit code, and whether it opened the program, which ends at once.
    std::string Rodar(const std::filesystem::path& lista, const std::filesystem::path& reabrir = kParado) {
        log_.clear();
        const FimDoHelper fim = RodarHelper({.lista = lista, .reabrir = reabrir, .argumentos = {L"1"}},
                                            {.esperaPelaPasta = 100ms, .trocas = {.limite = 300ms}}, Log());
        return Formatar("{}{}", static_cast<int>(fim), log_.ends_with("launcher reaberto\n") ? ", reaberto" : "");
    }
    LogDeTrocas Log() {
        return [this](std::string_view mensagem) {
            if (aoLogar_) aoLogar_(mensagem);
            log_ += std::string(mensagem) + "\n";
        };
    }

    static constexpr const char* kLista = "Config/Launcher.pendente";
    inline static const std::filesystem::path kParado = kPastaBin / "processo_parado.exe";
    PastaTemporaria pasta_{L"Jogo é"};
    std::string log_;
    std::function<void(std::string_view)> aoLogar_;
};

// The second time stands for a run that was killed before it removed the list: all is done, but nothing is done now.
TEST_F(Trocas, FazUmaVezEReconheceOFeito) {
    pasta_.Escrever("a", "velho");
    pasta_.Escrever("Data/b", "velho");
    const std::vector<LinhaPendente> linhas{Mover("a"), {"", Texto("Data/b")}, Mover("pasta nova/c")};
    for (const auto& [moveu, apagou] : {std::pair{"trocado", "removido"}, {"já trocado ou sumiu", "já removido"}}) {
        EXPECT_TRUE(Aplicar(linhas));
        EXPECT_EQ(log_, Formatar("{}: {}\n{}: {}\n{}: {}\n", Texto("a"), moveu, Texto("Data/b"), apagou,
                                 Texto("pasta nova/c"), moveu));
        EXPECT_EQ(pasta_.Tudo(),
                  (std::map<std::string, std::string>{{"a", "novo a"}, {"pasta nova/c", "novo pasta nova/c"}}));
        std::filesystem::remove(pasta_ / "Data");
    }
}

// Held files cost the limit once and not each, and hold back nobody behind them.
TEST_F(Trocas, PresasDividemOLimiteENaoAtrasamAsOutras) {
    pasta_.Escrever("presa", "velho");
    pasta_.Escrever("solta", "velho");
    HandleArquivo solta = pasta_.Prender("solta");
    const HandleArquivo presa = pasta_.Prender("presa");
    const std::vector<LinhaPendente> presas(300, {"", Texto("presa")});
    std::vector<LinhaPendente> linhas = presas;
    linhas.insert(linhas.begin() + 1, {Mover("solta"), Mover("livre")});
    aoLogar_ = [&](std::string_view mensagem) {
        if (mensagem.find("tentando de novo") != std::string_view::npos) solta.Fechar();
    };
    const auto inicio = std::chrono::steady_clock::now();
    EXPECT_FALSE(Aplicar(linhas, 1500ms));
    EXPECT_LT(std::chrono::steady_clock::now() - inicio, 10s);
    EXPECT_THAT(log_, StartsWith(Texto("livre") + ": trocado\n"));
    EXPECT_THAT(log_, HasSubstr(Texto("solta") + ": trocado\n" + Texto("presa") + ": ainda em uso (erro "));
    EXPECT_EQ(PendentesDoTexto(pasta_.Ler(kLista)), presas);

    EXPECT_FALSE(Aplicar({presas[0], Mover("sem tempo")}, 0ms));
    EXPECT_THAT(log_, HasSubstr(Texto("sem tempo") + ": trocado\n"));
}

TEST_F(Trocas, NadaForaDaPastaDoJogo) {
    const PastaTemporaria fora;
    fora.Escrever("alvo", "intacto");
    const std::string alvo = ParaUtf8((fora / "alvo").native());
    std::vector<LinhaPendente> linhas{{Mover("meu").origem, alvo}, {alvo, Texto("seu")}};
    for (const std::string& destino : {alvo, Texto("D/../../x"), std::string("alvo"), Texto(""), Texto(".")})
        linhas.push_back({"", destino});
    EXPECT_FALSE(Aplicar(linhas));
    EXPECT_EQ(PendentesDoTexto(pasta_.Ler(kLista)), linhas);
    EXPECT_EQ(fora.Ler("alvo"), "intacto");
    EXPECT_TRUE(pasta_.Tem("meu.novo") && !pasta_.Tem("seu"));
}

// A list written meanwhile was deleted or overwritten; one that could not be read counted as done.
TEST_F(Trocas, ListaDeOutroFicaEListaIlegivelNaoEstaFeita) {
    aoLogar_ = [this](std::string_view mensagem) {
        if (mensagem.ends_with(": trocado")) pasta_.Escrever(kLista, "D\tde outro\n");
    };
    for (const LinhaPendente& resto : {Mover("a"), LinhaPendente{"", "fora"}}) {
        EXPECT_FALSE(Aplicar({Mover("b"), resto}));
        EXPECT_EQ(pasta_.Ler(kLista), "D\tde outro\n");
    }
    const HandleArquivo ilegivel = pasta_.Prender(kLista, 0);
    EXPECT_EQ(Rodar(pasta_ / kLista), "1, reaberto");
}

// The folder's name is the launcher's own, however the list's path is written, and it is free for what is opened.
TEST_F(Trocas, APastaEDeUmSoDeCadaVez) {
    const auto noutra = [](const auto& trabalho) { return std::async(std::launch::async, trabalho).get(); };
    Listar({Mover("a")});
    const auto antes = pasta_.Tudo();
    {
        PosseDaPasta posse(pasta_.Caminho());
        ASSERT_TRUE(posse.Tomar(0ms));
        EXPECT_EQ(noutra([&] { return Rodar(pasta_.Caminho().parent_path() / L"JOGO é" / kLista); }), "3");
    }
    EXPECT_EQ(pasta_.Tudo(), antes);
    PosseDaPasta abandonada(pasta_.Caminho());
    EXPECT_TRUE(noutra([&] { return abandonada.Tomar(0ms); })) << "by a thread that ends with it";
    aoLogar_ = [&](std::string_view) {
        log_ += noutra([&] { return PosseDaPasta(pasta_.Caminho()).Tomar(0ms); }) ? "livre " : "ocupada ";
    };
    EXPECT_EQ(Rodar(pasta_ / kLista), "0, reaberto");
    EXPECT_THAT(log_, HasSubstr("ocupada " + Texto("a") + ": trocado\nlivre launcher reaberto\n"));
}

TEST_F(Trocas, ReabreSoOQueEDaPropriaPastaEMesmoSemMemoria) {
    Listar({Mover("a")});
    std::filesystem::copy_file(kParado, pasta_ / "ZuLauncher.exe");
    for (const auto& reabrir : {std::filesystem::path(), kParado.filename(), pasta_ / "ZuLauncher.exe"})
        EXPECT_EQ(Rodar(pasta_ / kLista, reabrir), "2") << reabrir;
    EXPECT_EQ(Rodar(pasta_ / "Launcher.pendente"), "2, reaberto");
    EXPECT_FALSE(pasta_.Tem("a"));
    aoLogar_ = [](std::string_view mensagem) {
        if (mensagem.ends_with(": trocado")) throw std::bad_alloc();
    };
    EXPECT_EQ(Rodar(pasta_ / kLista), "1, reaberto");
    EXPECT_EQ(Rodar(pasta_ / kLista), "0, reaberto");
}

// A running program cannot be overwritten: it steps aside, and comes back when its successor cannot take the place.
TEST_F(Trocas, OHelperTrocaASiMesmo) {
    std::filesystem::copy_file(kPastaBin / "UpdaterHelper.exe", pasta_ / "UpdaterHelper.exe");
    const std::string programa = pasta_.Ler("UpdaterHelper.exe");
    pasta_.Escrever("UpdaterHelper.exe.novo", programa + "novo");
    const std::vector<std::wstring> argumentos{L"--lista=" + (pasta_ / kLista).native(),
                                               L"--reabrir=" + (pasta_ / "UpdaterHelper.exe").native()};
    Listar({{Texto("UpdaterHelper.exe.novo"), Texto("UpdaterHelper.exe")}});
    HandleArquivo preso = pasta_.Prender("UpdaterHelper.exe.novo");
    pasta_.Escrever("UpdaterHelper.log", std::string((1 << 20) + 1, 'x'));
    Programa helper(pasta_ / "UpdaterHelper.exe", argumentos);
    EXPECT_TRUE(Esperar(
        20s, [&] { return pasta_.Ler("UpdaterHelper.log").find("1 troca(s) por fazer") != std::string::npos; }));
    EXPECT_TRUE(Esperar(5s, [&] { return pasta_.Tem("UpdaterHelper.exe"); }));
    preso.Fechar();
    EXPECT_EQ(helper.Esperar(), 0) << pasta_.Ler("UpdaterHelper.log");
    EXPECT_TRUE(pasta_.Ler("UpdaterHelper.exe") == programa + "novo");
    EXPECT_TRUE(pasta_.Ler("UpdaterHelper.exe.tmp") == programa);
    EXPECT_LT(pasta_.Ler("UpdaterHelper.log").size(), 1U << 20);
    Listar({});
    EXPECT_EQ(Programa(pasta_ / "UpdaterHelper.exe", argumentos).Esperar(), 0);
    EXPECT_FALSE(pasta_.Tem("UpdaterHelper.exe.tmp"));
}

TEST(ArgumentosDoHelper, ComoOLauncherOsEscreveEComoOsPassaAdiante) {
    const ArgumentosDoHelper lidos = LerArgumentosDoHelper(
        L"\"C:\\Zu Jogo\\UpdaterHelper.exe\" --pid=1234 \"--lista=C:\\Zu Jogo\\Config\\Launcher.pendente\" "
        L"\"--reabrir=C:\\Zu Jogo\\ZuLauncher.exe\" -- \"--cliente=C:\\Zu Jogo\\\" \"--sem-interface\" \"\" "
        L"--reaberto");
    EXPECT_EQ(lidos.pid, 1234U);
    EXPECT_EQ(lidos.reabrir, L"C:\\Zu Jogo\\ZuLauncher.exe");
    EXPECT_EQ(lidos.argumentos,
              (std::vector<std::wstring>{L"--cliente=C:\\Zu Jogo\\", L"--sem-interface", L"", L"--reaberto"}));

    const std::wstring linha = MontarLinhaDeComando(lidos.reabrir, {L"a\\", L"b\"c\\\" d", L"", L"é ç\\\\"});
    int quantos = 0;
    wchar_t** const partes = CommandLineToArgvW(linha.c_str(), &quantos);
    const std::vector<std::wstring> volta(partes, partes + quantos);
    LocalFree(static_cast<HLOCAL>(partes));
    EXPECT_EQ(volta, (std::vector<std::wstring>{lidos.reabrir.native(), L"a\\", L"b\"c\\\" d", L"", L"é ç\\\\"}));
}

}  // namespace
}  // namespace zu::launcher
