#include <filesystem>

#include "auxiliary/message_text.h"
#include "tests/dialogs/dialog_fixture.h"

namespace quillary::test {
namespace {

class EditDialogTest : public DialogFixture {
 protected:
  // Types into one box of a record and presses OK.
  void EditBox(int entry, int box, const std::string& text) {
    OpenEdit(entry);
    Type(box, text);
    ClickOK();
    ExpectClosed();
  }
  // The number of the record, and its neighbours in both lists.
  std::string Links(const std::string& RecNo) {
    return Stored(RecNo, "PrevName") + "<" + RecNo + ">" + Stored(RecNo, "NextName") + " " +
           Stored(RecNo, "PrevCompany") + "<" + RecNo + ">" + Stored(RecNo, "NextCompany");
  }
};

TEST_F(EditDialogTest, ChangesInPlaceWhatIsNoSortKey) {
  const std::string odd = "a\xFF\tb\r\nc & <b>";
  Add({{LastName, "Lee"}});
  Add({{FirstName, "Ann"}, {LastName, "Moss"}, {Title, odd}, {Field::Phone1, "12"}});
  Add({{LastName, "Nash"}});
  Show();
  const std::string header = Folder.ReadFile("quill.dat");
  OpenEdit(1);
  EXPECT_EQ(Panel(1), "Edit Name");
  EXPECT_FALSE(Main.isEnabled());
  EXPECT_EQ(BoxText(1) + "|" + BoxText(2) + "|" + BoxText(11), "Ann|Moss|12");
  Type(11, " 34 ");
  dynamic_cast<QLineEdit&>(Box(12)).insert(QStringLiteral("5\r\n6"));  // pasted
  QTest::keyClick(&Box(11), Qt::Key_Return);
  ExpectClosed();
  EXPECT_EQ(Stored("1", "Phone1") + "|" + Stored("1", "Phone2"), " 34 |5 6");
  EXPECT_EQ(Stored("1", "Title"), odd);
  EXPECT_EQ(Folder.ReadFile("quill.dat"), header);
  EXPECT_EQ(Links("1"), "0<1>2 0<1>2");
  EXPECT_EQ(ListTexts(), (Texts{"Lee", "Moss, Ann", "Nash"}));
  EXPECT_EQ(Panel(2), " 2/ 3");
  EXPECT_EQ(Label(8).Caption(), " 34 ");

  const auto files = Files();
  OpenEdit(0);
  Type(1, "Bob");
  QTest::keyClick(Dialog, Qt::Key_Escape);
  ExpectClosed();
  EXPECT_EQ(Files(), files);
}

TEST_F(EditDialogTest, ARecordWhoseNameChangedMoves) {
  for (const char* name : {"Lee", "Moss", "Nash", "Orr"}) Add({{LastName, name}});
  Show();
  DeleteEntry(3);
  EditBox(0, 2, " Zander ");
  EXPECT_EQ(ListTexts(), (Texts{"Moss", "Nash", "Zander"}));
  EXPECT_EQ(Panel(2), " 3/ 3");
  EXPECT_EQ(Stored("0", "LastName") + "|" + Stored("0", "ShowName"), "Zander|Zander");
  EditBox(2, 4, "Acme");  // the head of the other list
  EXPECT_EQ(ListTexts(), (Texts{"Moss", "Nash", "Zander"}));
  EXPECT_EQ(Panel(2), " 3/ 3");
  EXPECT_EQ(Shared.CompaniesRecNo, (Texts{"0", "1", "2"}));
  EXPECT_EQ(DeletedList(), "1 from 3");
}

// A move among equal ones puts the record before them: that tells whether it moved at all.
TEST_F(EditDialogTest, CaseAndBlanksOfANameCountAsAChange) {
  Add({{LastName, "lee"}});
  Add({{FirstName, "Ann "}, {LastName, "Moss"}});
  EXPECT_EQ(Store.WriteRecordEntry("1", "FirstName", "Ann "), RunTimeError::None);
  Add({{LastName, "lee"}});
  Add({{FirstName, "Ann"}, {LastName, "Moss"}});
  Show();
  EXPECT_EQ(Links("0"), "2<0>3 2<0>3");
  EditBox(1, 2, "lee");
  EXPECT_EQ(Links("0"), "2<0>3 2<0>3");
  EditBox(1, 2, "Lee");
  EXPECT_EQ(Links("0"), "<0>2 <0>2");
  EXPECT_EQ(Panel(2), " 1/ 4");
  EXPECT_EQ(Links("1"), "3<1> 3<1>");
  EditBox(3, 3, "Clerk");  // the blank goes too
  EXPECT_EQ(Links("1"), "2<1>3 2<1>3");
  EXPECT_EQ(Stored("1", "FirstName"), "Ann");
  EXPECT_EQ(Panel(2), " 3/ 4");
}

TEST_F(EditDialogTest, UnderAFilterTheRecordMayLeaveTheList) {
  for (const char* name : {"Hanna", "Manning", "Other", "Stan"}) Add({{LastName, name}});
  Show();
  FilterLastNames("an");
  EditBox(0, 2, "Zander");
  EXPECT_EQ(ListTexts(), (Texts{"Manning", "Stan", "Zander"}));
  EXPECT_EQ(Panel(2), " 3/ 3");
  EditBox(1, 2, "Miller");
  EXPECT_EQ(ListTexts(), (Texts{"Manning", "Zander"}));
  EXPECT_EQ(Panel(2), " 1/ 2");
  EXPECT_EQ(Shared.NamesList, (Texts{"Manning", "Miller", "Other", "Zander"}));
  EditBox(0, 2, "x");
  EditBox(0, 2, "y");
  EXPECT_EQ(Panel(2), "");
  EXPECT_EQ(Shared.NoOfRecords, 4);
}

TEST_F(EditDialogTest, NameAndCompanyMustNotBothBeEmpty) {
  Add({{Sal, "Mr."}, {FirstName, "Ann"}, {LastName, "Lee"}, {Field::Company, "Acme"}});
  Show();
  OpenEdit(0);
  for (const int box : {1, 2, 4}) Type(box, "");
  ExpectRefusal("BtnOK", "Empty Name and Company");
  EXPECT_EQ(BoxText(0) + "|" + BoxText(1), "Mr.|");
  Type(4, "Bell");
  ClickOK();
  ExpectClosed();
  EXPECT_EQ(Stored("0", "Sal") + "|" + Stored("0", "ShowName"), "|( Bell )");
}

TEST_F(EditDialogTest, WhatAnotherProgramHasStoredMeanwhileIsShownFirst) {
  for (const char* name : {"Lee", "Moss"}) Add({{LastName, name}});
  Show();
  OpenEdit(0);
  Type(11, "34");
  ASSERT_EQ(Store.WriteRecordEntry("0", "Fax", "56"), RunTimeError::None);
  {
    MsgBoxAnswerer answerer;
    answerer.Before = [] {
      const auto& text = Control<MessageText>(*QApplication::activeModalWidget(), "Text1");
      EXPECT_EQ(text.Shown(), text.text());
    };
    ClickOK();
    ASSERT_EQ(answerer.Seen.size(), 1U);
    EXPECT_TRUE(answerer.Seen[0].second.contains(QStringLiteral("changed: Fax.")));
  }
  ExpectOpen();
  EXPECT_EQ(Stored("0", "Phone1") + Stored("0", "Fax") + BoxText(11), "5634");
  ClickOK();
  ExpectClosed();
  EXPECT_EQ(Stored("0", "Phone1") + Stored("0", "Fax"), "34");

  // A record that is not there any more is not begun anew.
  OpenEdit(0);
  Type(11, "78");
  std::filesystem::remove(Folder.File("quill0.dat"));
  MsgBoxAnswerer answerer;
  ClickOK();
  EXPECT_EQ(answerer.Seen.size(), 1U);
  EXPECT_FALSE(std::filesystem::exists(Folder.File("quill0.dat")));
}

// Nor copied, nor deleted.
TEST_F(EditDialogTest, ARecordThatCannotBeReadIsNotEdited) {
  Add({{LastName, "Lee"}});
  Show();
  const std::string record = Folder.ReadFile("quill0.dat");
  Folder.MakeUnreadable("quill0.dat");
  QStringList titles;
  {
    MsgBoxAnswerer answerer;
    Edit.ShowEditDialog();
    New.ShowDuplicateDialog();
    Delete.ShowDeleteDialog();
    for (const auto& [title, text] : answerer.Seen) titles << title;
  }
  EXPECT_EQ(titles.join(QLatin1Char('|')).toStdString(),
            "Edit Name|New Name - Duplicate|Delete Name");
  EXPECT_FALSE(Edit.isVisible() || New.isVisible() || Delete.isVisible());
  Main.activateWindow();
  ASSERT_TRUE(WaitUntilActive(Main));
  EXPECT_EQ(Main.findChild<QMessageBox*>(), nullptr) << "it has been told";
  std::filesystem::remove(Folder.File("quill0.dat"));
  Folder.WriteFile("quill0.dat", record);
  OpenDelete(0);
  Click(Delete, "BtnCancel");
  ExpectClosed();
}

}  // namespace
}  // namespace quillary::test
