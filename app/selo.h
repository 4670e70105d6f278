// "Launcher.emu", the sealed settings file: 553 scrambled bytes and a 32-byte integrity tag. docs/formatos.md has the
// format; the field table below is its one home in the code.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/chaves.h"

namespace zu::launcher {

constexpr std::size_t kTamanhoCorpo = 553;
constexpr std::size_t kTamanhoSelado = 585;

using CorpoSelado = std::array<std::uint8_t, kTamanhoCorpo>;

// A text field of the body: UTF-8, padded with zeros, with at least one zero behind it.
struct CampoDeTexto {
    std::size_t posicao;
    std::size_t tamanho;  // bytes in the body, the closing zero included

    [[nodiscard]] constexpr std::size_t Limite() const { return tamanho - 1; }
};
constexpr CampoDeTexto kCampoNome{8, 32};
constexpr CampoDeTexto kCampoUpdate{41, 128};
constexpr CampoDeTexto kCampoSite{169, 128};
constexpr CampoDeTexto kCampoSeletor{297, 64};
constexpr CampoDeTexto kCampoRegistro{361, 128};

// What the body holds. A text longer than its field is cut when it is written.
struct CamposSelados {
    std::string nome;
    bool updateAutomatico = false;
    std::string update;
    std::string site;
    std::string seletor;
    std::string registro;
};

// Checks size, tag, magic, length and version in this order and opens the body; otherwise false, with the first fault
// in `recusa` (UTF-8) and nothing in `corpo`. The caller clears `corpo` first.
bool AbrirSelado(std::string_view arquivo, const SegredoSelo& segredo, CorpoSelado& corpo, std::string& recusa);

CamposSelados LerCampos(const CorpoSelado& corpo);

// The other direction, for the server team's tool: a whole sealed file of `kTamanhoSelado` bytes.
CorpoSelado MontarCorpo(const CamposSelados& campos);
std::string Selar(const CorpoSelado& corpo, const SegredoSelo& segredo);

}  // namespace zu::launcher
