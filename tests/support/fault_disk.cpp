#include "tests/support/fault_disk.h"

namespace quillary::test {

void FaultDisk::FailAt(int call, RunTimeError error, bool forever) {
  Reset();
  faultAt_ = call;
  error_ = error;
  forever_ = forever;
}

void FaultDisk::StopAt(int call) {
  FailAt(call, RunTimeError::DeviceError, true);
  stops_ = true;
}

void FaultDisk::FailWrites(RunTimeError error) {
  FailAt(1, error, true);
  onlyWrites_ = true;
}

void FaultDisk::Reset() {
  onlyWrites_ = false;
  calls_ = 0;
  faultAt_ = 0;
  stops_ = false;
  wasReached_ = false;
}

RunTimeError FaultDisk::Fault(bool writes) {
  ++calls_;
  if (onlyWrites_ && !writes) return RunTimeError::None;
  if (faultAt_ == 0 || calls_ < faultAt_) return RunTimeError::None;
  if (calls_ > faultAt_ && !forever_) return RunTimeError::None;
  const bool isFirst = !wasReached_;
  wasReached_ = true;
  if (stops_ && isFirst) throw ProgramStopped();
  return error_;
}

RunTimeError FaultDisk::Stamp(const std::string& path, FileStamp& stamp) {
  const RunTimeError fault = Fault();
  return fault == RunTimeError::None ? HostDisk::Stamp(path, stamp) : fault;
}

RunTimeError FaultDisk::Read(const std::string& path, std::string& bytes, FileStamp& stamp) {
  const RunTimeError fault = Fault();
  return fault == RunTimeError::None ? HostDisk::Read(path, bytes, stamp) : fault;
}

RunTimeError FaultDisk::Open(const std::string& path, int& handle, FileStamp& stamp) {
  const RunTimeError fault = Fault();
  return fault == RunTimeError::None ? HostDisk::Open(path, handle, stamp) : fault;
}

RunTimeError FaultDisk::ReadPart(int handle, std::size_t most, std::string& bytes) {
  const RunTimeError fault = Fault();
  return fault == RunTimeError::None ? HostDisk::ReadPart(handle, most, bytes) : fault;
}

RunTimeError FaultDisk::List(const std::string& folder, std::vector<std::string>& names) {
  const RunTimeError fault = Fault();
  return fault == RunTimeError::None ? HostDisk::List(folder, names) : fault;
}

RunTimeError FaultDisk::Create(const std::string& path, unsigned permissions, int& handle) {
  const RunTimeError fault = Fault(true);
  return fault == RunTimeError::None ? HostDisk::Create(path, permissions, handle) : fault;
}

RunTimeError FaultDisk::Write(int handle, std::string_view bytes) {
  if (stops_ && calls_ + 1 == faultAt_) {
    (void)HostDisk::Write(handle, bytes.substr(0, bytes.size() / 2));
  }
  const RunTimeError fault = Fault(true);
  return fault == RunTimeError::None ? HostDisk::Write(handle, bytes) : fault;
}

RunTimeError FaultDisk::Sync(int handle) {
  const RunTimeError fault = Fault(true);
  return fault == RunTimeError::None ? HostDisk::Sync(handle) : fault;
}

RunTimeError FaultDisk::SyncAll(const std::vector<int>& handles) {
  const RunTimeError fault = Fault(true);
  return fault == RunTimeError::None ? HostDisk::SyncAll(handles) : fault;
}

// A handle is freed whatever happens: a test must not run out of them.
RunTimeError FaultDisk::Close(int handle) {
  const RunTimeError closed = HostDisk::Close(handle);
  const RunTimeError fault = Fault();
  return fault == RunTimeError::None ? closed : fault;
}

RunTimeError FaultDisk::Rename(const std::string& from, const std::string& to) {
  const RunTimeError fault = Fault(true);
  return fault == RunTimeError::None ? HostDisk::Rename(from, to) : fault;
}

RunTimeError FaultDisk::Remove(const std::string& path) {
  const RunTimeError fault = Fault(true);
  return fault == RunTimeError::None ? HostDisk::Remove(path) : fault;
}

RunTimeError FaultDisk::MakeFolder(const std::string& path) {
  const RunTimeError fault = Fault(true);
  return fault == RunTimeError::None ? HostDisk::MakeFolder(path) : fault;
}

RunTimeError FaultDisk::SyncFolder(const std::string& folder) {
  const RunTimeError fault = Fault(true);
  return fault == RunTimeError::None ? HostDisk::SyncFolder(folder) : fault;
}

}  // namespace quillary::test
