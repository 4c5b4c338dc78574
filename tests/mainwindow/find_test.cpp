#include <QComboBox>
#include <QLineEdit>

#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

class FindTest : public MainFixture {
 protected:
  FindTest() {
    Guard.InUseTimer.start();
    Add({{Sal, "Dr."}, {FirstName, "Ann"}, {LastName, "Aster"}, {Title, "Clerk"}});
    Add({{LastName, "Bell"}, {Company, "Acme"}, {Address4, "Oak "}, {Address5, "12345"}});
    Add({{FirstName, "Ann"}, {LastName, "Cole"}, {Field::Notes, "likes oaks"}});
    Add({{LastName, "Dorn & <b>"}});
    Show();
  }

  // Searches as a user does who types over what stands in the box.
  void Find(const char* text, int searchIn = 3) {
    Control<QComboBox>(Main, "CboSrchIn").setCurrentIndex(searchIn);
    QLineEdit& box = Control<QLineEdit>(Main, "TxtFind");
    box.setFocus();
    box.setText(QString::fromUtf8(text));
    PressKey(Main, Qt::Key_Return);
  }
  std::string Caption() { return Control<CommandButton>(Main, "BtnFind").text().toStdString(); }
  // The line in red, -1 for none.
  int RedLine() {
    for (int i = 0; i < 13; ++i) {
      if (Label(i).TextColour() == DetailLabel::Colour::Found) return i;
    }
    return -1;
  }
  void ExpectAtRest() {
    EXPECT_TRUE(Main.isEnabled() && Guard.InUseTimer.isActive());
    EXPECT_FALSE(ProgressWindow.isVisible());
    EXPECT_EQ(Panel(1), "");
    EXPECT_EQ(Panel(2), " " + std::to_string(Shared.CurListIndex + 1) + "/ 4");
  }
};

TEST_F(FindTest, FindsTheNextOneAndMarksItForAWhile) {
  Find("ANN", 0);
  EXPECT_EQ(Label(0).Caption(), "Cole");
  ExpectAtRest();
  PressKey(Main, Qt::Key_Return);
  EXPECT_EQ(Label(0).Caption(), "Dr. Aster");
  // The window becomes active after the progress window has gone.
  Form other(QStringLiteral("Other"));
  other.ShowForm();
  ASSERT_TRUE(WaitUntilActive(other));
  other.HideForm();
  Main.activateWindow();
  ASSERT_TRUE(WaitUntilActive(Main));
  QTest::mouseMove(&Widget("BtnFind"));
  EXPECT_EQ(RedLine(), 0);
  Main.SearchResultTimer.start(1);
  EXPECT_TRUE(QTest::qWaitFor([this] { return RedLine() == -1; }));
}

TEST_F(FindTest, SearchesTheChosenFieldsAndMarksTheLineThatShowsThem) {
  struct Case {
    const char* Text;
    int SearchIn;
    int Line;  // -1 where nothing is to be found
  };
  MsgBoxAnswerer ok;
  for (const Case& c : {Case{"Dr.", 3, 0}, Case{"dr.", 0, -1}, Case{"clerk", 0, -1},
                        Case{"clerk", 2, 1}, Case{"acme", 1, 2}, Case{"acme", 0, -1},
                        Case{"234", 3, 6}, Case{"oak ", 3, 6}, Case{"OAKS", 3, 12}}) {
    Select(3);
    Find(c.Text, c.SearchIn);
    EXPECT_EQ(RedLine(), c.Line) << c.Text << " in " << c.SearchIn;
    EXPECT_EQ(Shared.CurListIndex == 3, c.Line < 0) << c.Text;
    EXPECT_EQ(Caption(), c.Line < 0 ? "Find" : "Find Next");
  }
}

TEST_F(FindTest, WhatIsNotFoundIsSaidAndNothingElseChanges) {
  Select(1);
  MsgBoxAnswerer ok;
  Texts said;
  ok.Before = [&] {
    said.push_back(Panel(1) + "|" + Panel(2) + "|" + std::to_string(RedLine()));
    EXPECT_FALSE(Guard.InUseTimer.isActive());
  };
  for (const char* text : {"   ", "bell", "<b>x "}) Find(text);
  // The first one is in the line that is shown already.
  EXPECT_EQ(said, (Texts{"Can't find 'bell' again| 2/ 4|0", "Can't find '<b>x '| 2/ 4|-1"}));
  EXPECT_EQ(ok.TitlesAndTexts(), (Texts{"Can't find text|Can't find next 'bell'",
                                        "Can't find text|Can't find '<b>x '"}));
  EXPECT_EQ(Label(0).Caption(), "Bell");
  EXPECT_EQ(RedLine(), -1);
  ExpectAtRest();

  // Of records that cannot be read nobody can say so.
  Folder.MakeUnreadable("quill0.dat");
  ok.Seen.clear();
  Find("bell");
  EXPECT_EQ(ok.TitlesAndTexts(), Texts{"Can't find text|Some records could not be read:\n"
                                       "the file or folder cannot be used."});
  Main.activateWindow();
  ASSERT_TRUE(WaitUntilActive(Main));
  EXPECT_EQ(Main.findChild<QMessageBox*>(), nullptr) << "it has been told";
  ExpectAtRest();
}

TEST_F(FindTest, EnterSearchesFromTheFindBoxAndCopiesElsewhere) {
  const auto isDefault = [this](const char* button) {
    return Control<CommandButton>(Main, button).isDefault();
  };
  Find("ann");
  EXPECT_TRUE(isDefault("BtnFind") && !isDefault("BtnCopy"));
  QTest::keyClick(Main.focusWidget(), 'x');
  EXPECT_EQ(Caption(), "Find");
  Find("ann");
  Widget("LstNames").setFocus();
  EXPECT_EQ(Caption(), "Find");
  EXPECT_TRUE(!isDefault("BtnFind") && isDefault("BtnCopy"));
  // A choice by the keyboard makes it the default button, too.
  Widget("CboSrchIn").setFocus();
  EXPECT_TRUE(isDefault("BtnCopy"));
  PressKey(Main, Qt::Key_Up);
  EXPECT_TRUE(isDefault("BtnFind"));
  Widget("BtnNew").setFocus();
  EXPECT_FALSE(isDefault("BtnFind") || isDefault("BtnCopy"));  // Enter is that button's
}

TEST_F(FindTest, NothingCanBeStartedWhileItSearches) {
  MsgBoxAnswerer ok;
  int turns = 0;
  std::string said;
  QTimer events;
  QObject::connect(&events, &QTimer::timeout, &events, [&] {
    if (!ProgressWindow.isVisible()) return;
    ++turns;
    EXPECT_FALSE(Main.isEnabled() || Main.close() || Guard.InUseTimer.isActive());
    said = Panel(1);
    ProgressWindow.close();
    Click(Main, "BtnNew");
  });
  events.start(0);
  Find("nobody");
  EXPECT_GT(turns, 0);
  EXPECT_EQ(said, "Please wait. Searching...");
  EXPECT_TRUE(Started.Started.empty());
  ExpectAtRest();
}

}  // namespace
}  // namespace quillary::test
