#include "tests/dialogs/dialog_fixture.h"

namespace quillary::test {
namespace {

class DeleteDialogTest : public DialogFixture {
 protected:
  std::string Caption(const char* label) { return Control<DetailLabel>(Delete, label).Caption(); }
  std::string Captions() {
    return Caption("LblName") + "|" + Caption("LblTitle") + "|" + Caption("LblCompany");
  }
};

TEST_F(DeleteDialogTest, ShowsTheRecordAndAsks) {
  Add({{Sal, "Ms"},
       {FirstName, "Ann"},
       {LastName, "Lee"},
       {Title, "<b>Dr</b>"},
       {Field::Company, "A&cme"}});
  Add({{FirstName, "Bob"}});
  Add({{Field::Company, "Bell"}});
  Add({{LastName, "Zorn"}});
  Show();
  const auto files = Files();
  const std::vector<const char*> names{"||Bell", "Bob ||", "Ann Lee|<b>Dr</b>|A&cme", "Zorn||"};
  for (int i = 0; i < 4; ++i) {
    OpenDelete(i);
    EXPECT_EQ(Captions(), names.at(static_cast<std::size_t>(i)));
    EXPECT_EQ(Panel(1), "Delete Name");
    EXPECT_FALSE(Main.isEnabled());
    if (i == 0) Click(Delete, "BtnCancel");
    if (i == 1) QTest::keyClick(&Delete, Qt::Key_Escape);
    if (i >= 2) Delete.close();
    ExpectClosed();
    EXPECT_EQ(Shared.CurListIndex, i);
  }
  EXPECT_EQ(Files(), files);
}

TEST_F(DeleteDialogTest, YesDeletesAndSelectsTheEntryAbove) {
  for (const char* name : {"Lee", "Moss", "Nash"}) Add({{LastName, name}});
  Show();
  OpenDelete(2);
  QTest::keyClick(Delete.focusWidget(), Qt::Key_Return);
  ExpectClosed();
  EXPECT_EQ(ListTexts(), (Texts{"Lee", "Moss"}));
  EXPECT_EQ(Panel(2) + " " + Label(0).Caption(), " 2/ 2 Moss");
  EXPECT_EQ(DeletedList(), "1 from 2");
  OpenDelete(0);
  ClickOK();
  ExpectClosed();
  EXPECT_EQ(Panel(2) + " " + Label(0).Caption(), " 1/ 1 Moss");
  OpenDelete(0);
  ClickOK();
  ExpectClosed();
  EXPECT_EQ(ListTexts(), Texts{});
  EXPECT_EQ(Panel(2) + Label(0).Caption(), "");
  EXPECT_EQ(DeletedList(), "3 from 1");
  EXPECT_EQ(Stored("1", "LastName"), "Moss");
}

TEST_F(DeleteDialogTest, WithoutConfirmation) {
  for (const char* name : {"Hanna", "Manning", "Other", "Stan"}) Add({{LastName, name}});
  Show();
  FilterLastNames("an");
  DeleteEntry(1);
  ExpectClosed();
  EXPECT_EQ(ListTexts(), (Texts{"Hanna", "Stan"}));
  EXPECT_EQ(Panel(2), " 1/ 2");
  EXPECT_EQ(Shared.NamesList, (Texts{"Hanna", "Other", "Stan"}));

  // Refused, the main window is as before.
  EXPECT_EQ(Store.WriteHeaderEntry("NoOfUses", "2"), RunTimeError::None);
  MsgBoxAnswerer answerer;
  DeleteEntry(1);
  EXPECT_EQ(answerer.Seen.size(), 1U);
  ExpectClosed();
  EXPECT_EQ(ListTexts(), (Texts{"Hanna", "Stan"}));
  EXPECT_EQ(Shared.CurListIndex, 1);
}

}  // namespace
}  // namespace quillary::test
