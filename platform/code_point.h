#pragma once

#include <unicode/utf8.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace quillary {

inline bool IsAscii(char character) {
  return static_cast<unsigned char>(character) < 0x80;
}

inline char AsciiLower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                              : character;
}

// The code point at `at`, which moves on behind it; U+FFFD for bytes that are none.
inline UChar32 NextCodePoint(std::string_view text, std::size_t& at) {
  UChar32 codePoint = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"  // inside the macro
  U8_NEXT_OR_FFFD(text.data(), at, text.size(), codePoint);
#pragma GCC diagnostic pop
  return codePoint;
}

inline void AppendCodePoint(std::string& text, UChar32 codePoint) {
  std::array<char, U8_MAX_LENGTH> bytes{};
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes.data(), length, codePoint);
  text.append(bytes.data(), length);
}

}  // namespace quillary
