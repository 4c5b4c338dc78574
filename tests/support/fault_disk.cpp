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

RunTimeError FaultDisk::Fault(Kind kind) {
  ++calls_;
  if (onlyWrites_ && kind == Kind::Reads) return RunTimeError::None;
  if (faultAt_ == 0 || calls_ < faultAt_) return RunTimeError::None;
  if (calls_ > faultAt_ && !forever_) return RunTimeError::None;
  const bool isFirst = !wasReached_;
  wasReached_ = true;
  if (stops_ && isFirst) throw ProgramStopped();
  return error_;
}

RunTimeError FaultDisk::Write(int handle, std::string_view bytes) {
  if (stops_ && calls_ + 1 == faultAt_) {
    (void)HostDisk::Write(handle, bytes.substr(0, bytes.size() / 2));
  }
  return Try(Kind::Writes, [&] { return HostDisk::Write(handle, bytes); });
}

// A handle is freed whatever happens: a test must not run out of them.
RunTimeError FaultDisk::Close(int handle) {
  const RunTimeError closed = HostDisk::Close(handle);
  return Try(Kind::Reads, [closed] { return closed; });
}

}  // namespace quillary::test
