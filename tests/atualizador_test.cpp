#include "update/atualizador.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>

#include "core/formato.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"
#include "update/agendador.h"
#include "update/estado.h"
#include "update/jogo_aberto.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;
using namespace testing;

constinit std::uint64_t espaco = 0;  // bytes that the disk has left; 0: as many as it says

BOOL WINAPI DizerEspaco(LPCWSTR pasta, PULARGE_INTEGER livres, PULARGE_INTEGER total, PULARGE_INTEGER vazios) {
    if (espaco == 0) return ZU_VERDADEIRA(L"kernel32", GetDiskFreeSpaceExW)(pasta, livres, total, vazios);
    livres->QuadPart = espaco;
    return TRUE;
}

class Atualizacao : public Test {
 protected:
    Atualizacao() {
        Configurar(pasta_.Caminho(), servidor_.Url());
        publicacao_.arquivos = {{"Zu.exe.txt", "jogo"},
                                {"Data/Mapas do Sul/praça.map", Bytes(200'000, 2)},
                                {"Data/vazio", ""},
                                {"Data/grande.pak", Bytes(700'000, 3)}};
        publicacao_.partes["Data/grande.pak"] = 3;
        publicacao_.Servir(servidor_);
    }

    // A run from start to end; "5 Cliente em dia." is its status and its sentence.
    std::string Rodar(bool reparar = false) {
        atualizador_.Iniciar(reparar);
        EXPECT_TRUE(atualizador_.Aguardar(60s));
        return Formatar("{} {}", static_cast<int>(atualizador_.Estado().status), atualizador_.Estado().texto);
    }
    [[nodiscard]] std::vector<std::string> Log() const { return LinhasDoLog(pasta_); }
    // The published files and nothing beside them but the launcher's own.
    void EsperarClienteExato() {
        auto tudo = pasta_.Tudo();
        tudo.erase("Config/Launcher.cache");
        tudo.erase("Config/Launcher.estado");
        EXPECT_EQ(tudo, publicacao_.arquivos);
    }

    PastaTemporaria pasta_{L"Pasta do Jogo ç"};
    Servidor servidor_;
    Publicacao publicacao_;
    Atualizador atualizador_;
};

TEST_F(Atualizacao, DaPastaVaziaAteEmDiaDepoisSemLerNadaEReparoLendoTudo) {
    publicacao_.arquivos["Config/Launcher.cache.txt"] = "protegido";
    publicacao_.Servir(servidor_);
    publicacao_.arquivos.erase("Config/Launcher.cache.txt");
    EXPECT_EQ(Rodar(), "5 Atualização concluída: 4 arquivo(s) novo(s).");
    EXPECT_EQ(atualizador_.Estado().bytesFeitos, 900'004U);
    EsperarClienteExato();
    EXPECT_EQ(pasta_.Ler("Config/Launcher.estado"), "seq=1\nversao=1.0\n");
    EXPECT_THAT(Log(), IsSupersetOf({"[update] UpdateList seq 1 (1.0) com 5 arquivos e 0 a remover; instalado seq 0",
                                     "[update] Data/Mapas do Sul/praça.map: faltando",
                                     "[update] baixando 4 arquivo(s), 0.9 MB, 4 conexão(ões)",
                                     "[update] atualizado: Data/vazio (crc 00000000, 0 bytes)"}));
    servidor_.EsquecerPedidos();
    pasta_.Adulterar("Data/Mapas do Sul/praça.map", Bytes(200'000, 7));
    EXPECT_EQ(Rodar(), "5 Cliente em dia.");
    EXPECT_EQ(atualizador_.Estado().bytesFeitos, 900'013U);
    EXPECT_EQ(servidor_.QuantosPedidos(), 1U);
    EXPECT_EQ(LerCache().size(), 4U);

    EXPECT_EQ(Rodar(true), "5 Atualização concluída: 1 arquivo(s) novo(s).");
    EXPECT_THAT(Log(), IsSupersetOf({"[update] Reparando: conferindo todos os arquivos...",
                                     "[update] Data/Mapas do Sul/praça.map: diferente"}));
    EsperarClienteExato();
    EXPECT_EQ(Rodar(true), "5 Cliente em dia — nenhum arquivo corrompido.");

    // Of the same size, but with another time, it is read again; and the other way round.
    pasta_.Escrever("Zu.exe.txt", "ogoj");
    pasta_.Adulterar("Data/vazio", "x");
    EXPECT_EQ(Rodar(), "5 Atualização concluída: 2 arquivo(s) novo(s).");
    // A touched but equal file is read once more and stays; a lost cache costs time only.
    const auto alvo = pasta_ / "Data/Mapas do Sul/praça.map";
    std::filesystem::last_write_time(alvo, std::filesystem::last_write_time(alvo) + 1h);
    pasta_.Escrever("Config/Launcher.cache", "lixo\nv2\t\n");
    EXPECT_EQ(Rodar(), "5 Cliente em dia.");
    EXPECT_EQ(LerCache().size(), 4U);
}

// Faults: bytes beyond the total; what the stage, the list or the run before left shows in the next.
TEST(PainelDaAtualizacao, NadaPassaDoTotalNemFicaDoQueVeioAntes) {
    const std::pair<void (*)(Andamento&), std::array<double, 6>> casos[] = {
        {[](Andamento&) {}, {1, 100, 1, 9, 1, 2}},
        {[](Andamento& andamento) { andamento.Comecar(StatusUpdate::kAplicando, "", 3, 9); }, {0, 0, 0, 0, 0, 2}},
        {[](Andamento& andamento) { andamento.Recomecar(); }, {1, 100, 1, 9, 1, 0}},
        {[](Andamento& andamento) { andamento.Zerar(true); }, {}}};
    for (const auto& [passo, medidas] : casos) {
        Andamento andamento;
        andamento.Comecar(StatusUpdate::kBaixando, "", 2, 100);
        andamento.SomarArquivos(1);
        andamento.DefinirBytes(150);
        andamento.DefinirVelocidade(9);
        andamento.Anotar({"a", "faltando"});
        andamento.Estacionar({});
        passo(andamento);
        const EstadoAtualizacao e = andamento.Copia();
        const auto guardados = andamento.Trocas().size() + andamento.Resultados().size();
        EXPECT_THAT(medidas,
                    ElementsAre(e.arquivosFeitos, e.bytesFeitos, e.fracao, e.velocidade, e.estacionados, guardados));
    }
}

TEST_F(Atualizacao, ListaRuimOuAusenteNaoMudaNadaNoDisco) {
    Rodar();
    const auto antes = pasta_.Tudo();
    const std::string item = "novo\t00000000\t0\n";
    std::string mexida = Assinar(";seq\t5\n" + item);
    mexida.replace(mexida.find("novo"), 4, "mais");
    const std::string kSemAssinatura =
        "7 A lista de atualização não tem uma assinatura válida: atualização recusada por segurança.";
    const std::pair<Resposta, std::string> casos[] = {
        {{.corpo = ";seq\t5\n" + item}, kSemAssinatura},
        {{.corpo = mexida}, kSemAssinatura},
        {{.corpo = Assinar(";seq\t0\n" + item)},
         "7 O servidor ofereceu uma versão mais antiga que a instalada (seq 0 < 1): recusada."},
        {{.corpo = Assinar(";seq\t5\n;validade\t2020-01-31T23:59:59Z\n" + item)},
         "6 Sem conexão com o servidor de atualização (a lista venceu em 31/01/2020)."},
        {{.corpo = Assinar(item + "../fora\t0\t0\n")},
         "7 Lista de atualização inválida: linha 2: caminho inseguro (../fora)"},
        {{.status = 404}, "5 Nenhuma atualização publicada ainda: o cliente segue como está."}};
    for (const auto& [resposta, fim] : casos) {
        servidor_.EsquecerPedidos();
        servidor_.Definir("UpdateList.txt", resposta);
        EXPECT_EQ(Rodar(), fim);
        EXPECT_EQ(pasta_.Tudo(), antes);
        EXPECT_EQ(servidor_.QuantosPedidos(), 1U);
    }

    servidor_.EsquecerPedidos();
    servidor_.Definir("UpdateList.txt", {.status = 503});
    const auto inicio = std::chrono::steady_clock::now();
    EXPECT_THAT(Rodar(), AllOf(StartsWith("6 Sem conexão com o servidor de atualização (HTTP 503 em " +
                                          servidor_.Url() + "UpdateList.txt?t="),
                               EndsWith(").")));
    EXPECT_GE(std::chrono::steady_clock::now() - inicio, 3s);  // two pauses between three attempts
    const auto pedidos = servidor_.Pedidos("UpdateList.txt");
    ASSERT_EQ(pedidos.size(), 3U);
    EXPECT_NE(pedidos[0].consulta, pedidos[1].consulta);
}

TEST_F(Atualizacao, FalhasTentamTresVezesComPausasEDepoisUmAUm) {
    std::vector<std::chrono::steady_clock::time_point> pedidos;
    servidor_.Definir("Zu.exe.txt", [&](const Pedido&) {
        pedidos.push_back(std::chrono::steady_clock::now());
        return Resposta{.status = 500};
    });
    const std::string um = Rodar();
    ASSERT_EQ(pedidos.size(), 5U);
    EXPECT_GE(pedidos[1] - pedidos[0], 290ms);
    EXPECT_GE(pedidos[2] - pedidos[1], 590ms);
    const std::string erro =
        Formatar("HTTP 500 em {}Zu.exe.txt?v={:08x}", servidor_.Url(), publicacao_.Lista().itens.back().crc);
    EXPECT_EQ(um, "7 1 arquivo(s) não baixaram. " + erro);
    EXPECT_THAT(Log(), Contains("[update] Zu.exe.txt: " + erro + " (tentativa 3)"));
    EXPECT_THAT(Log(), Contains("[update] 1 arquivo(s) não vieram; baixando um de cada vez"));
    // The others are in place, and remembered, but the list does not count as applied.
    EXPECT_EQ(LerCache().size(), 3U);
    EXPECT_FALSE(pasta_.Tem("Config/Launcher.estado"));

    const auto pasta = pasta_ / "Data/Mapas do Sul";
    std::filesystem::remove_all(pasta);
    pasta_.Escrever("Data/Mapas do Sul", "um arquivo no lugar da pasta");
    EXPECT_THAT(Rodar(), AllOf(StartsWith("7 2 arquivo(s) não baixaram. não foi possível criar a pasta " +
                                          ParaUtf8(pasta.native()) + " (erro "),
                               EndsWith(") (veja o ZuLauncher.log)")));
    std::filesystem::remove(pasta);

    // What comes once it is fetched alone is no failure any more.
    servidor_.EsquecerPedidos();
    servidor_.Definir("Zu.exe.txt", [&](const Pedido& pedido) {
        return servidor_.Pedidos("Zu.exe.txt").size() < 4 ? Resposta{.status = 502} : Servir("jogo")(pedido);
    });
    EXPECT_EQ(Rodar(), "5 Atualização concluída: 2 arquivo(s) novo(s).");
    EsperarClienteExato();
}

// A new version replaces and removes, but never what is the player's, or a folder. What was fetched and proved once is
// not fetched again while its target stays held, or once it is free; but what lies there of another list does not
// serve.
TEST_F(Atualizacao, NovaVersaoEmUsoFicaParaATrocaENaoVemDeNovo) {
    Rodar();
    const std::string conteudo = Bytes(50'000, 9);
    publicacao_.seq = 2;
    publicacao_.arquivos["Zu.exe.txt"] = conteudo;
    publicacao_.remover = {"Data\\vazio", "nunca existiu", "Config/Zu.ini", "Data/Mapas do Sul", "screenshots/a.jpg"};
    publicacao_.arquivos.erase("Data/vazio");
    publicacao_.Servir(servidor_);
    for (const char* doJogador : {"Config/Zu.ini", "Screenshots/a.jpg"})
        pasta_.Escrever(doJogador, publicacao_.arquivos[doJogador] = "meu");
    HandleArquivo alvo = pasta_.Prender("Zu.exe.txt");
    HandleArquivo velho = pasta_.Prender("Data/vazio");
    for (int vez = 0; vez < 2; ++vez) {
        EXPECT_EQ(Rodar(), "8 Concluindo a atualização: o launcher vai reiniciar...");
        EXPECT_EQ(pasta_.Ler("Zu.exe.txt"), "jogo");
        EXPECT_EQ(pasta_.Ler("Config/Launcher.estado"), "seq=2\nversao=1.0\n");
        EXPECT_EQ(atualizador_.Estado().arquivosFeitos, 1U);
    }
    EXPECT_THAT(Log(),
                IsSupersetOf({"[update] Zu.exe.txt em uso: troca pendente",
                              "[update] 2 arquivo(s) em uso: UpdaterHelper troca depois que o launcher fechar"}));
    alvo.Fechar();
    velho.Fechar();
    EXPECT_EQ(Rodar(), "5 Atualização concluída: 1 arquivo(s) novo(s), 1 removido(s).");
    EXPECT_THAT(Log(), Contains("[update] removido: Data/vazio"));
    EXPECT_EQ(servidor_.Pedidos("Zu.exe.txt").size(), 1U);
    EXPECT_EQ(LerCache().count("data/vazio"), 0U);
    EsperarClienteExato();

    pasta_.Escrever("Zu.exe.txt", "estragado");
    pasta_.Escrever("Zu.exe.txt.novo", std::string(conteudo.size(), '?'));
    EXPECT_EQ(Rodar(), "5 Atualização concluída: 1 arquivo(s) novo(s).");
    EsperarClienteExato();
}

TEST_F(Atualizacao, ReparoApagaSobrasDoQueNaoEstaMaisNaLista) {
    const std::pair<const char*, bool> casos[] = {
        {"Zu.exe.txt.novo", true}, {"Data/x.upd.p01", true},           {"Screenshots/a.novo", true},      {"upd", true},
        {"velho.pak.upd", false},  {"Data/velho.pak.upd.p002", false}, {"Data/Sub/velho.pak.NOVO", false}};
    for (const auto& [nome, fica] : casos)
        pasta_.Escrever(nome, "sobra");
    servidor_.Definir("Zu.exe.txt", {.status = 500});
    Rodar(true);
    for (const auto& [nome, fica] : casos)
        EXPECT_EQ(pasta_.Tem(nome), fica) << nome;
}

// The server changes under a player's download: every other list in turn, the files always those of the last.
TEST_F(Atualizacao, PublicacaoNoMeioRecomecaComANovaLista) {
    const auto lista = [this](std::int64_t seq, const std::string& conteudo) {
        publicacao_.seq = seq;
        publicacao_.arquivos["Zu.exe.txt"] = conteudo;
        publicacao_.Servir(servidor_);
        return Assinar(update::EscreverLista(publicacao_.Lista()));
    };
    const std::string velha = lista(5, "velho");
    const std::string maisVelha = lista(4, "novo!");
    const std::string outra = lista(6, "mais novo");
    const std::string nova = lista(7, "novo");
    // The lists, one an answer and the last again and again; how many are asked for; the end.
    const std::tuple<std::vector<std::string>, std::size_t, const char*> casos[] = {
        {{velha}, 2, "7 1 arquivo(s) não baixaram. "},
        {{velha, maisVelha}, 2, "7 1 arquivo(s) não baixaram. "},
        {{velha, outra, velha, nova}, 3, "7 1 arquivo(s) não baixaram. "},
        {{velha, outra, nova}, 3, "5 Atualização concluída: "}};
    for (const auto& [listas, quantas, fim] : casos) {
        std::size_t pedidos = 0;
        servidor_.Definir("UpdateList.txt", [&pedidos, &lidas = listas](const Pedido&) {
            return Resposta{.corpo = lidas[std::min(pedidos++, lidas.size() - 1)]};
        });
        EXPECT_THAT(Rodar(), StartsWith(fim));
        EXPECT_EQ(pedidos, quantas);
    }
    EXPECT_THAT(Log(), Contains("[update] o servidor publicou outra lista (seq 7): recomeçando com ela"));
    EsperarClienteExato();
}

TEST_F(Atualizacao, SemEspacoNadaEPedidoNemTocado) {
    espaco = 1 << 20;
    // What lies there already, and how many MB are missing for the list.
    const std::tuple<const char*, std::size_t, const char*, const char*> casos[] = {
        {"f.upd", 0, "f\t0\t18446744073709551615\ng\t0\t9", "17592186044415.0"},
        {"f.upd", 900'000, "f\t0\t2000000", "0.1"},
        {"f.upd", 1'048'577, "f\t0\t1048577\ng\t0\t1048577", "0.1"},
        {"f.novo", 1'048'577, "f\t0\t1048577\ng\t0\t1048577", "0.1"},
        // What is joined from parts is there twice for a moment, one file at a time.
        {"f.upd", 0, "f\t0\t400000\t\t20\ng\t0\t400000\t\t20", "0.2"},
        {"f.upd.p001", 500'000, "f\t0\t400000\t\t2\ng\t0\t700000", "0.1"}};
    for (const auto& [presente, tamanho, lista, faltam] : casos) {
        pasta_.Escrever(presente, std::string(tamanho, 'x'));
        servidor_.Definir("UpdateList.txt", Servir(Assinar(std::string(lista) + "\n")));
        EXPECT_EQ(Rodar(), Formatar("7 Espaço em disco insuficiente: faltam {} MB em {}.", faltam,
                                    pasta_.Caminho().root_name().string()));
        EXPECT_TRUE(std::filesystem::remove(pasta_ / presente));
    }
    espaco = 0;
    EXPECT_EQ(servidor_.QuantosPedidos(), std::size(casos));
    EXPECT_EQ(pasta_.Tudo().size(), 1U) << "the cache";
}

TEST_F(Atualizacao, CacheESalvoNoMeioMasNaoACadaVez) {
    CacheDeArquivos cache(0ms);
    CacheDeArquivos semPressa;
    for (CacheDeArquivos* qual : {&semPressa, &cache}) {
        qual->Carregar();
        qual->Registrar("a", {.tamanho = 1, .modificado = 2, .sha256 = std::string(64, '0'), .crc = 3});
        qual->GravarDeVezEmQuando();
        EXPECT_EQ(LerCache().size(), qual == &cache ? 1U : 0U);
    }
}

TEST_F(Atualizacao, CancelamentoEmCadaFaseERetomada) {
    const auto cancelarQuando = [&](const auto& condicao) {
        atualizador_.Iniciar(false);
        EXPECT_TRUE(Esperar(20s, condicao));
        atualizador_.Cancelar();
        EXPECT_TRUE(atualizador_.Aguardar(1s));
        return atualizador_.Estado().erro;
    };
    // while the list's second attempt is waited for
    servidor_.Definir("UpdateList.txt", {.status = 500});
    EXPECT_EQ(cancelarQuando([&] { return servidor_.QuantosPedidos() > 0; }), "Cancelado.");

    // while a large file is read: what was read before it stays known
    const std::string grande = Bytes(64 << 20);
    const std::string conteudo = grande.substr(0, 2'000'000);
    publicacao_.arquivos = {{"a", "pequeno"}, {"b", grande}};
    publicacao_.partes.clear();
    publicacao_.Servir(servidor_);
    pasta_.Escrever("a", "pequeno");
    pasta_.Escrever("b", grande);
    const auto lendo = [&] {
        return atualizador_.Estado().arquivosFeitos == 1 && atualizador_.Estado().bytesFeitos > 7;
    };
    EXPECT_EQ(cancelarQuando(lendo), "Cancelado.");
    EXPECT_THAT(LerCache(), ElementsAre(Pair("a", Field(&EntradaCache::tamanho, 7U))));

    // in the middle of a file, on a line so slow that a read which waits for a whole block would keep nothing
    publicacao_.arquivos["b"] = conteudo;
    publicacao_.Servir(servidor_);
    servidor_.Definir("b", {.corpo = conteudo, .bloco = 1000, .pausa = 20ms});
    EXPECT_EQ(cancelarQuando([&] { return pasta_.Ler("b.upd").size() > 3000; }), "Download cancelado.");
    EXPECT_THAT(Log(), Not(Contains("[update] 1 arquivo(s) não vieram; baixando um de cada vez")));
    const std::string parcial = pasta_.Ler("b.upd");
    EXPECT_TRUE(conteudo.starts_with(parcial) && parcial.size() < 200'000);

    publicacao_.Servir(servidor_);
    EXPECT_EQ(Rodar(), "5 Atualização concluída: 1 arquivo(s) novo(s).");
    EXPECT_EQ(servidor_.Pedidos("b")[0].Cabecalho("range"), Formatar("bytes={}-", parcial.size()));
    EsperarClienteExato();
}

// Faults: a connection that waits for the disk; a file that is remembered before it is there; a failed flush that
// counts for nothing; files that are lost, or waited for, when the run is cancelled meanwhile; one that a power cut
// leaves with its name and size and without its bytes.
TEST_F(Atualizacao, DescargasAoLadoDaConexao) {
    Configurar(pasta_.Caminho(), servidor_.Url(), 1);
    publicacao_ = {.arquivos = {{"a", "1"}, {"b", "2"}, {"c", "3"}, {"d", "45"}}, .partes = {{"d", 2}}};
    publicacao_.Servir(servidor_);
    std::atomic<int> descargas = 0;
    std::atomic<int> vezes = 0;  // that the first has been flushed
    const std::function<DWORD(const Chamada&)> porta = [&](const Chamada& chamada) -> DWORD {
        if (chamada.nome != "FlushFileBuffers" || chamada.caminho.extension() != L".upd") return 0;
        ++descargas;
        EXPECT_TRUE(Esperar(5s, [&] { return servidor_.QuantosPedidos() >= 6; })) << "the list and all files";
        atualizador_.GuardarCache();
        EXPECT_EQ(LerCache().count(ParaUtf8(chamada.caminho.stem().native())), 0U);
        if (chamada.caminho.stem() != L"a") return 0;
        EXPECT_TRUE(++vezes < 3 || Esperar(5s, [&] { return atualizador_.Cancelado(); }));
        return ERROR_DISK_FULL;
    };
    recusa.porta = &porta;
    atualizador_.Iniciar(false);
    EXPECT_TRUE(Esperar(20s, [&] { return vezes == 3; }));
    atualizador_.Cancelar();
    EXPECT_TRUE(atualizador_.Aguardar(2s));
    recusa.porta = nullptr;
    const std::string erro = "[update] a: disco cheio ou sem permissão em " + ParaUtf8((pasta_ / "a.upd").native());
    EXPECT_THAT(Log(), IsSupersetOf({erro + " (tentativa 1)", erro + " (tentativa 2)"}));
    EXPECT_EQ(atualizador_.Estado().erro, "Download cancelado.");
    EXPECT_EQ(descargas, 3 + 3) << "of the first and of the others";
    EXPECT_EQ(Rodar(), "5 Atualização concluída: 1 arquivo(s) novo(s).");
    EXPECT_EQ(servidor_.Pedidos("a").size(), 1U) << "what has come is not fetched again";
    EsperarClienteExato();
}

TEST_F(Atualizacao, UmaExecucaoPorVezVariosDownloadsDeUmaVez) {
    Configurar(pasta_.Caminho(), servidor_.Url(), 16);
    publicacao_.partes.clear();
    publicacao_.Servir(servidor_);
    std::atomic<int> juntos = 0;
    for (const char* caminho : {"Zu.exe.txt", "Data/grande.pak"})
        servidor_.Definir(caminho, [&juntos, conteudo = publicacao_.arquivos[caminho]](const Pedido&) {
            ++juntos;
            Esperar(5s, [&] { return juntos == 2; });
            return Resposta{.corpo = juntos == 2 ? conteudo : ""};
        });
    atualizador_.Iniciar(false);
    EXPECT_EQ(Rodar(), "5 Atualização concluída: 4 arquivo(s) novo(s).");
    EXPECT_EQ(servidor_.Pedidos("UpdateList.txt").size(), 1U);

    EXPECT_EQ(NumeroDeConexoes(0, "http://s/"), 1);
    EXPECT_EQ(NumeroDeConexoes(0, "https://x.GitHub.io/"), 8);
    EXPECT_EQ(NumeroDeConexoes(3, "https://github.com/"), 3);
}

// One that does not let itself be asked counts by its file, which cannot be written while it runs.
TEST_F(Atualizacao, JogoAbertoSoODestaPasta) {
    const auto parado = kPastaBin / "processo_parado.exe";
    const PastaTemporaria outra;
    std::filesystem::copy_file(parado, outra / "zu.EXE");
    const Programa deOutraPasta(outra / "zu.EXE");
    EXPECT_TRUE(JogoAberto(outra.Caminho()));
    EXPECT_TRUE(ContaComoAberto({}, outra / "Zu.exe"));
    EXPECT_FALSE(ContaComoAberto({}, outra / "Zu2.exe") || ContaComoAberto(parado, outra / "Zu.exe"));
    std::filesystem::copy_file(parado, pasta_ / "Zu2.exe");
    EXPECT_FALSE(ContaComoAberto({}, pasta_ / "Zu2.exe"));
    {
        const Programa jogo(pasta_ / "Zu2.exe");
        EXPECT_EQ(Rodar(), "9 O jogo está aberto: feche o Zu para verificar as atualizações.");
    }
    EXPECT_THAT(Rodar(), StartsWith("5 "));
}

}  // namespace
}  // namespace zu::launcher

ZU_DESVIAR(GetDiskFreeSpaceExW, &zu::launcher::DizerEspaco);
