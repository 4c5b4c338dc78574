#include "dialer/dial_dialog.h"

#include <ctime>

#include "tests/support_qt/main_fixture.h"
#include "tests/support_qt/modem.h"

namespace quillary::test {
namespace {

// The dialer over the real main window and a port of its own.
class DialDialogTest : public MainFixture {
 protected:
  DialDialogTest() {
    Add({{LastName, "Lee"}, {Phone1, "555-1111"}, {Fax, "555-3333"}});
    Store.ShowRecords();
    Prefer("CommPort=2\r\nDialSystem=DT\r\n");
    Show();
  }
  void Prefer(const std::string& entries) {
    Folder.WriteFile("varek.ini", "[Ports]\r\nCOM2=" + Line.Device +
                                      "\r\nCOM3=/dev/null\r\n[QL32]\r\n" + entries);
  }
  void Open() {
    Dialog.OpenDialer();
    ASSERT_TRUE(WaitUntilActive(Dialog));
    EXPECT_FALSE(Main.isEnabled());
  }
  void Dial(const std::string& number, const std::string& command) {
    Line.Heard.clear();
    Dialog.Dial(number);
    EXPECT_TRUE(Line.Hears(command + "\r")) << command;
  }
  QLineEdit& Number() { return Control<QLineEdit>(Dialog, "TxtDialNumber"); }
  QListWidget& List() { return Control<QListWidget>(Dialog, "LstDialList"); }
  bool CanDial() { return Control<QPushButton>(Dialog, "BtnDial").isEnabled(); }
  std::string Default() { return Dialog.DefaultButton()->objectName().toStdString(); }
  // Lets events run until something is told, and what is done about it.
  void WaitFor(const MsgBoxAnswerer& user) {
    ASSERT_TRUE(QTest::qWaitFor([&] { return !user.Seen.empty() && SingleText.isHidden(); }));
    QTest::qWait(20);
  }
  // The items, and what stands above the number.
  std::string Offered() {
    std::string texts;
    for (int i = 0; i < List().count(); ++i) texts += List().item(i)->text().toStdString() + "|";
    EXPECT_EQ(List().isVisible(), !texts.empty());
    return texts + Control<QLabel>(Dialog, "Label1").text().toStdString();
  }
  // Nothing is left of the dialog.
  void ExpectClosed() {
    EXPECT_TRUE(!Dialog.isVisible() && Main.isEnabled());
    EXPECT_EQ(Panel(1), "");
    EXPECT_TRUE(!Dialog.DialTimer.isActive() && Line.IsReleased());
  }
  void ExpectIdle() {
    EXPECT_TRUE(Dialog.isVisible() && !Main.isEnabled() && CanDial());
    EXPECT_EQ(Panel(1), "Dial a number.");
    EXPECT_TRUE(!Dialog.DialTimer.isActive() && Line.IsReleased());
  }

  Modem Line;
  DialDialog Dialog{Shared, Profile, Main, Started, SingleText};
};

TEST_F(DialDialogTest, OffersSetupWhereTheSettingsAreWrong) {
  const std::vector<std::tuple<const char*, PortCheck, std::string, std::string>> cases{
      {"", PortCheck::WrongDialingSystem, "0", "Wrong Dialing System"},
      {"DialSystem=DX\r\nCommPort=7", PortCheck::WrongDialingSystem, "7DX", "Wrong Dialing System"},
      {"DialSystem=DP\r\nCommPort=5", PortCheck::WrongPort, "5DP", "Wrong COM Port"},
      {"DialSystem=\" dt \"\r\nCommPort=\"2 \"", PortCheck::Valid, "2DT", ""},
      {"DialSystem=DT\r\nCommPort=256", PortCheck::Valid, "2DT", ""},
      {"DialSystem=DT\r\nCommPort=-1", PortCheck::Valid, "2DT", ""},
      {"DialSystem=DT\r\nCommPort=3", PortCheck::CannotOpen, "3DT", "Can't open COM port"}};
  for (const auto& [entries, found, globals, title] : cases) {
    Prefer(entries);
    EXPECT_EQ(Dialog.CheckPortSettings(), found) << entries;
    EXPECT_EQ(std::to_string(Shared.CommPort) + Shared.DialSystem, globals);
    if (found == PortCheck::Valid) continue;
    WhileShown(SingleText, [&, expected = title] {
      EXPECT_EQ(SingleText.windowTitle().toStdString(), expected);
      PressKey(SingleText, Qt::Key_Escape);
    });
    Dialog.Dial("1");
    EXPECT_EQ(Shared.MsgBoxAnswer, 1);
    EXPECT_TRUE(Started.Started.empty() && Main.isEnabled());
  }
  EXPECT_TRUE(Line.IsReleased());
  MsgBoxAnswerer ok;
  Dialog.OpenDialer();
  EXPECT_EQ(ok.Seen[0].second,
            QStringLiteral("Can't open the selected COM port.\nClick OK to run Setup, and set the "
                           "COM port, and the Dialing System."));
  EXPECT_EQ(Shared.MsgBoxAnswer, SetupForDialer);
  EXPECT_EQ(Started.Started, Texts{"ShowSetup"});
  EXPECT_FALSE(Dialog.isVisible());
}

TEST_F(DialDialogTest, OffersTheNumbersOfTheSelectedRecord) {
  Open();
  EXPECT_EQ(Offered(),
            "Phone1:\t555-1111|Fax:\t555-3333|Type a number to dial, or select from the list.");
  EXPECT_GE(List().viewport()->height(), 3 * List().sizeHintForRow(0));
  PressKey(Dialog, Qt::Key_Tab);
  // Where the keyboard is can be seen, but nothing is chosen yet.
  EXPECT_EQ(List().currentRow(), 0);
  EXPECT_FALSE(CanDial());
  for (const char* number : {"555-1111", "555-3333"}) {
    PressKey(Dialog, Qt::Key_Down);
    EXPECT_EQ(Number().text(), QLatin1String(number));
  }
  for (int i = 0; i < 3; ++i) PressKey(Dialog, Qt::Key_Tab);
  EXPECT_EQ(Dialog.focusWidget(), &Number());
  Number().clear();
  EXPECT_FALSE(CanDial());
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {},
                    List().visualItemRect(List().item(1)).center());
  EXPECT_EQ(Number().text() + u' ' + QString::fromStdString(Default()),
            QStringLiteral("555-3333 BtnDial"));
  PressKey(Dialog, Qt::Key_Escape);
  ExpectClosed();
  EXPECT_TRUE(Line.Heard.empty());

  Shared.FieldValues[Phone1] = " ";
  Shared.FieldValues[Fax].clear();
  Open();
  EXPECT_EQ(Offered(), "Phone1:\t |Type a number to dial, or select from the list.");
  EXPECT_EQ(Number().text(), QString());
  Dialog.close();
  Shared.FilterOn = true;  // and hides everyone
  Open();
  EXPECT_EQ(Offered(), "Type a number to dial.");
}

TEST_F(DialDialogTest, SendsTheNumberThatIsShown) {
  for (const auto& [field, sent] : std::initializer_list<std::pair<std::string, std::string>>{
           {" 9,W555-1234 ", "9,W555-1234"},
           {"555\t12\xC2\xA0\x33\x1B\xE2\x80\x8B\xC3\xA9", "555 12 3"},
           {"5551;&F0", "5551"},
           {"5551\r\nATZ", "5551"},
           {"+\xD9\xA4\xD9\xA2\xE2\x80\x93\x37", "+42-7"}}) {
    Dial(field, "ATDT" + sent);
    EXPECT_EQ(Number().text().trimmed().toStdString(), sent);
    EXPECT_EQ(Panel(1), "Please wait while dialing to " + sent);
    PressKey(Dialog, Qt::Key_Return);  // what stops the call is at hand
    ExpectIdle();
    EXPECT_EQ(Default(), "BtnCancel");
    Dialog.close();
  }
  Prefer("CommPort=2\r\nDialSystem=DP\r\n");
  Open();
  Number().insert(QStringLiteral("555;\r\n1\x07\n2"));  // as pasting does
  EXPECT_EQ(Number().text(), QStringLiteral("555  1 2"));
  Click(Dialog, "BtnDial");
  EXPECT_TRUE(Line.Hears("ATDP555  1 2\r"));
  // Only one at a time, whatever is chosen meanwhile.
  List().setCurrentRow(0);
  EXPECT_TRUE(!CanDial() && Default() == "BtnCancel");
  PressKey(Dialog, Qt::Key_Escape);
  ExpectIdle();
  EXPECT_EQ(Default(), "BtnDial");
}

TEST_F(DialDialogTest, TellsWhatTheModemAnswers) {
  struct Case {
    Texts Replies;
    const char* Told;
    const char* Status;
  };
  for (const Case& c : {Case{{"\r\nRINGING\r\nno dia", "ltone\r\n"},
                             "No Dial Tone|There is no Dial Tone,\n\nPlease check the line, and "
                             "try again.",
                             "There is no Dial Tone, Please check the line, and try again."},
                        Case{{"OK\r\nNO CARRIER\r\nBU", "SY"},
                             "BUSY|The line is BUSY.\nTry calling again later.",
                             "The line is BUSY. Try calling again later."}}) {
    MsgBoxAnswerer answerer;
    answerer.Before = [&] {
      EXPECT_EQ(Panel(1), c.Status);
      Line.Say("\r\nBUSY\r\n");  // nobody waits for it any more
    };
    Dial("5551234", "ATDT5551234");
    for (const std::string& reply : c.Replies) {
      Line.Say(reply);
      QTest::qWait(20);
    }
    WaitFor(answerer);
    EXPECT_TRUE(Line.Hears("ATH\r"));
    ExpectIdle();
    EXPECT_EQ(answerer.TitlesAndTexts(), Texts{c.Told});
    Dialog.close();
  }
}

TEST_F(DialDialogTest, ASilentModemLeadsToThePromptAndCostsNothing) {
  for (const bool vanishes : {false, true}) {
    Dialog.DialTimer.setInterval(700);
    Dial("1", "ATDT1");
    Line.Listening.stop();
    if (vanishes) Line.Vanish();
    QTest::qWait(100);  // until all is painted
    const std::clock_t before = std::clock();
    QTest::qWait(500);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 100);
    if (!vanishes) Line.Listening.start();
    MsgBoxAnswerer answerer;
    WaitFor(answerer);
    EXPECT_EQ(answerer.TitlesAndTexts(),
              Texts{"Pick up the Phone|Please pick up the Phone,\nand either press Enter or click "
                    "OK."});
    EXPECT_TRUE(Main.isEnabled() && !Dialog.isVisible());
    EXPECT_TRUE(vanishes || Line.IsReleased());
    EXPECT_EQ(Line.Heard, Texts{"ATDT1\r"});  // the call is not hung up
  }
}

TEST_F(DialDialogTest, EveryEndWhileItDialsHangsUp) {
  Dial("1", "ATDT1");
  Click(Dialog, "BtnCancel");
  EXPECT_TRUE(Line.Hears("ATH\r"));
  ExpectIdle();
  Click(Dialog, "BtnCancel");
  ExpectClosed();
  Dial("1", "ATDT1");
  Dialog.close();
  EXPECT_TRUE(Line.Hears("ATH\r"));
  ExpectClosed();
  // With the prompt, or what the modem said, still on the screen.
  for (const char* reply : {"", "BUSY"}) {
    MsgBoxAnswerer answerer;
    answerer.Before = [&] {
      Dialog.close();
      EXPECT_TRUE(Line.Hears("ATH\r"));
    };
    Dialog.DialTimer.setInterval(*reply == '\0' ? 50 : 10000);
    Dial("1", "ATDT1");
    Line.Say(reply);
    WaitFor(answerer);
    ExpectClosed();
  }
}

}  // namespace
}  // namespace quillary::test
