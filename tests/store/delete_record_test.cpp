#include <gtest/gtest.h>

#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/store_world.h"

namespace quillary {
namespace {

using test::CheckInvariants;
using test::StoreWorld;
using Texts = std::vector<std::string>;

struct DeleteRecordTest : testing::Test {
  DeleteRecordTest() { EXPECT_EQ(World.Store.WriteNewHeader(), RunTimeError::None); }
  std::string Header(const std::string& key) { return World.Store.ReadHeaderEntry(key); }
  std::string Value(const std::string& recNo, const std::string& key) {
    return World.Store.ReadRecordEntry(recNo, key);
  }
  void SetHeader(const std::string& key, const std::string& value) {
    ASSERT_EQ(World.Store.WriteHeaderEntry(key, value), RunTimeError::None);
  }
  void Delete(const std::string& recNo) {
    ASSERT_EQ(World.Delete(recNo), RunTimeError::None) << recNo;
    ASSERT_TRUE(CheckInvariants(World)) << recNo;
  }

  StoreWorld World;
  StoreData& Data = World.Data;
};

// The same record stands at the end of one list and at the head of the other.
TEST_F(DeleteRecordTest, HeadTailMiddleAndTheLastOne) {
  World.Add("", "A", "Y");  // 0: first by name, last by company
  World.Add("", "B", "X");
  World.Add("", "C", "W");
  World.Add("", "D", "V");
  World.Add("", "E", "U");  // 4: last by name, first by company
  World.Data.ViewMode = 1;
  World.Store.ShowRecords();
  Delete("4");
  EXPECT_EQ(Header("CompanyFirstRecord"), "3");
  Delete("0");
  EXPECT_EQ(Header("NameFirstRecord"), "1");
  Delete("2");
  EXPECT_EQ(Value("2", "ShowName") + Value("2", "LastName") + Value("2", "Company"), "CCW");
  Delete("1");
  Delete("3");
  EXPECT_EQ(Header("NameFirstRecord") + Header("CompanyFirstRecord"), "");
  EXPECT_EQ(Header("NoOfRecords") + Header("DelNoOfRecords") + Header("TotalNoOfRecords"), "055");
  EXPECT_EQ(Data.NamesList, Texts{""});
  // The one deleted last comes first.
  std::string chain;
  for (std::string at = Header("DelFirstRecord"); !at.empty(); at = Value(at, "NextDel")) {
    chain += at;
  }
  EXPECT_EQ(chain, "31204");
}

TEST_F(DeleteRecordTest, WithTheFilterOnTheRecordLeavesAllLists) {
  for (const std::string name : {"Jansen", "Brandt", "Miller", "Sanders"}) World.Add("", name);
  World.Filter({"", "an"});
  Delete("1");
  EXPECT_EQ(World.Lines.Texts, (Texts{"Jansen", "Sanders"}));
  Delete("3");
  Delete("0");
  EXPECT_EQ(Data.FilteredCount, 0);
  EXPECT_EQ(Data.FilteredCompaniesRecNo, Texts{""});
  EXPECT_EQ(Data.NamesRecNo, Texts{"2"});
  World.Data.FilterOn = false;
  World.Store.ShowRecords();
  EXPECT_TRUE(CheckInvariants(World));
}

TEST_F(DeleteRecordTest, IsRefusedBeforeAnythingIsWritten) {
  for (const std::string name : {"A", "B", "C"}) World.Add("", name);
  Delete("2");
  const auto memory = World.Memory();
  EXPECT_EQ(World.Store.DeleteRecord("7", 0), RunTimeError::BadRecordNumber);
  for (const std::string full : {"32767", "40000"}) {
    SetHeader("DelNoOfRecords", full);
    EXPECT_EQ(World.Delete("0"), RunTimeError::Overflow);
    EXPECT_EQ(Header("DelNoOfRecords"), full);
    // Editing needs no room there.
    Data.FieldValues = {"", "", "C"};
    EXPECT_EQ(World.Edit("0"), RunTimeError::None);
    EXPECT_EQ(World.Lines.RecNos, (Texts{"1", "0"}));
    Data.FieldValues = {"", "", "A"};
    EXPECT_EQ(World.Edit("0"), RunTimeError::None);
  }
  EXPECT_EQ(World.Memory(), memory);
  SetHeader("DelNoOfRecords", "32766");
  EXPECT_EQ(World.Delete("0"), RunTimeError::None);
  EXPECT_EQ(Header("DelNoOfRecords"), "32767");
}

// Whatever stands in the header, a live record never gets into the deleted list.
TEST_F(DeleteRecordTest, ABrokenDeletedListIsNotFollowed) {
  for (const std::string name : {"A", "B", "C"}) World.Add("", name);
  Delete("1");
  for (const std::string first : {"0", "2", "77", "x", "-1", ""}) {
    SetHeader("DelFirstRecord", first);
    SetHeader("DelNoOfRecords", "0");
    const std::string recNo = World.Add("", "B");
    Delete(recNo);
  }
  // The count was no number: it is the length of the list again.
  SetHeader("DelNoOfRecords", "none");
  const std::string before = Header("DelFirstRecord");
  ASSERT_EQ(World.Delete("0"), RunTimeError::None);
  EXPECT_EQ(Header("DelNoOfRecords"), "2");
  EXPECT_EQ(Value("0", "NextDel"), before);
  EXPECT_EQ(Value(before, "PrevDel"), "0");
}

TEST_F(DeleteRecordTest, RecordsBehindACountTooSmallStayLinked) {
  for (const std::string name : {"A", "B", "C", "D"}) World.Add("", name);
  SetHeader("NoOfRecords", "2");
  World.Open();
  ASSERT_EQ(World.Delete("1"), RunTimeError::None);
  ASSERT_EQ(World.Delete("0"), RunTimeError::None);
  SetHeader("NoOfRecords", "2");
  World.Open();
  EXPECT_FALSE(Data.ListsIncomplete);
  EXPECT_EQ(World.Lines.Texts, (Texts{"C", "D"}));
  EXPECT_TRUE(CheckInvariants(World));
}

TEST_F(DeleteRecordTest, WorksWhereTheChainsWereBroken) {
  for (const std::string name : {"A", "B", "C", "D"}) World.Add("", name);
  ASSERT_EQ(World.Store.WriteRecordEntry("1", "NextName", "1"), RunTimeError::None);
  World.Open();
  ASSERT_TRUE(Data.ListsIncomplete);
  Delete("2");
  EXPECT_EQ(World.Lines.Texts, (Texts{"A", "B", "D"}));
}

TEST_F(DeleteRecordTest, AnEditMovesTheRecordAndLeavesTheDeletedListAlone) {
  for (const std::string name : {"B", "C", "D", "E"}) World.Add("", name, name + name);
  Delete("3");
  Data.FieldValues = {"", "", "A", "", "Zz"};
  ASSERT_EQ(World.Edit("1"), RunTimeError::None);
  EXPECT_TRUE(CheckInvariants(World));
  EXPECT_EQ(Data.NamesRecNo, (Texts{"1", "0", "2"}));
  EXPECT_EQ(Data.CompaniesRecNo, (Texts{"0", "2", "1"}));
  EXPECT_EQ(Header("DelFirstRecord") + Header("DelNoOfRecords"), "31");

  // With the filter on, it goes where it does not match any more.
  World.Filter({"", "B"});
  Data.FieldValues = {"", "", "X"};
  ASSERT_EQ(World.Edit("0"), RunTimeError::None);
  EXPECT_TRUE(CheckInvariants(World));
  EXPECT_EQ(Data.FilteredCount, 0);
  EXPECT_TRUE(World.Lines.Texts.empty());
  EXPECT_EQ(Data.NamesRecNo, (Texts{"1", "2", "0"}));
}

TEST_F(DeleteRecordTest, TheCostDoesNotGrowWithTheNumberOfRecords) {
  const auto diskCalls = [](int live) {
    StoreWorld world;
    test::WriteDataSet(world.Folder.Path(), {.Live = live, .Deleted = 50});
    world.Open();
    const int before = world.Machine.Calls();
    for (const std::size_t line : {5U, 80U, 200U}) {
      EXPECT_EQ(world.Store.DeleteRecord(world.Lines.RecNos[line], line), RunTimeError::None);
      const std::string first = world.Store.ReadHeaderEntry("DelFirstRecord");
      EXPECT_EQ(world.Store.RestoreRecord(first), RunTimeError::None);
    }
    EXPECT_TRUE(CheckInvariants(world));
    return world.Machine.Calls() - before;
  };
  // The neighbours stand in up to five other files, here as there.
  EXPECT_LT(diskCalls(3000), diskCalls(600) * 2);
}

}  // namespace
}  // namespace quillary
