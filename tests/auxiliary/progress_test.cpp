#include "auxiliary/progress.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>
#include <QTest>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>

#include "auxiliary/please_wait.h"
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
  progress_.Begin("Please wait...", "Loading Names...");
  EXPECT_EQ(Text(*percent_, "LblPercnt") + hub_.Panels[1],
            QStringLiteral("Please wait...").repeated(2));
  EXPECT_NE(Text(*welcome_, "Lbl"), QStringLiteral("Loading Names..."));
  welcome_->ShowWelcome();
  progress_.Begin("", "Sorting Names...");
  progress_.Begin("", "");
  EXPECT_EQ(Text(*welcome_, "Lbl"), QStringLiteral("Sorting Names..."));

  // However fast the work is, its end shows; a new stage begins at nothing.
  progress_.Step(10);
  progress_.Step(100.0);
  EXPECT_EQ(Bar(*percent_).value() + Bar(*welcome_).value(), 200);
  progress_.Begin("", "");
  EXPECT_EQ(Bar(*percent_).value() + Bar(*welcome_).value(), 0);
}

TEST_F(ProgressTest, ItsWindowsOpenEmptyAndOnlyTheProgramClosesThem) {
  PleaseWait wait(hub_);
  Welcome welcome;
  for (int showing = 0; showing < 2; ++showing) {
    wait.ShowPleaseWait();
    EXPECT_FALSE(hub_.IsEnabled());
    EXPECT_EQ(Text(wait, "Lbl2"), QString());
    wait.SetLbl2(QStringLiteral(" 12"));
    welcome.ShowWelcome();
    for (Form* panel : {static_cast<Form*>(&wait), static_cast<Form*>(&welcome)}) {
      panel->close();
      EXPECT_TRUE(panel->isVisible());
      panel->Unload();
      EXPECT_FALSE(panel->isVisible());
    }
    EXPECT_FALSE(hub_.IsEnabled());  // to enable it is the caller's business
  }
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
