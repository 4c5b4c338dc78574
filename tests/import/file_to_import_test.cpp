#include <filesystem>

#include "tests/import/import_fixture.h"

namespace quillary::test {
namespace {

class FileToImportTest : public ImportFixture {
 protected:
  FileToImportTest() {
    Home.WriteFile("people.csv", "Ann,Lee\n");
    Home.WriteFile("Notes.TXT", "Bob;Moss\n");
    Home.WriteFile("plain", "x");
    std::filesystem::create_directory(Home.File("sub"));
    Home.WriteFile("sub/inner.csv", "Cid,North\n");
  }
  QListWidget& Files() { return Control<QListWidget>(Dialog, "SlctFile"); }
};

TEST_F(FileToImportTest, OpensAfreshEachTime) {
  for (const int index : {1, 0, 1}) {
    Open(index);
    EXPECT_EQ(Listed("SlctFile"), (Texts{"Notes.TXT", "people.csv", "plain"}));
    EXPECT_TRUE(Files().selectedItems().empty());
    EXPECT_EQ(TypedFile(), "*.*");
    EXPECT_EQ(Control<QComboBox>(Dialog, "SlctDrive").currentText(), QStringLiteral("Home"));
    EXPECT_EQ(Control<QCheckBox>(Dialog, "Append_Replace").isChecked(), index == 1);
    EXPECT_TRUE(Option("OptRcrdDelimiter(0)").isChecked());
    EXPECT_TRUE(Option("OptRcrdToImport(0)").isChecked());
    Files().setCurrentRow(1);
    EXPECT_EQ(TypedFile(), "people.csv");
    if (index == 1) Confirm("sub");
    Click(Dialog, "TxtOtherDelimiter");
    Click(Dialog, "TxtRecordsToImport(1)");
    EXPECT_TRUE(Option("OptRcrdDelimiter(3)").isChecked());
    PressKey(Dialog, Qt::Key_Escape);
    ExpectEnded();
  }
}

// A text that is not listed goes to a folder, pattern or file; it is never imported.
TEST_F(FileToImportTest, GoesWhereTheTextSays) {
  struct Case {
    std::string Text;
    std::string Typed;  // stands there then
    Texts Files;
  };
  const Texts home{"Notes.TXT", "people.csv", "plain"};
  const Texts sub{"in?.csv", "inner.csv"};
  Home.WriteFile("sub/in?.csv", "x");  // a name that looks like a pattern
  Open();
  for (const Case& c : std::vector<Case>{
           {"*.txt", "*.txt", {"Notes.TXT"}},
           {"*.csv;pl??n", "*.csv;pl??n", {"people.csv", "plain"}},
           {"sub\\*.*", "*.*", sub},
           {"..", "*.*", home},
           {"SUB", "*.*", sub},
           {"../Sub", "*.*", sub},
           {Home.Path(), "*.*", home},
           // In other case, or with a folder before it, a file is found, but not yet meant.
           {"PEOPLE.CSV", "people.csv", home},
           {Home.File("sub/inner.csv"), "inner.csv", sub},
           {"nowhere/x", "nowhere/x", sub},
           {"none.csv", "none.csv", sub},
           {"..", "*.*", home},
           {Home.File("sub/in?.csv"), "in?.csv", sub}}) {
    Confirm(c.Text);
    ExpectFirstStep();
    EXPECT_EQ(TypedFile(), c.Typed) << c.Text;
    EXPECT_EQ(Listed("SlctFile"), c.Files) << c.Text;
    EXPECT_EQ(Listed("SlctDir").back(), "sub");  // where it is or may go
    EXPECT_TRUE(File().hasSelectedText());
  }
}

TEST_F(FileToImportTest, IsUsedWithTheKeyboardAlone) {
  Open();
  std::string stops;
  const auto go = [&](int times) {
    for (int i = 0; i < times; ++i) {
      PressKey(Dialog, Qt::Key_Tab);
      stops += Dialog.focusWidget()->objectName().toStdString() + ' ';
    }
  };
  go(3);
  PressKey(Dialog, Qt::Key_Down);
  PressKey(Dialog, Qt::Key_Return);
  EXPECT_EQ(Listed("SlctFile"), Texts{"inner.csv"});
  PressKey(Dialog, Qt::Key_Up);
  PressKey(Dialog, Qt::Key_Return);
  EXPECT_EQ(Listed("SlctFile").size(), 3U);
  go(6);  // passing by changes no choice
  EXPECT_EQ(stops,
            "SlctFile SlctDrive SlctDir OptRcrdDelimiter(0) OptRcrdToImport(0) BtnOK BtnCancel "
            "TxtFileToImport SlctFile ");
  PressKey(Dialog, Qt::Key_Down);
  EXPECT_EQ(TypedFile(), "people.csv");
  PressKey(Dialog, Qt::Key_Return);
  ASSERT_NE(Second(), nullptr);

  // Or with two clicks.
  Click(*Second(), "BtnBack");
  ASSERT_TRUE(WaitUntilActive(Dialog));
  const QPoint place = Files().visualItemRect(Files().item(1)).center();
  QTest::mouseClick(Files().viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(Files().viewport(), Qt::LeftButton, {}, place);
  EXPECT_NE(Second(), nullptr);
}

TEST_F(FileToImportTest, ChangesTheDrive) {
  const TempFolder stick;
  stick.WriteFile("stick.csv", "Ann,Lee");
  Open();
  Volumes.push_back({QStringLiteral("Stick"), QString::fromStdString(stick.Path()), true});
  Volumes.push_back({QStringLiteral("Gone"), QStringLiteral("/no/such/volume"), true});
  auto& drives = Control<QComboBox>(Dialog, "SlctDrive");
  drives.showPopup();  // what was put in meanwhile is there
  drives.hidePopup();
  drives.setFocus();
  PressKey(Dialog, Qt::Key_Down);
  EXPECT_EQ(Listed("SlctFile"), Texts{"stick.csv"});
  MsgBoxAnswerer boxes;
  PressKey(Dialog, Qt::Key_Down);
  EXPECT_EQ(boxes.TitlesAndTexts(),
            Texts{"Unavailable drive|The selected drive is unavailable.\nPlease try again"});
  EXPECT_EQ(drives.currentText(), QStringLiteral("Stick"));
  EXPECT_EQ(Listed("SlctFile"), Texts{"stick.csv"});
  // A folder shows its drive.
  Confirm(Home.Path());
  EXPECT_EQ(drives.currentText(), QStringLiteral("Home"));
}

TEST_F(FileToImportTest, AsksForTheRightDelimiterAndAFileThatCanBeRead) {
  Home.WriteFile("bars.txt", "a AND b AND c\n");
  Open();
  MsgBoxAnswerer boxes;
  Option("OptRcrdDelimiter(3)").setChecked(true);
  for (const char* delimiter : {"", " and "}) {
    Box("TxtOtherDelimiter").setText(QLatin1String(delimiter));
    Confirm("bars.txt");
    ExpectFirstStep();
  }
  File().setText(QStringLiteral("people.csv"));
  std::filesystem::remove(Home.File("people.csv"));
  Click(Dialog, "BtnOK");
  ExpectFirstStep();
  EXPECT_EQ(boxes.TitlesAndTexts(),
            (Texts{"Missing Delimiter|You didn't specify the delimiter.\nPlease try again.",
                   "Wrong Delimiter|The delimiter you specified does not exist.\nPlease choose "
                   "another one.",
                   "Quillary|Error No.  53 Found, in the FileToImportDialog.BtnOK_Click\n"
                   "Please contact the authour."}));
  Box("TxtOtherDelimiter").setText(QStringLiteral(" AND "));
  EXPECT_EQ(Data(GoOn("bars.txt"), 1), "b");
}

TEST_F(FileToImportTest, TakesOnlyLinesWithOneOfTheTexts) {
  Home.WriteFile("people.csv", "Ann,Lee\nBob,MÜLLER\nCid,North\nDee,lee\n");
  Open();
  MsgBoxAnswerer boxes;
  Option("OptRcrdToImport(1)").setChecked(true);
  Confirm("people.csv");
  EXPECT_EQ(boxes.TitlesAndTexts(),
            Texts{"No records|There is no record to import.\nPlease choose other records."});
  ExpectFirstStep();
  Box("TxtRecordsToImport(0)").setText(QStringLiteral(",LEE"));
  Box("TxtRecordsToImport(1)").setText(QStringLiteral("üll"));
  QWidget& second = GoOn("people.csv");
  std::string names = Data(second, 0);
  while (Control<QWidget>(second, "BtnNext").isEnabled()) {
    Click(second, "BtnNext");
    names += ' ' + Data(second, 0);
  }
  EXPECT_EQ(names, "Ann Bob Dee");
}

}  // namespace
}  // namespace quillary::test
