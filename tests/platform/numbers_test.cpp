#include "platform/numbers.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillary::test {
namespace {

TEST(NumbersTest, ValReadsTheLeadingNumber) {
  EXPECT_EQ(Val("  12 Records"), 12);
  EXPECT_EQ(Val("-3"), -3);
  EXPECT_EQ(Val("+1.5.7"), 1.5);
  EXPECT_EQ(Val(".5"), 0.5);
  EXPECT_EQ(Val("2."), 2);
  EXPECT_EQ(Val("1,5"), 1);
  EXPECT_EQ(Val("1e3"), 1000);
  EXPECT_EQ(Val("7e"), 7);
  for (const char* text : {"", "  ", "-", ".", "x1", "--1", "+-1", "inf", "-nan", "e5"}) {
    EXPECT_EQ(Val(text), 0) << text;
  }
}

TEST(NumbersTest, ValIsAlwaysFinite) {
  constexpr double Largest = std::numeric_limits<double>::max();
  EXPECT_EQ(Val("1e999"), Largest);
  EXPECT_EQ(Val("-1e+999"), -Largest);
  EXPECT_EQ(Val(std::string(400, '9')), Largest);
  EXPECT_EQ(Val("1e-999"), 0);
  EXPECT_EQ(Val("0." + std::string(400, '0') + "1"), 0);
}

TEST(NumbersTest, WholeNumbersAreRoundedToEvenAndHeldInTheirRange) {
  EXPECT_EQ(ToInt16("0.5"), 0);
  EXPECT_EQ(ToInt16("1.5"), 2);
  EXPECT_EQ(ToInt16("-2.5"), -2);
  EXPECT_EQ(ToInt16("32767.4"), 32767);
  EXPECT_EQ(ToInt16("99999"), 32767);
  EXPECT_EQ(ToInt16("-1e999"), -32768);
  EXPECT_EQ(ToInt32("2147483648"), 2147483647);
  EXPECT_EQ(ToByte("-1"), 0);
  EXPECT_EQ(ToByte("255.5"), 255);
}

}  // namespace
}  // namespace quillary::test
