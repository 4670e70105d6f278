// Strict Base64 (RFC 4648, section 4): no blanks, no line breaks, no other alphabet.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zu::launcher {

// Decodes up to the end of the text or its first "="; what stands behind that sign is ignored, and missing padding is
// accepted. False when a character outside the alphabet comes before it. Fewer than 8 bits left at the end are
// dropped. `bytes` is cleared first and may be empty after a success.
bool Base64Decode(std::string_view texto, std::vector<std::uint8_t>& bytes);

// Encodes with padding, on one line.
std::string Base64Encode(std::span<const std::uint8_t> bytes);

}  // namespace zu::launcher
