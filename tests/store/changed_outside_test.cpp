#include <functional>

#include "tests/support/check_invariants.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

using Change = std::function<RunTimeError(StoreWorld&)>;

RunTimeError Add(StoreWorld& world, const std::string& name) {
  std::string recNo;
  return world.Add("", name, name + name, recNo);
}

RunTimeError Rename(StoreWorld& world, const std::string& recNo, const std::string& name) {
  world.Data.FieldValues = {"", "", name, "", name};
  return world.Edit(recNo);
}

// Two programs that have the lists of the same files in memory: A to E, and F and G deleted.
struct TwoPrograms {
  TwoPrograms() {
    Other.Data.DataPath = World.Data.DataPath;
    Other.Data.DataFile = World.Data.DataFile;
    EXPECT_EQ(World.Store.WriteNewHeader(), RunTimeError::None);
    for (const std::string name : {"A", "B", "C", "D", "E", "F", "G"}) World.Add("", name, name);
    for (const std::string recNo : {"5", "6"}) EXPECT_EQ(World.Delete(recNo), RunTimeError::None);
    Other.Open();
  }

  StoreWorld World;
  StoreWorld Other;
};

TEST(ChangedOutsideTest, WhatTheListsDoNotShowAnyMoreIsRefusedUntilTheyAreReadAgain) {
  const std::vector<std::pair<std::string, Change>> outside{
      {"add", [](StoreWorld& world) { return Add(world, "Bb"); }},
      {"delete the first", [](StoreWorld& world) { return world.Delete("0"); }},
      {"delete", [](StoreWorld& world) { return world.Delete("2"); }},
      {"delete and add",
       [](StoreWorld& world) {
         const RunTimeError error = world.Delete("2");
         return error == RunTimeError::None ? Add(world, "Cc") : error;
       }},
      {"move to the end", [](StoreWorld& world) { return Rename(world, "2", "Z"); }},
      {"move the last", [](StoreWorld& world) { return Rename(world, "4", "Bc"); }},
      {"restore", [](StoreWorld& world) { return world.Store.RestoreRecord("5"); }}};
  const std::vector<std::pair<std::string, Change>> own{
      {"add", [](StoreWorld& world) { return Add(world, "Ca"); }},
      {"add a last one", [](StoreWorld& world) { return Add(world, "Zz"); }},
      {"delete", [](StoreWorld& world) { return world.Store.DeleteRecord("2", 0); }},
      {"edit", [](StoreWorld& world) { return Rename(world, world.Lines.RecNos[3], "Aa"); }},
      {"restore", [](StoreWorld& world) { return world.Store.RestoreRecord("5"); }},
      {"import", [](StoreWorld& world) {
         return world.Store.ImportRecords(
             1, [](std::size_t) { return FieldArray{}; }, false);
       }}};
  for (const auto& [theirs, changeOutside] : outside) {
    for (const auto& [ours, change] : own) {
      SCOPED_TRACE(testing::Message() << ours << " after " << theirs << " outside");
      TwoPrograms both;
      StoreWorld& world = both.World;
      ASSERT_EQ(changeOutside(both.Other), RunTimeError::None);
      const auto before = world.Folder.Files();
      const RunTimeError error = change(world);
      // A move elsewhere hurts no change of a few links.
      if (error != RunTimeError::None || !theirs.starts_with("move") || ours == "import") {
        EXPECT_EQ(error, RunTimeError::BadRecordNumber);
        EXPECT_EQ(world.Folder.Files(), before);
      }
      ASSERT_TRUE(CheckFiles(world.Folder.Path()));

      ASSERT_EQ(world.Store.ReadListsAgain(), RunTimeError::None);
      EXPECT_TRUE(CheckInvariants(world));
      const std::string left(world.Data.NamesRecNo.back());
      EXPECT_EQ(Add(world, "Ca"), RunTimeError::None);
      EXPECT_EQ(world.Delete(left), RunTimeError::None);
      EXPECT_TRUE(CheckInvariants(world));
    }
  }
}

TEST(ChangedOutsideTest, ListsThatAreToBeWrittenAnewBringNothingBack) {
  TwoPrograms both;
  StoreWorld& world = both.World;
  ASSERT_EQ(world.Store.WriteRecordEntry("1", "NextName", ""), RunTimeError::None);
  world.Open();
  both.Other.Open();
  ASSERT_EQ(both.Other.Delete("3"), RunTimeError::None);
  ASSERT_EQ(Add(both.Other, "H"), RunTimeError::None);
  EXPECT_EQ(Add(world, "I"), RunTimeError::BadRecordNumber);
  EXPECT_TRUE(CheckFiles(world.Folder.Path()));

  world.Filter({"", "H"});
  ASSERT_EQ(world.Store.ReadListsAgain(), RunTimeError::None);
  EXPECT_EQ(world.Lines.Texts, Texts{"H"});
  EXPECT_EQ(world.Data.NoOfRecords, 5);
}

// The disk fails while the filter looks through the records.
struct FailingSearch : ProgressHooks {
  explicit FailingSearch(FaultDisk& machine) : Machine(machine) {}
  void Begin(std::string_view status, std::string_view /*splash*/) override {
    if (status.ends_with("Searching...")) Machine.FailAt(1, RunTimeError::NotReady, true);
  }
  void Step(double /*percent*/) override {}
  void End() override { Machine.Reset(); }

  FaultDisk& Machine;
};

TEST(ChangedOutsideTest, ListsReadAgainTellWhatTheyLack) {
  TwoPrograms both;
  StoreWorld& world = both.World;
  world.Filter({"", "C"});
  RunTimeError unread = RunTimeError::DeviceError;
  EXPECT_EQ(world.Store.ReadListsAgain(&unread), RunTimeError::None);
  EXPECT_EQ(unread, RunTimeError::None);
  EXPECT_EQ(world.Lines.Texts, Texts{"C"});
  FailingSearch failing(world.Machine);
  Records store(world.Data, world.Access, world.Comparer, failing, world.Lines);
  EXPECT_EQ(store.ReadListsAgain(&unread), RunTimeError::None);
  EXPECT_EQ(unread, RunTimeError::NotReady);
  EXPECT_EQ(world.Lines.Texts, Texts{});
}

TEST(ChangedOutsideTest, AFileThatCannotBeReadIsNoChange) {
  TwoPrograms both;
  StoreWorld& world = both.World;
  for (int call = 1; call < 6; ++call) {
    world.Machine.FailAt(call, RunTimeError::NotReady, true);
    EXPECT_EQ(world.Store.DeleteRecord("2", 2), RunTimeError::NotReady) << call;
    EXPECT_EQ(world.Store.RestoreRecord("5"), RunTimeError::NotReady) << call;
    EXPECT_EQ(world.Store.InsertRecord("5", "F", "F"), RunTimeError::NotReady) << call;
  }
}

}  // namespace
}  // namespace quillary::test
