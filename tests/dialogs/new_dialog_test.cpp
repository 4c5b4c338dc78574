#include <QPlainTextEdit>

#include "tests/dialogs/dialog_fixture.h"

namespace quillary::test {
namespace {

class NewDialogTest : public DialogFixture {
 protected:
  void OpenDuplicate() {
    Open(New, [this] { New.ShowDuplicateDialog(); });
  }
};

TEST_F(NewDialogTest, AnUntouchedDialogIsNotSaved) {
  Show();
  OpenNew();
  EXPECT_EQ(BoxText(1) + "|" + BoxText(2) + "|" + BoxText(9) + "|" + BoxText(10),
            "First Name|Last Name|ZIP/Postal code|Country");
  ExpectRefusal("BtnOK", "Empty Name and Company");
  EXPECT_EQ(BoxText(0), "Mr.");
  for (const int index : {1, 2, 9, 10}) EXPECT_EQ(BoxText(index), "") << index;
  Close(Qt::Key_Escape);

  // Nor is there room for another one, or a number left.
  OpenNew();
  Type(2, "Varek");
  Shared.NoOfRecords = MaxRecords;
  ExpectRefusal("BtnOK", "New Name");
  Shared.NoOfRecords = 0;
  EXPECT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", "2147483647"), RunTimeError::None);
  ExpectRefusal("BtnOK", "New Name");
  EXPECT_EQ(BoxText(2), "Varek");
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
  Close();
  EXPECT_EQ(Stored("57", "Sal") + "|" + Stored("57", "FirstName") + "|" + Stored("57", "LastName") +
                "|" + Stored("57", "Title") + "|" + Stored("57", "Address5"),
            "Mr.|Ann|last name| Clerk |");
  EXPECT_EQ(Store.ReadHeaderEntry("TotalNoOfRecords"), "58");
  EXPECT_EQ(ListTexts(), (Texts{"Aster, Zoe", "last name, Ann"}));
  EXPECT_EQ(Panel(2) + Label(2).Caption(), " 2/ 2Acme");

  OpenNew();
  Type(1, "");
  Type(4, "Bell");
  Close(Qt::Key_Return);  // "Last Name" is the prompt
  EXPECT_EQ(Stored("58", "Sal") + "|" + Stored("58", "ShowName"), "|( Bell )");
  EXPECT_EQ(Panel(2), " 1/ 3");
}

TEST_F(NewDialogTest, ADuplicateIsTheSameToTheByte) {
  const std::string oneLine = "a\xFF\xFE\tb\r\nc & <b>";
  const std::string notes = "Windows\r\nUnix\nMac\r\xC2\xA0 no-break \xE2\x80\xA8";
  Add({{FirstName, "Ann"}, {LastName, "Lee"}, {Title, oneLine}, {Field::Notes, notes}});
  Show();
  OpenDuplicate();
  EXPECT_EQ(Panel(1), "New Name - Duplicate");
  Close();
  EXPECT_EQ(Stored("1", "Title"), oneLine);
  EXPECT_EQ(Stored("1", "Notes"), notes);
  EXPECT_EQ(Panel(2), " 1/ 2");  // before its equal

  OpenDuplicate();
  auto& box = Control<QPlainTextEdit>(*Dialog, "TxtBox(15)");
  box.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&box, QStringLiteral("one"));
  QTest::keyClick(&box, Qt::Key_Return, Qt::ControlModifier);
  QTest::keyClicks(&box, QStringLiteral("two"));
  Close(Qt::Key_Return);
  EXPECT_EQ(Stored("2", "Notes") + Stored("2", "Title"), "one\r\ntwo" + oneLine);
}

TEST_F(NewDialogTest, TabGoesThroughTheFieldsAndSelectsEach) {
  Show();
  OpenNew();
  for (int index = 0; index < 16; ++index) {
    EXPECT_EQ(Dialog->focusWidget(), &Box(index)) << index;
    if (index < 15) {
      EXPECT_EQ(LineBox(index).selectedText(), LineBox(index).text());
    }
    PressKey(*Dialog, Qt::Key_Tab);
  }
  EXPECT_EQ(Dialog->focusWidget()->objectName(), QStringLiteral("BtnOK"));
  // A click selects too, but not the second one: that is for placing the cursor.
  QTest::mouseClick(&Box(2), Qt::LeftButton);
  EXPECT_EQ(LineBox(2).selectedText(), QStringLiteral("Last Name"));
  QTest::qWait(QApplication::doubleClickInterval());
  QTest::mouseClick(&Box(2), Qt::LeftButton);
  EXPECT_EQ(LineBox(2).selectedText(), QString());
}

}  // namespace
}  // namespace quillary::test
