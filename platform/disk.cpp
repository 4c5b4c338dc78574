#include "platform/disk.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <limits>
#include <memory>
#include <utility>

namespace quillary {

namespace {

constexpr uid_t KeptOwner = static_cast<uid_t>(-1);

constexpr std::int64_t NsPerSecond = 1'000'000'000;

// The slowest kernel clock in use ticks every 10 ms.
constexpr std::int64_t FineTickNs = 20'000'000;
// FAT counts in steps of two seconds.
constexpr std::int64_t CoarseTickNs = 2 * NsPerSecond + 100'000'000;

std::int64_t Nanoseconds(const timespec& time) {
  // Dates beyond the year 2262 exist: any program may set them.
  constexpr std::int64_t lastSecond = std::numeric_limits<std::int64_t>::max() / NsPerSecond - 1;
  return std::clamp<std::int64_t>(time.tv_sec, -lastSecond, lastSecond) * NsPerSecond +
         time.tv_nsec;
}

FileStamp StampOf(const struct stat& status) {
  FileStamp stamp;
  stamp.Device = status.st_dev;
  stamp.Inode = status.st_ino;
  stamp.Size = status.st_size;
  stamp.ModifiedNs = Nanoseconds(status.st_mtim);
  stamp.ChangedNs = Nanoseconds(status.st_ctim);
  stamp.Permissions = status.st_mode & 07777U;
  stamp.IsFolder = S_ISDIR(status.st_mode);
  return stamp;
}

// The list of others that may read or write a file besides its owner and group, as the file system
// keeps it. Empty where there is none.
constexpr const char* AccessListName = "system.posix_acl_access";
std::string AccessList(const std::string& path) {
  const ssize_t size = getxattr(path.c_str(), AccessListName, nullptr, 0);
  if (size <= 0) return {};
  std::string list(static_cast<std::size_t>(size), '\0');
  const ssize_t got = getxattr(path.c_str(), AccessListName, list.data(), list.size());
  list.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  return list;
}

// Repeats a system call that a signal interrupted.
template <typename Call>
auto Repeat(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

RunTimeError ResultOf(int result) {
  return RunTimeErrorOf(result < 0 ? errno : 0);
}

// For calls that do not need the last part of the path: what is missing then is a folder.
RunTimeError FolderResultOf(int result) {
  if (result < 0 && errno == ENOENT) return RunTimeError::PathNotFound;
  return ResultOf(result);
}

// The descriptor of a regular file, or -1.
int OpenToRead(const std::string& path, struct stat& status, RunTimeError& error) {
  // Without O_NONBLOCK the opening of a FIFO would wait for someone to write into it.
  const int number =
      Repeat([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK); });
  error = ResultOf(number);
  if (number < 0) return number;
  error = ResultOf(fstat(number, &status));
  if (error == RunTimeError::None && !S_ISREG(status.st_mode)) error = RunTimeError::PathAccess;
  if (error == RunTimeError::None) return number;
  close(number);
  return -1;
}

// Closes a descriptor of which nothing is expected any more.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return number_; }

 private:
  int number_;
};

}  // namespace

bool FileStamp::IsSettled(std::int64_t clockNs) const {
  const bool coarse = ModifiedNs % NsPerSecond == 0 && ChangedNs % NsPerSecond == 0;
  const std::int64_t latest = clockNs - (coarse ? CoarseTickNs : FineTickNs);
  return ModifiedNs <= latest && ChangedNs <= latest;
}

RunTimeError HostDisk::Stamp(const std::string& path, FileStamp& stamp) {
  struct stat status = {};
  const int result = Repeat([&] { return stat(path.c_str(), &status); });
  if (result == 0) stamp = StampOf(status);
  return ResultOf(result);
}

RunTimeError HostDisk::Read(const std::string& path, std::string& bytes, FileStamp& stamp) {
  struct stat status = {};
  RunTimeError error = RunTimeError::None;
  const Descriptor file(OpenToRead(path, status, error));
  std::string read;
  std::swap(read, bytes);
  if (error != RunTimeError::None) return error;

  // One byte more than the size, so that a file which did not grow needs no second buffer.
  read.resize(static_cast<std::size_t>(status.st_size) + 1);
  std::size_t length = 0;
  while (true) {
    if (length == read.size()) read.resize(length * 2);
    const ssize_t got =
        Repeat([&] { return ::read(file.Number(), &read[length], read.size() - length); });
    if (got < 0) return RunTimeErrorOf(errno);
    if (got == 0) break;
    length += static_cast<std::size_t>(got);
  }
  read.resize(length);
  bytes = std::move(read);
  stamp = StampOf(status);
  return RunTimeError::None;
}

RunTimeError HostDisk::Open(const std::string& path, int& handle, FileStamp& stamp) {
  struct stat status = {};
  RunTimeError error = RunTimeError::None;
  const int number = OpenToRead(path, status, error);
  if (error != RunTimeError::None) return error;
  handle = number;
  stamp = StampOf(status);
  return error;
}

RunTimeError HostDisk::ReadPart(int handle, std::size_t most, std::string& bytes) {
  bytes.resize(most);
  const ssize_t got = Repeat([&] { return ::read(handle, bytes.data(), bytes.size()); });
  bytes.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
  return got < 0 ? RunTimeErrorOf(errno) : RunTimeError::None;
}

RunTimeError HostDisk::List(const std::string& folder, std::vector<std::string>& names) {
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.c_str()), closedir);
  if (!stream) return FolderResultOf(-1);

  std::vector<std::string> found;
  while (true) {
    errno = 0;
    const dirent* entry = readdir(stream.get());
    if (entry == nullptr) break;
    std::string name = entry->d_name;
    if (name != "." && name != "..") found.push_back(std::move(name));
  }
  if (errno != 0) return RunTimeErrorOf(errno);
  names = std::move(found);
  return RunTimeError::None;
}

RunTimeError HostDisk::Create(const std::string& path, unsigned permissions, int& handle) {
  const int number = Repeat([&] {
    return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                static_cast<mode_t>(permissions & 0600U));
  });
  if (number < 0) return FolderResultOf(number);

  // The mode of `open` is subject to the umask. A file system without permissions has nothing to
  // set (a stick may say that its files are another's); refusing to save there would help nobody.
  if (fchmod(number, permissions) != 0 && errno != ENOTSUP && errno != EPERM) {
    const RunTimeError error = RunTimeErrorOf(errno);
    close(number);
    unlink(path.c_str());
    return error;
  }
  handle = number;
  return RunTimeError::None;
}

RunTimeError HostDisk::CopyAccess(const std::string& path, int handle) {
  struct stat old = {};
  struct stat own = {};
  if (Repeat([&] { return stat(path.c_str(), &old); }) < 0) {
    return errno == ENOENT ? RunTimeError::None : RunTimeErrorOf(errno);
  }
  if (fstat(handle, &own) < 0) return RunTimeErrorOf(errno);
  bool isForGroup = true;
  if (own.st_uid != old.st_uid || own.st_gid != old.st_gid) {
    // Only the administrator can give a file away; whoever is in the group can give it to that.
    isForGroup = fchown(handle, old.st_uid, old.st_gid) == 0 ||
                 fchown(handle, KeptOwner, old.st_gid) == 0 || own.st_gid == old.st_gid;
  }
  const std::string list = AccessList(path);
  if (list.empty()) {
    // A folder may give lists to what is made in it.
    (void)fremovexattr(handle, AccessListName);
  } else {
    // With a list, the permissions of the group are the most that anybody in the list has.
    isForGroup = isForGroup && fsetxattr(handle, AccessListName, list.data(), list.size(), 0) == 0;
  }
  constexpr mode_t forGroup = 0070;
  const mode_t permissions = old.st_mode & (isForGroup ? 0777U : 0777U & ~forGroup);
  // A file system without permissions has nothing to set.
  if (fchmod(handle, permissions) == 0 || errno == ENOTSUP || errno == EPERM) {
    return RunTimeError::None;
  }
  return RunTimeErrorOf(errno);
}

RunTimeError HostDisk::Write(int handle, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = Repeat([&] { return write(handle, bytes.data(), bytes.size()); });
    if (written < 0) return RunTimeErrorOf(errno);
    if (written == 0) return RunTimeError::DeviceError;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  // The bytes set out for the disk now, so that Sync finds them there. Only Sync tells of failures.
  (void)sync_file_range(handle, 0, 0, SYNC_FILE_RANGE_WRITE);
  return RunTimeError::None;
}

RunTimeError HostDisk::Reserve(int handle, std::int64_t bytes, std::size_t files) {
  // Where a file system does not know a figure it says 0 of all.
  struct statvfs room = {};
  if (fstatvfs(handle, &room) == 0 && room.f_files > 0 && room.f_favail < files) {
    return RunTimeError::DiskFull;
  }
  struct stat status = {};
  if (fstat(handle, &status) != 0) return ResultOf(-1);
  const int result =
      Repeat([&] { return fallocate(handle, FALLOC_FL_KEEP_SIZE, status.st_size, bytes); });
  if (result == 0) return RunTimeError::None;
  if (const RunTimeError error = ResultOf(result); error == RunTimeError::DiskFull) return error;
  const bool isEnough = room.f_blocks == 0 || room.f_bavail >= static_cast<std::uint64_t>(bytes) /
                                                                   std::max(room.f_frsize, 1UL);
  return isEnough ? RunTimeError::None : RunTimeError::DiskFull;
}

void HostDisk::Release(const std::string& path) {
  const Descriptor file(
      Repeat([&] { return open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); }));
  struct stat status = {};
  if (fstat(file.Number(), &status) != 0) return;
  static_cast<void>(ResultOf(ftruncate(file.Number(), status.st_size)));
}

RunTimeError HostDisk::Sync(int handle) {
  return ResultOf(Repeat([&] { return fsync(handle); }));
}

RunTimeError HostDisk::SyncAll(const std::vector<int>& handles) {
  // What others have written goes to the disk with them: not for a few.
  constexpr std::size_t Few = 8;
  struct statfs status = {};
  const bool isOneByOne =
      handles.size() <= Few || fstatfs(handles.front(), &status) != 0 ||
      // Behind it is another program, which hears of the syncing of files alone.
      status.f_type == FUSE_SUPER_MAGIC;
  // The descriptor tells of every failure since it was opened.
  if (!isOneByOne) return ResultOf(Repeat([&] { return syncfs(handles.front()); }));
  for (const int handle : handles) {
    const RunTimeError error = Sync(handle);
    if (error != RunTimeError::None) return error;
  }
  return RunTimeError::None;
}

RunTimeError HostDisk::Close(int handle) {
  // The descriptor is free even after EINTR; a second close could hit somebody else's.
  const int result = close(handle);
  return result < 0 && errno == EINTR ? RunTimeError::None : ResultOf(result);
}

RunTimeError HostDisk::Link(const std::string& from, const std::string& to) {
  struct stat status = {};
  if (lstat(from.c_str(), &status) != 0) return ResultOf(-1);
  if (!S_ISREG(status.st_mode)) return RunTimeError::PathAccess;
  return ResultOf(link(from.c_str(), to.c_str()));
}

RunTimeError HostDisk::Rename(const std::string& from, const std::string& to) {
  return ResultOf(rename(from.c_str(), to.c_str()));
}

RunTimeError HostDisk::Remove(const std::string& path) {
  return ResultOf(unlink(path.c_str()));
}

RunTimeError HostDisk::MakeFolder(const std::string& path) {
  return FolderResultOf(mkdir(path.c_str(), 0700));
}

RunTimeError HostDisk::SyncFolder(const std::string& folder) {
  const Descriptor opened(
      Repeat([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (opened.Number() < 0) return FolderResultOf(-1);
  const int result = Repeat([&] { return fsync(opened.Number()); });
  // Some network file systems cannot sync a folder; there is nothing more that could be done.
  if (result < 0 && (errno == EINVAL || errno == ENOTSUP)) return RunTimeError::None;
  return ResultOf(result);
}

std::int64_t HostDisk::ClockNs() const {
  // The coarse clock is the one that the kernel stamps files with; the fine one runs ahead of it.
  timespec now = {};
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  return Nanoseconds(now);
}

}  // namespace quillary
