#include <memory>
#include <tuple>

#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

using Change = RunTimeError (*)(StoreWorld&);

std::unique_ptr<StoreWorld> MakeWorld(bool filterOn) {
  auto world = std::make_unique<StoreWorld>();
  WriteDataSet(world->Folder.Path(), {.Live = 130, .Deleted = 3});
  world->Open();
  if (filterOn) world->Filter({"a"});
  return world;
}

// Every single failing call: either all is done or nothing has changed.
void CheckFailures(Change change, bool filterOn) {
  auto world = MakeWorld(filterOn);
  int failures = 0;
  bool wasReached = true;
  for (int call = 1; wasReached; ++call) {
    SCOPED_TRACE(call);
    const auto memory = world->Memory();
    const auto files = world->Folder.Files(".dat");
    world->Machine.FailAt(call, RunTimeError::DiskFull, true);
    const RunTimeError error = change(*world);
    wasReached = world->Machine.WasReached();
    world->Machine.Reset();
    if (error == RunTimeError::None) {
      // An unfinished group is completed before the files are read by anyone else.
      EXPECT_EQ(world->Access.Recover(world->Data.DataFile), RunTimeError::None);
      EXPECT_TRUE(CheckInvariants(*world));
      EXPECT_NE(world->Folder.Files(".dat"), files);
      world = MakeWorld(filterOn);
      continue;
    }
    ++failures;
    ASSERT_EQ(world->Memory(), memory);
    ASSERT_EQ(world->Folder.Files(".dat"), files);
    ASSERT_TRUE(CheckInvariants(*world));
  }
  EXPECT_GT(failures, 10);
}

class FailingChangeTest : public testing::TestWithParam<std::tuple<Change, bool>> {};

TEST_P(FailingChangeTest, LeavesAllAsItWas) {
  const auto& [change, filterOn] = GetParam();
  CheckFailures(change, filterOn);
}

RunTimeError Add(StoreWorld& world) {
  std::string recNo;
  return world.Add("Maria", "Lind", "Cobalt", recNo);
}
RunTimeError Delete(StoreWorld& world) {
  return world.Store.DeleteRecord(world.Lines.RecNos[7], 7);
}
RunTimeError Edit(StoreWorld& world) {
  world.Data.FieldValues = {"", "Aaron", "Zzyzx"};
  return world.Edit(world.Lines.RecNos[7]);
}
RunTimeError Restore(StoreWorld& world) {
  const std::string first = world.Store.ReadHeaderEntry("DelFirstRecord");
  return world.Store.RestoreRecord(first.empty() ? "0" : first);
}

INSTANTIATE_TEST_SUITE_P(Changes, FailingChangeTest,
                         testing::Combine(testing::Values(Add, Delete, Edit, Restore),
                                          testing::Bool()));

}  // namespace
}  // namespace quillary::test
