#include <algorithm>
#include <cstddef>
#include <iterator>
#include <random>
#include <set>

#include "tests/proof/operations.h"
#include "tests/proof/traced_disk.h"
#include "tests/support/check_invariants.h"

namespace quillary::test {
namespace {

// The other application, which knows nothing of journals: what it writes to the files as it finds
// them.
Tree WithCompanionsChanges(Tree tree) {
  const auto change = [&](const std::string& file, const std::string& section,
                          const std::string& entry, const std::string& value) {
    const auto found = tree.find("data/" + file);
    if (found == tree.end()) return;
    std::string& bytes = found->second;
    const std::size_t begin = bytes.find(section);
    const std::size_t at = begin == std::string::npos ? begin : bytes.find(entry, begin);
    if (at == std::string::npos) return;
    const std::size_t from = at + entry.size();
    bytes.replace(from, bytes.find("\r\n", from) - from, value);
  };
  change("quill.dat", "[General Info]", "\r\nNoOfUses=", "5");
  change("quill0.dat", "[Record98]", "\r\nNotes=", "theirs");
  change("quill1.dat", "[Record100]", "\r\nNotes=", "theirs");
  change("quill1.dat", "[Record199]", "\r\nNotes=", "theirs");
  return tree;
}

// Without a journal temporary files are only swept away.
Tree WhatMatters(Tree tree) {
  const auto isJournal = [](const auto& file) { return file.first.ends_with("quill.jnl"); };
  if (std::any_of(tree.begin(), tree.end(), isJournal)) return tree;
  std::erase_if(tree, [](const auto& file) { return file.first.ends_with(".tmp"); });
  return tree;
}

class CrashTest : public testing::TestWithParam<Operation> {
 protected:
  CrashTest() : before_(FilesBefore(GetParam(), root_.Path())) {
    WriteTree(root_.Path(), before_);
    Program program(root_.Path(), disk_);
    if (GetParam().IsFinishedLater) program.Access.FinishLater([] {});
    if (!GetParam().IsStart) {
      EXPECT_EQ(program.Open(), RunTimeError::None);
      EXPECT_EQ(program.Access.Finish(), RunTimeError::None);
    }
    (void)disk_.TakeTrace();
    EXPECT_EQ(GetParam().Run(program), RunTimeError::None);
    trace_ = disk_.TakeTrace();
    told_ = trace_.size();
    EXPECT_EQ(program.Access.Finish(), RunTimeError::None);
    const Trace rest = disk_.TakeTrace();
    trace_.insert(trace_.end(), rest.begin(), rest.end());
    after_ = ReadTree(root_.Path());
  }

  // The files as they are after a start of the program over these.
  Tree Opened(const Tree& tree) {
    WriteTree(root_.Path(), tree);
    Program program(root_.Path(), disk_);
    EXPECT_EQ(program.Open(), RunTimeError::None);
    (void)disk_.TakeTrace();
    return ReadTree(root_.Path());
  }

  // Whether the start over these files gives one of the outcomes, and leaves nothing to be done for
  // the one after it. What it changes is added to the trace.
  void CheckStart(const Tree& tree, const std::vector<Tree>& outcomes, Trace& changes) {
    WriteTree(root_.Path(), tree);
    Program program(root_.Path(), disk_);
    ASSERT_EQ(program.Open(), RunTimeError::None);
    changes = disk_.TakeTrace();
    ASSERT_TRUE(CheckInvariants(program));
    const Tree now = ReadTree(root_.Path());
    const auto outcome = std::find(outcomes.begin(), outcomes.end(), now);
    ASSERT_NE(outcome, outcomes.end()) << Difference(now, outcomes);
    seen_.insert(outcome - outcomes.begin());
    Program next(root_.Path(), disk_);
    ASSERT_EQ(next.Open(), RunTimeError::None);
    const Trace more = disk_.TakeTrace();
    ASSERT_TRUE(std::all_of(more.begin(), more.end(), IsSync));
    ASSERT_EQ(next.Memory(), program.Memory());
  }

  static bool IsSync(const DiskChange& change) {
    return change.What == DiskChange::Step::Sync || change.What == DiskChange::Step::SyncFolder;
  }
  static std::string Difference(const Tree& now, const std::vector<Tree>& outcomes) {
    std::string text;
    for (const Tree& outcome : outcomes) {
      std::vector<Tree::value_type> files;
      std::set_symmetric_difference(now.begin(), now.end(), outcome.begin(), outcome.end(),
                                    std::back_inserter(files));
      text += "\nunlike:";
      for (const auto& [path, bytes] : files) text += ' ' + path;
    }
    return text;
  }

  TempFolder root_;
  TracedDisk disk_;
  Tree before_;
  Trace trace_;
  std::size_t told_ = 0;  // changes before the user was told that it is done
  Tree after_;
  std::set<std::ptrdiff_t> seen_;  // the outcomes
};

// What is left when the last of these changes was being made, and none came after it.
Tree Stopped(DiskModel model, const DiskChange* half) {
  if (half != nullptr) {
    DiskChange change = *half;
    change.Bytes.resize(change.Bytes.size() / 2);
    model.Apply(change);
  }
  return model.AfterStop();
}

TEST_P(CrashTest, StoppedAnywhereItIsDoneOrNot) {
  const std::vector<Tree> outcomes{Opened(before_), Opened(after_)};
  std::vector<Tree> withCompanion;
  withCompanion.reserve(outcomes.size());
  for (const Tree& outcome : outcomes) withCompanion.push_back(WithCompanionsChanges(outcome));
  std::set<Tree> done;
  const auto check = [&](const Tree& tree, int level, auto& self) -> void {
    if (HasFatalFailure() || !done.insert(WhatMatters(tree)).second) return;
    Trace changes;
    CheckStart(tree, outcomes, changes);
    if (level == 0 && !GetParam().ReplacesFiles) {
      Trace ignored;
      CheckStart(WithCompanionsChanges(tree), withCompanion, ignored);
    }
    if (level > 0) return;
    DiskModel model(root_.Path(), tree);
    for (const DiskChange& change : changes) {
      SCOPED_TRACE("during the start");
      const bool isWrite = change.What == DiskChange::Step::Write;
      if (isWrite) self(Stopped(model, &change), level + 1, self);
      model.Apply(change);
      self(Stopped(model, nullptr), level + 1, self);
    }
  };
  DiskModel model(root_.Path(), before_);
  for (std::size_t i = 0; i < trace_.size(); ++i) {
    SCOPED_TRACE("change " + std::to_string(i) + " of " + std::to_string(trace_.size()));
    const bool isWrite = trace_[i].What == DiskChange::Step::Write;
    if (isWrite) check(Stopped(model, &trace_[i]), 0, check);
    model.Apply(trace_[i]);
    check(Stopped(model, nullptr), 0, check);
  }
  ASSERT_EQ(model.AfterStop(), after_);
  EXPECT_EQ(seen_.size(), outcomes[0] == outcomes[1] ? 1U : 2U);
}

TEST_P(CrashTest, APowerCutAnywhereLeavesItDoneOrNot) {
  const std::vector<Tree> outcomes{Opened(before_), Opened(after_)};
  std::mt19937 random(20);
  std::set<Tree> done;
  Trace changes;
  DiskModel model(root_.Path(), before_);
  for (std::size_t i = 0; i < trace_.size(); ++i) {
    SCOPED_TRACE("change " + std::to_string(i) + " of " + std::to_string(trace_.size()));
    model.Apply(trace_[i]);
    // What was told to be done is done.
    const bool isTold = i + 1 >= told_;
    if (i + 1 == told_) done.clear();
    for (const Tree& tree : model.AfterPowerCuts(random)) {
      if (!done.insert(WhatMatters(tree)).second) continue;
      CheckStart(tree, isTold ? std::vector{outcomes[1]} : outcomes, changes);
      if (HasFatalFailure()) return;
    }
    // The program ends here, and the power while the next one starts.
    CheckStart(model.AfterStop(), outcomes, changes);
    if (HasFatalFailure()) return;
    const Tree shown = ReadTree(root_.Path());
    DiskModel next = model;
    for (const DiskChange& change : changes) {
      next.Apply(change);
      for (const Tree& tree : next.AfterPowerCuts(random)) {
        if (!done.insert(WhatMatters(tree)).second) continue;
        Trace ignored;
        CheckStart(tree, outcomes, ignored);
        if (HasFatalFailure()) return;
      }
    }
    // What a user has seen stays.
    for (const Tree& tree : next.AfterPowerCuts(random)) ASSERT_EQ(WhatMatters(tree), shown);
  }
  for (const Tree& tree : model.AfterPowerCuts(random)) ASSERT_EQ(tree, after_);
  RecordProperty("states", static_cast<int>(done.size()));
}

INSTANTIATE_TEST_SUITE_P(Operations, CrashTest, testing::ValuesIn(Operations()), NameOf);

}  // namespace
}  // namespace quillary::test
