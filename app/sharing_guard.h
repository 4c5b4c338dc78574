#pragma once

#include <QTimer>
#include <functional>
#include <optional>

#include "app/shared_data.h"
#include "store/profile.h"

namespace quillary {

// The agreement between this program and its companion on who may change the data: a counter of
// users, "NoOfUses", in the header. With two or more users this program changes nothing.
class SharingGuard {
 public:
  // `setReadOnly` applies InUse to every command that changes data.
  SharingGuard(Profile& profile, SharedData& shared, std::function<void()> setReadOnly);

  // Counts this program as a user: the counter, negative taken as 0, plus 1. Writes the header.
  // Where that fails nothing is to be changed: InUse stays true until it succeeds, which the timer
  // tries again. Where there is no header nothing is written (FileNotFound); so with the others.
  RunTimeError IncrementUses();
  // Whether the header counts any user: before IncrementUses, another application. True where that
  // cannot be read.
  bool HasUsers() { return ReadUses().value_or(1) >= 1; }
  bool IsCounted() const { return isCounted_; }
  // Reads the counter into InUse, which stays as it is where that cannot be done.
  void CheckInUse();
  // Makes this program the only user: the counter becomes 1, InUse false. On an error both stay as
  // they are.
  RunTimeError ResetUses();
  // The same for a header that has just come with a counter of other times. Where it fails, InUse
  // stays true until it succeeds, which the timer tries again.
  RunTimeError TakeOver();
  // Takes this program off the counter, which may become negative. Writes the header.
  RunTimeError DecrementUses();

  // Runs CheckInUse every 2000 ms and applies InUse when it changed. Stopped at first, and to be
  // stopped while a change of several entries runs.
  QTimer InUseTimer;

 private:
  void InUseTimer_Timer();
  std::optional<int> ReadUses();
  RunTimeError ChangeUses(int (*change)(int));
  RunTimeError WriteUses(int uses);

  Profile& profile_;
  SharedData& shared_;
  std::function<void()> setReadOnly_;
  bool isCounted_ = false;
  bool isToBeCounted_ = false;  // IncrementUses failed
  bool isToBeReset_ = false;    // TakeOver failed
};

}  // namespace quillary
