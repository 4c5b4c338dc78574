#include "main/forms.h"

#include "tests/main/session.h"
#include "tests/support/check_invariants.h"
#include "tests/support_qt/main_fixture.h"
#include "tests/support_qt/modem.h"

namespace quillary::test {
namespace {

using FormsTest = ProgramTest;

TEST_F(FormsTest, EveryCommandOpensItsWindow) {
  MakeData({.Live = 3, .Deleted = 1});
  Session run(Folder, Machine);
  ASSERT_TRUE(run.Start());
  MainDialog& main = run.Windows.Main;
  // Whether a click brings the window up. It is closed again.
  const auto opens = [&](const char* button, const char* name,
                         Qt::KeyboardModifiers held = Qt::NoModifier) {
    Click(main, button, held);
    QWidget* window = run.Shown(name);
    return window != nullptr && window->close();
  };
  EXPECT_TRUE(opens("BtnNew", "NewDialog"));
  EXPECT_TRUE(opens("BtnNew", "NewDialog", Qt::ShiftModifier));
  EXPECT_TRUE(opens("BtnEdit", "EditDialog"));
  EXPECT_TRUE(opens("BtnDelete", "DeleteDialog"));
  EXPECT_TRUE(opens("BtnFilter", "FilterDialog"));
  EXPECT_TRUE(opens("BtnAbout", "AboutDialog"));
  main.Menus().MnuExchangeArray[3]->trigger();
  ASSERT_NE(run.Shown("RestoreDialog"), nullptr);
  run.Shown("RestoreDialog")->close();
  Click(main, "BtnDelete", Qt::ShiftModifier);
  EXPECT_EQ(main.ListCount(), 2);
  QCoreApplication::processEvents();
  EXPECT_EQ(Header("NoOfRecords") + Header("DelNoOfRecords"), "22");
  EXPECT_TRUE(main.isEnabled());
  EXPECT_TRUE(CheckFiles(Folder.File("data")));
}

TEST_F(FormsTest, AnotherApplicationDisablesWhatIsOpenAndWhatIsOpenedLater) {
  MakeData({.Live = 3, .Deleted = 1});
  Session run(Folder, Machine);
  ASSERT_TRUE(run.Start());
  const auto canConfirm = [&run](const char* form, const char* button = "BtnOK") {
    QWidget* window = run.Shown(form);
    return window != nullptr && Control<QWidget>(*window, button).isEnabled();
  };
  Click(run.Windows.Main, "BtnEdit");
  EXPECT_TRUE(canConfirm("EditDialog"));
  run.Windows.Shared.InUse = true;
  run.Windows.SetReadOnly();
  EXPECT_FALSE(canConfirm("EditDialog"));
  run.Shown("EditDialog")->close();
  // As if they had been started just before.
  run.Windows.ShowDeleteDialog();
  EXPECT_FALSE(canConfirm("DeleteDialog"));
  run.Shown("DeleteDialog")->close();
  run.Windows.GetDeletedNamesList();
  EXPECT_FALSE(canConfirm("RestoreDialog", "BtnRestore"));
  run.Windows.Shared.InUse = false;
  run.Windows.SetReadOnly();
  EXPECT_TRUE(canConfirm("RestoreDialog", "BtnRestore"));
}

// From wrong settings through Setup to the modem, and the end of the program in the middle of it.
TEST_F(FormsTest, DialsOnceThePortIsSetUp) {
  Modem line;
  MakeData({.Live = 1, .Deleted = 0});
  Folder.WriteFile("varek.ini",
                   Folder.ReadFile("varek.ini") + "[Ports]\r\nCOM3=" + line.Device + "\r\n");
  auto run = std::make_unique<Session>(Folder, Machine);
  ASSERT_TRUE(run->Start());
  MainDialog& main = run->Windows.Main;
  MsgBoxAnswerer ok;
  main.Menus().MnuDial->trigger();
  ASSERT_NE(run->Shown("SetupDialog"), nullptr);
  EXPECT_TRUE(ok.TitlesAndTexts()[0].starts_with("Wrong Dialing System|"));
  Control<QAbstractButton>(*run->Shown("SetupDialog"), "OptCommPort(3)").click();
  Control<QAbstractButton>(*run->Shown("SetupDialog"), "OptToneDial").click();
  Click(*run->Shown("SetupDialog"), "BtnOK");
  QWidget* dialer = run->Shown("DialDialog");
  ASSERT_NE(dialer, nullptr);
  ASSERT_TRUE(WaitUntilActive(*dialer));
  EXPECT_FALSE(main.isEnabled());
  QTest::keyClicks(dialer->focusWidget(), QStringLiteral("555"));
  PressKey(*dialer, Qt::Key_Return);
  EXPECT_TRUE(line.Hears("ATDT555\r"));

  run->Windows.ExitApplication();
  EXPECT_EQ(run->End.Ended, 1);
  run.reset();
  EXPECT_TRUE(line.Hears("ATH\r"));
  EXPECT_TRUE(line.IsReleased());
}

}  // namespace
}  // namespace quillary::test
