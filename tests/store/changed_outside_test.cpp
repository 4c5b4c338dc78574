#include <functional>

#include "tests/support/check_invariants.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

using Change = std::function<RunTimeError(StoreWorld&)>;

// Two programs that have the lists of the same files in memory: A to E, and F and G deleted.
struct TwoPrograms {
  TwoPrograms() {
    EXPECT_EQ(World.Store.WriteNewHeader(), RunTimeError::None);
    for (const std::string name : {"A", "B", "C", "D", "E", "F", "G"}) World.Add("", name, name);
    for (const std::string recNo : {"5", "6"}) EXPECT_EQ(World.Delete(recNo), RunTimeError::None);
    Other.Open();
  }

  StoreWorld World;
  StoreWorld Other{World.Data};
};

TEST(ChangedOutside, WhatTheListsDoNotShowAnyMoreIsRefusedUntilTheyAreReadAgain) {
  const auto add = [](const std::string& name) {
    return [name](StoreWorld& world) { return world.Add(Person("", name, name + name)); };
  };
  const auto rename = [](const std::string& recNo, const std::string& name) {
    return [=](StoreWorld& world) { return world.Edit(recNo, Person("", name, name)); };
  };
  const auto remove = [](const std::string& recNo) {
    return [recNo](StoreWorld& world) { return world.Delete(recNo); };
  };
  const auto restore = [](StoreWorld& world) { return world.Store.RestoreRecord("5"); };
  const std::vector<std::pair<std::string, Change>> outside{
      {"add", add("Bb")},
      {"delete the first", remove("0")},
      {"delete", remove("2")},
      {"delete and add",
       [&](StoreWorld& world) {
         const RunTimeError error = world.Delete("2");
         return error == RunTimeError::None ? add("Cc")(world) : error;
       }},
      {"move to the end", rename("2", "Z")},
      {"move the last", rename("4", "Bc")},
      {"stay in place",
       [](StoreWorld& world) { return world.Edit("2", Person("", "Cc", "Cc"), false); }},
      {"restore", restore}};
  const std::vector<std::pair<std::string, Change>> own{
      {"add", add("Ca")},
      {"add a last one", add("Zz")},
      {"delete", [](StoreWorld& world) { return world.Store.DeleteRecord("2", 0); }},
      {"edit", rename("3", "Aa")},
      {"edit in place",
       [](StoreWorld& world) { return world.Edit("2", Person("", "C", "C", "Notes"), false); }},
      {"restore", restore},
      {"import", [](StoreWorld& world) { return world.Import({FieldArray()}); }}};
  for (const auto& [theirs, changeOutside] : outside) {
    for (const auto& [ours, change] : own) {
      SCOPED_TRACE(testing::Message() << ours << " after " << theirs << " outside");
      TwoPrograms both;
      StoreWorld& world = both.World;
      ASSERT_EQ(changeOutside(both.Other), RunTimeError::None);
      const auto before = world.Folder.Files();
      const RunTimeError error = change(world);
      // Another name or place elsewhere hurts no change of a few links.
      const bool isNear = theirs != "stay in place" && !theirs.starts_with("move");
      if (error != RunTimeError::None || isNear || ours == "import") {
        EXPECT_EQ(error, RunTimeError::BadRecordNumber);
        EXPECT_EQ(world.Folder.Files(), before);
      }
      ASSERT_TRUE(CheckFiles(world.Folder.Path()));

      ASSERT_EQ(world.Store.ReadListsAgain(), RunTimeError::None);
      EXPECT_TRUE(CheckInvariants(world));
      const std::string left(world.Data.NamesRecNo.back());
      EXPECT_EQ(add("Ca")(world), RunTimeError::None);
      EXPECT_EQ(world.Delete(left), RunTimeError::None);
      EXPECT_TRUE(CheckInvariants(world));
    }
  }
}

TEST(ChangedOutside, ListsThatAreToBeWrittenAnewBringNothingBack) {
  TwoPrograms both;
  StoreWorld& world = both.World;
  world.Set("1", "NextName", "");
  world.Open();
  both.Other.Open();
  ASSERT_EQ(both.Other.Edit("2", Person("", "Cc", "Cc")), RunTimeError::None);
  EXPECT_EQ(world.Add(Person("", "Ca")), RunTimeError::BadRecordNumber);
  ASSERT_EQ(both.Other.Delete("3"), RunTimeError::None);
  both.Other.Add("", "H");
  EXPECT_EQ(world.Add(Person("", "I")), RunTimeError::BadRecordNumber);
  EXPECT_TRUE(CheckFiles(world.Folder.Path()));

  world.Filter({"", "H"});
  ASSERT_EQ(world.Store.ReadListsAgain(), RunTimeError::None);
  EXPECT_EQ(world.Lines.Texts, Texts{"H"});
  EXPECT_EQ(world.Data.NoOfRecords, 5);
}

// The disk fails while the filter looks through the records.
struct FailingSearch : RecordedProgress {
  explicit FailingSearch(FaultDisk& machine) : Machine(machine) {}
  void Begin(std::string_view status, std::string_view splash) override {
    RecordedProgress::Begin(status, splash);
    if (status.ends_with("Searching...")) Machine.FailAt(1, RunTimeError::NotReady, true);
  }
  void End() override { Machine.Reset(); }

  FaultDisk& Machine;
};

TEST(ChangedOutside, WhatCannotBeReadIsToldAndIsNoChange) {
  TwoPrograms both;
  StoreWorld& world = both.World;
  for (int call = 1; call < 6; ++call) {
    world.Machine.FailAt(call, RunTimeError::NotReady, true);
    EXPECT_EQ(world.Delete("2"), RunTimeError::NotReady) << call;
    EXPECT_EQ(world.Store.RestoreRecord("5"), RunTimeError::NotReady) << call;
    EXPECT_EQ(world.Store.InsertRecord("5", "F", "F"), RunTimeError::NotReady) << call;
  }
  world.Machine.Reset();
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

}  // namespace
}  // namespace quillary::test
