#include <filesystem>
#include <random>

#include "tests/support/check_invariants.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

const std::vector<Field> AllFields{Sal,      FirstName, LastName, Title,    Company,  Address1,
                                   Address2, Address3,  Address4, Address5, Address6, Phone1,
                                   Phone2,   Fax,       EMail,    Notes};

// Find and the filter.
struct SearchTest : StoreTest {
  // "record:field", or empty.
  std::string Find(const std::string& text, std::size_t start,
                   const std::vector<Field>& fields = AllFields) {
    const auto found = Store.FindText(text, fields, Lines.RecNos, start);
    if (!found) return {};
    return Lines.RecNos.at(found->Index) + ':' + Data.FieldKeys.at(fields.at(found->KeyIndex));
  }
  // The names that a filter leaves.
  Texts Filtered(const std::array<std::string, 5>& criteria) {
    Filter(criteria);
    EXPECT_TRUE(CheckInvariants(*this));
    return Lines.Texts;
  }
};

TEST_F(SearchTest, GoesFromTheSelectedEntryRoundToIt) {
  for (const std::string name : {"Ann", "Bo", "Anna", "Cy"}) Add(name, "");  // 0, 2, 1, 3
  EXPECT_EQ(Find("AN", 0), "2:FirstName");
  EXPECT_EQ(Find("an", 1), "0:FirstName");
  EXPECT_EQ(Find("an", 3), "0:FirstName");
  // Only the selected one has it.
  EXPECT_EQ(Find("cy", 3), "3:FirstName");
  EXPECT_EQ(Progress.Steps, (std::vector<double>{25, 50, 75, 100}));
  EXPECT_EQ(Find("nobody", 2), "");

  Filter({"Cy"});
  EXPECT_EQ(Find("c", 0), "3:FirstName");
  EXPECT_EQ(Find("an", 0), "");
  Filter({"nobody"});
  EXPECT_EQ(Find("c", 0), "");
}

TEST_F(SearchTest, SearchesTheGivenFieldsInTheirOrder) {
  Add("Ann", "Lee", "Lee & Sons");
  Set("0", "Notes", "see Lee");
  EXPECT_EQ(Find("lee", 0, {FirstName, LastName}), "0:LastName");
  EXPECT_EQ(Find("lee", 0, {Notes, Company}), "0:Notes");
  EXPECT_EQ(Find("lee &", 0, {Notes, Company}), "0:Company");
  // Display strings and names of keys are no fields.
  for (const char* text : {"lee, ann", "phone", "( "}) EXPECT_EQ(Find(text, 0), "") << text;
}

TEST_F(SearchTest, FilterNeedsAllCriteriaAnywhereInAnyCase) {
  Add("Bo", "Jansen", "Acme");
  Add("Cy", "SANDERS", "Zinc  Works");
  Add("Al", "Brandt", "");
  Add("Έλλη", "ΠΑΠΠΆ", "Ödmjuk");
  Add("Di", "Miller", "acme");
  Set("2", "Notes", "\"quoted\"\r\nline \xff");
  EXPECT_EQ(Filtered({"", "an"}), (Texts{"Brandt, Al", "Jansen, Bo", "SANDERS, Cy"}));
  EXPECT_EQ(Filtered({"b", "aN", "", "ACM"}), Texts{"Jansen, Bo"});
  EXPECT_EQ(Filtered({"έλ", "παππά", "", "öD"}), Texts{"ΠΑΠΠΆ, Έλλη"});
  // Blanks count.
  EXPECT_EQ(Filtered({"", "", "", " w"}), Texts{"SANDERS, Cy"});
  EXPECT_EQ(Filtered({"", " an"}), Texts{});
  EXPECT_EQ(Filtered({"", "", "x"}), Texts{});
  EXPECT_EQ(Filtered({"", "", "", "", "ED\"\r\nL"}), Texts{"Brandt, Al"});
}

TEST_F(SearchTest, WhatCannotBeReadIsPassedOverAndToldButNotWhatIsMissing) {
  Add("Ann", "");
  SetHeader("TotalNoOfRecords", "100");
  Add("Anna", "");
  Data.FilterCriteria[0] = "ann";
  std::filesystem::remove(Folder.File("quill0.dat"));
  for (const RunTimeError expected : {RunTimeError::None, RunTimeError::PathAccess}) {
    RunTimeError error = RunTimeError::DeviceError;
    const auto found = Store.FindText("ann", AllFields, Lines.RecNos, 1, &error);
    EXPECT_TRUE(found && found->Index == 1);
    EXPECT_EQ(error, expected);
    error = RunTimeError::DeviceError;
    Store.BuildFilteredList(&error);
    EXPECT_EQ(Data.FilteredNamesRecNo, TextList{"100"});
    EXPECT_EQ(error, expected);
    Folder.MakeUnreadable("quill0.dat");
  }
}

// What a plain search through the values of the entries finds, in files written by hand, too.
TEST_F(SearchTest, FindsWhatTheLowerCaseOfTheValuesContains) {
  std::mt19937 engine(20);
  const Texts pieces{
      "a", "É", "é", "ÉMILE", "Ω",    "ω",        "\u2126",       "K",  "\u212A", "İ",    "i",
      "ß", "ẞ", "Σ", "ς",     "王",   "כהן",      "\r\n",         "\\", "\"",     "\\\"", "'",
      " ", "=", "[", ";",     "\xff", "\xe2\x84", "\xEF\xBF\xBD", "Д",  "д"};
  const Texts byHand{
      "\n[Record90]x\n", "\n [record95]\n", "\n[Record]\n", "\n[Other]\nFax=", "\nNotes=",
      "\n\tnotes = ",    "\nTitle=\\\"\\r", "\n;Notes=",    "\r\nEMail=",      "\nNotes"};
  const auto text = [&](std::size_t most) {
    std::string result;
    for (std::size_t n = engine() % (most + 1); n > 0; --n) {
      result += pieces[engine() % pieces.size()];
    }
    return result;
  };
  SetHeader("TotalNoOfRecords", "85");
  for (int n = 0; n < 30; ++n) {
    const std::string recNo = Add(text(2), text(2));
    for (const std::string key : {"Title", "Notes", "EMail"}) Set(recNo, key, text(6));
  }
  std::string rough = "\xEF\xBB\xBF; " + Folder.ReadFile("quill0.dat");
  for (int n = 0; n < 100; ++n) {
    const std::size_t at = rough.find('\n', engine() % rough.size());
    if (at != std::string::npos) rough.insert(at, byHand[engine() % byHand.size()] + text(3));
  }
  Folder.WriteFile("quill0.dat", rough);

  int found = 0;
  for (int n = 0; n < 300; ++n) {
    const std::string sought = text(2) + pieces[engine() % pieces.size()];
    const std::size_t start = engine() % 30;
    std::string expected;
    for (std::size_t i = 1; i <= 30 && expected.empty(); ++i) {
      const std::string& recNo = Lines.RecNos[(start + i) % 30];
      for (const auto& key : Data.FieldKeys) {
        if (LowerCase(Value(recNo, key)).find(LowerCase(sought)) == std::string::npos) continue;
        expected.append(recNo).append(":").append(key);
        break;
      }
    }
    ASSERT_EQ(Find(sought, start), expected) << testing::PrintToString(sought);
    if (!expected.empty()) ++found;
    Data.FilterCriteria = {"", "", "", "", sought};
    const std::string& recNo = Lines.RecNos[start];
    const bool isIn = LowerCase(Value(recNo, "Notes")).find(LowerCase(sought)) != std::string::npos;
    ASSERT_EQ(Store.RecordMatchesFilter(recNo), isIn) << testing::PrintToString(sought);
  }
  EXPECT_GT(found, 50);
  EXPECT_LT(found, 250);
}

}  // namespace
}  // namespace quillary::test
