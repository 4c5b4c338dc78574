#pragma once

#include <string>

namespace quillary {

// What a file, folder or device operation came to. The numbers are the ones that people who use
// the program meet in its messages.
enum class [[nodiscard]] RunTimeError{
    None = 0,        Overflow = 6,         FileNotFound = 53,     DeviceError = 57,
    DiskFull = 61,   BadRecordNumber = 63, PermissionDenied = 70, NotReady = 71,
    PathAccess = 75, PathNotFound = 76,
};

// The run-time error for an `errno` value; 0 gives None, a value without a number of its own
// gives DeviceError.
RunTimeError RunTimeErrorOf(int systemError);

// A short English phrase for a message, such as "the disk is full"; empty for None.
std::string RunTimeErrorText(RunTimeError error);

}  // namespace quillary
