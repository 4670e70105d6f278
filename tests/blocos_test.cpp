#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "update/blocos_plano.h"

namespace zu::launcher::update {
namespace {

constexpr std::size_t kBloco = 1024;  // of every file here

std::mt19937_64 sorteio(20'261'121);

std::size_t Sortear(std::size_t ate) {
    return std::uniform_int_distribution<std::size_t>(0, ate)(sorteio);
}

// Content of a kind: random, of few different bytes, periodic, all zero.
std::string Conteudo(std::size_t tamanho, int tipo = 0) {
    std::string bytes(tamanho, '\0');
    const std::string semente = tipo == 2 ? Conteudo(Sortear(3000) + 1) : "";
    for (std::size_t i = 0; i < tamanho; ++i) {
        if (tipo == 0) bytes[i] = static_cast<char>(sorteio());
        if (tipo == 1) bytes[i] = static_cast<char>('a' + sorteio() % 2);
        if (tipo == 2) bytes[i] = semente[i % semente.size()];
    }
    return bytes;
}

std::string IndiceDe(const std::string& novo, std::uint64_t parte = 0) {
    EscritorDeIndice escritor(novo.size(), parte);
    for (std::size_t i = 0; i < novo.size();) {
        const std::size_t pedaco = std::min(Sortear(3 * kBloco), novo.size() - i);
        escritor.Alimentar(novo.data() + i, pedaco);
        i += pedaco;
    }
    return escritor.Terminar();
}

// Puts the new file together behind its first `presentes` bytes, as the plan says.
Plano Reunir(const std::string& velho, const std::string& novo, std::size_t presentes = 0, std::uint64_t parte = 0) {
    IndiceDeBlocos indice;
    EXPECT_TRUE(LerIndice(IndiceDe(novo, parte), indice));
    std::vector<std::uint64_t> onde;
    std::string_view resto = velho;
    EXPECT_TRUE(BuscarBlocos(
        indice,
        [&](std::span<std::uint8_t> bytes, std::size_t& lidos) {
            lidos = resto.copy(reinterpret_cast<char*>(bytes.data()), bytes.size());
            resto.remove_prefix(lidos);
            return true;
        },
        onde));
    Plano plano = Planejar(indice, onde, presentes);
    std::string feito = novo.substr(0, presentes);
    std::uint64_t vieram = 0;
    const auto lerVelho = [&](std::uint64_t lugar, std::span<std::uint8_t> bytes) {
        return velho.copy(reinterpret_cast<char*>(bytes.data()), bytes.size(), lugar) == bytes.size();
    };
    const auto buscar = [&](const Trecho& t) {
        EXPECT_EQ(t.inicio, feito.size());
        EXPECT_TRUE(parte == 0 || t.inicio / parte == (t.inicio + t.tamanho - 1) / parte);
        feito.append(novo, t.inicio, t.tamanho);
        vieram += t.tamanho;
        return true;
    };
    const auto escrever = [&](std::span<const std::uint8_t> bytes) {
        feito.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return true;
    };
    EXPECT_TRUE(Montar(plano, {lerVelho, buscar, escrever}));
    EXPECT_TRUE(feito == novo);
    EXPECT_EQ(plano.daRede, vieram);
    EXPECT_EQ(plano.daRede + plano.doDisco, novo.size() - presentes);
    return plano;
}

// A piece goes or stays, in whose place or elsewhere comes nothing, the piece, zeros or something else; or the rest
// goes.
std::string Editar(std::string texto) {
    const std::size_t de = Sortear(texto.size());
    const std::string pedaco = texto.substr(de, Sortear(5000));
    const std::string novos[] = {"", pedaco, std::string(pedaco.size(), '\0'),
                                 Conteudo(Sortear(3000), static_cast<int>(Sortear(3)))};
    if (Sortear(6) == 0) return texto.substr(0, de);
    if (Sortear(1) == 0) texto.erase(de, pedaco.size());
    return texto.insert(Sortear(1) == 0 ? de : Sortear(texto.size()), novos[Sortear(3)]);
}

TEST(Blocos, QualquerEdicaoDeQualquerPrefixo) {
    for (int volta = 0; volta < 200; ++volta) {
        SCOPED_TRACE(volta);
        const std::string velho = Conteudo(Sortear(150'000), volta % 4);
        std::string novo = velho;
        for (std::size_t edicoes = Sortear(5); edicoes > 0; --edicoes)
            novo = Editar(std::move(novo));
        if (novo.empty()) novo.push_back('x');
        for (const std::size_t presentes :
             {std::size_t{0}, Sortear(novo.size()), Sortear(novo.size() - 1) / kBloco * kBloco})
            Reunir(velho, novo, presentes, volta % 2 == 0 ? 0 : Sortear(100'000) + novo.size() / 999 + 1);
    }
}

// What must be found again, and not only put together rightly: the most bytes that may come from the network.
TEST(Blocos, OQueSeAproveita) {
    const std::string a = Conteudo(40 * kBloco);
    const std::string b = Conteudo(40 * kBloco);
    const std::string zeros(300 * kBloco, '\0');
    const std::string longo = Conteudo(2500 * kBloco);
    std::string ultimoByte = a;
    ++ultimoByte[20 * kBloco - 1];
    const std::tuple<const char*, std::string, std::string, std::size_t> casos[] = {
        {"the same", a, a, 0},
        {"the same, with a short end", a + "fim", a + "fim", 0},
        {"a byte before", a, "x" + a, kBloco},
        {"over the edges of what is read at once", "x" + longo, longo, 0},
        {"a byte less", a, a.substr(1), kBloco - 1},
        {"cut off", a + b, a.substr(0, a.size() - 5), 0},
        {"a new end", a, a + "fim", 3},
        {"the end alone", Conteudo(1200 * kBloco) + a.substr(0, 500), b + a.substr(0, 500), b.size()},
        {"a block's last byte", a, ultimoByte, kBloco},
        {"halves change places", a + b, b + a, 0},
        {"moved by odd bytes", a + b, b.substr(0, b.size() - 7) + a + b.substr(b.size() - 7), 3 * kBloco},
        {"zeros from few", a + zeros.substr(0, 2 * kBloco) + b, a + zeros + b, 0},
        {"periodic", zeros, zeros.substr(0, 50 * kBloco) + a, a.size()},
        {"nothing", b, a, a.size()},
        {"no old file", "", a, a.size()}};
    for (const auto& [nome, velho, novo, bytes] : casos) {
        SCOPED_TRACE(nome);
        EXPECT_LE(Reunir(velho, novo).daRede, bytes);
    }
}

TEST(Blocos, PlanoJuntaOQueFicaPertoEReconheceOQueNaoVale) {
    IndiceDeBlocos indice{
        .tamanho = 100'000 * kBloco, .bloco = kBloco, .largura = 5, .somas = std::vector<Soma>(100'000)};
    std::vector<std::uint64_t> onde(100'000);
    for (std::size_t i = 0; i < onde.size(); ++i)
        onde[i] = i * kBloco;
    onde[10] = onde[27] = onde[45] = kNaoAchado;
    Plano plano = Planejar(indice, onde, 10 * kBloco + 1);
    const std::vector<Trecho> esperado = {{10 * kBloco + 1, 18 * kBloco - 1, kNaoAchado},
                                          {28 * kBloco, 17 * kBloco, 28 * kBloco},
                                          {45 * kBloco, kBloco, kNaoAchado},
                                          {46 * kBloco, 99'954 * kBloco, 46 * kBloco}};
    EXPECT_TRUE(plano.trechos == esperado);
    EXPECT_TRUE(plano.ValeAPena());
    // Thousands of requests cost more than what lies between them.
    for (std::size_t i = 0; i < onde.size(); i += 18)
        onde[i] = kNaoAchado;
    plano = Planejar(indice, onde, 0);
    EXPECT_LE(plano.pedidos, 4096U);
    EXPECT_FALSE(plano.ValeAPena());
    // Few bytes from the network, but each of the others from another place.
    indice.tamanho = 200'000 * kBloco;
    indice.somas.resize(200'000);
    onde.assign(200'000, 0);
    EXPECT_FALSE(Planejar(indice, onde, 0).ValeAPena());
}

TEST(Blocos, IndiceExatoOuRecusado) {
    const std::string bom = IndiceDe(Conteudo(3 * kBloco + 1), 257);
    IndiceDeBlocos indice;
    ASSERT_TRUE(LerIndice(bom, indice));
    EXPECT_EQ(bom.size(), 32 + 4 * 5U);
    for (const std::string& errado : {bom + "x", bom.substr(0, bom.size() - 1), bom.substr(0, 31)})
        EXPECT_FALSE(LerIndice(errado, indice)) << errado.size();
    // Where a byte of the header makes it another format, or one that is none.
    const std::pair<std::size_t, char> erros[] = {{0, 'z'},  {4, '\2'},  {6, '\4'},  {6, '\xA'},   {9, '\3'},
                                                  {9, '\2'}, {12, '\1'}, {17, '\0'}, {23, '\x80'}, {25, '\0'}};
    for (const auto& [lugar, valor] : erros) {
        std::string errado = bom;
        errado[lugar] = valor;
        EXPECT_FALSE(LerIndice(errado, indice)) << lugar;
    }
    for (const auto& [tamanho, bloco] :
         {std::pair{(64ULL << 20) - 1, 1024U}, {64ULL << 20, 2048U}, {4ULL << 30, 16384U}, {~0ULL, 1U << 20}})
        EXPECT_EQ(TamanhoDoBloco(tamanho), bloco) << tamanho;
}

}  // namespace
}  // namespace zu::launcher::update
