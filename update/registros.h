// The text forms of the launcher's own files in the "Config" folder: installed state, file cache and pending swaps.
// docs/formatos.md has the formats. All text is UTF-8; nothing here touches the disk.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zu::launcher {

// "Launcher.estado".
std::string TextoDoEstado(std::int64_t seq, std::string_view versao);
// The number behind the first "seq=", read as the C library reads one; 0 when there is none or the text is shorter than
// 4 bytes.
std::int64_t SeqDoTexto(const std::string& texto);

// "Launcher.cache": what was found in a file when it was last read.
struct EntradaCache {
    std::uint64_t tamanho = 0;
    std::uint64_t modificado = 0;  // FILETIME
    std::string sha256;            // 64 lower-case hexadecimal digits
    std::uint32_t crc = 0;

    bool operator==(const EntradaCache&) const = default;
};
// By normalised path in ASCII lower case.
using MapaCache = std::map<std::string, EntradaCache, std::less<>>;

std::string TextoDoCache(const MapaCache& mapa);
// Faulty lines are dropped, and of two lines for one path the later counts.
MapaCache CacheDoTexto(std::string_view texto);

// "Launcher.pendente": swaps for the helper program, paths in full.
struct LinhaPendente {
    std::string origem;  // empty: `destino` is to be deleted
    std::string destino;

    bool operator==(const LinhaPendente&) const = default;
};
std::string TextoDosPendentes(std::span<const LinhaPendente> linhas);
// Lines of any other form are dropped.
std::vector<LinhaPendente> PendentesDoTexto(std::string_view texto);

}  // namespace zu::launcher
