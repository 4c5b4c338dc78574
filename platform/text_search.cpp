#include "platform/text_search.h"

#include <unicode/uchar.h>

#include <algorithm>

#include "platform/code_point.h"

namespace quillary {
namespace {

constexpr char32_t Replacement = 0xFFFD;  // what bytes that are no character are taken for

// The character at `at`, which moves on behind it, in lower case.
char32_t NextLowered(std::string_view text, std::size_t& at) {
  if (IsAscii(text[at])) return static_cast<unsigned char>(AsciiLower(text[at++]));
  return static_cast<char32_t>(u_tolower(NextCodePoint(text, at)));
}

}  // namespace

TextSearch::TextSearch(std::string_view sought) {
  for (std::size_t at = 0; at < sought.size();) lowered_ += NextLowered(sought, at);
  if (lowered_.empty()) return;
  const char32_t first = lowered_.front();
  // Two letters are also the lower case of a character beyond ASCII: the Kelvin sign and the
  // capital I with a dot.
  const bool mayBeOther = first >= 0x80 || first == 'k' || first == 'i';
  for (std::size_t byte = 0; byte < mayBegin_.size(); ++byte) {
    const auto c = static_cast<char>(byte);
    mayBegin_[byte] = IsAscii(c) ? static_cast<char32_t>(AsciiLower(c)) == first
                                 : mayBeOther && (!U8_IS_TRAIL(c) || first == Replacement);
  }
}

std::size_t TextSearch::Find(std::string_view text, std::size_t at) const {
  if (lowered_.empty()) return at;
  while (at < text.size()) {
    if (!mayBegin_[static_cast<unsigned char>(text[at])]) {
      ++at;
      continue;
    }
    if (IsAt(text, at)) return at;
    NextCodePoint(text, at);
  }
  return std::string_view::npos;
}

bool TextSearch::IsAt(std::string_view text, std::size_t at) const {
  return std::all_of(lowered_.begin(), lowered_.end(), [&](char32_t character) {
    return at < text.size() && NextLowered(text, at) == character;
  });
}

}  // namespace quillary
