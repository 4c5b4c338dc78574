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

QComboBox& FolderBox(QWidget& window) {
  return Control<QComboBox>(window, "CboFolder");
}

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
  // What the user sees who does this while he is asked.
  Texts BackUpWith(const User& user) {
    Commands.BackUpToDisk();
    return user.Seen;
  }
  Texts RestoreWith(const User& user) {
    Commands.RestoreFromDisk();
    return user.Seen;
  }
  void Restore(const std::string& folder) { RestoreWith(User().Restores(folder)); }
  void SetHeader(const char* key, const char* value) {
    ASSERT_EQ(Store.WriteHeaderEntry(key, value), RunTimeError::None);
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
  const auto choose = [&](QWidget& window) {
    EXPECT_EQ(FolderBox(window).currentText().toStdString(), gone);
    EXPECT_EQ(LastFolder(), "");
    FolderBox(window).setEditText(QString::fromStdString(Medium.Path()));
    Click(window, "BtnOK");
  };
  EXPECT_EQ(BackUpWith(User().Presses("BtnOK").Chooses(gone).Presses("BtnOK").Does(choose)),
            (Texts{Insert, "Back Up|", NotReady, "Back Up|"}));
  EXPECT_TRUE(IsBackedUp(Medium.Path()));
  EXPECT_FALSE(fs::exists(gone) || Waiting.isVisible());
  EXPECT_EQ(LastFolder(), Medium.Path());
  EXPECT_TRUE(Main.isEnabled());

  // A medium that is full; the user gives up.
  fs::remove(Medium.File("QUILL0.OLD"));
  Disk.FailWrites(RunTimeError::DiskFull);
  User user;
  user.PressesKey(Qt::Key_Return).PressesKey(Qt::Key_Return).PressesKey(Qt::Key_Escape);
  EXPECT_EQ(BackUpWith(user).back(),
            "Disk full|The disk in drive A: is full.\n"
            "Please take another one, or remove files from it.");
  Disk.Reset();
  EXPECT_FALSE(IsBackedUp(Medium.Path()));
  EXPECT_TRUE(Main.isEnabled());
}

TEST_F(BackUpTest, RestoresAndShowsWhatWasBackedUp) {
  SetHeader("NoOfUses", "3");
  MakeBackUp();
  Add({{FirstName, "Cy"}, {LastName, "Fox"}});
  Shared.FilterOn = true;
  SetHeader("NoOfUses", "1");
  const std::string current = Folder.ReadFile("quill0.dat");
  Guard.InUseTimer.start();
  Show();
  const TempFolder empty;
  const TempFolder pulledOut;
  fs::copy(Medium.Path(), pulledOut.Path());
  fs::create_symlink("nowhere", pulledOut.File("SPARE.OLD"));
  EXPECT_EQ(RestoreWith(User()
                            .Restores(empty.Path())
                            .Presses("BtnOK")
                            .Chooses(pulledOut.Path())
                            .Presses("BtnOK")
                            .Chooses(Medium.Path())),
            (Texts{Warning, InsertData, Choosing, NoValidData, Choosing, DataNotReady, Choosing}));
  EXPECT_EQ(LastFolder(), Medium.Path());
  EXPECT_EQ(ListTexts(), (Texts{"Lee, Ann", "Ray, Bo"}));
  EXPECT_EQ(Label(0).Caption() + "|" + Panel(4), "Lee|Filter - OFF");
  EXPECT_EQ(Folder.ReadFile("QUILL0.OLD"), current);
  EXPECT_EQ(Uses(), "1");
  EXPECT_TRUE(Told.empty());
  EXPECT_TRUE(Guard.InUseTimer.isActive() && Main.isEnabled() && !ProgressWindow.isVisible());
  EXPECT_EQ(Add({{FirstName, "Di"}}), "2");

  // Data without names, in other case. Backups with names are asked about.
  fs::remove(Medium.File("QUILL0.OLD"));
  Medium.WriteFile("QUILL.OLD",
                   "[General Info]\nApplication=quillary\nTotalNoOfRecords=0\nNoOfRecords=0\n");
  Restore(Medium.Path());
  EXPECT_TRUE(ListTexts().empty());
}

TEST_F(BackUpTest, AsksBeforeItGoesOnWithoutASafetyCopy) {
  MakeBackUp();
  Add({{FirstName, "Cy"}});
  const std::string current = Folder.ReadFile("quill0.dat");
  Show();
  fs::create_directory(Folder.File("QUILL0.OLD"));
  for (const bool goesOn : {false, true}) {
    User user;
    user.Restores(Medium.Path());
    goesOn ? user.Presses("BtnOK") : user.PressesKey(Qt::Key_Return);
    EXPECT_EQ(RestoreWith(user).back(),
              Choosing +
                  "The existing data could not be copied aside: the file or folder "
                  "cannot be used.\nIf you continue they will be lost!");
    EXPECT_EQ(Folder.ReadFile("quill0.dat") == current, !goesOn);
  }
}

TEST_F(BackUpTest, ChangesNothingWhereTheUserOrAnotherApplicationIsAgainstIt) {
  MakeBackUp();
  Add({{FirstName, "Cy"}});
  Show();
  SetHeader("NoOfUses", "2");
  const auto files = Folder.Files();
  RestoreWith(User().PressesKey(Qt::Key_Return));
  RestoreWith(User().Presses("BtnOK").PressesKey(Qt::Key_Escape));
  RestoreWith(User().Presses("BtnOK").Presses("BtnOK").PressesKey(Qt::Key_Escape));
  EXPECT_EQ(RestoreWith(User().Restores(Medium.Path()).Presses("BtnOK")).back(),
            Choosing +
                "Another application is using the data file now.\nNothing was "
                "changed.");
  EXPECT_EQ(Folder.Files(), files);
}

TEST_F(BackUpTest, OffersTheSafetyCopyAndBringsItBack) {
  MakeBackUp();
  Add({{FirstName, "Cy"}, {LastName, "Fox"}});
  Show();
  for (const TempFolder* folder : {&Medium, &Folder}) {
    const QString path = QString::fromStdString(folder->Path());
    RestoreWith(User().Presses("BtnOK").Presses("BtnOK").Does([&](QWidget& window) {
      EXPECT_EQ(FolderBox(window).findText(path) >= 0, folder == &Folder);
      FolderBox(window).setEditText(path);
      Click(window, "BtnOK");
    }));
    EXPECT_EQ(ListTexts().size(), folder == &Folder ? 3U : 2U);
    EXPECT_EQ(LastFolder(), Medium.Path());
  }
}

TEST_F(BackUpTest, TellsWhatIsWrongWithTheDataOrTheDisk) {
  MakeBackUp();
  Show();
  fs::create_directory(Medium.File("quill.jnl"));
  EXPECT_EQ(RestoreWith(User().Restores(Medium.Path()).PressesKey(Qt::Key_Escape)).back(),
            Choosing +
                "A backup was stopped and cannot be completed now: the file or folder cannot be "
                "used.\nPlease make the disk writable.");
  fs::remove(Medium.File("quill.jnl"));
  fs::remove(Folder.File("quill0.dat"));
  const TempFolder empty;
  {
    User user;
    user.Presses("BtnOK").Chooses(Medium.Path()).Presses("BtnOK").Chooses(empty.Path());
    const Texts seen = BackUpWith(user.Presses("BtnOK"));
    EXPECT_EQ(seen[2],
              "Back Up|The data files are damaged and must not replace a backup.\n"
              "Please choose a folder that holds none.");
    EXPECT_EQ(seen.back(),
              "Back Up|The data files are damaged: some names may be missing.\n"
              "Should I back up what is there?");
  }
  EXPECT_TRUE(fs::exists(empty.File("QUILL.OLD")));
  EXPECT_EQ(RestoreWith(User().Restores(empty.Path()).PressesKey(Qt::Key_Return)).back(),
            Choosing +
                "The data on the disk are damaged: some names may be missing.\n"
                "Should I restore them all the same?");
  EXPECT_FALSE(fs::exists(Folder.File("QUILL.OLD")));
  SetHeader("TotalNoOfRecords", "9");
  RestoreWith(User().Restores(empty.Path()).Presses("BtnOK"));
  EXPECT_EQ(Told, Texts{"damaged: The earlier data can be restored from the data folder."});
  fs::create_directory(Folder.File("QUILL0.DAT"));
  EXPECT_EQ(RestoreWith(User().Restores(Medium.Path()).Presses("BtnOK")).back(),
            Choosing +
                "The data could not be restored: the file or folder cannot be used.\n"
                "Nothing was changed.");
}

TEST_F(BackUpTest, AsksBeforeItReplacesABackupThatHasMoreNames) {
  MakeBackUp();
  Show();
  const std::string backup = Medium.ReadFile("QUILL.OLD");
  const auto isReplacedAfter = [&](bool goesOn, const std::string& question) {
    User user;
    user.Presses("BtnOK").Chooses(Medium.Path());
    goesOn ? user.Presses("BtnOK") : user.PressesKey(Qt::Key_Return);
    EXPECT_EQ(BackUpWith(user).back(), "Back Up|" + question + "\nShould I replace it?");
    return Medium.ReadFile("QUILL.OLD") != backup;
  };
  Medium.WriteFile("QUILL3.OLD", "[Record300]\r\nShowName=Lee, Ann\r\n");
  SetHeader("TotalNoOfRecords", "301");
  SetHeader("MissingRecords", "300");
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
  SetHeader("NoOfUses", "0");
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
  SetHeader("NoOfUses", "2");
  MakeBackUp();
  SetHeader("NoOfUses", "1");
  Show();
  OnOpened = [this] { Disk.FailWrites(RunTimeError::PermissionDenied); };
  Restore(Medium.Path());
  Disk.Reset();
  EXPECT_EQ(Told, (Texts{"not counted"}));
  EXPECT_FALSE(Widget("BtnNew").isEnabled());
  // Data that cannot be opened: the program ends.
  OnOpened = nullptr;
  CanOpen = false;
  ASSERT_EQ(Guard.ResetUses(), RunTimeError::None);
  Restore(Medium.Path());
  EXPECT_EQ(Started.Started, (Texts{"ExitApplication"}));
}

TEST_F(BackUpTest, OffersTheMediaFirstAndTheLastChoice) {
  const TempFolder stick;
  Volumes = {{QStringLiteral("File System"), QStringLiteral("/"), false},
             {QStringLiteral("STICK"), QString::fromStdString(stick.Path()), true}};
  Show();
  const auto offered = [](QWidget& window) {
    Texts texts{FolderBox(window).currentText().toStdString()};
    for (int i = 0; i < FolderBox(window).count(); ++i) {
      texts.push_back(FolderBox(window).itemText(i).toStdString());
    }
    return texts;
  };
  const auto choose = [&] {
    return Chooser.Choose(QStringLiteral("x"), BackUpFolder::Use::BackUp);
  };
  {
    User user;
    user.Does([&](QWidget& window) {
      EXPECT_EQ(offered(window), (Texts{stick.Path(), stick.Path()}));
      FolderBox(window).setEditText(QString());
      EXPECT_FALSE(Control<QPushButton>(window, "BtnOK").isEnabled());
      // The data's own folder, by another name, is refused.
      FolderBox(window).setEditText(QString::fromStdString(Folder.Path()) + QStringLiteral("//."));
      Click(window, "BtnOK");
    });
    user.Presses("BtnOK").Presses("BtnBrowse").Does([&](QWidget& window) {
      Control<QLineEdit>(window, "fileNameEdit").setText(QString::fromStdString(Medium.Path()));
      dynamic_cast<QDialog&>(window).accept();
    });
    user.Presses("BtnOK");
    EXPECT_EQ(choose(), ProgramPath(Medium.Path()) + "\\");
    EXPECT_EQ(user.Seen[1], "x|This is the folder of the data files.\nPlease choose another one.");
    Chooser.Remember();
  }
  User user;
  user.Does([&](QWidget& window) {
    EXPECT_EQ(offered(window), (Texts{Medium.Path(), stick.Path(), Medium.Path()}));
    window.close();
  });
  EXPECT_EQ(choose(), std::nullopt);
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
  turn.start(1);
  BackUpWith(User().Presses("BtnOK").Chooses(Medium.Path()));
  EXPECT_GE(turns, 3);
  EXPECT_TRUE(fs::is_empty(Medium.Path()));
}

}  // namespace
}  // namespace quillary::test
