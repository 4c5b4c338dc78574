#include "backup/back_up.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QLineEdit>
#include <algorithm>
#include <deque>
#include <filesystem>

#include "auxiliary/message_text.h"
#include "store/backup.h"
#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

namespace fs = std::filesystem;

// Plays the user: to each window that asks for something, the next of its actions.
class User : public QObject {
 public:
  using Action = std::function<void(QWidget& window)>;

  User() {
    QObject::connect(&timer_, &QTimer::timeout, this, [this] { Act(); });
    timer_.start(5);
  }
  ~User() override { EXPECT_TRUE(actions_.empty()) << "not asked for everything"; }

  User& Presses(const char* button) {
    return Does([button](QWidget& window) { Click(window, button); });
  }
  User& PressesKey(Qt::Key key) {
    return Does([key](QWidget& window) { PressKey(window, key); });
  }
  User& Chooses(const std::string& folder) {
    return Does([folder](QWidget& window) {
      Control<QComboBox>(window, "CboFolder").setEditText(QString::fromStdString(folder));
      PressKey(window, Qt::Key_Return);
    });
  }
  // All that a restore asks for, where nothing is in its way.
  User& Restores(const std::string& folder) {
    return Presses("BtnOK").Presses("BtnOK").Chooses(folder);
  }
  User& Does(Action action) {
    actions_.push_back(std::move(action));
    return *this;
  }

  Texts Seen;  // "title|text" of each window

 private:
  void Act() {
    QWidget* window = QApplication::activeModalWidget();
    // The offscreen platform does not activate a window again when one in front of it closes.
    const QWidget* active = QApplication::activeWindow();
    if (window == nullptr || (active != nullptr && active != window)) return;
    const auto* text = window->findChild<MessageText*>(QStringLiteral("Text1"));
    EXPECT_TRUE(text == nullptr || text->Shown() == text->text()) << "too long for the box";
    Seen.push_back(window->windowTitle().toStdString() + "|" +
                   (text == nullptr ? std::string() : text->text().toStdString()));
    if (actions_.empty()) {
      ADD_FAILURE() << "asked too much: " << Seen.back();
      window->close();
      return;
    }
    const Action action = std::move(actions_.front());
    actions_.pop_front();
    // Begun anew it ticks for the windows, too, that the action opens and waits for.
    timer_.start();
    action(*window);
  }

  QTimer timer_;
  std::deque<Action> actions_;
};

const std::string Insert = "Back Up|\nPlease insert a formated disk into drive A:";
const std::string NotReady =
    "Drive not ready|Drive A: is not ready.\nPlease insert a formated disk into the drive.";
const std::string Choosing = "Restore data from Back Up|";
const std::string Warning = Choosing +
                            "You choosed to restore data from old BackUp.\n"
                            "If you continue all existing data will be lost!";
const std::string InsertData = Choosing + "Please insert the disk with the data into drive A:";
const std::string NoValidData =
    "No valid data|There is no valid Quillary data on the disk in the drive. "
    "(Or drive is not ready)\nPlease insert the correct disk.";
const std::string DataNotReady =
    "Drive not ready|Drive A: is not ready.\nPlease insert the disk with the data into the drive.";

struct BackUpTest : MainFixture, Opening, OpenDataFileHooks {
  BackUpTest() {
    EXPECT_EQ(Profile.WriteEntry("varek.ini", "Data Files", "QuillDataPath", Shared.DataPath),
              RunTimeError::None);
    Add({{FirstName, "Ann"}, {LastName, "Lee"}});
    Add({{FirstName, "Bo"}, {LastName, "Ray"}});
    EXPECT_EQ(Guard.IncrementUses(), RunTimeError::None);
  }

  bool OpenDataFile() override {
    RunTimeError error = RunTimeError::None;
    const bool isOpen =
        CanOpen && Store.OpenDataFile("varek.ini", Names.OwnDirectory(), *this, error);
    if (OnOpened) OnOpened();
    return isOpen;
  }
  bool AskToCreate(std::string_view) override { return false; }
  void WarnInUse() override { Told.emplace_back("in use"); }
  void SetReadOnly() override { Main.ShowReadOnly(); }
  void TellFaults(RunTimeError countError, RunTimeError, const QString& advice) override {
    if (Shared.ListsIncomplete) Told.push_back("damaged: " + advice.toStdString());
    if (countError != RunTimeError::None) Told.emplace_back("not counted");
  }

  std::string Uses() { return Store.ReadHeaderEntry("NoOfUses"); }
  std::string LastFolder() { return Profile.ReadEntry("varek.ini", "QL32", "BackUpFolder"); }
  bool HasEnded() const override { return Ended; }

  bool IsBackedUp(const std::string& folder) { return fs::exists(folder + "/QUILL0.OLD"); }
  // What the user sees who restores from there and then does the rest; all that he is asked for.
  Texts Restore(const std::string& folder, const char* button = nullptr) {
    User user;
    user.Restores(folder);
    if (button != nullptr) user.Presses(button);
    Commands.RestoreFromDisk();
    return user.Seen;
  }
  // A backup of the data as they are.
  void MakeBackUp() {
    ASSERT_EQ(BackUpFiles(Profile, Shared, ProgramPath(Medium.Path()) + "\\"), RunTimeError::None);
  }

  TempFolder Medium;
  std::vector<Volume> Volumes;
  bool CanOpen = true;
  bool Ended = false;
  std::function<void()> OnOpened;
  Texts Told;
  PleaseWait Waiting{Main};
  BackUpFolder Chooser{Shared, Profile, Main, SingleText, [this] { return Volumes; }};
  BackUp Commands{Shared,  Profile,    Store,   Guard,          Main,   *this,
                  Started, SingleText, Waiting, ProgressWindow, Chooser};
};

TEST_F(BackUpTest, BacksUpToTheFolderThatIsChosenAsOftenAsItTakes) {
  Show();
  const std::string gone = Medium.File("gone");
  {
    User user;
    user.Presses("BtnOK").Chooses(gone).Presses("BtnOK").Does([&](QWidget& window) {
      EXPECT_EQ(Control<QComboBox>(window, "CboFolder").currentText().toStdString(), gone);
      EXPECT_EQ(LastFolder(), "");
      Control<QComboBox>(window, "CboFolder").setEditText(QString::fromStdString(Medium.Path()));
      Click(window, "BtnOK");
    });
    Commands.BackUpToDisk();
    EXPECT_EQ(user.Seen, (Texts{Insert, "Back Up|", NotReady, "Back Up|"}));
  }
  EXPECT_TRUE(IsBackedUp(Medium.Path()));
  EXPECT_FALSE(fs::exists(gone));
  EXPECT_EQ(LastFolder(), Medium.Path());
  EXPECT_TRUE(Main.isEnabled());
  EXPECT_FALSE(Waiting.isVisible());

  // A medium that is full; the user gives up.
  fs::remove(Medium.File("QUILL0.OLD"));
  Disk.FailWrites(RunTimeError::DiskFull);
  User user;
  user.PressesKey(Qt::Key_Return).PressesKey(Qt::Key_Return).PressesKey(Qt::Key_Escape);
  Commands.BackUpToDisk();
  Disk.Reset();
  EXPECT_EQ(user.Seen.back(),
            "Disk full|The disk in drive A: is full.\n"
            "Please take another one, or remove files from it.");
  EXPECT_FALSE(IsBackedUp(Medium.Path()));
  EXPECT_TRUE(Main.isEnabled());
}

TEST_F(BackUpTest, EnterAtTheWarningAndEscapeLaterChangeNothing) {
  Show();
  for (int step = 0; step < 3; ++step) {
    User user;
    for (int i = 0; i < step; ++i) user.Presses("BtnOK");
    user.PressesKey(step == 0 ? Qt::Key_Return : Qt::Key_Escape);
    Commands.RestoreFromDisk();
  }
  EXPECT_FALSE(IsBackedUp(Folder.Path()));
}

TEST_F(BackUpTest, RestoresAndShowsWhatWasBackedUp) {
  MakeBackUp();
  Add({{FirstName, "Cy"}, {LastName, "Fox"}});
  Shared.FilterOn = true;
  ASSERT_EQ(Store.WriteHeaderEntry("NoOfUses", "1"), RunTimeError::None);
  Medium.WriteFile("QUILL.OLD",
                   Medium.ReadFile("QUILL.OLD")
                       .replace(Medium.ReadFile("QUILL.OLD").find("NoOfUses=1"), 10, "NoOfUses=3"));
  const std::string current = Folder.ReadFile("quill0.dat");
  Guard.InUseTimer.start();
  Show();
  const TempFolder empty;
  const TempFolder pulledOut;
  fs::copy(Medium.Path(), pulledOut.Path());
  fs::create_symlink("nowhere", pulledOut.File("SPARE.OLD"));
  User user;
  user.Restores(empty.Path());
  user.Presses("BtnOK").Chooses(pulledOut.Path());
  user.Presses("BtnOK").Chooses(Medium.Path());
  Commands.RestoreFromDisk();
  EXPECT_EQ(LastFolder(), Medium.Path());
  EXPECT_EQ(user.Seen,
            (Texts{Warning, InsertData, Choosing, NoValidData, Choosing, DataNotReady, Choosing}));
  EXPECT_EQ(ListTexts(), (Texts{"Lee, Ann", "Ray, Bo"}));
  EXPECT_EQ(Label(0).Caption(), "Lee");
  EXPECT_EQ(Folder.ReadFile("QUILL0.OLD"), current);
  EXPECT_EQ(Uses(), "1");
  EXPECT_EQ(Panel(4), "Filter - OFF");
  EXPECT_TRUE(Told.empty());
  EXPECT_TRUE(Guard.InUseTimer.isActive());
  EXPECT_TRUE(Main.isEnabled());
  EXPECT_FALSE(ProgressWindow.isVisible());
  EXPECT_EQ(Add({{FirstName, "Di"}}), "2");
}

TEST_F(BackUpTest, ARestoreOfAnEmptyDataSetEmptiesTheList) {
  Medium.WriteFile("quill.old",
                   "[General Info]\nApplication=quillary\nTotalNoOfRecords=0\nNoOfRecords=0\n");
  Show();
  Restore(Medium.Path());
  EXPECT_TRUE(ListTexts().empty());
  EXPECT_EQ(Label(0).Caption(), "");
}

TEST_F(BackUpTest, AsksBeforeItGoesOnWithoutASafetyCopy) {
  MakeBackUp();
  Add({{FirstName, "Cy"}});
  const std::string current = Folder.ReadFile("quill0.dat");
  Show();
  fs::create_directory(Folder.File("QUILL0.OLD"));
  const std::string question = Choosing +
                               "The existing data could not be copied aside: the file or folder "
                               "cannot be used.\nIf you continue they will be lost!";
  for (const bool goesOn : {false, true}) {
    User user;
    user.Restores(Medium.Path());
    goesOn ? user.Presses("BtnOK") : user.PressesKey(Qt::Key_Return);
    Commands.RestoreFromDisk();
    EXPECT_EQ(user.Seen.back(), question);
    EXPECT_EQ(Folder.ReadFile("quill0.dat") == current, !goesOn);
  }
  EXPECT_EQ(ListTexts().size(), 2U);
}

TEST_F(BackUpTest, ChangesNothingWhileAnotherApplicationUsesTheData) {
  MakeBackUp();
  Add({{FirstName, "Cy"}});
  Show();
  ASSERT_EQ(Store.WriteHeaderEntry("NoOfUses", "2"), RunTimeError::None);
  EXPECT_EQ(Restore(Medium.Path(), "BtnOK").back(),
            Choosing +
                "Another application is using the data file now.\nNothing was "
                "changed.");
  EXPECT_EQ(Store.ReadHeaderEntry("NoOfRecords"), "3");
  EXPECT_EQ(Uses(), "2");
  EXPECT_FALSE(fs::exists(Folder.File("QUILL.OLD")));
}

TEST_F(BackUpTest, OffersTheSafetyCopyAndBringsItBack) {
  MakeBackUp();
  Add({{FirstName, "Cy"}, {LastName, "Fox"}});
  Show();
  for (const TempFolder* folder : {&Medium, &Folder}) {
    const QString path = QString::fromStdString(folder->Path());
    User user;
    user.Presses("BtnOK").Presses("BtnOK").Does([&](QWidget& window) {
      auto& box = Control<QComboBox>(window, "CboFolder");
      EXPECT_EQ(box.findText(path) >= 0, folder == &Folder);
      box.setEditText(path);
      Click(window, "BtnOK");
    });
    Commands.RestoreFromDisk();
    EXPECT_EQ(ListTexts().size(), folder == &Folder ? 3U : 2U);
    EXPECT_EQ(LastFolder(), Medium.Path());
  }
}

TEST_F(BackUpTest, TellsWhatIsWrongWithTheDataOrTheDisk) {
  MakeBackUp();
  Show();
  fs::create_directory(Medium.File("quill.jnl"));
  {
    User user;
    user.Restores(Medium.Path()).PressesKey(Qt::Key_Escape);
    Commands.RestoreFromDisk();
    EXPECT_EQ(user.Seen.back(), Choosing +
                                    "A backup was stopped and cannot be completed now: the file or "
                                    "folder cannot be used.\nPlease make the disk writable.");
  }
  fs::remove(Medium.File("quill.jnl"));
  fs::remove(Folder.File("quill0.dat"));
  const TempFolder empty;
  {
    User user;
    user.Presses("BtnOK").Chooses(Medium.Path()).Presses("BtnOK").Chooses(empty.Path());
    user.Presses("BtnOK");
    Commands.BackUpToDisk();
    EXPECT_EQ(user.Seen[2],
              "Back Up|The data files are damaged and must not replace a backup.\n"
              "Please choose a folder that holds none.");
    EXPECT_EQ(user.Seen.back(),
              "Back Up|The data files are damaged: some names may be missing.\n"
              "Should I back up what is there?");
  }
  EXPECT_TRUE(fs::exists(empty.File("QUILL.OLD")));
  User user;
  user.Presses("BtnOK").Presses("BtnOK").Chooses(empty.Path()).PressesKey(Qt::Key_Return);
  Commands.RestoreFromDisk();
  EXPECT_EQ(user.Seen.back(), Choosing +
                                  "The data on the disk are damaged: some names may be missing.\n"
                                  "Should I restore them all the same?");
  EXPECT_FALSE(fs::exists(Folder.File("QUILL.OLD")));
  ASSERT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", "9"), RunTimeError::None);
  user.Presses("BtnOK").Presses("BtnOK").Chooses(empty.Path()).Presses("BtnOK");
  Commands.RestoreFromDisk();
  EXPECT_EQ(Told,
            std::vector<std::string>{"damaged: The earlier data can be restored from the data "
                                     "folder."});
  fs::create_directory(Folder.File("QUILL0.DAT"));
  user.Presses("BtnOK").Presses("BtnOK").Chooses(Medium.Path()).Presses("BtnOK");
  Commands.RestoreFromDisk();
  EXPECT_EQ(user.Seen.back(), Choosing +
                                  "The data could not be restored: the file or folder cannot be "
                                  "used.\nNothing was changed.");
}

TEST_F(BackUpTest, AsksBeforeItReplacesABackupThatHasMoreNames) {
  MakeBackUp();
  Show();
  const std::string backup = Medium.ReadFile("QUILL.OLD");
  const auto isReplacedAfter = [&](bool goesOn, const std::string& question) {
    User user;
    user.Presses("BtnOK").Chooses(Medium.Path());
    goesOn ? user.Presses("BtnOK") : user.PressesKey(Qt::Key_Return);
    Commands.BackUpToDisk();
    EXPECT_EQ(user.Seen.back(), "Back Up|" + question + "\nShould I replace it?");
    return Medium.ReadFile("QUILL.OLD") != backup;
  };
  Medium.WriteFile("QUILL3.OLD", "[Record300]\r\nShowName=Lee, Ann\r\n");
  ASSERT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", "301"), RunTimeError::None);
  ASSERT_EQ(Store.WriteHeaderEntry("MissingRecords", "300"), RunTimeError::None);
  const std::string missing = "Some names are missing here, but there is a backup with them.";
  EXPECT_FALSE(isReplacedAfter(false, missing));
  EXPECT_TRUE(isReplacedAfter(true, missing));
  ASSERT_EQ(Store.WriteNewHeader(), RunTimeError::None);
  EXPECT_TRUE(
      isReplacedAfter(true, "There are no names to back up, but there is a backup with names."));
}

// Whichever window is open when the program is asked to end, nothing is done after it.
TEST_F(BackUpTest, AskedToEndItLeavesTheDataAlone) {
  MakeBackUp();
  Show();
  ASSERT_EQ(Store.WriteHeaderEntry("NoOfUses", "0"), RunTimeError::None);
  const std::string header = Folder.ReadFile("quill.dat");
  // A copy whose place is taken: nothing can be restored, and the fourth window tells.
  Medium.WriteFile("SPARE.OLD", "spare");
  fs::create_directory(Folder.File("SPARE.DAT"));
  Volumes = {{QStringLiteral("STICK"), QString::fromStdString(Medium.Path()), true}};
  OnOpened = [this] { Ended = true; };
  for (int last = 1; last <= 5; ++last) {
    Ended = false;
    User user;
    for (int i = 1; i <= std::min(last, 4); ++i) {
      user.Does([this, isLast = i == last](QWidget& window) {
        Ended = isLast;
        Click(window, "BtnOK");
      });
    }
    Commands.RestoreFromDisk();
    EXPECT_EQ(Folder.ReadFile("quill.dat"), header) << last;
  }
  EXPECT_FALSE(fs::exists(Folder.File("QUILL.OLD")));
}

TEST_F(BackUpTest, TellsWhatKeptItFromTakingTheDataOver) {
  ASSERT_EQ(Store.WriteHeaderEntry("NoOfUses", "2"), RunTimeError::None);
  MakeBackUp();
  ASSERT_EQ(Store.WriteHeaderEntry("NoOfUses", "1"), RunTimeError::None);
  Show();
  OnOpened = [this] { Disk.FailWrites(RunTimeError::PermissionDenied); };
  Restore(Medium.Path());
  Disk.Reset();
  EXPECT_EQ(Told, (Texts{"not counted"}));
  EXPECT_FALSE(Control<QPushButton>(Main, "BtnNew").isEnabled());

  // Data that cannot be opened: the program ends.
  OnOpened = nullptr;
  CanOpen = false;
  ASSERT_EQ(Guard.ResetUses(), RunTimeError::None);
  Restore(Medium.Path());
  EXPECT_EQ(Started.Started, (Texts{"ExitApplication"}));
}

TEST_F(BackUpTest, OffersTheMediaFirstAndTheLastChoice) {
  const TempFolder stick;
  const QString stickPath = QString::fromStdString(stick.Path());
  Volumes = {{QStringLiteral("File System"), QStringLiteral("/"), false},
             {QStringLiteral("STICK"), stickPath, true}};
  Show();
  const auto offered = [](QWidget& window) {
    const auto& box = Control<QComboBox>(window, "CboFolder");
    Texts texts{box.currentText().toStdString()};
    for (int i = 0; i < box.count(); ++i) texts.push_back(box.itemText(i).toStdString());
    return texts;
  };
  const auto choose = [&](User& user) {
    user.Does([&](QWidget& window) {
      EXPECT_EQ(offered(window), (Texts{stick.Path(), stick.Path()}));
      auto& folder = Control<QComboBox>(window, "CboFolder");
      folder.setEditText(QString());
      EXPECT_FALSE(Control<QPushButton>(window, "BtnOK").isEnabled());
      // The data's own folder, by another name, is refused.
      folder.setEditText(QString::fromStdString(Folder.Path()) + QStringLiteral("//."));
      Click(window, "BtnOK");
    });
  };
  {
    User user;
    choose(user);
    user.Presses("BtnOK");
    user.Does([&](QWidget& window) { Click(window, "BtnBrowse"); });
    user.Does([&](QWidget& window) {
      Control<QLineEdit>(window, "fileNameEdit").setText(QString::fromStdString(Medium.Path()));
      dynamic_cast<QDialog&>(window).accept();
    });
    user.Presses("BtnOK");
    EXPECT_EQ(Chooser.Choose(QStringLiteral("x"), BackUpFolder::Use::BackUp),
              ProgramPath(Medium.Path()) + "\\");
    EXPECT_EQ(user.Seen[1], "x|This is the folder of the data files.\nPlease choose another one.");
    Chooser.Remember();
  }
  User user;
  user.Does([&](QWidget& window) {
    EXPECT_EQ(offered(window), (Texts{Medium.Path(), stick.Path(), Medium.Path()}));
    window.close();
  });
  EXPECT_EQ(Chooser.Choose(QStringLiteral("x"), BackUpFolder::Use::BackUp), std::nullopt);
}

TEST_F(BackUpTest, UnderstandsHowPeopleWriteAFolder) {
  Show();
  const TempFolder home;
  fs::create_directory(home.File(" blanks "));
  const QByteArray oldHome = qgetenv("HOME");
  qputenv("HOME", QByteArray::fromStdString(home.Path()));
  const std::pair<std::string, std::string> folders[] = {
      {"~", home.Path()},
      {"~/copies", home.File("copies")},
      {"copies/2", home.File("copies/2")},
      {" \"" + Medium.Path() + "/\" ", Medium.Path()},
      {home.File(" blanks "), home.File(" blanks ")}};
  for (const auto& [typed, meant] : folders) {
    User user;
    user.Chooses(typed);
    EXPECT_EQ(Chooser.Choose(QStringLiteral("x"), BackUpFolder::Use::BackUp),
              ProgramPath(meant) + "\\");
  }
  qputenv("HOME", oldHome);
}

// The window stays alive, and the program can be asked to end, which drops the copies.
TEST_F(BackUpTest, EventsRunWhileFilesAreCopied) {
  Folder.WriteFile("large.dat", "x");
  fs::resize_file(Folder.File("large.dat"), 300'000'000);
  Show();
  int turns = 0;
  QTimer turn;
  QObject::connect(&turn, &QTimer::timeout, [&] {
    if (Waiting.isVisible()) ++turns;
    EXPECT_TRUE(!Waiting.isVisible() || !Main.isEnabled());
    Ended = turns >= 3;
  });
  User user;
  user.Presses("BtnOK").Chooses(Medium.Path());
  turn.start(1);
  Commands.BackUpToDisk();
  EXPECT_GE(turns, 3);
  EXPECT_TRUE(fs::is_empty(Medium.Path()));
}

}  // namespace
}  // namespace quillary::test
