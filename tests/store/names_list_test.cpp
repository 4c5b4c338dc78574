#include <filesystem>
#include <random>
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
    std::ostringstream header;
    header << "[General Info]\nApplication=Quillary\nNameFirstRecord=0\nCompanyFirstRecord=0\n"
           << "TotalNoOfRecords=" << count << "\nDelNoOfRecords=0\nNoOfRecords=" << count << "\n";
    std::ostringstream records;
    for (int i = 0; i < count; ++i) {
      const std::string& name = lastNames[static_cast<std::size_t>(i)];
      const std::string previous = i == 0 ? "" : NumberText(i - 1);
      const std::string next = i + 1 == count ? "" : NumberText(i + 1);
      records << "[Record" << i << "]\nShowName=" << name << "\nShowCompany=" << name << "\n";
      for (const std::string kind : {"Name", "Company"}) {
        records << "Prev" << kind << "=" << previous << "\nNext" << kind << "=" << next << "\n";
      }
    }
    World.Folder.WriteFile("quill.dat", header.str());
    World.Folder.WriteFile("quill0.dat", records.str());
  }
  auto Files() const { return World.Folder.Files(".dat"); }
};

TEST_F(NamesListTest, ReadsAndShowsBothListsWithProgress) {
  WriteDataSet(World.Folder.Path(), {.Live = 250, .Deleted = 20});
  EXPECT_TRUE(CheckFiles(World.Folder.Path()));
  World.Open();
  EXPECT_FALSE(Data.ListsIncomplete);
  EXPECT_EQ(Data.NoOfRecords, 250);
  EXPECT_TRUE(CheckInvariants(World));
  EXPECT_EQ(World.Progress.Stages,
            Texts{"Please wait while getting names list...|Loading Names..."});
  ASSERT_EQ(World.Progress.Steps.size(), 249U);
  EXPECT_DOUBLE_EQ(World.Progress.Steps.front(), 0.8);
  EXPECT_EQ(World.Progress.Steps.back(), 100);
  EXPECT_FALSE(World.Progress.IsOpen);

  Data.ViewMode = 1;
  World.Store.ShowRecords();
  EXPECT_TRUE(CheckInvariants(World));
}

TEST_F(NamesListTest, WithoutRecordsTheListsHaveOneEmptyEntry) {
  Write({"A", "B"});
  World.Open();
  SetHeader("NoOfRecords", "0");
  World.Open();
  for (const TextList* list :
       {&Data.NamesList, &Data.NamesRecNo, &Data.CompaniesList, &Data.CompaniesRecNo}) {
    EXPECT_EQ(*list, Texts{""});
  }
  EXPECT_TRUE(World.Lines.Texts.empty());
  EXPECT_EQ(World.Store.SortNamesList(), RunTimeError::None);
}

TEST_F(NamesListTest, SortedListsAreNotWritten) {
  Write({"lee, ann", "Lee, Ann", "Mo"});
  World.Open();
  const auto before = Files();
  const int calls = World.Machine.Calls();
  World.Progress.Stages.clear();
  ASSERT_EQ(World.Store.SortNamesList(), RunTimeError::None);
  EXPECT_EQ(Files(), before);
  EXPECT_LT(World.Machine.Calls(), calls + 10);
  EXPECT_EQ(Data.NamesRecNo, (Texts{"0", "1", "2"}));
  EXPECT_EQ(World.Progress.Stages,
            Texts{"Please wait while sorting names list...|Sorting Names..."});
  EXPECT_EQ(World.Progress.Steps, std::vector<double>{100});
}

TEST_F(NamesListTest, SortsStablyAndRelinksTheFiles) {
  Write({"b", "C", "ß", "B", "a", "Åse", "( c )", "1", "", "A", "_x", "ass"});
  World.Open();
  World.Progress.Stages.clear();
  ASSERT_EQ(World.Store.SortNamesList(), RunTimeError::None);
  World.Store.ShowRecords();
  EXPECT_TRUE(CheckInvariants(World));
  EXPECT_EQ(Data.NamesList,
            (Texts{"", "_x", "( c )", "1", "a", "A", "Åse", "ass", "b", "B", "C", "ß"}));
  EXPECT_EQ(World.Progress.Stages,
            (Texts{"Please wait while sorting names list...|Sorting Names...",
                   "Please wait while sorting data...|Sorting Data..."}));
  EXPECT_TRUE(std::is_sorted(World.Progress.Steps.begin(), World.Progress.Steps.end()));
  EXPECT_EQ(World.Progress.Steps.back(), 100);
  World.Open();
  EXPECT_TRUE(CheckInvariants(World));
}

TEST_F(NamesListTest, ASortedListThatCannotBeWrittenIsWrittenWithTheNextRecord) {
  WriteDataSet(World.Folder.Path(), {.Live = 120, .Deleted = 3, .Scrambled = true});
  World.Open();
  const auto before = Files();
  World.Machine.FailAt(1, RunTimeError::DiskFull, true);
  EXPECT_NE(World.Store.SortNamesList(), RunTimeError::None);
  World.Machine.Reset();
  EXPECT_EQ(Files(), before);
  EXPECT_TRUE(std::is_sorted(
      Data.NamesList.begin(), Data.NamesList.end(),
      [this](const auto& a, const auto& b) { return World.Comparer.Compare(a, b) < 0; }));
  EXPECT_FALSE(Data.ListsIncomplete);

  World.Store.ShowRecords();
  World.Add("New", "Person");
  EXPECT_TRUE(CheckInvariants(World));
}

TEST_F(NamesListTest, ACountTooSmallListsThatManyAndLosesNoOtherRecord) {
  for (const std::string count : {"2", "0", "-4", "two"}) {
    Write({"B", "A", "C", "D"});
    SetHeader("NoOfRecords", count);
    World.Open();
    const auto listed = static_cast<std::size_t>(count == "2" ? 2 : 0);
    EXPECT_EQ(World.Lines.Texts.size(), listed);
    EXPECT_FALSE(Data.ListsIncomplete);
    ASSERT_EQ(World.Store.SortNamesList(), RunTimeError::None);
    if (count == "2") {
      EXPECT_EQ(Value("2", "PrevName"), "0");
    }
    World.Store.ShowRecords();
    World.Add("", "Z");
    EXPECT_EQ(World.Lines.Texts.size(), listed + 1);
    // Only the count is wrong: with the right one all five are there.
    SetHeader("NoOfRecords", "5");
    World.Open();
    EXPECT_FALSE(Data.ListsIncomplete) << count;
    EXPECT_EQ(Data.NoOfRecords, 5) << count;
  }
}

TEST_F(NamesListTest, ALinkFromTheLastRecordToNowhereIsNotTakenOver) {
  for (const std::string nowhere : {"77", "0", "x"}) {
    Write({"A", "B"});
    Set("1", "NextName", nowhere);
    Set("1", "NextCompany", nowhere);
    World.Open();
    World.Add("", "C");
    EXPECT_TRUE(CheckInvariants(World)) << nowhere;
  }
}

TEST_F(NamesListTest, BrokenChainsGiveEveryRecord) {
  struct Damage {
    std::string RecNo, Key, Value;  // an empty number is the header
  };
  const Texts expected{"A", "B", "C", "D"};
  for (const auto& [what, damages] :
       std::initializer_list<std::pair<std::string, std::vector<Damage>>>{
           {"chain ends early", {{"1", "NextName", ""}}},
           {"both end early", {{"1", "NextName", ""}, {"2", "NextCompany", ""}}},
           {"circle", {{"2", "NextName", "0"}, {"1", "NextCompany", "0"}}},
           {"circle of companies", {{"2", "NextCompany", "1"}}},
           {"self link", {{"2", "NextName", "2"}}},
           {"missing section", {{"0", "NextName", "77"}, {"2", "NextCompany", "99999999"}}},
           {"no number", {{"0", "NextName", "1x"}, {"0", "NextCompany", "01"}}},
           {"negative", {{"0", "NextName", "-1"}, {"0", "NextCompany", "2147483648"}}},
           {"no head", {{"", "NameFirstRecord", ""}}},
           {"no heads", {{"", "NameFirstRecord", ""}, {"", "CompanyFirstRecord", "?"}}},
           {"count too large", {{"", "NoOfRecords", "9"}}},
           {"count far too large", {{"", "NoOfRecords", "1e9"}}},
           {"different records",
            {{"2", "NextName", ""}, {"1", "NextCompany", "3"}, {"", "NoOfRecords", "3"}}},
       }) {
    Write({"A", "B", "C", "D"});
    for (const Damage& damage : damages) {
      if (damage.RecNo.empty()) {
        SetHeader(damage.Key, damage.Value);
      } else {
        Set(damage.RecNo, damage.Key, damage.Value);
      }
    }
    const auto before = Files();
    World.Open();
    EXPECT_TRUE(Data.ListsIncomplete) << what;
    EXPECT_EQ(World.Lines.Texts, expected) << what;
    ASSERT_EQ(World.Store.SortNamesList(), RunTimeError::None) << what;
    EXPECT_EQ(Files(), before) << what;

    // The next record makes them whole again; a group that fails leaves them as they are.
    {
      const ProfileUpdate failing(World.Access);
      World.Add("", "BB");
    }
    EXPECT_TRUE(Data.ListsIncomplete) << what;
    EXPECT_EQ(World.Lines.Texts, expected) << what;
    EXPECT_EQ(Files(), before) << what;
    ASSERT_EQ(World.Store.RestoreLinks(), RunTimeError::None) << what;
    EXPECT_TRUE(CheckInvariants(World)) << what;
    World.Add("", "BB");
    EXPECT_EQ(World.Lines.Texts.size(), expected.size() + 1) << what;
    EXPECT_TRUE(CheckInvariants(World)) << what;
    World.Open();
    EXPECT_FALSE(Data.ListsIncomplete) << what;
  }
}

TEST_F(NamesListTest, DeletedRecordsDoNotComeBackWhereChainsAreBroken) {
  WriteDataSet(World.Folder.Path(), {.Live = 20, .Deleted = 3});
  SetHeader("NameFirstRecord", "");
  SetHeader("CompanyFirstRecord", "");
  World.Open();
  EXPECT_EQ(World.Lines.Texts.size(), 20U);
  ASSERT_EQ(World.Store.RestoreLinks(), RunTimeError::None);
  EXPECT_TRUE(CheckInvariants(World));
}

// An import that replaces all leaves the sections of the old records where they are.
TEST_F(NamesListTest, RecordsLeftBehindDoNotComeBackWhereNoneIsMissing) {
  Write({"A", "B", "C"});
  Set("3", "ShowName", "Old");
  SetHeader("TotalNoOfRecords", "4");
  Set("0", "NextName", "2");
  World.Open();
  EXPECT_TRUE(Data.ListsIncomplete);
  EXPECT_EQ(Data.NamesRecNo, (Texts{"0", "1", "2"}));
}

TEST_F(NamesListTest, WhatCannotBeReadIsNotCutOffByTheNextChange) {
  WriteDataSet(World.Folder.Path(), {.Live = 250});
  const std::string hidden = World.Folder.ReadFile("quill1.dat");
  std::filesystem::remove(World.Folder.File("quill1.dat"));
  std::filesystem::create_directory(World.Folder.File("quill1.dat"));
  World.Open();
  EXPECT_EQ(World.Lines.Texts.size(), 150U);
  std::string recNo;
  EXPECT_NE(World.Add("New", "Person", "", recNo), RunTimeError::None);

  std::filesystem::remove(World.Folder.File("quill1.dat"));
  World.Folder.WriteFile("quill1.dat", hidden);
  World.Open();
  EXPECT_EQ(World.Lines.Texts.size(), 250U);
  EXPECT_TRUE(CheckInvariants(World));
}

TEST_F(NamesListTest, DataThatVanishAreNotBegunAnew) {
  Write({"A", "B"});
  World.Open();
  std::filesystem::rename(World.Folder.File("quill.dat"), World.Folder.File("elsewhere"));
  std::string recNo;
  EXPECT_EQ(World.Add("", "C", "", recNo), RunTimeError::FileNotFound);
  EXPECT_FALSE(std::filesystem::exists(World.Folder.File("quill.dat")));
  EXPECT_EQ(World.Lines.Texts, (Texts{"A", "B"}));
}

TEST_F(NamesListTest, ARecordFileThatComesBackBringsItsRecords) {
  WriteDataSet(World.Folder.Path(), {.Live = 150, .Deleted = 4});
  const std::string hidden = World.Folder.ReadFile("quill1.dat");
  const std::string header = World.Folder.ReadFile("quill.dat");
  const std::string others = World.Folder.ReadFile("quill0.dat");
  // What a power cut, the return of an older copy and another program may leave in its place.
  const Texts inPlace{"", std::string(hidden.size(), '\0'),
                      hidden.substr(0, hidden.find("[Record120]")), "[Record110]\r\nPrevDel=3\r\n"};
  for (const std::string& left : inPlace) {
    SCOPED_TRACE(left.substr(0, 20));
    StoreWorld world;
    const auto write = [&](const char* name, const std::string& bytes) {
      world.Folder.WriteFile(name, bytes);
    };
    write("quill.dat", header);
    write("quill0.dat", others);
    write("quill1.dat", left);
    world.Open();
    EXPECT_EQ(world.Add("New", "Person"), "200");
    const std::string noted = world.Store.ReadHeaderEntry("MissingRecords");
    EXPECT_TRUE(noted.ends_with("-153")) << noted;
    // What was there of the file is not what was missing.
    world.Open();
    EXPECT_FALSE(world.Data.ListsIncomplete);
    world.Add("Another", "Person");
    EXPECT_EQ(world.Store.ReadHeaderEntry("MissingRecords"), noted);

    write("quill1.dat", hidden);
    world.Open();
    EXPECT_EQ(world.Lines.Texts.size(), 152U);
    world.Add("Other", "Person");
    EXPECT_EQ(world.Lines.Texts.size(), 153U);
    EXPECT_TRUE(CheckInvariants(world));
    EXPECT_EQ(world.Store.ReadHeaderEntry("MissingRecords"), "");
  }
}

TEST_F(NamesListTest, ARecordFileThatIsBackBeforeTheNextChangeIsReadFirst) {
  WriteDataSet(World.Folder.Path(), {.Live = 150, .Deleted = 4});
  const std::string hidden = World.Folder.ReadFile("quill1.dat");
  std::filesystem::remove(World.Folder.File("quill1.dat"));
  World.Open();
  World.Folder.WriteFile("quill1.dat", hidden);
  std::string recNo;
  EXPECT_EQ(World.Add("New", "Person", "", recNo), RunTimeError::BadRecordNumber);
  EXPECT_EQ(World.Store.ReadListsAgain(), RunTimeError::None);
  World.Add("New", "Person");
  EXPECT_EQ(World.Lines.Texts.size(), 151U);
  EXPECT_TRUE(CheckInvariants(World));
}

// What it says of records before the header was begun anew holds no more, then or later.
TEST_F(NamesListTest, AHeaderBegunAnewByAnotherProgramMakesTheReplacedRecordsVoid) {
  Write({"A", "B", "C"});
  SetHeader("ReplacedRecords", "5");
  Set("0", "NextName", "2");
  Set("0", "NextCompany", "2");
  World.Open();
  EXPECT_EQ(Data.NamesRecNo, (Texts{"0", "1", "2"}));
  for (const std::string name : {"D", "E", "F"}) World.Add("", name);
  EXPECT_EQ(Header("ReplacedRecords"), "");
  EXPECT_TRUE(CheckInvariants(World));
}

TEST_F(NamesListTest, WhatTheCountLeavesOutIsNotCutOffWhileItsFileIsMissing) {
  Write({"A", "B"});
  for (const std::string kind : {"Name", "Company"}) {
    Set("1", "Next" + kind, "100");
    Set("100", "Prev" + kind, "1");
    Set("100", "Show" + kind, "C");
  }
  SetHeader("TotalNoOfRecords", "101");
  World.Open();
  ASSERT_EQ(World.Store.SortNamesList(), RunTimeError::None);
  std::filesystem::remove(World.Folder.File("quill1.dat"));
  const auto files = World.Folder.Files();
  std::string recNo;
  EXPECT_EQ(World.Add("", "Z", "", recNo), RunTimeError::BadRecordNumber);
  EXPECT_EQ(World.Folder.Files(), files);
}

TEST_F(NamesListTest, AMissingRecordFileKeepsItsNumbers) {
  for (const bool deletesFirst : {false, true}) {
    StoreWorld world;
    WriteDataSet(world.Folder.Path(), {.Live = 150});
    std::filesystem::remove(world.Folder.File("quill1.dat"));
    world.Open();
    EXPECT_EQ(world.Lines.Texts.size(), 100U);
    // Writes all links anew, after which none leads there.
    if (deletesFirst) {
      ASSERT_EQ(world.Delete("7"), RunTimeError::None);
    }
    EXPECT_EQ(world.Add("New", "Person"), "200");
    EXPECT_FALSE(std::filesystem::exists(world.Folder.File("quill1.dat")));
  }
}

TEST_F(NamesListTest, FilesWrittenByHandAreReadAsTheirEntriesAre) {
  Write({"A", "B", "C"});
  World.Folder.WriteFile("quill0.dat",
                         "\xEF\xBB\xBF[record0]\n showname = \"  a\" \nSHOWNAME=z\n;NextName=9\n"
                         "ShowCompany=\\\"c\\r=\"\nNextName= 1 \r\n\tnextcompany=2\nNextNames=0\n"
                         "  [ Record1 ] x\nShowName=b\nShowName =y\nShowCompany==\nNextName=2\n"
                         "[Record0]\nShowName=other\nNextName=5\n[Record01]\nShowName=x\n"
                         "[Record2]\r\nNextName=\nNextCompany=1");
  World.Open();
  EXPECT_FALSE(Data.ListsIncomplete);
  EXPECT_EQ(Data.NamesRecNo, (Texts{"0", "1", "2"}));
  EXPECT_EQ(Data.CompaniesRecNo, (Texts{"0", "2", "1"}));
  EXPECT_EQ(Data.NamesList, (Texts{"  a", "b", ""}));
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(Data.NamesList[i], Value(Data.NamesRecNo[i], "ShowName"));
    EXPECT_EQ(Data.CompaniesList[i], Value(Data.CompaniesRecNo[i], "ShowCompany"));
  }
}

TEST_F(NamesListTest, StrangeBytesAreReadWithoutHarm) {
  std::mt19937 engine(7);
  std::string noise(20000, '\0');
  constexpr std::string_view Bytes = "[]=\r\n\"\\Record0123\xff\x80\xe2 ;NextNameShow";
  for (char& c : noise) c = Bytes[engine() % Bytes.size()];
  WriteDataSet(World.Folder.Path(), {.Live = 150});
  World.Folder.WriteFile("quill1.dat", noise);
  World.Open();
  EXPECT_TRUE(Data.ListsIncomplete);

  const std::string large(1 << 20, 'x');
  Write({large, "\xff\xfe", "王", "Κώστας", "דוד"});
  World.Open();
  EXPECT_EQ(Data.NamesList[0], large);
  ASSERT_EQ(World.Store.SortNamesList(), RunTimeError::None);
  World.Store.ShowRecords();
  World.Add("小明", "王");
  EXPECT_TRUE(CheckInvariants(World));
}

}  // namespace
}  // namespace quillary::test
