#include "app/setup/setup_dialog.h"

#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

class SetupDialogTest : public MainFixture {
 protected:
  // A start of the program with these preferences.
  void Start(const std::string& entries) {
    Folder.WriteFile("varek.ini", "[QL32]\r\nVersion=2.0\r\n" + entries);
    LoadPreferences(Profile, Shared);
    Store.ShowRecords();
    Show();
  }
  void Open() {
    Dialog.ShowSetup();
    ASSERT_TRUE(WaitUntilActive(Dialog));
    EXPECT_FALSE(Main.isEnabled());
  }
  void ExpectClosed() { EXPECT_TRUE(!Dialog.isVisible() && Main.isEnabled()); }
  void PressOK() {
    Click(Dialog, "BtnOK");
    ExpectClosed();
  }
  std::string Stored(const char* key) { return Profile.ReadEntry("varek.ini", "QL32", key); }
  std::string File() { return Folder.ReadFile("varek.ini"); }
  // What preferences are in memory.
  std::string Memory() {
    std::string text = std::to_string(Shared.NameStyle) + std::to_string(Shared.ViewMode) +
                       std::to_string(Shared.UsePrefix) + std::to_string(Shared.PrefixSprt);
    for (const PrefixKey& prefix : PrefixKeys) text += "|" + Shared.*prefix.Text;
    for (const double value : Shared.CopyValues) text += value != 0 ? "1" : "0";
    return text;
  }
  // The option buttons that are chosen and the boxes that are checked, in tab order.
  std::string Chosen() {
    std::string names;
    for (const auto* button : Dialog.findChildren<QAbstractButton*>()) {
      if (button->isChecked()) names += button->objectName().toStdString() + " ";
    }
    return names;
  }
  int Index(const char* list) { return Control<QComboBox>(Dialog, list).currentIndex(); }
  // A click beside the middle, which in a wide control is not part of what takes clicks.
  void Choose(const char* name) { ClickOn(Dialog, QString::fromLatin1(name)); }
  // In place of what is in the box, as by pasting: keys are of one script only.
  void Type(const char* name, const std::string& text) {
    auto& box = Control<QLineEdit>(Dialog, name);
    box.selectAll();
    box.insert(QString::fromStdString(text));
  }

  MsgBoxSnglTxt MsgBox{Shared, Main};
  SetupDialog Dialog{Shared, Profile, Store, Main, Started, MsgBox};
};

constexpr const char* kStored =
    "NameField=2\r\nShow=1\r\nUsePrefix=1\r\nPrefixSprt=\" 3\"\r\nPhone1Prefix=\" \tTel \"\r\n"
    "Phone2Prefix=\\\"a\\r\\nb\xFF\\0c\"\r\nFaxPrefix=\"\"q\" \"\r\n"
    "EMailPrefix=\xD7\x93\xD7\x95\xD7\x90\xD7\x9C &amp; <b>\r\nCopyName=\" 1\"\r\n"
    "CopyTitle=\" 0\"\r\nCopyCompany=\" 0\"\r\nCopyAddress=\" 1\"\r\nCopyPhone1=\" 0\"\r\n"
    "CopyPhone2=\" 0\"\r\nCopyFax=\" 1\"\r\nCopyEMail=\" 0\"\r\nCommPort=3\r\nDialSystem=DP\r\n"
    "Tips=0\r\nOther=kept\r\n";

TEST_F(SetupDialogTest, ShowsWhatIsStoredAndKeepsItToTheByte) {
  Start(kStored);
  std::string file = File();
  Open();
  EXPECT_EQ(Chosen(),
            "OptShowCompany ChkCopyName ChkCopyAddress ChkCopyFax ChkUsePrefix OptCommPort(3) "
            "OptPulseDial ");
  EXPECT_EQ(Index("LstNameStyle"), 2);
  EXPECT_EQ(Index("LstPrefixSeparator"), 3);
  EXPECT_EQ(Control<QLineEdit>(Dialog, "TxtPhone1Prefix").text(), QStringLiteral(" \tTel "));
  PressOK();
  EXPECT_EQ(File(), file);
  // Prefixes that are not used are grey but stored.
  for (const bool isUsed : {false, true}) {
    Open();
    Choose("ChkUsePrefix");
    EXPECT_EQ(Control<QWidget>(Dialog, "LstPrefixSeparator").isEnabled(), isUsed);
    for (auto* box : Dialog.findChildren<QLineEdit*>()) EXPECT_EQ(box->isEnabled(), isUsed);
    PressOK();
    file[file.find("UsePrefix=") + 10] = isUsed ? '1' : '0';
    EXPECT_EQ(File(), file);
  }
}

TEST_F(SetupDialogTest, WhatItCannotShowIsKept) {
  Start("NameField=7\r\nShow=-1\r\nPrefixSprt=4\r\nCommPort=9\r\nDialSystem= dt\r\n");
  Open();
  EXPECT_EQ(Chosen(), "OptShowName ChkTips ");
  EXPECT_EQ(Index("LstNameStyle"), -1);
  EXPECT_EQ(Index("LstPrefixSeparator"), -1);
  PressOK();
  EXPECT_EQ(Stored("NameField") + Stored("Show") + Stored("PrefixSprt") + Stored("CommPort") +
                Stored("DialSystem") + Stored("Tips"),
            "70 49dt1");
}

TEST_F(SetupDialogTest, OKStoresEveryChoiceAndTheMainWindowFollows) {
  Add({{Sal, "Mr."}, {FirstName, "Brin"}, {LastName, "Varek"}, {Fax, "7"}});
  Start("");
  EXPECT_EQ(Label(0).Caption(), "Mr. Varek");
  Open();
  Control<QComboBox>(Dialog, "LstNameStyle").setCurrentIndex(3);
  Choose("ChkUsePrefix");
  Control<QComboBox>(Dialog, "LstPrefixSeparator").setCurrentIndex(2);
  const std::string longText(40000, 'x');
  Type("TxtPhone1Prefix", longText);
  Type("TxtPhone2Prefix", "\xD7\x93 \"; ");
  Type("TxtFaxPrefix", "'F'");
  Type("TxtEMailPrefix", "\t=");
  for (const char* box : {"ChkCopyTitle", "ChkCopyPhone1", "ChkCopyFax", "ChkTips"}) Choose(box);
  for (const char* option : {"OptCommPort(1)", "OptCommPort(4)", "OptToneDial"}) Choose(option);
  PressOK();
  EXPECT_EQ(File(),
            "[QL32]\r\nVersion=2.0\r\nShow=0\r\nNameField=3\r\nUsePrefix=1\r\n"
            "PrefixSprt=\" 2\"\r\nPhone1Prefix=" +
                longText +
                "\r\nPhone2Prefix=\"\xD7\x93 \"; \"\r\nFaxPrefix=\"'F'\"\r\n"
                "EMailPrefix=\"\t=\"\r\nCopyName=\" 0\"\r\nCopyTitle=\" 1\"\r\n"
                "CopyCompany=\" 0\"\r\nCopyAddress=\" 0\"\r\nCopyPhone1=\" 1\"\r\n"
                "CopyPhone2=\" 0\"\r\nCopyFax=\" 1\"\r\nCopyEMail=\" 0\"\r\nCommPort=4\r\n"
                "DialSystem=DT\r\nTips=0\r\n");
  const std::string memory = Memory();
  LoadPreferences(Profile, Shared);
  EXPECT_EQ(memory, Memory());
  EXPECT_EQ(Label(0).Caption(), "Brin");
  EXPECT_TRUE(Control<QCheckBox>(Main, "ChkCopyFax").isChecked());
}

TEST_F(SetupDialogTest, ADoubleClickChangesTheOrderAndKeepsTheSelection) {
  Add({{LastName, "Aster"}, {Company, "Zeta"}});
  Add({{LastName, "Moss"}, {Company, "Mill"}});
  Add({{LastName, "Tarn"}, {Company, "Acme"}});
  for (const bool filtered : {false, true}) {
    Start("");
    if (filtered) FilterLastNames("a");
    Select(0);
    Open();
    auto& option = Control<QWidget>(Dialog, "OptShowCompany");
    Choose("OptShowCompany");
    QTest::mouseDClick(&option, Qt::LeftButton, {}, QPoint(10, option.height() / 2));
    ExpectClosed();
    EXPECT_EQ(Stored("Show"), "1");
    EXPECT_EQ(Shared.CurRecordNo, "0");
    EXPECT_EQ(Panel(2), filtered ? " 2/ 2" : " 3/ 3");
    EXPECT_EQ(Panel(3), "Company");
    EXPECT_EQ(ListTexts().back(), "( Zeta )");
  }
}

TEST_F(SetupDialogTest, AnythingButOKDiscards) {
  Start("NameField=1\r\nCommPort=9\r\n");
  const std::string before = File() + Memory();
  const std::function<void()> waysOut[] = {[this] { Click(Dialog, "BtnCancel"); },
                                           [this] { PressKey(Dialog, Qt::Key_Escape); },
                                           [this] { Dialog.close(); }};
  for (const auto& leave : waysOut) {
    Open();
    EXPECT_EQ(Chosen(), "OptShowName ChkTips ");
    Control<QComboBox>(Dialog, "LstNameStyle").setCurrentIndex(3);
    Type("TxtFaxPrefix", "F");
    for (const char* name : {"ChkUsePrefix", "ChkCopyName", "OptShowCompany", "OptCommPort(2)"}) {
      Choose(name);
    }
    leave();
    ExpectClosed();
    EXPECT_EQ(File() + Memory(), before);
  }
}

// At whichever call the disk fails, the entries are stored together or not at all: here it is what
// the user sees, and that only OK leads back to the dialer, which has asked for Setup.
TEST_F(SetupDialogTest, WhatCannotBeStoredChangesNothing) {
  Add({{LastName, "Lee"}});
  Add({{LastName, "Ames"}, {Company, "Zeta"}});
  Start(kStored);
  Shared.MsgBoxAnswer = SetupForDialer;
  Open();
  Dialog.close();
  Open();
  PressOK();
  EXPECT_TRUE(Started.Started.empty());
  Started.On = [this](const std::string&) {
    EXPECT_EQ(Shared.MsgBoxAnswer, 1);
    EXPECT_EQ(Stored("FaxPrefix") + Stored("Show") + Stored("CommPort"), "new04");
    Main.EnableMain(false);
  };
  Shared.MsgBoxAnswer = SetupForDialer;
  Open();
  for (const char* name : {"OptShowName", "ChkCopyName", "OptCommPort(4)"}) Choose(name);
  Type("TxtFaxPrefix", "new");
  const auto lines = ListTexts();
  const std::string before = File() + Memory();
  MsgBoxAnswerer answerer;
  Disk.FailWrites(RunTimeError::DiskFull);
  Click(Dialog, "BtnOK");
  Disk.Reset();
  EXPECT_EQ(
      answerer.TitlesAndTexts(),
      Texts{"Quillary Setup|The preferences could not be saved: the disk is full.\nNothing was "
            "changed. You can try again."});
  EXPECT_EQ(File() + Memory(), before);
  EXPECT_EQ(ListTexts(), lines);
  // The dialog is there for another try, with what was chosen.
  EXPECT_TRUE(Dialog.isVisible() && !Main.isEnabled() && Started.Started.empty());
  Click(Dialog, "BtnOK");
  EXPECT_EQ(Started.Started, Texts{"OpenDialer"});
  EXPECT_FALSE(Main.isEnabled());  // as the dialer left it
}

// Also where nothing is chosen yet; Tab stops once in each group.
TEST_F(SetupDialogTest, TheKeyboardChooses) {
  for (const auto& [stored, key, port] : {std::tuple{"CommPort=3\r\n", Qt::Key_Down, "4"},
                                          {"CommPort=0\r\n", Qt::Key_Up, "1"},
                                          {"CommPort=0\r\n", Qt::Key_Down, "2"}}) {
    Start(stored);
    Open();
    EXPECT_EQ(Dialog.focusWidget()->objectName(), QStringLiteral("OptShowName"));
    PressKey(Dialog, Qt::Key_Down);
    Control<QWidget>(Dialog, "ChkTips").setFocus();
    PressKey(Dialog, Qt::Key_Backtab);
    PressKey(Dialog, Qt::Key_Down);
    PressKey(Dialog, Qt::Key_Backtab);
    PressKey(Dialog, key);
    PressKey(Dialog, Qt::Key_Return);
    ExpectClosed();
    EXPECT_EQ(Stored("Show") + Stored("CommPort") + Stored("DialSystem"),
              "1" + (port + std::string("DP")));
  }
}

}  // namespace
}  // namespace quillary::test
