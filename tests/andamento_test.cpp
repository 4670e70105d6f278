#include "ui/janelas/texto_do_andamento.h"

#include <gtest/gtest.h>

#include <tuple>

namespace zu::launcher {
namespace {

// Faults: a plural for one, a time that is promised too short or from a speed that means nothing yet, a unit too small.
TEST(Andamento, EmPalavras) {
    const std::tuple<StatusUpdate, std::uint64_t, std::uint64_t, std::uint64_t, double, int, const char*> casos[] = {
        {StatusUpdate::kParado, 0, 1, 1, 0, 9000, "frase"},
        {StatusUpdate::kVerificando, 0, 0, 0, 0, 9000, "frase"},
        {StatusUpdate::kVerificando, 1, 3, 1, 5, 9000, "frase\na.pak\n1.0 MB de 3.0 MB; 0 de 1 arquivo"},
        {StatusUpdate::kBaixando, 0, 1, 2, 0, 9000, "0.0 MB de 1.0 MB; 0 de 2 arquivos"},
        {StatusUpdate::kBaixando, 1, 2, 2, 2, 2999, "2.0 MB/s; calculando..."},
        {StatusUpdate::kBaixando, 1, 2, 2, 2, 3000, "2.0 MB/s; falta 1 segundo"},
        {StatusUpdate::kBaixando, 0, 59, 2, 1, 3000, "MB/s; faltam 59 segundos"},
        {StatusUpdate::kBaixando, 0, 61, 2, 1, 3000, "MB/s; faltam 2 minutos"},
        {StatusUpdate::kBaixando, 1024, 8300, 2, 1, 3000,
         "1.00 GB de 8.11 GB; 0 de 2 arquivos\n1.0 MB/s; faltam 2 horas e 2 minutos"},
        {StatusUpdate::kBaixando, 0, 3600, 2, 1, 3000, "MB/s; falta 1 hora"},
        {StatusUpdate::kBaixando, 0, 7200, 2, 1e-6, 3000, "0.0 MB/s"}};
    for (const auto& [status, feitos, total, arquivos, velocidade, desde, fim] : casos) {
        EstadoAtualizacao estado;
        estado.status = status;
        estado.texto = "frase";
        estado.arquivo = "a.pak";
        estado.bytesFeitos = feitos << 20;
        estado.bytesTotal = total << 20;
        estado.arquivosTotal = arquivos;
        estado.velocidade = velocidade * (1 << 20);
        const std::string texto =
            TextoDoAndamento(estado, status != StatusUpdate::kParado, std::chrono::milliseconds(desde));
        EXPECT_TRUE(texto.starts_with("frase") && texto.ends_with(fim)) << texto << "\n" << fim;
    }
}

}  // namespace
}  // namespace zu::launcher
