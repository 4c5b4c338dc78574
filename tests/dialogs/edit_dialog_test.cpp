#include <filesystem>

#include "tests/dialogs/dialog_fixture.h"

namespace quillary::test {
namespace {

class EditDialogTest : public DialogFixture {
 protected:
  // Types into one box of a record and presses OK.
  void EditBox(int entry, int box, const std::string& text) {
    OpenEdit(entry);
    Type(box, text);
    Close();
  }
  // The number of the record, and its neighbours in both lists.
  std::string Links(const std::string& RecNo) {
    return Stored(RecNo, "PrevName") + "<" + RecNo + ">" + Stored(RecNo, "NextName") + " " +
           Stored(RecNo, "PrevCompany") + "<" + RecNo + ">" + Stored(RecNo, "NextCompany");
  }
};

TEST_F(EditDialogTest, ChangesInPlaceWhatIsNoSortKey) {
  const std::string odd = "a\xFF\tb\r\nc & <b>";
  Add({{FirstName, "Ann"}, {LastName, "Moss"}, {Title, odd}, {Field::Phone1, "12"}});
  ShowNames({"Lee", "Nash"});
  const std::string header = Folder.ReadFile("quill.dat");
  OpenEdit(1);
  EXPECT_EQ(BoxText(1) + "|" + BoxText(2) + "|" + BoxText(11), "Ann|Moss|12");
  Type(11, " 34 ");
  LineBox(12).insert(QStringLiteral("5\r\n6"));  // pasted
  Close(Qt::Key_Return);
  EXPECT_EQ(Stored("0", "Phone1") + "|" + Stored("0", "Phone2"), " 34 |5 6");
  EXPECT_EQ(Stored("0", "Title"), odd);
  EXPECT_EQ(Folder.ReadFile("quill.dat"), header);
  EXPECT_EQ(Links("0"), "1<0>2 1<0>2");
  EXPECT_EQ(Panel(2) + Label(8).Caption(), " 2/ 3 34 ");

  const auto files = Files();
  OpenEdit(0);
  Type(1, "Bob");
  Close(Qt::Key_Escape);
  EXPECT_EQ(Files(), files);
}

// A move among equal ones puts the record before them: that tells whether it moved at all.
TEST_F(EditDialogTest, CaseAndBlanksOfANameCountAsAChange) {
  Add({{LastName, "lee"}});
  Add({{FirstName, "Ann "}, {LastName, "Moss"}});
  EXPECT_EQ(Store.WriteRecordEntry("1", "FirstName", "Ann "), RunTimeError::None);
  Add({{LastName, "lee"}});
  Add({{FirstName, "Ann"}, {LastName, "Moss"}});
  Show();
  EditBox(1, 2, "lee");
  EXPECT_EQ(Links("0"), "2<0>3 2<0>3");
  EditBox(1, 2, "Lee");
  EXPECT_EQ(Links("0"), "<0>2 <0>2");
  EXPECT_EQ(Panel(2), " 1/ 4");
  EXPECT_EQ(Links("1"), "3<1> 3<1>");
  EditBox(3, 3, "Clerk");  // the blank goes too
  EXPECT_EQ(Links("1") + Stored("1", "FirstName"), "2<1>3 2<1>3Ann");
  EXPECT_EQ(Panel(2), " 3/ 4");
  EditBox(2, 4, "Zeta");  // the head of the other list
  EXPECT_EQ(Links("1"), "2<1>3 <1>0");
  EditBox(0, 2, " Zander ");
  EXPECT_EQ(Stored("0", "LastName") + Panel(2), "Zander 4/ 4");
  OpenEdit(0);
  Type(2, "");
  ExpectRefusal("BtnOK", "Empty Name and Company");
}

TEST_F(EditDialogTest, DisplayStringsWrittenByHandGiveWayToTheNames) {
  Add({{LastName, "Lee"}});
  Add({{LastName, "Moss"}});
  EXPECT_EQ(Store.WriteRecordEntry("0", "ShowName", "Zz"), RunTimeError::None);
  EXPECT_EQ(Store.WriteRecordEntry("0", "ShowCompany", "Zz"), RunTimeError::None);
  EXPECT_EQ(Store.ReadListsAgain(), RunTimeError::None);
  Show();
  EditBox(1, 11, "34");
  EXPECT_EQ(Stored("0", "ShowName") + Stored("0", "ShowCompany"), "LeeLee");
  EXPECT_EQ(Links("0") + Panel(2), "<0>1 <0>1 1/ 2");
  EditBox(0, 11, "56");
  EXPECT_EQ(Stored("0", "Phone1"), "56");
}

TEST_F(EditDialogTest, WhatAnotherProgramHasStoredMeanwhileIsShownFirst) {
  ShowNames({"Lee", "Moss"});
  OpenEdit(0);
  Type(11, "34");
  ASSERT_EQ(Store.WriteRecordEntry("0", "Fax", "56"), RunTimeError::None);
  EXPECT_TRUE(Press().join(u' ').contains(QStringLiteral("changed: Fax.")));
  ExpectOpen();
  EXPECT_EQ(Stored("0", "Phone1") + Stored("0", "Fax") + BoxText(11), "5634");
  Close();
  EXPECT_EQ(Stored("0", "Phone1") + Stored("0", "Fax"), "34");

  // A record that is not there any more is not begun anew.
  OpenEdit(0);
  Type(11, "78");
  std::filesystem::remove(Folder.File("quill0.dat"));
  EXPECT_EQ(Press().size(), 1);
  EXPECT_FALSE(std::filesystem::exists(Folder.File("quill0.dat")));
}

// Nor copied, nor deleted.
TEST_F(EditDialogTest, ARecordThatCannotBeReadIsNotEdited) {
  ShowNames({"Lee"});
  Folder.MakeUnreadable("quill0.dat");
  QStringList titles;
  {
    MsgBoxAnswerer answerer;
    Edit.ShowEditDialog();
    New.ShowDuplicateDialog();
    Delete.ShowDeleteDialog();
    for (const auto& [title, text] : answerer.Seen) titles << title;
  }
  EXPECT_EQ(titles.join(u'|').toStdString(), "Edit Name|New Name - Duplicate|Delete Name");
  EXPECT_FALSE(Edit.isVisible() || New.isVisible() || Delete.isVisible());
  Main.activateWindow();
  ASSERT_TRUE(WaitUntilActive(Main));
  EXPECT_EQ(Main.findChild<QMessageBox*>(), nullptr) << "it has been told";
}

}  // namespace
}  // namespace quillary::test
