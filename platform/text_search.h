#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
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
  // What bytes have in common. As it is made, it is what all bytes have.
  struct CommonBits {
    std::uint8_t Mask = 0;
    std::uint8_t Value = 0;  // under the mask
  };
  // Bytes of ASCII and others apart, which have little in common.
  using ByteClass = std::array<CommonBits, 2>;

  static CommonBits Common(std::string_view bytes);
  static ByteClass ClassOf(std::string_view bytes);
  std::uint64_t Candidates(const char* block) const;
  std::size_t FindByCharacters(std::string_view text, std::size_t at) const;
  bool IsAt(std::string_view text, std::size_t at) const;

  std::u32string lowered_;
  std::array<ByteClass, 2> beginning_{};  // of the first two bytes that the text may have
};

}  // namespace quillary
