#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quillary {

// Characters that are looked at together.
inline constexpr std::ptrdiff_t BlockSize = 64;

// One bit for each character of a block, set where it is one of `Wanted`.
template <char... Wanted>
std::uint64_t FindInBlock(const char* block) {
  std::uint64_t found = 0;
#ifdef __SSE2__
  constexpr int Part = sizeof(__m128i);
  for (int at = 0; at < BlockSize; at += Part) {
    const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + at));
    __m128i equal = _mm_setzero_si128();
    ((equal = _mm_or_si128(equal, _mm_cmpeq_epi8(characters, _mm_set1_epi8(Wanted)))), ...);
    found |= static_cast<std::uint64_t>(_mm_movemask_epi8(equal)) << at;
  }
#else
  for (int at = 0; at < BlockSize; ++at) {
    found |= static_cast<std::uint64_t>(((block[at] == Wanted) || ...)) << at;
  }
#endif
  return found;
}

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
      ends_ = FindInBlock<'\n'>(next_);
      next_ += BlockSize;
    }
    TakeTo(next_ - BlockSize + std::countr_zero(ends_) + 1, line);
    ends_ &= ends_ - 1;
    return true;
  }

 private:
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

// Calls `take` with each line of the text that begins with one of the characters `First`. The
// others cost next to nothing.
template <char... First, typename Take>
void ForLinesBeginningWith(std::string_view text, Take take) {
  const char* const end = text.data() + text.size();
  std::uint64_t isLineBegin = 1;  // whether the next block begins a line
  const char* block = text.data();
  for (; end - block >= BlockSize; block += BlockSize) {
    const std::uint64_t ends = FindInBlock<'\n'>(block);
    std::uint64_t begins = ((ends << 1U) | isLineBegin) & FindInBlock<First...>(block);
    isLineBegin = ends >> (BlockSize - 1);
    for (; begins != 0; begins &= begins - 1) {
      const int at = std::countr_zero(begins);
      const std::uint64_t rest = ends >> at;
      const char* lineEnd = block + at + std::countr_zero(rest);
      if (rest == 0) {
        const auto size = static_cast<std::size_t>(end - block - BlockSize);
        const void* const found = std::memchr(block + BlockSize, '\n', size);
        lineEnd = found == nullptr ? end : static_cast<const char*>(found);
      }
      take(std::string_view(block + at, static_cast<std::size_t>(lineEnd - block - at)));
    }
  }
  if (isLineBegin == 0) {
    const void* const found = std::memchr(block, '\n', static_cast<std::size_t>(end - block));
    block = found == nullptr ? end : static_cast<const char*>(found) + 1;
  }
  LineReader tail(std::string_view(block, static_cast<std::size_t>(end - block)));
  std::string_view line;
  while (tail.Next(line)) {
    if (((line.front() == First) || ...)) take(line);
  }
}

}  // namespace quillary
