#include "store/profile_text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "store/journal.h"

namespace quillary::test {
namespace {

std::string With(std::string_view bytes, std::string_view section, std::string_view key,
                 std::string_view value) {
  FileChanges changes;
  changes.Set(section, key, value);
  return ProfileText(std::string(bytes)).With(changes);
}

// Any text as names, values and whole files is what the fuzzing gives; here are examples.

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

TEST(Journal, IsTakenWholeOrNotAtAll) {
  JournalPart header("quill.dat");
  header.Add("General Info", "NoOfRecords", "5", "6");
  header.Add("General Info", "New", {}, "");
  JournalPart records("quill0.dat");
  records.Add("Record1", "Notes", "a\r\nend 0", " b ");
  const std::string text = JournalText({&header, &records});
  EXPECT_EQ(ParseJournal(text),
            (Journal{{"quill.dat",
                      {{"General Info", "NoOfRecords", "5", "6"}, {"General Info", "New", {}, ""}}},
                     {"quill0.dat", {{"Record1", "Notes", "a\r\nend 0", " b "}}}}));
  for (std::size_t i = 0; i < text.size(); ++i) {
    ASSERT_FALSE(ParseJournal(text.substr(0, i))) << i;
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
  const JournalPart twice("quill.dat");
  EXPECT_FALSE(ParseJournal(JournalText({&twice, &twice})));
  for (const char* section : {"", " s", "s]", "s\r"}) EXPECT_FALSE(isTaken("f", section, "k"));
  for (const char* key : {"", "k ", ";k", "[k", "\tk"}) EXPECT_FALSE(isTaken("f", "s", key));
  // Nor does it move anything but its own temporary files.
  for (const std::string temporary :
       {".quillary-12-a.tmp", "letter.txt", ".quillary-12-/../../letter.tmp"}) {
    const JournalPart part("a", temporary);
    EXPECT_EQ(ParseJournal(JournalText({&part})).has_value(), temporary.ends_with("-a.tmp"));
  }
}

}  // namespace
}  // namespace quillary::test
