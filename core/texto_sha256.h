// A SHA-256 in text, where many are kept: 64 characters in their place instead of a piece of memory for each.
#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <string_view>

namespace zu::launcher {

class TextoSha256 {
 public:
    static constexpr std::size_t kTamanho = 64;

    TextoSha256() = default;
    // ASCII letters in lower case, every other character as it is. A text of any other length than 64 counts as none.
    template <std::convertible_to<std::string_view> Texto>
    TextoSha256(const Texto& texto) {  // NOLINT(google-explicit-constructor): a text like any other
        const std::string_view letras = texto;
        if (letras.size() != kTamanho) return;
        quantas_ = kTamanho;
        std::ranges::transform(letras, letras_.begin(),
                               [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
    }

    operator std::string_view() const { return {letras_.data(), quantas_}; }  // NOLINT(google-explicit-constructor)
    [[nodiscard]] bool empty() const { return quantas_ == 0; }
    template <std::convertible_to<std::string_view> Texto>
    bool operator==(const Texto& outro) const {
        return std::string_view(*this) == std::string_view(outro);
    }

 private:
    std::array<char, kTamanho> letras_{};
    unsigned char quantas_ = 0;
};

}  // namespace zu::launcher
