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
  }

  // Searches as a user does who types over what stands in the box.
  void Find(const char* text, int searchIn = 3) {
    Control<QComboBox>(Main, "CboSrchIn").setCurrentIndex(searchIn);
    QLineEdit& box = Control<QLineEdit>(Main, "TxtFind");
    box.setFocus();
    box.setText(QString::fromUtf8(text));
    PressKey(Main, Qt::Key_Return);
  }
  void FindNext() { PressKey(Main, Qt::Key_Return); }
  std::string Caption() { return Control<CommandButton>(Main, "BtnFind").text().toStdString(); }
  // The line in red, -1 for none.
  int RedLine() {
    for (int i = 0; i < 13; ++i) {
      if (Label(i).TextColour() == DetailLabel::Colour::Found) return i;
    }
    return -1;
  }
  void ExpectAtRest() {
    EXPECT_TRUE(Main.isEnabled());
    EXPECT_FALSE(ProgressWindow.isVisible());
    EXPECT_TRUE(Guard.InUseTimer.isActive());
    EXPECT_EQ(Panel(1), "");
    EXPECT_EQ(Panel(2), " " + std::to_string(Shared.CurListIndex + 1) + "/ " +
                            std::to_string(Main.ListCount()));
  }
};

TEST_F(FindTest, GoesThroughTheListFromTheSelectedNameOnAndRound) {
  Show();
  Find("ANN", 0);
  EXPECT_EQ(Label(0).Caption(), "Cole");
  EXPECT_EQ(RedLine(), 0);
  EXPECT_EQ(Caption(), "Find Next");
  EXPECT_EQ(Main.focusWidget(), &Control<QWidget>(Main, "TxtFind"));
  ExpectAtRest();
  FindNext();
  EXPECT_EQ(Label(0).Caption(), "Dr. Aster");
  QTest::mouseMove(&Control<QWidget>(Main, "BtnFind"));
  EXPECT_EQ(Panel(1), "Find Next");
  EXPECT_EQ(RedLine(), 0) << "the mouse left it alone";

  // The window becomes active after the progress window has gone.
  Form other(QStringLiteral("Other"));
  other.ShowForm();
  ASSERT_TRUE(WaitUntilActive(other));
  other.HideForm();
  Main.activateWindow();
  ASSERT_TRUE(WaitUntilActive(Main));
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
  Add({{LastName, "Dorn"}});
  Shared.CurListIndex = 3;
  Show();
  MsgBoxAnswerer ok;
  for (const Case& c :
       {Case{"Dr.", 3, 0}, Case{"dr.", 0, -1}, Case{"clerk", 3, 1}, Case{"clerk", 0, -1},
        Case{"clerk", 2, 1}, Case{"acme", 1, 2}, Case{"acme", 0, -1}, Case{"acme", 2, 2},
        Case{"234", 3, 6}, Case{"oak ", 3, 6}, Case{"OAKS", 3, 12}, Case{" oaks", 2, -1}}) {
    Select(3);
    Find(c.Text, c.SearchIn);
    EXPECT_EQ(RedLine(), c.Line) << c.Text << " in " << c.SearchIn;
    EXPECT_EQ(Shared.CurListIndex == 3, c.Line < 0) << c.Text;
    EXPECT_EQ(Caption(), c.Line < 0 ? "Find" : "Find Next");
  }
}

TEST_F(FindTest, WhatIsNotFoundIsSaidAndNothingElseChanges) {
  Add({{LastName, "Ross & <b>"}});
  Shared.CurListIndex = 1;
  Show();
  MsgBoxAnswerer ok;
  std::string said;
  int red = 0;
  ok.Before = [&] {
    red = RedLine();
    said = Panel(1) + "|" + Panel(2);
    EXPECT_FALSE(Guard.InUseTimer.isActive());
  };
  Find("   ");
  EXPECT_TRUE(ok.Seen.empty());
  Find("bell");
  EXPECT_EQ(said, "Can't find 'bell' again| 2/ 4");
  EXPECT_EQ(red, 0) << "it is the line that is shown already";
  Find("<b>x ");
  EXPECT_EQ(said, "Can't find '<b>x '| 2/ 4");
  ASSERT_EQ(ok.Seen.size(), 2U);
  EXPECT_EQ(ok.Seen[0].first, QStringLiteral("Can't find text"));
  EXPECT_EQ(ok.Seen[0].second, QStringLiteral("Can't find next 'bell'"));
  EXPECT_EQ(ok.Seen[1].second, QStringLiteral("Can't find '<b>x '"));
  EXPECT_EQ(Label(0).Caption(), "Bell");
  EXPECT_EQ(Shared.CurRecordNo, "1");
  EXPECT_EQ(RedLine(), -1);
  ExpectAtRest();
}

// Not that the text is nowhere.
TEST_F(FindTest, RecordsThatCannotBeReadAreTold) {
  Show();
  Folder.MakeUnreadable("quill0.dat");
  MsgBoxAnswerer ok;
  Find("bell");
  ASSERT_EQ(ok.Seen.size(), 1U);
  EXPECT_EQ(ok.Seen[0].second, QStringLiteral("Some records could not be read:\n"
                                              "the file or folder cannot be used."));
  Main.activateWindow();
  ASSERT_TRUE(WaitUntilActive(Main));
  EXPECT_EQ(Main.findChild<QMessageBox*>(), nullptr) << "it has been told";
  ExpectAtRest();
}

TEST_F(FindTest, EnterSearchesFromTheFindBoxAndCopiesElsewhere) {
  Show();
  auto& find = Control<CommandButton>(Main, "BtnFind");
  auto& copy = Control<CommandButton>(Main, "BtnCopy");
  EXPECT_TRUE(copy.isDefault());
  Find("ann");
  EXPECT_TRUE(find.isDefault());
  EXPECT_FALSE(copy.isDefault());
  QTest::keyClick(Main.focusWidget(), 'x');
  EXPECT_EQ(Caption(), "Find");
  Find("ann");
  Control<QWidget>(Main, "LstNames").setFocus();
  EXPECT_EQ(Caption(), "Find");
  EXPECT_TRUE(copy.isDefault());
  EXPECT_FALSE(find.isDefault());

  // A choice by the keyboard makes it the default button, too.
  Control<QWidget>(Main, "CboSrchIn").setFocus();
  EXPECT_TRUE(copy.isDefault());
  PressKey(Main, Qt::Key_Up);
  EXPECT_TRUE(find.isDefault());
  Control<QWidget>(Main, "BtnNew").setFocus();
  EXPECT_FALSE(find.isDefault() || copy.isDefault());  // Enter is that button's
}

TEST_F(FindTest, NothingCanBeStartedWhileItSearches) {
  for (int i = 0; i < 50; ++i) Add({{LastName, "Dorn"}});
  Show();
  MsgBoxAnswerer ok;
  int turns = 0;
  std::string said;
  QTimer events;
  QObject::connect(&events, &QTimer::timeout, &events, [&] {
    if (!ProgressWindow.isVisible()) return;
    ++turns;
    EXPECT_FALSE(Main.isEnabled() || Main.close() || Guard.InUseTimer.isActive());
    said = Panel(1);
    EXPECT_EQ(Control<QLabel>(ProgressWindow, "LblPercnt").text(), QString::fromStdString(said));
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
