#include "mainwindow/filter_dialog.h"

#include <QLineEdit>

#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

class FilterDialogTest : public MainFixture {
 protected:
  FilterDialogTest() {
    Started.On = [this](const std::string& command) {
      if (command == "ShowFilterDialog") Dialog.ShowFilterDialog();
      if (command == "FilterOff") quillary::FilterOff(Shared, Store, Main);
    };
    Add({{FirstName, "Ann"}, {LastName, "Brandt"}, {Company, "Acme"}});
    Add({{FirstName, "Bob"}, {LastName, "Jansen"}});
    Add({{FirstName, "Cid"}, {LastName, "SANDERS"}, {Company, "acme two"}});
    Add({{FirstName, "Dan"}, {LastName, "Old  Lee"}});
  }

  // Opens the dialog, fills boxes over what stands in them, and presses Enter.
  void Filter(std::initializer_list<std::pair<const char*, const char*>> criteria) {
    Click(Main, "BtnFilter");
    ASSERT_TRUE(WaitUntilActive(Dialog));
    for (const auto& [box, text] : criteria) {
      Control<QLineEdit>(Dialog, box).setText(QString::fromUtf8(text));
    }
    QTest::keyClick(Dialog.focusWidget(), Qt::Key_Return);
  }

  FilterDialog Dialog{Shared, Store, Main, ProgressWindow, SingleText};
};

TEST_F(FilterDialogTest, NarrowsTheListAndWidensItAgain) {
  Show();
  Select(3);
  Filter({{"TxtLastName", "an"}});
  EXPECT_EQ(ListTexts(), (Texts{"Brandt, Ann", "Jansen, Bob", "SANDERS, Cid"}));
  EXPECT_EQ(Panel(1) + "|" + Panel(2) + "|" + Panel(4), "| 1/ 3|Filter - ON");
  EXPECT_EQ(Label(0).Caption(), "Brandt");
  EXPECT_TRUE(Main.isEnabled());
  EXPECT_FALSE(Dialog.isVisible() || ProgressWindow.isVisible());

  Select(2);
  Filter({{"TxtLastName", ""}, {"TxtNotes", "   "}});  // blanks alone are no filter
  EXPECT_FALSE(Shared.FilterOn);
  EXPECT_EQ(ListTexts().size(), 4U);
  EXPECT_EQ(Label(0).Caption(), "SANDERS");
  EXPECT_EQ(Panel(2) + "|" + Panel(4), " 4/ 4|Filter - OFF");

  // The blanks are criteria as soon as another one applies.
  Filter({{"TxtNotes", ""}, {"TxtLastName", "  "}, {"TxtFirstName", "d"}});
  EXPECT_EQ(ListTexts(), Texts{"Old  Lee, Dan"});
  Main.Menus().MnuFilterArray[1]->trigger();
  EXPECT_EQ(Label(0).Caption(), "Old  Lee");
  EXPECT_EQ(Panel(2) + "|" + Panel(4), " 3/ 4|Filter - OFF");
  EXPECT_TRUE(Main.Menus().MnuFilterArray[1]->isChecked());
}

TEST_F(FilterDialogTest, KeepsItsCriteriaUnlessCancelled) {
  Show();
  Filter({{"TxtFirstName", "nobody"}, {"TxtCompany", "acme"}});
  EXPECT_TRUE(ListTexts().empty());
  EXPECT_EQ(Main.focusWidget(), &Control<QWidget>(Main, "BtnFilter"));
  EXPECT_EQ(Panel(4), "Filter - ON");

  Click(Main, "BtnFilter");
  ASSERT_TRUE(WaitUntilActive(Dialog));
  EXPECT_FALSE(Main.isEnabled());
  EXPECT_EQ(Panel(1), "Quillary Filter");
  EXPECT_EQ(Dialog.focusWidget(), &Control<QWidget>(Dialog, "TxtFirstName"));
  EXPECT_EQ(Control<QLineEdit>(Dialog, "TxtCompany").text(), QStringLiteral("acme"));
  Control<QLineEdit>(Dialog, "TxtFirstName").setText(QStringLiteral("ann"));
  QTest::keyClick(&Dialog, Qt::Key_Escape);
  EXPECT_TRUE(Main.isEnabled());
  EXPECT_EQ(Panel(1), "");
  EXPECT_TRUE(ListTexts().empty());

  Filter({{"TxtFirstName", ""}});  // not "ann": that was cancelled
  EXPECT_EQ(ListTexts(), (Texts{"Brandt, Ann", "SANDERS, Cid"}));
}

TEST_F(FilterDialogTest, TellsOfRecordsThatCannotBeRead) {
  Show();
  Folder.MakeUnreadable("quill0.dat");
  MsgBoxAnswerer ok;
  Filter({{"TxtLastName", "an"}});
  ASSERT_EQ(ok.Seen.size(), 1U);
  EXPECT_EQ(ok.Seen[0].first, QStringLiteral("Quillary Filter"));
  EXPECT_TRUE(ListTexts().empty());
  EXPECT_TRUE(Main.isEnabled());
}

TEST_F(FilterDialogTest, SurvivesBeingClosedWhileItSearches) {
  Show();
  Click(Main, "BtnFilter");
  ASSERT_TRUE(WaitUntilActive(Dialog));
  Control<QLineEdit>(Dialog, "TxtLastName").setText(QStringLiteral("an"));
  // Runs with the first events that the search lets run.
  QTimer events;
  events.setSingleShot(true);
  QObject::connect(&events, &QTimer::timeout, &events, [this] {
    EXPECT_FALSE(Dialog.isVisible());
    EXPECT_FALSE(Main.isEnabled());
    EXPECT_FALSE(Main.close());
    Dialog.close();
    ProgressWindow.close();
  });
  events.start(0);
  Click(Dialog, "BtnOK");
  EXPECT_EQ(ListTexts().size(), 3U);
  EXPECT_TRUE(Main.isEnabled());
  EXPECT_FALSE(Dialog.isVisible() || ProgressWindow.isVisible());
}

}  // namespace
}  // namespace quillary::test
