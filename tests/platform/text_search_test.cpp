#include "platform/text_search.h"

#include <gtest/gtest.h>

#include "platform/code_point.h"
#include "platform/text.h"

namespace quillary::test {
namespace {

TEST(TextSearchTest, FindsEveryCharacterByItsLowerCase) {
  const TextSearch other("\u0430z");
  for (UChar32 character = 1; character <= 0x10FFFF; ++character) {
    if (character >= 0xD800 && character < 0xE000) continue;
    std::string text;
    AppendCodePoint(text, character);
    const std::string lower = LowerCase(text);
    if (lower != text || character < 0x500) {
      EXPECT_TRUE(TextSearch(lower).IsIn("x" + text)) << character;
      EXPECT_TRUE(TextSearch(text).IsIn(lower + "x")) << character;
    }
    EXPECT_FALSE(other.IsIn(text)) << character;
  }
}

TEST(TextSearchTest, BytesThatAreNoCharacterAreTheReplacement) {
  EXPECT_TRUE(TextSearch("\xff").IsIn("a\xe2\x84"));
  EXPECT_TRUE(TextSearch("\xEF\xBF\xBD").IsIn("\x80"));
  EXPECT_FALSE(TextSearch("\xff").IsIn("é"));
  EXPECT_FALSE(TextSearch("\xa9").IsIn("é"));
  EXPECT_TRUE(TextSearch("").IsIn(""));
}

}  // namespace
}  // namespace quillary::test
