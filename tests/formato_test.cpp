#include "core/formato.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace zu::launcher {
namespace {

TEST(Formato, CadaMarcaDoPrograma) {
    EXPECT_EQ(Formatar("sem marcas"), "sem marcas");
    EXPECT_EQ(Formatar("{}|{}|{}", "é", std::string("b"), std::string_view("c{}")), "é|b|c{}");
    EXPECT_EQ(Formatar("{:02}:{:02}.{:03}", 9, 12, 7), "09:12.007");
    EXPECT_EQ(Formatar("{:02}", 2026), "2026");
    EXPECT_EQ(Formatar("{:08X} {:08x}", 0xABCDEFU, 0xABCDEFU), "00ABCDEF 00abcdef");
    EXPECT_EQ(Formatar("%{:02X}", static_cast<unsigned char>(0xC3)), "%C3");
    EXPECT_EQ(Formatar("{:.1f} MB", 64.04999), "64.0 MB");
    EXPECT_EQ(Formatar("{:.1f}", 0.0), "0.0");
    EXPECT_EQ(Formatar("{} {}", std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::uint64_t>::max()),
              "-9223372036854775808 18446744073709551615");
    EXPECT_EQ(Formatar(".p{:03}", 1000U), ".p1000");
}

}  // namespace
}  // namespace zu::launcher
