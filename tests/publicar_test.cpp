#include <mutex>

#include "core/formato.h"
#include "tests/suporte/oficina.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/publicar/trava.h"
#include "tools/forjal/varredura.h"

ZU_RECUSAVEL(L"kernel32", CreateDirectoryW, FALSE);
ZU_RECUSAVEL(L"kernel32", DeleteFileW, FALSE);
ZU_RECUSAVEL(L"kernel32", FindNextFileW, FALSE);
ZU_RECUSAVEL(L"kernel32", FlushFileBuffers, FALSE);
ZU_RECUSAVEL(L"kernel32", MoveFileExW, FALSE);
ZU_RECUSAVEL(L"kernel32", WriteFile, FALSE);

namespace zu::launcher::forjal {
namespace {

using namespace std::chrono_literals;
using namespace testing;

const std::vector<std::string> kContinuar{"publicar", "--continuar", "--saida=@\\saida"};
const std::vector<std::string> kAssinar{"publicar", "--so-assinar", "--saida=@\\saida", "--chave=#\\lista.chave",
                                        "--validade-dias=3"};

TEST_F(Forjal, ChavesNaoVaoParaAWeb) {
    std::string outra = chaves_.Ler("lista.chave");
    outra.back() ^= 1;
    Cliente({"Data/Lista.CHAVE=de nome", "cópia de selo.segredo=de nome", "de marca.bin=" + outra,
             "de conteúdo.bin=" + chaves_.Ler("selo.segredo"), "outro.bin=" + std::string(1755, 'R'),
             "outro segredo.bin=" + std::string(32, 'R'), "pública.bin=" + chaves_.Ler("lista.pub")});
    Recusa(ParaPublicar(1, {}), "4 problema(s)");
    for (const std::string chave : {"Data/Lista.CHAVE", "cópia de selo.segredo", "de marca.bin", "de conteúdo.bin"})
        EXPECT_TRUE(saida_.Tem(chave + ": é uma chave")) << saida_;
}

TEST_F(Forjal, PublicaSoOQueMudouERefazODanoQueConferirMostra) {
    const std::string grande = teste::Bytes(4 * kMiB + 5);
    Cliente({"Zu.exe=programa", "data/B.pak=" + grande, "Data_x/é ç.txt=acento", "dois.pak=" + grande.substr(kMiB),
             "justo.pak=" + teste::Bytes(2 * kMiB), "sai=x", "vazio=", "Config/Zu.ini=do jogador", "Cache/x="});
    const std::vector<std::string> opcoes{"--partes-mib=2", "--versao=1.2 beta", "--chave-assets=k", "--remover=a\\b",
                                          "--remover=c"};
    ASSERT_EQ(Publicar(7, opcoes), kFeito) << saida_;
    ASSERT_EQ(Conferir(), kFeito) << saida_;
    EXPECT_EQ(saida_.porCento, 100U) << "every byte was read, and told";

    const update::UpdateList lista = Lista();
    EXPECT_EQ(std::tuple(lista.seq, lista.versao, lista.chaveAssets), std::tuple(7, "1.2 beta", "k"));
    EXPECT_THAT(lista.remover, ElementsAre("a/b", "c"));
    std::string itens;
    for (const update::ItemLista& item : lista.itens)
        itens += Formatar("{} {}, ", item.caminho, item.partes);
    EXPECT_EQ(itens, "data/B.pak 3, Data_x/é ç.txt 0, dois.pak 2, justo.pak 0, sai 0, vazio 0, Zu.exe 0, ");
    EXPECT_TRUE(pasta_.Ler("saida/data/B.pak.p003") == grande.substr(4 * kMiB));
    EXPECT_EQ(pasta_.Tudo().size(), 9U + 10U + 3U + 2U)
        << "client, published, indexes, list and record; nothing temporary";

    const std::string textoDaLista = pasta_.Ler("saida/UpdateList.txt");
    Diz(Publicar(7, opcoes), kFeito, "MiB; 0 copiado(s)\n3 índice(s) de blocos, 0.0 MiB; 0 copiado(s)");
    EXPECT_EQ(pasta_.Ler("saida/UpdateList.txt"), textoDaLista);

    // Damage is found and repaired, that too which neither size nor time shows, and only there.
    const auto hora = Hora("saida/data/B.pak.p001");
    pasta_.Adulterar("saida/Zu.exe", "prOgrama");
    pasta_.Adulterar("saida/data/B.pak.p002", "dano");
    pasta_.Escrever("saida/justo.pak", "curto");
    Apagar("saida/dois.pak.p002");
    Apagar("saida/dois.pak.blocos");
    pasta_.Adulterar("saida/data/B.pak.blocos", "dano");
    Apagar("saida/vazio");
    // By way of another name: Wine takes a change of letter case alone for none.
    std::filesystem::rename(pasta_ / "saida/sai", pasta_ / "saida/meio");
    std::filesystem::rename(pasta_ / "saida/meio", pasta_ / "saida/SAI");
    EXPECT_EQ(Conferir(), kRecusado);
    for (const char* dito : {"diferente: Zu.exe (CRC", "diferente: data/B.pak em 3 parte(s) (CRC", "faltando: vazio\n",
                             "diferente: justo.pak (5 bytes, esperado 2097152)", "faltando: dois.pak.p002",
                             "faltando: dois.pak.blocos", "diferente: data/B.pak.blocos (SHA-256 diferente)",
                             "diferente: sai (no disco, sai está escrito SAI)", "8 diferença(s)"})
        EXPECT_TRUE(saida_.Tem(dito)) << dito << saida_;
    Diz(Publicar(8, opcoes), kFeito, "MiB; 5 copiado(s)\n3 índice(s) de blocos, 0.0 MiB; 2 copiado(s)");
    EXPECT_TRUE(Hora("saida/data/B.pak.p001") == hora);
    EXPECT_EQ(Conferir(), kFeito) << saida_;
    pasta_.Adulterar("saida/UpdateList.txt", ";seq\t2");
    Diz(Conferir(), kRecusado, "assinatura");
}

TEST_F(Forjal, RecusaSemTocarNaListaPublicada) {
    Cliente({"Zu.exe=programa", "pasta/a=a"});
    ASSERT_EQ(Publicar(5), kFeito) << saida_;
    pasta_.Escrever("cliente/Zu.exe", "programa novo");
    Recusa(ParaPublicar(4, {}), "--seq: 4 é menor que o já publicado, 5");
    Recusa(ParaPublicar(6, {"--remover=ZU.EXE"}), "--remover=ZU.EXE");
    Recusa(ParaPublicar(6, {"--remover=pasta"}), "--remover=pasta");
    pasta_.Escrever("cliente/g", teste::Bytes(kMiB + 1));
    pasta_.Escrever("cliente/G.p002", "x");
    Recusa(ParaPublicar(6, {"--partes-mib=1"}), "mesmo nome");
    {
        Trava outra;
        std::string erro;
        EXPECT_TRUE(outra.Trancar(pasta_ / "saida", erro)) << erro;
        Recusa(ParaPublicar(6, {}), "em andamento");
        Recusa(kContinuar, "em andamento");
        Recusa(kAssinar, "em andamento");
    }
    EXPECT_EQ(Publicar(6), kFeito) << "nothing is split, so the names do not meet: " << saida_;
    pasta_.Escrever("saida/UpdateList.txt", "<html>");
    Recusa(ParaPublicar(6, {}), "não confere com --chave");
    Cliente({"jogo.log=só o que é protegido"});
    Recusa(ParaPublicar(6, {}), "--cliente");
}

// A folder with one publication, and a client that changes it in every way: a file new, changed, in another letter
// case, in parts now, gone.
class ForjalTroca : public Forjal {
 protected:
    void SetUp() override {
        const std::string grande = teste::Bytes(kMiB + 1);
        Cliente({"muda=antes", "Caixa/Muda=x", "grande=" + grande, "some=some", "igual=igual"});
        ASSERT_EQ(Publicar(1), kFeito) << saida_;
        antes_ = Publicado();
        Cliente({"muda=depois", "caixa/muda=x", "grande=" + grande, "nova/pasta/novo=novo", "igual=igual"});
    }

    int PublicarDeNovo(int seq) { return Publicar(seq, {"--partes-mib=1", "--muitas-remocoes"}); }
    void Restaurar(const std::map<std::string, std::string>& foto) {
        Apagar("saida");
        for (const auto& [nome, conteudo] : foto)
            nome.ends_with('/') ? void(std::filesystem::create_directories(pasta_ / ("saida/" + nome)))
                                : pasta_.Escrever("saida/" + nome, conteudo);
    }
    // Publishes over the first publication, while `porta` is asked about the system's calls.
    int PublicarSobre(const std::function<DWORD(const teste::Chamada&)>& porta) {
        Restaurar(antes_);
        teste::recusa.porta = &porta;
        const int codigo = PublicarDeNovo(2);
        teste::recusa.porta = nullptr;
        return codigo;
    }

    // Players are served: by the old list or the new one, or by the new one once the change is continued.
    void EsperarInteira(bool continuar) {
        if (pasta_.Tem("saida/Forjal.troca")) {
            Diz(Conferir(), kRecusado, "publicação interrompida no meio da troca: rode Forjal publicar --continuar\n");
            ++interrompidas_;
            if (!continuar) return;
            // The list is not signed anew over a change that has not been carried out.
            ASSERT_EQ(Rodar(interrompidas_ % 2 == 0 ? kAssinar : kContinuar), kFeito) << saida_;
            EXPECT_EQ(Lista().seq, 2);
        }
        EXPECT_EQ(Conferir(), kFeito) << saida_;
    }
    // And the next publication finds its way from there, and leaves nothing behind but what the list before it names.
    void EsperarProxima() {
        ASSERT_EQ(PublicarDeNovo(3), kFeito) << saida_;
        EXPECT_EQ(Conferir(), kFeito) << saida_;
        ASSERT_EQ(Publicar(4, {"--partes-mib=1", "--limpar"}), kFeito) << saida_;
        EXPECT_THAT(Publicado(),
                    ElementsAre(Key("Forjal.publicados"), Key("UpdateList.txt"), Key("caixa/"), Key("caixa/muda"),
                                Key("grande.blocos"), Key("grande.p001"), Key("grande.p002"), Key("igual"), Key("muda"),
                                Key("nova/"), Key("nova/pasta/"), Key("nova/pasta/novo")));
    }

    std::map<std::string, std::string> antes_;
    int interrompidas_ = 0;
};

// What a kill leaves is what stands there at that moment. A file that is being written cannot be read: it counts as
// torn.
TEST_F(ForjalTroca, MortaEmQualquerMomentoServeAosJogadores) {
    std::mutex um;
    std::vector<std::map<std::string, std::string>> fotos;
    const auto fotografar = [&](const teste::Chamada& chamada) -> DWORD {
        if (chamada.nome == "CreateDirectoryW" || chamada.nome == "FindNextFileW" || chamada.nome == "WriteFile")
            return 0;
        const std::lock_guard tranca(um);
        fotos.push_back(Publicado());
        return 0;
    };
    ASSERT_EQ(PublicarSobre(fotografar), kFeito) << saida_;
    for (std::size_t i = 0; i < fotos.size(); ++i) {
        SCOPED_TRACE(i);
        Restaurar(fotos[i]);
        EsperarInteira(i % 2 == 0);
        EsperarProxima();
    }
    EXPECT_GT(interrompidas_, 8) << "of " << fotos.size();
}

// A full disk at the latest: whatever the system refuses, and from whichever call on.
TEST_F(ForjalTroca, RecusadaPeloSistemaServeAosJogadores) {
    for (const std::string_view chamada :
         {"WriteFile", "FlushFileBuffers", "CreateDirectoryW", "MoveFileExW", "FindNextFileW"}) {
        int codigo = kRecusado;
        for (int passam = 0; codigo == kRecusado; ++passam) {
            SCOPED_TRACE(std::string(chamada) + " " + std::to_string(passam));
            ASSERT_LT(passam, 100);
            std::atomic<int> vez = 0;
            codigo = PublicarSobre([&](const teste::Chamada& uma) -> DWORD {
                return uma.nome == chamada && vez++ >= passam ? ERROR_DISK_FULL : 0;
            });
            EXPECT_TRUE(codigo == kFeito || pasta_.Tem("saida/Forjal.troca") || Publicado() == antes_);
            EsperarInteira(true);
        }
        EXPECT_EQ(codigo, kFeito);
        EXPECT_EQ(Lista().itens.size(), 5U);
        EsperarProxima();
    }
    EXPECT_GT(interrompidas_, 4);
}

TEST_F(Forjal, ArquivoQueMudaNaoChegaALista) {
    Cliente({"Zu.exe=programa"});
    ASSERT_EQ(Publicar(1), kFeito);
    const auto publicado = Publicado();
    // Some words of progress come before the file is copied, the last one when everything has been.
    for (const std::string agora : {"prOgrama", "mais longo que antes", "curto"}) {
        Cliente({"Zu.exe=programa"});
        saida_.aoProgredir = [&] { pasta_.Escrever("cliente/Zu.exe", agora); };
        Diz(Publicar(2), kRecusado, "Zu.exe: mudou durante a publicação");
        EXPECT_EQ(Publicado(), publicado);
    }
}

TEST_F(Forjal, LimparApagaSoOQueOForjalPublicou) {
    pasta_.Escrever("saida/velho/pagina.html", "do servidor");
    Cliente({"velho/a/b=sai", "Grande=" + teste::Bytes(kMiB + 1), "trocado=do cliente"});
    ASSERT_EQ(Publicar(1), kFeito) << saida_;
    Apagar("cliente/velho");
    Apagar("cliente/trocado");
    ASSERT_EQ(Publicar(2, {"--partes-mib=1", "--muitas-remocoes"}), kFeito) << saida_;
    EXPECT_TRUE(pasta_.Tem("saida/velho/a/b") && pasta_.Tem("saida/Grande")) << "kept until --limpar";

    // Since then the server team has put a page of its own under an old name; and somebody has written to the
    // record, its own lines a second time, too.
    pasta_.Escrever("saida/trocado", "do website");
    pasta_.Escrever("fora", "oi");
    const std::string registro = pasta_.Ler("saida/Forjal.publicados");
    pasta_.Escrever("saida/Forjal.publicados",
                    registro + registro + "97D2BC6B\t2\t../fora\n97D2BC6B\t2\t..\\fora\nlixo\n\n");
    ASSERT_EQ(Publicar(3, {"--partes-mib=1", "--limpar"}), kFeito) << saida_;
    EXPECT_TRUE(pasta_.Tem("fora"));
    EXPECT_THAT(Publicado(), ElementsAre(Key("Forjal.publicados"), Key("Grande.blocos"), Key("Grande.p001"),
                                         Key("Grande.p002"), Key("UpdateList.txt"), Pair("trocado", "do website"),
                                         Key("velho/"), Pair("velho/pagina.html", "do servidor")));

    // Back in one piece: the parts are the old files now, and so is the index.
    for (const int seq : {4, 5}) {
        EXPECT_TRUE(pasta_.Tem("saida/Grande.p001") && pasta_.Tem("saida/Grande.blocos"))
            << "for whoever is downloading by the list before";
        ASSERT_EQ(Publicar(seq, {"--limpar", "--sem-blocos"}), kFeito) << saida_;
    }
    EXPECT_THAT(Publicado(), ElementsAre(Key("Forjal.publicados"), Key("Grande"), Key("UpdateList.txt"), Key("trocado"),
                                         Key("velho/"), Key("velho/pagina.html")));
    EXPECT_EQ(Conferir(), kFeito) << saida_;
}

TEST_F(Forjal, OQueOsJogadoresPerdemSaiDaListaPublicada) {
    for (int i = 0; i < 20; ++i)
        pasta_.Escrever("cliente/Data/" + std::to_string(i), "x");
    ASSERT_EQ(Publicar(1, {"--simular", "--saida=@\\cliente2"}), kFeito) << saida_;
    EXPECT_FALSE(pasta_.Tem("cliente2"));
    ASSERT_EQ(Publicar(1, {"--remover=de antes", "--remover=volta"}), kFeito) << saida_;
    pasta_.Escrever("cliente/volta", "de novo");
    pasta_.Escrever("cliente/Data/1", "mudado");
    pasta_.Escrever("remover.txt", "do arquivo\nDATA/19\n");
    Apagar("cliente/Data/19");
    Apagar("cliente/Data/18");
    std::vector<std::string> opcoes{"--remover-ausentes", "--remover-de=@\\remover.txt", "--simular"};
    const auto antes = pasta_.Tudo();
    Diz(Publicar(2, opcoes), kFeito,
        "2 copiado(s)\n1 novo(s), 1 mudado(s), 2 fora da lista; quem tem a versão publicada baixará até "
        "13 bytes (0.0 MiB); 4 caminho(s) a remover");
    EXPECT_EQ(pasta_.Tudo(), antes);
    opcoes.pop_back();
    ASSERT_EQ(Publicar(2, opcoes), kFeito) << saida_;
    EXPECT_THAT(Lista().remover, ElementsAre("do arquivo", "DATA/19", "Data/18", "de antes"));

    // More than a tenth of those that are left.
    Apagar("cliente/Data/17");
    Apagar("cliente/Data/16");
    Recusa(ParaPublicar(3, {"--remover-ausentes"}), "faltam 2 dos 19 arquivos");
    ASSERT_EQ(Publicar(3, {"--remover-ausentes", "--muitas-remocoes"}), kFeito) << saida_;
    EXPECT_EQ(Lista().remover.size(), 6U);
}

TEST_F(Forjal, ExclusoesPorNomePorCaminhoEDeSempre) {
    Cliente({".git/config=", "Data/.svn/x=", "Data/THUMBS.DB=", "Zu.pdb=", "Zu.pdb.txt=", "a.bak=", "Data/b.bak=",
             "Fontes/á.txt=", "Fontes2/y="});
    const std::pair<std::vector<std::string>, std::vector<std::string>> casos[]{
        {{}, {".git/", "Data/.svn/", "Data/THUMBS.DB", "Zu.pdb"}},
        {{"--sem-exclusoes"}, {}},
        {{"--sem-exclusoes", "--excluir=*.BAK"}, {"Data/b.bak", "a.bak"}},
        {{"--sem-exclusoes", "--excluir=data\\*.bak"}, {"Data/b.bak"}},
        {{"--sem-exclusoes", "--excluir=FONTES/", "--excluir=.git"}, {".git/", "Fontes/"}},
        {{"--sem-exclusoes", "--excluir=?.txt", "--excluir=b.bak/"}, {"Fontes/á.txt"}}};
    for (const auto& [opcoes, fora] : casos) {
        std::string linhas;
        for (const std::string& nome : fora)
            linhas += Formatar("excluído: {}\n", nome);
        Apagar("saida");
        ASSERT_EQ(Publicar(1, opcoes), kFeito) << saida_;
        linhas += Formatar("Publicado: seq 1, {} arquivo(s)", 9 - fora.size());
        EXPECT_TRUE(saida_.linhas.starts_with(linhas)) << PrintToString(opcoes) << saida_;
    }
}

TEST_F(Forjal, TrocaDeChaveEValidadeRenovada) {
    Cliente({"Zu.exe=programa"});
    ASSERT_EQ(Publicar(1, {"--remover=velho"}), kFeito);
    ASSERT_EQ(Rodar({"chaves", "--saida=@\\nova"}), kFeito);
    const std::string nova = "--chave=@\\nova\\lista.chave";
    Recusa(ParaPublicar(2, {nova}), "não confere com --chave");
    ASSERT_EQ(Publicar(2, {nova, "--chave-anterior=#\\lista.pub"}), kFeito) << saida_;
    EXPECT_EQ(Conferir(), kRecusado) << "signed with the new key from now on";
    EXPECT_EQ(Rodar({"conferir", "--publicado=@\\saida", "--pub=@\\nova\\lista.pub"}), kFeito) << saida_;

    const auto horas = [this] { return std::pair(Hora("saida/Zu.exe"), Hora("saida/Forjal.publicados")); };
    const auto antes = horas();
    std::vector<std::string> assinar = kAssinar;
    assinar.emplace_back("--chave-anterior=@\\nova\\lista.pub");
    ASSERT_EQ(Rodar(assinar), kFeito) << saida_;
    EXPECT_EQ(Conferir(), kFeito) << saida_;
    EXPECT_EQ(Lista().seq, 2);
    const auto resta = Lista().validade.value_or(update::Instante()) - std::chrono::system_clock::now();
    EXPECT_TRUE(resta > 71h && resta <= 72h);
    EXPECT_TRUE(horas() == antes);
    ASSERT_EQ(Publicar(3), kFeito) << saida_;
    EXPECT_FALSE(Lista().validade.has_value()) << "each publication says it anew";
}

TEST_F(Forjal, ConfiarNaDataNaoLeOQueFoiPublicado) {
    const std::vector<std::string> confiar{"--confiar-na-data", "--partes-mib=1"};
    Cliente({"a=antes", "g=" + teste::Bytes(kMiB + 1)});
    ASSERT_EQ(Publicar(1, confiar), kFeito) << saida_;
    const std::string lidoDoA(Lista().itens[0].sha256);

    // Changes a byte of the index, and signs for that.
    const auto mudarIndice = [this](std::size_t onde) {
        update::UpdateList lista = Lista();
        std::string indice = pasta_.Ler("saida/g.blocos");
        indice[onde] ^= 3;
        pasta_.Escrever("saida/g.blocos", indice);
        lista.blocos.at(0) = teste::Listar("g", indice);
        pasta_.Escrever("saida/UpdateList.txt", teste::Assinar(update::EscreverLista(lista)));
    };
    // What speaks against it, each alone: the file is read again and put right.
    const std::pair<std::function<void()>, int> motivos[]{
        {[&] { pasta_.Adulterar("cliente/a", "ANTES"); }, 2},
        {[&] { Apagar("saida/g.p002"); }, 1},
        {[&] { pasta_.Escrever("saida/g.p001", "curto"); }, 1},
        {[&] { pasta_.Escrever("cliente/g", teste::Bytes(kMiB + 1, 2)); }, 1},
        {[&] { pasta_.Adulterar("saida/g.blocos", "dano"); }, 1},
        {[&] { mudarIndice(4); }, 1},
        {[] {}, 2},
        {[&] { Apagar("saida/Forjal.publicados"); }, 0}};
    int seq = 2;
    for (const auto& [estragar, naoLidos] : motivos) {
        estragar();
        Diz(Publicar(seq++, confiar), kFeito, Formatar("{} arquivo(s) não lido(s)", naoLidos));
        EXPECT_EQ(Lista().itens[0].sha256 == lidoDoA, naoLidos > 0);
        EXPECT_EQ(Conferir(), kFeito) << saida_;
    }
    // An index that the list before does not name is made; no other part of the file speaks for one.
    Diz(Publicar(seq++, {"--confiar-na-data", "--partes-mib=1", "--sem-blocos"}), kFeito, "2 arquivo(s) não lido(s)");
    ASSERT_EQ(Publicar(seq++, confiar), kFeito) << saida_;
    EXPECT_EQ(Lista().blocos.size(), 1U);
    // One that is as the list says, and of another file.
    mudarIndice(40);
    Diz(Conferir(), kRecusado, "diferente: g.blocos (não é o índice deste arquivo)");

    // In one piece again: the parts' reading says nothing about it.
    ASSERT_EQ(Publicar(seq, {"--confiar-na-data"}), kFeito) << saida_;
    EXPECT_EQ(Conferir(), kFeito) << saida_;
}

// "2.pak" comes in two parts. The second column is in the refusal; empty: the
// names may be published.
TEST(ForjalNomes, RecusaOsInsegurosEOsQueSeEncontram) {
    const std::pair<std::vector<std::string>, std::string> casos[]{
        {{"Data/a", "Data/b", "data.a"}, ""},
        {{"aux.txt"}, "aux.txt: a lista"},
        {{"a\\b"}, "a\\b: a lista"},
        {{";assinatura"}, ";assinatura: a lista"},
        {{"sub/;x", "sub/UpdateList.txt"}, ""},
        {{"updatelist.TXT"}, "reservado"},
        {{"Forjal.novos/1"}, "reservado"},
        {{"Zu.exe", "zu.EXE"}, "mesmo nome"},
        {{"AÇÃO.txt", "ação.TXT"}, "mesmo nome"},
        {{"Ω/x", "ω/y"}, "Ω e ω: pastas"},
        {{"x", "X/y"}, "arquivo e pasta"},
        {{"a/b/c", "A/b/d"}, "pastas que só diferem"},
        {{"2.pak", "2.pak.p001"}, "mesmo nome"},
        {{"2.pak", "2.PAK.P002"}, "mesmo nome"},
        {{"2.pak", "2.pak.p002/dentro"}, "arquivo e pasta"},
        {{"1.pak", "1.PAK.Blocos"}, "mesmo nome"},
        {{"0.pak", "0.pak.blocos"}, ""},
        {{"999.pak"}, ""},
        {{"1000.pak"}, "1000.pak: daria 1000 partes, o limite é 999"}};
    for (const auto& [caminhos, recusa] : casos) {
        std::vector<ArquivoDoCliente> arquivos;
        for (const std::string& caminho : caminhos)
            arquivos.push_back({caminho, caminho.ends_with(".pak") ? std::stoull(caminho) * kMiB : 0});
        Dividir(arquivos, kMiB);
        PedirIndices(arquivos);
        const std::string recusas = PrintToString(RecusarNomes(arquivos));
        EXPECT_THAT(recusas, HasSubstr(recusa.empty() ? "{}" : recusa));
    }
    // The change's journal takes no longer path than the list.
    std::array<ArquivoDoCliente, 2> longos{{{std::string(393, 'x'), kMiB}, {std::string(394, 'x'), kMiB}}};
    PedirIndices(longos);
    EXPECT_TRUE(longos[0].comIndice && !longos[1].comIndice);
}

TEST(ForjalParalelo, CadaTrabalhoUmaVez) {
    std::vector<std::atomic<int>> vezes(2500);
    EmFatias(
        vezes.size(), [&](std::size_t i) { ++vezes[i]; }, [] {});
    EXPECT_THAT(vezes, Each(Eq(1)));
}

}  // namespace
}  // namespace zu::launcher::forjal
