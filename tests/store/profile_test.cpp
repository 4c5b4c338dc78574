#include "store/profile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <map>
#include <ostream>

#include "tests/support/fault_disk.h"
#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

// One program that works on the files of a folder.
struct Program {
  explicit Program(const TempFolder& folder, Disk& disk)
      : Names(disk, folder.Path(), folder.Path()),
        Access(disk, Names),
        Path(ProgramPath(folder.Path()) + "\\") {}
  std::string Read(const std::string& file, const std::string& key) {
    return Access.ReadEntry(Path + file, "S", key);
  }
  RunTimeError Write(const std::string& file, const std::string& key, const std::string& value) {
    return Access.WriteEntry(Path + file, "S", key, value);
  }

  FileNames Names;
  Profile Access;
  std::string Path;
};

struct ProfileTest : testing::Test {
  TempFolder Folder;
  FaultDisk Machine;
  Program Here{Folder, Machine};
};

TEST_F(ProfileTest, MissingReadsAsEmptyAndWritingMakesIt) {
  EXPECT_EQ(Here.Read("quill.dat", "x"), "");
  EXPECT_EQ(Here.Write("QUILL.DAT", "x", " 1 "), RunTimeError::None);
  EXPECT_EQ(Here.Read("quill.dat", "X"), " 1 ");
  EXPECT_EQ(Here.Write("quill.dat", "y", ""), RunTimeError::None);
  EXPECT_EQ(Folder.Files(),
            (std::map<std::string, std::string>{{"QUILL.DAT", "[S]\r\nx=\" 1 \"\r\ny=\r\n"}}));
  EXPECT_EQ(Here.Access.WriteEntry(Here.Path + "none\\quill.dat", "S", "x", "1"),
            RunTimeError::PathNotFound);
  for (const auto& [section, key] : std::map<std::string, std::string>{
           {"S", "a=b"}, {"S]", "a"}, {"S\n", "a"}, {"T", ";a"}, {"U", " a"}, {"V", ""}}) {
    EXPECT_EQ(Here.Access.WriteEntry(Here.Path + "quill.dat", section, key, "1"),
              RunTimeError::PathAccess);
  }
}

TEST_F(ProfileTest, SeesWhatAnotherProgramWroteAtOnce) {
  Folder.WriteFile("quill.dat", "[S]\nx=0\n");
  const int file = open(Folder.File("quill.dat").c_str(), O_WRONLY);
  ASSERT_GE(file, 0);
  // The same length, in place, many times within one tick of the file system's clock.
  for (int i = 0; i < 2000; ++i) {
    const char digit = static_cast<char>('0' + i % 10);
    ASSERT_EQ(pwrite(file, &digit, 1, 6), 1);
    ASSERT_EQ(Here.Read("quill.dat", "x"), std::string(1, digit)) << i;
  }
  close(file);
  for (int i = 0; i < 500; ++i) {
    const std::string digit(1, static_cast<char>('0' + i % 10));
    Folder.WriteFile("other", "[S]\nx=" + digit + "\n");
    std::filesystem::rename(Folder.File("other"), Folder.File("quill.dat"));
    ASSERT_EQ(Here.Read("quill.dat", "x"), digit) << i;
  }
  std::filesystem::remove(Folder.File("quill.dat"));
  EXPECT_EQ(Here.Read("quill.dat", "x"), "");
  Folder.WriteFile("Quill.DAT", "[S]\nx=7\n");
  EXPECT_EQ(Here.Read("quill.dat", "x"), "7");
}

TEST_F(ProfileTest, AnUnchangedFileIsNotReadAgain) {
  Folder.WriteFile("quill.dat", "[S]\nx=0\n");
  while (true) {
    Here.Read("quill.dat", "x");
    Machine.Reset();
    Here.Read("quill.dat", "x");
    if (Machine.Calls() == 1) break;  // settles within a tick or two
  }
  Here.Read("quill.dat", "y");
  EXPECT_EQ(Machine.Calls(), 2);
}

TEST_F(ProfileTest, AGroupIsSeenAtOnceAndTakenBackWhole) {
  ASSERT_EQ(Here.Write("quill.dat", "x", "1"), RunTimeError::None);
  const auto before = Folder.Files();
  std::string undone;
  {
    ProfileUpdate update(Here.Access);
    (void)Here.Write("quill.dat", "x", "2");
    update.OnUndo([&] { undone += "outer"; });
    {
      ProfileUpdate joined(Here.Access);
      (void)Here.Write("quill0.dat", "x", "3");
      joined.OnUndo([&] { undone += "inner "; });
      EXPECT_EQ(joined.Commit(), RunTimeError::None);
    }
    EXPECT_EQ(Here.Read("QUILL.dat", "X"), "2");
    EXPECT_EQ(Here.Read("quill0.dat", "x"), "3");
    ProfileSnapshot snapshot(Here.Access);
    EXPECT_EQ(snapshot.Text(Here.Path + "quill0.dat").Value("S", "x"), "3");
    EXPECT_EQ(Folder.Files(), before);
  }
  EXPECT_EQ(undone, "inner outer");
  EXPECT_EQ(Here.Read("quill.dat", "x"), "1");
  EXPECT_EQ(Here.Read("quill0.dat", "x"), "");
  EXPECT_EQ(Folder.Files(), before);

  ProfileUpdate update(Here.Access);
  { ProfileUpdate objecting(Here.Access); }
  EXPECT_NE(update.Commit(), RunTimeError::None);
}

TEST_F(ProfileTest, AGroupOnWhatCouldNotBeReadFails) {
  ASSERT_EQ(Here.Write("quill.dat", "count", "5"), RunTimeError::None);
  ProfileUpdate update(Here.Access);
  Machine.FailAt(1, RunTimeError::DeviceError, false);
  (void)Here.Write("quill.dat", "count", Here.Read("quill.dat", "count") + "1");
  EXPECT_EQ(update.Commit(), RunTimeError::DeviceError);
  EXPECT_EQ(Here.Read("quill.dat", "count"), "5");
}

// The writes of one user-level operation, over so many files.
struct Operation {
  const char* Name;
  int Files;
  bool InGroup;

  friend void PrintTo(const Operation& operation, std::ostream* stream) {
    *stream << operation.Name;
  }
};

struct ProfileFaultTest : ProfileTest, testing::WithParamInterface<Operation> {
  void SetUp() override {
    for (int i = 0; i < 3; ++i) {
      Folder.WriteFile(FileName(i), "; kept\n[S]\nx=old\ny=kept\n");
    }
  }
  static std::string FileName(int i) { return "quill" + std::to_string(i) + ".dat"; }
  RunTimeError Run(Program& program) const {
    if (!GetParam().InGroup) return program.Write(FileName(0), "x", "new");
    ProfileUpdate update(program.Access);
    for (int i = 0; i < GetParam().Files; ++i) {
      (void)program.Write(FileName(i), "x", "new");
      (void)program.Write(FileName(i), "added", "new");
    }
    return update.Commit();
  }
  // Stops the program at that call of its disk; false if it was done before.
  bool RunStopped(Program& program, int call) {
    Machine.StopAt(call);
    try {
      (void)Run(program);
    } catch (const ProgramStopped&) {
    }
    const bool wasReached = Machine.WasReached();
    Machine.Reset();
    return wasReached;
  }
  // The state of the files as a program sees them: "old" or "new", or what is wrong.
  std::string State(Program& program) const {
    const std::string state = program.Read(FileName(0), "x");
    for (int i = 0; i < 3; ++i) {
      const bool isPart = i < GetParam().Files;
      if (program.Read(FileName(i), "x") != (isPart ? state : "old")) return "mixed";
      const bool isAdded = isPart && GetParam().InGroup && state == "new";
      if (program.Read(FileName(i), "added") != (isAdded ? "new" : "")) return "mixed keys";
      if (program.Read(FileName(i), "y") != "kept") return "lost";
      if (!Folder.ReadFile(FileName(i)).starts_with("; kept\n")) return "lost comment";
    }
    return state;
  }
};

TEST_P(ProfileFaultTest, StoppedAnywhereItIsDoneOrNotAtTheNextOpening) {
  bool sawOld = false;
  bool sawNew = false;
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    SetUp();
    Program program(Folder, Machine);
    const bool wasReached = RunStopped(program, call);
    Program next(Folder, Machine);
    ASSERT_EQ(next.Access.Recover(next.Path + "quill.dat"), RunTimeError::None);
    const std::string state = State(next);
    ASSERT_TRUE(state == "old" || state == "new") << state;
    sawOld |= state == "old";
    sawNew |= state == "new";
    ASSERT_EQ(Folder.Files().size(), 3U) << "files left behind";
    const auto files = Folder.Files();
    Program again(Folder, Machine);
    ASSERT_EQ(again.Access.Recover(again.Path + "quill.dat"), RunTimeError::None);
    ASSERT_EQ(Folder.Files(), files);
    if (!wasReached) {
      ASSERT_EQ(state, "new");
      break;
    }
  }
  EXPECT_TRUE(sawOld && sawNew);
}

TEST_P(ProfileFaultTest, FailingAnywhereItIsToldAndTheNextAttemptWorks) {
  for (const bool forever : {false, true}) {
    for (int call = 1;; ++call) {
      SCOPED_TRACE(std::to_string(call) + (forever ? " and on" : ""));
      SetUp();
      Program program(Folder, Machine);
      Machine.FailAt(call, RunTimeError::DiskFull, forever);
      const RunTimeError error = Run(program);
      const bool wasReached = Machine.WasReached();
      Machine.Reset();
      // What this program sees is what it was told, and what the next one will see.
      const std::string told = error == RunTimeError::None ? "new" : "old";
      ASSERT_EQ(State(program), told);
      ASSERT_EQ(Run(program), RunTimeError::None);
      ASSERT_EQ(State(program), "new");
      Program next(Folder, Machine);
      ASSERT_EQ(next.Access.Recover(next.Path + "quill.dat"), RunTimeError::None);
      ASSERT_EQ(State(next), "new");
      ASSERT_EQ(Folder.Files().size(), 3U) << "files left behind";
      if (!wasReached) break;
    }
  }
}

// Only a group over several files has a journal to recover from.
struct ProfileJournalTest : ProfileFaultTest {};

TEST_P(ProfileJournalTest, RecoveryItselfMayBeStoppedOrFail) {
  // The moment at which the journal stands and one file is done.
  int stopAt = 0;
  for (int call = 1; stopAt == 0; ++call) {
    SetUp();
    Program program(Folder, Machine);
    RunStopped(program, call);
    const bool isFirstDone = Folder.ReadFile(FileName(0)).find("new") != std::string::npos;
    if (isFirstDone) stopAt = call;
    (void)Program(Folder, Machine).Access.Recover(program.Path + "quill.dat");
  }
  for (const bool stops : {true, false}) {
    for (int call = 1;; ++call) {
      SCOPED_TRACE(call);
      SetUp();
      Program program(Folder, Machine);
      Machine.StopAt(stopAt);
      EXPECT_THROW((void)Run(program), ProgramStopped);
      Program second(Folder, Machine);
      if (stops) {
        Machine.StopAt(call);
      } else {
        Machine.FailAt(call, RunTimeError::DeviceError, false);
      }
      try {
        (void)second.Access.Recover(second.Path + "quill.dat");
      } catch (const ProgramStopped&) {
      }
      const bool wasReached = Machine.WasReached();
      Machine.Reset();
      Program third(Folder, Machine);
      ASSERT_EQ(third.Access.Recover(third.Path + "quill.dat"), RunTimeError::None);
      ASSERT_EQ(State(third), "new");
      ASSERT_EQ(Folder.Files().size(), 3U);
      if (!wasReached) break;
    }
  }
}

TEST_P(ProfileJournalTest, WhatAnotherProgramWroteBeforeTheRecoveryStays) {
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    SetUp();
    Program program(Folder, Machine);
    const bool wasReached = RunStopped(program, call);
    HostDisk otherDisk;
    Program other(Folder, otherDisk);
    ASSERT_EQ(other.Write(FileName(1), "x", "theirs"), RunTimeError::None);
    ASSERT_EQ(other.Write(FileName(0), "uses", "1"), RunTimeError::None);
    Program next(Folder, Machine);
    ASSERT_EQ(next.Access.Recover(next.Path + "quill.dat"), RunTimeError::None);
    ASSERT_EQ(next.Read(FileName(1), "x"), "theirs");
    ASSERT_EQ(next.Read(FileName(0), "uses"), "1");
    ASSERT_EQ(next.Read(FileName(0), "x"), next.Read(FileName(1), "added") == "" ? "old" : "new");
    if (!wasReached) break;
  }
}

const Operation GroupOverSeveralFiles{"GroupOverSeveralFiles", 3, true};

std::string NameOfOperation(const testing::TestParamInfo<Operation>& operation) {
  return operation.param.Name;
}

INSTANTIATE_TEST_SUITE_P(Operations, ProfileFaultTest,
                         testing::Values(Operation{"LoneWrite", 1, false},
                                         Operation{"GroupOverOneFile", 1, true},
                                         GroupOverSeveralFiles),
                         NameOfOperation);
INSTANTIATE_TEST_SUITE_P(Operations, ProfileJournalTest, testing::Values(GroupOverSeveralFiles),
                         NameOfOperation);

}  // namespace
}  // namespace quillary::test
