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
    Show();
  }

  // Opens the dialog, fills boxes over what stands in them, and presses a key.
  void Filter(std::initializer_list<std::pair<const char*, const char*>> criteria,
              Qt::Key key = Qt::Key_Return) {
    Click(Main, "BtnFilter");
    ASSERT_TRUE(WaitUntilActive(Dialog));
    EXPECT_FALSE(Main.isEnabled());
    for (const auto& [box, text] : criteria) {
      Control<QLineEdit>(Dialog, box).setText(QString::fromUtf8(text));
    }
    PressKey(Dialog, key);
    EXPECT_TRUE(Main.isEnabled());
    EXPECT_FALSE(Dialog.isVisible() || ProgressWindow.isVisible());
  }
  std::string Shown() {
    return Label(0).Caption() + "|" + Panel(1) + "|" + Panel(2) + "|" + Panel(4);
  }

  FilterDialog Dialog{Shared, Store, Main, ProgressWindow, SingleText};
};

TEST_F(FilterDialogTest, NarrowsTheListAndWidensItAgain) {
  Select(3);
  Filter({{"TxtLastName", "an"}});
  EXPECT_EQ(ListTexts(), (Texts{"Brandt, Ann", "Jansen, Bob", "SANDERS, Cid"}));
  EXPECT_EQ(Shown(), "Brandt|| 1/ 3|Filter - ON");
  Select(2);
  Filter({{"TxtLastName", ""}, {"TxtNotes", "   "}});  // blanks alone are no filter
  EXPECT_FALSE(Shared.FilterOn);
  EXPECT_EQ(ListTexts().size(), 4U);
  EXPECT_EQ(Shown(), "SANDERS|| 4/ 4|Filter - OFF");

  // The blanks are criteria as soon as another one applies.
  Filter({{"TxtNotes", ""}, {"TxtLastName", "  "}, {"TxtFirstName", "d"}});
  EXPECT_EQ(ListTexts(), Texts{"Old  Lee, Dan"});
  Main.Menus().MnuFilterArray[1]->trigger();
  EXPECT_EQ(Shown(), "Old  Lee|| 3/ 4|Filter - OFF");
}

TEST_F(FilterDialogTest, KeepsItsCriteriaUnlessCancelled) {
  Filter({{"TxtFirstName", "nobody"}, {"TxtCompany", "acme"}});
  EXPECT_EQ(Shown(), "|||Filter - ON");
  Filter({{"TxtFirstName", "ann"}}, Qt::Key_Escape);
  EXPECT_EQ(Shown(), "|||Filter - ON");
  Filter({{"TxtFirstName", ""}});  // not "ann": that was cancelled
  EXPECT_EQ(ListTexts(), (Texts{"Brandt, Ann", "SANDERS, Cid"}));
}

TEST_F(FilterDialogTest, TellsOfRecordsThatCannotBeRead) {
  Folder.MakeUnreadable("quill0.dat");
  MsgBoxAnswerer ok;
  Filter({{"TxtLastName", "an"}});
  ASSERT_EQ(ok.Seen.size(), 1U);
  EXPECT_EQ(ok.Seen[0].first, QStringLiteral("Quillary Filter"));
  EXPECT_TRUE(ListTexts().empty());
}

TEST_F(FilterDialogTest, SurvivesBeingClosedWhileItSearches) {
  int turns = 0;
  QTimer events;
  QObject::connect(&events, &QTimer::timeout, &events, [&] {
    if (!ProgressWindow.isVisible() || turns++ > 0) return;
    EXPECT_FALSE(Dialog.isVisible() || Main.isEnabled() || Main.close());
    Dialog.close();
    ProgressWindow.close();
  });
  events.start(0);
  Filter({{"TxtLastName", "an"}});
  EXPECT_GT(turns, 0);
  EXPECT_EQ(ListTexts().size(), 3U);
}

}  // namespace
}  // namespace quillary::test
