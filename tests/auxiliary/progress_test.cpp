#include "auxiliary/progress.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>
#include <QTest>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>

#include "tests/support_qt/fake_hub.h"

namespace quillary::test {
namespace {

class ProgressTest : public testing::Test {
 protected:
  static QString Text(QWidget& window, const char* name) {
    return window.findChild<QLabel*>(QString::fromLatin1(name))->text();
  }
  static QProgressBar& Bar(QWidget& window) {
    return *window.findChild<QProgressBar*>(QStringLiteral("Percnt"));
  }

  FakeHub hub_;
  std::unique_ptr<Percent> percent_;
  std::unique_ptr<Welcome> welcome_;
  int events_ = 0;
  Progress progress_{hub_, [this] { return percent_.get(); }, [this] { return welcome_.get(); },
                     [this] { ++events_; }};
};

TEST_F(ProgressTest, ShowsOnWhateverWindowIsOpen) {
  percent_ = std::make_unique<Percent>(hub_);
  welcome_ = std::make_unique<Welcome>();
  percent_->ShowProgressWindow();
  progress_.Begin("Please wait while getting names list...", "Loading Names...");
  EXPECT_EQ(hub_.Panels[1], QStringLiteral("Please wait while getting names list..."));
  EXPECT_EQ(Text(*percent_, "LblPercnt"), hub_.Panels[1]);
  EXPECT_EQ(Text(*welcome_, "Lbl"), QStringLiteral("Loading Prefernces ..."));

  welcome_->ShowWelcome();
  progress_.Begin("Please wait while sorting names list...", "Sorting Names...");
  EXPECT_EQ(Text(*welcome_, "Lbl"), QStringLiteral("Sorting Names..."));
  progress_.Begin("Please wait while finding...", "");
  EXPECT_EQ(Text(*welcome_, "Lbl"), QStringLiteral("Sorting Names..."));

  // However fast the work is, its end shows; a new stage begins at nothing.
  progress_.Step(10);
  progress_.Step(100.0);
  EXPECT_EQ(Bar(*percent_).value(), 100);
  EXPECT_EQ(Bar(*welcome_).value(), 100);
  progress_.Begin("Please wait while sorting data...", "Sorting Data...");
  EXPECT_EQ(Bar(*percent_).value(), 0);
  EXPECT_EQ(Bar(*welcome_).value(), 0);

  hub_.SetPanel(2, QStringLiteral("1 of 2"));
  progress_.End();
  EXPECT_EQ(hub_.Panels[1] + hub_.Panels[2], QString());
}

TEST_F(ProgressTest, TouchesBarsAndRunsEventsAtMostSixtyTimesASecond) {
  using Clock = std::chrono::steady_clock;
  percent_ = std::make_unique<Percent>(hub_);
  percent_->ShowProgressWindow();
  int touches = 0;
  QObject::connect(&Bar(*percent_), &QProgressBar::valueChanged, percent_.get(),
                   [&] { ++touches; });
  bool ran = false;
  QMetaObject::invokeMethod(
      percent_.get(), [&] { ran = true; }, Qt::QueuedConnection);
  progress_.Begin("", "");
  const Clock::time_point start = Clock::now();
  for (int i = 1; i <= 20; ++i) {
    progress_.Step(i * 4.5);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  const auto ticks = std::chrono::duration<double>(Clock::now() - start).count() * 60;
  EXPECT_TRUE(ran);
  EXPECT_GE(events_, 3);
  EXPECT_LE(events_, ticks + 1);
  EXPECT_GE(touches, 3);
  EXPECT_LE(touches, ticks + 1);
}

}  // namespace
}  // namespace quillary::test
