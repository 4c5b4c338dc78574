#include <filesystem>
#include <fstream>
#include <string>

#include "auxiliary/message_text.h"
#include "tests/main/session.h"
#include "tests/support/check_invariants.h"

namespace quillary::test {
namespace {

struct StartTest : ProgramTest {
  static bool CanAdd(Session& run) {
    return Control<QPushButton>(run.Windows.Main, "BtnNew").isEnabled();
  }
};

TEST_F(StartTest, OnACleanMachineItMakesADataSetAndOffersATip) {
  MsgBoxAnswerer yes;
  Session run(Folder, Machine);
  ASSERT_TRUE(run.Start());
  ASSERT_EQ(yes.Seen.size(), 1U);
  EXPECT_TRUE(yes.TitlesAndTexts()[0].starts_with("Missing data file|"));
  EXPECT_EQ(Folder.ReadFile("varek.ini"),
            "[QL32]\r\nVersion=2.0\r\n[Data Files]\r\nQuillDataPath=" +
                UpperCase(run.Names.OwnDirectory() + "quilldat\\") + "\r\n");
  EXPECT_EQ(Header("Application"), "Quillary");
  EXPECT_EQ(Header("NoOfUses"), "1");
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
  const MsgBoxAnswerer no({QStringLiteral("Missing data file")});
  Session run(Folder, Machine);
  EXPECT_FALSE(run.Start());
  EXPECT_EQ(run.Shown("MainDialog"), nullptr);
  EXPECT_EQ(Folder.ReadFile("varek.ini"), "[QL32]\r\nVersion=2.0\r\n");
  EXPECT_FALSE(std::filesystem::exists(Folder.File("quilldat")));
}

TEST_F(StartTest, ASecondInstanceTouchesNothing) {
  MakeData({3});
  Session run(Folder, Machine);
  run.IsFirstInstance = [this] {
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
  EXPECT_EQ(run.Windows.Main.Panel(2), QStringLiteral(" 1/ 250"));
  EXPECT_TRUE(CheckFiles(Folder.File("data")));
}

TEST_F(StartTest, WhileAnotherApplicationHoldsTheDataNothingIsChanged) {
  MakeData({.Live = 50, .Deleted = 0, .Scrambled = true});
  std::ofstream(Folder.File("data") + "/quill.dat", std::ios::app) << "NoOfUses=1\r\n";
  const std::string records = Folder.ReadFile("data/quill0.dat");
  MsgBoxAnswerer ok;
  Session run(Folder, Machine);
  ASSERT_TRUE(run.Start());
  ASSERT_EQ(ok.Seen.size(), 1U);
  EXPECT_TRUE(ok.TitlesAndTexts()[0].starts_with("Data File In Use|"));
  EXPECT_EQ(Header("NoOfUses"), "2");
  EXPECT_FALSE(CanAdd(run));
  EXPECT_EQ(run.Windows.Main.ListCount(), 50);
  EXPECT_EQ(Folder.ReadFile("data/quill0.dat"), records) << "not in the sorted order";

  const std::string path = run.Windows.Shared.DataFile;
  ASSERT_EQ(run.Access.WriteEntry(path, "General Info", "NoOfUses", "1"), RunTimeError::None);
  run.Windows.Guard.InUseTimer.setInterval(1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return CanAdd(run); }));
  ASSERT_EQ(run.Windows.Store.RestoreLinks(), RunTimeError::None);
  // At the end of the program at the latest.
  run.Windows.Main.close();
  EXPECT_EQ(run.End.Ended, 1);
  EXPECT_EQ(Header("NoOfUses"), "0");
  EXPECT_TRUE(CheckFiles(Folder.File("data")));
}

TEST_F(StartTest, DamagedChainsAreShownAsFarAsTheyGoAndNothingIsChanged) {
  MakeData({5});
  std::string damaged = Folder.ReadFile("data/quill.dat");
  const auto at = damaged.find("NameFirstRecord=");
  damaged.replace(at, damaged.find("\r\n", at) - at, "NameFirstRecord=999");
  Folder.WriteFile("data/quill.dat", damaged);
  const std::string records = Folder.ReadFile("data/quill0.dat");
  MsgBoxAnswerer ok;
  Session run(Folder, Machine);
  ASSERT_TRUE(run.Start());
  ASSERT_EQ(ok.Seen.size(), 1U);
  EXPECT_TRUE(ok.Seen[0].second.contains(QStringLiteral("damaged")));
  EXPECT_EQ(run.Windows.Main.ListCount(), 5) << "reached by the other chain";
  EXPECT_EQ(Folder.ReadFile("data/quill0.dat"), records);
  EXPECT_EQ(Header("NameFirstRecord"), "999");
}

// First what the user cannot do, then what he may not see.
TEST_F(StartTest, DamagedDataThatCannotBeWrittenAreToldInTwoMessages) {
  MakeData({.Live = 150});
  Folder.MakeUnreadable("data/quill1.dat");
  MsgBoxAnswerer ok;
  ok.Before = [] {
    const auto& text = Control<MessageText>(*QApplication::activeModalWidget(), "Text1");
    EXPECT_EQ(text.Shown(), text.text());
  };
  Session run(Folder, Machine);
  run.IsFirstInstance = [this] {
    Machine.FailWrites(RunTimeError::PermissionDenied);
    return true;
  };
  ASSERT_TRUE(run.Start());
  ASSERT_EQ(ok.Seen.size(), 2U) << testing::PrintToString(ok.TitlesAndTexts());
  EXPECT_TRUE(ok.Seen[0].second.startsWith(QStringLiteral("The data files cannot be written: ")));
  EXPECT_TRUE(ok.Seen[0].second.endsWith(
      QStringLiteral("\nYou can look at the names but not change them.")));
  EXPECT_EQ(ok.Seen[1].second,
            QStringLiteral("The data files are damaged or cannot be read: some names may be "
                           "missing.\nNothing was changed."));
  EXPECT_EQ(run.Windows.Main.ListCount(), 100);
  EXPECT_FALSE(CanAdd(run));
  Machine.Reset();
  run.Windows.ExitApplication();
  EXPECT_EQ(Header("NoOfUses"), "") << "never counted, so not to be taken off";
}

TEST_F(StartTest, TellsOfMissingNamesOnce) {
  MakeData({.Live = 250});
  const std::string lost = Folder.ReadFile("data/quill1.dat");
  std::filesystem::remove(Folder.File("data/quill1.dat"));
  const auto told = [&](const std::function<void(Session&)>& change = {}) {
    MsgBoxAnswerer ok;
    Session run(Folder, Machine);
    EXPECT_TRUE(run.Start());
    if (change) change(run);
    run.Windows.ExitApplication();
    return ok.Seen.empty() ? std::string() : ok.TitlesAndTexts().back();
  };
  // The links are stored without the names in it.
  EXPECT_NE(
      told([](Session& run) { EXPECT_EQ(run.Windows.Store.RestoreLinks(), RunTimeError::None); }),
      "");
  EXPECT_EQ(told(),
            "Quillary Data Files|Names are missing from quill1.dat.\n"
            "They come back when the files with them are in the data folder again.");
  EXPECT_EQ(told(), "");
  Folder.WriteFile("data/quill1.dat", lost);
  EXPECT_EQ(told([](Session& run) { EXPECT_EQ(run.Windows.Main.ListCount(), 250); }), "");
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
}  // namespace quillary::test
