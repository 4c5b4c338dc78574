#include <QDir>

#include "tests/import/import_fixture.h"

namespace quillary::test {
namespace {

constexpr const char* Notice =
    "Import notice|This routine can take a long time in case you use a slow machine, or importing "
    "a lot of data.";

class RecordsToImportTest : public ImportFixture {
 protected:
  std::string Lines(int count, const char* line = "Ann,Lee") {
    std::string lines;
    for (int i = 0; i < count; ++i) lines += std::string(line) + std::to_string(i) + "\n";
    return lines;
  }
  // Opens the second step for a file with these bytes.
  QWidget& GoOnWith(const std::string& bytes, int index = 0) {
    Home.WriteFile("people.csv", bytes);
    Open(index);
    return GoOn(QStringLiteral("people.csv"));
  }
  bool IsEnabled(QWidget& second, const char* name) {
    return Control<QWidget>(second, name).isEnabled();
  }
};

TEST_F(RecordsToImportTest, ShowsTheFirstRecordsOneByOne) {
  QWidget& second = GoOnWith(Lines(25, "Ann,<b>Lee</b>,"));
  EXPECT_EQ(Panel(1), "Records to Import");
  EXPECT_FALSE(Main.isEnabled());
  EXPECT_EQ(second.focusWidget(), &Meaning(second, 0));
  EXPECT_EQ(Meaning(second, 2).currentIndex(), -1);
  EXPECT_EQ(Meaning(second, 2).count(), 19);
  EXPECT_EQ(Meaning(second, 3).currentText(), QStringLiteral("Not Available"));
  EXPECT_FALSE(Meaning(second, 3).isEnabled() || Meaning(second, 19).isEnabled());
  EXPECT_EQ(Data(second, 0) + Data(second, 1) + Data(second, 2), "Ann<b>Lee</b>0");
  EXPECT_FALSE(IsEnabled(second, "BtnPrev"));
  int shown = 1;
  for (; IsEnabled(second, "BtnNext"); ++shown) PressKey(second, Qt::Key_Return);
  EXPECT_EQ(shown, 20);
  EXPECT_EQ(Data(second, 2), "19");
  EXPECT_EQ(second.focusWidget()->objectName(), QStringLiteral("BtnPrev"));
  PressKey(second, Qt::Key_Return);
  EXPECT_EQ(Data(second, 2), "18");
  while (IsEnabled(second, "BtnPrev")) Click(second, "BtnPrev");
  EXPECT_EQ(Data(second, 2), "0");
  EXPECT_EQ(second.focusWidget()->objectName(), QStringLiteral("BtnNext"));
  Click(second, "BtnCancel");

  QWidget& other = GoOnWith(std::string(25, ',') + std::string(1'000'000, 'x'));
  EXPECT_FALSE(IsEnabled(other, "BtnPrev") || IsEnabled(other, "BtnNext"));
  EXPECT_TRUE(Meaning(other, 19).isEnabled());
  other.close();
  ExpectEnded();
}

TEST_F(RecordsToImportTest, AppendsAndReplacesTheRecords) {
  Add({{LastName, "Moss"}});
  Add({{LastName, "Aster"}});
  FilterLastNames("Moss");
  const std::string before = Folder.ReadFile("quill0.dat");
  QWidget& second = GoOnWith("Lee Ann,Acme,1\nNorth,,2\n,,3\n");
  Choose(second, {LastThenFirstName, 6});
  MsgBoxAnswerer boxes;
  Click(second, "BtnOK");
  ExpectEnded();
  EXPECT_EQ(boxes.TitlesAndTexts(), Texts{Notice});
  EXPECT_EQ(ListTexts(), (Texts{"Aster", "Lee, Ann", "Moss", "North", "NULL NAME"}));
  EXPECT_EQ(Panel(2), " 1/ 5");
  EXPECT_EQ(Panel(4), "Filter - OFF");
  EXPECT_EQ(Label(0).Caption(), "Aster");
  EXPECT_EQ(Store.ReadRecordEntry("2", "Company") + Store.ReadRecordEntry("2", "Address1"), "Acme");
  EXPECT_TRUE(CheckFiles(Folder.Path()));
  EXPECT_EQ(Folder.ReadFile("QUILL0.OLD"), before);
  EXPECT_FALSE(Folder.ReadFile("QUILL.OLD").empty());

  QWidget& replacing = GoOnWith("Ann,Lee\n", 1);
  Choose(replacing, {1, 2});
  Click(replacing, "BtnOK");
  ExpectEnded();
  EXPECT_EQ(ListTexts(), Texts{"Lee, Ann"});
  EXPECT_EQ(Store.ReadRecordEntry("0", "LastName"), "Moss");
}

TEST_F(RecordsToImportTest, GoesBackAndEndsWithoutATrace) {
  Add({{LastName, "Moss"}});
  const std::string files = DataFiles();
  QWidget& second = GoOnWith("Ann;Lee,x\n");
  EXPECT_EQ(Data(second, 0), "Ann;Lee");
  Click(second, "BtnBack");
  ExpectFirstStep();
  ASSERT_TRUE(WaitUntilActive(Dialog));
  EXPECT_EQ(Panel(1), "File to Import");
  EXPECT_EQ(TypedFile(), QStringLiteral("people.csv"));
  Pick("OptRcrdDelimiter(3)");
  Control<QLineEdit>(Dialog, "TxtOtherDelimiter").setText(QStringLiteral(";"));
  QWidget& again = GoOn(QStringLiteral("people.csv"));
  EXPECT_EQ(Data(again, 0), "Ann");
  PressKey(again, Qt::Key_Escape);
  ExpectEnded();

  QWidget& third = GoOnWith("Ann,Lee\n", 1);
  const MsgBoxAnswerer boxes({QStringLiteral("Import notice")});
  Click(third, "BtnOK");
  ExpectEnded();
  EXPECT_EQ(DataFiles(), files);
  EXPECT_EQ(Folder.ReadFile("QUILL.OLD"), "");
  EXPECT_EQ(ListTexts(), Texts{"Moss"});
}

// What other programs write, as they write it.
TEST_F(RecordsToImportTest, ReadsTheFilesOfOtherPrograms) {
  struct Case {
    const char* File;
    int Delimiter;
    Texts Names;
    std::string Company;  // of Ann
  };
  const std::vector<Case> cases{
      {"utf8.csv", 0, {"Ångström, Éva", "Müller, Ann", "王, Li"}, "Acme"},
      {"utf8_mark_quotes.csv", 1, {"Ångström, Éva", "Müller, Ann"}, "Acme"},
      {"utf16_tab.txt", 2, {"Ångström, Éva", "Müller, Ann"}, "Acme"},
      {"utf16_big_endian.txt", 0, {"Ångström, Éva", "Müller, Ann"}, ""},
      {"code_page_1252.txt", 3, {"Ångström, Éva", "Müller, Ann", "NULL NAME"}, "“Acme” – 5 €"},
      {"three_ends.csv", 0, {"Lee, Ann", "Moss, Bob", "North, Cid", "NULL NAME", "Olsen, Dee"}, ""},
  };
  MsgBoxAnswerer boxes;
  for (const Case& example : cases) {
    Open(1);
    Confirm(QStringLiteral(IMPORT_TEST_DATA));
    const std::string option = "OptRcrdDelimiter(" + std::to_string(example.Delimiter) + ")";
    Pick(option.c_str());
    Control<QLineEdit>(Dialog, "TxtOtherDelimiter").setText(QStringLiteral(";"));
    QWidget& second = GoOn(QString::fromLatin1(example.File));
    Choose(second, {1, 2});
    if (Meaning(second, 2).isEnabled()) Meaning(second, 2).setCurrentIndex(6);
    Click(second, "BtnOK");
    ExpectEnded();
    EXPECT_EQ(ListTexts(), example.Names) << example.File;
    for (std::size_t i = 0; i < Shared.NamesRecNo.size(); ++i) {
      if (!Shared.NamesList[i].ends_with("Ann")) continue;
      EXPECT_EQ(Store.ReadRecordEntry(Shared.NamesRecNo[i], "Company"), example.Company);
    }
  }
}

TEST_F(RecordsToImportTest, StopsAtEightThousand) {
  const std::string question =
      "Too many records|Quillary can have up to 8000 records.\n"
      "Should I import up to 8000 records?";
  FieldArray one;
  one[LastName] = "Old";
  ASSERT_EQ(Store.ImportRecords(
                7990, [&](std::size_t) { return one; }, false),
            RunTimeError::None);
  Home.WriteFile("people.csv", Lines(20));
  Open();
  TypeFile(QStringLiteral("people.csv"));
  {
    MsgBoxAnswerer boxes({QStringLiteral("Too many records")});
    Click(Dialog, "BtnOK");
    EXPECT_EQ(boxes.TitlesAndTexts(), Texts{question});
    ExpectFirstStep();
  }
  MsgBoxAnswerer boxes;
  QWidget& second = GoOn(QStringLiteral("people.csv"));
  Choose(second, {1, 2});
  Click(second, "BtnOK");
  EXPECT_EQ(boxes.TitlesAndTexts(), (Texts{question, Notice}));
  EXPECT_EQ(Shared.NoOfRecords, 8000);
  EXPECT_EQ(ListTexts().at(9), "Lee9, Ann");
  EXPECT_TRUE(CheckFiles(Folder.Path()));

  boxes.Seen.clear();
  QWidget& third = GoOnWith(Lines(9000), 1);
  Choose(third, {1, 2});
  Click(third, "BtnOK");
  EXPECT_EQ(boxes.TitlesAndTexts(), (Texts{question, Notice}));
  EXPECT_EQ(Shared.NoOfRecords, 8000);
}

// Data that hold more already can take what an import can hold, as long as there is a place.
TEST_F(RecordsToImportTest, TellsHowManyTheFullDataCanTake) {
  const auto goOn = [this](int stored, int lines) {
    Shared.NoOfRecords = static_cast<std::int16_t>(stored);
    Home.WriteFile("people.csv", Lines(lines));
    MsgBoxAnswerer boxes({QStringLiteral("Too many records")});
    Open();
    Confirm(QStringLiteral("people.csv"));
    const bool isAsked = !boxes.Seen.empty();
    if (isAsked) ExpectFirstStep();
    QWidget* second = Second();
    Click(second != nullptr ? *second : Dialog, "BtnCancel");
    ExpectEnded();
    Shared.NoOfRecords = 0;
    return isAsked ? boxes.TitlesAndTexts().front() : std::string();
  };
  EXPECT_EQ(goOn(8000, 20), "");
  EXPECT_EQ(goOn(8500, 8001), "");
  EXPECT_EQ(goOn(8500, 8002),
            "Too many records|Only 8001 of the records can be imported.\n"
            "Should I import the first 8001 records?");
  EXPECT_EQ(goOn(32760, 7), "");
  EXPECT_EQ(goOn(32760, 8),
            "Too many records|Only 7 of the records can be imported.\n"
            "Should I import the first 7 records?");
  EXPECT_EQ(goOn(32767, 1), "Too many records|The data file is full: it holds 32767 names.");
}

// Whichever call to the disk fails: all records are there, or none, and the user can try again.
TEST_F(RecordsToImportTest, AFailingDiskChangesNothing) {
  Add({{LastName, "Moss"}});
  const std::string header = Folder.ReadFile("quill.dat");
  const std::string records = Folder.ReadFile("quill0.dat");
  QWidget* second = nullptr;
  Texts told;
  bool reached = true;
  for (int call = 1; reached; ++call) {
    if (second == nullptr) {
      Folder.WriteFile("quill.dat", header);
      Folder.WriteFile("quill0.dat", records);
      Shared.NoOfRecords = 1;
      Store.GetNamesList();
      Store.ShowRecords();
      second = &GoOnWith("Ann,Lee\n");
      Choose(*second, {1, 2});
    }
    MsgBoxAnswerer boxes;
    Disk.FailAt(call, RunTimeError::DiskFull, false);
    Click(*second, "BtnOK");
    reached = Disk.WasReached();
    Disk.Reset();
    second = Second();
    if (second == nullptr) {
      // The fault may have hit the reading of the new record, which SetData tells.
      if (auto* box = Main.findChild<QMessageBox*>()) box->close();
      ExpectEnded();
      EXPECT_EQ(Shared.NoOfRecords, 2);
      EXPECT_TRUE(CheckFiles(Folder.Path())) << call;
      continue;
    }
    ASSERT_EQ(boxes.Seen.size(), 2U);
    told.push_back(boxes.TitlesAndTexts()[1]);
    EXPECT_EQ(Folder.ReadFile("quill.dat"), header) << call;
    EXPECT_EQ(Folder.ReadFile("quill0.dat"), records) << call;
    EXPECT_EQ(ListTexts(), Texts{"Moss"});
    EXPECT_FALSE(Main.isEnabled() || Wait.isVisible() || ProgressWindow.isVisible());
    EXPECT_TRUE(Guard.InUseTimer.isActive());
    EXPECT_EQ(Meaning(*second, 1).currentIndex(), 2);
  }
  for (const char* what : {"The safety copy failed", "The import failed"}) {
    const std::string box = std::string("Records Not Imported|") + what +
                            ": the disk is full.\nNothing was changed. You can try again.";
    EXPECT_NE(std::find(told.begin(), told.end(), box), told.end()) << what;
  }
  EXPECT_GT(told.size(), 10U);
}

TEST_F(RecordsToImportTest, WaitsForAnotherApplication) {
  QWidget& second = GoOnWith("Ann,Lee\n");
  ASSERT_EQ(Store.WriteHeaderEntry("NoOfUses", "2"), RunTimeError::None);
  const std::string files = DataFiles();
  MsgBoxAnswerer boxes;
  Click(second, "BtnOK");
  EXPECT_EQ(boxes.TitlesAndTexts().at(1),
            "Records Not Imported|Another application is using the data file now.\n"
            "Nothing was changed. You can try again.");
  EXPECT_TRUE(second.isVisible());
  EXPECT_EQ(DataFiles(), files);
  EXPECT_EQ(Folder.ReadFile("QUILL.OLD"), "");
}

}  // namespace
}  // namespace quillary::test
