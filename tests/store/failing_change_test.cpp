#include <gtest/gtest.h>

#include <functional>

#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/store_world.h"

namespace quillary {
namespace {

using test::CheckInvariants;
using test::StoreWorld;

using Change = std::function<RunTimeError(StoreWorld&)>;

std::string Files(const StoreWorld& world) {
  return world.Folder.ReadFile("quill.dat") + world.Folder.ReadFile("quill0.dat") +
         world.Folder.ReadFile("quill1.dat");
}

std::unique_ptr<StoreWorld> MakeWorld(bool filterOn) {
  auto world = std::make_unique<StoreWorld>();
  test::WriteDataSet(world->Folder.Path(), {.Live = 130, .Deleted = 3});
  world->Open();
  if (filterOn) world->Filter({"a"});
  return world;
}

// Every single failing call: either all is done or nothing has changed.
void CheckFailures(const Change& change, bool filterOn) {
  auto world = MakeWorld(filterOn);
  int failures = 0;
  bool wasReached = true;
  for (int call = 1; wasReached; ++call) {
    SCOPED_TRACE(call);
    const auto memory = world->Memory();
    const std::string files = Files(*world);
    world->Machine.FailAt(call, RunTimeError::DiskFull, true);
    const RunTimeError error = change(*world);
    wasReached = world->Machine.WasReached();
    world->Machine.Reset();
    if (error == RunTimeError::None) {
      // An unfinished group is completed before the files are read by anyone else.
      EXPECT_EQ(world->Access.Recover(world->Data.DataFile), RunTimeError::None);
      EXPECT_TRUE(CheckInvariants(*world));
      EXPECT_NE(Files(*world), files);
      world = MakeWorld(filterOn);
      continue;
    }
    ++failures;
    ASSERT_EQ(world->Memory(), memory);
    ASSERT_EQ(Files(*world), files);
    ASSERT_TRUE(CheckInvariants(*world));
  }
  EXPECT_GT(failures, 10);
}

struct FailingChangeTest : testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Filter, FailingChangeTest, testing::Bool());

TEST_P(FailingChangeTest, InsertLeavesAllAsItWas) {
  CheckFailures(
      [](StoreWorld& world) {
        std::string recNo;
        return world.Add("Maria", "Lind", "Cobalt", recNo);
      },
      GetParam());
}

TEST_P(FailingChangeTest, DeleteLeavesAllAsItWas) {
  CheckFailures(
      [](StoreWorld& world) { return world.Store.DeleteRecord(world.Lines.RecNos[7], 7); },
      GetParam());
}

TEST_P(FailingChangeTest, EditLeavesAllAsItWas) {
  CheckFailures(
      [](StoreWorld& world) {
        world.Data.FieldValues = {"", "Aaron", "Zzyzx"};
        return world.Edit(world.Lines.RecNos[7]);
      },
      GetParam());
}

TEST_P(FailingChangeTest, RestoreLeavesAllAsItWas) {
  CheckFailures(
      [](StoreWorld& world) {
        const std::string first = world.Store.ReadHeaderEntry("DelFirstRecord");
        return world.Store.RestoreRecord(first.empty() ? "0" : first);
      },
      GetParam());
}

}  // namespace
}  // namespace quillary
