// What a server team publishes, made in memory, signed with the build's development key, and served.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/config.h"
#include "tests/suporte/pasta.h"
#include "tests/suporte/servidor.h"
#include "update/lista.h"

namespace zu::launcher::teste {

// A whole list with a good signature.
std::string Assinar(std::string_view assinados);

struct Publicacao {
    std::int64_t seq = 1;
    std::string versao = "1.0";
    std::map<std::string, std::string> arquivos;  // list path to content
    std::map<std::string, std::uint32_t> partes;  // list path to the number of parts, for files published so
    std::vector<std::string> remover;
    bool blocos = false;  // with an index of each file

    [[nodiscard]] update::UpdateList Lista() const;
    // Puts the files, their parts, their indexes and the signed list on the server, which forgets what it was asked
    // for.
    void Servir(Servidor& servidor) const;
};

// The block index of a file, published in parts of `parte` bytes unless that is 0.
std::string IndiceDe(const std::string& conteudo, std::uint64_t parte = 0);

// What a list says of an index.
update::IndiceListado Listar(const std::string& caminho, const std::string& indice);

// Repeatable bytes that look like nothing.
std::string Bytes(std::size_t tamanho, unsigned semente = 1);

// A sealed settings file of the build's own secret.
std::string Selado(const std::string& urlUpdate, bool automatico = true);

// The record as start-up would fill it for a folder and a server.
void Configurar(const std::filesystem::path& pasta, const std::string& urlUpdate, int conexoes = 4);

// The log's messages without their times.
std::vector<std::string> LinhasDoLog(const PastaTemporaria& pasta);

}  // namespace zu::launcher::teste
