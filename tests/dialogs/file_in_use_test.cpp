#include "dialogs/file_in_use.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>

#include "tests/support/fault_disk.h"
#include "tests/support/temp_folder.h"
#include "tests/support_qt/fake_hub.h"
#include "tests/support_qt/while_shown.h"

namespace quillary::test {
namespace {

const QString kRecover = QStringLiteral("ChkCrashRecover");
const QString kOK = QStringLiteral("BtnOK");
const QString kCancel = QStringLiteral("BtnCancel");

class FileInUseTest : public testing::Test {
 protected:
  void SetUp() override {
    shared_.DataPath = ProgramPath(folder_.Path()) + "\\";
    shared_.DataFile = shared_.DataPath + "quill.dat";
    folder_.WriteFile("quill.dat", "[General Info]\r\nApplication=Quillary\r\nNoOfUses=2\r\n");
    shared_.InUse = true;
  }

  void Show(const std::function<void()>& action) {
    WhileShown(window_, action);
    window_.ShowFileInUse();
  }
  // Checks the box and answers the question that follows.
  void CheckAndAnswer(const std::function<void()>& answer) {
    WhileShown(question_, answer);
    ClickOn(window_, kRecover);
  }
  bool Checked() { return window_.findChild<QCheckBox*>(kRecover)->isChecked(); }
  std::string Uses() { return profile_.ReadEntry(shared_.DataFile, "General Info", "NoOfUses"); }

  TempFolder folder_;
  FaultDisk disk_;
  FileNames names_{disk_, folder_.Path(), folder_.Path()};
  Profile profile_{disk_, names_};
  SharedData shared_;
  SharingGuard guard_{profile_, shared_, [] {}};
  FakeHub hub_;
  MsgBoxSnglTxt message_{shared_, hub_};
  MsgBoxDblTxt question_{shared_, hub_};
  FileInUse window_{shared_, guard_, hub_, message_, question_};
};

TEST_F(FileInUseTest, RecoveringResetsTheCounter) {
  Show([&] {
    CheckAndAnswer([&] { ClickOn(question_, kOK); });
    EXPECT_TRUE(Checked());
    EXPECT_EQ(Uses(), "2");
    ClickOn(window_, kOK);
  });
  EXPECT_EQ(Uses(), "1");
  EXPECT_FALSE(shared_.InUse);

  // The next showing begins unchecked, and nothing is reset.
  folder_.WriteFile("quill.dat", "[General Info]\r\nApplication=Quillary\r\nNoOfUses=3\r\n");
  Show([&] {
    EXPECT_FALSE(Checked());
    ClickOn(window_, kOK);
  });
  EXPECT_EQ(Uses(), "3");
}

TEST_F(FileInUseTest, WhoeverIsNotSureChangesNothing) {
  const std::array<std::function<void()>, 3> declines{
      [&] { PressKey(question_, Qt::Key_Return); },  // the right button is the default one
      [&] { ClickOn(question_, kCancel); }, [&] { question_.close(); }};
  for (const auto& decline : declines) {
    Show([&] {
      CheckAndAnswer(decline);
      EXPECT_FALSE(Checked());
      EXPECT_EQ(shared_.MsgBoxAnswer, 1);
      ClickOn(window_, kOK);
    });
  }
  Show([&] {
    CheckAndAnswer([&] { ClickOn(question_, kOK); });
    ClickOn(window_, kRecover);  // unchecking asks nothing
    ClickOn(window_, kOK);
  });
  Show([&] {
    CheckAndAnswer([&] { ClickOn(question_, kOK); });
    window_.close();
  });
  EXPECT_EQ(Uses(), "2");
  EXPECT_TRUE(shared_.InUse);
}

TEST_F(FileInUseTest, FailureToResetIsToldAndTheWindowStays) {
  bool told = false;
  Show([&] {
    CheckAndAnswer([&] { ClickOn(question_, kOK); });
    disk_.Reset();
    disk_.FailAt(1, RunTimeError::PermissionDenied, true);
    WhileShown(message_, [&] {
      told = true;
      EXPECT_EQ(message_.windowTitle(), QStringLiteral("Data File In Use"));
      ClickOn(message_, kOK);
    });
    ClickOn(window_, kOK);
    EXPECT_TRUE(window_.isVisible());
    EXPECT_TRUE(Checked());
    disk_.Reset();
    window_.close();
  });
  EXPECT_TRUE(told);
  EXPECT_EQ(Uses(), "2");
  EXPECT_TRUE(shared_.InUse);
}

TEST_F(FileInUseTest, EveryTextFits) {
  Show([&] {
    for (const QLabel* label : window_.findChildren<QLabel*>()) {
      if (label->wordWrap()) {
        EXPECT_LE(label->heightForWidth(label->width()), label->height())
            << qPrintable(label->objectName());
      }
    }
    window_.close();
  });
}

}  // namespace
}  // namespace quillary::test
