#include "platform/text.h"

#include <gtest/gtest.h>
#include <unicode/locid.h>

#include <algorithm>
#include <random>
#include <vector>

namespace quillary::test {
namespace {

int Sign(int value) {
  return (value > 0) - (value < 0);
}

TEST(TextComparerTest, OrdersAsAPersonExpects) {
  const TextComparer comparer;
  const std::vector<std::string> ordered = {"",         " z",     "( Acme )", "1",
                                            "12",       "2",      "alpha",    "Alpha 2",
                                            "Alphabet", "resume", "résumé",   "Zoe"};
  for (std::size_t i = 0; i + 1 < ordered.size(); ++i) {
    EXPECT_LT(comparer.Compare(ordered[i], ordered[i + 1]), 0) << ordered[i];
    EXPECT_LT(comparer.SortKey(ordered[i]), comparer.SortKey(ordered[i + 1])) << ordered[i];
  }
  EXPECT_EQ(comparer.Compare("ÅNGSTRÖM, a", "ångström, A"), 0);
  // The same letter, composed and not.
  EXPECT_EQ(comparer.Compare("\u00e9", "e\u0301"), 0);
}

TEST(TextComparerTest, FollowsTheLanguageOfTheEnvironment) {
  const icu::Locale before = icu::Locale::getDefault();
  const auto compare = [](const char* locale, std::string_view a, std::string_view b) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale(locale), status);
    return TextComparer().Compare(a, b);
  };
  EXPECT_LT(compare("de_DE", "Ära", "Zeit"), 0);
  EXPECT_GT(compare("sv_SE", "Ära", "Zeit"), 0);
  // The environment "C" has no language; case counts in none.
  EXPECT_EQ(compare("en_US_POSIX", "alpha", "ALPHA"), 0);
  EXPECT_LT(compare("en_US_POSIX", "alpha", "Beta"), 0);
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale::setDefault(before, status);
}

// Lists are sorted by keys and inserted into by comparison: both must agree on any bytes.
TEST(TextComparerTest, SortKeysAndComparisonAgree) {
  const TextComparer comparer;
  std::mt19937 random(20);
  std::vector<std::string_view> pieces = {
      "a",      "A",    "b",   "ä", "e\u0301", "\u00e9", "ß",  "ss", "\u4e2d",       "\U0001F600",
      " ",      ",",    "(",   "-", "1",       "10",     "\t", "\r", "\xed\xa0\x80", "\ufffe",
      "\uffff", "\xff", "\xc3"};
  pieces.emplace_back("\0", 1);
  const auto make = [&] {
    std::string text;
    for (std::size_t i = random() % 7; i > 0; --i) text += pieces[random() % pieces.size()];
    return text;
  };
  for (int round = 0; round < 20000; ++round) {
    const std::string a = make();
    const std::string b = make();
    const int byKeys = comparer.SortKey(a).compare(comparer.SortKey(b));
    ASSERT_EQ(Sign(comparer.Compare(a, b)), Sign(byKeys)) << a << "|" << b;
  }
  // Longer than any buffer on the way.
  const std::string longText(5000, 'x');
  EXPECT_LT(comparer.SortKey(longText), comparer.SortKey(longText + "a"));
}

TEST(TextTest, CaseIsMappedCharacterByCharacter) {
  EXPECT_EQ(LowerCase("ÄBC-Straße ΣΑΣ 9"), "äbc-straße σασ 9");
  EXPECT_EQ(UpperCase("äbc-straße σας z"), "ÄBC-STRAßE ΣΑΣ Z");
  EXPECT_EQ(UpperCase("a\xe9z\xf0\x9f"), "A\ufffdZ\ufffd");
  EXPECT_EQ(LowerCase(std::string("A\0B", 3)), std::string("a\0b", 3));

  EXPECT_TRUE(EqualWithoutCase("Äpfel \u212A", "äPFEL k"));
  for (const auto& [a, b] : {std::pair("Apfel", "Äpfel"), {"abc", "ab"}, {"", "ä"}}) {
    EXPECT_FALSE(EqualWithoutCase(a, b)) << a;
  }
  // Names of sections and keys differ only in the case of A to Z.
  EXPECT_TRUE(EqualNames("NoOfRecords", "noofRECORDS"));
  for (const auto& [a, b] : {std::pair("Ä", "ä"), {"[", "{"}, {"key", "key1"}}) {
    EXPECT_FALSE(EqualNames(a, b)) << a;
  }
  EXPECT_EQ(Trim("  \ta b  "), "\ta b");
  EXPECT_EQ(Trim("   "), "");
}

}  // namespace
}  // namespace quillary::test
