#include <gmock/gmock.h>

#include "core/formato.h"
#include "core/hash.h"
#include "core/texto.h"
#include "tests/suporte/publicacao.h"
#include "update/atualizador.h"
#include "update/blocos.h"
#include "update/blocos_indice.h"

namespace zu::launcher {
namespace {

using namespace teste;
using namespace testing;

constexpr const char* kArquivo = "Data/f.pak";
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
        publicacao_ = {.seq = 2, .arquivos = {{kArquivo, kNovo}}, .partes = {{kArquivo, partes}}, .blocos = true};
        publicacao_.Servir(servidor_);
        lista_ = publicacao_.Lista();
        servidor_.EsquecerPedidos();
    }
    // What was said of the index that is now on the server.
    void PublicarIndice(const std::string& indice) {
        lista_.blocos[0].tamanho = indice.size();
        lista_.blocos[0].sha256 =
            ParaHex(Sha256Of({reinterpret_cast<const std::uint8_t*>(indice.data()), indice.size()}));
        servidor_.Definir(Formatar("{}.blocos", kArquivo), Servir(indice));
    }
    // One attempt at the item, by an updater of its own that may use the index; why it failed, if it did.
    std::string Baixar(bool comBlocos = true) {
        Atualizador atualizador;
        return Baixar(atualizador, comBlocos);
    }
    std::string Baixar(Atualizador& atualizador, bool comBlocos = true) {
        std::string erro;
        std::string sha256;
        if (comBlocos) atualizador.Blocos().Usar(lista_);
        vieram_ = 0;
        const bool ok =
            atualizador.BaixarItem(lista_.itens[0], pasta_ / (kArquivo + std::string(".upd")), vieram_, sha256, erro);
        return ok ? "baixado" : erro;
    }
    [[nodiscard]] std::string Feito() const { return pasta_.Ler(kArquivo + std::string(".upd")); }
    // Puts `roteiro` before what the server does with each file of the item.
    void Antes(const std::function<std::optional<Resposta>(const Pedido&, const Roteiro&)>& roteiro) {
        for (const std::string sufixo : {"", ".p001", ".p002", ".p003"}) {
            const std::size_t parte = (kNovo.size() + 2) / 3;
            const std::string conteudo =
                sufixo.empty() ? kNovo : kNovo.substr(parte * static_cast<std::size_t>(sufixo.back() - '1'), parte);
            servidor_.Definir(kArquivo + sufixo, [roteiro, bom = Servir(conteudo)](const Pedido& pedido) {
                const std::optional<Resposta> outra = roteiro(pedido, bom);
                return outra ? *outra : bom(pedido);
            });
        }
    }

    PastaTemporaria pasta_;
    Servidor servidor_;
    Publicacao publicacao_;
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
                Antes([&](const Pedido& pedido, const Roteiro& bom) -> std::optional<Resposta> {
                    if (++faixas != 3) return std::nullopt;
                    if (cancelado) atualizador.Cancelar();
                    Resposta resposta = bom(pedido);
                    resposta.anunciado = resposta.corpo.size();
                    resposta.corpo.resize(resposta.corpo.size() / 2);
                    resposta.fim = Fim::kDerrubar;
                    return resposta;
                });
                EXPECT_THAT(Baixar(atualizador), AnyOf("cancelado", StartsWith("download")));
                const std::string comeco = Feito();
                EXPECT_GT(comeco.size(), kMiB);
                EXPECT_TRUE(kNovo.starts_with(comeco));
                EXPECT_EQ(Baixar(comBlocos), "baixado");
                EXPECT_TRUE(Feito() == kNovo);
                // Only a run that has no index does not know where the parts of what is there begin.
                const std::size_t maximo = partes == 0 ? kNovo.size() - comeco.size() : kNovo.size();
                EXPECT_LE(vieram_, comBlocos ? 120'000U : maximo);
                EXPECT_EQ(pasta_.Tudo().size(), 2U) << "no part is left";
                std::filesystem::remove(pasta_ / (kArquivo + std::string(".upd")));
            }
        }
    }
}

// The other way about: a plain download is there, perhaps in parts; and blocks that are given up in the middle.
TEST_F(Reuso, PartesPresentesEPartesDevolvidas) {
    Publicar(3);
    const std::size_t parte = (kNovo.size() + 2) / 3;
    pasta_.Escrever("Data/f.pak.upd.p001", kNovo.substr(0, parte));
    pasta_.Escrever("Data/f.pak.upd.p002", kNovo.substr(parte, 10));
    EXPECT_EQ(Baixar(), "baixado");
    EXPECT_TRUE(Feito() == kNovo);
    EXPECT_LT(vieram_, 80'000U);
    EXPECT_EQ(pasta_.Tudo().size(), 2U);

    std::filesystem::remove(pasta_ / "Data/f.pak.upd");
    Antes([&](const Pedido& pedido, const Roteiro&) -> std::optional<Resposta> {
        const bool faixaDeBlocos = !pedido.Cabecalho("range").ends_with("-") && !pedido.Cabecalho("range").empty();
        if (faixaDeBlocos && pedido.caminho.ends_with("3")) return Resposta{.status = 403};
        return std::nullopt;
    });
    EXPECT_EQ(Baixar(), "baixado");
    EXPECT_TRUE(Feito() == kNovo);
    EXPECT_LT(vieram_, parte + 80'000U) << "the first two parts were not asked for again";
    EXPECT_EQ(pasta_.Tudo().size(), 2U);
}

// Whatever an index says: the right file in the same attempt, nothing tried twice, never twice the bytes.
TEST_F(Reuso, IndiceHostil) {
    const auto indiceDe = [](const std::string& conteudo, std::uint64_t parte = 0) {
        update::EscritorDeIndice escritor(conteudo.size(), parte);
        escritor.Alimentar(conteudo.data(), conteudo.size());
        return escritor.Terminar();
    };
    Publicar();
    const std::string bom = publicacao_.Indice(kArquivo);
    const std::string outro = kVelho + kVelho.substr(0, kNovo.size() - kVelho.size());
    const std::pair<const char*, std::string> casos[] = {
        {"garbage", Bytes(bom.size())},
        {"nothing", ""},
        {"of a file of another size", indiceDe(kVelho)},
        {"in parts", indiceDe(kNovo, kMiB)},
        {"that claims what is not so", indiceDe(outro)},
        {"of nothing in common", indiceDe(Bytes(kNovo.size(), 9))},
    };
    const auto conferir = [&] {
        Atualizador atualizador;
        EXPECT_EQ(Baixar(atualizador), "baixado");
        EXPECT_TRUE(Feito() == kNovo);
        EXPECT_LE(vieram_, kNovo.size() + kNovo.size() / 50);
        std::filesystem::remove(pasta_ / "Data/f.pak.upd");
        servidor_.EsquecerPedidos();
        EXPECT_EQ(Baixar(atualizador), "baixado");
        EXPECT_TRUE(servidor_.Pedidos("Data/f.pak.blocos").empty());
        std::filesystem::remove(pasta_ / "Data/f.pak.upd");
    };
    for (const auto& [nome, indice] : casos) {
        SCOPED_TRACE(nome);
        PublicarIndice(indice);
        conferir();
    }
    PublicarIndice(bom);
    for (const Resposta& resposta :
         {Resposta{.status = 404}, Resposta{.corpo = bom + "x"}, Resposta{.corpo = Bytes(bom.size())},
          Resposta{.corpo = "ZUBL", .fim = Fim::kDerrubar}}) {
        SCOPED_TRACE(resposta.corpo.substr(0, 4));
        servidor_.Definir("Data/f.pak.blocos", resposta);
        conferir();
    }
}

TEST_F(Reuso, FaixaHostil) {
    using Estrago = std::function<void(Resposta&)>;
    const std::tuple<const char*, Estrago, std::uint64_t> casos[] = {
        {"all of it", [](Resposta& r) { r = {.corpo = kNovo}; }, kNovo.size()},
        {"no status for it", [](Resposta& r) { r.status = 200; }, kNovo.size()},
        {"refused", [](Resposta& r) { r = {.status = 416}; }, kNovo.size()},
        {"another place",
         [](Resposta& r) { r.cabecalhos["Content-Range"] = "bytes 0-4095/" + std::to_string(kNovo.size()); },
         kNovo.size()},
        {"another file", [](Resposta& r) { r.cabecalhos["Content-Range"] += "0"; }, kNovo.size()},
        {"no place", [](Resposta& r) { r.cabecalhos.clear(); }, kNovo.size()},
        {"short", [](Resposta& r) { r.corpo.pop_back(); }, kNovo.size()},
        {"long", [](Resposta& r) { r.corpo += "x"; }, kNovo.size()},
        {"short to the end", [](Resposta& r) { r.corpo.pop_back(), r.fim = Fim::kFechar; }, kNovo.size()},
        {"long to the end", [](Resposta& r) { r.corpo += "x", r.fim = Fim::kFechar; }, kNovo.size()},
        {"dropped", [](Resposta& r) { r.anunciado = r.corpo.size(), r.corpo.clear(), r.fim = Fim::kDerrubar; },
         kNovo.size()},
        {"other bytes", [](Resposta& r) { r.corpo = Bytes(r.corpo.size(), 99); }, 2 * kNovo.size()},
    };
    for (const auto& [nome, estragar, maximo] : casos) {
        SCOPED_TRACE(nome);
        Publicar();
        Antes([estrago = estragar](const Pedido& pedido, const Roteiro& bom) -> std::optional<Resposta> {
            const std::string faixa = pedido.Cabecalho("range");
            if (faixa.empty() || faixa.ends_with("-")) return std::nullopt;
            Resposta resposta = bom(pedido);
            estrago(resposta);
            return resposta;
        });
        EXPECT_EQ(Baixar(), "baixado");
        EXPECT_TRUE(Feito() == kNovo);
        EXPECT_LE(vieram_, maximo);
        std::filesystem::remove(pasta_ / "Data/f.pak.upd");
    }
}

// Others may use the old file, keep it for themselves, or change it after it has been searched.
TEST_F(Reuso, ArquivoVelhoEmUsoPresoOuMudado) {
    Publicar();
    const HandleArquivo emUso(CreateFileW((pasta_ / kArquivo).c_str(), GENERIC_READ | GENERIC_WRITE,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_EQ(Baixar(), "baixado");
    EXPECT_LT(vieram_, 100'000U);
    std::filesystem::remove(pasta_ / "Data/f.pak.upd");
    Antes([&](const Pedido&, const Roteiro&) -> std::optional<Resposta> {
        DWORD escritos = 0;
        SetFilePointer(emUso.Valor(), -1, nullptr, FILE_END);
        WriteFile(emUso.Valor(), "xx", 2, &escritos, nullptr);
        return std::nullopt;
    });
    EXPECT_EQ(Baixar(), "baixado");
    EXPECT_TRUE(Feito() == kNovo);
    EXPECT_GT(vieram_, 2 * kMiB);
    EXPECT_LE(vieram_, kNovo.size());
}

TEST_F(Reuso, SemArquivoVelhoQueSeLeiaNadaSePede) {
    Publicar();
    const HandleArquivo preso = pasta_.Prender(kArquivo, 0);
    EXPECT_EQ(Baixar(), "baixado");
    EXPECT_EQ(servidor_.QuantosPedidos(), 1U);
}

}  // namespace
}  // namespace zu::launcher
