#include "platform/run_time_error.h"

#include <cerrno>

namespace quillary {

RunTimeError RunTimeErrorOf(int systemError) {
  switch (systemError) {
    case 0:
      return RunTimeError::None;
    case ENOENT:
      return RunTimeError::FileNotFound;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return RunTimeError::DiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
      return RunTimeError::PermissionDenied;
    case EAGAIN:
    case EBUSY:
    case ENODEV:
    case ENOMEDIUM:
    case ENXIO:
      return RunTimeError::NotReady;
    case EEXIST:
    case EISDIR:
    case ELOOP:
    case ENAMETOOLONG:
    case ENOTEMPTY:
    case ETXTBSY:
      return RunTimeError::PathAccess;
    case ENOTDIR:
      return RunTimeError::PathNotFound;
    default:
      return RunTimeError::DeviceError;
  }
}

std::string RunTimeErrorText(RunTimeError error) {
  switch (error) {
    case RunTimeError::None:
      return {};
    case RunTimeError::Overflow:
      return "the list is full";
    case RunTimeError::FileNotFound:
      return "the file was not found";
    case RunTimeError::DeviceError:
      return "the device reports an error";
    case RunTimeError::DiskFull:
      return "the disk is full";
    case RunTimeError::BadRecordNumber:
      return "another program has changed the data";
    case RunTimeError::PermissionDenied:
      return "permission was denied";
    case RunTimeError::NotReady:
      return "the disk or device is not ready";
    case RunTimeError::PathAccess:
      return "the file or folder cannot be used";
    case RunTimeError::PathNotFound:
      return "the folder was not found";
  }
  return "an unknown error";
}

}  // namespace quillary
