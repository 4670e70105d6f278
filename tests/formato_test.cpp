#include "core/formato.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace zu::launcher {
namespace {

TEST(Formato, CadaMarcaDoPrograma) {
    EXPECT_EQ(Formatar("{}|{}|{}.", "é", std::string("b"), std::string_view("c{}")), "é|b|c{}.");
    EXPECT_EQ(Formatar("{:02}:{:02}.{:03} .p{:03}", 9, 2026, 7, 1000U), "09:2026.007 .p1000");
    EXPECT_EQ(Formatar("{:08X} {:08x}", 0xABCDEF90U, 0xABCDEFU), "ABCDEF90 00abcdef");
    EXPECT_EQ(Formatar("%{:02X}", static_cast<unsigned char>(0xC3)), "%C3");
    EXPECT_EQ(Formatar("{:.1f} MB, {:.1f}", 64.04999, 0.0), "64.0 MB, 0.0");
    EXPECT_EQ(Formatar("{} {}", std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::uint64_t>::max()),
              "-9223372036854775808 18446744073709551615");
}

}  // namespace
}  // namespace zu::launcher
