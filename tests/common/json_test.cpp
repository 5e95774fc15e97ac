// Numbers as others may write them.
#include <gtest/gtest.h>

#include <limits>

#include "common/json/parse.h"

namespace genostat::common {
namespace {

TEST(Json, TakesEveryNumberOrRefusesIt) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  const std::pair<std::string, std::optional<double>> rows[] = {
      {"-0", 0},
      {"-2147483648", -2147483648.0},
      {"18446744073709551615", 18446744073709551615.0},
      {"18446744073709551616", 18446744073709551616.0},
      {"-2.5E+3", -2500},
      {"0e308", 0},
      {"0.0000000000000000e-2147483639", 0},
      {"1e-400", 0},
      {"-" + std::string("0.") + std::string(400, '0') + "1", 0},
      {"1.7976931348623157e308", kLargest},
      {"9e308", std::nullopt},
      {"1e309", std::nullopt},
      {std::string(400, '9'), std::nullopt},
      {"+1", std::nullopt},
  };
  for (const auto& [text, number] : rows) {
    const ParsedJson parsed = parseJson("[" + text + "]");
    ASSERT_EQ(!parsed.result.IsError(), number.has_value()) << text;
    ASSERT_EQ(parsed.document.IsArray(), number.has_value()) << text;
    if (!number) continue;
    EXPECT_EQ(parsed.document[0].GetDouble(), *number) << text;
  }
  EXPECT_TRUE(parseJson("12").document.IsInt());
  EXPECT_TRUE(parseJson("-12").document.IsInt64());
  EXPECT_TRUE(parseJson("18446744073709551615").document.IsUint64());
  EXPECT_FALSE(parseJson("12.0").document.IsInt());
  EXPECT_STREQ(parseJson("\"12\"").document.GetString(), "12");
}

}  // namespace
}  // namespace genostat::common
