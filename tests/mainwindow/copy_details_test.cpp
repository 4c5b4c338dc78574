#include "mainwindow/copy_details.h"

#include <QCheckBox>

#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

class CopyTest : public MainFixture {
 protected:
  CopyTest() {
    Shared.CopyValues.fill(1);
    Shared.Phone1Prefix = "Tel";
    Shared.FaxPrefix = "Fax";
    Add({{LastName, "Varek"}, {Company, "Acme"}, {Address1, "1 Main St"}, {Address5, "12345"}});
    for (const auto& [key, value] : {std::pair{"Sal", "Mr."},
                                     {"FirstName", "Brin"},
                                     {"Fax", "777"},
                                     {"Phone1", "555"},
                                     {"Notes", "One\r\nTwo"}}) {
      EXPECT_EQ(Store.WriteRecordEntry("0", key, value), RunTimeError::None);
    }
    Show();
  }
  // What stands on the clipboard after that.
  std::string After(const std::function<void()>& copy) {
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    copy();
    return Clipboard();
  }
  std::string AfterClick(Qt::KeyboardModifiers held = Qt::NoModifier) {
    return After([&] { Click(Main, "BtnCopy", held); });
  }
  void Tick(std::initializer_list<const char*> boxes) {
    for (const char* box : boxes) Control<QCheckBox>(Main, box).click();
  }
};

TEST_F(CopyTest, CopiesTheTickedLinesOrAll) {
  const std::string ticked = "Mr. Varek\rAcme\r1 Main St\r12345\r555\r777\r";
  EXPECT_EQ(AfterClick(), ticked);
  Tick({"ChkCopyCompany", "ChkCopyAddress", "ChkCopyPhone1"});
  EXPECT_EQ(AfterClick(), "Mr. Varek\r777\r");
  EXPECT_EQ(AfterClick(Qt::ControlModifier), ticked + "One\r\nTwo\r");
  Tick({"ChkCopyName", "ChkCopyFax"});
  EXPECT_EQ(AfterClick(), "");

  // Neither the boxes nor the list are what is copied, but the line as it stands there.
  Tick({"ChkCopyName"});
  Main.Menus().MnuNameStyleArray[1]->trigger();
  EXPECT_EQ(AfterClick(), "Mr. Brin Varek\r");
  // A name that the style leaves empty is a line all the same, but not among all.
  ASSERT_EQ(Store.WriteRecordEntry("0", "FirstName", ""), RunTimeError::None);
  Shared.NameStyle = 3;
  Main.SetData();
  EXPECT_EQ(AfterClick(), "\r");
  EXPECT_EQ(AfterClick(Qt::AltModifier), "Acme\r1 Main St\r12345\r555\r777\rOne\r\nTwo\r");
}

TEST_F(CopyTest, APrefixAndItsSeparatorStandBeforeANumber) {
  Shared.UsePrefix = true;
  Tick({"ChkCopyName", "ChkCopyCompany", "ChkCopyAddress"});
  const Texts separators{"\t", " ", ":", ": ", "", ""};
  for (std::size_t i = 0; i < separators.size(); ++i) {
    Shared.PrefixSprt = static_cast<std::uint8_t>(i);
    EXPECT_EQ(AfterClick(), "Tel" + separators[i] + "555\rFax" + separators[i] + "777\r");
  }
  // Only before the numbers that are there.
  EXPECT_EQ(AfterClick(Qt::ShiftModifier),
            "Mr. Varek\rAcme\r1 Main St\r12345\rTel555\rFax777\rOne\r\nTwo\r");
}

TEST_F(CopyTest, EveryWayToCopy) {
  const std::string ticked = AfterClick();
  ListBox& list = Control<ListBox>(Main, "LstNames");
  const QPoint line = list.visualRect(list.model()->index(0, 0)).center();
  EXPECT_EQ(After([&] { QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, line); }), ticked);
  EXPECT_EQ(After([&] { Main.Menus().MnuCopyArray[0]->trigger(); }), ticked);
  EXPECT_EQ(After([&] { Main.Menus().MnuCopyArray[1]->trigger(); }), ticked + "One\r\nTwo\r");
  // Enter is the button's where no other button has the focus.
  for (const char* name : {"LstNames", "ChkCopyFax", "BtnCopy"}) {
    Widget(name).setFocus();
    EXPECT_EQ(After([&] { PressKey(Main, Qt::Key_Return); }), ticked) << name;
  }
  EXPECT_EQ(After([&] { PressKey(Main, Qt::Key_Space); }), ticked);
  auto& button = Control<CommandButton>(Main, "BtnCopy");
  EXPECT_EQ(After([&] { QTest::mousePress(&button, Qt::LeftButton); }), ticked);
  EXPECT_TRUE(button.isDown());
  EXPECT_EQ(After([&] { QTest::mouseRelease(&button, Qt::LeftButton); }), "before");
  EXPECT_FALSE(button.isDown());
  EXPECT_EQ(After([&] { QTest::mouseClick(&button, Qt::RightButton); }), "before");
}

}  // namespace
}  // namespace quillary::test
