#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quillary {

// Goes through a text line by line. Lines of a profile file are short and many: a block is looked
// at as a whole, and its line ends are remembered from one line to the next.
class LineReader {
 public:
  explicit LineReader(std::string_view text)
      : lineBegin_(text.data()), next_(text.data()), end_(text.data() + text.size()) {}

  // False after the last line. A line includes its line feed; the last one may be without.
  bool Next(std::string_view& line) {
    while (ends_ == 0) {
      if (end_ - next_ < BlockSize) return NextInTail(line);
      ends_ = LineFeeds(next_);
      next_ += BlockSize;
    }
    TakeTo(next_ - BlockSize + std::countr_zero(ends_) + 1, line);
    ends_ &= ends_ - 1;
    return true;
  }

 private:
  static constexpr std::ptrdiff_t BlockSize = 64;

  // One bit for each character of a block, set for a line feed.
  static std::uint64_t LineFeeds(const char* block) {
    std::uint64_t found = 0;
#ifdef __SSE2__
    constexpr int Part = sizeof(__m128i);
    const __m128i lineFeeds = _mm_set1_epi8('\n');
    for (int at = 0; at < BlockSize; at += Part) {
      const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + at));
      const int equal = _mm_movemask_epi8(_mm_cmpeq_epi8(characters, lineFeeds));
      found |= static_cast<std::uint64_t>(equal) << at;
    }
#else
    for (int at = 0; at < BlockSize; ++at) {
      found |= static_cast<std::uint64_t>(block[at] == '\n') << at;
    }
#endif
    return found;
  }

  bool NextInTail(std::string_view& line) {
    if (lineBegin_ == end_) return false;
    while (next_ < end_ && *next_ != '\n') ++next_;
    if (next_ < end_) ++next_;
    TakeTo(next_, line);
    return true;
  }

  void TakeTo(const char* lineEnd, std::string_view& line) {
    line = std::string_view(lineBegin_, static_cast<std::size_t>(lineEnd - lineBegin_));
    lineBegin_ = lineEnd;
  }

  const char* lineBegin_;
  const char* next_;  // what was not looked at yet
  const char* end_;
  std::uint64_t ends_ = 0;  // the line ends of the last block that were not met yet
};

}  // namespace quillary
