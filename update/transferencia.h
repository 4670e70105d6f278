// One item on its way from the server to the disk.
#pragma once

#include <atomic>
#include <filesystem>
#include <string>
#include <string_view>

#include "update/http.h"

namespace zu::launcher::update {
struct ItemLista;
}

namespace zu::launcher {

struct Transferencia {
    const update::ItemLista& item;
    const std::filesystem::path& destino;
    const ProgressCallback progresso;
    const std::atomic<bool>& cancelar;
    const bool vazio = false;  // nothing stands at the destination
};

// The address of the item, or of one of its parts by its suffix. The CRC in it makes a changed file a new address, so
// that no cache on the way serves the old one.
std::wstring UrlDoItem(const update::ItemLista& item, std::string_view sufixo);

// The item's parts, in order, each beside the destination under its own suffix, then joined into the destination, which
// need not be on the disk yet. The parts stay, for as long as they may be of use: deleting them once they are not is
// left to the caller, but when they could not be joined, or are not what they should be. Together they never take more
// than the item's size. False with one message in `erro`.
bool BaixarEmPartes(const Transferencia& t, std::string& erro);

// The bytes of the item's parts that stand on the disk.
std::uint64_t TamanhoDasPartes(const std::filesystem::path& destino, std::uint32_t partes);

void ApagarPartes(const std::filesystem::path& destino, std::uint32_t partes);

}  // namespace zu::launcher
