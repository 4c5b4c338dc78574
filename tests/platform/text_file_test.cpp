#include "platform/text_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

using Lines = std::vector<std::string>;

class TextFileTest : public testing::Test {
 protected:
  Lines Read(const std::string& bytes) {
    folder_.WriteFile("text", bytes);
    TextFile file;
    EXPECT_EQ(file.Open(folder_.File("text")), RunTimeError::None);
    Lines lines;
    std::string line;
    while (file.Next(line)) lines.push_back(line);
    EXPECT_EQ(file.Error(), RunTimeError::None);
    return lines;
  }
  static std::string Utf16(const std::u16string& text, bool bigEndian) {
    std::string bytes;
    for (const char16_t unit : u'\uFEFF' + text) {
      const auto low = static_cast<char>(unit & 0xFF);
      const auto high = static_cast<char>(unit >> 8);
      bytes += {bigEndian ? high : low, bigEndian ? low : high};
    }
    return bytes;
  }

  TempFolder folder_;
};

TEST_F(TextFileTest, TakesEveryKindOfLineEnd) {
  EXPECT_EQ(Read(""), Lines{});
  EXPECT_EQ(Read("a\nb\r\nc\rd"), (Lines{"a", "b", "c", "d"}));
  EXPECT_EQ(Read("\n\n\r\r\n\r\n\n"), (Lines{"", "", "", "", "", ""}));
  EXPECT_EQ(Read("a\r\n\x1A"), Lines{"a"});
  EXPECT_EQ(Read("\x1A\na\x1A"), (Lines{"\x1A", "a"}));
  EXPECT_EQ(Read(std::string("a\0b\n", 4)), (Lines{std::string("a\0b", 3)}));
}

TEST_F(TextFileTest, TellsTheEncodingByMarkAndBytes) {
  EXPECT_EQ(Read("Müller\nB\xE9la,\x80,\x81\n"), (Lines{"Müller", "Béla,€,\u0081"}));
  EXPECT_EQ(Read("\xEF\xBB\xBFMüller"), Lines{"Müller"});
  EXPECT_EQ(Read("\xFF\xFE"), Lines{});
  for (const bool bigEndian : {false, true}) {
    const std::string torn = Utf16(u"a\xD83D", bigEndian);
    EXPECT_EQ(Read(torn), Lines{"a\uFFFD"});
    EXPECT_EQ(Read(torn.substr(0, torn.size() - 1)), Lines{"a\uFFFD"});
  }
  // Characters, pairs and line ends stand across the borders of the parts that are read.
  constexpr std::size_t Part = 1U << 16U;
  for (std::size_t before = Part - 5; before < Part + 2; ++before) {
    const std::string filler(before, 'x');
    EXPECT_EQ(Read(filler + "€\r\nb\r\n"), (Lines{filler + "€", "b"})) << before;
    for (const bool bigEndian : {false, true}) {
      const std::u16string wide(before / 2, u'x');
      EXPECT_EQ(Read(Utf16(wide + u"😀 \uFEFF\r\n\r\nb", bigEndian)),
                (Lines{std::string(before / 2, 'x') + "😀 \uFEFF", "", "b"}));
    }
  }
}

TEST_F(TextFileTest, TellsWhatCannotBeRead) {
  EXPECT_EQ(TextFile().Open(folder_.File("none")), RunTimeError::FileNotFound);
  EXPECT_EQ(TextFile().Open(folder_.Path()), RunTimeError::PathAccess);
  ASSERT_EQ(mkfifo(folder_.File("fifo").c_str(), 0600), 0);
  EXPECT_EQ(TextFile().Open(folder_.File("fifo")), RunTimeError::PathAccess);
  // The beginning of a program's memory is never there to be read.
  TextFile file;
  ASSERT_EQ(file.Open("/proc/self/mem"), RunTimeError::None);
  std::string line;
  EXPECT_FALSE(file.Next(line));
  EXPECT_EQ(file.Error(), RunTimeError::DeviceError);
}

}  // namespace
}  // namespace quillary::test
