#include "platform/disk.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "platform/process.h"
#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

class HostDiskTest : public testing::Test {
 protected:
  FileStamp Stamp(const std::string& name) {
    FileStamp stamp;
    EXPECT_EQ(disk_.Stamp(folder_.File(name), stamp), RunTimeError::None);
    return stamp;
  }
  // A file that is open to be written.
  int Create(const std::string& name) {
    int handle = -1;
    EXPECT_EQ(disk_.Create(folder_.File(name), 0600, handle), RunTimeError::None);
    EXPECT_EQ(disk_.Write(handle, "bytes"), RunTimeError::None);
    return handle;
  }

  TempFolder folder_;
  HostDisk disk_;
};

TEST_F(HostDiskTest, ReadsAnyBytesWithTheStampOfTheFileButNoDevices) {
  std::string bytes;
  FileStamp stamp;
  std::string large(1'000'000, 'x');
  large[500'000] = '\0';
  folder_.WriteFile("large", large);
  EXPECT_EQ(disk_.Read(folder_.File("large"), bytes, stamp), RunTimeError::None);
  EXPECT_EQ(bytes, large);
  EXPECT_EQ(stamp, Stamp("large"));
  // The file system does not know its size.
  EXPECT_EQ(disk_.Read("/proc/self/status", bytes, stamp), RunTimeError::None);
  EXPECT_NE(bytes.find("Name:"), std::string::npos);

  ASSERT_EQ(mkfifo(folder_.File("fifo").c_str(), 0600), 0);
  for (const std::string& path : {folder_.File("fifo"), folder_.Path(), std::string("/dev/zero")}) {
    EXPECT_EQ(disk_.Read(path, bytes, stamp), RunTimeError::PathAccess) << path;
  }
}

TEST_F(HostDiskTest, KeepsRoomForAFileUntilItIsReleased) {
  const std::string path = folder_.File("room");
  const auto kept = [&] {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 5);
    return status.st_blocks * 512;
  };
  const int handle = Create("room");
  const auto space = static_cast<std::int64_t>(std::filesystem::space(path).available);
  EXPECT_EQ(disk_.Reserve(handle, 2 * space, 1), RunTimeError::DiskFull);
  constexpr std::int64_t Room = 1'000'000;
  ASSERT_EQ(disk_.Reserve(handle, Room, 1), RunTimeError::None);
  ASSERT_EQ(disk_.Close(handle), RunTimeError::None);
  EXPECT_GT(kept(), Room) << "not at the expense of what is written";
  disk_.Release(path);
  EXPECT_LT(kept(), Room);
}

TEST_F(HostDiskTest, TellsWhyItCannot) {
  EXPECT_EQ(disk_.Close(Create("file")), RunTimeError::None);
  folder_.WriteFile("away", "");
  std::filesystem::create_symlink("file", folder_.File("link"));
  std::string bytes;
  FileStamp stamp;
  std::vector<std::string> names;
  int handle = -1;
  const auto path = [this](const char* name) { return folder_.File(name); };
  EXPECT_EQ(disk_.Read(path("none"), bytes, stamp), RunTimeError::FileNotFound);
  EXPECT_EQ(disk_.Create(path("file"), 0600, handle), RunTimeError::PathAccess);
  EXPECT_EQ(disk_.Create(path("link"), 0600, handle), RunTimeError::PathAccess);
  EXPECT_EQ(disk_.Create(path("none/new"), 0600, handle), RunTimeError::PathNotFound);
  EXPECT_EQ(disk_.Link(path("file"), path("away")), RunTimeError::PathAccess);
  EXPECT_EQ(disk_.Link(path("link"), path("new")), RunTimeError::PathAccess);
  EXPECT_EQ(disk_.Link(path("none"), path("new")), RunTimeError::FileNotFound);
  EXPECT_EQ(disk_.Rename(path("none"), path("file")), RunTimeError::FileNotFound);
  EXPECT_EQ(disk_.Remove(path("none")), RunTimeError::FileNotFound);
  EXPECT_EQ(disk_.MakeFolder(path("file")), RunTimeError::PathAccess);
  EXPECT_EQ(disk_.SyncFolder(path("none")), RunTimeError::PathNotFound);
  EXPECT_EQ(disk_.List(path("file"), names), RunTimeError::PathNotFound);
  EXPECT_EQ(folder_.ReadFile("file"), "bytes");

  handle = open("/dev/full", O_WRONLY | O_CLOEXEC);
  EXPECT_EQ(disk_.Write(handle, "text"), RunTimeError::DiskFull);
  EXPECT_EQ(disk_.Close(handle), RunTimeError::None);
  EXPECT_EQ(disk_.Write(handle, "text"), RunTimeError::DeviceError);
  // Few files are synced one by one, many together.
  for (const std::size_t count : {1U, 20U}) {
    const int open = Create("new" + std::to_string(count));
    EXPECT_EQ(disk_.SyncAll(std::vector<int>(count, open)), RunTimeError::None);
    EXPECT_EQ(disk_.Close(open), RunTimeError::None);
    EXPECT_EQ(disk_.SyncAll(std::vector<int>(count, open)), RunTimeError::DeviceError);
  }
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
  constexpr time_t FarFuture = 10'000'000'000;  // the year 2286
  const timespec times[2] = {{FarFuture, 0}, {FarFuture, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, folder_.File("file").c_str(), times, 0), 0);
  EXPECT_FALSE(Stamp("file").IsSettled(disk_.ClockNs()));
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

TEST(ProcessTest, KnowsWhatRuns) {
  EXPECT_TRUE(ProcessIsAlive(ProcessNumber()));
  EXPECT_TRUE(ProcessIsAlive(1));  // another user's, mostly
  constexpr long None = 4194304;   // more than any system gives out
  for (const long number : {0L, -1L, None, None << 20}) EXPECT_FALSE(ProcessIsAlive(number));
}

}  // namespace
}  // namespace quillary::test
