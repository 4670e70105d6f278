#include <algorithm>
#include <fstream>
#include <mutex>
#include <set>

#include "core/texto.h"
#include "tests/suporte/oficina.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/publicar/copia.h"
#include "tools/forjal/varredura.h"

ZU_RECUSAVEL(L"kernel32", CreateDirectoryW, FALSE);
ZU_RECUSAVEL(L"kernel32", DeleteFileW, FALSE);
ZU_RECUSAVEL(L"kernel32", FlushFileBuffers, FALSE);
ZU_RECUSAVEL(L"kernel32", MoveFileExW, FALSE);
ZU_RECUSAVEL(L"kernel32", WriteFile, FALSE);

namespace zu::launcher::forjal {
namespace {

TEST_F(Forjal, ChavesNaoVaoParaAWeb) {
    std::string outra = chaves_->Ler("lista.chave");
    outra.back() ^= 1;
    const std::tuple<std::string, std::string, bool> casos[]{
        {"Data/Lista.CHAVE", "de nome", true},
        {"cópia de selo.segredo", "de nome", true},
        {"de marca.bin", outra, true},
        {"de conteúdo.bin", chaves_->Ler("selo.segredo"), true},
        {"outro.bin", std::string(1755, 'R'), false},
        {"outro segredo.bin", std::string(32, 'R'), false},
        {"pública.bin", chaves_->Ler("lista.pub"), false},
    };
    for (const auto& [nome, conteudo, recusada] : casos) {
        pasta_.Escrever("cliente/" + nome, conteudo);
        EXPECT_EQ(Publicar(1), recusada ? kRecusado : kFeito) << nome << saida_.erros;
        EXPECT_EQ(Contem(saida_.erros, nome + ": é uma chave"), recusada) << saida_.erros;
        EXPECT_EQ(pasta_.Tem("saida"), !recusada) << nome;
        Apagar("cliente");
        Apagar("saida");
    }
}

TEST_F(Forjal, PublicaSoOQueMudou) {
    const std::string grande = teste::Bytes(2 * kMiB + 5);
    pasta_.Escrever("cliente/Zu.exe", "programa");
    pasta_.Escrever("cliente/data/B.pak", grande);
    pasta_.Escrever("cliente/Data_x/é ç.txt", "acento");
    pasta_.Escrever("cliente/justo.pak", teste::Bytes(kMiB));
    pasta_.Escrever("cliente/vazio", "");
    for (const char* protegido : {"Config/Zu.ini", "Cache/x", "jogo.log"}) {
        pasta_.Escrever(std::string("cliente/") + protegido, "do jogador");
    }
    const std::vector<std::string> opcoes{"--partes-mib=1", "--versao=1.2 beta", "--chave-assets=k", "--remover=a\\b",
                                          "--remover=c"};
    ASSERT_EQ(Publicar(7, opcoes), kFeito) << saida_.erros;
    ASSERT_EQ(Conferir(), kFeito) << saida_.linhas << saida_.erros;

    const update::UpdateList lista = Lista();
    EXPECT_EQ(lista.seq, 7);
    EXPECT_EQ(lista.versao, "1.2 beta");
    EXPECT_EQ(lista.chaveAssets, "k");
    EXPECT_EQ(lista.remover, (std::vector<std::string>{"a/b", "c"}));
    std::vector<std::string> caminhos;
    for (const update::ItemLista& item : lista.itens)
        caminhos.push_back(item.caminho);
    EXPECT_EQ(caminhos, (std::vector<std::string>{"data/B.pak", "Data_x/é ç.txt", "justo.pak", "vazio", "Zu.exe"}));
    EXPECT_EQ(lista.itens[0].partes, 3U);
    EXPECT_EQ(lista.itens[2].partes, 0U);
    std::string junto;
    for (const char* parte : {".p001", ".p002", ".p003"})
        junto += pasta_.Ler(std::string("saida/data/B.pak") + parte);
    EXPECT_TRUE(junto == grande);
    EXPECT_EQ(pasta_.Ler("saida/data/B.pak.p003").size(), 5U);
    EXPECT_EQ(pasta_.Tudo().size(), 7U + 7U + 2U) << "client, published, list and record; nothing temporary";

    const std::vector<std::string> publicados{"saida/Zu.exe", "saida/vazio", "saida/data/B.pak.p001",
                                              "saida/data/B.pak.p002", "saida/data/B.pak.p003"};
    std::map<std::string, std::uint64_t> horas;
    for (const std::string& nome : publicados)
        horas[nome] = Hora(nome);
    const std::string textoDaLista = pasta_.Ler("saida/UpdateList.txt");
    Sleep(50);
    ASSERT_EQ(Publicar(7, opcoes), kFeito) << saida_.erros;
    for (const std::string& nome : publicados)
        EXPECT_EQ(Hora(nome), horas[nome]) << nome;
    EXPECT_EQ(pasta_.Ler("saida/UpdateList.txt"), textoDaLista);

    // Damage that neither size nor time shows is found and repaired, and only there.
    pasta_.Adulterar("saida/Zu.exe", "prOgrama");
    pasta_.Adulterar("saida/data/B.pak.p002", "dano");
    ASSERT_EQ(Publicar(8, opcoes), kFeito) << saida_.erros;
    EXPECT_TRUE(Contem(saida_.linhas, "2 copiado(s)")) << saida_.linhas;
    EXPECT_EQ(pasta_.Ler("saida/Zu.exe"), "programa");
    EXPECT_EQ(Hora("saida/data/B.pak.p001"), horas["saida/data/B.pak.p001"]);
    EXPECT_EQ(Conferir(), kFeito) << saida_.linhas << saida_.erros;
}

TEST_F(Forjal, ConferirDizOQueDifere) {
    pasta_.Escrever("cliente/Zu.exe", "programa");
    pasta_.Escrever("cliente/b.pak", teste::Bytes(kMiB + 9));
    const std::vector<std::pair<std::function<void()>, std::string>> danos{
        {[] {}, ""},
        {[&] { pasta_.Adulterar("saida/Zu.exe", "PROGRAMA"); }, "diferente: Zu.exe (CRC"},
        {[&] { pasta_.Escrever("saida/Zu.exe", "prog"); }, "diferente: Zu.exe (4 bytes, esperado 8)"},
        {[&] { Apagar("saida/Zu.exe"); }, "faltando: Zu.exe"},
        {[&] { Apagar("saida/b.pak.p002"); }, "faltando: b.pak.p002"},
        {[&] { pasta_.Adulterar("saida/b.pak.p001", "dano"); }, "diferente: b.pak em 2 parte(s) (CRC"},
        {[&] {
             // By way of another name: Wine takes a change of letter case alone for none.
             std::filesystem::rename(pasta_ / "saida/Zu.exe", pasta_ / "saida/meio");
             std::filesystem::rename(pasta_ / "saida/meio", pasta_ / "saida/ZU.EXE");
         },
         "ZU.EXE"},
        {[&] { pasta_.Adulterar("saida/UpdateList.txt", ";seq\t2"); }, "assinatura"},
        {[&] { pasta_.Escrever("saida/UpdateList.txt", ";seq\t1\nZu.exe\t0\t0\n"); }, "assinatura"},
        {[&] { Apagar("saida/UpdateList.txt"); }, "UpdateList.txt"},
    };
    for (const auto& [estragar, esperado] : danos) {
        Apagar("saida");
        ASSERT_EQ(Publicar(1, {"--partes-mib=1"}), kFeito) << saida_.erros;
        estragar();
        EXPECT_EQ(Conferir(), esperado.empty() ? kFeito : kRecusado) << esperado;
        EXPECT_TRUE(Contem(saida_.linhas + saida_.erros, esperado)) << esperado << saida_.linhas << saida_.erros;
    }
}

TEST_F(Forjal, RecusaSemTocarNaListaPublicada) {
    pasta_.Escrever("cliente/Zu.exe", "programa");
    pasta_.Escrever("cliente/pasta/a", "a");
    ASSERT_EQ(Publicar(5), kFeito) << saida_.erros;
    const std::string lista = pasta_.Ler("saida/UpdateList.txt");
    pasta_.Escrever("cliente/Zu.exe", "programa novo");

    const auto recusa = [&](int seq, const std::vector<std::string>& mais, const std::string& parte) {
        const auto antes = pasta_.Tudo();
        EXPECT_EQ(Publicar(seq, mais), kRecusado) << parte;
        EXPECT_TRUE(Contem(saida_.erros, parte)) << parte << "\n" << saida_.erros;
        EXPECT_EQ(pasta_.Tudo(), antes) << parte;
    };
    recusa(4, {}, "--seq: 4 é menor que o já publicado, 5");
    recusa(6, {"--remover=ZU.EXE"}, "--remover=ZU.EXE");
    recusa(6, {"--remover=pasta"}, "--remover=pasta");
    pasta_.Escrever("cliente/updatelist.TXT", "x");
    pasta_.Escrever("cliente/;x", "x");
    recusa(6, {}, "updatelist.TXT");
    recusa(6, {}, ";x");
    Apagar("cliente/updatelist.TXT");
    Apagar("cliente/;x");
    pasta_.Escrever("cliente/g", teste::Bytes(kMiB + 1));
    pasta_.Escrever("cliente/G.p002", "x");
    recusa(6, {"--partes-mib=1"}, "mesmo nome");
    EXPECT_EQ(Publicar(6), kFeito) << "nothing is split, so the names do not meet: " << saida_.erros;
    pasta_.Escrever("saida/UpdateList.txt", lista);
    {
        const HandleArquivo outra(CreateFileW((pasta_ / "saida/Forjal.trava").c_str(), GENERIC_WRITE, 0, nullptr,
                                              OPEN_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        EXPECT_EQ(Publicar(6), kRecusado);
        EXPECT_TRUE(Contem(saida_.erros, "em andamento")) << saida_.erros;
    }
    pasta_.Escrever("saida/UpdateList.txt", "<html>");
    recusa(6, {}, "não confere com --chave");
    ASSERT_EQ(Rodar({"chaves", "--saida=@\\outras"}), kFeito);
    pasta_.Escrever("saida/UpdateList.txt", lista);
    EXPECT_EQ(
        Rodar({"publicar", "--cliente=@\\cliente", "--saida=@\\saida", "--chave=@\\outras\\lista.chave", "--seq=9"}),
        kRecusado);
    EXPECT_EQ(pasta_.Ler("saida/UpdateList.txt"), lista);

    Apagar("cliente");
    pasta_.Escrever("cliente/jogo.log", "só o que é protegido");
    recusa(6, {}, "--cliente");
}

// A folder with one publication, and a client that changes it in every way: a file new, changed, in another letter
// case, in parts now, gone.
class ForjalTroca : public Forjal {
 protected:
    void SetUp() override {
        pasta_.Escrever("cliente/muda", "antes");
        pasta_.Escrever("cliente/Caixa/Muda", "x");
        pasta_.Escrever("cliente/grande", teste::Bytes(kMiB + 1));
        pasta_.Escrever("cliente/some", "some");
        pasta_.Escrever("cliente/igual", "igual");
        ASSERT_EQ(Publicar(1), kFeito) << saida_.erros;
        antes_ = pasta_.Tudo();
        Apagar("cliente/Caixa");
        Apagar("cliente/some");
        pasta_.Escrever("cliente/muda", "depois");
        pasta_.Escrever("cliente/caixa/muda", "x");
        pasta_.Escrever("cliente/nova/pasta/novo", "novo");
        std::filesystem::rename(pasta_ / "saida", pasta_ / "primeira");
    }
    void TearDown() override { teste::recusa = {}; }

    void Recomecar(const std::string& de) {
        Apagar("saida");
        std::filesystem::copy(pasta_ / de, pasta_ / "saida", std::filesystem::copy_options::recursive);
    }
    int PublicarDeNovo(int seq) { return Publicar(seq, {"--partes-mib=1", "--muitas-remocoes"}); }

    // Players are served: by the old list or the new one, or by the new one once the change is continued.
    void EsperarInteira(bool continuar) {
        if (pasta_.Tem("saida/Forjal.troca")) {
            ASSERT_EQ(Conferir(), kRecusado);
            EXPECT_EQ(saida_.erros, "publicação interrompida no meio da troca: rode Forjal publicar --continuar\n");
            ++interrompidas_;
            if (!continuar) return;
            ASSERT_EQ(Rodar({"publicar", "--continuar", "--saida=@\\saida"}), kFeito) << saida_.erros;
            EXPECT_EQ(Lista().seq, 2);
        }
        EXPECT_EQ(Conferir(), kFeito) << saida_.linhas << saida_.erros;
    }
    // And the next publication finds its way from there, and leaves nothing behind but what the list before it names.
    void EsperarProxima() {
        ASSERT_EQ(PublicarDeNovo(3), kFeito) << saida_.erros;
        EXPECT_EQ(Conferir(), kFeito) << saida_.linhas << saida_.erros;
        ASSERT_EQ(Publicar(4, {"--partes-mib=1", "--limpar"}), kFeito) << saida_.erros;
        std::set<std::string> nomes;
        for (const auto& entrada : std::filesystem::recursive_directory_iterator(pasta_ / "saida"))
            nomes.insert(ParaUtf8(entrada.path().lexically_relative(pasta_ / "saida").generic_wstring()));
        const std::set<std::string> certos{"Forjal.publicados", "UpdateList.txt", "caixa", "caixa/muda", "grande.p001",
                                           "grande.p002",       "igual",          "muda",  "nova",       "nova/pasta",
                                           "nova/pasta/novo"};
        EXPECT_EQ(nomes, certos);
    }

    std::map<std::string, std::string> antes_;
    int interrompidas_ = 0;
};

// What a kill leaves is what stands there at that moment.
TEST_F(ForjalTroca, MortaEmQualquerMomentoServeAosJogadores) {
    static std::function<void()> fotografar;
    int fotos = 0;
    fotografar = [&] {
        const std::filesystem::path foto = pasta_ / ("foto " + std::to_string(fotos++));
        std::filesystem::create_directory(foto);
        for (const auto& entrada : std::filesystem::recursive_directory_iterator(pasta_ / "saida")) {
            const std::filesystem::path copia = foto / entrada.path().lexically_relative(pasta_ / "saida");
            // The lock is gone with its process. A file that is being written cannot be read: it counts as torn.
            if (entrada.is_directory()) {
                std::filesystem::create_directory(copia);
            } else if (entrada.path().filename() != L"Forjal.trava" &&
                       CopyFileW(entrada.path().c_str(), copia.c_str(), TRUE) == 0) {
                std::ofstream(copia).put('x');
            }
        }
    };
    for (const std::string_view chamada : {"FlushFileBuffers", "MoveFileExW", "DeleteFileW"}) {
        Recomecar("primeira");
        static std::mutex um;
        teste::recusa = {.chamada = chamada, .ver = [] {
                             const std::lock_guard tranca(um);
                             fotografar();
                         }};
        ASSERT_EQ(PublicarDeNovo(2), kFeito) << saida_.erros;
        teste::recusa = {};
    }
    for (int i = 0; i < fotos; ++i) {
        SCOPED_TRACE(i);
        Recomecar("foto " + std::to_string(i));
        EsperarInteira(i % 2 == 0);
        EsperarProxima();
    }
    EXPECT_GT(interrompidas_, 8) << "of " << fotos;
}

// A full disk at the latest: whatever the system refuses, and from whichever call on.
TEST_F(ForjalTroca, RecusadaPeloSistemaServeAosJogadores) {
    for (const std::string_view chamada : {"WriteFile", "FlushFileBuffers", "CreateDirectoryW", "MoveFileExW"}) {
        int codigo = kRecusado;
        for (int passam = 0; codigo == kRecusado; ++passam) {
            SCOPED_TRACE(std::string(chamada) + " " + std::to_string(passam));
            ASSERT_LT(passam, 100);
            Recomecar("primeira");
            teste::recusa = {.chamada = chamada, .erro = ERROR_DISK_FULL, .antes = passam};
            codigo = PublicarDeNovo(2);
            teste::recusa = {};
            if (codigo == kRecusado && !pasta_.Tem("saida/Forjal.troca")) {
                for (const auto& [nome, conteudo] : antes_) {
                    if (nome.starts_with("saida/")) {
                        EXPECT_EQ(pasta_.Ler(nome), conteudo) << nome;
                    }
                }
                EXPECT_FALSE(pasta_.Tem("saida/nova") || pasta_.Tem("saida/Forjal.novos"));
            }
            EsperarInteira(true);
        }
        EXPECT_EQ(codigo, kFeito);
        EsperarProxima();
    }
    EXPECT_GT(interrompidas_, 4);
}

TEST_F(Forjal, ArquivoQueMudaNaoChegaALista) {
    pasta_.Escrever("cliente/Zu.exe", "programa");
    ASSERT_EQ(Publicar(1), kFeito);
    const std::string lista = pasta_.Ler("saida/UpdateList.txt");
    // The last word of progress comes when everything has been copied.
    saida_.aoProgredir = [&] {
        Sleep(20);
        pasta_.Escrever("cliente/Zu.exe", "prOgrama");
    };
    EXPECT_EQ(Publicar(2), kRecusado);
    EXPECT_TRUE(Contem(saida_.erros, "Zu.exe: mudou durante a publicação")) << saida_.erros;
    EXPECT_EQ(pasta_.Ler("saida/UpdateList.txt"), lista);

    // Longer or shorter than when it was listed.
    std::atomic<std::uint64_t> bytes = 0;
    std::atomic<bool> parar = false;
    for (const std::uint64_t tamanho : {7U, 9U}) {
        const Trecho trecho{.caminho = "novo", .inicio = 0, .tamanho = tamanho};
        const ResultadoDaCopia r = PrepararArquivo(pasta_ / "cliente/Zu.exe", {&trecho, 1}, pasta_ / "saida", nullptr,
                                                   {.bytes = bytes, .parar = parar});
        EXPECT_EQ(r.erro, kMudou) << tamanho;
    }
}

TEST_F(Forjal, LimparApagaSoOQueOForjalPublicou) {
    pasta_.Escrever("saida/index.html", "do servidor");
    pasta_.Escrever("saida/velho/pagina.html", "do servidor");
    pasta_.Escrever("cliente/fica", "fica");
    pasta_.Escrever("cliente/velho/a/b", "sai");
    pasta_.Escrever("cliente/Grande", teste::Bytes(kMiB + 1));
    pasta_.Escrever("cliente/trocado", "do cliente");
    ASSERT_EQ(Publicar(1), kFeito) << saida_.erros;
    Apagar("cliente/velho");
    Apagar("cliente/trocado");
    ASSERT_EQ(Publicar(2, {"--partes-mib=1", "--muitas-remocoes"}), kFeito) << saida_.erros;
    EXPECT_TRUE(pasta_.Tem("saida/velho/a/b") && pasta_.Tem("saida/Grande")) << "kept until --limpar";

    // Since then the server team has put a page of its own under an old name; and somebody has written to the
    // record.
    pasta_.Escrever("saida/trocado", "do website");
    pasta_.Escrever("fora", "oi");
    pasta_.Escrever("saida/Forjal.publicados",
                    pasta_.Ler("saida/Forjal.publicados") + "97D2BC6B\t2\t../fora\n97D2BC6B\t2\t..\\fora\nlixo\n\n");
    ASSERT_EQ(Publicar(3, {"--partes-mib=1", "--limpar"}), kFeito) << saida_.erros;
    std::set<std::string> nomes;
    for (const auto& [nome, conteudo] : pasta_.Tudo()) {
        if (!nome.starts_with("cliente/")) nomes.insert(nome);
    }
    EXPECT_EQ(nomes, (std::set<std::string>{"fora", "saida/Forjal.publicados", "saida/Grande.p001", "saida/Grande.p002",
                                            "saida/UpdateList.txt", "saida/fica", "saida/index.html", "saida/trocado",
                                            "saida/velho/pagina.html"}));
    EXPECT_FALSE(pasta_.Tem("saida/velho/a"));
    EXPECT_EQ(Conferir(), kFeito) << saida_.linhas;

    // Back in one piece: the parts are the old files now.
    for (const int seq : {4, 5}) {
        EXPECT_TRUE(pasta_.Tem("saida/Grande.p001")) << "for whoever is downloading by the list before";
        ASSERT_EQ(Publicar(seq, {"--limpar"}), kFeito) << saida_.erros;
    }
    EXPECT_TRUE(pasta_.Tem("saida/Grande") && !pasta_.Tem("saida/Grande.p001") && !pasta_.Tem("saida/Grande.p002"));
    EXPECT_EQ(pasta_.Ler("saida/trocado"), "do website");
    EXPECT_EQ(Conferir(), kFeito) << saida_.linhas;
}

TEST_F(Forjal, NomesPublicadosSeguemACaixaDoCliente) {
    pasta_.Escrever("cliente/Data/Zu.Pak", "x");
    ASSERT_EQ(Publicar(1), kFeito) << saida_.erros;
    Apagar("cliente");
    pasta_.Escrever("cliente/data/zu.pak", "x");
    ASSERT_EQ(Publicar(2, {"--limpar"}), kFeito) << saida_.erros;
    const auto tudo = pasta_.Tudo();
    EXPECT_TRUE(tudo.contains("saida/data/zu.pak")) << testing::PrintToString(tudo);
    EXPECT_EQ(tudo.size(), 4U);
}

TEST_F(Forjal, OQueOsJogadoresPerdemSaiDaListaPublicada) {
    for (int i = 0; i < 20; ++i)
        pasta_.Escrever("cliente/Data/" + std::to_string(i), "x");
    ASSERT_EQ(Publicar(1, {"--remover=de antes", "--remover=volta"}), kFeito) << saida_.erros;
    pasta_.Escrever("cliente/volta", "de novo");
    pasta_.Escrever("remover.txt", "do arquivo\nDATA/19\n");
    const auto sumir = [this](int qual) { Apagar("cliente/Data/" + std::to_string(qual)); };
    sumir(19);
    sumir(18);
    ASSERT_EQ(Publicar(2, {"--remover-ausentes", "--remover-de=@\\remover.txt"}), kFeito) << saida_.erros;
    EXPECT_EQ(Lista().remover, (std::vector<std::string>{"do arquivo", "DATA/19", "Data/18", "de antes"}));

    // More than a tenth of those that are left.
    sumir(17);
    sumir(16);
    const std::string lista = pasta_.Ler("saida/UpdateList.txt");
    EXPECT_EQ(Publicar(3, {"--remover-ausentes"}), kRecusado);
    EXPECT_TRUE(Contem(saida_.erros, "faltam 2 dos 19 arquivos")) << saida_.erros;
    EXPECT_EQ(pasta_.Ler("saida/UpdateList.txt"), lista);
    ASSERT_EQ(Publicar(3, {"--remover-ausentes", "--muitas-remocoes"}), kFeito) << saida_.erros;
    EXPECT_EQ(Lista().remover.size(), 6U);
}

TEST_F(Forjal, ExclusoesPorNomePorCaminhoEDeSempre) {
    const std::set<std::string> cliente{".git/config", "Data/.svn/x", "Data/THUMBS.DB", "Zu.pdb",   "Zu.pdb.txt",
                                        "a.bak",       "Data/b.bak",  "Fontes/á.txt",   "Fontes2/y"};
    for (const std::string& nome : cliente)
        pasta_.Escrever("cliente/" + nome, "x");
    const std::pair<std::vector<std::string>, std::set<std::string>> casos[]{
        {{}, {".git/config", "Data/.svn/x", "Data/THUMBS.DB", "Zu.pdb"}},
        {{"--sem-exclusoes"}, {}},
        {{"--sem-exclusoes", "--excluir=*.BAK"}, {"a.bak", "Data/b.bak"}},
        {{"--sem-exclusoes", "--excluir=data\\*.bak"}, {"Data/b.bak"}},
        {{"--sem-exclusoes", "--excluir=FONTES/", "--excluir=.git"}, {"Fontes/á.txt", ".git/config"}},
        {{"--sem-exclusoes", "--excluir=?.txt", "--excluir=b.bak/"}, {"Fontes/á.txt"}},
    };
    for (const auto& [opcoes, fora] : casos) {
        Apagar("saida");
        ASSERT_EQ(Publicar(1, opcoes), kFeito) << saida_.erros;
        std::set<std::string> esperados;
        std::ranges::set_difference(cliente, fora, std::inserter(esperados, esperados.end()));
        std::set<std::string> publicados;
        for (const update::ItemLista& item : Lista().itens)
            publicados.insert(item.caminho);
        EXPECT_EQ(publicados, esperados) << testing::PrintToString(opcoes);
        EXPECT_EQ(Contem(saida_.linhas, "excluído: "), !fora.empty()) << saida_.linhas;
    }
}

TEST_F(Forjal, TrocaDeChaveEValidadeRenovada) {
    pasta_.Escrever("cliente/Zu.exe", "programa");
    ASSERT_EQ(Publicar(1, {"--remover=velho"}), kFeito);
    ASSERT_EQ(Rodar({"chaves", "--saida=@\\nova"}), kFeito);
    const std::vector<std::string> nova{"publicar", "--cliente=@\\cliente", "--saida=@\\saida",
                                        "--chave=@\\nova\\lista.chave", "--seq=2"};
    EXPECT_EQ(Rodar(nova), kRecusado);
    std::vector<std::string> comAnterior = nova;
    comAnterior.emplace_back("--chave-anterior=#\\lista.pub");
    ASSERT_EQ(Rodar(comAnterior), kFeito) << saida_.erros;
    EXPECT_EQ(Conferir(), kRecusado) << "signed with the new key from now on";
    EXPECT_EQ(Rodar({"conferir", "--publicado=@\\saida", "--pub=@\\nova\\lista.pub"}), kFeito) << saida_.erros;

    const std::uint64_t hora = Hora("saida/Zu.exe");
    const std::uint64_t horaDoRegistro = Hora("saida/Forjal.publicados");
    ASSERT_EQ(Rodar({"publicar", "--so-assinar", "--saida=@\\saida", "--chave=#\\lista.chave", "--validade-dias=3",
                     "--chave-anterior=@\\nova\\lista.pub"}),
              kFeito)
        << saida_.erros;
    EXPECT_EQ(Conferir(), kFeito) << saida_.linhas;
    EXPECT_EQ(Lista().seq, 2);
    EXPECT_TRUE(Lista().validade.has_value());
    const auto resta = Lista().validade.value_or(update::Instante()) - std::chrono::system_clock::now();
    EXPECT_TRUE(resta > std::chrono::hours(71) && resta <= std::chrono::hours(72));
    EXPECT_EQ(Hora("saida/Zu.exe"), hora);
    EXPECT_EQ(Hora("saida/Forjal.publicados"), horaDoRegistro);
    ASSERT_EQ(Publicar(3), kFeito) << saida_.erros;
    EXPECT_FALSE(Lista().validade.has_value()) << "each publication says it anew";
}

TEST_F(Forjal, ConfiarNaDataNaoLeOQueFoiPublicado) {
    const std::vector<std::string> confiar{"--confiar-na-data", "--partes-mib=1"};
    pasta_.Escrever("cliente/a", "antes");
    pasta_.Escrever("cliente/g", teste::Bytes(kMiB + 1));
    ASSERT_EQ(Publicar(1, confiar), kFeito) << saida_.erros;
    const std::string lidoDoA = Lista().itens[0].sha256;
    pasta_.Adulterar("cliente/a", "ANTES");
    ASSERT_EQ(Publicar(2, confiar), kFeito) << saida_.erros;
    EXPECT_TRUE(Contem(saida_.linhas, "2 arquivo(s) não lido(s)")) << saida_.linhas;
    EXPECT_EQ(Lista().itens[0].sha256, lidoDoA);
    EXPECT_EQ(Conferir(), kFeito) << saida_.linhas;

    // What speaks against it, each alone: the file is read again and put right.
    const std::pair<std::function<void()>, std::string> motivos[]{
        {[&] { Apagar("saida/g.p002"); }, "1 arquivo(s) não lido(s)"},
        {[&] { pasta_.Escrever("saida/g.p001", "curto"); }, "1 arquivo(s) não lido(s)"},
        {[&] { pasta_.Escrever("cliente/g", teste::Bytes(kMiB + 1, 2)); }, "1 arquivo(s) não lido(s)"},
        {[&] { pasta_.Escrever("cliente/g", teste::Bytes(kMiB + 2, 2)); }, "1 arquivo(s) não lido(s)"},
        {[&] { Apagar("saida/Forjal.publicados"); }, "0 arquivo(s) não lido(s)"},
    };
    int seq = 3;
    for (const auto& [estragar, lidos] : motivos) {
        estragar();
        ASSERT_EQ(Publicar(seq++, confiar), kFeito) << saida_.erros;
        EXPECT_TRUE(Contem(saida_.linhas, lidos)) << saida_.linhas;
        EXPECT_EQ(Conferir(), kFeito) << saida_.linhas;
    }
    EXPECT_NE(Lista().itens[0].sha256, lidoDoA);
    // In one piece again: the parts' reading says nothing about it.
    ASSERT_EQ(Publicar(seq, {"--confiar-na-data"}), kFeito) << saida_.erros;
    EXPECT_EQ(Conferir(), kFeito) << saida_.linhas;
}

TEST_F(Forjal, SimularConfereEResumeSemGravar) {
    pasta_.Escrever("cliente/igual", "igual");
    pasta_.Escrever("cliente/muda", "antes");
    pasta_.Escrever("cliente/some", "x");
    EXPECT_EQ(Publicar(1, {"--simular"}), kFeito) << saida_.erros;
    EXPECT_FALSE(pasta_.Tem("saida"));
    ASSERT_EQ(Publicar(1), kFeito) << saida_.erros;
    pasta_.Escrever("cliente/muda", "depois");
    pasta_.Escrever("cliente/novo", "novo");
    Apagar("cliente/some");
    const auto antes = pasta_.Tudo();
    EXPECT_EQ(Publicar(2, {"--simular"}), kRecusado);
    EXPECT_TRUE(Contem(saida_.erros, "--muitas-remocoes")) << saida_.erros;
    EXPECT_EQ(Publicar(2, {"--simular", "--muitas-remocoes", "--remover-ausentes"}), kFeito) << saida_.erros;
    EXPECT_TRUE(Contem(saida_.linhas,
                       "1 novo(s), 1 mudado(s), 1 fora da lista; quem tem a versão publicada baixará 10 "
                       "bytes (0.0 MiB); 1 caminho(s) a remover"))
        << saida_.linhas;
    EXPECT_TRUE(Contem(saida_.linhas, "2 copiado(s)")) << saida_.linhas;
    EXPECT_EQ(pasta_.Tudo(), antes);
}

struct CasoDeNomes {
    std::vector<std::string> caminhos;
    std::string recusa;  // empty: may be published
};

TEST(ForjalNomes, RecusaOsInsegurosEOsQueSeEncontram) {
    const std::vector<CasoDeNomes> casos{
        {{"Data/a.pak", "Data/b.pak", "data.pak"}, ""},
        {{"aux.txt"}, "aux.txt: a lista"},
        {{"Data/com1"}, "Data/com1: a lista"},
        {{"a."}, "a.: a lista"},
        {{"a:b"}, "a:b: a lista"},
        {{"a\tb"}, "a lista"},
        {{"../a"}, "../a: a lista"},
        {{"a\\b"}, "a\\b: a lista"},
        {{";assinatura"}, ";assinatura: a lista"},
        {{"sub/;x", "sub/UpdateList.txt"}, ""},
        {{"FORJAL.publicados"}, "reservado"},
        {{"forjal.trava"}, "reservado"},
        {{"Forjal.novos/1"}, "reservado"},
        {{"Zu.exe", "zu.EXE"}, "mesmo nome"},
        {{"AÇÃO.txt", "ação.TXT"}, "mesmo nome"},
        {{"Ω/x", "ω/y"}, "Ω e ω: pastas"},
        {{"x", "X/y"}, "arquivo e pasta"},
        {{"a/b/c", "A/b/d"}, "pastas que só diferem"},
    };
    for (const auto& [caminhos, recusa] : casos) {
        std::vector<ArquivoDoCliente> arquivos;
        for (const std::string& caminho : caminhos)
            arquivos.push_back({.caminho = caminho});
        const std::set<std::string> recusas = RecusarNomes(arquivos);
        EXPECT_EQ(recusas.empty(), recusa.empty()) << testing::PrintToString(recusas);
        EXPECT_TRUE(Contem(testing::PrintToString(recusas), recusa)) << recusa << testing::PrintToString(recusas);
    }
}

TEST(ForjalNomes, PartesAteOLimiteESemEncontrarOutroNome) {
    std::vector<ArquivoDoCliente> arquivos{{.caminho = "x.pak", .tamanho = 999 * kMiB}};
    Dividir(arquivos, kMiB);
    EXPECT_EQ(arquivos[0].partes, 999U);
    EXPECT_TRUE(RecusarNomes(arquivos).empty());
    const std::vector<Trecho> trechos = TrechosDe(arquivos[0], kMiB);
    EXPECT_EQ(trechos.back().caminho, "x.pak.p999");
    EXPECT_EQ(trechos.back().inicio, 998 * kMiB);

    arquivos[0].tamanho += 1;
    Dividir(arquivos, kMiB);
    const std::set<std::string> muitas = RecusarNomes(arquivos);
    ASSERT_EQ(muitas.size(), 1U);
    EXPECT_TRUE(Contem(*muitas.begin(), "x.pak") && Contem(*muitas.begin(), "999")) << *muitas.begin();

    for (const char* outro : {"x.pak.p001", "X.PAK.P002", "x.pak.p002/dentro"}) {
        std::vector<ArquivoDoCliente> dois{{.caminho = "x.pak", .tamanho = 2 * kMiB}, {.caminho = outro}};
        EXPECT_TRUE(RecusarNomes(dois).empty()) << outro;
        Dividir(dois, kMiB);
        EXPECT_EQ(RecusarNomes(dois).size(), 1U) << outro;
    }
}

TEST(ForjalParalelo, CadaTrabalhoUmaVez) {
    for (const std::size_t quantos : {0U, 1U, 1000U}) {
        std::vector<std::uint64_t> tamanhos(quantos, 1);
        std::vector<std::atomic<int>> vezes(quantos);
        int avisos = 0;
        EmParalelo(
            tamanhos, [&](std::size_t i) { ++vezes[i]; }, [&] { ++avisos; });
        EXPECT_TRUE(std::ranges::all_of(vezes, [](const auto& v) { return v == 1; }));
        EXPECT_GE(avisos, 1);
    }
}

}  // namespace
}  // namespace zu::launcher::forjal
