#include "auxiliary/progress.h"

#include <QCoreApplication>
#include <algorithm>
#include <utility>

namespace quillary {
namespace {

constexpr std::chrono::microseconds kInterval{1'000'000 / 60};

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

Progress::Progress(Hub& hub, std::function<Percent*()> percent, std::function<Welcome*()> welcome,
                   std::function<void()> afterEvents)
    : hub_(hub),
      percent_(std::move(percent)),
      welcome_(std::move(welcome)),
      afterEvents_(std::move(afterEvents)) {}

void Progress::Begin(std::string_view status, std::string_view splash) {
  hub_.SetPanel(1, ToQString(status));
  Percent* percent = percent_();
  if (percent != nullptr && percent->isVisible()) percent->SetLblPercnt(ToQString(status));
  Welcome* welcome = splash.empty() ? nullptr : welcome_();
  if (welcome != nullptr && welcome->isVisible()) welcome->SetLbl(ToQString(splash));
  ShowBars(0);
  due_ = {};  // what the user did before is not to wait
}

void Progress::Step(double percent) {
  const int whole = static_cast<int>(std::clamp(percent, 0.0, 100.0));
  const bool due = Clock::now() >= due_;
  if (whole != shown_ && (due || whole == 100)) ShowBars(whole);
  if (!due) return;
  QCoreApplication::processEvents();
  // Counted from here, so that slow events do not take all the time from the work.
  due_ = Clock::now() + kInterval;
  if (afterEvents_) afterEvents_();
}

void Progress::End() {
  hub_.SetPanel(1, QString());
  hub_.SetPanel(2, QString());
}

void Progress::ShowBars(int percent) {
  shown_ = percent;
  Percent* window = percent_();
  if (window != nullptr && window->isVisible()) window->SetPercnt(percent);
  Welcome* welcome = welcome_();
  if (welcome != nullptr && welcome->isVisible()) welcome->SetPercnt(percent);
}

}  // namespace quillary
