// The windows as a program sees them that reads the screen aloud, from its own process.
#include "tests/suporte/leitor.h"

#include "tests/suporte/ini.h"
#include "tests/suporte/janelas.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;
using namespace testing;

class Leitor : public ComServidor {
 protected:
    Leitor() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~Leitor() override { CoUninitialize(); }

    static std::string Ler(HWND janela) {
        std::string tudo;
        Coisa::De(janela).Percorrer([&](const Coisa& coisa) {
            tudo += coisa.Ler() + "\n";
            return false;
        });
        return tudo;
    }
    static HRESULT Agir(HWND janela, const std::string& nome) {
        const Coisa coisa = Coisa::De(janela).Com(nome);
        return coisa.objeto ? coisa.objeto->accDoDefaultAction(coisa.filho) : E_FAIL;
    }
    static HWND EsperarJanela(const wchar_t* classe) {
        HWND janela = nullptr;
        Bombear(10s, [&] { return IsWindowVisible(janela = FindWindowW(classe, nullptr)) != FALSE; });
        return janela;
    }
};

// Faults: what is drawn is not told, stands elsewhere or keeps its old value; an action waits for what comes of it, or
// is taken while a window stands over it; a change raises no event.
TEST_F(Leitor, SessaoInteiraPelasAcoesEPelosAvisos) {
    PorJogo("relatorio=bom\n", true);
    pasta_.Escrever("Config/Zu.ini", TextoDoIni({.windowMode = 0}));
    Lancado launcher(pasta_);
    EscutarEventos(launcher.programa.Pid());
    const HWND principal = launcher.EsperarJanela();
    EXPECT_TRUE(Bombear(20s, [&] { return Coisa::De(principal).Com("Conectar").Ler() == "2b Conectar [Pressionar]"; }));
    EXPECT_EQ(Ler(principal),
              "12 Zu de teste; Atualização concluída: 1 arquivo(s) novo(s).\n30 Arquivo=100%\n30 Total=100%\n"
              "8 Atualização concluída: 1 arquivo(s) novo(s).\n28 Zu de teste\n2b Fechar [Pressionar]\n"
              "2b Minimizar [Pressionar]\n2b Registrar [Pressionar]\n2b Opções [Pressionar]\n"
              "2b Conectar [Pressionar]\n2b Fechar [Pressionar]\n");

    EXPECT_EQ(Agir(principal, "Opções"), S_OK);
    const HWND opcoes = EsperarJanela(kClasseDasOpcoes);
    EXPECT_EQ(Agir(principal, "Fechar"), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(Agir(principal, "Registrar"), DISP_E_MEMBERNOTFOUND);
    PostMessageW(GetDlgItem(principal, kBotaoFechar), MSG_ACAO_PADRAO, 0, 0);
    EXPECT_EQ(SendMessageW(principal, WM_GETOBJECT, 0, OBJID_WINDOW), 0);
    EXPECT_THAT(Ler(opcoes),
                AllOf(StartsWith("12 Opções\n2b Fechar [Pressionar]\n2d DirectX 12; Roda neste PC [Selecionar]*\n"
                                 "2d Vulkan; Roda neste PC [Selecionar]\n2e Modo de tela:=Tela cheia [Abrir]\n"
                                 "22 Janela [Selecionar]\n22 Tela cheia [Selecionar]*\n(2e Resolução:=1280 x 720)\n"),
                      HasSubstr("\n(2c Janela sem borda)\n2c Sincronia vertical (VSync) [Desmarcar]*\n2e Limite")));
    for (const char* nome : {"Vulkan", "Janela", "1920 x 1080", "Janela sem borda", "Sincronia vertical (VSync)", "60",
                             "Mudo", "Fechar o launcher ao jogar"})
        EXPECT_TRUE(Bombear(10s, [&] { return Agir(opcoes, nome) == S_OK; })) << nome;
    const Coisa idioma = Coisa::De(opcoes).Com("Idioma:");
    EXPECT_EQ(idioma.objeto->accSelect(SELFLAG_TAKEFOCUS, idioma.filho), S_OK);
    EXPECT_TRUE(
        Bombear(10s, [&] { return Coisa::De(opcoes).Com("Resolução:").Ler() == "2e Resolução:=1920 x 1080 [Abrir]"; }));

    EXPECT_EQ(Agir(opcoes, "Requisitos"), S_OK);
    const HWND requisitos = EsperarJanela(kClasseDosRequisitos);
    EXPECT_THAT(Ler(requisitos), AllOf(StartsWith("12 Requisitos; Seu computador atende aos requisitos\n"),
                                       HasSubstr("\n1c Placa de vídeo=NVIDIA GeForce RTX 3060 (12 GiB); em ordem\n")));
    EXPECT_EQ(Agir(requisitos, "Diagnóstico completo"), S_OK);
    const HWND diagnostico = EsperarJanela(kClasseDoDiagnostico);
    Coisa celula = Coisa::De(diagnostico);
    celula.filho.lVal = 7;
    EXPECT_EQ(celula.Ler(), "1d Seu computador=Windows 11 Pro 64 bits (22631)");
    celula.filho.lVal = 5 + 8 * 5 + 2;
    EXPECT_EQ(celula.Ler(), "1d Seu computador=214 GiB");
    // Behind the titles, nine rows and the box stand the buttons, which speak for themselves.
    celula.filho.lVal = 5 + 9 * 5 + 2;
    VARIANT papel{};
    EXPECT_EQ(celula.objeto->get_accRole(celula.filho, &papel), E_INVALIDARG);
    EXPECT_EQ(Agir(diagnostico, "Copiar relatório"), S_OK);
    const Coisa velha = Coisa::De(diagnostico);
    EXPECT_TRUE(Bombear(10s, [&] { return std::ranges::count(eventos, "800c Copiado!") > 0; }));
    EXPECT_EQ(Agir(diagnostico, "Fechar"), S_OK);
    EXPECT_TRUE(Bombear(10s, [&] { return velha.objeto->get_accRole(velha.filho, &papel) == CO_E_OBJNOTCONNECTED; }));
    EXPECT_TRUE(Bombear(10s, [&] { return Agir(requisitos, "Fechar") == S_OK; }));
    EXPECT_TRUE(Bombear(10s, [&] { return Agir(opcoes, "OK") == S_OK; }));
    const std::string ini = TextoDoIni({"vulkan", 1, 1, 7, 0, 2, 0, 4, 0});
    EXPECT_TRUE(Bombear(5s, [&] { return pasta_.Ler("Config/Zu.ini") == ini; })) << pasta_.Ler("Config/Zu.ini");
    EXPECT_TRUE(Bombear(10s, [&] { return Agir(principal, "Conectar") == S_OK; }));
    EXPECT_TRUE(Bombear(10s, [&] { return QuantasLinhas("Jogo aberto: Zu.exe --api=vulkan") == 1; }));
    // In the order of the session: the alert of the run's end; value, description, focus, state, name.
    EXPECT_THAT(eventos, IsSupersetOf({"2 Atualização concluída: 1 arquivo(s) novo(s).", "800e Total",
                                       "800d Zu de teste", "800a Conectar", "800a Vulkan", "800a Janela sem borda",
                                       "800e Modo de tela:", "8005 Idioma:", "800d Requisitos", "8004 Requisitos",
                                       "800d Vulkan", "800c Copiado!"}));
}

}  // namespace
}  // namespace zu::launcher
