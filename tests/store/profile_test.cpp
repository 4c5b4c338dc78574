#include "store/profile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <map>

#include "tests/support/fault_disk.h"
#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

struct ProfileTest : testing::Test {
  std::string Read(const std::string& file, const std::string& key) {
    return Access.ReadEntry(file, "S", key);
  }
  RunTimeError Write(const std::string& file, const std::string& key, const std::string& value) {
    return Access.WriteEntry(file, "S", key, value);
  }

  TempFolder Folder;
  FaultDisk Machine;
  FileNames Names{Machine, Folder.Path(), Folder.Path()};
  Profile Access{Machine, Names};
};

TEST_F(ProfileTest, MissingReadsAsEmptyAndWritingMakesIt) {
  EXPECT_EQ(Read("quill.dat", "x"), "");
  EXPECT_EQ(Write("QUILL.DAT", "x", " 1 "), RunTimeError::None);
  EXPECT_EQ(Read("quill.dat", "X"), " 1 ");
  EXPECT_EQ(Write("quill.dat", "y", ""), RunTimeError::None);
  EXPECT_EQ(Folder.Files(),
            (std::map<std::string, std::string>{{"QUILL.DAT", "[S]\r\nx=\" 1 \"\r\ny=\r\n"}}));
  EXPECT_EQ(Access.WriteEntry("none\\quill.dat", "S", "x", "1"), RunTimeError::PathNotFound);
  for (const auto& [section, key] : std::map<std::string, std::string>{
           {"S", "a=b"}, {"S]", "a"}, {"S\n", "a"}, {"T", ";a"}, {"U", " a"}, {"V", ""}}) {
    EXPECT_EQ(Access.WriteEntry("quill.dat", section, key, "1"), RunTimeError::PathAccess);
  }
}

TEST_F(ProfileTest, SeesWhatAnotherProgramWroteAtOnce) {
  Folder.WriteFile("quill.dat", "[S]\nx=0\n");
  const int file = open(Folder.File("quill.dat").c_str(), O_WRONLY);
  ASSERT_GE(file, 0);
  // The same length, in place, many times within one tick of the file system's clock.
  for (int i = 0; i < 2000; ++i) {
    const char digit = static_cast<char>('0' + i % 10);
    ASSERT_EQ(pwrite(file, &digit, 1, 6), 1);
    ASSERT_EQ(Read("quill.dat", "x"), std::string(1, digit)) << i;
  }
  close(file);
  for (int i = 0; i < 500; ++i) {
    const std::string digit(1, static_cast<char>('0' + i % 10));
    Folder.WriteFile("other", "[S]\nx=" + digit + "\n");
    std::filesystem::rename(Folder.File("other"), Folder.File("quill.dat"));
    ASSERT_EQ(Read("quill.dat", "x"), digit) << i;
  }
  std::filesystem::remove(Folder.File("quill.dat"));
  EXPECT_EQ(Read("quill.dat", "x"), "");
  Folder.WriteFile("Quill.DAT", "[S]\nx=7\n");
  EXPECT_EQ(Read("quill.dat", "x"), "7");
}

TEST_F(ProfileTest, AnUnchangedFileIsNotReadAgain) {
  Folder.WriteFile("quill.dat", "[S]\nx=0\n");
  while (true) {
    Read("quill.dat", "x");
    Machine.Reset();
    Read("quill.dat", "x");
    if (Machine.Calls() == 1) break;  // settles within a tick or two
  }
  Read("quill.dat", "y");
  EXPECT_EQ(Machine.Calls(), 2);
}

TEST_F(ProfileTest, EventsRunWhileAGroupOverManyFilesIsWrittenAndMayGiveItUp) {
  constexpr int Files = 30;
  const auto commit = [&](const std::string& value, const Profile::GoesOn& goesOn) {
    ProfileUpdate update(Access);
    for (int i = 0; i < Files; ++i) (void)Write(std::to_string(i) + ".dat", "x", value);
    return update.Commit(goesOn);
  };
  int calls = 0;
  EXPECT_EQ(commit("1", [&](bool) { return ++calls > 0; }), RunTimeError::None);
  EXPECT_GE(calls, 2 * Files) << "each file is made, and synced";
  const auto before = Folder.Files();
  for (const int last : {1, Files, calls}) {
    int left = last;
    EXPECT_EQ(commit("2", [&](bool) { return --left > 0; }), RunTimeError::NotReady) << last;
    EXPECT_EQ(Folder.Files(), before);
  }
}

TEST_F(ProfileTest, AGroupIsSeenAtOnceAndTakenBackWhole) {
  ASSERT_EQ(Write("quill.dat", "x", "1"), RunTimeError::None);
  const auto before = Folder.Files();
  std::string undone;
  {
    ProfileUpdate update(Access);
    (void)Write("quill.dat", "x", "2");
    update.OnUndo([&] { undone += "outer"; });
    {
      ProfileUpdate joined(Access);
      (void)Write("quill0.dat", "x", "3");
      joined.OnUndo([&] { undone += "inner "; });
      EXPECT_EQ(joined.Commit(), RunTimeError::None);
    }
    EXPECT_EQ(Read("QUILL.dat", "X"), "2");
    EXPECT_EQ(Read("quill0.dat", "x"), "3");
    ProfileSnapshot snapshot(Access);
    EXPECT_EQ(snapshot.Text("quill0.dat").Value("S", "x"), "3");
    EXPECT_EQ(Folder.Files(), before);
  }
  EXPECT_EQ(undone, "inner outer");
  EXPECT_EQ(Read("quill.dat", "x"), "1");
  EXPECT_EQ(Read("quill0.dat", "x"), "");
  EXPECT_EQ(Folder.Files(), before);

  ProfileUpdate update(Access);
  { ProfileUpdate objecting(Access); }
  EXPECT_NE(update.Commit(), RunTimeError::None);
}

TEST_F(ProfileTest, AGroupOnWhatCouldNotBeReadFails) {
  ASSERT_EQ(Write("quill.dat", "count", "5"), RunTimeError::None);
  ProfileUpdate update(Access);
  Machine.FailAt(1, RunTimeError::DeviceError, false);
  (void)Write("quill.dat", "count", Read("quill.dat", "count") + "1");
  EXPECT_EQ(update.Commit(), RunTimeError::DeviceError);
  EXPECT_EQ(Read("quill.dat", "count"), "5");
}

}  // namespace
}  // namespace quillary::test
