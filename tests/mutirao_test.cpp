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
using Leitura = Mutirao::Leitura;

// Under delays of any length. Faults: a task left out or done twice, or not done when it is waited for; more read at
// once than there are cores, too many left open; what is to come last begun first; a failure lost or in another's
// place.
TEST(Mutirao, CadaTarefaUmaVezComFalhasNoLugar) {
    enum Tipo { kNadaALer, kFalhaAoAbrir, kFalhaAoLer };
    for (unsigned semente = 0; semente < 12; ++semente) {
        std::mt19937 acaso(semente);
        const std::size_t nucleos = std::size_t{1} << semente % 4;
        std::vector<Mutirao::Tarefa> tarefas(acaso() % 200);
        std::vector<unsigned> tipos(tarefas.size());
        for (Mutirao::Tarefa& tarefa : tarefas)
            tarefa = {acaso() % 3 == 0 ? Mutirao::kGrande + acaso() % 9 : 0, acaso() % 4 == 0};
        std::ranges::generate(tipos, [&] { return acaso() % 9; });
        const auto urgentes = std::ranges::count(tarefas, false, &Mutirao::Tarefa::porUltimo);
        std::vector<std::atomic<int>> passos(tarefas.size());  // 1 for the opening, 10 for the reading
        std::atomic<std::ptrdiff_t> comecadas = 0;
        std::atomic<std::size_t> lendo = 0, abertas = 0;
        const auto passar = [&](std::size_t i, int passo) {
            for (std::size_t volta = (i * 7 + semente) % 20; volta > 0; --volta)
                std::this_thread::yield();
            passos[i] += passo;
        };
        const auto abrir = [&](std::size_t i) -> Leitura {
            // Those that are being begun now may not have counted yet.
            EXPECT_GE(++comecadas + static_cast<std::ptrdiff_t>(Mutirao::kMaximo), tarefas[i].porUltimo ? urgentes : 0);
            EXPECT_LE(++abertas, Mutirao::kMaximo + nucleos);
            passar(i, 1);
            if (tipos[i] > kFalhaAoAbrir) {
                return [&, i] {
                    EXPECT_LE(++lendo, nucleos);
                    passar(i, 10);
                    --lendo, --abertas;
                    if (tipos[i] == kFalhaAoLer) throw std::runtime_error(std::to_string(i));
                };
            }
            --abertas;
            return tipos[i] == kNadaALer ? Leitura() : throw std::runtime_error(std::to_string(i));
        };
        Mutirao mutirao(tarefas, abrir, nucleos);
        std::string falha;
        for (std::size_t i = 0; i < tarefas.size() && falha.empty(); ++i) {
            try {
                ASSERT_TRUE(mutirao.Esperar(i, 20s));
            } catch (const std::runtime_error& erro) {
                falha = erro.what();
            }
            EXPECT_EQ(passos[i], tipos[i] > kFalhaAoAbrir ? 11 : 1);
            EXPECT_EQ(falha, tipos[i] == kFalhaAoAbrir || tipos[i] == kFalhaAoLer ? std::to_string(i) : "");
        }
    }
}

// Faults: a slow opening that keeps the next from being begun, on few cores or many; large ones that small ones wait
// for; what is abandoned is done to its end.
TEST(Mutirao, AberturasJuntasEGrandesQueNaoSeguramPequenas) {
    for (const std::size_t nucleos : {1U, 2U, 8U}) {
        std::atomic<std::size_t> abrindo = 0, lidas = 0;
        std::vector<Mutirao::Tarefa> tarefas(80);
        const auto juntas = [&](std::size_t) {
            ++abrindo;
            EXPECT_TRUE(teste::Esperar(20s, [&] { return abrindo >= Mutirao::kMaximo; }));
            return Leitura();
        };
        EXPECT_TRUE(Mutirao(tarefas, juntas, nucleos).Esperar(79, 20s));

        std::fill_n(tarefas.begin(), 40, Mutirao::Tarefa{.tamanho = Mutirao::kGrande});
        std::atomic<bool> abandonado = false;
        const auto abrir = [&](std::size_t i) -> Leitura {
            return [&, i] {
                EXPECT_TRUE(teste::Esperar(20s, [&] { return i > 39 || (lidas > 39 && (i == 0 || abandonado)); }));
                ++lidas;
            };
        };
        {
            Mutirao mutirao(tarefas, abrir, nucleos);
            EXPECT_TRUE(mutirao.Esperar(79, 20s) && mutirao.Esperar(0, 20s));
            abandonado = true;
        }
        EXPECT_LT(lidas, 80U);
    }
}

}  // namespace
}  // namespace zu::launcher
