#include "platform/numbers.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

namespace quillary::test {
namespace {

TEST(NumbersTest, ValReadsTheLeadingNumberAndIsAlwaysFinite) {
  constexpr double Largest = std::numeric_limits<double>::max();
  const std::pair<std::string, double> cases[] = {{"  12 Records", 12},
                                                  {"-3", -3},
                                                  {"+1.5.7", 1.5},
                                                  {".5", 0.5},
                                                  {"1,5", 1},
                                                  {"1e3", 1000},
                                                  {"7e", 7},
                                                  {"1e999", Largest},
                                                  {"-1e+999", -Largest},
                                                  {std::string(400, '9'), Largest},
                                                  {"0." + std::string(400, '0') + "1", 0}};
  for (const auto& [text, number] : cases) EXPECT_EQ(Val(text), number) << text;
  for (const char* text : {"", "  ", "-", ".", "x1", "--1", "+-1", "inf", "-nan", "e5"}) {
    EXPECT_EQ(Val(text), 0) << text;
  }
}

TEST(NumbersTest, WholeNumbersAreRoundedToEvenAndHeldInTheirRange) {
  EXPECT_EQ(ToInt16("0.5"), 0);
  EXPECT_EQ(ToInt16("1.5"), 2);
  EXPECT_EQ(ToInt16("-2.5"), -2);
  EXPECT_EQ(ToInt16("99999"), 32767);
  EXPECT_EQ(ToInt16("-1e999"), -32768);
  EXPECT_EQ(ToInt32("2147483648"), 2147483647);
  EXPECT_EQ(ToByte("-1"), 0);
  EXPECT_EQ(ToByte("255.5"), 255);
}

}  // namespace
}  // namespace quillary::test
