#include <filesystem>
#include <random>

#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

const std::vector<Field> NameFields{FirstName, LastName};
const std::vector<Field> AllFields{Sal,      FirstName, LastName, Title,    Company,  Address1,
                                   Address2, Address3,  Address4, Address5, Address6, Phone1,
                                   Phone2,   Fax,       EMail,    Notes};

struct FindTextTest : StoreTest {
  // "record:field", or empty.
  std::string Find(const std::string& text, std::size_t start,
                   const std::vector<Field>& fields = AllFields) {
    const auto found = World.Store.FindText(text, fields, World.Lines.RecNos, start);
    if (!found) return {};
    return World.Lines.RecNos.at(found->Index) + ':' +
           World.Data.FieldKeys.at(fields.at(found->KeyIndex));
  }
};

TEST_F(FindTextTest, GoesFromTheSelectedEntryRoundToIt) {
  for (const std::string name : {"Ann", "Bo", "Anna", "Cy"}) World.Add(name, "");  // 0, 2, 1, 3
  EXPECT_EQ(Find("AN", 0), "2:FirstName");
  EXPECT_EQ(Find("an", 1), "0:FirstName");
  EXPECT_EQ(Find("an", 3), "0:FirstName");
  // Only the selected one has it.
  EXPECT_EQ(Find("cy", 3), "3:FirstName");
  EXPECT_EQ(World.Progress.Steps, (std::vector<double>{25, 50, 75, 100}));
  EXPECT_EQ(Find("nobody", 2), "");
  EXPECT_EQ(World.Progress.Stages.back(), "Please wait. Searching...|");
  EXPECT_EQ(World.Progress.Steps, (std::vector<double>{0, 50, 75, 100}));
  EXPECT_FALSE(World.Progress.IsOpen);

  World.Filter({"Cy"});
  EXPECT_EQ(Find("c", 0), "3:FirstName");
  EXPECT_EQ(Find("an", 0), "");
  World.Filter({"nobody"});
  EXPECT_EQ(Find("c", 0), "");
}

TEST_F(FindTextTest, WhatCannotBeReadIsPassedOverAndToldButNotWhatIsMissing) {
  World.Add("Ann", "");
  ASSERT_EQ(World.Store.WriteHeaderEntry("TotalNoOfRecords", "100"), RunTimeError::None);
  World.Add("Anna", "");
  World.Data.FilterCriteria[0] = "ann";
  std::filesystem::remove(World.Folder.File("quill0.dat"));
  for (const RunTimeError expected : {RunTimeError::None, RunTimeError::PathAccess}) {
    RunTimeError error = RunTimeError::DeviceError;
    const auto found = World.Store.FindText("ann", NameFields, World.Lines.RecNos, 1, &error);
    EXPECT_TRUE(found && found->Index == 1);
    EXPECT_EQ(error, expected);
    error = RunTimeError::DeviceError;
    World.Store.BuildFilteredList(&error);
    EXPECT_EQ(World.Data.FilteredNamesRecNo, TextList{"100"});
    EXPECT_EQ(error, expected);
    World.Folder.MakeUnreadable("quill0.dat");
  }
}

TEST_F(FindTextTest, SearchesTheGivenFieldsInTheirOrder) {
  World.Add("Ann", "Lee", "Lee & Sons");
  Set("0", "Notes", "see Lee");
  EXPECT_EQ(Find("lee", 0, NameFields), "0:LastName");
  EXPECT_EQ(Find("lee", 0, {Notes, Company}), "0:Notes");
  EXPECT_EQ(Find("lee &", 0, {Notes, Company}), "0:Company");
  // Display strings and names of keys are no fields.
  for (const char* text : {"lee, ann", "phone", "( "}) EXPECT_EQ(Find(text, 0), "") << text;
}

TEST_F(FindTextTest, FilesWrittenByHandAreSearchedAsTheirEntriesAre) {
  World.Add("Ann", "");
  World.Add("Bo", "");
  World.Folder.WriteFile("quill0.dat",
                         "\xEF\xBB\xBF; needle\n[record0] x\nfirstname = \" needle \" \n"
                         "FirstName=second\nNotes\nNotes=\\\"one\\r\\ntwo\\\\\"\nEMail=\\n\n"
                         "[Other]\nNotes=needle9\n[Record0]\nFax=needle9\n[Record01]\nFax=needle9\n"
                         "\t[Record1]\nLastName=needle\n");
  EXPECT_EQ(Find("NEEDLE ", 0), "0:FirstName");
  EXPECT_EQ(Find("second", 0), "");
  EXPECT_EQ(Find("needle", 0), "1:LastName");
  EXPECT_EQ(Find("needle9", 0), "");
  EXPECT_EQ(Find("e\r\nt", 0), "0:Notes");
  EXPECT_EQ(Find("two\\", 0), "0:Notes");
  EXPECT_EQ(Find("\\n", 0), "0:EMail");
  EXPECT_EQ(Find("\n", 0), "0:Notes");
}

// What a plain search through the values finds.
TEST_F(FindTextTest, FindsWhatTheLowerCaseOfTheValuesContains) {
  std::mt19937 engine(20);
  const Texts pieces{
      "a", "É", "é", "ÉMILE", "Ω",    "ω",        "\u2126",       "K",  "\u212A", "İ",    "i",
      "ß", "ẞ", "Σ", "ς",     "王",   "כהן",      "\r\n",         "\\", "\"",     "\\\"", "'",
      " ", "=", "[", ";",     "\xff", "\xe2\x84", "\xEF\xBF\xBD", "Д",  "д"};
  const auto text = [&](std::size_t most) {
    std::string result;
    for (std::size_t n = engine() % (most + 1); n > 0; --n) {
      result += pieces[engine() % pieces.size()];
    }
    return result;
  };
  for (int n = 0; n < 30; ++n) {
    const std::string recNo = World.Add(text(2), text(2));
    for (const std::string key : {"Title", "Notes", "EMail"}) Set(recNo, key, text(6));
  }
  int found = 0;
  for (int n = 0; n < 300; ++n) {
    const std::string sought = text(2) + pieces[engine() % pieces.size()];
    const std::size_t start = engine() % 30;
    std::string expected;
    for (std::size_t i = 1; i <= 30 && expected.empty(); ++i) {
      const std::string& recNo = World.Lines.RecNos[(start + i) % 30];
      for (const auto& key : World.Data.FieldKeys) {
        const std::string value = Value(recNo, key);
        if (LowerCase(value).find(LowerCase(sought)) == std::string::npos) continue;
        expected.append(recNo).append(":").append(key);
        break;
      }
    }
    ASSERT_EQ(Find(sought, start), expected) << testing::PrintToString(sought);
    if (!expected.empty()) ++found;
  }
  EXPECT_GT(found, 50);
  EXPECT_LT(found, 250);
}

}  // namespace
}  // namespace quillary::test
