#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace quillary {

// All texts are UTF-8. Bytes that are not are taken for U+FFFD; nothing here fails on them.

// The order of texts without regard to case, as the language of the environment has it: accents
// count, blanks and punctuation count and stand before digits, digits before letters. One object
// serves the whole program, so that sorting and inserting agree.
class TextComparer {
 public:
  TextComparer();
  ~TextComparer();
  TextComparer(const TextComparer&) = delete;
  TextComparer& operator=(const TextComparer&) = delete;

  // Below 0, 0 or above 0: `a` stands before, beside or after `b`.
  int Compare(std::string_view a, std::string_view b) const;
  // Bytes whose plain comparison gives the same order as `Compare` of the texts.
  std::string SortKey(std::string_view text) const;

 private:
  struct Collation;
  std::unique_ptr<Collation> collation_;
};

// Each character in lower (upper) case by itself, whatever stands around it.
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);
// Whether two texts are the same but for upper and lower case.
bool EqualWithoutCase(std::string_view a, std::string_view b);
// Equal for exactly those texts that are the same but for upper and lower case.
std::string WithoutCase(std::string_view text);
// The same for names of sections, keys and fields, where only the letters A to Z have case.
inline bool EqualNames(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const auto x = static_cast<unsigned char>(a[i]);
    const auto y = static_cast<unsigned char>(b[i]);
    if (x == y) continue;
    // Upper and lower case of a letter differ in one bit.
    constexpr unsigned CaseBit = 0x20;
    const unsigned lower = x | CaseBit;
    if ((x ^ y) != CaseBit || lower < 'a' || lower > 'z') return false;
  }
  return true;
}

// The text without the blanks (character 32 only) at both its ends.
std::string_view Trim(std::string_view text);

}  // namespace quillary
