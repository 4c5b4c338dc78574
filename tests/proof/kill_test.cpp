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
#include "tests/support/check_invariants.h"

namespace quillary::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* StepsKey = "Steps";

// One change after the other, the same ones for everybody who begins with the same files. Each is
// one group and counts itself in the header.
RunTimeError MakeStep(Program& program) {
  ProfileUpdate update(program.Access);
  const int step = ToInt32(program.Header(StepsKey));
  std::mt19937 random(static_cast<std::mt19937::result_type>(step));
  const auto below = [&](std::size_t limit) { return random() % limit; };
  const auto name = [&] { return std::string(1 + below(3), static_cast<char>('a' + below(26))); };
  const auto person = [&] { return Person(name(), name(), below(2) == 0 ? name() : "", name()); };
  const Texts& shown = program.Lines.RecNos;
  const std::string deleted = program.Header("DelFirstRecord");
  RunTimeError error = program.Store.WriteHeaderEntry(StepsKey, NumberText(step + 1));
  if (error != RunTimeError::None) return error;
  const std::size_t kind = shown.size() < 3 ? 0 : below(shown.size() > 14 ? 5 : 8);
  if (kind < 2 && !deleted.empty()) {
    error = program.Store.RestoreRecord(deleted);
  } else if (kind == 2 || shown.size() > 14) {
    error = program.Delete(shown[below(shown.size())]);
  } else if (kind < 6) {
    const std::string recNo = shown[below(shown.size())];
    const bool moves = below(3) != 0;
    FieldArray fields = person();
    if (!moves) error = program.Store.ReadFields(recNo, fields);
    if (error != RunTimeError::None) return error;
    fields[Field::Notes] = name();
    error = program.Edit(recNo, fields, moves);
  } else if (kind < 7) {
    error = program.Import({person(), person()});
  } else {
    error = program.Add(person());
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
    (void)FilesBefore(none, twinFolder_.Path());
    EXPECT_EQ(twin_.Open(), RunTimeError::None);
    Remember();
  }

  // The child's life: it opens the data and makes as many steps as it is given time for. After each
  // of these it says how many are done.
  [[noreturn]] void Work(int pipe) {
    HostDisk disk;
    Program program(folder_.Path(), disk);
    // The files of a step are written when the next one comes; what was said is sure all the same.
    program.Access.FinishLater([] {});
    const auto says = [&](int step) { return write(pipe, &step, sizeof step) == sizeof step; };
    const auto done = [&] { return ToInt32(program.Header(StepsKey)); };
    RunTimeError error = program.Open();
    while (error == RunTimeError::None && says(done())) {
      error = MakeStep(program);
      if (error == RunTimeError::None && BacksUpAfter(done())) {
        error = BackUpFiles(program.Access, program.Data, program.Stick);
      }
    }
    _exit(1);
  }

  // Lets a process work until it has spoken so often and then for some time, until it is killed;
  // how many steps it last said were done, or -1.
  int KillAfter(int words, std::chrono::nanoseconds time) {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) Work(ends[1]);
    close(ends[1]);
    int last = -1;
    int heard = 0;
    const auto hears = [&] {
      if (read(ends[0], &last, sizeof last) != sizeof last) return false;
      if (++heard == 1) {
        opening_ = std::chrono::steady_clock::now() - start;
      } else if (BacksUpAfter(last)) {
        backedUp_ = last;
      }
      return true;
    };
    while (heard < words && hears()) {
    }
    std::this_thread::sleep_for(time);
    EXPECT_EQ(kill(child, SIGKILL), 0);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status)) << "it stopped by itself";
    while (hears()) {
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
    ASSERT_TRUE(CheckInvariants(program));
    const int step = ToInt32(program.Header(StepsKey));
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
  int backedUp_ = 0;                    // after so many
  std::chrono::nanoseconds opening_{};  // how long the last one took to open the data
};

// QUILLARY_KILLS says how often.
TEST_F(KillTest, KilledAtAnyMomentNothingThatWasDoneIsLost) {
  const char* const given = std::getenv("QUILLARY_KILLS");
  const int kills = given != nullptr ? std::stoi(given) : 60;
  std::mt19937 random(std::random_device{}());
  int killedOpening = 0;
  for (int i = 0; i < kills && !HasFatalFailure(); ++i) {
    SCOPED_TRACE("kill " + std::to_string(i) + " of " + std::to_string(kills));
    // Every fifth one is killed while it opens the data, the others in their first steps.
    const int words = (i + 1) % 5;
    const std::chrono::nanoseconds longest = words == 0 ? opening_ : 60ms;
    const int last = KillAfter(words, longest * (random() % 1000) / 1000);
    if (last < 0) ++killedOpening;
    Check(last);
  }
  // Three of five have said that one, two and three steps are done.
  EXPECT_GE(steps_, kills / 5 * 6);
  RecordProperty("steps", steps_);
  RecordProperty("killedOpening", killedOpening);
}

}  // namespace
}  // namespace quillary::test
