#include "platform/text_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

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

TEST(TextSearchTest, FindsTheFirstPlaceWhereverItStands) {
  using namespace std::string_literals;
  const std::vector<std::string> pieces{
      "a",   "A",        "k",    "\u212A", "i", "I", "\u0130", "é",    "É", "ι", "Ι",
      "\0"s, "\xe2\x84", "\xff", "€",      "😀", " ", "x",      "\xa9", "ẞ", "ß", "\uFFFD"};
  std::mt19937 random(7);
  const auto make = [&](std::size_t most) {
    std::string text;
    for (std::size_t count = random() % most + 1; count > 0; --count) {
      text += pieces[random() % pieces.size()];
    }
    return text;
  };
  std::size_t found = 0;
  for (int i = 0; i < 20000; ++i) {
    const std::string sought = make(3);
    const std::string text = std::string(random() % 130, 'y') + make(60);
    const std::size_t expected = LowerCase(text).find(LowerCase(sought));
    const std::size_t at = TextSearch(sought).Find(text, 0);
    ASSERT_EQ(at != std::string::npos, expected != std::string::npos) << text << '|' << sought;
    if (at == std::string::npos) continue;
    ++found;
    ASSERT_EQ(LowerCase(text.substr(0, at)).size(), expected) << text << '|' << sought;
  }
  EXPECT_GT(found, 5000U);
}

}  // namespace
}  // namespace quillary::test
