#include "store/profile_text.h"

#include <gtest/gtest.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <utility>

#include "store/journal.h"
#include "store/profile_line.h"

namespace quillary::test {
namespace {

std::string With(std::string_view bytes, std::string_view section, std::string_view key,
                 std::string_view value) {
  FileChanges changes;
  changes.Set(section, key, value);
  return ProfileText(std::string(bytes)).With(changes);
}

// Of all planes, with those characters often that mean something in a file or look like nothing.
std::string RandomText(std::mt19937& random, std::size_t most) {
  constexpr std::u32string_view Special(U" \t\"'\\=;[]\r\n\0rn0aA\u00A0\u2028\uFEFF\u0301", 21);
  constexpr UChar32 ControlsEnd = 0xA0;
  constexpr UChar32 PlaneSize = 0x10000;
  constexpr UChar32 Planes = 17;
  icu::UnicodeString text;
  for (std::size_t count = random() % (most + 1); count > 0; --count) {
    const std::uint32_t number = static_cast<std::uint32_t>(random());
    switch (random() % 4) {
      case 0:
      case 1:
        text.append(static_cast<UChar32>(Special[number % Special.size()]));
        break;
      case 2:
        text.append(static_cast<UChar32>(number % ControlsEnd));
        break;
      default: {
        const auto c = static_cast<UChar32>(number % (PlaneSize * Planes));
        if (!U_IS_SURROGATE(c)) text.append(c);
      }
    }
  }
  std::string bytes;
  return text.toUTF8String(bytes);
}

// Sections, keys and values of any text, in many groups; what one writes the next ones keep.
TEST(ProfileText, EveryTextComesBack) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::string bytes = "; by hand";
  std::map<std::pair<std::string, std::string>, std::string> entries;
  const auto fold = [](std::string name) {
    for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return name;
  };
  for (int round = 0; round < 1500; ++round) {
    if (round % 100 == 0) {
      bytes = "; by hand";
      entries.clear();
    }
    FileChanges changes;
    for (int i = 0; i < 8; ++i) {
      const std::string section = RandomText(random, 3);
      const std::string key = RandomText(random, 3);
      if (!CanBeNames(section, key)) continue;
      const std::string value = RandomText(random, 12);
      changes.Set(section, key, value);
      entries[{fold(section), fold(key)}] = value;
    }
    JournalPart part("quill0.dat");
    bytes = ProfileText(bytes).With(changes, &part);
    const ProfileText text(bytes);
    for (const auto& [names, value] : entries) {
      ASSERT_EQ(text.Value(names.first, names.second), value) << bytes;
    }
    const auto journal = ParseJournal(JournalText({&part}));
    ASSERT_TRUE(journal);
    for (const JournalEntry& entry : journal->front().Entries) {
      const std::string* const value = changes.Find(entry.Section, entry.Key);
      ASSERT_NE(value, nullptr);
      ASSERT_EQ(entry.New, *value);
    }
  }
}

TEST(ProfileText, ReadsWhatOthersWrite) {
  const ProfileText text(
      "\xEF\xBB\xBF; by hand\n"
      "lost=before any section\n"
      "  [ General Info ]  \n"
      " application = quillary\t\n"
      ";Application=comment\n"
      "no equals sign\n"
      "Quoted=\"  two blanks\"\r\n"
      "Path=\"C:\\new\\r\"\r\n"
      "\n"
      "[general info]\n"
      "Application=second section of that name\n"
      "[Record1]\nlast=without an end");
  EXPECT_EQ(text.Value("GENERAL INFO", "Application"), "quillary");
  EXPECT_EQ(text.Value("General Info", "quoted"), "  two blanks");
  EXPECT_EQ(text.Value("General Info", "Path"), "C:\\new\\r");
  EXPECT_EQ(text.Value("General Info", "no equals sign"), std::nullopt);
  EXPECT_EQ(text.Value("Record1", "LAST"), "without an end");
  EXPECT_FALSE(text.Find("Record").Exists());
  EXPECT_FALSE(ProfileText("").Find("").Exists());
}

TEST(ProfileText, ChangesOnlyWhatTheyName) {
  const std::string bytes = "; heading\n[A]\nx=1\n  Y = old\n; note\nx=2\n\n\n[B]\r\ny=3";
  EXPECT_EQ(With(bytes, "a", "y", "new"),
            "; heading\n[A]\nx=1\nY=new\r\n; note\nx=2\n\n\n[B]\r\ny=3");
  EXPECT_EQ(With(bytes, "A", "z", " 9"),
            "; heading\n[A]\nx=1\n  Y = old\n; note\nx=2\nz=\" 9\"\r\n\n\n[B]\r\ny=3");
  EXPECT_EQ(With(bytes, "B", "z", "4"), bytes + "\r\nz=4\r\n");
  EXPECT_EQ(With(bytes, "C", "z", ""), bytes + "\r\n[C]\r\nz=\r\n");
  EXPECT_EQ(With(bytes, "A", "x", "1"), bytes);
  EXPECT_EQ(With("", "A", "x", "1"), "[A]\r\nx=1\r\n");
}

TEST(Journal, ComesBackWholeOrNotAtAll) {
  JournalPart header("quill.dat");
  header.Add("General Info", "NoOfRecords", "5", "6");
  header.Add("General Info", "New", {}, "");
  JournalPart records("quill0.dat");
  records.Add("Record1", "Notes", "a\r\nend 0", " b ");
  records.Add("Record2", "x", "", "\n+y=1");
  const std::string text = JournalText({&header, &records});
  const auto parsed = ParseJournal(text);
  ASSERT_TRUE(parsed);
  const Journal expected = {
      {"quill.dat", {{"General Info", "NoOfRecords", "5", "6"}, {"General Info", "New", {}, ""}}},
      {"quill0.dat", {{"Record1", "Notes", "a\r\nend 0", " b "}, {"Record2", "x", "", "\n+y=1"}}}};
  EXPECT_EQ(*parsed, expected);
  for (std::size_t size = 0; size < text.size(); ++size) {
    ASSERT_FALSE(ParseJournal(text.substr(0, size))) << size;
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::string damaged = text;
    damaged[i] = static_cast<char>(damaged[i] ^ 1);
    ASSERT_FALSE(ParseJournal(damaged)) << i;
  }
}

TEST(Journal, NamesNoFileOutsideItsFolderAndNothingThatAProfileCannotHold) {
  const auto isTaken = [](std::string_view file, std::string_view section, std::string_view key) {
    JournalPart part(file);
    part.Add(section, key, {}, "v");
    return ParseJournal(JournalText({&part})).has_value();
  };
  EXPECT_TRUE(isTaken("quill.dat", "s", "k"));
  for (const char* name : {"../quill.dat", "/etc/x", "..", "a\\b", ""}) {
    EXPECT_FALSE(isTaken(name, "s", "k")) << name;
  }
  for (const char* section : {"", " s", "s]", "s\r"}) EXPECT_FALSE(isTaken("f", section, "k"));
  for (const char* key : {"", "k ", ";k", "[k", "\tk"}) EXPECT_FALSE(isTaken("f", "s", key));
}

}  // namespace
}  // namespace quillary::test
