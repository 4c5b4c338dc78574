#pragma once

#include <string>
#include <string_view>

#include "platform/run_time_error.h"

namespace quillary {

// Reads a text file that any program may have written, line by line and from its beginning to its
// end. Keeps one line and a small part of the file in memory, however large the file is.
//
// Lines end with CR LF, LF or CR, the last one with or without; all come as UTF-8. A character 26
// at the very end, with which old programs end a text, belongs to no line. The file is UTF-16 where
// it begins with the mark for that, otherwise UTF-8, with or without a mark. A line that is not
// UTF-8 is taken for code page 1252; halves of UTF-16 pairs become U+FFFD.
class TextFile {
 public:
  TextFile() = default;
  ~TextFile();
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;

  // `path`: of the host. What is no ordinary file gives PathAccess. May be called once.
  RunTimeError Open(const std::string& path);

  // The next line, without its end. False at the end of the file, or where it cannot be read on,
  // which Error tells.
  bool Next(std::string& line);
  RunTimeError Error() const { return error_; }

 private:
  enum class Encoding { Bytes, Utf16LittleEndian, Utf16BigEndian };

  bool Fill();
  void FindEncoding();
  void AppendUtf16(bool isEnd);

  int descriptor_ = -1;
  RunTimeError error_ = RunTimeError::None;
  Encoding encoding_ = Encoding::Bytes;
  std::string read_;    // bytes of the file that are not in text_ yet
  std::string text_;    // the part of the file in which the next line begins
  std::size_t at_ = 0;  // where it begins
  bool isStarted_ = false;
  bool afterReturn_ = false;  // a line feed here belongs to the line before
};

}  // namespace quillary
