// Every call that an update makes on files and on the network fails once, and the client stays whole.

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <iostream>
#include <mutex>

#include "core/formato.h"
#include "tests/suporte/chamadas.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/relogio.h"
#include "tools/updater_helper/aplicar_trocas.h"
#include "update/atualizador.h"
#include "update/estado.h"
#include "update/http.h"
#include "update/trocas.h"

namespace zu::launcher {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using teste::Chamada;

// A small client with something of everything: one file stays, one is resumed, one comes in parts, one into a new
// folder, one is marked read-only, one may be held; and two go, one of them perhaps held.
class Cliente : public testing::Test {
 protected:
    Cliente() {
        teste::Configurar(pasta_.Caminho(), servidor_.Url(), 1);
        velha_.arquivos = {{"igual.txt", "fica"},        {"Data/mapa.map", "mapa velho"},
                           {"Data/grande.pak", "velho"}, {"leitura.ini", "marcado velho"},
                           {"preso.dll", "preso velho"}, {"Data/sai.dat", "sai"},
                           {"sai preso.dat", "sai"}};
        nova_.arquivos = {{"igual.txt", "fica"},
                          {"Data/mapa.map", "mapa novo, bem maior"},
                          {"Data/grande.pak", "novo em duas partes"},
                          {"leitura.ini", "marcado novo"},
                          {"preso.dll", "preso novo"},
                          {"Nova/Sub/novo.dat", "novo"}};
        nova_.seq = 2;
        nova_.partes = {{"Data/grande.pak", 2}};
        nova_.remover = {"Data/sai.dat", "sai preso.dat"};
        velha_.Servir(servidor_);
        EXPECT_EQ(Rodar(), StatusUpdate::kPronto);
        nova_.Servir(servidor_);
        inicio_ = pasta_.Tudo();
        inicio_["Data/mapa.map.upd"] = "mapa no";
        inicio_["Data/grande.pak.upd.p001"] = "novo em du";
    }

    // Everything as it was before the update.
    void Voltar() {
        const auto agora = pasta_.Tudo();
        for (const auto& [nome, conteudo] : agora)
            if (!inicio_.contains(nome)) ApagarArquivo(pasta_ / nome);
        std::filesystem::remove_all(pasta_ / "Nova");
        for (const auto& [nome, conteudo] : inicio_) {
            SetFileAttributesW((pasta_ / nome).c_str(), FILE_ATTRIBUTE_NORMAL);
            if (!agora.contains(nome) || agora.at(nome) != conteudo)
                std::ofstream(pasta_ / nome, std::ios::binary) << conteudo;
        }
        SetFileAttributesW((pasta_ / "leitura.ini").c_str(), FILE_ATTRIBUTE_READONLY);
        servidor_.EsquecerPedidos();
    }

    StatusUpdate Rodar() {
        Atualizador atualizador;
        atualizador.Rodar(false);
        trocas_ = atualizador.Trocas();
        return atualizador.Estado().status;
    }

    // The run and all that follows from it, up to the helper's end; nobody holds a file once the launcher has closed.
    // True when it left nothing to do.
    bool Atualizar(std::vector<HandleArquivo> presos = {}) {
        std::string erro;
        const StatusUpdate status = Rodar();
        const bool entregue = status == StatusUpdate::kReiniciando && IniciarUpdaterHelper(trocas_, erro);
        presos.clear();
        if (!entregue) return status == StatusUpdate::kPronto;
        AplicarTrocas(CaminhoPendente(), {}, [](std::string_view) {});
        return !std::filesystem::exists(CaminhoPendente());
    }

    [[nodiscard]] std::vector<HandleArquivo> Prender() const {
        std::vector<HandleArquivo> presos;
        for (const char* nome : {"preso.dll", "sai preso.dat"})
            presos.push_back(pasta_.Prender(nome));
        return presos;
    }

    // What is wrong with the client: at any time a file that is neither the old one nor the new one; once a run counts
    // as done, a file of the list that is not the new one.
    [[nodiscard]] std::string Rompidos(bool feito) const {
        std::string faltas;
        for (const auto& [nome, novo] : nova_.arquivos) {
            const std::string agora = pasta_.Ler(nome);
            const auto velho = velha_.arquivos.find(nome);
            const bool eOVelho = agora == (velho == velha_.arquivos.end() ? "(nada)" : velho->second);
            if (agora != novo && (feito || !eOVelho)) faltas += nome + ": " + agora + "; ";
        }
        return faltas;
    }

    // And once a run has met no trouble: all that is not the new client, the launcher's own two files apart.
    [[nodiscard]] std::string Diferencas() const {
        std::string faltas = Rompidos(true);
        auto tudo = pasta_.Tudo();
        if (tudo["Config/Launcher.estado"] != TextoDoEstado(nova_.seq, nova_.versao)) faltas += "estado; ";
        tudo.erase("Config/Launcher.cache");
        tudo.erase("Config/Launcher.estado");
        for (const auto& [nome, conteudo] : tudo)
            if (!nova_.arquivos.contains(nome)) faltas += "sobrou " + nome + "; ";
        return faltas;
    }

    teste::PastaTemporaria pasta_{L"Jogo ç"};
    teste::Servidor servidor_;
    teste::Publicacao velha_;
    teste::Publicacao nova_;
    std::map<std::string, std::string> inicio_;
    std::vector<TrocaPendente> trocas_;
};

enum class Quais { kMudancas, kMudancasEConsultas, kRede };

// What fails, and whether it is one call or also all later ones: changes that fail for good leave the disk as it is
// when the process is killed there.
struct Caso {
    const char* nome;
    Quais quais;
    DWORD erro;
    bool paraSempre = false;

    [[nodiscard]] bool Conta(const Chamada& chamada) const {
        if (chamada.caminho.empty() || quais == Quais::kRede) return chamada.caminho.empty() == (quais == Quais::kRede);
        const bool consulta = chamada.nome == "ReadFile" || chamada.nome == "GetFileAttributesExW";
        return !consulta || quais == Quais::kMudancasEConsultas;
    }
};

class Tortura : public Cliente, public testing::WithParamInterface<Caso> {};

TEST_P(Tortura, CadaChamadaFalhaENadaSeRompe) {
    const Caso& caso = GetParam();
    const teste::Relogio relogio(milliseconds(1000));
    std::atomic<std::size_t> feitas = 0;
    std::size_t alvo = 0;
    std::mutex trava;
    std::string qual;
    const auto falhar = [&](const Chamada& chamada) -> DWORD {
        if (!caso.Conta(chamada)) return 0;
        const std::size_t numero = ++feitas;
        if (numero < alvo || (numero > alvo && !caso.paraSempre)) return 0;
        const std::lock_guard guarda(trava);
        if (numero == alvo) qual = Formatar("{} {}", chamada.nome, ParaUtf8(chamada.caminho.native()));
        return caso.erro;
    };
    do {
        ++alvo;
        feitas = 0;
        qual.clear();
        Voltar();
        bool feito = false;
        {
            const teste::Vigia vigia(pasta_.Caminho(), falhar);
            feito = Atualizar(Prender());
        }
        EXPECT_EQ(Rompidos(feito), "") << alvo << ": " << qual;
        const teste::Vigia vigia(pasta_.Caminho(), [](const Chamada&) { return DWORD{0}; });
        EXPECT_TRUE(Atualizar()) << alvo << ": " << qual;
        EXPECT_EQ(Diferencas(), "") << alvo << ": " << qual;
    } while (feitas >= alvo);
    std::cout << caso.nome << ": " << alvo - 1 << " falhas injetadas\n";
}

constexpr Caso kCasos[] = {{"arquivo_5", Quais::kMudancasEConsultas, ERROR_ACCESS_DENIED},
                           {"arquivo_32", Quais::kMudancas, ERROR_SHARING_VIOLATION},
                           {"arquivo_112", Quais::kMudancas, ERROR_DISK_FULL},
                           {"arquivo_1117", Quais::kMudancasEConsultas, ERROR_IO_DEVICE},
                           {"morte", Quais::kMudancas, ERROR_IO_DEVICE, true},
                           {"rede_12002", Quais::kRede, 12002},
                           {"rede_12030", Quais::kRede, 12030},
                           {"rede_cai", Quais::kRede, 12030, true}};
INSTANTIATE_TEST_SUITE_P(Erros, Tortura, testing::ValuesIn(kCasos),
                         [](const auto& caso) { return std::string(caso.param.nome); });

// Fault: nothing ends the wait for a server that has fallen silent.
TEST_F(Cliente, ServidorCaladoETempoEsgotado) {
    servidor_.Definir("calado", [](const teste::Pedido&) {
        return teste::Resposta{.corpo = "abc", .anunciado = 9, .fim = teste::Fim::kCalar};
    });
    std::string erro;
    const std::atomic<bool> cancelar = false;
    const auto inicio = steady_clock::now();
    EXPECT_FALSE(HttpBaixarArquivo(DeUtf8(servidor_.Url() + "calado"), pasta_ / "f", 9, {}, cancelar, erro));
    // Windows says 12002 where Wine hands on the socket's own number.
    EXPECT_TRUE(erro == "download: tempo esgotado" || erro == "download: erro 10060") << erro;
    EXPECT_LT(steady_clock::now() - inicio, std::chrono::seconds(20));
    EXPECT_EQ(pasta_.Ler("f"), "abc");
}

// Nobody, or whoever looks at a target or at a fresh file for a moment. A file marked read-only, which the system does
// not replace, is among them.
TEST_F(Cliente, MarcaESegurarPorUmMomentoNaoAdiamNada) {
    enum class Seguro { kNada, kAlvo, kFresco };
    for (const Seguro seguro : {Seguro::kNada, Seguro::kAlvo, Seguro::kFresco}) {
        constexpr milliseconds kMomento{300};
        const teste::Relogio relogio;
        std::mutex trava;
        std::map<std::filesystem::path, steady_clock::time_point> soltura;
        const auto segurar = [&](const Chamada& chamada) -> DWORD {
            const bool abertura = chamada.destino.empty();
            if (chamada.caminho.empty() || seguro == Seguro::kNada || (abertura && (chamada.acesso & DELETE) == 0))
                return 0;
            const std::lock_guard guarda(trava);
            const auto& arquivo = seguro == Seguro::kAlvo ? chamada.destino : chamada.caminho;
            if (abertura && !soltura.contains(arquivo)) return 0;
            const auto ate = soltura.try_emplace(arquivo, steady_clock::now() + kMomento).first->second;
            return steady_clock::now() < ate ? ERROR_SHARING_VIOLATION : 0;
        };
        Voltar();
        const teste::Vigia vigia(pasta_.Caminho(), segurar);
        EXPECT_EQ(Rodar(), StatusUpdate::kPronto);
        EXPECT_EQ(Diferencas(), "");
        EXPECT_EQ(soltura.empty(), seguro == Seguro::kNada);
    }
}

}  // namespace
}  // namespace zu::launcher
