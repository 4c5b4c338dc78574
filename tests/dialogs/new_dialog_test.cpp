#include "dialogs/new_dialog.h"

#include <QPlainTextEdit>

#include "tests/support/check_invariants.h"
#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

class NewDialogTest : public MainFixture {
 protected:
  NewDialogTest() {
    Started.On = [this](const std::string& command) {
      if (command == "ShowNewDialog") Dialog.ShowNewDialog();
      if (command == "ShowDuplicateDialog") Dialog.ShowDuplicateDialog();
    };
    Guard.InUseTimer.start();
  }

  // Opens the dialog with the main window's button.
  void Open(Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    Click(Main, "BtnNew", modifiers);
    ASSERT_TRUE(WaitUntilActive(Dialog));
  }
  QWidget& Box(int index) {
    return Control<QWidget>(Dialog, ("TxtBox(" + std::to_string(index) + ")").c_str());
  }
  std::string BoxText(int index) {
    return dynamic_cast<QLineEdit&>(Box(index)).text().toStdString();
  }
  // Goes to a box and types.
  void Type(int index, const char* text) {
    Box(index).setFocus(Qt::TabFocusReason);
    QTest::keyClicks(&Box(index), QString::fromUtf8(text));
  }
  std::string Stored(const std::string& RecNo, const char* key) {
    return Store.ReadRecordEntry(RecNo, key);
  }
  // Nothing is going on any more.
  void ExpectClosed() {
    EXPECT_FALSE(Dialog.isVisible() || Wait.isVisible());
    EXPECT_TRUE(Main.isEnabled());
    EXPECT_TRUE(Guard.InUseTimer.isActive());
    EXPECT_EQ(Panel(1), "");
    EXPECT_TRUE(CheckFiles(Folder.Path()));
  }
  // The dialog waits for another try.
  void ExpectOpen() {
    EXPECT_TRUE(Dialog.isVisible());
    EXPECT_FALSE(Wait.isVisible());
    EXPECT_FALSE(Main.isEnabled());
    EXPECT_TRUE(Guard.InUseTimer.isActive());
  }

  SharingGuard Guard{Profile, Shared, [this] { Dialog.EnableOK(!Shared.InUse); }};
  MsgBoxSnglTxt MsgBox{Shared, Main};
  PleaseWait Wait{Main};
  NewDialog Dialog{Shared, Profile, Store, Guard, Main, MsgBox, Wait};
};

TEST_F(NewDialogTest, AnUntouchedDialogIsNotSaved) {
  Show();
  const std::string header = Folder.ReadFile("quill.dat");
  Open();
  EXPECT_EQ(Panel(1), "New Name");
  EXPECT_FALSE(Main.isEnabled());
  EXPECT_EQ(BoxText(1) + "|" + BoxText(2) + "|" + BoxText(9) + "|" + BoxText(10),
            "First Name|Last Name|ZIP/Postal code|Country");
  {
    MsgBoxAnswerer answerer;
    QTest::keyClick(Dialog.focusWidget(), Qt::Key_Return);
    ASSERT_EQ(answerer.Seen.size(), 1U);
    EXPECT_EQ(answerer.Seen[0].first, QStringLiteral("Empty Name and Company"));
    EXPECT_EQ(answerer.Seen[0].second, QStringLiteral("Either Name or Company must be filled"));
  }
  ExpectOpen();
  EXPECT_EQ(BoxText(0), "Mr.");
  for (const int index : {1, 2, 9, 10}) EXPECT_EQ(BoxText(index), "") << index;
  QTest::keyClick(&Dialog, Qt::Key_Escape);
  ExpectClosed();
  EXPECT_EQ(Folder.ReadFile("quill.dat"), header);
}

TEST_F(NewDialogTest, StoresAndSelectsTheNewRecord) {
  Add({{FirstName, "Zoe"}, {LastName, "Aster"}});
  EXPECT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", "57"), RunTimeError::None);
  Show();
  Open();
  Type(1, "  Ann ");     // typing replaces the prompt
  Type(2, "last name");  // not the prompt
  Type(3, " Clerk ");
  Type(4, "Acme");
  Click(Dialog, "BtnOK");
  ExpectClosed();
  EXPECT_EQ(Stored("57", "Sal") + "|" + Stored("57", "FirstName") + "|" + Stored("57", "LastName") +
                "|" + Stored("57", "Title") + "|" + Stored("57", "Address5"),
            "Mr.|Ann|last name| Clerk |");
  EXPECT_EQ(Store.ReadHeaderEntry("TotalNoOfRecords"), "58");
  EXPECT_EQ(ListTexts(), (std::vector<std::string>{"Aster, Zoe", "last name, Ann"}));
  EXPECT_EQ(Panel(2), " 2/ 2");
  EXPECT_EQ(Label(3 - 1).Caption(), "Acme");

  Open();
  Type(1, "");
  Box(1).setFocus(Qt::TabFocusReason);
  QTest::keyClick(&Box(1), Qt::Key_Delete);
  Type(4, "Bell");
  QTest::keyClick(&Box(4), Qt::Key_Return);  // "Last Name" is the prompt
  ExpectClosed();
  EXPECT_EQ(Stored("58", "Sal") + "|" + Stored("58", "ShowName"), "|( Bell )");
  EXPECT_EQ(Panel(2), " 1/ 3");
}

TEST_F(NewDialogTest, ADuplicateIsTheSameToTheByte) {
  const std::string oneLine = "a\xFF\xFE\tb\r\nc & <b>";
  const std::string notes = "Windows\r\nUnix\nMac\r\xC2\xA0 no-break \xE2\x80\xA8";
  Add({{FirstName, "Ann"}, {LastName, "Lee"}, {Title, oneLine}, {Field::Notes, notes}});
  Show();
  Open(Qt::ShiftModifier);
  EXPECT_EQ(Panel(1), "New Name - Duplicate");
  Click(Dialog, "BtnOK");
  ExpectClosed();
  EXPECT_EQ(Stored("1", "Title"), oneLine);
  EXPECT_EQ(Stored("1", "Notes"), notes);
  EXPECT_EQ(Panel(2), " 1/ 2");  // before its equal

  Open(Qt::ShiftModifier);
  auto& box = Control<QPlainTextEdit>(Dialog, "TxtBox(15)");
  box.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&box, QStringLiteral("one"));
  QTest::keyClick(&box, Qt::Key_Return, Qt::ControlModifier);
  QTest::keyClicks(&box, QStringLiteral("two"));
  QTest::keyClick(&box, Qt::Key_Return);
  ExpectClosed();
  EXPECT_EQ(Stored("2", "Notes"), "one\r\ntwo");
  EXPECT_EQ(Stored("2", "Title"), oneLine);
}

TEST_F(NewDialogTest, UnderAFilterOnlyAMatchIsListed) {
  Add({{LastName, "Mann"}});
  Add({{LastName, "Other"}});
  Shared.FilterCriteria[1] = "an";
  Shared.FilterOn = true;
  Store.BuildFilteredList();
  Store.GetFilteredNamesList();
  Store.ShowRecords();
  Show();
  const auto addName = [this](const char* name) {
    Open();
    Type(2, name);
    Click(Dialog, "BtnOK");
    ExpectClosed();
  };
  addName("Zander");
  EXPECT_EQ(ListTexts(), (std::vector<std::string>{"Mann", "Zander"}));
  EXPECT_EQ(Panel(2), " 2/ 2");
  addName("Miller");
  EXPECT_EQ(ListTexts(), (std::vector<std::string>{"Mann", "Zander"}));
  EXPECT_EQ(Panel(2), " 1/ 2");
  EXPECT_EQ(Shared.NoOfRecords, 4);
}

TEST_F(NewDialogTest, NothingIsWrittenWhenItMustNotBe) {
  Add({{LastName, "Lee"}});
  Show();
  Open();
  Type(2, "Varek");
  const auto refusal = [this] {
    const std::string header = Folder.ReadFile("quill.dat");
    const std::string records = Folder.ReadFile("quill0.dat");
    MsgBoxAnswerer answerer;
    Click(Dialog, "BtnOK");
    ExpectOpen();
    EXPECT_EQ(BoxText(2), "Varek");
    EXPECT_EQ(Folder.ReadFile("quill.dat"), header);
    EXPECT_EQ(Folder.ReadFile("quill0.dat"), records);
    EXPECT_EQ(answerer.Seen.size(), 1U);
    return answerer.Seen.empty() ? QString() : answerer.Seen[0].first;
  };
  Shared.NoOfRecords = MaxRecords;
  EXPECT_EQ(refusal(), QStringLiteral("New Name"));
  Shared.NoOfRecords = 1;
  EXPECT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", "2147483647"), RunTimeError::None);
  EXPECT_EQ(refusal(), QStringLiteral("New Name"));
  EXPECT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", "1"), RunTimeError::None);

  // The other application started a moment ago.
  EXPECT_EQ(Store.WriteHeaderEntry("NoOfUses", "2"), RunTimeError::None);
  EXPECT_EQ(refusal(), QStringLiteral("Record Not Saved"));
  EXPECT_FALSE(Control<QWidget>(Dialog, "BtnOK").isEnabled());
  EXPECT_EQ(Store.WriteHeaderEntry("NoOfUses", "1"), RunTimeError::None);
  Guard.InUseTimer.start(1);
  QTRY_VERIFY(Control<QWidget>(Dialog, "BtnOK").isEnabled());
  Click(Dialog, "BtnOK");
  ExpectClosed();
  EXPECT_EQ(ListTexts().size(), 2U);
}

TEST_F(NewDialogTest, NeverOverwritesARecord) {
  Add({{LastName, "Lee"}});
  Add({{LastName, "Moss"}});
  for (const char* counter : {"0", "", "many", "-5"}) {
    EXPECT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", counter), RunTimeError::None);
    Main.SetData();
    Show();
    Open();
    Type(2, "Varek");
    Click(Dialog, "BtnOK");
    ExpectClosed();
  }
  EXPECT_EQ(Stored("0", "LastName") + Stored("1", "LastName"), "LeeMoss");
  EXPECT_EQ(Stored("5", "LastName"), "Varek");
  EXPECT_EQ(Store.ReadHeaderEntry("TotalNoOfRecords"), "6");
}

// Whichever call to the disk fails: either all is stored, or the user is told and all is as before.
TEST_F(NewDialogTest, AFailingDiskChangesNothing) {
  Add({{LastName, "Lee"}});
  Add({{LastName, "Moss"}});
  Show();
  int failures = 0;
  bool reached = true;
  for (int call = 1; reached; ++call) {
    Open();
    Type(2, "Varek");
    const FieldArray fields = Shared.FieldValues;
    const auto lines = ListTexts();
    const std::string files = Folder.ReadFile("quill.dat") + Folder.ReadFile("quill0.dat");
    MsgBoxAnswerer answerer;
    Disk.FailAt(call, RunTimeError::DiskFull, false);
    Click(Dialog, "BtnOK");
    reached = Disk.WasReached();
    Disk.Reset();
    if (answerer.Seen.empty()) {
      // The fault may have hit the reading of the new record, which SetData tells.
      if (auto* box = Main.findChild<QMessageBox*>()) box->close();
      ExpectClosed();
      Main.SetData();
      EXPECT_EQ(ListTexts().size(), lines.size() + 1);
      EXPECT_EQ(Label(0).Caption(), "Mr. Varek") << call;
      continue;
    }
    ++failures;
    ExpectOpen();
    EXPECT_EQ(BoxText(2), "Varek");
    // He goes on typing where he was.
    ASSERT_TRUE(WaitUntilActive(Dialog));
    EXPECT_EQ(Dialog.focusWidget(), &Box(2));
    EXPECT_FALSE(Control<QLineEdit>(Dialog, "TxtBox(2)").hasSelectedText());
    EXPECT_EQ(ListTexts(), lines);
    EXPECT_EQ(Shared.FieldValues, fields);
    EXPECT_EQ(Folder.ReadFile("quill.dat") + Folder.ReadFile("quill0.dat"), files) << call;
    EXPECT_EQ(answerer.Seen.size(), 1U);
    EXPECT_EQ(answerer.Seen[0].first, QStringLiteral("Record Not Saved"));
    EXPECT_EQ(answerer.Seen[0].second,
              QStringLiteral("The record could not be saved: the disk is full.\n"
                             "Nothing was changed. You can try again."));
    Click(Dialog, "BtnCancel");
    ExpectClosed();
  }
  EXPECT_GT(failures, 5);
}

TEST_F(NewDialogTest, TabGoesThroughTheFieldsAndSelectsEach) {
  Show();
  Open();
  for (int index = 0; index < 16; ++index) {
    EXPECT_EQ(Dialog.focusWidget(), &Box(index)) << index;
    if (index == 1) {
      EXPECT_EQ(dynamic_cast<QLineEdit&>(Box(1)).selectedText(), QStringLiteral("First Name"));
    }
    QTest::keyClick(&Box(index), Qt::Key_Tab);
  }
  EXPECT_EQ(Dialog.focusWidget(), &Control<QWidget>(Dialog, "BtnOK"));
  // A click selects too, but not the second one: that is for placing the cursor.
  QTest::mouseClick(&Box(2), Qt::LeftButton);
  EXPECT_EQ(dynamic_cast<QLineEdit&>(Box(2)).selectedText(), QStringLiteral("Last Name"));
  QTest::qWait(QApplication::doubleClickInterval());
  QTest::mouseClick(&Box(2), Qt::LeftButton);
  EXPECT_EQ(dynamic_cast<QLineEdit&>(Box(2)).selectedText(), QString());
}

}  // namespace
}  // namespace quillary::test
