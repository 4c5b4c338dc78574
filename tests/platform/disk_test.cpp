#include "platform/disk.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

class HostDiskTest : public testing::Test {
 protected:
  RunTimeError Read(const std::string& name) {
    return disk_.Read(folder_.File(name), bytes_, stamp_);
  }
  FileStamp Stamp(const std::string& name) {
    FileStamp stamp;
    EXPECT_EQ(disk_.Stamp(folder_.File(name), stamp), RunTimeError::None);
    return stamp;
  }

  TempFolder folder_;
  HostDisk disk_;
  std::string bytes_;
  FileStamp stamp_;
};

TEST_F(HostDiskTest, ReadsAnyBytesWithTheStampOfTheFile) {
  folder_.WriteFile("empty", "");
  EXPECT_EQ(Read("empty"), RunTimeError::None);
  EXPECT_EQ(bytes_, "");

  std::string large(1'000'000, 'x');
  large[500'000] = '\0';
  folder_.WriteFile("large", large);
  EXPECT_EQ(Read("large"), RunTimeError::None);
  EXPECT_EQ(bytes_, large);
  EXPECT_EQ(stamp_, Stamp("large"));
  EXPECT_EQ(stamp_.Size, 1'000'000);
}

TEST_F(HostDiskTest, ReadsFilesWhoseSizeTheFileSystemDoesNotKnow) {
  EXPECT_EQ(disk_.Read("/proc/self/status", bytes_, stamp_), RunTimeError::None);
  EXPECT_NE(bytes_.find("Name:"), std::string::npos);
}

TEST_F(HostDiskTest, ReadsNothingButRegularFiles) {
  ASSERT_EQ(mkfifo(folder_.File("fifo").c_str(), 0600), 0);
  EXPECT_EQ(Read("fifo"), RunTimeError::PathAccess);
  EXPECT_EQ(Read("."), RunTimeError::PathAccess);
  EXPECT_EQ(disk_.Read("/dev/zero", bytes_, stamp_), RunTimeError::PathAccess);
  EXPECT_EQ(Read("missing"), RunTimeError::FileNotFound);
}

TEST_F(HostDiskTest, KeepsRoomForAFileUntilItIsReleased) {
  const std::string path = folder_.File("room");
  const auto kept = [&] {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 5);
    return status.st_blocks * 512;
  };
  int handle = -1;
  ASSERT_EQ(disk_.Create(path, 0600, handle), RunTimeError::None);
  ASSERT_EQ(disk_.Write(handle, "bytes"), RunTimeError::None);
  const auto space = static_cast<std::int64_t>(std::filesystem::space(path).available);
  EXPECT_EQ(disk_.Reserve(handle, 2 * space, 1), RunTimeError::DiskFull);
  constexpr std::int64_t Room = 1'000'000;
  ASSERT_EQ(disk_.Reserve(handle, Room, 1), RunTimeError::None);
  ASSERT_EQ(disk_.Close(handle), RunTimeError::None);
  EXPECT_GT(kept(), Room) << "not at the expense of what is written";
  disk_.Release(path);
  EXPECT_LT(kept(), Room);
}

TEST_F(HostDiskTest, CreatesWithExactPermissionsAndNeverOverOrThroughWhatIsThere) {
  const mode_t umaskBefore = umask(0077);
  int handle = -1;
  EXPECT_EQ(disk_.Create(folder_.File("new"), 0664, handle), RunTimeError::None);
  umask(umaskBefore);
  EXPECT_EQ(Stamp("new").Permissions, 0664U);
  EXPECT_EQ(disk_.Write(handle, "some "), RunTimeError::None);
  EXPECT_EQ(disk_.Write(handle, "text"), RunTimeError::None);
  EXPECT_EQ(disk_.Sync(handle), RunTimeError::None);
  EXPECT_EQ(disk_.Close(handle), RunTimeError::None);
  EXPECT_EQ(folder_.ReadFile("new"), "some text");

  std::filesystem::create_symlink(folder_.File("elsewhere"), folder_.File("link"));
  EXPECT_EQ(disk_.Create(folder_.File("new"), 0600, handle), RunTimeError::PathAccess);
  EXPECT_EQ(disk_.Create(folder_.File("link"), 0600, handle), RunTimeError::PathAccess);
  EXPECT_EQ(disk_.Create(folder_.File("none/new"), 0600, handle), RunTimeError::PathNotFound);
  EXPECT_FALSE(std::filesystem::exists(folder_.File("elsewhere")));
  EXPECT_EQ(folder_.ReadFile("new"), "some text");
}

TEST_F(HostDiskTest, AWriteThatFailsSaysWhy) {
  int handle = open("/dev/full", O_WRONLY | O_CLOEXEC);
  ASSERT_GE(handle, 0);
  EXPECT_EQ(disk_.Write(handle, "text"), RunTimeError::DiskFull);
  EXPECT_EQ(disk_.Close(handle), RunTimeError::None);
  EXPECT_EQ(disk_.Write(handle, "text"), RunTimeError::DeviceError);
}

TEST_F(HostDiskTest, SyncsFewFilesAndManyAndTellsOfAHandleThatIsNone) {
  std::vector<int> handles;
  for (const std::size_t count : {3U, 20U}) {
    while (handles.size() < count) {
      const std::string name = "file" + std::to_string(handles.size());
      ASSERT_EQ(disk_.Create(folder_.File(name), 0600, handles.emplace_back()), RunTimeError::None);
      ASSERT_EQ(disk_.Write(handles.back(), name), RunTimeError::None);
    }
    EXPECT_EQ(disk_.SyncAll(handles), RunTimeError::None);
  }
  for (const int handle : handles) EXPECT_EQ(disk_.Close(handle), RunTimeError::None);
  EXPECT_NE(disk_.SyncAll(handles), RunTimeError::None);
}

TEST_F(HostDiskTest, GivesOnlyAFileItselfASecondName) {
  folder_.WriteFile("file", "bytes");
  const auto link = [&](const char* from, const char* to) {
    return disk_.Link(folder_.File(from), folder_.File(to));
  };
  EXPECT_EQ(link("file", "second"), RunTimeError::None);
  EXPECT_EQ(Stamp("second"), Stamp("file"));
  EXPECT_EQ(link("file", "second"), RunTimeError::PathAccess);
  EXPECT_EQ(link("none", "third"), RunTimeError::FileNotFound);
  std::filesystem::create_symlink("file", folder_.File("away"));
  EXPECT_EQ(link("away", "third"), RunTimeError::PathAccess);
}

TEST_F(HostDiskTest, RenamesRemovesAndLists) {
  folder_.WriteFile("a", "old");
  folder_.WriteFile("b", "new");
  EXPECT_EQ(disk_.Rename(folder_.File("b"), folder_.File("a")), RunTimeError::None);
  EXPECT_EQ(folder_.ReadFile("a"), "new");
  EXPECT_EQ(disk_.Rename(folder_.File("b"), folder_.File("a")), RunTimeError::FileNotFound);

  EXPECT_EQ(disk_.MakeFolder(folder_.File("inner")), RunTimeError::None);
  EXPECT_EQ(Stamp("inner").Permissions & 0077U, 0U);
  EXPECT_EQ(disk_.MakeFolder(folder_.File("inner")), RunTimeError::PathAccess);
  EXPECT_EQ(disk_.SyncFolder(folder_.Path()), RunTimeError::None);
  EXPECT_EQ(disk_.SyncFolder(folder_.File("none")), RunTimeError::PathNotFound);

  std::vector<std::string> names;
  EXPECT_EQ(disk_.List(folder_.Path(), names), RunTimeError::None);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"a", "inner"}));

  EXPECT_EQ(disk_.Remove(folder_.File("a")), RunTimeError::None);
  EXPECT_EQ(disk_.Remove(folder_.File("a")), RunTimeError::FileNotFound);
  EXPECT_EQ(disk_.List(folder_.File("a"), names), RunTimeError::PathNotFound);
}

// What the profile layer's memory of files rests on.
TEST_F(HostDiskTest, AWriteAfterAStampHasSettledChangesTheStamp) {
  folder_.WriteFile("file", "old");
  EXPECT_FALSE(Stamp("file").IsSettled(disk_.ClockNs()));
  for (int round = 0; round < 5; ++round) {
    FileStamp before = Stamp("file");
    while (!before.IsSettled(disk_.ClockNs())) usleep(1000);
    folder_.WriteFile("file", "new");
    EXPECT_NE(Stamp("file"), before);
  }
}

TEST(FileStampTest, SettlesByTheFileSystemsTick) {
  constexpr std::int64_t Second = 1'000'000'000;
  constexpr std::int64_t Tick = 20'000'000;
  constexpr std::int64_t Now = 1000 * Second;
  const auto settled = [](std::int64_t modified, std::int64_t changed) {
    FileStamp stamp;
    stamp.ModifiedNs = modified;
    stamp.ChangedNs = changed;
    return stamp.IsSettled(Now);
  };
  EXPECT_TRUE(settled(Now - Tick - 1, Now - Tick - 1));
  // A program may set the one time back, but not the other.
  EXPECT_FALSE(settled(Second + 1, Now - 1));
  EXPECT_FALSE(settled(Now - 1, Now - Second + 1));
  EXPECT_FALSE(settled(Now + Second, Now + Second));
  // Whole seconds come from a file system with a slow clock.
  EXPECT_FALSE(settled(Now - 2 * Second, Now - 2 * Second));
  EXPECT_TRUE(settled(Now - 3 * Second, Now - 3 * Second));
}

TEST_F(HostDiskTest, StampsFilesOfAnyDate) {
  folder_.WriteFile("file", "");
  constexpr time_t FarFuture = 10'000'000'000;  // the year 2286
  const timespec times[2] = {{FarFuture, 0}, {FarFuture, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, folder_.File("file").c_str(), times, 0), 0);
  EXPECT_FALSE(Stamp("file").IsSettled(disk_.ClockNs()));
}

}  // namespace
}  // namespace quillary::test
