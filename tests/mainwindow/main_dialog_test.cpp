#include "mainwindow/main_dialog.h"

#include <QCheckBox>
#include <QClipboard>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QSignalSpy>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <cmath>

#include "tests/support/data_set.h"
#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

class MainDialogTest : public MainFixture {
 protected:
  bool IsEnabled(const char* name) { return Widget(name).isEnabled(); }
};

TEST_F(MainDialogTest, WithoutRecordsOnlyANewOneIsOffered) {
  Shared.CopyValues.fill(1);
  Show();
  for (const char* name : {"LstNames", "BtnCopy", "BtnEdit", "BtnDelete", "BtnFilter", "FrmFind",
                           "TxtFind", "CboSrchIn", "DetailsFrame", "ChkCopyName", "Notes"}) {
    EXPECT_FALSE(IsEnabled(name)) << name;
  }
  EXPECT_EQ(Main.focusWidget(), &Widget("BtnNew"));
  EXPECT_EQ(Panel(1) + "|" + Panel(2) + "|" + Panel(3) + "|" + Panel(4), "||Name|Filter - OFF");
  for (int i = 0; i < 13; ++i) {
    EXPECT_EQ(Label(i).Caption(), "");
    EXPECT_FALSE(Label(i).isEnabled());
  }
  Click(Main, "BtnNew", Qt::NoModifier, Qt::RightButton);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  QTest::keyClick(&Widget("BtnNew"), Qt::Key_Return);
  EXPECT_EQ(Started.Started, Texts{"ShowNewDialog"});

  Shared.InUse = true;
  Widget("BtnAbout").setFocus();
  Main.SetData();
  EXPECT_FALSE(IsEnabled("BtnNew"));
  EXPECT_EQ(Main.focusWidget(), &Widget("BtnAbout"));
  // The choices of what to copy are for later records.
  EXPECT_EQ(Shared.CopyValues, (std::array<double, 8>{1, 1, 1, 1, 1, 1, 1, 1}));
}

TEST_F(MainDialogTest, AFilterThatHidesAllLeavesTheFilterButton) {
  Add({{LastName, "Varek"}});
  Show();
  FilterLastNames("nobody");
  EXPECT_TRUE(IsEnabled("BtnFilter"));
  EXPECT_EQ(Main.focusWidget(), &Widget("BtnFilter"));
  EXPECT_FALSE(IsEnabled("LstNames"));
  EXPECT_EQ(Panel(2) + "|" + Panel(4), "|Filter - ON");
  EXPECT_EQ(Label(0).Caption(), "");
  EXPECT_TRUE(Main.Menus().MnuFilterArray[0]->isChecked());
  EXPECT_FALSE(Main.Menus().MnuFilterArray[1]->isChecked());
  // There is nothing selected to duplicate.
  EXPECT_FALSE(Main.Menus().MnuNewArray[1]->isEnabled());
  Click(Main, "BtnNew", Qt::ShiftModifier);
  EXPECT_EQ(Started.Started, Texts{"ShowNewDialog"});
}

TEST_F(MainDialogTest, ShowsTheSelectedRecord) {
  Add({{LastName, "Aster"}});
  Add({{Sal, "Mr."},
       {FirstName, "Brin"},
       {LastName, "Varek"},
       {Title, "Clerk"},
       {Company, "Acme"},
       {Address1, "1 Main St"},
       {Address4, "Springfield"},
       {Address5, "12345"},
       {Address6, "USA"},
       {Phone1, "1"},
       {Phone2, "2"},
       {Fax, "3"},
       {EMail, "b@v"},
       {Field::Notes, "One\r\nTwo"}});
  Shared.CurListIndex = 1;
  Show();
  const Texts expected{"Mr. Varek",          "Clerk", "Acme", "1 Main St", "",  "",
                       "Springfield, 12345", "USA",   "1",    "2",         "3", "b@v",
                       "One\r\nTwo"};
  for (int i = 0; i < 13; ++i) {
    EXPECT_EQ(Label(i).Caption(), expected.at(static_cast<std::size_t>(i))) << i;
    EXPECT_TRUE(Label(i).isEnabled()) << i;
  }
  EXPECT_EQ(Panel(2), " 2/ 2");
  EXPECT_EQ(Shared.CurRecordNo, "1");

  Shared.ViewMode = 1;
  Store.ShowRecords();
  Select(0);  // "( Acme )" stands before the names
  EXPECT_EQ(Label(2).Caption(), "Acme");
  EXPECT_EQ(Panel(3), "Company");
  EXPECT_TRUE(Main.Menus().MnuViewArray[1]->isChecked());
}

TEST(NameLine, ComposesEveryStyle) {
  const FieldArray all{"Mr.", "Brin", "Varek"};
  const std::vector<std::pair<int, const char*>> styles{
      {0, "Mr. Varek"}, {1, "Mr. Brin Varek"}, {2, "Brin Varek"}, {3, "Brin"}, {200, "Mr. Varek"}};
  for (const auto& [style, name] : styles) {
    EXPECT_EQ(ComposeName(static_cast<std::uint8_t>(style), all), name);
  }
  EXPECT_EQ(ComposeName(0, {"", "Brin", "Varek"}), "Varek");
  EXPECT_EQ(ComposeName(1, {"", "Brin", "Varek"}), "Brin Varek");
  EXPECT_EQ(ComposeName(1, {"Mr.", "", "Varek"}), "Mr.  Varek");
  EXPECT_EQ(ComposeName(2, {"Mr.", "Brin", ""}), "Brin ");
}

TEST_F(MainDialogTest, CopyBoxesFollowTheRecordAndKeepTheChoices) {
  Add({{LastName, "Aster"}, {Phone1, "1"}, {Address6, "USA"}});
  Add({{LastName, "Bell"}});
  Shared.CopyValues = {1, 1, 1, 0, 1, 1, 1, 1};
  Show();
  EXPECT_TRUE(Control<QCheckBox>(Main, "ChkCopyPhone1").isChecked());
  EXPECT_TRUE(IsEnabled("ChkCopyAddress"));
  EXPECT_FALSE(Control<QCheckBox>(Main, "ChkCopyAddress").isChecked());
  EXPECT_TRUE(Label(3).isEnabled());  // an empty line of an address that is there

  QTest::keyClick(&Widget("LstNames"), Qt::Key_Down);
  EXPECT_FALSE(Control<QCheckBox>(Main, "ChkCopyPhone1").isChecked());
  EXPECT_FALSE(IsEnabled("ChkCopyPhone1"));
  EXPECT_FALSE(Label(8).isEnabled());
  QTest::keyClick(&Widget("LstNames"), Qt::Key_Up);
  EXPECT_EQ(Shared.CopyValues, (std::array<double, 8>{1, 1, 1, 0, 1, 1, 1, 1}));

  // The user's own clicks do change them.
  Control<QCheckBox>(Main, "ChkCopyAddress").click();
  Control<QCheckBox>(Main, "ChkCopyPhone1").click();
  EXPECT_EQ(Shared.CopyValues, (std::array<double, 8>{1, 1, 1, 1, 0, 1, 1, 1}));
}

TEST_F(MainDialogTest, LinesGoToTheClipboard) {
  Add({{Sal, "Mr."},
       {FirstName, "Brin"},
       {LastName, "Varek"},
       {Company, "A & B <b>x</b>"},
       {Address2, "Second"},
       {Phone1, "555"},
       {Field::Notes, "One\r\nTwo"}});
  Show();
  const auto click = [this](int line, Qt::MouseButton button = Qt::LeftButton,
                            Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    QTest::mouseClick(&Label(line), button, modifiers);
    return Clipboard();
  };
  EXPECT_EQ(click(2), "A & B <b>x</b>");
  EXPECT_EQ(click(2, Qt::RightButton), "A & B <b>x</b>");
  EXPECT_EQ(click(3), "\rSecond\r\r\r");  // an empty line of the address
  EXPECT_EQ(click(7, Qt::RightButton), "\rSecond\r\r\r");
  EXPECT_EQ(click(12), "One\r\nTwo");
  EXPECT_EQ(click(0, Qt::LeftButton, Qt::ShiftModifier), "Mr. Varek");
  EXPECT_EQ(click(8, Qt::LeftButton, Qt::ShiftModifier), "555");
  // What does nothing.
  for (const int line : {0, 8}) {
    EXPECT_EQ(click(line, Qt::RightButton), "before");
    EXPECT_EQ(click(line, Qt::LeftButton, Qt::ShiftModifier | Qt::ControlModifier), "before");
    EXPECT_EQ(click(line, Qt::LeftButton, Qt::ShiftModifier | Qt::AltModifier), "before");
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  }
  EXPECT_EQ(click(11), "before");  // no e-mail address
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
  // A click on the selected name shows it in the style of the preferences again.
  ListBox& list = Control<ListBox>(Main, "LstNames");
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                    list.visualRect(list.model()->index(0, 0)).center());
  EXPECT_EQ(Label(0).Caption(), "Mr. Lee");

  QTest::keyClick(&list, Qt::Key_End);
  QTest::mouseClick(&Label(0), Qt::LeftButton);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_FALSE(items.at(i)->isVisible()) << i;
}

TEST_F(MainDialogTest, TheMouseHighlightsLinesAndTellsWhatAClickDoes) {
  Add({{LastName, "Lee"}, {Title, "Clerk"}, {Address1, "x"}, {Phone1, "1"}});
  Show();
  QTest::mouseMove(&Label(1));
  QTest::mouseMove(&Label(4));
  for (int i = 0; i < 13; ++i) {
    EXPECT_EQ(Label(i).TextColour() == DetailLabel::Colour::Highlighted, i >= 3 && i <= 7) << i;
  }
  EXPECT_EQ(Panel(1), "Click to copy the Address to the Clipboard.");
  Main.SetPanel(1, QStringLiteral("Dial a number."));
  QTest::mouseMove(&Label(8));
  EXPECT_EQ(Panel(1), "Dial a number.");
  EXPECT_EQ(Label(8).TextColour(), DetailLabel::Colour::Highlighted);
  QTest::mouseMove(&Label(0));
  EXPECT_EQ(Panel(1),
            "Click to change the style of this name. Shift+Click to copy to the Clipbaord.");
  QTest::mouseMove(&Widget("DetailsFrame"), QPoint(3, 3));
  EXPECT_EQ(Panel(1), "");
  EXPECT_EQ(Label(0).TextColour(), DetailLabel::Colour::Normal);
  QTest::mouseMove(&Widget("BtnEdit"));
  EXPECT_EQ(Panel(1), "Edit details for the selected name.");
  const auto hintIsGone = [this](QWidget& control) {
    Main.SetPanel(1, QStringLiteral("before"));
    QTest::mouseMove(&control, QPoint(1, 1));
    return Panel(1).empty();
  };
  EXPECT_TRUE(hintIsGone(*Main.centralWidget()));
  EXPECT_TRUE(hintIsGone(Widget("DetailsPanel")));
  EXPECT_TRUE(hintIsGone(Label(2)));  // it is empty
  EXPECT_TRUE(hintIsGone(Widget("ChkCopyName")));
  Widget("BtnEdit").setEnabled(false);
  EXPECT_TRUE(hintIsGone(Widget("BtnEdit")));
}

TEST_F(MainDialogTest, AClickOnANumberDialsIt) {
  Add({{LastName, "Lee"}, {Phone1, "1 "}, {Fax, "3"}});
  Show();
  for (const int line : {8, 9, 10}) {  // there is no second number
    QTest::mouseClick(&Label(line), Qt::LeftButton);
    QTest::mouseClick(&Label(line), Qt::RightButton);
    QTest::mouseClick(&Label(line), Qt::LeftButton, Qt::ShiftModifier);
    QTest::mouseClick(&Label(line), Qt::LeftButton, Qt::ShiftModifier | Qt::ControlModifier);
  }
  EXPECT_EQ(Started.Started, (Texts{"Dial 1 ", "Dial 3"}));
  EXPECT_EQ(Clipboard(), "3");
}

TEST_F(MainDialogTest, TheKeyboardGoesFromLineToLineAndClicks) {
  Add({{LastName, "Lee"}, {Company, "Acme"}, {Phone1, "1"}});
  Show();
  Widget("LstNames").setFocus();
  PressKey(Main, Qt::Key_Tab);
  EXPECT_EQ(Label(0).TextColour(), DetailLabel::Colour::Highlighted);
  PressKey(Main, Qt::Key_Space);
  EXPECT_EQ(QApplication::activePopupWidget(), &Main.Menus().MnuNameStyle);
  Main.Menus().MnuNameStyle.close();
  EXPECT_EQ(Label(0).TextColour(), DetailLabel::Colour::Highlighted);
  PressKey(Main, Qt::Key_Space, Qt::ShiftModifier);
  EXPECT_EQ(Clipboard(), "Lee");
  PressKey(Main, Qt::Key_Down);
  EXPECT_EQ(Panel(1), "Click to copy the Company to the Clipboard.");
  PressKey(Main, Qt::Key_Return);
  EXPECT_EQ(Clipboard(), "Acme");
  PressKey(Main, Qt::Key_Down);
  PressKey(Main, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(Clipboard(), "1");
  // A dialog comes and goes.
  Main.EnableMain(false);
  Main.EnableMain(true);
  EXPECT_EQ(Label(8).TextColour(), DetailLabel::Colour::Highlighted);
  PressKey(Main, Qt::Key_Tab);
  EXPECT_EQ(Label(8).TextColour(), DetailLabel::Colour::Normal);
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
  for (int i = 0; i < 2; ++i) {
    Control<QWidget>(Main, "LstNames").setFocus();
    Disk.FailAt(1, RunTimeError::PermissionDenied, true);
    PressKey(Main, i == 0 ? Qt::Key_Down : Qt::Key_Home);
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
  Control<QWidget>(Main, "LstNames").setFocus();
  QStringList names;
  do {
    PressKey(Main, Qt::Key_Tab);
    names << Main.focusWidget()->objectName();
  } while (names.back() != QStringLiteral("LstNames") && names.size() < 30);
  EXPECT_EQ(names.join(QLatin1Char(' ')).toStdString(),
            "DetailsPanel ChkCopyName ChkCopyCompany BtnCopy BtnNew BtnEdit BtnDelete BtnFilter "
            "BtnDial BtnExchange BtnSetup BtnAbout BtnExit TxtFind BtnFind CboSrchIn LstNames");
}

TEST_F(MainDialogTest, NamesAndDetailsAreLegibleUnderADialog) {
  Add({{LastName, "Lee"}});
  Add({{LastName, "Moss"}});
  Show();
  QWidget& list = *Control<ListBox>(Main, "LstNames").viewport();
  const auto darkest = [](QWidget& control) {
    const QImage image = control.grab().toImage();
    int grey = 255;
    for (int x = 0; x < image.width(); ++x) {
      for (int y = 0; y < image.height(); ++y) grey = std::min(grey, qGray(image.pixel(x, y)));
    }
    return grey;
  };
  const int name = darkest(list);
  const int detail = darkest(Label(0));
  Main.EnableMain(false);
  EXPECT_EQ(darkest(list), name);
  EXPECT_EQ(darkest(Label(0)), detail);
  Label(0).setEnabled(false);
  EXPECT_GT(darkest(Label(0)), detail + 50);
}

TEST_F(MainDialogTest, DetailsAreLegibleOnLightAndDarkGround) {
  // Of the ground and what differs most from it, as for the accessibility of web pages.
  const auto contrast = [this] {
    const auto luminance = [](QRgb rgb) {
      const auto linear = [](int value) { return std::pow(value / 255.0, 2.2); };
      return 0.2126 * linear(qRed(rgb)) + 0.7152 * linear(qGreen(rgb)) +
             0.0722 * linear(qBlue(rgb));
    };
    const QImage image = Widget("DetailsPanel").grab(Label(0).geometry()).toImage();
    const double ground = luminance(image.pixel(image.width() - 1, 0));
    double most = 1;
    for (int x = 0; x < image.width(); ++x) {
      for (int y = 0; y < image.height(); ++y) {
        const double text = luminance(image.pixel(x, y));
        most = std::max(most, (std::max(text, ground) + 0.05) / (std::min(text, ground) + 0.05));
      }
    }
    return most;
  };
  Add({{LastName, "Lee"}});
  Show();
  const std::array<std::pair<QColor, QColor>, 3> looks{
      {{Qt::white, Qt::black}, {QColor(61, 61, 61), Qt::white}, {Qt::black, Qt::lightGray}}};
  for (const auto& [ground, text] : looks) {
    QPalette palette = Main.palette();
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Text, text);
    Main.setPalette(palette);
    EXPECT_GE(contrast(), 4.5) << ground.value();
    Label(0).SetTextColour(DetailLabel::Colour::Highlighted);
    EXPECT_GE(contrast(), 4.5) << ground.value();
    Label(0).SetTextColour(DetailLabel::Colour::Found);
    EXPECT_GE(contrast(), 3.9) << ground.value();  // that of red on white
    Label(0).SetTextColour(DetailLabel::Colour::Normal);
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

TEST_F(MainDialogTest, ReadOnlyWhileAnotherApplicationHoldsTheData) {
  Add({{LastName, "Lee"}});
  Show();
  for (const bool inUse : {true, false}) {
    Shared.InUse = inUse;
    Main.ShowReadOnly();
    for (const char* name : {"BtnNew", "BtnEdit", "BtnDelete"}) EXPECT_EQ(IsEnabled(name), !inUse);
    EXPECT_EQ(Main.Menus().MnuNew->menuAction()->isEnabled(), !inUse);
    EXPECT_EQ(Main.Menus().MnuEdit->isEnabled(), !inUse);
    EXPECT_TRUE(IsEnabled("LstNames") && IsEnabled("ChkCopyName"));
  }
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
  EXPECT_FALSE(Main.isEnabled());
  EXPECT_EQ(Panel(1), "New Name");
  EXPECT_FALSE(Main.close());
  EXPECT_TRUE(Started.Started.empty());

  dialog.Unload();
  Main.EnableMain(true);
  EXPECT_EQ(Main.focusWidget(), &Widget("ChkCopyName"));
  Main.close();
  EXPECT_EQ(Started.Started, (Texts{"ExitApplication"}));
}

TEST_F(MainDialogTest, TypingALetterSelectsTheNextName) {
  for (const char* name : {"Aster", "Bell", "Brin", "Bro", "Cole"}) Add({{LastName, name}});
  Show();
  ListBox& list = Control<ListBox>(Main, "LstNames");
  list.setFocus();
  QTest::keyClick(&list, 'b');
  EXPECT_EQ(Label(0).Caption(), "Bell");
  QTest::keyClick(&list, 'b');
  EXPECT_EQ(Label(0).Caption(), "Brin");
  // In quick succession, then after a pause.
  list.SetListIndex(0);
  QTest::keyClicks(&list, QStringLiteral("bro"));
  EXPECT_EQ(Label(0).Caption(), "Bro");
  // What is no word is letter by letter.
  QTest::keyClick(&list, 'c');
  EXPECT_EQ(Label(0).Caption(), "Cole");
  QTest::keyClick(&list, Qt::Key_Backspace);
  QTest::keyClick(&list, 'a');
  EXPECT_EQ(Label(0).Caption(), "Aster");
  QTest::qWait(1100);
  QTest::keyClick(&list, 'b');
  EXPECT_EQ(Label(0).Caption(), "Bell");
  QTest::keyClick(&list, 'r');
  EXPECT_EQ(Label(0).Caption(), "Brin");
  // The other button and Ctrl do not take the selection away.
  QTest::mouseClick(list.viewport(), Qt::RightButton, {},
                    list.visualRect(list.model()->index(0, 0)).center());
  QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier,
                    list.visualRect(list.model()->index(2, 0)).center());
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, QPoint(5, list.viewport()->height() - 5));
  EXPECT_EQ(list.ListIndex(), 2);
  EXPECT_EQ(Panel(2), " 3/ 5");
}

}  // namespace
}  // namespace quillary::test
