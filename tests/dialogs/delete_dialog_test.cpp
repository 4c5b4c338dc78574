#include "tests/dialogs/dialog_fixture.h"

namespace quillary::test {
namespace {

using DeleteDialogTest = DialogFixture;

TEST_F(DeleteDialogTest, ShowsTheRecordAndAsks) {
  Add({{FirstName, "Ann"}, {LastName, "Lee"}, {Title, "<b>Dr</b>"}, {Field::Company, "A&cme"}});
  Add({{FirstName, "Bob"}});
  Show();
  const auto files = Files();
  const auto caption = [this](const char* line) {
    return Control<DetailLabel>(Delete, line).Caption();
  };
  OpenDelete(0);
  EXPECT_EQ(caption("LblName") + "|" + caption("LblTitle") + "|" + caption("LblCompany"), "Bob ||");
  Close("BtnCancel");
  OpenDelete(1);
  EXPECT_EQ(caption("LblName") + "|" + caption("LblTitle") + "|" + caption("LblCompany"),
            "Ann Lee|<b>Dr</b>|A&cme");
  Close(Qt::Key_Escape);
  EXPECT_EQ(Files(), files);
}

TEST_F(DeleteDialogTest, DeletesAndSelectsTheEntryAbove) {
  ShowNames({"Lee", "Moss", "Nash"});
  const auto shown = [this] { return Panel(2) + " " + Label(0).Caption(); };
  OpenDelete(2);
  Close(Qt::Key_Return);
  EXPECT_EQ(ListTexts(), (Texts{"Lee", "Moss"}));
  EXPECT_EQ(shown(), " 2/ 2 Moss");
  EXPECT_EQ(DeletedList(), "1 from 2");
  OpenDelete(0);
  Close();
  EXPECT_EQ(shown(), " 1/ 1 Moss");
  DeleteEntry(0);
  ExpectClosed();
  EXPECT_EQ(ListTexts(), Texts{});
  EXPECT_EQ(shown(), " ");
  EXPECT_EQ(DeletedList(), "3 from 1");
  EXPECT_EQ(Stored("1", "LastName"), "Moss");
}

TEST_F(DeleteDialogTest, WithoutConfirmationItMayBeRefused) {
  ShowNames({"Lee", "Moss"});
  EXPECT_EQ(Store.WriteHeaderEntry("NoOfUses", "2"), RunTimeError::None);
  MsgBoxAnswerer answerer;
  DeleteEntry(1);
  EXPECT_EQ(answerer.Seen.size(), 1U);
  ExpectClosed();
  EXPECT_EQ(ListTexts(), (Texts{"Lee", "Moss"}));
  EXPECT_EQ(Shared.CurListIndex, 1);
}

}  // namespace
}  // namespace quillary::test
