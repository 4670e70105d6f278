#include <gmock/gmock.h>

#include "core/formato.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"
#include "update/atualizador.h"
#include "update/blocos.h"

ZU_RECUSAVEL(L"kernel32", GetFileTime, FALSE);

namespace zu::launcher {
namespace {

using namespace teste;
using namespace testing;

const std::string kArquivo = "Data/f.pak";
const std::string kBaixado = "Data/f.pak.upd";
constexpr std::size_t kMiB = 1 << 20;

const std::string kVelho = Bytes(3 * kMiB);

// Here and there something else, something more, something less, and a new end: four ranges.
std::string Novo() {
    std::string novo = kVelho;
    for (const std::size_t onde : {kMiB, 5 * kMiB / 2})
        novo.replace(onde, 4096, Bytes(4096, 2));
    novo.insert(100'000, Bytes(1000, 3));
    novo.erase(2 * kMiB, 10'000);
    return novo + Bytes(50'000, 4);
}

const std::string kNovo = Novo();

// A client with the old file, and a server with the new one and its index.
class Reuso : public Test {
 protected:
    Reuso() {
        Configurar(pasta_.Caminho(), servidor_.Url());
        pasta_.Escrever(kArquivo, kVelho);
    }

    void Publicar(std::uint32_t partes = 0) {
        const Publicacao publicacao{
            .seq = 2, .arquivos = {{kArquivo, kNovo}}, .partes = {{kArquivo, partes}}, .blocos = true};
        publicacao.Servir(servidor_);
        lista_ = publicacao.Lista();
    }
    // One attempt at the item by an updater that may use the index; why it failed, if it did.
    std::string Baixar(Atualizador& atualizador, bool comBlocos = true) {
        std::string erro;
        ItemBaixado baixado;
        const auto destino = pasta_ / kBaixado;
        if (comBlocos) atualizador.Blocos().Usar(lista_);
        vieram_ = 0;
        return atualizador.BaixarItem(lista_.itens[0], destino, vieram_, baixado, erro) &&
                       atualizador.DescarregarItem(destino, baixado, erro)
                   ? "baixado"
                   : erro;
    }
    // One that gets the new file, which it takes away again; how many bytes came.
    std::uint64_t BaixarNovo(Atualizador& atualizador, bool comBlocos = true) {
        EXPECT_EQ(Baixar(atualizador, comBlocos), "baixado");
        EXPECT_TRUE(pasta_.Ler(kBaixado) == kNovo);
        EXPECT_EQ(pasta_.Tudo().size(), 2U) << "no part is left";
        std::filesystem::remove(pasta_ / kBaixado);
        return vieram_;
    }
    std::uint64_t BaixarNovo(bool comBlocos = true) { return BaixarNovo(*std::make_unique<Atualizador>(), comBlocos); }
    [[nodiscard]] static bool DeBlocos(const Pedido& pedido) {
        const std::string faixa = pedido.Cabecalho("range");
        return !faixa.empty() && !faixa.ends_with("-");
    }
    // Lets `mentira` change what the server answers for the file or its parts.
    void Mentir(const Mentira& mentira) {
        if (lista_.itens[0].partes == 0) servidor_.Mentir(kArquivo, mentira);
        for (std::uint32_t i = 1; i <= lista_.itens[0].partes; ++i)
            servidor_.Mentir(kArquivo + SufixoDaParte(i), mentira);
    }

    PastaTemporaria pasta_;
    Servidor servidor_;
    update::UpdateList lista_;
    std::atomic<std::uint64_t> vieram_ = 0;
};

// Faults: bytes that stand on the disk come all the same, are not shown as done, or are taken for the network's.
TEST_F(Reuso, UmaAtualizacaoBuscaSoOQueMudou) {
    Publicar();
    Atualizador atualizador;
    atualizador.Rodar(false);
    EXPECT_EQ(atualizador.Estado().texto, "Atualização concluída: 1 arquivo(s) novo(s).");
    EXPECT_TRUE(pasta_.Ler(kArquivo) == kNovo);
    EXPECT_EQ(atualizador.Estado().bytesFeitos, kNovo.size());
    EXPECT_EQ(servidor_.Pedidos(kArquivo).size(), 4U);
    for (const Pedido& pedido : servidor_.Pedidos(kArquivo))
        EXPECT_THAT(pedido.Cabecalho("range"), MatchesRegex("bytes=\\d+-\\d+"));
    EXPECT_THAT(LinhasDoLog(pasta_), Contains("[update] Data/f.pak: 3.0 de 3.0 MB já estavam no disco").Times(1));
}

// Whatever ends an attempt, what has come is the new file's beginning, and either way goes on from there.
TEST_F(Reuso, InterrompidoEContinuadoDosDoisJeitos) {
    for (const std::uint32_t partes : {0U, 3U}) {
        for (const bool cancelado : {false, true}) {
            for (const bool comBlocos : {true, false}) {
                SCOPED_TRACE(Formatar("{} {} {}", partes, cancelado ? 1 : 0, comBlocos ? 1 : 0));
                Publicar(partes);
                Atualizador atualizador;
                int faixas = 0;
                Mentir([&](const Pedido&, Resposta& resposta) {
                    if (++faixas != 3) return;
                    if (cancelado) atualizador.Cancelar();
                    resposta.anunciado = resposta.corpo.size();
                    resposta.corpo.resize(resposta.corpo.size() / 2);
                    resposta.fim = Fim::kDerrubar;
                });
                EXPECT_THAT(Baixar(atualizador), AnyOf("cancelado", StartsWith("download")));
                const std::string comeco = pasta_.Ler(kBaixado);
                EXPECT_GT(comeco.size(), kMiB);
                EXPECT_TRUE(kNovo.starts_with(comeco));
                if (comBlocos && !cancelado) {
                    // The line that is down is no reason to fetch all of it once it is back.
                    servidor_.Definir("Data/f.pak.blocos", {.anunciado = 9, .fim = Fim::kDerrubar});
                    EXPECT_NE(Baixar(atualizador), "baixado");
                    Publicar(partes);
                    EXPECT_LE(BaixarNovo(atualizador), 120'000U);
                    continue;
                }
                // Only a run that has no index does not know where the parts of what is there begin.
                const std::size_t maximo = partes == 0 ? kNovo.size() - comeco.size() : kNovo.size();
                EXPECT_LE(BaixarNovo(comBlocos), comBlocos ? 120'000U : maximo);
            }
        }
    }
}

// The other way about: a plain download is there, perhaps in parts, perhaps another version's, which counts as far as
// it is the new file's beginning; and blocks that are given up in the middle.
TEST_F(Reuso, PartesPresentesEPartesDevolvidas) {
    for (const std::uint32_t partes : {0U, 3U}) {
        Publicar(partes);
        pasta_.Escrever(partes == 0 ? kBaixado : kBaixado + ".p001", kVelho.substr(0, kMiB));
        EXPECT_LE(BaixarNovo(), 120'000U);
    }
    for (const bool preso : {false, true}) {
        pasta_.Escrever(kBaixado, kNovo.substr(0, kNovo.size() - 1000));
        const HandleArquivo velho = preso ? pasta_.Prender(kArquivo, 0) : HandleArquivo();
        EXPECT_LT(BaixarNovo(), 2000U) << "only the index tells where the parts begin";
    }
    const std::size_t parte = (kNovo.size() + 2) / 3;
    pasta_.Escrever("Data/f.pak.upd.p001", kNovo.substr(0, parte));
    pasta_.Escrever("Data/f.pak.upd.p002", kNovo.substr(parte, 10));
    EXPECT_LT(BaixarNovo(), 80'000U);

    Mentir([](const Pedido& pedido, Resposta& resposta) {
        if (DeBlocos(pedido) && pedido.caminho.ends_with("3")) resposta = {.status = 403};
    });
    EXPECT_LT(BaixarNovo(), parte + 80'000U) << "the first two parts were not asked for again";
}

// Whatever an index says: the right file in the same attempt, nothing tried twice, never twice the bytes.
TEST_F(Reuso, IndiceHostil) {
    Publicar();
    const std::string bom = IndiceDe(kNovo);
    const std::string outro = kVelho + kVelho.substr(0, kNovo.size() - kVelho.size());
    // The index that is published, and what the server answers instead.
    const std::tuple<const char*, std::string, std::optional<Resposta>> casos[] = {
        {"garbage", Bytes(bom.size()), {}},
        {"of a file of another size", IndiceDe(kVelho), {}},
        {"in parts", IndiceDe(kNovo, kMiB), {}},
        {"that claims what is not so", IndiceDe(outro), {}},
        {"of nothing in common", IndiceDe(Bytes(kNovo.size(), 9)), {}},
        {"missing", bom, Resposta{.status = 404}},
        {"too long", bom, Resposta{.corpo = bom + "x"}},
        {"another one", bom, Resposta{.corpo = Bytes(bom.size())}},
        {"dropped", bom, Resposta{.corpo = "ZUBL", .fim = Fim::kDerrubar}}};
    for (const auto& [nome, indice, resposta] : casos) {
        SCOPED_TRACE(nome);
        lista_.blocos[0] = Listar(kArquivo, indice);
        servidor_.Definir("Data/f.pak.blocos", resposta.value_or(Resposta{.corpo = indice}));
        Atualizador atualizador;
        EXPECT_LE(BaixarNovo(atualizador), kNovo.size() + kNovo.size() / 50);
        servidor_.EsquecerPedidos();
        BaixarNovo(atualizador);
        EXPECT_TRUE(servidor_.Pedidos("Data/f.pak.blocos").empty());
    }
}

TEST_F(Reuso, FaixaHostil) {
    // How it is spoiled, and how many times the file may come.
    const std::tuple<const char*, void (*)(Resposta&), std::size_t> casos[] = {
        {"all of it", [](Resposta& r) { r = {.corpo = kNovo}; }, 1},
        {"no status for it", [](Resposta& r) { r.status = 200; }, 1},
        {"refused", [](Resposta& r) { r = {.status = 416}; }, 1},
        {"another place",
         [](Resposta& r) { r.cabecalhos["Content-Range"] = "bytes 0-4095/" + std::to_string(kNovo.size()); }, 1},
        {"another file", [](Resposta& r) { r.cabecalhos["Content-Range"] += "0"; }, 1},
        {"short", [](Resposta& r) { r.corpo.pop_back(); }, 1},
        {"long", [](Resposta& r) { r.corpo += "x"; }, 1},
        {"short to the end", [](Resposta& r) { r.corpo.pop_back(), r.fim = Fim::kFechar; }, 1},
        {"long to the end", [](Resposta& r) { r.corpo += "x", r.fim = Fim::kFechar; }, 1},
        {"dropped", [](Resposta& r) { r.anunciado = r.corpo.size(), r.corpo.clear(), r.fim = Fim::kDerrubar; }, 1},
        {"other bytes", [](Resposta& r) { r.corpo = Bytes(r.corpo.size(), 99); }, 2}};
    for (const auto& [nome, estragar, maximo] : casos) {
        SCOPED_TRACE(nome);
        Publicar();
        Mentir([estragar = estragar](const Pedido& pedido, Resposta& resposta) {
            if (DeBlocos(pedido)) estragar(resposta);
        });
        EXPECT_LE(BaixarNovo(), maximo * kNovo.size());
    }
}

// Others may use the old file, keep it for themselves, or change it after it has been searched; and there may be no
// memory for the search.
TEST_F(Reuso, ArquivoVelhoEmUsoPresoOuMudado) {
    Publicar();
    HandleArquivo deOutro = pasta_.Prender(kArquivo, 0);
    BaixarNovo();
    EXPECT_EQ(servidor_.QuantosPedidos(), 1U) << "with nothing to read the index is not asked for";
    deOutro.Fechar();
    deOutro = pasta_.Prender(kArquivo, FILE_SHARE_READ | FILE_SHARE_WRITE, GENERIC_READ | GENERIC_WRITE);
    EXPECT_LT(BaixarNovo(), 100'000U);
    const std::function<DWORD(const Chamada&)> semMemoria = [vez = 0](const Chamada& chamada) mutable -> DWORD {
        return chamada.nome == "GetFileTime" && ++vez == 3 ? throw std::bad_alloc() : 0;
    };
    recusa.porta = &semMemoria;
    EXPECT_EQ(BaixarNovo(), kNovo.size());
    recusa.porta = nullptr;
    Mentir([&](const Pedido&, Resposta&) {
        DWORD escritos = 0;
        SetFilePointer(deOutro.Valor(), -1, nullptr, FILE_END);
        WriteFile(deOutro.Valor(), "xx", 2, &escritos, nullptr);
    });
    EXPECT_THAT(BaixarNovo(), AllOf(Gt(2 * kMiB), Le(kNovo.size())));

    pasta_.Escrever(kBaixado, "");
    deOutro = pasta_.Prender(kBaixado);
    Atualizador atualizador;
    EXPECT_THAT(Baixar(atualizador), AllOf(StartsWith("não foi possível gravar "), EndsWith(" (erro 32)")));
}

}  // namespace
}  // namespace zu::launcher
