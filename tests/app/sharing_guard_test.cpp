#include "app/sharing_guard.h"

#include <gtest/gtest.h>

#include <QTest>
#include <filesystem>

#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

class SharingGuardTest : public testing::Test {
 protected:
  void SetUp() override {
    shared_.DataPath = ProgramPath(folder_.Path()) + "\\";
    shared_.DataFile = shared_.DataPath + "quill.dat";
  }

  // What the other application does.
  void WriteCounter(const std::string& counter) {
    folder_.WriteFile("quill.dat",
                      "[General Info]\r\nApplication=Quillary\r\nNoOfUses=" + counter + "\r\n");
  }
  void ExpectCounter(const std::string& counter) {
    EXPECT_EQ(folder_.ReadFile("quill.dat"),
              "[General Info]\r\nApplication=Quillary\r\nNoOfUses=" + counter + "\r\n");
  }

  TempFolder folder_;
  HostDisk disk_;
  FileNames names_{disk_, folder_.Path(), folder_.Path()};
  Profile profile_{disk_, names_};
  SharedData shared_;
  int applied_ = 0;
  SharingGuard guard_{profile_, shared_, [this] { ++applied_; }};
};

TEST_F(SharingGuardTest, CountsThisProgramFromWhateverStandsThere) {
  folder_.WriteFile("quill.dat", "[General Info]\r\nApplication=Quillary\r\n");
  EXPECT_EQ(guard_.IncrementUses(), RunTimeError::None);
  ExpectCounter("1");
  guard_.CheckInUse();
  EXPECT_FALSE(shared_.InUse);

  const std::pair<const char*, const char*> counters[] = {
      {"1", "2"}, {"-3", "1"}, {"", "1"}, {"many", "1"}, {" 4", "5"}, {"99999", "32767"}};
  for (const auto& [before, after] : counters) {
    WriteCounter(before);
    EXPECT_EQ(guard_.IncrementUses(), RunTimeError::None);
    ExpectCounter(after);
  }
}

TEST_F(SharingGuardTest, UncountedItChangesNothingUntilItCanBeCounted) {
  EXPECT_EQ(guard_.IncrementUses(), RunTimeError::FileNotFound);
  EXPECT_EQ(guard_.DecrementUses(), RunTimeError::FileNotFound);
  EXPECT_FALSE(std::filesystem::exists(folder_.File("quill.dat")));
  guard_.CheckInUse();
  EXPECT_TRUE(shared_.InUse);
  WriteCounter("0");
  guard_.InUseTimer.start(1);
  EXPECT_TRUE(QTest::qWaitFor([this] { return !shared_.InUse; }));
  EXPECT_EQ(applied_, 1);
  ExpectCounter("1");
}

TEST_F(SharingGuardTest, TheLastUserMayTakeTheCounterBelowZero) {
  const std::pair<const char*, const char*> counters[] = {
      {"2", "1"}, {"0", "-1"}, {"", "-1"}, {"-99999", "-32768"}};
  for (const auto& [before, after] : counters) {
    WriteCounter(before);
    EXPECT_EQ(guard_.DecrementUses(), RunTimeError::None);
    ExpectCounter(after);
  }
}

TEST_F(SharingGuardTest, AResetThatCannotBeWrittenChangesNothing) {
  shared_.InUse = true;
  std::filesystem::remove_all(folder_.Path());
  EXPECT_NE(guard_.ResetUses(), RunTimeError::None);
  EXPECT_TRUE(shared_.InUse);

  // What it could not take over it does not change either, until it can.
  shared_.InUse = false;
  EXPECT_NE(guard_.TakeOver(), RunTimeError::None);
  guard_.CheckInUse();
  EXPECT_TRUE(shared_.InUse);
  std::filesystem::create_directory(folder_.Path());
  WriteCounter("7");
  guard_.InUseTimer.start(1);
  EXPECT_TRUE(QTest::qWaitFor([this] { return !shared_.InUse; }));
  ExpectCounter("1");
}

TEST_F(SharingGuardTest, TheTimerFollowsTheOtherApplication) {
  EXPECT_EQ(guard_.InUseTimer.interval(), 2000);
  EXPECT_FALSE(guard_.InUseTimer.isActive());
  WriteCounter("1");
  guard_.InUseTimer.setInterval(1);
  guard_.InUseTimer.start();
  QTest::qWait(20);
  EXPECT_EQ(applied_, 0);

  WriteCounter("2");
  EXPECT_TRUE(QTest::qWaitFor([&] { return applied_ == 1; }));
  EXPECT_TRUE(shared_.InUse);
  WriteCounter("1");
  EXPECT_TRUE(QTest::qWaitFor([&] { return applied_ == 2; }));
  EXPECT_FALSE(shared_.InUse);
  QTest::qWait(20);
  EXPECT_EQ(applied_, 2);
}

}  // namespace
}  // namespace quillary::test
