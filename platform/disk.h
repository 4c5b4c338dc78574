#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/run_time_error.h"

namespace quillary {

// What the file system tells of a file without reading it. Two equal stamps mean the same file
// content, unless the file was written within one tick of the file system's clock: see
// `IsSettled`.
struct FileStamp {
  std::uint64_t Device = 0;
  std::uint64_t Inode = 0;
  std::int64_t Size = 0;
  std::int64_t ModifiedNs = 0;  // nanoseconds since 1970
  std::int64_t ChangedNs = 0;   // nanoseconds since 1970; cannot be set back by a program
  unsigned Permissions = 0;     // the lower twelve bits of the mode
  bool IsFolder = false;

  bool operator==(const FileStamp&) const = default;

  // True when a write after the moment `clockNs` (of `Disk::ClockNs`) is sure to give another
  // stamp: the last change lies at least one tick of the file system's clock before it.
  bool IsSettled(std::int64_t clockNs) const;
};

// The disk, as far as the profile layer and the file names need it. Everything they do to files
// goes through these calls one by one, so that a test can fail or stop the program at any of them.
// Paths are paths of the host. No call follows a symbolic link in order to write.
class Disk {
 public:
  virtual ~Disk() = default;

  // The stamp of the file or folder at `path` (a link is followed).
  virtual RunTimeError Stamp(const std::string& path, FileStamp& stamp) = 0;
  // The whole file, and its stamp from before the first byte was read. On an error nothing is left
  // in `bytes`.
  virtual RunTimeError Read(const std::string& path, std::string& bytes, FileStamp& stamp) = 0;
  // Opens a file for reading; the stamp is from before the first byte is read.
  virtual RunTimeError Open(const std::string& path, int& handle, FileStamp& stamp) = 0;
  // The next bytes of the file, `most` at most; none at its end.
  virtual RunTimeError ReadPart(int handle, std::size_t most, std::string& bytes) = 0;
  // The names in a folder, without "." and "..", in no particular order.
  virtual RunTimeError List(const std::string& folder, std::vector<std::string>& names) = 0;

  // Makes a new file with exactly these permissions and opens it for writing. A file of that name
  // is an error (PathAccess).
  virtual RunTimeError Create(const std::string& path, unsigned permissions, int& handle) = 0;
  // Lets the same people at the new file as at the one at `path` (a link is followed): owner,
  // group, permissions and access list. Where it cannot have that group or list, its group gets no
  // access: it may be another one. A missing file gives nothing, and is no error.
  virtual RunTimeError CopyAccess(const std::string& path, int handle) = 0;
  virtual RunTimeError Write(int handle, std::string_view bytes) = 0;
  // Keeps so many bytes on the disk behind the end of the file, for `files` new files that take its
  // place; where the file system cannot, it only looks whether there is room. Kept until Release.
  virtual RunTimeError Reserve(int handle, std::int64_t bytes, std::size_t files) = 0;
  // Frees what is kept for the file beyond its end. What cannot be freed stays.
  virtual void Release(const std::string& path) = 0;
  // Returns when the file's bytes would survive a power cut.
  virtual RunTimeError Sync(int handle) = 0;
  // The same for many files of one file system, which is faster than one after the other. None of
  // them was written before the first of the handles was made. May be called in a thread of its own
  // while others use the disk.
  virtual RunTimeError SyncAll(const std::vector<int>& handles) = 0;
  // Frees the handle, whatever it returns.
  virtual RunTimeError Close(int handle) = 0;

  // Gives the file `from` a second name in its file system. A file of that name is an error
  // (PathAccess); so is a file system without second names, and a link as `from`.
  virtual RunTimeError Link(const std::string& from, const std::string& to) = 0;
  // Gives the file `from` the name `to`, in place of a file that has it.
  virtual RunTimeError Rename(const std::string& from, const std::string& to) = 0;
  virtual RunTimeError Remove(const std::string& path) = 0;
  // Makes a folder that only its owner can enter. One that exists is an error (PathAccess).
  virtual RunTimeError MakeFolder(const std::string& path) = 0;
  // Returns when the names made, changed and removed in the folder would survive a power cut.
  virtual RunTimeError SyncFolder(const std::string& folder) = 0;

  // The clock that the file system stamps changes with, in nanoseconds since 1970.
  virtual std::int64_t ClockNs() const = 0;
};

// The disk of the machine.
class HostDisk : public Disk {
 public:
  RunTimeError Stamp(const std::string& path, FileStamp& stamp) override;
  RunTimeError Read(const std::string& path, std::string& bytes, FileStamp& stamp) override;
  RunTimeError Open(const std::string& path, int& handle, FileStamp& stamp) override;
  RunTimeError ReadPart(int handle, std::size_t most, std::string& bytes) override;
  RunTimeError List(const std::string& folder, std::vector<std::string>& names) override;
  RunTimeError Create(const std::string& path, unsigned permissions, int& handle) override;
  RunTimeError CopyAccess(const std::string& path, int handle) override;
  RunTimeError Write(int handle, std::string_view bytes) override;
  RunTimeError Reserve(int handle, std::int64_t bytes, std::size_t files) override;
  void Release(const std::string& path) override;
  RunTimeError Sync(int handle) override;
  RunTimeError SyncAll(const std::vector<int>& handles) override;
  RunTimeError Close(int handle) override;
  RunTimeError Link(const std::string& from, const std::string& to) override;
  RunTimeError Rename(const std::string& from, const std::string& to) override;
  RunTimeError Remove(const std::string& path) override;
  RunTimeError MakeFolder(const std::string& path) override;
  RunTimeError SyncFolder(const std::string& folder) override;
  std::int64_t ClockNs() const override;
};

}  // namespace quillary
