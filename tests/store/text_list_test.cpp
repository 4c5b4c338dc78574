#include "store/text_list.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace quillary {
namespace {

TEST(TextListTest, InsertsAndRemovesAnywhereLikeAnyList) {
  std::mt19937 random(7);
  std::vector<std::string> expected;
  TextList list;
  const auto check = [&] { ASSERT_TRUE(list == TextList(expected)) << expected.size(); };
  for (int step = 0; step < 4000; ++step) {
    // It grows to several blocks and shrinks to nothing.
    const bool grows = random() % 10 < (step < 2000 ? 8U : 2U);
    const std::size_t index = random() % (expected.size() + 1);
    if (grows) {
      const std::string text = std::to_string(step);
      expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(index), text);
      list.insert(index, text);
    } else if (index < expected.size()) {
      expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(index));
      list.erase(index);
    }
    if (step % 50 == 0) check();
    if (step == 2000) {
      const TextList copy = list;
      list.RemoveIf([](std::string_view text) { return text.back() == '7'; });
      EXPECT_EQ(copy.size(), expected.size());
      std::erase_if(expected, [](const std::string& text) { return text.back() == '7'; });
      check();
    }
  }
  check();
}

}  // namespace
}  // namespace quillary
