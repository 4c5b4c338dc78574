#pragma once

#include <string>
#include <string_view>

#include "platform/run_time_error.h"

namespace quillary {

// The parts of a file's whole path on the host; the folder ends with a slash.
inline std::string FolderOf(std::string_view path) {
  return std::string(path.substr(0, path.rfind('/') + 1));
}
inline std::string NameOf(std::string_view path) {
  return std::string(path.substr(path.rfind('/') + 1));
}

// Whether what was asked for is not there.
inline bool IsMissing(RunTimeError error) {
  return error == RunTimeError::FileNotFound || error == RunTimeError::PathNotFound;
}

}  // namespace quillary
