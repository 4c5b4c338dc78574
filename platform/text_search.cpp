#include "platform/text_search.h"

#include <unicode/uchar.h>
#include <unicode/uniset.h>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <bit>
#include <vector>

#include "platform/code_point.h"

namespace quillary {
namespace {

constexpr char32_t Replacement = 0xFFFD;  // what bytes that are no character are taken for

constexpr std::size_t BlockSize = 64;  // bytes that are looked at together

// The character at `at`, which moves on behind it, in lower case.
char32_t NextLowered(std::string_view text, std::size_t& at) {
  if (IsAscii(text[at])) return static_cast<unsigned char>(AsciiLower(text[at++]));
  return static_cast<char32_t>(u_tolower(NextCodePoint(text, at)));
}

// Every character that has this lower case.
std::vector<std::string> CharactersOf(char32_t lowered) {
  const auto character = static_cast<UChar32>(lowered);
  icu::UnicodeSet set(character, character);
  set.closeOver(USET_CASE_INSENSITIVE);
  set.add(0x130);  // the capital I with a dot, which without regard to case is a letter of its own
  std::vector<std::string> characters;
  for (std::int32_t i = 0; i < set.size(); ++i) {
    const UChar32 candidate = set.charAt(i);  // none: it is a text of several characters
    if (candidate < 0 || u_tolower(candidate) != character) continue;
    AppendCodePoint(characters.emplace_back(), candidate);
  }
  return characters;
}

}  // namespace

TextSearch::TextSearch(std::string_view sought) {
  for (std::size_t at = 0; at < sought.size();) lowered_ += NextLowered(sought, at);
  if (lowered_.empty() || lowered_.front() == Replacement) return;
  std::string first;
  std::string second;
  bool isOneByte = false;  // so that the second byte is one of the next character
  for (const std::string& character : CharactersOf(lowered_.front())) {
    first += character[0];
    if (character.size() > 1) second += character[1];
    isOneByte |= character.size() == 1;
  }
  beginning_[0] = ClassOf(first);
  if (isOneByte) {
    if (lowered_.size() == 1 || lowered_[1] == Replacement) return;
    for (const std::string& character : CharactersOf(lowered_[1])) second += character[0];
  }
  beginning_[1] = ClassOf(second);
}

TextSearch::CommonBits TextSearch::Common(std::string_view bytes) {
  if (bytes.empty()) return {0, 1};  // no byte has that
  std::uint8_t all = 0xFF;
  std::uint8_t any = 0;
  for (const char byte : bytes) {
    all &= static_cast<std::uint8_t>(byte);
    any |= static_cast<std::uint8_t>(byte);
  }
  const auto differing = static_cast<std::uint8_t>(all ^ any);
  return {static_cast<std::uint8_t>(~differing), all};
}

TextSearch::ByteClass TextSearch::ClassOf(std::string_view bytes) {
  std::string ascii;
  std::string others;
  for (const char byte : bytes) (IsAscii(byte) ? ascii : others) += byte;
  return {Common(ascii), Common(others)};
}

// One bit for each byte of a block with which the text may begin. The byte behind the block is
// looked at, too.
inline std::uint64_t TextSearch::Candidates(const char* block) const {
  std::uint64_t found = 0;
#ifdef __SSE2__
  constexpr std::size_t Part = sizeof(__m128i);
  const auto isIn = [](const char* bytes, const ByteClass& byteClass) {
    const __m128i loaded = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    const auto has = [&](const CommonBits& bits) {
      const __m128i masked = _mm_and_si128(loaded, _mm_set1_epi8(static_cast<char>(bits.Mask)));
      return _mm_cmpeq_epi8(masked, _mm_set1_epi8(static_cast<char>(bits.Value)));
    };
    return _mm_or_si128(has(byteClass[0]), has(byteClass[1]));
  };
  for (std::size_t at = 0; at < BlockSize; at += Part) {
    const __m128i both =
        _mm_and_si128(isIn(block + at, beginning_[0]), isIn(block + at + 1, beginning_[1]));
    found |= static_cast<std::uint64_t>(_mm_movemask_epi8(both)) << at;
  }
#else
  const auto isIn = [](char byte, const ByteClass& byteClass) {
    const auto has = [&](const CommonBits& bits) {
      return (static_cast<std::uint8_t>(byte) & bits.Mask) == bits.Value;
    };
    return has(byteClass[0]) || has(byteClass[1]);
  };
  for (std::size_t at = 0; at < BlockSize; ++at) {
    const bool isCandidate = isIn(block[at], beginning_[0]) && isIn(block[at + 1], beginning_[1]);
    found |= static_cast<std::uint64_t>(isCandidate) << at;
  }
#endif
  return found;
}

std::size_t TextSearch::Find(std::string_view text, std::size_t at) const {
  if (lowered_.empty()) return at;
  if (lowered_.front() == Replacement) return FindByCharacters(text, at);
  for (; at < text.size(); at += BlockSize) {
    std::array<char, BlockSize + 1> last{};
    const char* block = text.data() + at;
    if (text.size() - at < last.size()) {
      std::copy(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), last.begin());
      block = last.data();
    }
    for (std::uint64_t found = Candidates(block); found != 0; found &= found - 1) {
      const std::size_t candidate = at + static_cast<std::size_t>(std::countr_zero(found));
      if (IsAt(text, candidate)) return candidate;
    }
  }
  return std::string_view::npos;
}

// Which of the bytes that are no character make one replacement is known only on the way.
std::size_t TextSearch::FindByCharacters(std::string_view text, std::size_t at) const {
  while (at < text.size() && !IsAt(text, at)) NextCodePoint(text, at);
  return at < text.size() ? at : std::string_view::npos;
}

bool TextSearch::IsAt(std::string_view text, std::size_t at) const {
  return std::all_of(lowered_.begin(), lowered_.end(), [&](char32_t character) {
    return at < text.size() && NextLowered(text, at) == character;
  });
}

}  // namespace quillary
