#include "auxiliary/tip_of_day.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <set>

#include "platform/desktop/placement.h"
#include "tests/support/fault_disk.h"
#include "tests/support/temp_folder.h"
#include "tests/support_qt/fake_hub.h"
#include "tests/support_qt/while_shown.h"

namespace quillary::test {
namespace {

const QString kNext = QStringLiteral("BtnNext");
const QString kClose = QStringLiteral("BtnOK");
const QString kTips = QStringLiteral("ChkTips");

class TipOfDayTest : public testing::Test {
 protected:
  void Show() {
    tip_.ShowTip(true);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&tip_));
  }
  QString Text() { return tip_.findChild<QLabel*>(QStringLiteral("TxtTipTxt"))->text(); }
  bool Checked() { return tip_.findChild<QCheckBox*>(kTips)->isChecked(); }
  std::string Stored() { return profile_.ReadEntry("varek.ini", "QL32", "Tips"); }
  void Store(const char* value) {
    ASSERT_EQ(profile_.WriteEntry("varek.ini", "QL32", "Tips", value), RunTimeError::None);
  }

  TempFolder folder_;
  FaultDisk disk_;
  FileNames names_{disk_, folder_.Path(), folder_.Path()};
  Profile profile_{disk_, names_};
  SharedData shared_;
  FakeHub hub_;
  MsgBoxSnglTxt msgBox_{shared_, hub_};
  TipOfDay tip_{shared_, profile_, hub_, msgBox_};
};

TEST_F(TipOfDayTest, NextTipIsAlwaysAnotherAndAllComeUp) {
  Show();
  std::set<QString> tips;
  for (int i = 0; i < 500; ++i) {
    const QString before = Text();
    ClickOn(tip_, kNext);
    ASSERT_NE(Text(), before);
    tips.insert(Text());
  }
  EXPECT_EQ(tips.size(), 11U);
}

TEST_F(TipOfDayTest, OnlyCloseSavesTheCheckBox) {
  Show();
  EXPECT_FALSE(Checked());  // there is no entry
  ClickOn(tip_, kTips);
  tip_.close();
  EXPECT_EQ(Stored(), "");

  Show();
  EXPECT_FALSE(Checked());
  ClickOn(tip_, kTips);
  ClickOn(tip_, kClose);
  EXPECT_FALSE(tip_.isVisible());
  EXPECT_EQ(Stored(), "1");

  Show();
  EXPECT_TRUE(Checked());
  ClickOn(tip_, kTips);
  PressKey(tip_, Qt::Key_Return);
  EXPECT_EQ(Stored(), "0");
}

TEST_F(TipOfDayTest, MainWindowIsDisabledWhileItIsOpen) {
  Show();
  EXPECT_FALSE(hub_.IsEnabled());
  EXPECT_EQ(hub_.Panels[1], QStringLiteral("Tip of The Day"));
  tip_.close();
  EXPECT_TRUE(hub_.IsEnabled());
  EXPECT_EQ(hub_.Panels[1], QString());
}

TEST_F(TipOfDayTest, IsHeldOnTheScreenWhenAsked) {
  hub_.Geometry = QRect(-300, -300, 200, 200);
  Show();
  const QRect screen = ScreenOf(hub_.Geometry);
  EXPECT_EQ(tip_.pos(), HoldOnScreen(QPoint(-1000, -1000), tip_.FrameSize(), screen));
  tip_.close();
  tip_.ShowTip(false);
  EXPECT_EQ(tip_.pos(), PlaceCentred(hub_.Geometry, tip_.FrameSize()));
}

TEST_F(TipOfDayTest, FailureToSaveIsToldAndTheWindowStays) {
  Store("0");
  Show();
  ClickOn(tip_, kTips);
  disk_.Reset();
  disk_.FailAt(1, RunTimeError::DiskFull, true);
  bool told = false;
  WhileShown(msgBox_, [&] {
    told = true;
    msgBox_.close();
  });
  ClickOn(tip_, kClose);
  EXPECT_TRUE(told);
  EXPECT_TRUE(tip_.isVisible());
  EXPECT_TRUE(Checked());
  disk_.Reset();
  ClickOn(tip_, kClose);
  EXPECT_EQ(Stored(), "1");
}

}  // namespace
}  // namespace quillary::test
