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
    Add({{Sal, "Mr."},
         {FirstName, "Brin"},
         {LastName, "Varek"},
         {Company, "Acme"},
         {Address1, "1 Main St"},
         {Address4, "Springfield"},
         {Address5, "12345"},
         {Phone1, "555"},
         {Fax, "777"},
         {Field::Notes, "One\r\nTwo"}});
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
};

TEST_F(CopyTest, CopiesTheTickedLinesAndAllLines) {
  Show();
  const std::string ticked = "Mr. Varek\rAcme\r1 Main St\rSpringfield, 12345\r555\r777\r";
  EXPECT_EQ(AfterClick(), ticked);
  EXPECT_EQ(AfterClick(Qt::ShiftModifier), ticked + "One\r\nTwo\r");

  for (const char* box : {"ChkCopyCompany", "ChkCopyAddress", "ChkCopyPhone1"}) {
    Control<QCheckBox>(Main, box).click();
  }
  EXPECT_EQ(AfterClick(), "Mr. Varek\r777\r");
  EXPECT_EQ(AfterClick(Qt::ControlModifier), ticked + "One\r\nTwo\r");
  for (const char* box : {"ChkCopyName", "ChkCopyFax"}) Control<QCheckBox>(Main, box).click();
  EXPECT_EQ(AfterClick(), "");

  // Neither the boxes nor the list are what is copied, but the line as it stands there.
  Control<QCheckBox>(Main, "ChkCopyName").click();
  Main.Menus().MnuNameStyleArray[1]->trigger();
  EXPECT_EQ(AfterClick(), "Mr. Brin Varek\r");
}

TEST_F(CopyTest, APrefixAndItsSeparatorStandBeforeANumber) {
  Shared.UsePrefix = true;
  Show();
  for (const char* box : {"ChkCopyName", "ChkCopyCompany", "ChkCopyAddress"}) {
    Control<QCheckBox>(Main, box).click();
  }
  const Texts separators{"\t", " ", ":", ": ", "", ""};
  for (std::size_t i = 0; i < separators.size(); ++i) {
    Shared.PrefixSprt = static_cast<std::uint8_t>(i);
    EXPECT_EQ(AfterClick(), "Tel" + separators[i] + "555\rFax" + separators[i] + "777\r");
  }
  // Only before the numbers that are there.
  EXPECT_EQ(AfterClick(Qt::ShiftModifier),
            "Mr. Varek\rAcme\r1 Main St\rSpringfield, 12345\rTel555\rFax777\rOne\r\nTwo\r");
}

TEST_F(CopyTest, ANameThatTheStyleLeavesEmptyIsALineAllTheSame) {
  Shared.NameStyle = 3;
  Add({{LastName, "Aster"}, {Phone1, "1"}});
  Show();
  EXPECT_EQ(AfterClick(), "\r1\r");
  EXPECT_EQ(AfterClick(Qt::AltModifier), "1\r");
}

TEST_F(CopyTest, EveryWayToCopy) {
  Show();
  const std::string ticked = AfterClick();
  const std::string all = AfterClick(Qt::ShiftModifier);
  ListBox& list = Control<ListBox>(Main, "LstNames");
  const QPoint line = list.visualRect(list.model()->index(0, 0)).center();
  EXPECT_EQ(After([&] { QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, line); }), ticked);
  EXPECT_EQ(After([&] { Main.Menus().MnuCopyArray[0]->trigger(); }), ticked);
  EXPECT_EQ(After([&] { Main.Menus().MnuCopyArray[1]->trigger(); }), all);

  // Enter is the button's where no other button has the focus.
  auto& button = Control<CommandButton>(Main, "BtnCopy");
  for (const char* name : {"BtnCopy", "LstNames", "ChkCopyFax"}) {
    Control<QWidget>(Main, name).setFocus();
    EXPECT_EQ(After([&] { PressKey(Main, Qt::Key_Return); }), ticked) << name;
    EXPECT_TRUE(button.isDefault()) << name;
  }
  button.setFocus();
  EXPECT_EQ(After([&] { PressKey(Main, Qt::Key_Space); }), ticked);
  EXPECT_EQ(After([&] { QTest::mouseClick(&button, Qt::RightButton); }), "before");
  EXPECT_EQ(QApplication::activePopupWidget(), Main.Menus().MnuCopy);
  Main.Menus().MnuCopy->close();

  EXPECT_EQ(After([&] { QTest::mousePress(&button, Qt::LeftButton); }), ticked);
  EXPECT_TRUE(button.isDown());
  EXPECT_EQ(After([&] { QTest::mouseRelease(&button, Qt::LeftButton); }), "before");
  EXPECT_FALSE(button.isDown());
}

}  // namespace
}  // namespace quillary::test
