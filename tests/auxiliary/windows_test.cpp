#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>

#include "auxiliary/about_dialog.h"
#include "auxiliary/percent.h"
#include "auxiliary/please_wait.h"
#include "auxiliary/welcome.h"
#include "platform/desktop/placement.h"
#include "tests/support_qt/fake_hub.h"
#include "tests/support_qt/while_shown.h"

namespace quillary::test {
namespace {

QString Text(QWidget& window, const char* name) {
  return window.findChild<QLabel*>(QString::fromLatin1(name))->text();
}

TEST(PleaseWait, OpensEmptyOverTheDisabledMainWindowEvenOffTheScreen) {
  FakeHub hub(QRect(-300, -200, 400, 300));
  hub.SetPanel(1, QStringLiteral("hint"));
  PleaseWait window(hub);
  for (int showing = 0; showing < 2; ++showing) {
    window.ShowPleaseWait();
    EXPECT_FALSE(hub.IsEnabled());
    EXPECT_EQ(hub.Panels[1], QString());
    EXPECT_EQ(Text(window, "Lbl1") + Text(window, "Lbl2"), QString());
    EXPECT_EQ(window.pos(), PlaceCentred(hub.Geometry, window.FrameSize()));
    window.SetLbl1(QStringLiteral("Please wait while inserting new record"));
    window.SetLbl2(QStringLiteral(" 12"));
    EXPECT_EQ(Text(window, "Lbl2"), QStringLiteral(" 12"));
    window.close();
    EXPECT_TRUE(window.isVisible());
    window.HideForm();
    EXPECT_FALSE(hub.IsEnabled());  // to enable it is the caller's business
  }
}

TEST(Welcome, StandsInTheMiddleOfTheScreenAndCannotBeClosed) {
  Welcome window;
  window.ShowPercnt(false);
  window.ShowWelcome();
  EXPECT_FALSE(window.findChild<QWidget*>(QStringLiteral("Percnt"))->isVisible());
  EXPECT_EQ(window.pos(), PlaceCentred(ScreenOf(window.frameGeometry()), window.FrameSize()));
  window.close();
  EXPECT_TRUE(window.isVisible());
  window.Unload();
  EXPECT_FALSE(window.isVisible());
}

TEST(AboutDialog, ShowsTheVersionAndClosesByEveryWay) {
  FakeHub hub;
  SharedData shared;
  AboutDialog about(shared, hub);
  const std::array<std::function<void()>, 5> ways{
      [&] { ClickOn(about, QStringLiteral("BtnOK")); },
      [&] { ClickOn(about, QStringLiteral("BtnCancel")); },
      [&] { PressKey(about, Qt::Key_Return); }, [&] { PressKey(about, Qt::Key_Escape); },
      [&] { about.close(); }};
  for (const auto& close : ways) {
    about.ShowAbout();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&about));
    EXPECT_EQ(Text(about, "LblVersion"), QStringLiteral("Version 2.0"));
    EXPECT_EQ(hub.Panels[1], QStringLiteral("About Quillary"));
    EXPECT_FALSE(hub.IsEnabled());
    close();
    EXPECT_FALSE(about.isVisible());
    EXPECT_EQ(hub.Panels[1], QString());
    EXPECT_TRUE(hub.IsEnabled());
  }
}

}  // namespace
}  // namespace quillary::test
