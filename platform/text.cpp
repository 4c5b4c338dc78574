#include "platform/text.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "platform/code_point.h"

namespace quillary {

namespace {

char AsciiUpper(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - ('a' - 'A'))
                                              : character;
}

template <typename Ascii, typename Other>
std::string MapEach(std::string_view text, Ascii ascii, Other other) {
  std::string mapped;
  mapped.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (IsAscii(text[at])) {
      mapped.push_back(ascii(text[at++]));
    } else {
      AppendCodePoint(mapped, other(NextCodePoint(text, at)));
    }
  }
  return mapped;
}

std::unique_ptr<icu::Collator> MakeCollator() {
  // The environment "C" has an order of its own, in which upper and lower case differ as letters
  // do.
  icu::Locale locale = icu::Locale::getDefault();
  if (std::string_view(locale.getVariant()) == "POSIX") locale = icu::Locale::getRoot();

  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(locale, status));
  if (U_SUCCESS(status)) {
    collator->setAttribute(UCOL_STRENGTH, UCOL_SECONDARY, status);
    collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, status);
  }
  if (U_FAILURE(status)) throw std::runtime_error("The rules for the order of texts are missing.");
  return collator;
}

icu::StringPiece Piece(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

}  // namespace

struct TextComparer::Collation {
  std::unique_ptr<icu::Collator> Collator = MakeCollator();
};

TextComparer::TextComparer() : collation_(std::make_unique<Collation>()) {}

TextComparer::~TextComparer() = default;

int TextComparer::Compare(std::string_view a, std::string_view b) const {
  UErrorCode status = U_ZERO_ERROR;
  return collation_->Collator->compareUTF8(Piece(a), Piece(b), status);
}

std::string TextComparer::SortKey(std::string_view text) const {
  const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(Piece(text));
  std::array<std::uint8_t, 256> shortKey{};
  std::vector<std::uint8_t> longKey;
  std::uint8_t* key = shortKey.data();
  std::int32_t length =
      collation_->Collator->getSortKey(wide, key, static_cast<std::int32_t>(shortKey.size()));
  if (static_cast<std::size_t>(length) > shortKey.size()) {
    longKey.resize(static_cast<std::size_t>(length));
    key = longKey.data();
    length = collation_->Collator->getSortKey(wide, key, length);
  }
  // Every key ends in a zero byte, and has no other.
  return {key, key + std::max(length - 1, 0)};
}

std::string LowerCase(std::string_view text) {
  return MapEach(text, AsciiLower, u_tolower);
}

std::string UpperCase(std::string_view text) {
  return MapEach(text, AsciiUpper, u_toupper);
}

std::string WithoutCase(std::string_view text) {
  return MapEach(text, AsciiLower, [](UChar32 c) { return u_foldCase(c, U_FOLD_CASE_DEFAULT); });
}

bool EqualWithoutCase(std::string_view a, std::string_view b) {
  std::size_t atA = 0;
  std::size_t atB = 0;
  while (atA < a.size() && atB < b.size()) {
    if (IsAscii(a[atA]) && IsAscii(b[atB])) {
      if (AsciiLower(a[atA++]) != AsciiLower(b[atB++])) return false;
    } else if (u_foldCase(NextCodePoint(a, atA), U_FOLD_CASE_DEFAULT) !=
               u_foldCase(NextCodePoint(b, atB), U_FOLD_CASE_DEFAULT)) {
      return false;
    }
  }
  return atA == a.size() && atB == b.size();
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace quillary
