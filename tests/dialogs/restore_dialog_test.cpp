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
    Add({{Sal, "Dr"}, {LastName, "adams"}, {Address4, "York"}, {Title, "<i>"}});
    Add({{LastName, "Clark"}, {Field::Company, "Acme"}});
    Show();
    for (const int entry : {1, 0, 0}) DeleteEntry(entry);
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
    const QPoint place = List().visualRect(List().model()->index(line, 0)).center();
    QTest::mouseClick(List().viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(List().viewport(), Qt::LeftButton, Qt::NoModifier, place);
  }
  // Name, title, company and town.
  std::string Details() {
    std::string details;
    for (const char* line : {"Label(0)", "Label(1)", "Label(2)", "Label(6)"}) {
      details += Control<DetailLabel>(Restore, line).Caption() + "|";
    }
    return details;
  }
};

TEST_F(RestoreDialogTest, ListsTheDeletedRecordsAndRestoresTheSelectedOne) {
  DeleteThree();
  const auto files = Files();
  Shared.ViewMode = 1;
  OpenRestore();
  EXPECT_EQ(Listed(), (Texts{"( Acme )", "adams", "Brown"}));
  Restore.close();
  ExpectClosed();
  Shared.ViewMode = 0;
  OpenRestore();
  EXPECT_EQ(Listed(), (Texts{"adams", "Brown", "Clark"}));
  EXPECT_EQ(Details(), "Dr adams|<i>||York|");
  PressKey(Restore, Qt::Key_End);
  EXPECT_EQ(Details(), "Clark||Acme||");
  Close(Qt::Key_Escape);
  EXPECT_EQ(Files(), files);
  EXPECT_EQ(Shared.FieldValues[Field::Company], "Zeta");  // the main window's record again
  EXPECT_EQ(Panel(2), " 1/ 1");

  const auto shown = [this] { return DeletedList() + Panel(2) + " " + Label(0).Caption(); };
  OpenRestore();
  DoubleClick(0);  // from the middle
  ExpectClosed();
  EXPECT_EQ(shown(), "2 from 3 1/ 2 Dr adams");
  OpenRestore();
  PressKey(Restore, Qt::Key_Down);
  Close(Qt::Key_Return);  // the head
  EXPECT_EQ(shown(), "1 from 1 2/ 3 Clark");
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
  EXPECT_TRUE(Press("BtnRestore").join(u' ').startsWith(QStringLiteral("Record Not Restored|")));
  ExpectClosed();
  EXPECT_EQ(Files(), files);
}

TEST_F(RestoreDialogTest, AnEmptyListOffersNothing) {
  ShowNames({"Lee"});
  EXPECT_EQ(Store.WriteHeaderEntry("DelNoOfRecords", "2"), RunTimeError::None);
  OpenRestore();
  EXPECT_EQ(Listed(), Texts{});
  EXPECT_EQ(Details(), "||||");
  Restore.EnableRestore(true);
  EXPECT_FALSE(Control<QWidget>(Restore, "BtnRestore").isEnabled());
  PressKey(Restore, Qt::Key_Return);
  EXPECT_TRUE(Restore.isVisible());
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
  EXPECT_TRUE(Guard.InUseTimer.isActive() && Restore.isEnabled());
  EXPECT_EQ(List().ListCount(), 50);
}

}  // namespace
}  // namespace quillary::test
