#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace quillary {

// Finds one text in others, upper and lower case being the same. All texts are UTF-8.
class TextSearch {
 public:
  explicit TextSearch(std::string_view sought);

  // Where, from `at` on, the characters begin that are the text in lower case; npos if nowhere.
  // `at` is the beginning of a character.
  std::size_t Find(std::string_view text, std::size_t at) const;
  // Whether LowerCase(text) contains LowerCase(sought).
  bool IsIn(std::string_view text) const { return Find(text, 0) != std::string_view::npos; }

 private:
  bool IsAt(std::string_view text, std::size_t at) const;

  std::u32string lowered_;
  std::array<bool, 256> mayBegin_{};  // the bytes with which it can begin
};

}  // namespace quillary
