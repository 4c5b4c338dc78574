#include <QDir>

#include "tests/import/import_fixture.h"

namespace quillary::test {
namespace {

class FileToImportTest : public ImportFixture {
 protected:
  FileToImportTest() {
    Home.WriteFile("people.csv", "Ann,Lee\n");
    Home.WriteFile("Notes.TXT", "Bob;Moss\n");
    Home.WriteFile("plain", "x");
    QDir(QString::fromStdString(Home.Path())).mkdir(QStringLiteral("sub"));
    Home.WriteFile("sub/inner.csv", "Cid,North\n");
  }
};

TEST_F(FileToImportTest, OpensAfreshEachTime) {
  Open(1);
  EXPECT_EQ(Panel(1), "File to Import");
  EXPECT_FALSE(Main.isEnabled());
  EXPECT_EQ(Listed("SlctFile"), (Texts{"Notes.TXT", "people.csv", "plain"}));
  EXPECT_EQ(Control<QComboBox>(Dialog, "SlctDrive").currentText(), QStringLiteral("Home"));
  Confirm(QStringLiteral("sub"));
  Click(Dialog, "TxtOtherDelimiter");
  Click(Dialog, "TxtRecordsToImport(1)");
  EXPECT_TRUE(Control<QCheckBox>(Dialog, "Append_Replace").isChecked());
  PressKey(Dialog, Qt::Key_Escape);
  ExpectEnded();

  Open(1);
  Control<QListWidget>(Dialog, "SlctFile").setCurrentRow(1);
  EXPECT_EQ(TypedFile(), QStringLiteral("people.csv"));
  PressKey(Dialog, Qt::Key_Escape);
  Open(0);
  EXPECT_TRUE(Control<QListWidget>(Dialog, "SlctFile").selectedItems().empty());
  EXPECT_EQ(TypedFile(), QStringLiteral("*.*"));
  EXPECT_EQ(Listed("SlctFile").size(), 3U);
  EXPECT_FALSE(Control<QCheckBox>(Dialog, "Append_Replace").isChecked());
  EXPECT_TRUE(Control<QRadioButton>(Dialog, "OptRcrdDelimiter(0)").isChecked());
  EXPECT_TRUE(Control<QRadioButton>(Dialog, "OptRcrdToImport(0)").isChecked());
}

// A text that is not listed goes to a folder, pattern or file; it is never imported.
TEST_F(FileToImportTest, GoesWhereTheTextSays) {
  Open();
  const auto go = [this](const QString& text) {
    Confirm(text);
    ExpectFirstStep();
    return TypedFile().toStdString();
  };
  EXPECT_EQ(go(QStringLiteral("*.txt")), "*.txt");
  EXPECT_EQ(Listed("SlctFile"), Texts{"Notes.TXT"});
  EXPECT_EQ(go(QStringLiteral("*.csv;pl??n")), "*.csv;pl??n");
  EXPECT_EQ(Listed("SlctFile"), (Texts{"people.csv", "plain"}));
  EXPECT_EQ(go(QStringLiteral("sub\\*.*")), "*.*");
  EXPECT_EQ(Listed("SlctFile"), Texts{"inner.csv"});
  EXPECT_EQ(go(QStringLiteral("..")), "*.*");
  EXPECT_TRUE(Control<QLineEdit>(Dialog, "TxtFileToImport").hasSelectedText());
  EXPECT_EQ(Listed("SlctFile").size(), 3U);
  EXPECT_EQ(go(QStringLiteral("SUB")), "*.*");
  EXPECT_EQ(go(QStringLiteral("../Sub")), "*.*");
  EXPECT_EQ(Listed("SlctFile"), Texts{"inner.csv"});
  go(QStringLiteral(".."));
  // In other case, or with a folder before it, a file is found, but not yet meant.
  EXPECT_EQ(go(QStringLiteral("PEOPLE.CSV")), "people.csv");
  EXPECT_EQ(go(QString::fromStdString(Home.File("sub/inner.csv"))), "inner.csv");
  EXPECT_EQ(Listed("SlctFile"), Texts{"inner.csv"});
  const auto folders = Listed("SlctDir");
  EXPECT_EQ(folders.back(), "sub");
  EXPECT_EQ(go(QStringLiteral("nowhere/x")), "nowhere/x");
  EXPECT_EQ(go(QStringLiteral("none.csv")), "none.csv");
  EXPECT_EQ(Listed("SlctDir"), folders);
  // A name that looks like a pattern.
  Home.WriteFile("sub/in?.csv", "x");
  EXPECT_EQ(go(QString::fromStdString(Home.File("sub/in?.csv"))), "in?.csv");
  EXPECT_EQ(Listed("SlctFile").size(), 2U);
  EXPECT_EQ(Shared.NoOfRecords, 0);
}

TEST_F(FileToImportTest, IsUsedWithTheKeyboardAlone) {
  Open();
  const auto next = [this] { PressKey(Dialog, Qt::Key_Tab); };
  const auto at = [this] { return Dialog.focusWidget()->objectName().toStdString(); };
  EXPECT_EQ(at(), "TxtFileToImport");
  for (int i = 0; i < 3; ++i) next();
  ASSERT_EQ(at(), "SlctDir");
  PressKey(Dialog, Qt::Key_Down);
  PressKey(Dialog, Qt::Key_Return);
  EXPECT_EQ(Listed("SlctFile"), Texts{"inner.csv"});
  PressKey(Dialog, Qt::Key_Up);
  PressKey(Dialog, Qt::Key_Return);
  EXPECT_EQ(Listed("SlctFile").size(), 3U);
  // Passing by changes no choice.
  for (const char* name : {"OptRcrdDelimiter(0)", "OptRcrdToImport(0)", "BtnOK", "BtnCancel",
                           "TxtFileToImport", "SlctFile"}) {
    next();
    EXPECT_EQ(at(), name);
  }
  PressKey(Dialog, Qt::Key_Down);
  EXPECT_EQ(TypedFile(), QStringLiteral("people.csv"));
  PressKey(Dialog, Qt::Key_Return);
  ASSERT_NE(Second(), nullptr);
  EXPECT_FALSE(Dialog.isVisible());

  // Or with two clicks.
  Click(*Second(), "BtnBack");
  ASSERT_TRUE(WaitUntilActive(Dialog));
  auto& files = Control<QListWidget>(Dialog, "SlctFile");
  const QPoint place = files.visualItemRect(files.item(1)).center();
  QTest::mouseClick(files.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(files.viewport(), Qt::LeftButton, {}, place);
  EXPECT_NE(Second(), nullptr);
}

TEST_F(FileToImportTest, ChangesTheDrive) {
  const TempFolder stick;
  stick.WriteFile("stick.csv", "Ann,Lee");
  Volumes.push_back({QStringLiteral("Stick"), QString::fromStdString(stick.Path()), true});
  Volumes.push_back({QStringLiteral("Gone"), QStringLiteral("/no/such/volume"), true});
  Open();
  auto& drives = Control<QComboBox>(Dialog, "SlctDrive");
  drives.showPopup();  // what was put in meanwhile is there
  drives.hidePopup();
  drives.setFocus();
  PressKey(Dialog, Qt::Key_Down);
  EXPECT_EQ(drives.currentText(), QStringLiteral("Stick"));
  EXPECT_EQ(Listed("SlctFile"), Texts{"stick.csv"});
  MsgBoxAnswerer boxes;
  PressKey(Dialog, Qt::Key_Down);
  EXPECT_EQ(boxes.TitlesAndTexts(),
            Texts{"Unavailable drive|The selected drive is unavailable.\nPlease try again"});
  EXPECT_EQ(drives.currentText(), QStringLiteral("Stick"));
  EXPECT_EQ(Listed("SlctFile"), Texts{"stick.csv"});
  // A folder shows its drive.
  Confirm(QString::fromStdString(Home.Path()));
  EXPECT_EQ(drives.currentText(), QStringLiteral("Home"));
}

TEST_F(FileToImportTest, AsksForTheRightDelimiter) {
  Home.WriteFile("bars.txt", "a AND b AND c\n");
  Open();
  MsgBoxAnswerer boxes;
  Click(Dialog, "TxtOtherDelimiter");
  EXPECT_TRUE(Control<QRadioButton>(Dialog, "OptRcrdDelimiter(3)").isChecked());
  Confirm(QStringLiteral("bars.txt"));
  QTest::keyClicks(&Control<QLineEdit>(Dialog, "TxtOtherDelimiter"), QStringLiteral(" and "));
  Click(Dialog, "BtnOK");
  ExpectFirstStep();
  EXPECT_EQ(boxes.TitlesAndTexts(),
            (Texts{"Missing Delimiter|You didn't specify the delimiter.\nPlease try again.",
                   "Wrong Delimiter|The delimiter you specified does not exist.\nPlease choose "
                   "another one."}));
  Control<QLineEdit>(Dialog, "TxtOtherDelimiter").setText(QStringLiteral(" AND "));
  QWidget& second = GoOn(QStringLiteral("bars.txt"));
  EXPECT_EQ(Data(second, 1), "b");
  EXPECT_FALSE(Meaning(second, 3).isEnabled());
}

TEST_F(FileToImportTest, TellsThatAFileCannotBeRead) {
  Open();
  TypeFile(QStringLiteral("people.csv"));
  QFile::remove(QString::fromStdString(Home.File("people.csv")));
  const std::string files = DataFiles();
  MsgBoxAnswerer boxes;
  Click(Dialog, "BtnOK");
  EXPECT_EQ(boxes.TitlesAndTexts(),
            Texts{"Quillary|Error No.  53 Found, in the FileToImportDialog.BtnOK_Click\n"
                  "Please contact the authour."});
  ExpectFirstStep();
  EXPECT_EQ(DataFiles(), files);
}

TEST_F(FileToImportTest, TakesOnlyLinesWithOneOfTheTexts) {
  Home.WriteFile("people.csv", "Ann,Lee\nBob,MÜLLER\nCid,North\nDee,lee\n");
  Open();
  MsgBoxAnswerer boxes;
  Pick("OptRcrdToImport(1)");
  Confirm(QStringLiteral("people.csv"));
  EXPECT_EQ(boxes.TitlesAndTexts(),
            Texts{"No records|There is no record to import.\nPlease choose other records."});
  ExpectFirstStep();
  Click(Dialog, "TxtRecordsToImport(0)");
  QTest::keyClicks(&Control<QLineEdit>(Dialog, "TxtRecordsToImport(0)"), QStringLiteral(",LEE"));
  Control<QLineEdit>(Dialog, "TxtRecordsToImport(1)").setText(QStringLiteral("üll"));
  QWidget& second = GoOn(QStringLiteral("people.csv"));
  Texts names{Data(second, 0)};
  while (Control<QWidget>(second, "BtnNext").isEnabled()) {
    Click(second, "BtnNext");
    names.push_back(Data(second, 0));
  }
  EXPECT_EQ(names, (Texts{"Ann", "Bob", "Dee"}));
}

}  // namespace
}  // namespace quillary::test
