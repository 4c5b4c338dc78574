#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

// What the random sequences of the model test do not come upon.
struct ChangeRecordTest : StoreTest {
  void Delete(const std::string& recNo) {
    ASSERT_EQ(World.Delete(recNo), RunTimeError::None) << recNo;
    ASSERT_TRUE(CheckInvariants(World)) << recNo;
  }
};

TEST_F(ChangeRecordTest, ADeletionIsRefusedBeforeAnythingIsWritten) {
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

TEST_F(ChangeRecordTest, DeletingLeavesRecordsBehindACountTooSmallLinked) {
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

TEST_F(ChangeRecordTest, InsertingClearsTheLinksOfADeletedRecord) {
  World.Add("", "B");
  Set("4", "ShowName", "A");
  for (const std::string key : {"PrevDel", "NextDel", "PrevName", "NextCompany"})
    Set("4", key, "3");
  ASSERT_EQ(World.Store.InsertRecord(" 4 ", "A", "A"), RunTimeError::None);
  EXPECT_EQ(Value("4", "PrevDel") + Value("4", "NextDel") + Value("4", "PrevName"), "");
  EXPECT_EQ(Value("4", "NextCompany"), "0");
  EXPECT_EQ(Data.NamesRecNo, (Texts{"4", "0"}));
}

TEST_F(ChangeRecordTest, TheCostDoesNotGrowWithTheNumberOfRecords) {
  const auto diskCalls = [](int live) {
    StoreWorld world;
    WriteDataSet(world.Folder.Path(), {.Live = live, .Deleted = 50});
    world.Open();
    const int before = world.Machine.Calls();
    world.Add("Maria", "Lind", "Cobalt");
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
}  // namespace quillary::test
