#pragma once

#include <chrono>
#include <functional>
#include <string_view>

#include "app/hub.h"
#include "auxiliary/percent.h"
#include "auxiliary/welcome.h"
#include "store/hooks.h"

namespace quillary {

// Shows the store's progress on the progress window, on the splash window and in the status bar.
// Bars are touched, and events run, with the first step of a stage and then at most sixty times a
// second; the end of a bar always shows.
class Progress : public ProgressHooks {
 public:
  // `percent` and `welcome` give the windows, or null while there is none; one that is not visible
  // is left alone. `afterEvents` runs after pending events have run.
  Progress(Hub& hub, std::function<Percent*()> percent, std::function<Welcome*()> welcome,
           std::function<void()> afterEvents);

  void Begin(std::string_view status, std::string_view splash) override;
  void Step(double percent) override;
  void End() override;

 private:
  using Clock = std::chrono::steady_clock;

  void ShowBars(int percent);

  Hub& hub_;
  std::function<Percent*()> percent_;
  std::function<Welcome*()> welcome_;
  std::function<void()> afterEvents_;
  int shown_ = 0;
  Clock::time_point due_;  // when events are to run next
};

}  // namespace quillary
