#include <filesystem>
#include <sstream>

#include "platform/numbers.h"
#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

struct NamesListTest : StoreTest {
  // Records 0, 1, 2, ... with these last names, chained in this order.
  void Write(const Texts& lastNames) {
    const int count = static_cast<int>(lastNames.size());
    std::ostringstream records;
    for (int i = 0; i < count; ++i) {
      const std::string& name = lastNames[static_cast<std::size_t>(i)];
      records << "[Record" << i << "]\nShowName=" << name << "\nShowCompany=" << name << "\n";
      for (const std::string kind : {"Name", "Company"}) {
        records << "Prev" << kind << "=" << (i == 0 ? "" : NumberText(i - 1)) << "\nNext" << kind
                << "=" << (i + 1 == count ? "" : NumberText(i + 1)) << "\n";
      }
    }
    Folder.WriteFile("quill0.dat", records.str());
    Folder.WriteFile("quill.dat",
                     "[General Info]\nApplication=Quillary\nNameFirstRecord=0\n"
                     "CompanyFirstRecord=0\nDelNoOfRecords=0\nTotalNoOfRecords=" +
                         NumberText(count) + "\nNoOfRecords=" + NumberText(count) + "\n");
  }
  // Takes a record file away; what it held.
  std::string Hide(const std::string& file) {
    std::string bytes = Folder.ReadFile(file);
    std::filesystem::remove(Folder.File(file));
    return bytes;
  }
};

// Nobody is left before a window that says nothing.
TEST_F(NamesListTest, LongWorkTellsWhatItDoesAndHowFarItIs) {
  WriteDataSet(Folder.Path(), {.Live = 250, .Deleted = 20, .Scrambled = true});
  Open();
  ASSERT_EQ(Progress.Steps.size(), 249U);
  EXPECT_DOUBLE_EQ(Progress.Steps.front(), 0.8);
  ASSERT_EQ(Store.SortNamesList(), RunTimeError::None);
  EXPECT_TRUE(std::is_sorted(Progress.Steps.begin(), Progress.Steps.end()));
  EXPECT_EQ(Progress.Steps.back(), 100);
  Store.ReadDeletedNamesList();
  Filter({"", "an"});
  EXPECT_FALSE(Store.FindText("nobody", {LastName}, {"0", "1", "2", "3"}, 2));
  EXPECT_EQ(Progress.Steps, (std::vector<double>{0, 50, 75, 100}));
  EXPECT_EQ(Progress.Stages,
            (Texts{"Please wait while getting names list...|Loading Names...|",
                   "Please wait while sorting names list...|Sorting Names...",
                   "Please wait while sorting data...|Sorting Data...|",
                   "Please wait while getting deleted names list...|",
                   "Please wait while sorting deleted names list...||",
                   "Please wait. Searching...||", "Please wait. Getting filtered names list...||",
                   "Please wait while sorting names list...||", "Please wait. Searching...||"}));
}

TEST_F(NamesListTest, SortsStablyAndWritesWhatHasMoved) {
  const std::string large(1 << 20, 'x');
  Write({"b", "C", large, "B", "a", "Åse", "( c )", "1", "", "A", "_x", "ass"});
  Open();
  ASSERT_EQ(Store.SortNamesList(), RunTimeError::None);
  Store.ShowRecords();
  EXPECT_TRUE(CheckInvariants(*this));
  EXPECT_EQ(Data.NamesList,
            (Texts{"", "_x", "( c )", "1", "a", "A", "Åse", "ass", "b", "B", "C", large}));

  // Nothing has, and nothing is written.
  Open();
  Machine.FailWrites(RunTimeError::DiskFull);
  EXPECT_EQ(Store.SortNamesList(), RunTimeError::None);
  EXPECT_LT(Machine.Calls(), 10);
  EXPECT_TRUE(CheckInvariants(*this));
}

TEST_F(NamesListTest, ASortedListThatCannotBeWrittenIsWrittenWithTheNextRecord) {
  Write({"B", "C", "A"});
  Open();
  const auto before = Folder.Files();
  Machine.FailAt(1, RunTimeError::DiskFull, true);
  EXPECT_NE(Store.SortNamesList(), RunTimeError::None);
  Machine.Reset();
  EXPECT_EQ(Folder.Files(), before);
  EXPECT_EQ(Data.NamesList, (Texts{"A", "B", "C"}));
  EXPECT_FALSE(Data.ListsIncomplete);
  Store.ShowRecords();
  Add("New", "Person");
  EXPECT_TRUE(CheckInvariants(*this));
}

TEST_F(NamesListTest, BrokenChainsAreMendedWithTheNextRecordAndNotBefore) {
  Write({"A", "B", "C", "D"});
  Set("1", "NextName", "");
  Set("2", "NextCompany", "");
  SetHeader("NoOfRecords", "1e9");
  const auto before = Folder.Files();
  Open();
  const auto memory = Memory();
  ASSERT_EQ(Store.SortNamesList(), RunTimeError::None);
  {
    const ProfileUpdate failing(Access);
    Add("", "BB");
  }
  EXPECT_TRUE(Data.ListsIncomplete);
  EXPECT_EQ(Lines.Texts, (Texts{"A", "B", "C", "D"}));
  EXPECT_EQ(Memory(), memory);
  EXPECT_EQ(Folder.Files(), before);
  Add("", "BB");
  EXPECT_EQ(Lines.Texts, (Texts{"A", "B", "BB", "C", "D"}));
  EXPECT_TRUE(CheckInvariants(*this));
  Open();
  EXPECT_FALSE(Data.ListsIncomplete);
}

// An import that replaces all leaves the sections of the old records where they are.
TEST_F(NamesListTest, RecordsLeftBehindDoNotComeBackWhereNoneIsMissing) {
  Write({"A", "B", "C"});
  Set("3", "ShowName", "Old");
  SetHeader("TotalNoOfRecords", "4");
  Set("0", "NextName", "2");
  Open();
  EXPECT_TRUE(Data.ListsIncomplete);
  EXPECT_EQ(Data.NamesRecNo, (Texts{"0", "1", "2"}));
}

TEST_F(NamesListTest, WhatCannotBeReadIsNotCutOffByTheNextChange) {
  WriteDataSet(Folder.Path(), {.Live = 250});
  const std::string hidden = Hide("quill1.dat");
  std::filesystem::create_directory(Folder.File("quill1.dat"));
  Open();
  EXPECT_EQ(Lines.Texts.size(), 150U);
  EXPECT_NE(Add(Person("New", "Person")), RunTimeError::None);

  std::filesystem::remove(Folder.File("quill1.dat"));
  Folder.WriteFile("quill1.dat", hidden);
  Open();
  EXPECT_EQ(Lines.Texts.size(), 250U);
  EXPECT_TRUE(CheckInvariants(*this));
}

TEST_F(NamesListTest, DataThatVanishAreNotBegunAnew) {
  Write({"A", "B"});
  Open();
  Hide("quill.dat");
  EXPECT_EQ(Add(Person("", "C")), RunTimeError::FileNotFound);
  EXPECT_FALSE(std::filesystem::exists(Folder.File("quill.dat")));
  EXPECT_EQ(Lines.Texts, (Texts{"A", "B"}));
}

TEST_F(NamesListTest, ARecordFileThatComesBackBringsItsRecords) {
  WriteDataSet(Folder.Path(), {.Live = 150, .Deleted = 4});
  const auto files = Folder.Files();
  const std::string& hidden = files.at("quill1.dat");
  // What a power cut, the return of an older copy and another program may leave in its place.
  for (const std::string& left : {std::string(), std::string(hidden.size(), '\0'),
                                  hidden.substr(0, hidden.find("[Record120]")),
                                  std::string("[Record110]\r\nPrevDel=3\r\n")}) {
    SCOPED_TRACE(left.substr(0, 20));
    for (const auto& [name, bytes] : files) Folder.WriteFile(name, bytes);
    Folder.WriteFile("quill1.dat", left);
    Open();
    EXPECT_EQ(Add("New", "Person"), "200");
    const std::string noted = Header("MissingRecords");
    EXPECT_TRUE(noted.ends_with("-153")) << noted;
    // What was there of the file is not what was missing.
    Open();
    EXPECT_FALSE(Data.ListsIncomplete);
    Add("Another", "Person");
    EXPECT_EQ(Header("MissingRecords"), noted);

    Folder.WriteFile("quill1.dat", hidden);
    Open();
    EXPECT_EQ(Lines.Texts.size(), 152U);
    Add("Other", "Person");
    EXPECT_EQ(Lines.Texts.size(), 153U);
    EXPECT_TRUE(CheckInvariants(*this));
    EXPECT_EQ(Header("MissingRecords"), "");
    Hide("quill2.dat");
  }
}

TEST_F(NamesListTest, ARecordFileThatIsBackBeforeTheNextChangeIsReadFirst) {
  WriteDataSet(Folder.Path(), {.Live = 150, .Deleted = 4});
  const std::string hidden = Hide("quill1.dat");
  Open();
  Folder.WriteFile("quill1.dat", hidden);
  EXPECT_EQ(Add(Person("New", "Person")), RunTimeError::BadRecordNumber);
  EXPECT_EQ(Store.ReadListsAgain(), RunTimeError::None);
  Add("New", "Person");
  EXPECT_EQ(Lines.Texts.size(), 151U);
  EXPECT_TRUE(CheckInvariants(*this));
}

// What it says of records before the header was begun anew holds no more, then or later.
TEST_F(NamesListTest, AHeaderBegunAnewByAnotherProgramMakesTheReplacedRecordsVoid) {
  Write({"A", "B", "C"});
  SetHeader("ReplacedRecords", "5");
  Set("0", "NextName", "2");
  Set("0", "NextCompany", "2");
  Open();
  EXPECT_EQ(Data.NamesRecNo, (Texts{"0", "1", "2"}));
  for (const std::string name : {"D", "E", "F"}) Add("", name);
  EXPECT_EQ(Header("ReplacedRecords"), "");
  EXPECT_TRUE(CheckInvariants(*this));
}

TEST_F(NamesListTest, WhatTheCountLeavesOutIsNotCutOffWhileItsFileIsMissing) {
  Write({"A", "B"});
  for (const std::string kind : {"Name", "Company"}) {
    Set("1", "Next" + kind, "100");
    Set("100", "Prev" + kind, "1");
    Set("100", "Show" + kind, "C");
  }
  SetHeader("TotalNoOfRecords", "101");
  Open();
  ASSERT_EQ(Store.SortNamesList(), RunTimeError::None);
  Hide("quill1.dat");
  const auto files = Folder.Files();
  EXPECT_EQ(Add(Person("", "Z")), RunTimeError::BadRecordNumber);
  EXPECT_EQ(Folder.Files(), files);
}

TEST_F(NamesListTest, AMissingRecordFileKeepsItsNumbers) {
  for (const bool deletesFirst : {false, true}) {
    WriteDataSet(Folder.Path(), {.Live = 150});
    Hide("quill1.dat");
    Open();
    EXPECT_EQ(Lines.Texts.size(), 100U);
    // Writes all links anew, after which none leads there.
    if (deletesFirst) {
      ASSERT_EQ(Delete("7"), RunTimeError::None);
    }
    EXPECT_EQ(Add("New", "Person"), "200");
    EXPECT_FALSE(std::filesystem::exists(Folder.File("quill1.dat")));
    Hide("quill2.dat");
  }
}

TEST_F(NamesListTest, FilesWrittenByHandAreReadAsTheirEntriesAre) {
  Write({"A", "B", "C"});
  Folder.WriteFile("quill0.dat",
                   "\xEF\xBB\xBF[record0]\n showname = \"  a\" \nSHOWNAME=z\n;NextName=9\n"
                   "ShowCompany=\\\"c\\r=\"\nNextName= 1 \r\n\tnextcompany=2\nNextNames=0\n"
                   "  [ Record1 ] x\nShowName=b\nShowName =y\nShowCompany==\nNextName=2\n"
                   "[Record0]\nShowName=other\nNextName=5\n[Record01]\nShowName=x\n"
                   "[Record2]\r\nNextName=\nNextCompany=1");
  Open();
  EXPECT_FALSE(Data.ListsIncomplete);
  EXPECT_EQ(Data.NamesRecNo, (Texts{"0", "1", "2"}));
  EXPECT_EQ(Data.CompaniesRecNo, (Texts{"0", "2", "1"}));
  EXPECT_EQ(Data.NamesList, (Texts{"  a", "b", ""}));
  EXPECT_EQ(Data.CompaniesList, (Texts{"c\r=", "", "="}));
}

}  // namespace
}  // namespace quillary::test
