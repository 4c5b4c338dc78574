#include "app/sharing_guard.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

#include "platform/numbers.h"

namespace quillary {

namespace {

constexpr const char* Section = "General Info";
constexpr const char* Key = "NoOfUses";

}  // namespace

SharingGuard::SharingGuard(Profile& profile, SharedData& shared, std::function<void()> setReadOnly)
    : profile_(profile), shared_(shared), setReadOnly_(std::move(setReadOnly)) {
  using std::chrono_literals::operator""ms;
  InUseTimer.setInterval(2000ms);
  QObject::connect(&InUseTimer, &QTimer::timeout, &InUseTimer, [this] { InUseTimer_Timer(); });
}

RunTimeError SharingGuard::IncrementUses() {
  const RunTimeError error = ChangeUses([](int uses) { return std::max(uses, 0) + 1; });
  isCounted_ = error == RunTimeError::None;
  isToBeCounted_ = !isCounted_;
  return error;
}

void SharingGuard::CheckInUse() {
  const std::optional<int> uses = ReadUses();
  const bool isInUse = uses ? *uses >= 2 : shared_.InUse;
  shared_.InUse = isToBeCounted_ || isToBeReset_ || isInUse;
}

RunTimeError SharingGuard::ResetUses() {
  const RunTimeError error = WriteUses(1);
  if (error != RunTimeError::None) return error;
  shared_.InUse = false;
  isCounted_ = true;
  isToBeCounted_ = false;
  isToBeReset_ = false;
  return error;
}

RunTimeError SharingGuard::TakeOver() {
  const RunTimeError error = ResetUses();
  if (error != RunTimeError::None) {
    isToBeReset_ = true;
    shared_.InUse = true;
  }
  return error;
}

RunTimeError SharingGuard::DecrementUses() {
  return ChangeUses([](int uses) { return uses - 1; });
}

// Nothing where it cannot be read: that is not a counter of 0.
std::optional<int> SharingGuard::ReadUses() {
  ProfileUpdate reading(profile_);
  const int uses = ToInt16(profile_.ReadEntry(shared_.DataFile, Section, Key));
  if (reading.Commit() != RunTimeError::None) return std::nullopt;
  return uses;
}

RunTimeError SharingGuard::ChangeUses(int (*change)(int)) {
  ProfileUpdate update(profile_);
  const std::optional<int> uses = ReadUses();
  const RunTimeError error = uses ? WriteUses(change(*uses)) : RunTimeError::None;
  const RunTimeError commitError = update.Commit();
  return commitError == RunTimeError::None ? error : commitError;
}

RunTimeError SharingGuard::WriteUses(int uses) {
  // Data that are gone must not come back as a header of this counter alone.
  if (profile_.ReadEntry(shared_.DataFile, Section, "Application").empty()) {
    return RunTimeError::FileNotFound;
  }
  // Both applications read the counter as a 16-bit number.
  using Limits = std::numeric_limits<std::int16_t>;
  const int held = std::clamp<int>(uses, Limits::min(), Limits::max());
  return profile_.WriteEntry(shared_.DataFile, Section, Key, NumberText(held));
}

void SharingGuard::InUseTimer_Timer() {
  const bool wasInUse = shared_.InUse;
  if (isToBeReset_) {
    static_cast<void>(TakeOver());
  } else if (isToBeCounted_) {
    static_cast<void>(IncrementUses());
  }
  CheckInUse();
  if (shared_.InUse != wasInUse) setReadOnly_();
}

}  // namespace quillary
