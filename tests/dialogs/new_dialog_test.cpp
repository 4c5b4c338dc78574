#include <QPlainTextEdit>

#include "tests/dialogs/dialog_fixture.h"

namespace quillary::test {
namespace {

class NewDialogTest : public DialogFixture {
 protected:
  // With the main window's button.
  void OpenNew(Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    Open(New, [&] { Click(Main, "BtnNew", modifiers); });
  }
};

TEST_F(NewDialogTest, AnUntouchedDialogIsNotSaved) {
  Show();
  const std::string header = Folder.ReadFile("quill.dat");
  OpenNew();
  EXPECT_EQ(Panel(1), "New Name");
  EXPECT_FALSE(Main.isEnabled());
  EXPECT_EQ(BoxText(1) + "|" + BoxText(2) + "|" + BoxText(9) + "|" + BoxText(10),
            "First Name|Last Name|ZIP/Postal code|Country");
  {
    MsgBoxAnswerer answerer;
    QTest::keyClick(Dialog->focusWidget(), Qt::Key_Return);
    ASSERT_EQ(answerer.Seen.size(), 1U);
    EXPECT_EQ(answerer.Seen[0].first, QStringLiteral("Empty Name and Company"));
    EXPECT_EQ(answerer.Seen[0].second, QStringLiteral("Either Name or Company must be filled"));
  }
  ExpectOpen();
  EXPECT_EQ(BoxText(0), "Mr.");
  for (const int index : {1, 2, 9, 10}) EXPECT_EQ(BoxText(index), "") << index;
  QTest::keyClick(Dialog, Qt::Key_Escape);
  ExpectClosed();
  EXPECT_EQ(Folder.ReadFile("quill.dat"), header);
}

TEST_F(NewDialogTest, StoresAndSelectsTheNewRecord) {
  Add({{FirstName, "Zoe"}, {LastName, "Aster"}});
  EXPECT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", "57"), RunTimeError::None);
  Show();
  OpenNew();
  Type(1, "  Ann ");     // typing replaces the prompt
  Type(2, "last name");  // not the prompt
  Type(3, " Clerk ");
  Type(4, "Acme");
  ClickOK();
  ExpectClosed();
  EXPECT_EQ(Stored("57", "Sal") + "|" + Stored("57", "FirstName") + "|" + Stored("57", "LastName") +
                "|" + Stored("57", "Title") + "|" + Stored("57", "Address5"),
            "Mr.|Ann|last name| Clerk |");
  EXPECT_EQ(Store.ReadHeaderEntry("TotalNoOfRecords"), "58");
  EXPECT_EQ(ListTexts(), (Texts{"Aster, Zoe", "last name, Ann"}));
  EXPECT_EQ(Panel(2), " 2/ 2");
  EXPECT_EQ(Label(3 - 1).Caption(), "Acme");

  OpenNew();
  Type(1, "");
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
  OpenNew(Qt::ShiftModifier);
  EXPECT_EQ(Panel(1), "New Name - Duplicate");
  ClickOK();
  ExpectClosed();
  EXPECT_EQ(Stored("1", "Title"), oneLine);
  EXPECT_EQ(Stored("1", "Notes"), notes);
  EXPECT_EQ(Panel(2), " 1/ 2");  // before its equal

  OpenNew(Qt::ShiftModifier);
  auto& box = Control<QPlainTextEdit>(*Dialog, "TxtBox(15)");
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
  Show();
  FilterLastNames("an");
  const auto addName = [this](const char* name) {
    OpenNew();
    Type(2, name);
    ClickOK();
    ExpectClosed();
  };
  addName("Zander");
  EXPECT_EQ(ListTexts(), (Texts{"Mann", "Zander"}));
  EXPECT_EQ(Panel(2), " 2/ 2");
  addName("Miller");
  EXPECT_EQ(ListTexts(), (Texts{"Mann", "Zander"}));
  EXPECT_EQ(Panel(2), " 1/ 2");
  EXPECT_EQ(Shared.NoOfRecords, 4);
}

TEST_F(NewDialogTest, NothingIsWrittenWhenThereIsNoRoom) {
  Show();
  OpenNew();
  Type(2, "Varek");
  Shared.NoOfRecords = MaxRecords;
  ExpectRefusal("BtnOK", "New Name");
  Shared.NoOfRecords = 0;
  EXPECT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", "2147483647"), RunTimeError::None);
  ExpectRefusal("BtnOK", "New Name");
  EXPECT_EQ(BoxText(2), "Varek");
}

TEST_F(NewDialogTest, NeverOverwritesARecord) {
  Add({{LastName, "Lee"}});
  Add({{LastName, "Moss"}});
  for (const char* counter : {"0", "", "many", "-5"}) {
    EXPECT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", counter), RunTimeError::None);
    Main.SetData();
    Show();
    OpenNew();
    Type(2, "Varek");
    ClickOK();
    ExpectClosed();
  }
  EXPECT_EQ(Stored("0", "LastName") + Stored("1", "LastName"), "LeeMoss");
  EXPECT_EQ(Stored("5", "LastName"), "Varek");
  EXPECT_EQ(Store.ReadHeaderEntry("TotalNoOfRecords"), "6");
}

TEST_F(NewDialogTest, TabGoesThroughTheFieldsAndSelectsEach) {
  Show();
  OpenNew();
  for (int index = 0; index < 16; ++index) {
    EXPECT_EQ(Dialog->focusWidget(), &Box(index)) << index;
    if (index == 1) {
      EXPECT_EQ(dynamic_cast<QLineEdit&>(Box(1)).selectedText(), QStringLiteral("First Name"));
    }
    QTest::keyClick(&Box(index), Qt::Key_Tab);
  }
  EXPECT_EQ(Dialog->focusWidget(), &Control<QWidget>(*Dialog, "BtnOK"));
  // A click selects too, but not the second one: that is for placing the cursor.
  QTest::mouseClick(&Box(2), Qt::LeftButton);
  EXPECT_EQ(dynamic_cast<QLineEdit&>(Box(2)).selectedText(), QStringLiteral("Last Name"));
  QTest::qWait(QApplication::doubleClickInterval());
  QTest::mouseClick(&Box(2), Qt::LeftButton);
  EXPECT_EQ(dynamic_cast<QLineEdit&>(Box(2)).selectedText(), QString());
}

}  // namespace
}  // namespace quillary::test
