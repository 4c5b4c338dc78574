#include <gtest/gtest.h>

#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/store_world.h"

namespace quillary {
namespace {

using test::CheckInvariants;
using test::StoreWorld;
using test::WriteDataSet;
using Texts = std::vector<std::string>;

struct InsertRecordTest : testing::Test {
  InsertRecordTest() { EXPECT_EQ(World.Store.WriteNewHeader(), RunTimeError::None); }
  std::string Value(const std::string& recNo, const std::string& key) {
    return World.Store.ReadRecordEntry(recNo, key);
  }

  StoreWorld World;
  StoreData& Data = World.Data;
};

TEST_F(InsertRecordTest, FirstBetweenAndLast) {
  World.Add("", "M");
  EXPECT_EQ(World.Store.ReadHeaderEntry("NameFirstRecord"), "0");
  EXPECT_EQ(World.Store.ReadHeaderEntry("CompanyFirstRecord"), "0");
  EXPECT_TRUE(CheckInvariants(World));
  World.Add("", "C");
  World.Add("", "X");
  World.Add("", "n");
  // In the company list a record without a company stands behind all companies.
  World.Add("Zoë", "", "Zebra");
  EXPECT_TRUE(CheckInvariants(World));
  EXPECT_EQ(Data.NamesList, (Texts{"C", "M", "n", "X", "Zoë"}));
  EXPECT_EQ(Data.CompaniesList, (Texts{"( Zebra )", "C", "M", "n", "X"}));
}

TEST_F(InsertRecordTest, GoesBeforeAllThatAreEqualButForCase) {
  World.Add("Ann", "Lee");
  World.Add("ANN", "LEE");
  World.Add("ann", "lee");
  EXPECT_EQ(Data.NamesRecNo, (Texts{"2", "1", "0"}));
  EXPECT_TRUE(CheckInvariants(World));
}

TEST_F(InsertRecordTest, InsertsOneLineIntoTheViewThatIsShown) {
  World.Add("", "B", "Yard");
  Data.ViewMode = 1;
  World.Store.ShowRecords();
  World.Add("", "C", "Abbey");
  EXPECT_EQ(World.Lines.Texts, (Texts{"( Abbey )", "( Yard )"}));
  EXPECT_EQ(World.Lines.RecNos, (Texts{"1", "0"}));
}

TEST_F(InsertRecordTest, ClearsTheLinksOfADeletedRecord) {
  World.Add("", "B");
  ASSERT_EQ(World.Store.WriteRecordEntry("4", "ShowName", "A"), RunTimeError::None);
  for (const std::string key : {"PrevDel", "NextDel", "PrevName", "NextCompany"}) {
    ASSERT_EQ(World.Store.WriteRecordEntry("4", key, "3"), RunTimeError::None);
  }
  ASSERT_EQ(World.Store.InsertRecord(" 4 ", "A", "A"), RunTimeError::None);
  EXPECT_EQ(Value("4", "PrevDel") + Value("4", "NextDel") + Value("4", "PrevName"), "");
  EXPECT_EQ(Value("4", "NextCompany"), "0");
  EXPECT_EQ(Data.NamesRecNo, (Texts{"4", "0"}));
}

TEST_F(InsertRecordTest, WithTheFilterOnOnlyMatchingRecordsAreShown) {
  World.Add("Ann", "Brandt");
  World.Filter({"", "AN"});
  World.Add("Bo", "Miller");
  EXPECT_EQ(Data.NoOfRecords, 2);
  EXPECT_EQ(World.Lines.Texts, Texts{"Brandt, Ann"});
  World.Add("Cy", "Jansen");
  World.Add("ann", "brandt");
  EXPECT_EQ(Data.FilteredCount, 3);
  // Behind its equal here, before it in the full list.
  EXPECT_EQ(Data.FilteredNamesRecNo, (Texts{"0", "3", "2"}));
  EXPECT_EQ(Data.NamesRecNo, (Texts{"3", "0", "2", "1"}));
  EXPECT_TRUE(CheckInvariants(World));
}

TEST_F(InsertRecordTest, TheCostDoesNotGrowWithTheNumberOfRecords) {
  const auto diskCalls = [](int live) {
    StoreWorld world;
    WriteDataSet(world.Folder.Path(), {.Live = live});
    world.Open();
    const int before = world.Machine.Calls();
    world.Add("Maria", "Lind", "Cobalt");
    EXPECT_TRUE(CheckInvariants(world));
    return world.Machine.Calls() - before;
  };
  // The neighbours stand in up to four other files, here as there.
  EXPECT_LT(diskCalls(6000), diskCalls(600) * 2);
}

}  // namespace
}  // namespace quillary
