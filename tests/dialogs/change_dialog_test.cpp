#include <tuple>

#include "tests/dialogs/dialog_fixture.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

enum class Kind { New, Edit, Delete, Restore };

// What all dialogs that change the data have in common.
class ChangeDialogTest : public DialogFixture, public testing::WithParamInterface<Kind> {
 protected:
  ChangeDialogTest() {
    for (int i = 10; i < 50; ++i) Add({{LastName, "Name" + std::to_string(i)}});
    Show();
    for (int i = 0; i < 20; ++i) DeleteEntry(0);
  }

  // Does all but press the button.
  void Prepare(const std::string& lastName) {
    switch (GetParam()) {
      case Kind::Delete:
        return OpenDelete(1);
      case Kind::Restore:
        return OpenRestore();
      case Kind::Edit:
        OpenEdit(0);
        break;
      case Kind::New:
        Open(New, [this] { New.ShowNewDialog(); });
        break;
    }
    Type(2, lastName);
  }
  // What the user goes on with after a failure.
  QWidget& LastControl() {
    if (GetParam() == Kind::Delete) return Control<QWidget>(*Dialog, Button());
    if (GetParam() == Kind::Restore) return Control<QWidget>(*Dialog, "DelLstNames");
    return Box(2);
  }
  const char* Button() const { return GetParam() == Kind::Restore ? "BtnRestore" : "BtnOK"; }
  auto State() {
    return std::tuple(ListTexts(), Shared.CurListIndex, Shared.FieldValues, Shared.NoOfRecords,
                      Shared.NamesRecNo, Shared.CompaniesRecNo, Files());
  }
};

// Whichever call to the disk fails: either the change is made, or the user is told and all is as
// before, with the dialog back.
TEST_P(ChangeDialogTest, AFailingDiskChangesNothing) {
  int failures = 0;
  bool reached = true;
  for (int call = 1; reached && !HasFailure(); ++call) {
    const std::string lastName = "Varek" + std::to_string(call);
    Prepare(lastName);
    const auto before = State();
    MsgBoxAnswerer answerer;
    Disk.FailAt(call, RunTimeError::DiskFull, false);
    Click(*Dialog, Button());
    reached = Disk.WasReached();
    Disk.Reset();
    if (answerer.Seen.empty()) {
      // The fault may have hit the reading of the selected record, which SetData tells.
      if (auto* box = Main.findChild<QMessageBox*>()) box->close();
      ExpectClosed();
      EXPECT_NE(ListTexts(), std::get<0>(before)) << call;
      continue;
    }
    ++failures;
    ExpectOpen();
    EXPECT_TRUE(State() == before) << call;
    ASSERT_EQ(answerer.Seen.size(), 1U);
    EXPECT_TRUE(answerer.Seen[0].second.contains(QStringLiteral("Nothing was changed.")));
    ASSERT_TRUE(WaitUntilActive(*Dialog));
    EXPECT_EQ(Dialog->focusWidget(), &LastControl());
    if (GetParam() <= Kind::Edit) {
      EXPECT_EQ(BoxText(2), lastName);
      EXPECT_FALSE(dynamic_cast<QLineEdit&>(Box(2)).hasSelectedText());
    }
    Click(*Dialog, "BtnCancel");
    ExpectClosed();
  }
  EXPECT_GT(failures, 5);
}

// Whatever the disk says.
TEST_P(ChangeDialogTest, ItsMessagesFitTheirBox) {
  MsgBoxAnswerer answerer;
  answerer.Before = [] {
    const auto& text = Control<MessageText>(*QApplication::activeModalWidget(), "Text1");
    EXPECT_EQ(text.Shown().toStdString(), text.text().toStdString());
  };
  for (const RunTimeError error :
       {RunTimeError::Overflow, RunTimeError::FileNotFound, RunTimeError::DeviceError,
        RunTimeError::DiskFull, RunTimeError::BadRecordNumber, RunTimeError::PermissionDenied,
        RunTimeError::NotReady, RunTimeError::PathAccess, RunTimeError::PathNotFound}) {
    Prepare("Varek");
    answerer.Seen.clear();
    Disk.FailWrites(error);
    Click(*Dialog, Button());
    Disk.Reset();
    ASSERT_EQ(answerer.Seen.size(), 1U);
    EXPECT_TRUE(answerer.Seen[0].second.contains(QString::fromStdString(RunTimeErrorText(error))));
    if (Dialog->isVisible()) Click(*Dialog, "BtnCancel");
  }
  Prepare("Varek");
  EXPECT_EQ(Store.WriteHeaderEntry("NoOfUses", "2"), RunTimeError::None);
  Click(*Dialog, Button());
  EXPECT_EQ(answerer.Seen.size(), 2U);
}

TEST_P(ChangeDialogTest, ReadsTheListsAgainWhereAnotherProgramHasChangedThem) {
  StoreWorld other;
  other.Data.DataPath = Shared.DataPath;
  other.Data.DataFile = Shared.DataFile;
  // What another program deletes while the first or second entry is worked on.
  for (const std::size_t deleted : {3U, 0U}) {
    Prepare("Varek");
    other.Open();
    ASSERT_EQ(other.Delete(other.Lines.RecNos[deleted]), RunTimeError::None);
    MsgBoxAnswerer answerer;
    Click(*Dialog, Button());
    ASSERT_EQ(answerer.Seen.size(), 1U);
    EXPECT_TRUE(answerer.Seen[0].second.contains(
        QStringLiteral(": another program has changed the data.\n"
                       "Nothing was changed. The list has been read again.")));
    other.Open();
    EXPECT_EQ(ListTexts(), other.Lines.Texts);
    if (GetParam() > Kind::Edit || (GetParam() == Kind::Edit && deleted == 0)) {
      ExpectClosed();
      continue;
    }
    ExpectOpen();
    EXPECT_EQ(BoxText(2), "Varek");
    Click(*Dialog, Button());
    ExpectClosed();
    EXPECT_NE(ListTexts(), other.Lines.Texts);
    if (GetParam() == Kind::Edit) Shared.CurListIndex = 0;
  }
}

TEST_P(ChangeDialogTest, ReadsTheListAgainThatCouldNotBeReadBefore) {
  Prepare("Varek");
  Disk.Reset();
  Disk.FailAt(1, RunTimeError::PermissionDenied, true);
  Store.GetNamesList();
  Disk.Reset();
  {
    MsgBoxAnswerer answerer;
    Click(*Dialog, Button());
    ASSERT_EQ(answerer.Seen.size(), 1U);
    EXPECT_TRUE(answerer.Seen[0].second.contains(QStringLiteral("has been read again")));
  }
  std::string recNo;
  EXPECT_EQ(Store.NextRecordNumber(recNo), RunTimeError::None);
  EXPECT_TRUE(CheckFiles(Folder.Path()));
}

// Read again because of another program, the lists lack what the disk does not give.
TEST_P(ChangeDialogTest, TellsWhatTheListsReadAgainLack) {
  EXPECT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", "100"), RunTimeError::None);
  Add({{LastName, "Zz"}});
  Prepare("Varek");
  StoreWorld other;
  other.Data.DataPath = Shared.DataPath;
  other.Data.DataFile = Shared.DataFile;
  other.Open();
  ASSERT_EQ(other.Delete(other.Lines.RecNos[0]), RunTimeError::None);
  Folder.MakeUnreadable("quill1.dat");
  MsgBoxAnswerer answerer;
  Click(*Dialog, Button());
  ASSERT_EQ(answerer.Seen.size(), 2U);
  EXPECT_TRUE(answerer.Seen[0].second.endsWith(QStringLiteral("The list has been read again.")));
  EXPECT_EQ(answerer.Seen[1].first, answerer.Seen[0].first);
  EXPECT_TRUE(
      answerer.Seen[1].second.startsWith(QStringLiteral("Some records could not be read:\n")));
}

TEST_P(ChangeDialogTest, WaitsUntilTheOtherApplicationHasEnded) {
  Prepare("Varek");
  const auto before = State();
  EXPECT_EQ(Store.WriteHeaderEntry("NoOfUses", "2"), RunTimeError::None);
  const char* title = GetParam() == Kind::Delete    ? "Record Not Deleted"
                      : GetParam() == Kind::Restore ? "Record Not Restored"
                                                    : "Record Not Saved";
  ExpectRefusal(Button(), title);
  auto& button = Control<QWidget>(*Dialog, Button());
  EXPECT_FALSE(button.isEnabled());
  EXPECT_EQ(Store.WriteHeaderEntry("NoOfUses", "1"), RunTimeError::None);
  Guard.InUseTimer.start(1);
  QTRY_VERIFY(button.isEnabled());
  Click(*Dialog, Button());
  ExpectClosed();
  EXPECT_NE(ListTexts(), std::get<0>(before));
}

INSTANTIATE_TEST_SUITE_P(All, ChangeDialogTest,
                         testing::Values(Kind::New, Kind::Edit, Kind::Delete, Kind::Restore));

}  // namespace
}  // namespace quillary::test
