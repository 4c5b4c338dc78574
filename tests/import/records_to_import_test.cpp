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
    return GoOn("people.csv");
  }
  static bool IsEnabled(QWidget& second, const char* name) {
    return Control<QWidget>(second, name).isEnabled();
  }
};

TEST_F(RecordsToImportTest, ShowsTheFirstRecordsOneByOne) {
  QWidget& second = GoOnWith(Lines(25, "Ann,<b>Lee</b>,"));
  EXPECT_EQ(second.focusWidget(), &Meaning(second, 0));
  EXPECT_EQ(Meaning(second, 2).currentIndex(), -1);
  EXPECT_EQ(Meaning(second, 3).currentText(), QStringLiteral("Not Available"));
  EXPECT_FALSE(Meaning(second, 3).isEnabled() || IsEnabled(second, "BtnPrev"));
  EXPECT_EQ(Data(second, 0) + Data(second, 1), "Ann<b>Lee</b>");
  int shown = 1;
  for (; IsEnabled(second, "BtnNext"); ++shown) PressKey(second, Qt::Key_Return);
  EXPECT_EQ(shown, 20);
  EXPECT_EQ(Data(second, 2), "19");
  PressKey(second, Qt::Key_Return);  // the other button has the keyboard now
  EXPECT_EQ(Data(second, 2), "18");
  while (IsEnabled(second, "BtnPrev")) Click(second, "BtnPrev");
  EXPECT_EQ(Data(second, 2), "0");
  EXPECT_EQ(second.focusWidget()->objectName(), QStringLiteral("BtnNext"));
  Click(second, "BtnCancel");
  // More fields than can be taken, of any length.
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
  EXPECT_EQ(Label(0).Caption() + Panel(2) + "|" + Panel(4), "Aster 1/ 5|Filter - OFF");
  EXPECT_EQ(Store.ReadRecordEntry("2", "Company") + Store.ReadRecordEntry("2", "Address1"), "Acme");
  EXPECT_TRUE(CheckFiles(Folder.Path()));
  EXPECT_EQ(Folder.ReadFile("QUILL0.OLD"), before);

  QWidget& replacing = GoOnWith("Ann,Lee\n", 1);
  Choose(replacing, {1, 2});
  Click(replacing, "BtnOK");
  ExpectEnded();
  EXPECT_EQ(ListTexts(), Texts{"Lee, Ann"});
  EXPECT_EQ(Store.ReadRecordEntry("0", "LastName"), "Moss");
}

TEST_F(RecordsToImportTest, GoesBackAndEndsWithoutATrace) {
  Add({{LastName, "Moss"}});
  const auto files = Folder.Files();
  QWidget& second = GoOnWith("Ann;Lee,x\n");
  EXPECT_EQ(Data(second, 0), "Ann;Lee");
  Click(second, "BtnBack");
  ExpectFirstStep();
  ASSERT_TRUE(WaitUntilActive(Dialog));
  EXPECT_EQ(TypedFile(), "people.csv");
  Option("OptRcrdDelimiter(3)").setChecked(true);
  Box("TxtOtherDelimiter").setText(QStringLiteral(";"));
  QWidget& again = GoOn("people.csv");
  EXPECT_EQ(Data(again, 0), "Ann");
  PressKey(again, Qt::Key_Escape);
  ExpectEnded();

  QWidget& third = GoOnWith("Ann,Lee\n", 1);
  {
    const MsgBoxAnswerer boxes({QStringLiteral("Import notice")});
    Click(third, "BtnOK");
  }
  ExpectEnded();
  QWidget& fourth = GoOnWith("Ann,Lee\n");
  EXPECT_EQ(Folder.Files(), files);
  ASSERT_EQ(Store.WriteHeaderEntry("NoOfUses", "2"), RunTimeError::None);
  const auto filesInUse = Folder.Files();
  const MsgBoxAnswerer boxes;
  Click(fourth, "BtnOK");
  EXPECT_EQ(boxes.TitlesAndTexts().at(1),
            "Records Not Imported|Another application is using the data file now.\n"
            "Nothing was changed. You can try again.");
  EXPECT_TRUE(fourth.isVisible());
  EXPECT_EQ(Folder.Files(), filesInUse);
}

// What other programs write, as they write it, with each kind of delimiter.
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
      {"code_page_1252.txt", 3, {"Ångström, Éva", "Müller, Ann", "NULL NAME"}, "“Acme” – 5 €"},
  };
  MsgBoxAnswerer boxes;
  for (const Case& example : cases) {
    Open(1);
    Confirm(IMPORT_TEST_DATA);
    Option("OptRcrdDelimiter(" + std::to_string(example.Delimiter) + ")").setChecked(true);
    Box("TxtOtherDelimiter").setText(QStringLiteral(";"));
    QWidget& second = GoOn(example.File);
    Choose(second, {1, 2, 6});
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
  for (const int index : {0, 1}) {  // appends, then replaces
    MsgBoxAnswerer boxes;
    QWidget& second = GoOnWith(Lines(index == 0 ? 20 : 9000), index);
    Choose(second, {1, 2});
    Click(second, "BtnOK");
    EXPECT_EQ(boxes.TitlesAndTexts(), (Texts{question, Notice}));
    EXPECT_EQ(Shared.NoOfRecords, 8000);
    EXPECT_EQ(ListTexts().at(9), index == 0 ? "Lee9, Ann" : "Lee1005, Ann");
    EXPECT_TRUE(CheckFiles(Folder.Path()));
  }
}

// Data that hold more already can take what an import can hold, as long as there is a place.
TEST_F(RecordsToImportTest, TellsHowManyTheDataCanTake) {
  const auto goOn = [this](int stored, int lines) {
    Shared.NoOfRecords = static_cast<std::int16_t>(stored);
    Home.WriteFile("people.csv", Lines(lines));
    const MsgBoxAnswerer boxes({QStringLiteral("Too many records")});
    Open();
    Confirm("people.csv");
    const bool isAsked = !boxes.Seen.empty();
    if (isAsked) ExpectFirstStep();
    QWidget* second = Second();
    Click(second != nullptr ? *second : Dialog, "BtnCancel");
    ExpectEnded();
    Shared.NoOfRecords = 0;
    return isAsked ? boxes.Seen.front().second.toStdString() : std::string();
  };
  const auto question = [](const std::string& room) {
    return "Only " + room + " of the records can be imported.\nShould I import the first " + room +
           " records?";
  };
  EXPECT_EQ(goOn(7990, 9), "");
  EXPECT_EQ(goOn(7990, 10),
            "Quillary can have up to 8000 records.\nShould I import up to 8000 records?");
  EXPECT_EQ(goOn(8000, 20), "");
  EXPECT_EQ(goOn(8500, 8001), "");
  EXPECT_EQ(goOn(8500, 8002), question("8001"));
  EXPECT_EQ(goOn(32760, 7), "");
  EXPECT_EQ(goOn(32760, 8), question("7"));
  EXPECT_EQ(goOn(32767, 1), "The data file is full: it holds 32767 names.");
}

// Whichever call to the disk fails: all records are there, or none, and the user can try again.
TEST_F(RecordsToImportTest, AFailingDiskChangesNothing) {
  Add({{LastName, "Moss"}});
  const auto files = DataFiles();
  QWidget* second = nullptr;
  std::map<std::string, int> told;
  bool reached = true;
  for (int call = 1; reached; ++call) {
    if (second == nullptr) {
      for (const auto& [name, bytes] : files) Folder.WriteFile(name, bytes);
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
    ++told[boxes.TitlesAndTexts()[1]];
    EXPECT_EQ(DataFiles(), files) << call;
    EXPECT_EQ(ListTexts(), Texts{"Moss"});
    EXPECT_FALSE(Main.isEnabled() || Wait.isVisible() || ProgressWindow.isVisible());
    EXPECT_TRUE(Guard.InUseTimer.isActive());
  }
  for (const char* what : {"The safety copy failed", "The import failed"}) {
    EXPECT_GT(told[std::string("Records Not Imported|") + what +
                   ": the disk is full.\nNothing was changed. You can try again."],
              3);
  }
}

}  // namespace
}  // namespace quillary::test
