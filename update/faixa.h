// One exact range of a resource on the server.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace zu::launcher {

struct FaixaHttp {
    std::uint64_t inicio = 0;
    std::uint64_t tamanho = 0;  // bytes, at least 1
    std::uint64_t total = 0;    // bytes of the whole resource
};

enum class FimDaFaixa {
    kInteira,
    kEstranha,      // the server answered, but not with these bytes
    kInterrompida,  // the connection, the receiver or a cancellation ended it; the rest may be asked for again
};

// Hands the bytes of the range on, in order and never one more than it has, as they come; `receber` returns false to
// end it. An answer counts that has status 206, names exactly this range of a resource of this size, and holds it.
// Otherwise one message in `erro`, unless `receber` has ended it.
FimDaFaixa HttpBaixarFaixa(const std::wstring& url, const FaixaHttp& faixa,
                           const std::function<bool(std::span<const std::uint8_t>)>& receber,
                           const std::atomic<bool>& cancelar, std::string& erro);

}  // namespace zu::launcher
