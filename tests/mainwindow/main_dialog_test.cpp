#include "mainwindow/main_dialog.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <cmath>

#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

// Of the ground and what differs most from it, as for the accessibility of web pages.
double Contrast(const QPixmap& pixmap) {
  const auto luminance = [](QRgb rgb) {
    const auto linear = [](int value) { return std::pow(value / 255.0, 2.2); };
    return 0.2126 * linear(qRed(rgb)) + 0.7152 * linear(qGreen(rgb)) + 0.0722 * linear(qBlue(rgb));
  };
  const QImage image = pixmap.toImage();
  const double ground = luminance(image.pixel(image.width() - 1, image.height() - 1));
  double most = 1;
  for (int x = 0; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) {
      const double text = luminance(image.pixel(x, y));
      most = std::max(most, (std::max(text, ground) + 0.05) / (std::min(text, ground) + 0.05));
    }
  }
  return most;
}

class MainDialogTest : public MainFixture {
 protected:
  std::string Focus() { return Main.focusWidget()->objectName().toStdString(); }
  bool IsHighlighted(int line) {
    return Label(line).TextColour() == DetailLabel::Colour::Highlighted;
  }
  ListBox& List() { return Control<ListBox>(Main, "LstNames"); }
  void ClickName(int index, Qt::MouseButton button = Qt::LeftButton,
                 Qt::KeyboardModifiers held = Qt::NoModifier) {
    QTest::mouseClick(List().viewport(), button, held,
                      List().visualRect(List().model()->index(index, 0)).center());
  }
};

TEST_F(MainDialogTest, OffersOnlyWhatCanBeDone) {
  const auto enabled = [this] {
    std::string names;
    for (const char* name : {"BtnNew", "BtnEdit", "BtnDelete", "BtnFilter", "LstNames", "BtnCopy",
                             "TxtFind", "ChkCopyName"}) {
      if (Widget(name).isEnabled()) names += std::string(name) + ' ';
    }
    return names + "with " + Focus();
  };
  Shared.CopyValues.fill(1);
  const auto choices = Shared.CopyValues;
  Show();
  EXPECT_EQ(enabled(), "BtnNew with BtnNew");
  Click(Main, "BtnNew", Qt::NoModifier, Qt::RightButton);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  Widget("BtnAbout").setFocus();
  Shared.InUse = true;
  Main.SetData();
  EXPECT_EQ(enabled(), "with BtnAbout");
  Add({{LastName, "Varek"}});
  Main.SetData();
  EXPECT_EQ(enabled(), "BtnFilter LstNames BtnCopy TxtFind ChkCopyName with BtnAbout");
  EXPECT_FALSE(Main.Menus().MnuNew->menuAction()->isEnabled() || Main.Menus().MnuEdit->isEnabled());
  Shared.InUse = false;
  FilterLastNames("nobody");
  EXPECT_EQ(enabled(), "BtnNew BtnFilter with BtnFilter");
  EXPECT_TRUE(Main.Menus().MnuNew->menuAction()->isEnabled() && Main.Menus().MnuEdit->isEnabled());
  EXPECT_EQ(Label(0).Caption() + Panel(2) + "|" + Panel(4), "|Filter - ON");
  // There is nothing selected to duplicate.
  EXPECT_FALSE(Main.Menus().MnuNewArray[1]->isEnabled());
  Click(Main, "BtnNew", Qt::ShiftModifier);
  EXPECT_EQ(Started.Started, Texts{"ShowNewDialog"});
  // The choices of what to copy are for later records.
  EXPECT_EQ(Shared.CopyValues, choices);
}

TEST_F(MainDialogTest, ShowsTheRecordAndAClickOnALineCopiesItOrDials) {
  Add({{LastName, "Aster"}});
  Add({{Sal, "Mr."},
       {FirstName, "Brin"},
       {LastName, "Varek"},
       {Title, "Clerk"},
       {Company, "A & B <b>x</b>"},
       {Address1, "1 Main St"},
       {Address4, "Springfield"},
       {Address5, "12345"},
       {Address6, "USA"},
       {Phone1, "1 "},
       {Fax, "3"},
       {EMail, "b@v"},
       {Field::Notes, "One\r\nTwo"}});
  Shared.CurListIndex = 1;
  Show();
  EXPECT_EQ(Panel(2), " 2/ 2");
  const auto copied = [this](int line, Qt::MouseButton button, Qt::KeyboardModifiers held) {
    QGuiApplication::clipboard()->setText(QStringLiteral("nothing"));
    QTest::mouseClick(&Label(line), button, held);
    if (QWidget* menu = QApplication::activePopupWidget()) menu->close();
    return Clipboard();
  };
  const Texts captions{"Mr. Varek",
                       "Clerk",
                       "A & B <b>x</b>",
                       "1 Main St",
                       "",
                       "",
                       "Springfield, 12345",
                       "USA",
                       "1 ",
                       "",
                       "3",
                       "b@v",
                       "One\r\nTwo"};
  for (int line = 0; line < 13; ++line) {
    const std::string& caption = captions.at(static_cast<std::size_t>(line));
    EXPECT_EQ(Label(line).Caption(), caption);
    const bool isAddress = line >= 3 && line <= 7;
    EXPECT_EQ(Label(line).isEnabled(), isAddress || !caption.empty()) << line;
    const std::string text = isAddress         ? "1 Main St\r\r\rSpringfield, 12345\rUSA"
                             : caption.empty() ? "nothing"
                                               : caption;
    EXPECT_EQ(copied(line, Qt::LeftButton, Qt::ShiftModifier), text);
    // A click on the name opens its menu, one on a number dials it.
    const std::string byClick = line == 0 || (line >= 8 && line <= 10) ? "nothing" : text;
    EXPECT_EQ(copied(line, Qt::LeftButton, Qt::NoModifier), byClick) << line;
    EXPECT_EQ(copied(line, Qt::LeftButton, Qt::ShiftModifier | Qt::AltModifier), byClick) << line;
    EXPECT_EQ(copied(line, Qt::RightButton, Qt::NoModifier), byClick) << line;
  }
  EXPECT_EQ(Started.Started, (Texts{"Dial 1 ", "Dial 3"}));
}

TEST(NameLine, ComposesEveryStyle) {
  const FieldArray all{"Mr.", "Brin", "Varek"};
  const std::vector<std::tuple<std::uint8_t, FieldArray, const char*>> styles{
      {0, all, "Mr. Varek"},
      {1, all, "Mr. Brin Varek"},
      {2, all, "Brin Varek"},
      {3, all, "Brin"},
      {200, all, "Mr. Varek"},
      {0, {"", "Brin", "Varek"}, "Varek"},
      {1, {"", "Brin", "Varek"}, "Brin Varek"},
      {1, {"Mr.", "", "Varek"}, "Mr.  Varek"},
      {2, {"Mr.", "Brin", ""}, "Brin "}};
  for (const auto& [style, fields, name] : styles) EXPECT_EQ(ComposeName(style, fields), name);
}

TEST_F(MainDialogTest, CopyBoxesFollowTheRecordAndKeepTheChoices) {
  Add({{LastName, "Aster"}, {Phone1, "1"}, {Address6, "USA"}});
  Add({{LastName, "Bell"}});
  const std::array<double, 8> choices{1, 1, 1, 0, 1, 1, 1, 1};
  Shared.CopyValues = choices;
  Show();
  auto& phone = Control<QCheckBox>(Main, "ChkCopyPhone1");
  auto& address = Control<QCheckBox>(Main, "ChkCopyAddress");
  EXPECT_TRUE(phone.isChecked() && address.isEnabled() && !address.isChecked());
  EXPECT_TRUE(Label(3).isEnabled());  // an empty line of an address that is there
  QTest::keyClick(&List(), Qt::Key_Down);
  EXPECT_FALSE(phone.isChecked() || phone.isEnabled() || Label(8).isEnabled());
  QTest::keyClick(&List(), Qt::Key_Up);
  EXPECT_EQ(Shared.CopyValues, choices);
  // The user's own clicks do change them.
  address.click();
  phone.click();
  EXPECT_EQ(Shared.CopyValues, (std::array<double, 8>{1, 1, 1, 1, 0, 1, 1, 1}));
}

TEST_F(MainDialogTest, TheNameStyleMenuShowsTheNameOtherwise) {
  Add({{Sal, "Mr."}, {FirstName, "Ann & Bob"}, {LastName, "Lee"}});
  Add({{LastName, "Varek"}});
  Show();
  QTest::mouseClick(&Label(0), Qt::LeftButton);
  EXPECT_EQ(QApplication::activePopupWidget(), &Main.Menus().MnuNameStyle);
  auto& items = Main.Menus().MnuNameStyleArray;
  EXPECT_EQ(items[1]->text(), QStringLiteral("Mr. Ann && Bob Lee"));
  items[2]->trigger();
  Main.Menus().MnuNameStyle.close();
  EXPECT_EQ(Label(0).Caption(), "Ann & Bob Lee");
  ClickName(0);  // shows it in the style of the preferences again
  EXPECT_EQ(Label(0).Caption(), "Mr. Lee");
  QTest::keyClick(&List(), Qt::Key_End);
  QTest::mouseClick(&Label(0), Qt::LeftButton);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_FALSE(items.at(i)->isVisible()) << i;
}

TEST_F(MainDialogTest, TheMouseHighlightsLinesAndTellsWhatAClickDoes) {
  Add({{LastName, "Lee"}, {Title, "Clerk"}, {Address1, "x"}, {Phone1, "1"}});
  Show();
  QTest::mouseMove(&Label(1));
  QTest::mouseMove(&Label(4));
  for (int i = 0; i < 13; ++i) EXPECT_EQ(IsHighlighted(i), i >= 3 && i <= 7) << i;
  EXPECT_EQ(Panel(1), "Click to copy the Address to the Clipboard.");
  QTest::mouseMove(&Widget("DetailsFrame"), QPoint(3, 3));
  EXPECT_FALSE(IsHighlighted(4));
  // What is empty or disabled, and what is around the controls, has no hint.
  Widget("BtnNew").setEnabled(false);
  for (QWidget* control : {static_cast<QWidget*>(&Label(2)), &Widget("DetailsPanel"),
                           &Widget("ChkCopyName"), &Widget("BtnNew"), Main.centralWidget()}) {
    QTest::mouseMove(&Widget("BtnEdit"));
    EXPECT_EQ(Panel(1), "Edit details for the selected name.");
    QTest::mouseMove(control, QPoint(1, 1));
    EXPECT_EQ(Panel(1), "") << control->objectName().toStdString();
  }
}

TEST_F(MainDialogTest, TheKeyboardGoesFromLineToLineAndClicks) {
  Add({{LastName, "Lee"}, {Company, "Acme"}, {Phone1, "1"}});
  Show();
  List().setFocus();
  PressKey(Main, Qt::Key_Tab);
  EXPECT_TRUE(IsHighlighted(0));
  PressKey(Main, Qt::Key_Space);
  EXPECT_EQ(QApplication::activePopupWidget(), &Main.Menus().MnuNameStyle);
  Main.Menus().MnuNameStyle.close();
  EXPECT_TRUE(IsHighlighted(0));
  PressKey(Main, Qt::Key_Down);
  PressKey(Main, Qt::Key_Return);
  EXPECT_EQ(Clipboard(), "Acme");
  PressKey(Main, Qt::Key_Down);
  PressKey(Main, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(Clipboard(), "1");
  // A dialog comes and goes.
  Main.EnableMain(false);
  Main.EnableMain(true);
  EXPECT_TRUE(IsHighlighted(8));
  PressKey(Main, Qt::Key_Tab);
  EXPECT_FALSE(IsHighlighted(8));
  EXPECT_EQ(Panel(1), "");
  // The keyboard leaves for what tells why it cannot be dialled.
  PressKey(Main, Qt::Key_Backtab, Qt::ShiftModifier);
  Main.SetPanel(1, QStringLiteral("Dial a number."));
  PressKey(Main, Qt::Key_Tab);
  EXPECT_EQ(Panel(1), "Dial a number.");
}

TEST_F(MainDialogTest, TellsOnceThatRecordsCannotBeRead) {
  for (const char* name : {"Lee", "Moss", "Nash"}) Add({{LastName, name}});
  Show();
  const auto wasTold = [this] {
    auto* box = Main.findChild<QMessageBox*>();
    if (box == nullptr) return false;
    EXPECT_EQ(box->text(), QStringLiteral("Error No.  70 Found, in the MainDialog.SetData\n"
                                          "Please contact the authour."));
    box->close();
    Main.activateWindow();
    EXPECT_TRUE(WaitUntilActive(Main));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return Main.findChild<QMessageBox*>() == nullptr;
  };
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Home}) {
    List().setFocus();
    Disk.FailAt(1, RunTimeError::PermissionDenied, true);
    PressKey(Main, key);
    EXPECT_TRUE(wasTold());
    PressKey(Main, Qt::Key_End);
    Main.SetData();
    EXPECT_FALSE(wasTold());
    Disk.Reset();
    Main.SetData();  // from now on it is new
  }
}

TEST_F(MainDialogTest, TabGoesAsTheControlsStand) {
  Add({{LastName, "Lee"}, {Company, "Acme"}});
  Show();
  List().setFocus();
  std::string names;
  for (int i = 0; i < 17; ++i) {
    PressKey(Main, Qt::Key_Tab);
    names += Focus() + ' ';
  }
  EXPECT_EQ(names,
            "DetailsPanel ChkCopyName ChkCopyCompany BtnCopy BtnNew BtnEdit BtnDelete BtnFilter "
            "BtnDial BtnExchange BtnSetup BtnAbout BtnExit TxtFind BtnFind CboSrchIn LstNames ");
}

TEST_F(MainDialogTest, NamesAndDetailsAreLegible) {
  for (const char* name : {"Lee", "Moss"}) Add({{LastName, name}});
  Show();
  const auto name = [this] { return Contrast(List().viewport()->grab()); };
  const auto detail = [this] { return Contrast(Widget("DetailsPanel").grab(Label(0).geometry())); };
  const double nameBefore = name();
  const double detailBefore = detail();
  Main.EnableMain(false);  // as under a dialog
  EXPECT_GT(name(), nameBefore * 0.8);
  EXPECT_GT(detail(), detailBefore * 0.8);
  Label(0).setEnabled(false);
  EXPECT_LT(detail(), detailBefore / 2);
  Main.SetData();
  const std::array<std::pair<QColor, QColor>, 3> looks{
      {{Qt::white, Qt::black}, {QColor(61, 61, 61), Qt::white}, {Qt::black, Qt::lightGray}}};
  for (const auto& [ground, text] : looks) {
    QPalette palette = Main.palette();
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Text, text);
    Main.setPalette(palette);
    for (const auto& [colour, least] : {std::pair{DetailLabel::Colour::Normal, 4.5},
                                        {DetailLabel::Colour::Highlighted, 4.5},
                                        {DetailLabel::Colour::Found, 3.9}}) {  // red on white
      Label(0).SetTextColour(colour);
      EXPECT_GE(detail(), least) << ground.value();
    }
  }
}

TEST_F(MainDialogTest, TheToolTipTellsALineThatDoesNotFit) {
  const std::string end = "the <b>end</b>";
  Add({{LastName, "Lee"}, {Company, std::string(300, 'x') + end}});
  Show();
  Main.grab();
  const auto tip = [this](int line) {
    QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), Label(line).mapToGlobal(QPoint(1, 1)));
    QApplication::sendEvent(&Label(line), &event);
    return QToolTip::text();
  };
  EXPECT_EQ(tip(0), QString());
  EXPECT_TRUE(tip(2).contains(QString::fromStdString(end).toHtmlEscaped()));
}

TEST_F(MainDialogTest, AMegabyteIsShownAtOnceAndCopiedWhole) {
  const std::string megabyte(1 << 20, 'x');
  Add({{LastName, megabyte}, {Company, megabyte + "\xD7"}, {Field::Notes, megabyte}});
  QElapsedTimer timer;
  timer.start();
  Show();
  const int width = Main.width();
  Main.grab();
  EXPECT_LT(timer.elapsed(), 1000);
  EXPECT_LE(Main.minimumSizeHint().width(), width);
  QTest::mouseClick(&Label(12), Qt::LeftButton);
  EXPECT_EQ(Clipboard(), megabyte);
}

TEST_F(MainDialogTest, WhileItIsDisabledNeitherActivationNorClosingDoAnything) {
  Add({{LastName, "Lee"}});
  Show();
  Widget("ChkCopyName").setFocus();
  Form dialog(QStringLiteral("Dialog"));
  dialog.SetOwner(Main);
  dialog.ShowForm();
  Main.EnableMain(false);
  Main.SetPanel(1, QStringLiteral("New Name"));
  Main.activateWindow();
  EXPECT_TRUE(WaitUntilActive(dialog));
  EXPECT_FALSE(Main.isEnabled() || Main.close());
  EXPECT_EQ(Panel(1), "New Name");
  EXPECT_TRUE(Started.Started.empty());
  dialog.Unload();
  Main.EnableMain(true);
  EXPECT_EQ(Focus(), "ChkCopyName");
  Main.close();
  EXPECT_EQ(Started.Started, (Texts{"ExitApplication"}));
}

TEST_F(MainDialogTest, TypingALetterSelectsTheNextName) {
  for (const char* name : {"Aster", "Bell", "Brin", "Bro", "Cole"}) Add({{LastName, name}});
  Show();
  const auto type = [this](const char* letters) {
    QTest::keyClicks(&List(), QString::fromLatin1(letters));
    return Label(0).Caption();
  };
  EXPECT_EQ(type("b"), "Bell");
  EXPECT_EQ(type("b"), "Brin");
  // In quick succession, then after a pause. What is no word is letter by letter.
  List().SetListIndex(0);
  EXPECT_EQ(type("bro"), "Bro");
  EXPECT_EQ(type("c"), "Cole");
  QTest::keyClick(&List(), Qt::Key_Backspace);
  EXPECT_EQ(type("a"), "Aster");
  QTest::qWait(1100);
  EXPECT_EQ(type("b"), "Bell");
  EXPECT_EQ(type("r"), "Brin");
  // The other button, Ctrl and what is below the names do not take the selection away.
  ClickName(0, Qt::RightButton);
  ClickName(2, Qt::LeftButton, Qt::ControlModifier);
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {},
                    QPoint(5, List().viewport()->height() - 5));
  EXPECT_EQ(Panel(2), " 3/ 5");
  EXPECT_EQ(List().ListIndex(), 2);
}

}  // namespace
}  // namespace quillary::test
