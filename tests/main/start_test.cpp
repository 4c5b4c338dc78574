#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "main/main.h"
#include "platform/file_names.h"
#include "platform/text.h"
#include "store/profile.h"
#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/fault_disk.h"
#include "tests/support/temp_folder.h"

namespace quillary {
namespace {

using test::FaultDisk;
using test::TempFolder;

class NotedEnding : public Ending {
 public:
  void EndProgram() override { ++Ended; }
  void EndNow() override { ++EndedNow; }
  int Ended = 0;
  int EndedNow = 0;
};

// One run of the program on the files of a folder.
struct Session {
  Session(const TempFolder& folder, Disk& disk)
      : Names(disk, folder.Path(), folder.Path()), Access(disk, Names) {
    Place.OwnDirectory = Names.OwnDirectory();
    Place.IsFirstInstance = [] { return true; };
  }
  bool Start() { return Main(Windows, Access, Place); }
  QWidget* Shown(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->isVisible() && window->objectName() == QLatin1String(name)) return window;
    }
    return nullptr;
  }

  FileNames Names;
  Profile Access;
  TextComparer Comparer;
  NotedEnding End;
  Forms Windows{Access, Comparer, End};
  Surroundings Place;
};

// Answers every modal window that comes up by a click on one of its buttons, and notes its title
// and first text.
class Answerer : public QObject {
 public:
  explicit Answerer(QString button) : button_(std::move(button)) {
    connect(&timer_, &QTimer::timeout, this, [this] { Answer(); });
    timer_.start(5);
  }
  QStringList Seen;

 private:
  void Answer() {
    QWidget* const window = QApplication::activeModalWidget();
    if (window == nullptr || !window->isVisible()) return;
    const auto* const text = window->findChild<QLabel*>(QStringLiteral("Text1"));
    Seen << window->windowTitle() + QLatin1Char('|') + (text != nullptr ? text->text() : QString());
    auto* const button = window->findChild<QPushButton*>(button_);
    if (button != nullptr) QTest::mouseClick(button, Qt::LeftButton);
  }

  QString button_;
  QTimer timer_;
};

struct StartTest : testing::Test {
  TempFolder Folder;
  FaultDisk Machine;

  // A data set that the preferences name, and no tip.
  void MakeData(const test::DataSetShape& shape) {
    std::filesystem::create_directory(Folder.File("data"));
    test::WriteDataSet(Folder.File("data"), shape);
    Folder.WriteFile("varek.ini",
                     "[QL32]\r\nVersion=2.0\r\nTips=0\r\n[Data Files]\r\nQuillDataPath=" +
                         ProgramPath(Folder.File("data")) + "\\\r\n");
  }
  std::string Header(const std::string& key) {
    HostDisk disk;
    Session reader(Folder, disk);
    const std::string path =
        reader.Access.ReadEntry("varek.ini", "Data Files", "QuillDataPath") + "quill.dat";
    return reader.Access.ReadEntry(path, "General Info", key);
  }
};

TEST_F(StartTest, OnACleanMachineItMakesADataSetAndOffersATip) {
  Answerer yes(QStringLiteral("BtnOK"));
  Session run(Folder, Machine);
  ASSERT_TRUE(run.Start());
  ASSERT_EQ(yes.Seen.size(), 1);
  EXPECT_TRUE(yes.Seen[0].startsWith(
      QStringLiteral("Missing data file|I can't find an Quillary data files.")));
  EXPECT_EQ(Folder.ReadFile("varek.ini"),
            "[QL32]\r\nVersion=2.0\r\n[Data Files]\r\nQuillDataPath=" +
                UpperCase(run.Names.OwnDirectory() + "quilldat\\") + "\r\n");
  EXPECT_EQ(Header("Application"), "Quillary");
  EXPECT_EQ(Header("NoOfUses"), "1");
  EXPECT_EQ(run.Windows.Main.windowTitle(), QStringLiteral("Quillary, Version 2.0"));
  EXPECT_EQ(run.Shown("Welcome"), nullptr);
  ASSERT_NE(run.Shown("TipOfDay"), nullptr);
  EXPECT_FALSE(run.Windows.Main.isEnabled());
  EXPECT_TRUE(run.Windows.Guard.InUseTimer.isActive());

  run.Windows.ExitApplication();
  run.Windows.ExitApplication();
  EXPECT_EQ(run.End.Ended, 1);
  EXPECT_EQ(Header("NoOfUses"), "0");
}

TEST_F(StartTest, WhoeverDeclinesGetsNothing) {
  Answerer no(QStringLiteral("BtnCancel"));
  Session run(Folder, Machine);
  EXPECT_FALSE(run.Start());
  EXPECT_EQ(run.Shown("MainDialog"), nullptr);
  EXPECT_EQ(Folder.ReadFile("varek.ini"), "[QL32]\r\nVersion=2.0\r\n");
  EXPECT_FALSE(std::filesystem::exists(Folder.File("quilldat")));
}

TEST_F(StartTest, ASecondInstanceTouchesNothing) {
  MakeData({3});
  Session run(Folder, Machine);
  run.Place.IsFirstInstance = [this] {
    Machine.Reset();
    return false;
  };
  EXPECT_FALSE(run.Start());
  run.Windows.ExitApplication();
  EXPECT_EQ(Machine.Calls(), 0);
}

TEST_F(StartTest, TheListIsReadSortedAndRelinked) {
  MakeData({.Live = 250, .Deleted = 0, .Scrambled = true});
  Session run(Folder, Machine);
  ASSERT_TRUE(run.Start());
  EXPECT_EQ(run.Shown("TipOfDay"), nullptr);
  EXPECT_TRUE(run.Windows.Main.isEnabled());
  EXPECT_EQ(run.Windows.Main.ListCount(), 250);
  EXPECT_EQ(run.Windows.Main.Panel(2), QStringLiteral(" 1/ 250"));
  EXPECT_EQ(run.Windows.Shared.CurListIndex, 0);
  EXPECT_TRUE(test::CheckFiles(Folder.File("data")));
}

TEST_F(StartTest, WhileAnotherApplicationHoldsTheDataNothingCanBeChanged) {
  MakeData({2});
  std::ofstream(Folder.File("data") + "/quill.dat", std::ios::app) << "NoOfUses=1\r\n";
  Answerer ok(QStringLiteral("BtnOK"));
  Session run(Folder, Machine);
  ASSERT_TRUE(run.Start());
  ASSERT_EQ(ok.Seen.size(), 1);
  EXPECT_TRUE(ok.Seen[0].startsWith(QStringLiteral("Data File In Use|")));
  EXPECT_EQ(Header("NoOfUses"), "2");
  EXPECT_FALSE(run.Windows.Main.findChild<QPushButton*>(QStringLiteral("BtnNew"))->isEnabled());

  const std::string path = run.Windows.Shared.DataFile;
  ASSERT_EQ(run.Access.WriteEntry(path, "General Info", "NoOfUses", "1"), RunTimeError::None);
  run.Windows.Guard.InUseTimer.setInterval(1);
  EXPECT_TRUE(QTest::qWaitFor([&] {
    return run.Windows.Main.findChild<QPushButton*>(QStringLiteral("BtnNew"))->isEnabled();
  }));
  run.Windows.Main.close();
  EXPECT_EQ(run.End.Ended, 1);
  EXPECT_EQ(Header("NoOfUses"), "0");
}

TEST_F(StartTest, DataThatCannotBeWrittenAreShownAndLeftAlone) {
  MakeData({2});
  Answerer ok(QStringLiteral("BtnOK"));
  Session run(Folder, Machine);
  run.Place.IsFirstInstance = [this] {
    Machine.FailWrites(RunTimeError::PermissionDenied);
    return true;
  };
  ASSERT_TRUE(run.Start());
  ASSERT_EQ(ok.Seen.size(), 1) << ok.Seen.join(QLatin1Char('\n')).toStdString();
  EXPECT_TRUE(ok.Seen[0].contains(QStringLiteral("cannot be written")));
  EXPECT_EQ(run.Windows.Main.ListCount(), 2);
  Machine.Reset();
  run.Windows.ExitApplication();
  EXPECT_EQ(Header("NoOfUses"), "") << "never counted, so not to be taken off";
}

TEST_F(StartTest, DamagedChainsAreShownAsFarAsTheyGoAndNothingIsChanged) {
  MakeData({5});
  std::string damaged = Folder.ReadFile("data/quill.dat");
  const auto at = damaged.find("NameFirstRecord=");
  damaged.replace(at, damaged.find("\r\n", at) - at, "NameFirstRecord=999");
  Folder.WriteFile("data/quill.dat", damaged);
  const std::string records = Folder.ReadFile("data/quill0.dat");
  Answerer ok(QStringLiteral("BtnOK"));
  Session run(Folder, Machine);
  ASSERT_TRUE(run.Start());
  ASSERT_EQ(ok.Seen.size(), 1);
  EXPECT_TRUE(ok.Seen[0].contains(QStringLiteral("damaged")));
  EXPECT_EQ(run.Windows.Main.ListCount(), 5) << "reached by the other chain";
  EXPECT_EQ(Folder.ReadFile("data/quill0.dat"), records);
  EXPECT_EQ(Header("NameFirstRecord"), "999");
}

TEST_F(StartTest, AskedToEndInTheMiddleOfLongWorkItLeavesAtOnce) {
  MakeData({.Live = 3000, .Deleted = 0, .Scrambled = true});
  const std::string before = Folder.ReadFile("data/quill7.dat");
  Session run(Folder, Machine);
  QTimer::singleShot(0, [&] { run.Windows.ExitApplication(); });
  EXPECT_FALSE(run.Start());
  EXPECT_EQ(run.End.Ended, 1);
  EXPECT_GT(run.End.EndedNow, 0);
  EXPECT_EQ(Header("NoOfUses"), "") << "not counted yet";
}

}  // namespace
}  // namespace quillary
