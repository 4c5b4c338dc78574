#include "platform/text_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>

namespace quillary {
namespace {

constexpr std::size_t PartSize = 1U << 16U;

constexpr char OldEndOfText = '\x1A';
constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view LittleEndianMark = "\xFF\xFE";
constexpr std::string_view BigEndianMark = "\xFE\xFF";

bool IsAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return (c & '\x80') != 0; });
}

bool IsUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    UChar32 codePoint = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"  // inside the macro
    U8_NEXT(text.data(), at, text.size(), codePoint);
#pragma GCC diagnostic pop
    if (codePoint < 0) return false;
  }
  return true;
}

std::string FromCodePage1252(const std::string& bytes) {
  std::string text;
  icu::UnicodeString(bytes.data(), static_cast<std::int32_t>(bytes.size()), "windows-1252")
      .toUTF8String(text);
  return text;
}

}  // namespace

TextFile::~TextFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

RunTimeError TextFile::Open(const std::string& path) {
  // Without O_NONBLOCK the opening of a FIFO would wait for someone to write into it.
  descriptor_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  struct stat status = {};
  if (descriptor_ < 0 || fstat(descriptor_, &status) != 0) {
    error_ = RunTimeErrorOf(errno);
  } else if (!S_ISREG(status.st_mode)) {
    error_ = RunTimeError::PathAccess;
  }
  return error_;
}

bool TextFile::Next(std::string& line) {
  line.clear();
  while (at_ < text_.size() || Fill()) {
    if (afterReturn_) {
      afterReturn_ = false;
      if (text_[at_] == '\n') {
        ++at_;
        continue;
      }
    }
    const std::size_t end = text_.find_first_of("\r\n", at_);
    line.append(text_, at_, end - at_);
    at_ = std::min(end, text_.size() - 1) + 1;
    if (end == std::string::npos) continue;
    afterReturn_ = text_[end] == '\r';
    if (!IsAscii(line) && !IsUtf8(line)) line = FromCodePage1252(line);
    return true;
  }
  if (error_ == RunTimeError::None && line.ends_with(OldEndOfText)) line.pop_back();
  if (error_ != RunTimeError::None || line.empty()) return false;
  if (!IsUtf8(line)) line = FromCodePage1252(line);
  return true;
}

// False at the end of the file and on an error.
bool TextFile::Fill() {
  if (error_ != RunTimeError::None) return false;
  text_.clear();
  at_ = 0;
  while (text_.empty()) {
    const std::size_t kept = read_.size();
    read_.resize(kept + PartSize);
    ssize_t got = 0;
    do {
      got = read(descriptor_, &read_[kept], PartSize);
    } while (got < 0 && errno == EINTR);
    if (got < 0) error_ = RunTimeErrorOf(errno);
    read_.resize(kept + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got < 0) return false;
    if (!isStarted_) FindEncoding();
    isStarted_ = true;
    if (encoding_ == Encoding::Bytes) {
      text_.swap(read_);
      read_.clear();
    } else {
      AppendUtf16(got == 0);
    }
    if (got == 0) break;
  }
  return !text_.empty();
}

void TextFile::FindEncoding() {
  std::size_t markSize = 0;
  if (read_.starts_with(Utf8Mark)) {
    markSize = Utf8Mark.size();
  } else if (read_.starts_with(LittleEndianMark)) {
    encoding_ = Encoding::Utf16LittleEndian;
    markSize = LittleEndianMark.size();
  } else if (read_.starts_with(BigEndianMark)) {
    encoding_ = Encoding::Utf16BigEndian;
    markSize = BigEndianMark.size();
  }
  read_.erase(0, markSize);
}

// Half a character or pair waits for the rest of it.
void TextFile::AppendUtf16(bool isEnd) {
  const std::size_t low = encoding_ == Encoding::Utf16LittleEndian ? 0 : 1;
  icu::UnicodeString units;
  std::size_t at = 0;
  for (; at + 1 < read_.size(); at += 2) {
    const auto lowByte = static_cast<unsigned char>(read_[at + low]);
    const auto highByte = static_cast<unsigned char>(read_[at + 1 - low]);
    units.append(static_cast<char16_t>(highByte << 8U | lowByte));
  }
  if (!isEnd && !units.isEmpty() && U16_IS_LEAD(units[units.length() - 1])) {
    units.truncate(units.length() - 1);
    at -= 2;
  }
  if (isEnd && at < read_.size()) units.append(char16_t{0xFFFD});
  units.toUTF8String(text_);
  read_.erase(0, isEnd ? std::string::npos : at);
}

}  // namespace quillary
