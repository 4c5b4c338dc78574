#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/disk.h"

namespace quillary::test {

// The machine's disk, with a fault at a chosen call. Calls are counted from 1, all kinds together.
// Syncing does nothing: no test cuts the power of the machine itself.
class FaultDisk : public HostDisk {
 public:
  // Call number `call` gives `error` and does nothing; with `forever` every later one, too.
  void FailAt(int call, RunTimeError error, bool forever) {
    Reset();
    faultAt_ = call;
    error_ = error;
    forever_ = forever;
  }
  // Every call that makes or changes a file gives `error`.
  void FailWrites(RunTimeError error) {
    FailAt(1, error, true);
    onlyWrites_ = true;
  }
  // No fault, and counting begins anew.
  void Reset() {
    calls_ = faultAt_ = 0;
    onlyWrites_ = wasReached_ = false;
  }
  int Calls() const { return calls_; }
  bool WasReached() const { return wasReached_; }
  // Whether files can have several names, unlike on a stick.
  bool HasLinks = true;

  RunTimeError Stamp(const std::string& path, FileStamp& stamp) override {
    return Try(Kind::Reads, [&] { return HostDisk::Stamp(path, stamp); });
  }
  RunTimeError Read(const std::string& path, std::string& bytes, FileStamp& stamp) override {
    return Try(Kind::Reads, [&] { return HostDisk::Read(path, bytes, stamp); });
  }
  RunTimeError Open(const std::string& path, int& handle, FileStamp& stamp) override {
    return Try(Kind::Reads, [&] { return HostDisk::Open(path, handle, stamp); });
  }
  RunTimeError ReadPart(int handle, std::size_t most, std::string& bytes) override {
    return Try(Kind::Reads, [&] { return HostDisk::ReadPart(handle, most, bytes); });
  }
  RunTimeError List(const std::string& folder, std::vector<std::string>& names) override {
    return Try(Kind::Reads, [&] { return HostDisk::List(folder, names); });
  }
  RunTimeError Create(const std::string& path, unsigned permissions, int& handle) override {
    return Try(Kind::Writes, [&] { return HostDisk::Create(path, permissions, handle); });
  }
  RunTimeError CopyAccess(const std::string& path, int handle) override {
    return Try(Kind::Writes, [&] { return HostDisk::CopyAccess(path, handle); });
  }
  RunTimeError Write(int handle, std::string_view bytes) override {
    return Try(Kind::Writes, [&] { return HostDisk::Write(handle, bytes); });
  }
  RunTimeError Reserve(int handle, std::int64_t bytes, std::size_t files) override {
    return Try(Kind::Writes, [&] { return HostDisk::Reserve(handle, bytes, files); });
  }
  RunTimeError Sync(int) override { return Try(Kind::Writes, Nothing); }
  RunTimeError SyncAll(const std::vector<int>&) override { return Try(Kind::Writes, Nothing); }
  // A handle is freed whatever happens: a test must not run out of them.
  RunTimeError Close(int handle) override {
    const RunTimeError closed = HostDisk::Close(handle);
    return Try(Kind::Reads, [closed] { return closed; });
  }
  RunTimeError Link(const std::string& from, const std::string& to) override {
    return Try(Kind::Writes, [&] {
      return HasLinks ? HostDisk::Link(from, to) : RunTimeError::PermissionDenied;
    });
  }
  RunTimeError Rename(const std::string& from, const std::string& to) override {
    return Try(Kind::Writes, [&] { return HostDisk::Rename(from, to); });
  }
  RunTimeError Remove(const std::string& path) override {
    return Try(Kind::Writes, [&] { return HostDisk::Remove(path); });
  }
  RunTimeError MakeFolder(const std::string& path) override {
    return Try(Kind::Writes, [&] { return HostDisk::MakeFolder(path); });
  }
  RunTimeError SyncFolder(const std::string&) override { return Try(Kind::Writes, Nothing); }

 private:
  enum class Kind { Reads, Writes };

  static RunTimeError Nothing() { return RunTimeError::None; }
  // Counts the call, which is made unless it is to fail.
  template <class Call>
  RunTimeError Try(Kind kind, Call call) {
    ++calls_;
    const bool isFault = faultAt_ != 0 && (forever_ ? calls_ >= faultAt_ : calls_ == faultAt_) &&
                         (!onlyWrites_ || kind == Kind::Writes);
    if (!isFault) return call();
    wasReached_ = true;
    return error_;
  }

  int calls_ = 0;
  int faultAt_ = 0;
  RunTimeError error_ = RunTimeError::None;
  bool forever_ = false;
  bool onlyWrites_ = false;
  bool wasReached_ = false;
};

}  // namespace quillary::test
