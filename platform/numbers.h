#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillary {

// The numeric value of the leading part of a text: blanks are passed over, then an optional sign,
// digits, an optional fraction and exponent. What follows is ignored; a text that does not begin
// with a number is 0.
double Val(std::string_view text);

// `Val` rounded to a whole number (halves to the even one) and held within the range of the type,
// so that a hand-edited count never overflows.
std::int16_t ToInt16(std::string_view text);
std::int32_t ToInt32(std::string_view text);
std::uint8_t ToByte(std::string_view text);

// A whole number as decimal text: "12", "-1".
std::string NumberText(std::int64_t number);
// The same with a place for the sign: " 12", "-1".
std::string SignedNumberText(std::int64_t number);

}  // namespace quillary
