#include "update/espaco.h"
#include "update/lista.h"

#include <windows.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "update/caminhos.h"
#include "update/cliente.h"
#include "update/transferencia.h"

namespace zu::launcher {
namespace {

// What an item takes beside what is there.
struct Falta {
    std::uint64_t porVir = 0;     // bytes
    std::uint64_t porJuntar = 0;  // of the whole, when it is joined from parts
};

// The folders that have been asked for, and whether each is there: in one that is not nothing need be looked for.
using Pastas = std::map<std::filesystem::path, bool>;

bool TemPasta(const std::filesystem::path& pasta, Pastas& pastas) {
    const auto [lugar, nova] = pastas.try_emplace(pasta);
    InfoArquivo info;
    if (nova) lugar->second = LerInfoArquivo(pasta, info);
    return lugar->second;
}

Falta FaltaDoItem(const update::ItemLista& item, Pastas& pastas) {
    const std::filesystem::path alvo = CaminhoNoCliente(update::NormalizarCaminho(item.caminho));
    if (!TemPasta(alvo.parent_path(), pastas)) return {item.tamanho, item.partes > 0 ? item.tamanho : 0};
    const std::filesystem::path temporario = ComSufixo(alvo, L".upd");
    const std::uint64_t presentes = TamanhoDoArquivo(temporario);
    if (presentes == item.tamanho || TamanhoDoArquivo(ComSufixo(alvo, L".novo")) == item.tamanho) return {};
    if (item.partes > 0) {
        const std::uint64_t partes = TamanhoDasPartes(temporario, item.partes);
        return {item.tamanho - std::min(partes, item.tamanho), item.tamanho - std::min(presentes, item.tamanho)};
    }
    return {presentes < item.tamanho ? item.tamanho - presentes : item.tamanho, 0};
}

// Sizes come from the list, which may say anything.
std::uint64_t Somar(std::uint64_t a, std::uint64_t b) {
    return a + std::min(b, ~a);
}

}  // namespace

bool HaEspaco(Andamento& andamento, const update::UpdateList& lista, std::span<const std::size_t> indices) {
    ULARGE_INTEGER livres{};
    const std::filesystem::path& pasta = ObterConfig().pastaJogo;
    if (GetDiskFreeSpaceExW(pasta.c_str(), &livres, nullptr, nullptr) == 0) return true;
    std::uint64_t preciso = 0;
    std::uint64_t maiorJuncao = 0;
    Pastas pastas;
    for (const std::size_t indice : indices) {
        const Falta falta = FaltaDoItem(lista.itens[indice], pastas);
        preciso = Somar(preciso, falta.porVir);
        maiorJuncao = std::max(maiorJuncao, falta.porJuntar);
    }
    preciso = Somar(preciso, maiorJuncao);
    if (preciso <= livres.QuadPart) return true;
    constexpr double kDecimosPorMiB = 10.0 / (1 << 20);
    // Rounded up: "faltam 0.0 MB" would be no reason.
    const double decimos = std::ceil(static_cast<double>(preciso - livres.QuadPart) * kDecimosPorMiB);
    andamento.Definir(StatusUpdate::kErro, Formatar("Espaço em disco insuficiente: faltam {:.1f} MB em {}.",
                                                    decimos / 10, ParaUtf8(pasta.root_name().native())));
    return false;
}

}  // namespace zu::launcher
