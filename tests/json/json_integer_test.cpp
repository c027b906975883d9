#include "json/json_integer.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace lomaris {
namespace {

constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

TEST(JsonInteger, IsReadFromAnyNumberWithAnIntegerValue) {
    struct Example {
        std::string written;
        std::int64_t value;
    };
    const std::vector<Example> examples = {
        {"0", 0},
        {"-0", 0},
        {"0.0", 0},
        {"-0.0e0", 0},
        {"0e99999999999999999999", 0},
        {"812", 812},
        {"812.0", 812},
        {"812e0", 812},
        {"8.12e2", 812},
        {"8.12E+2", 812},
        {"8.120e002", 812},
        {"8120e-1", 812},
        {"-8120e-1", -812},
        {"0.000812e6", 812},
        {"1.0000000000000000000000001", 1},
        {"0.99999999999999999999999999", 1},
        {"1e18", 1000000000000000000},
        {"1" + std::string(400, '0') + "e-400", 1},
        {"4294967296.0", 4294967296},
        {"9007199254740991.0", 9007199254740991},
        {"9007199254740993", 9007199254740993},
        {"9007199254740993.0", 9007199254740993},
        {"90071992547409930e-1", 9007199254740993},
        {"9223372036854775807", greatest},
        {"-9223372036854775808", least},
        {"-9223372036854775808.0", least},
        {"9.2233720368547e18", 9223372036854700000},
    };
    for (const auto& [written, value] : examples) {
        EXPECT_EQ(decodeJsonInteger(written), value) << written;
    }
}

TEST(JsonInteger, RefusesFractionsAndOverflow) {
    const std::vector<std::string> examples = {
        "1.5",
        "1e-3",
        "-0.1",
        "9007199254740992.5",
        "9223372036854775808",
        "-9223372036854775809",
        "9223372036854775807.0",  // the nearest double is 2^63
        "9223372036854775808.0",
        "-9223372036854777000",
        "1e19",
        "-1e19",
        "1e400",
        "1e99999999999999999999",
        "1" + std::string(400, '0') + ".0",
    };
    for (const auto& written : examples) {
        EXPECT_EQ(decodeJsonInteger(written), std::nullopt) << written;
    }
}

TEST(JsonInteger, RefusesMalformedNumbers) {
    for (const auto* written :
         {"",    "-",   "--1",  "+1",   "01",   "-01", "00",  ".5",  "1.", "1.e1", "1e",  "1e+",
          "1e-", "1ee", "1e1.", "1e+-", "1.2.", "1-2", "0x1", "1,5", " 1", "1 ",   "inf", "1e 1"}) {
        EXPECT_EQ(decodeJsonInteger(written), std::nullopt) << written;
    }
}

}  // namespace
}  // namespace lomaris
