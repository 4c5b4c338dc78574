#include "auxiliary/tip_of_day.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <set>

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
  EXPECT_FALSE(hub_.IsEnabled());
  std::set<QString> tips;
  for (int i = 0; i < 500; ++i) {
    const QString before = Text();
    ClickOn(tip_, kNext);
    ASSERT_NE(Text(), before);
    tips.insert(Text());
  }
  EXPECT_EQ(tips.size(), 11U);
}

TEST_F(TipOfDayTest, OnlyCloseSavesTheCheckBoxOrTellsThatItCannot) {
  Show();
  EXPECT_FALSE(Checked());  // there is no entry
  ClickOn(tip_, kTips);
  tip_.close();
  EXPECT_EQ(Stored(), "");
  EXPECT_TRUE(hub_.IsEnabled());

  Show();
  EXPECT_FALSE(Checked());
  ClickOn(tip_, kTips);
  PressKey(tip_, Qt::Key_Return);
  EXPECT_FALSE(tip_.isVisible());
  EXPECT_EQ(Stored(), "1");

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
  EXPECT_TRUE(told && tip_.isVisible() && !Checked());
  disk_.Reset();
  ClickOn(tip_, kClose);
  EXPECT_EQ(Stored(), "0");
}

}  // namespace
}  // namespace quillary::test
