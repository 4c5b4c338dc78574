#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

#include "platform/numbers.h"
#include "store/backup.h"
#include "tests/proof/operations.h"

namespace quillary::test {
namespace {

constexpr const char* StepsKey = "Steps";

// One change after the other, the same ones for everybody who begins with the same files. Each is
// one group and counts itself in the header.
RunTimeError MakeStep(Program& program) {
  ProfileUpdate update(program.Access);
  const int step = ToInt32(program.Store.ReadHeaderEntry(StepsKey));
  std::mt19937 random(static_cast<std::mt19937::result_type>(step));
  const auto below = [&](std::size_t limit) { return random() % limit; };
  const auto name = [&] { return std::string(1 + below(3), static_cast<char>('a' + below(26))); };
  const Texts& shown = program.Lines.RecNos;
  RunTimeError error = program.Store.WriteHeaderEntry(StepsKey, NumberText(step + 1));
  const std::string deleted = program.Store.ReadHeaderEntry("DelFirstRecord");
  const std::size_t kind = below(8);
  if (error != RunTimeError::None) return error;
  if (shown.size() < 3 || (kind == 0 && shown.size() < 12 && deleted.empty())) {
    error = program.Add(Person(name(), name(), kind % 2 == 0 ? name() : "", name()));
  } else if (kind < 3 && !deleted.empty()) {
    error = program.Store.RestoreRecord(deleted);
  } else if (kind < 4) {
    error = program.Delete(shown[below(shown.size())]);
  } else if (kind < 6) {
    const std::string recNo = shown[below(shown.size())];
    FieldArray fields = program.Fields(recNo);
    fields[Field::Notes] = name();
    error = program.Edit(recNo, fields, false);
  } else if (kind < 7 || shown.size() > 14) {
    error = program.Edit(shown[below(shown.size())], Person(name(), name(), name()), true);
  } else {
    error = program.Import({Person(name(), name()), Person(name(), "", name())}, false);
  }
  return error == RunTimeError::None ? update.Commit() : error;
}

bool BacksUpAfter(int step) {
  return step % 7 == 0;
}

// The data files or their copies, by the names of the former.
std::string Bytes(const std::string& root, const std::string& folder, const std::string& ending) {
  std::string bytes;
  for (const auto& [path, content] : ReadTree(root)) {
    if (path.starts_with(folder) && path.ends_with(ending)) bytes += content + '\f';
  }
  return bytes;
}

class KillTest : public testing::Test {
 protected:
  KillTest() {
    const Operation none{"None", nullptr};
    (void)FilesBefore(none, folder_.Path());
    WriteTree(twinFolder_.Path(), {});
    (void)FilesBefore(none, twinFolder_.Path());
    EXPECT_EQ(twin_.Open(), RunTimeError::None);
    Remember();
  }

  // The child's life: as many steps as it is given time for; after each it says so.
  [[noreturn]] void Work(int pipe) {
    HostDisk disk;
    Program program(folder_.Path(), disk);
    RunTimeError error = program.Open();
    while (error == RunTimeError::None) {
      error = MakeStep(program);
      const int step = ToInt32(program.Store.ReadHeaderEntry(StepsKey));
      if (error == RunTimeError::None && BacksUpAfter(step)) {
        error = BackUpFiles(program.Access, program.Data, program.Stick);
      }
      if (error == RunTimeError::None && write(pipe, &step, sizeof step) != sizeof step) break;
    }
    _exit(1);
  }

  // Lets a process work until it is killed; the last step that it said was done, or -1.
  int KillAfter(std::chrono::microseconds time) {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) Work(ends[1]);
    close(ends[1]);
    std::this_thread::sleep_for(time);
    EXPECT_EQ(kill(child, SIGKILL), 0);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status)) << "it stopped by itself";
    int last = -1;
    while (read(ends[0], &last, sizeof last) == sizeof last) {
      if (BacksUpAfter(last)) backedUp_ = last;
    }
    close(ends[0]);
    return last;
  }

  void Remember() { states_.push_back(Bytes(twinFolder_.Path(), DataFolder, ".dat")); }

  // The files are as somebody leaves them who was never stopped.
  void Check(int last) {
    FaultDisk disk;
    Program program(folder_.Path(), disk);
    ASSERT_EQ(program.Open(), RunTimeError::None);
    ASSERT_TRUE(program.IsConsistent());
    const int step = ToInt32(program.Store.ReadHeaderEntry(StepsKey));
    if (last < 0) last = steps_;
    ASSERT_GE(step, last) << "a step is lost that was done";
    while (states_.size() <= static_cast<std::size_t>(step)) {
      ASSERT_EQ(MakeStep(twin_), RunTimeError::None);
      Remember();
    }
    ASSERT_EQ(Bytes(folder_.Path(), DataFolder, ".dat"),
              states_.at(static_cast<std::size_t>(step)));
    // The backup is that of one moment, which is not before the last one that was done.
    const int backedUp =
        ToInt32(program.Access.ReadEntry(program.Stick + "QUILL.OLD", "General Info", StepsKey));
    if (backedUp > 0) {
      ASSERT_EQ(Bytes(folder_.Path(), StickFolder, ".OLD"),
                states_.at(static_cast<std::size_t>(backedUp)));
    }
    ASSERT_GE(backedUp, backedUp_);
    for (const auto& [path, bytes] : ReadTree(folder_.Path())) {
      ASSERT_FALSE(path.ends_with(".tmp") || path.ends_with(".jnl")) << path;
    }
    steps_ = step;
  }

  TempFolder folder_;
  TempFolder twinFolder_;
  FaultDisk twinDisk_;
  Program twin_{twinFolder_.Path(), twinDisk_};
  std::vector<std::string> states_;  // of the data files after so many steps
  int steps_ = 0;
  int backedUp_ = 0;  // after so many
};

// QUILLARY_KILLS says how often.
TEST_F(KillTest, KilledAtAnyMomentNothingThatWasDoneIsLost) {
  const char* const given = std::getenv("QUILLARY_KILLS");
  const int kills = given != nullptr ? std::stoi(given) : 60;
  std::mt19937 random(std::random_device{}());
  for (int i = 0; i < kills && !HasFatalFailure(); ++i) {
    SCOPED_TRACE("kill " + std::to_string(i) + " of " + std::to_string(kills));
    Check(KillAfter(std::chrono::microseconds(random() % 60'000)));
  }
  EXPECT_GT(steps_, kills / 10);
  RecordProperty("steps", steps_);
}

}  // namespace
}  // namespace quillary::test
