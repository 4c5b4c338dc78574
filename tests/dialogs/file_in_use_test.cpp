#include "dialogs/file_in_use.h"

#include <QCheckBox>
#include <QLabel>

#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

const QString kRecover = QStringLiteral("ChkCrashRecover");
const QString kOK = QStringLiteral("BtnOK");

class FileInUseTest : public MainFixture {
 protected:
  FileInUseTest() {
    EXPECT_EQ(Store.WriteHeaderEntry("NoOfUses", "2"), RunTimeError::None);
    Shared.InUse = true;
  }

  std::string Uses() { return Store.ReadHeaderEntry("NoOfUses"); }
  void ShowWindow(const std::function<void()>& action) {
    WhileShown(Window, action);
    Window.ShowFileInUse();
  }
  // Checks the box and answers the question that follows; whether it stays checked.
  bool CheckAndAnswer(const std::function<void()>& answer) {
    WhileShown(Question, answer);
    ClickOn(Window, kRecover);
    return IsChecked();
  }
  bool IsChecked() { return Window.findChild<QCheckBox*>(kRecover)->isChecked(); }

  MsgBoxDblTxt Question{Shared, Main};
  FileInUse Window{Shared, Guard, Main, SingleText, Question};
  const std::function<void()> IsSure = [this] { ClickOn(Question, kOK); };
};

TEST_F(FileInUseTest, OnlyWhoeverIsSureResetsTheCounter) {
  const std::array<std::function<void()>, 3> declines{
      [&] { PressKey(Question, Qt::Key_Return); },  // the right button is the default one
      [&] { ClickOn(Question, QStringLiteral("BtnCancel")); }, [&] { Question.close(); }};
  for (const auto& decline : declines) {
    ShowWindow([&] {
      EXPECT_FALSE(CheckAndAnswer(decline));
      EXPECT_EQ(Shared.MsgBoxAnswer, 1);
      ClickOn(Window, kOK);
    });
  }
  ShowWindow([&] {
    CheckAndAnswer(IsSure);
    ClickOn(Window, kRecover);  // unchecking asks nothing
    ClickOn(Window, kOK);
  });
  ShowWindow([&] {
    CheckAndAnswer(IsSure);
    Window.close();
  });
  ShowWindow([&] { ClickOn(Window, kOK); });  // the next showing begins unchecked
  EXPECT_EQ(Uses(), "2");
  ShowWindow([&] {
    for (const QLabel* label : Window.findChildren<QLabel*>()) {
      if (!label->wordWrap()) continue;
      EXPECT_LE(label->heightForWidth(label->width()), label->height()) << "it is cut off";
    }
    EXPECT_TRUE(CheckAndAnswer(IsSure));
    EXPECT_TRUE(Shared.InUse);
    ClickOn(Window, kOK);
  });
  EXPECT_EQ(Uses(), "1");
  EXPECT_FALSE(Shared.InUse);
}

TEST_F(FileInUseTest, FailureToResetIsToldAndTheWindowStays) {
  bool told = false;
  ShowWindow([&] {
    CheckAndAnswer(IsSure);
    Disk.Reset();
    Disk.FailAt(1, RunTimeError::PermissionDenied, true);
    WhileShown(SingleText, [&] {
      told = true;
      ClickOn(SingleText, kOK);
    });
    ClickOn(Window, kOK);
    EXPECT_TRUE(Window.isVisible() && IsChecked());
    Disk.Reset();
    Window.close();
  });
  EXPECT_TRUE(told && Shared.InUse);
  EXPECT_EQ(Uses(), "2");
}

}  // namespace
}  // namespace quillary::test
