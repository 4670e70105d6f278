#include "update/mutirao.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <random>
#include <stdexcept>
#include <string>

#include "tests/suporte/espera.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t kGrande = Mutirao::kGrande;

// Under delays of any length. Faults: a task left out or done twice, one that is not done when it is waited for, more
// read at once than there are cores, too many left open, what waits behind begun first, a failure lost or in another's
// place.
TEST(Mutirao, CadaTarefaUmaVezComFalhasNoLugar) {
    for (unsigned semente = 0; semente < 12; ++semente) {
        std::mt19937 acaso(semente);
        const std::size_t nucleos = std::size_t{1} << semente % 4;
        std::vector<Mutirao::Tarefa> tarefas(acaso() % 200);
        std::vector<unsigned> tipos;  // 0: nothing to read; 1, 2: fails, opened or read
        for (Mutirao::Tarefa& tarefa : tarefas) {
            tarefa = {acaso() % 3 == 0 ? kGrande + acaso() % 9 : acaso() % 9, acaso() % 4 == 0};
            tipos.push_back(acaso() % 9);
        }
        const auto urgentes = std::ranges::count(tarefas, false, &Mutirao::Tarefa::porUltimo);
        std::vector<std::atomic<int>> aberturas(tarefas.size()), leituras(tarefas.size());
        std::atomic<std::ptrdiff_t> comecadas = 0;
        std::atomic<std::size_t> lendo = 0, abertas = 0;
        const auto demorar = [](std::size_t voltas) {
            for (; voltas > 0; --voltas)
                std::this_thread::yield();
        };
        const auto abrir = [&](std::size_t i) -> Mutirao::Leitura {
            if (++comecadas; tarefas[i].porUltimo) {
                // Those that are being begun now may not have counted yet.
                EXPECT_GE(comecadas + static_cast<std::ptrdiff_t>(Mutirao::kMaximo), urgentes);
            }
            ++aberturas[i];
            EXPECT_LE(++abertas, Mutirao::kMaximo + nucleos);
            demorar((i * 7 + semente) % 20);
            if (tipos[i] > 1) {
                return [&, i] {
                    EXPECT_LE(++lendo, nucleos);
                    demorar((i * 5 + semente) % 20);
                    ++leituras[i];
                    --lendo;
                    --abertas;
                    if (tipos[i] == 2) throw std::runtime_error(std::to_string(i));
                };
            }
            --abertas;
            if (tipos[i] == 1) throw std::runtime_error(std::to_string(i));
            return {};
        };
        Mutirao mutirao(tarefas, abrir, nucleos);
        for (std::size_t i = 0; i < tarefas.size(); ++i) {
            std::string falha;
            try {
                ASSERT_TRUE(mutirao.Esperar(i, 20s));
            } catch (const std::runtime_error& erro) {
                falha = erro.what();
            }
            EXPECT_EQ(aberturas[i], 1);
            EXPECT_EQ(leituras[i], tipos[i] > 1 ? 1 : 0);
            EXPECT_EQ(falha, tipos[i] == 1 || tipos[i] == 2 ? std::to_string(i) : "");
            if (!falha.empty()) break;  // who is told of a failure asks no more
        }
    }
}

// Faults: a slow open that keeps the next from being begun, few cores or many; a large task that all others wait for.
TEST(Mutirao, AberturasJuntasEGrandesQueNaoSeguramPequenas) {
    for (const std::size_t nucleos : {1U, 2U, 8U}) {
        std::atomic<std::size_t> abrindo = 0, lidas = 0;
        const std::vector<Mutirao::Tarefa> pequenas(2 * Mutirao::kMaximo);
        const auto juntas = [&](std::size_t) -> Mutirao::Leitura {
            ++abrindo;
            EXPECT_TRUE(teste::Esperar(20s, [&] { return abrindo >= Mutirao::kMaximo; }));
            return {};
        };
        Mutirao(pequenas, juntas, nucleos).Esperar(pequenas.size() - 1, 20s);

        std::vector<Mutirao::Tarefa> mistas(40, {kGrande});
        mistas.resize(80);
        Mutirao mutirao(
            mistas,
            [&](std::size_t i) -> Mutirao::Leitura {
                if (i >= 40) return [&] { ++lidas; };
                return [&] { EXPECT_TRUE(teste::Esperar(20s, [&] { return lidas == 40; })); };
            },
            nucleos);
        EXPECT_TRUE(mutirao.Esperar(79, 20s) && mutirao.Esperar(0, 20s));
    }
}

// Fault: what is abandoned is done to its end.
TEST(Mutirao, AbandonadoNaoComecaMais) {
    const std::vector<Mutirao::Tarefa> tarefas(100'000);
    std::atomic<std::size_t> lidas = 0;
    std::atomic<bool> abandonado = false;
    const auto abrir = [&](std::size_t i) -> Mutirao::Leitura {
        return [&, i] { lidas += i == 0 || teste::Esperar(20s, [&] { return abandonado.load(); }) ? 1 : 0; };
    };
    {
        Mutirao mutirao(tarefas, abrir);
        EXPECT_TRUE(mutirao.Esperar(0, 20s));
        abandonado = true;
    }
    EXPECT_LT(lidas, tarefas.size());
}

}  // namespace
}  // namespace zu::launcher
