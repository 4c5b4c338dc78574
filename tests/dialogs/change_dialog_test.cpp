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
    Other.Data.DataPath = Shared.DataPath;
    Other.Data.DataFile = Shared.DataFile;
  }

  // Does all but press the button.
  void Prepare(const std::string& lastName = "Varek") {
    switch (GetParam()) {
      case Kind::Delete:
        return OpenDelete(1);
      case Kind::Restore:
        return OpenRestore();
      case Kind::Edit:
        OpenEdit(0);
        break;
      case Kind::New:
        OpenNew();
        break;
    }
    Type(2, lastName);
  }
  const char* Button() const { return GetParam() == Kind::Restore ? "BtnRestore" : "BtnOK"; }
  // What the user goes on with after a failure.
  QWidget& LastControl() {
    if (GetParam() == Kind::Delete) return Control<QWidget>(*Dialog, Button());
    if (GetParam() == Kind::Restore) return Control<QWidget>(*Dialog, "DelLstNames");
    return Box(2);
  }
  auto State() {
    return std::tuple(ListTexts(), Shared.CurListIndex, Shared.FieldValues, Shared.NoOfRecords,
                      Shared.NamesRecNo, Shared.CompaniesRecNo, Files());
  }
  // Another program deletes an entry.
  void DeleteOutside(std::size_t entry) {
    Other.Open();
    ASSERT_EQ(Other.Delete(Other.Lines.RecNos[entry]), RunTimeError::None);
  }

  StoreWorld Other;
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
    Disk.FailAt(call, RunTimeError::DiskFull, false);
    const QStringList told = Press(Button());
    reached = Disk.WasReached();
    Disk.Reset();
    if (told.empty()) {
      // The fault may have hit the reading of the selected record, which SetData tells.
      if (auto* box = Main.findChild<QMessageBox*>()) box->close();
      ExpectClosed();
      EXPECT_NE(ListTexts(), std::get<0>(before)) << call;
      continue;
    }
    ++failures;
    ExpectOpen();
    EXPECT_TRUE(State() == before) << call;
    EXPECT_EQ(told.size(), 1);
    EXPECT_TRUE(told[0].contains(QStringLiteral("Nothing was changed.")));
    ASSERT_TRUE(WaitUntilActive(*Dialog));
    EXPECT_EQ(Dialog->focusWidget(), &LastControl());
    if (GetParam() <= Kind::Edit) {
      EXPECT_EQ(BoxText(2), lastName);
      EXPECT_FALSE(LineBox(2).hasSelectedText());
    }
    Close("BtnCancel");
  }
  EXPECT_GT(failures, 5);
}

// Whatever the disk says, in a message that fits its box.
TEST_P(ChangeDialogTest, TellsWhatTheDiskSays) {
  for (const RunTimeError error :
       {RunTimeError::Overflow, RunTimeError::FileNotFound, RunTimeError::DeviceError,
        RunTimeError::DiskFull, RunTimeError::BadRecordNumber, RunTimeError::PermissionDenied,
        RunTimeError::NotReady, RunTimeError::PathAccess, RunTimeError::PathNotFound}) {
    Prepare();
    Disk.FailWrites(error);
    const QStringList told = Press(Button());
    Disk.Reset();
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told[0].contains(QString::fromStdString(RunTimeErrorText(error))));
    if (Dialog->isVisible()) Click(*Dialog, "BtnCancel");
  }
}

TEST_P(ChangeDialogTest, ReadsTheListsAgainWhereAnotherProgramHasChangedThem) {
  // What is deleted while the first or second entry is worked on.
  for (const std::size_t deleted : {3U, 0U}) {
    Prepare();
    DeleteOutside(deleted);
    const QStringList told = Press(Button());
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(
        told[0].contains(QStringLiteral(": another program has changed the data.\n"
                                        "Nothing was changed. The list has been read again.")));
    Other.Open();
    EXPECT_EQ(ListTexts(), Other.Lines.Texts);
    if (GetParam() > Kind::Edit || (GetParam() == Kind::Edit && deleted == 0)) {
      ExpectClosed();
      continue;
    }
    ExpectOpen();
    EXPECT_EQ(BoxText(2), "Varek");
    Close();
    EXPECT_NE(ListTexts(), Other.Lines.Texts);
  }
}

// The lists read again lack what the disk does not give, or have what it did not give before.
TEST_P(ChangeDialogTest, TellsWhatTheListsReadAgainLack) {
  Prepare();
  Disk.Reset();
  Disk.FailAt(1, RunTimeError::PermissionDenied, true);
  Store.GetNamesList();
  Disk.Reset();
  EXPECT_TRUE(Press(Button()).join(u'|').contains(QStringLiteral("has been read again")));
  if (Dialog->isVisible()) Close("BtnCancel");

  EXPECT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", "100"), RunTimeError::None);
  Add({{LastName, "Zz"}});
  Prepare();
  DeleteOutside(0);
  Folder.MakeUnreadable("quill1.dat");
  const QStringList told = Press(Button());
  ASSERT_EQ(told.size(), 2);
  EXPECT_TRUE(told[0].endsWith(QStringLiteral("The list has been read again.")));
  EXPECT_TRUE(told[1].contains(QStringLiteral("|Some records could not be read:\n")));
}

TEST_P(ChangeDialogTest, WaitsUntilTheOtherApplicationHasEnded) {
  Prepare();
  const auto before = ListTexts();
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
  Close(Button());
  EXPECT_NE(ListTexts(), before);
}

INSTANTIATE_TEST_SUITE_P(All, ChangeDialogTest,
                         testing::Values(Kind::New, Kind::Edit, Kind::Delete, Kind::Restore));

using FilteredListTest = DialogFixture;

TEST_F(FilteredListTest, SelectsTheRecordThatWasChangedWhereItIsListed) {
  ShowNames({"Hanna", "Manning", "Other", "Stan"});
  DeleteEntry(2);
  FilterLastNames("an");
  const auto expect = [this](const Texts& names, const char* position) {
    EXPECT_EQ(ListTexts(), names);
    EXPECT_EQ(Panel(2), position);
  };
  const auto add = [this](const char* name) {
    OpenNew();
    Type(2, name);
    Close();
  };
  const auto rename = [this](int entry, const char* name) {
    OpenEdit(entry);
    Type(2, name);
    Close();
  };
  const auto restore = [this] {
    OpenRestore();
    Close("BtnRestore");
  };
  add("Zander");
  expect({"Hanna", "Manning", "Stan", "Zander"}, " 4/ 4");
  add("Miller");
  expect({"Hanna", "Manning", "Stan", "Zander"}, " 1/ 4");
  rename(0, "Yan");
  expect({"Manning", "Stan", "Yan", "Zander"}, " 3/ 4");
  rename(1, "Moll");
  expect({"Manning", "Yan", "Zander"}, " 1/ 3");
  restore();  // Other: the last entry is selected
  expect({"Manning", "Yan", "Zander"}, " 3/ 3");
  DeleteEntry(1);
  expect({"Manning", "Zander"}, " 1/ 2");
  restore();
  expect({"Manning", "Yan", "Zander"}, " 3/ 3");
  for (const char* name : {"x", "y", "z"}) rename(0, name);
  expect({}, "");
  EXPECT_EQ(Shared.NoOfRecords, 6);
}

}  // namespace
}  // namespace quillary::test
