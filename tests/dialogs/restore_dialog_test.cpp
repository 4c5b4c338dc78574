#include <QAbstractItemModel>

#include "tests/dialogs/dialog_fixture.h"

namespace quillary::test {
namespace {

class RestoreDialogTest : public DialogFixture {
 protected:
  // Deleted, in this order: Brown, adams, Clark; Lee is left.
  void DeleteThree() {
    Add({{LastName, "Lee"}, {Field::Company, "Zeta"}});
    Add({{LastName, "Brown"}});
    Add({{Sal, "Dr"}, {LastName, "adams"}, {Address4, "York"}, {Address5, "YO1"}, {Title, "<i>"}});
    Add({{LastName, "Clark"}, {Field::Company, "Acme"}});
    Show();
    DeleteEntry(1);
    DeleteEntry(0);
    DeleteEntry(0);
    EXPECT_EQ(ListTexts(), Texts{"Lee"});
  }
  ListBox& List() { return Control<ListBox>(Restore, "DelLstNames"); }
  Texts Listed() {
    Texts texts;
    for (int i = 0; i < List().ListCount(); ++i) {
      texts.push_back(List().model()->index(i, 0).data().toString().toStdString());
    }
    return texts;
  }
  void DoubleClick(int line) {
    const QRect place = List().visualRect(List().model()->index(line, 0));
    QTest::mouseClick(List().viewport(), Qt::LeftButton, Qt::NoModifier, place.center());
    QTest::mouseDClick(List().viewport(), Qt::LeftButton, Qt::NoModifier, place.center());
  }
  std::string Detail(int index) {
    return Control<DetailLabel>(Restore, ("Label(" + std::to_string(index) + ")").c_str())
        .Caption();
  }
};

TEST_F(RestoreDialogTest, ListsTheDeletedRecordsAndShowsTheSelectedOne) {
  DeleteThree();
  const auto files = Files();
  OpenRestore();
  EXPECT_TRUE(Restore.isEnabled());
  EXPECT_FALSE(ProgressWindow.isVisible() || Main.isEnabled());
  EXPECT_EQ(Panel(1), "Restore Deleted Record");
  EXPECT_EQ(Listed(), (Texts{"adams", "Brown", "Clark"}));
  EXPECT_EQ(List().ListIndex(), 0);
  EXPECT_EQ(Detail(0) + "|" + Detail(1) + "|" + Detail(6), "Dr adams|<i>|York, YO1");
  QTest::keyClick(Restore.focusWidget(), Qt::Key_End);
  EXPECT_EQ(Detail(0) + "|" + Detail(2) + "|" + Detail(6), "Clark|Acme|");
  QTest::keyClick(&Restore, Qt::Key_Escape);
  ExpectClosed();
  EXPECT_EQ(Files(), files);
  EXPECT_EQ(Shared.FieldValues[Field::Company], "Zeta");  // the main window's record again
  EXPECT_EQ(Panel(2), " 1/ 1");

  Shared.ViewMode = 1;
  OpenRestore();
  EXPECT_EQ(Listed(), (Texts{"( Acme )", "adams", "Brown"}));
  Restore.close();
  ExpectClosed();
}

TEST_F(RestoreDialogTest, RestoresFromEveryPlaceOfTheDeletedList) {
  DeleteThree();
  EXPECT_EQ(DeletedList(), "3 from 3");
  OpenRestore();
  DoubleClick(0);  // from the middle
  ExpectClosed();
  EXPECT_EQ(ListTexts(), (Texts{"adams", "Lee"}));
  EXPECT_EQ(Panel(2) + " " + Label(0).Caption(), " 1/ 2 Dr adams");
  EXPECT_EQ(DeletedList(), "2 from 3");

  OpenRestore();
  EXPECT_EQ(Listed(), (Texts{"Brown", "Clark"}));
  QTest::keyClick(&List(), Qt::Key_Down);
  QTest::keyClick(&List(), Qt::Key_Return);  // the head
  ExpectClosed();
  EXPECT_EQ(DeletedList(), "1 from 1");
  EXPECT_EQ(Panel(2) + " " + Label(0).Caption(), " 2/ 3 Clark");

  OpenRestore();
  Click(Restore, "BtnRestore");  // the only one
  ExpectClosed();
  EXPECT_EQ(DeletedList(), "0 from ");
  EXPECT_EQ(ListTexts(), (Texts{"adams", "Brown", "Clark", "Lee"}));
  EXPECT_EQ(Panel(2), " 2/ 4");
}

TEST_F(RestoreDialogTest, UnderAFilterTheLastEntryIsSelected) {
  for (const char* name : {"Hanna", "Manning", "Other", "Stan"}) Add({{LastName, name}});
  Show();
  DeleteEntry(0);
  DeleteEntry(1);
  FilterLastNames("an");
  OpenRestore();
  DoubleClick(0);
  EXPECT_EQ(ListTexts(), (Texts{"Hanna", "Manning", "Stan"}));
  EXPECT_EQ(Panel(2), " 3/ 3");
  OpenRestore();
  DoubleClick(0);
  ExpectClosed();
  EXPECT_EQ(ListTexts(), (Texts{"Hanna", "Manning", "Stan"}));
  EXPECT_EQ(Shared.NoOfRecords, 4);
}

TEST_F(RestoreDialogTest, NothingIsWrittenWhenItMustNotBe) {
  DeleteThree();
  OpenRestore();
  Shared.NoOfRecords = MaxRecords;
  ExpectRefusal("BtnRestore", "Restore Deleted Record");
  Shared.NoOfRecords = 1;
  Restore.EnableRestore(false);
  DoubleClick(1);
  ExpectOpen();
  // Another program has taken it off the list meanwhile, which is a wrong one now.
  Restore.EnableRestore(true);
  EXPECT_EQ(Store.RemoveFromDeletedList(Shared.CurDelRecordNo), RunTimeError::None);
  const auto files = Files();
  MsgBoxAnswerer answerer;
  Click(Restore, "BtnRestore");
  ASSERT_EQ(answerer.Seen.size(), 1U);
  EXPECT_EQ(answerer.Seen[0].first, QStringLiteral("Record Not Restored"));
  ExpectClosed();
  EXPECT_EQ(Files(), files);
}

TEST_F(RestoreDialogTest, AnEmptyListOffersNothing) {
  Add({{LastName, "Lee"}});
  Show();
  EXPECT_EQ(Store.WriteHeaderEntry("DelNoOfRecords", "2"), RunTimeError::None);
  OpenRestore();
  EXPECT_EQ(Listed(), Texts{});
  EXPECT_EQ(Detail(0), "");
  Restore.EnableRestore(true);
  EXPECT_FALSE(Control<QWidget>(Restore, "BtnRestore").isEnabled());
  QTest::keyClick(Restore.focusWidget(), Qt::Key_Return);
  EXPECT_TRUE(Restore.isVisible());
  QTest::keyClick(&Restore, Qt::Key_Escape);
  EXPECT_FALSE(Restore.isVisible());
  EXPECT_TRUE(Main.isEnabled());
}

// Events run while the list is being read: the user can do nothing, not even close the dialog.
TEST_F(RestoreDialogTest, StaysWhileTheListIsRead) {
  for (int i = 0; i < 50; ++i) Add({{LastName, "Name" + std::to_string(i)}});
  Show();
  for (int i = 0; i < 50; ++i) DeleteEntry(0);
  int turns = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (!ProgressWindow.isVisible()) return;
    ++turns;
    EXPECT_FALSE(Restore.isEnabled() || Main.isEnabled() || Guard.InUseTimer.isActive());
    Restore.close();
    EXPECT_TRUE(Restore.isVisible());
  });
  timer.start(0);
  OpenRestore();
  EXPECT_GT(turns, 0);
  EXPECT_TRUE(Guard.InUseTimer.isActive());
  EXPECT_EQ(List().ListCount(), 50);
}

}  // namespace
}  // namespace quillary::test
