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

  static std::string Header(const std::string& counter) {
    return "[General Info]\r\nApplication=Quillary\r\n" + counter;
  }
  // What the other application does.
  void WriteCounter(const std::string& counter) {
    folder_.WriteFile("quill.dat", Header("NoOfUses=" + counter + "\r\n"));
  }
  void ExpectCounter(const std::string& counter) {
    EXPECT_EQ(folder_.ReadFile("quill.dat"), Header("NoOfUses=" + counter + "\r\n"));
  }
  // This program becomes the only user, and its windows are told.
  void ExpectTimerTakesOver() {
    guard_.InUseTimer.start(1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !shared_.InUse; }));
    EXPECT_EQ(applied_, 1);
    ExpectCounter("1");
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
  folder_.WriteFile("quill.dat", Header(""));
  EXPECT_EQ(guard_.IncrementUses(), RunTimeError::None);
  ExpectCounter("1");

  struct Case {
    const char* Before;
    const char* Incremented;
    const char* Decremented;
  };
  for (const Case& example : std::initializer_list<Case>{{"2", "3", "1"},
                                                         {"0", "1", "-1"},
                                                         {"-3", "1", "-4"},
                                                         {"", "1", "-1"},
                                                         {"many", "1", "-1"},
                                                         {"99999", "32767", "32766"},
                                                         {"-99999", "1", "-32768"}}) {
    WriteCounter(example.Before);
    EXPECT_EQ(guard_.IncrementUses(), RunTimeError::None);
    ExpectCounter(example.Incremented);
    WriteCounter(example.Before);
    EXPECT_EQ(guard_.DecrementUses(), RunTimeError::None);
    ExpectCounter(example.Decremented);
  }
}

TEST_F(SharingGuardTest, UncountedItChangesNothingUntilItCanBeCounted) {
  EXPECT_EQ(guard_.IncrementUses(), RunTimeError::FileNotFound);
  EXPECT_EQ(guard_.DecrementUses(), RunTimeError::FileNotFound);
  EXPECT_FALSE(std::filesystem::exists(folder_.File("quill.dat")));
  guard_.CheckInUse();
  EXPECT_TRUE(shared_.InUse);
  WriteCounter("0");
  ExpectTimerTakesOver();
}

TEST_F(SharingGuardTest, AResetThatCannotBeWrittenChangesNothing) {
  shared_.InUse = true;
  EXPECT_NE(guard_.ResetUses(), RunTimeError::None);
  EXPECT_TRUE(shared_.InUse);

  // What it could not take over it does not change either, until it can.
  shared_.InUse = false;
  EXPECT_NE(guard_.TakeOver(), RunTimeError::None);
  guard_.CheckInUse();
  EXPECT_TRUE(shared_.InUse);
  WriteCounter("7");
  ExpectTimerTakesOver();
}

}  // namespace
}  // namespace quillary::test
