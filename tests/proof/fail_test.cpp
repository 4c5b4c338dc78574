#include <algorithm>
#include <array>
#include <map>

#include "tests/proof/operations.h"
#include "tests/support/check_invariants.h"

namespace quillary::test {
namespace {

constexpr std::array<RunTimeError, 3> Errors{RunTimeError::DiskFull, RunTimeError::DeviceError,
                                             RunTimeError::PermissionDenied};

struct FailTest : testing::TestWithParam<Operation> {
  // The program with a fault at that call, once or from then on; false: there is no such call.
  bool CheckFault(int call, RunTimeError fault, bool forever);
  // What a program that is started now makes of the files.
  const Tree& AtNextStart() {
    const Tree now = ReadTree(Root.Path());
    const auto [opened, isNew] = Opened.try_emplace(now);
    if (isNew) {
      FaultDisk disk;
      Program next(Root.Path(), disk);
      EXPECT_EQ(next.Open(), RunTimeError::None);
      EXPECT_TRUE(CheckInvariants(next));
      opened->second = ReadTree(Root.Path());
      WriteTree(Root.Path(), now);
    }
    return opened->second;
  }

  TempFolder Root;
  Tree Before = FilesBefore(GetParam(), Root.Path());
  std::map<Tree, Tree> Opened;
  std::vector<Tree> Outcomes;  // at the next start: nothing done, all done
  int Told = 0;                // faults that the operation gave back
};

bool FailTest::CheckFault(int call, RunTimeError fault, bool forever) {
  WriteTree(Root.Path(), Before);
  FaultDisk disk;
  Program program(Root.Path(), disk);
  if (GetParam().IsFinishedLater) program.Access.FinishLater([] {});
  const bool isStart = GetParam().IsStart;
  if (!isStart) {
    EXPECT_EQ(program.Open(), RunTimeError::None);
    EXPECT_EQ(program.Access.Finish(), RunTimeError::None);
    // In every other run the lists are filtered.
    if (call / 2 % 2 == 0) program.Filter({"", "e"});
  }
  const auto memory = program.Memory();
  disk.FailAt(call, fault, forever);
  const RunTimeError error = GetParam().Run(program);
  static_cast<void>(program.Access.Finish());
  const bool wasReached = disk.WasReached();
  disk.Reset();

  const Tree& next = AtNextStart();
  const bool isDone = error == RunTimeError::None;
  // A journal that the disk took, but would neither make sure of nor remove, counts at the next
  // start; so does one that could not be completed.
  const bool mayBeDone = isStart || forever || GetParam().ReplacesFiles;
  EXPECT_TRUE(next == Outcomes[isDone ? 1 : 0] || (next == Outcomes[1] && mayBeDone))
      << "error " << static_cast<int>(error);
  if (!isDone && !isStart) {
    EXPECT_TRUE(program.Memory() == memory);
  }
  Told += isDone ? 0 : 1;

  // The same program goes on, and tries again where it failed.
  const bool isComing = GetParam().ReplacesFiles && next == Outcomes[1];
  if (!isDone && !isComing) {
    EXPECT_EQ(GetParam().Run(program), RunTimeError::None);
  }
  EXPECT_EQ(program.Access.Recover(program.Data.DataFile), RunTimeError::None);
  if (!GetParam().ReplacesFiles) {
    EXPECT_TRUE(CheckInvariants(program));
  }
  EXPECT_EQ(AtNextStart(), Outcomes[1]);
  return wasReached;
}

TEST_P(FailTest, FailingAnywhereItIsToldAndTheNextAttemptWorks) {
  for (const bool isDone : {false, true}) {
    WriteTree(Root.Path(), Before);
    FaultDisk disk;
    Program program(Root.Path(), disk);
    if (!GetParam().IsStart) {
      ASSERT_EQ(program.Open(), RunTimeError::None);
    }
    if (isDone) {
      ASSERT_EQ(GetParam().Run(program), RunTimeError::None);
    }
    Outcomes.push_back(AtNextStart());
  }
  for (const bool forever : {false, true}) {
    bool wasReached = true;
    for (int call = 1; wasReached && !HasFailure(); ++call) {
      if (!IsThorough() && (call % 2 == 0) == forever) continue;
      const auto kind = static_cast<std::size_t>(call) % Errors.size();
      for (std::size_t i = 0; i < Errors.size(); ++i) {
        if (i != kind && !IsThorough()) continue;
        SCOPED_TRACE("call " + std::to_string(call) + (forever ? " and on: " : ": ") +
                     RunTimeErrorText(Errors[i]));
        wasReached = CheckFault(call, Errors[i], forever);
      }
    }
  }
  EXPECT_GT(Told, 3);
}

INSTANTIATE_TEST_SUITE_P(Operations, FailTest, testing::ValuesIn(Operations()), NameOf);

}  // namespace
}  // namespace quillary::test
