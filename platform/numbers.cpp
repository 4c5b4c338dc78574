#include "platform/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace quillary {

namespace {

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

// Whether a number, which no double can hold, is too large rather than too small.
bool IsTooLarge(std::string_view number) {
  const std::size_t exponent = number.find_first_of("eE");
  if (exponent != std::string_view::npos) return number.substr(exponent + 1, 1) != "-";
  const std::size_t first = number.find_first_not_of('0');
  return first != std::string_view::npos && number[first] != '.';
}

template <typename Whole>
Whole ToWhole(std::string_view text) {
  const double value = std::clamp(Val(text), static_cast<double>(std::numeric_limits<Whole>::min()),
                                  static_cast<double>(std::numeric_limits<Whole>::max()));
  return static_cast<Whole>(std::nearbyint(value));
}

}  // namespace

double Val(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // `from_chars` would also take a second sign, "inf" and "nan".
  if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) return 0;

  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    const std::string_view number(text.data(), static_cast<std::size_t>(end - text.data()));
    value = IsTooLarge(number) ? std::numeric_limits<double>::max() : 0;
  } else if (error != std::errc()) {
    return 0;
  }
  return negative ? -value : value;
}

std::int16_t ToInt16(std::string_view text) {
  return ToWhole<std::int16_t>(text);
}
std::int32_t ToInt32(std::string_view text) {
  return ToWhole<std::int32_t>(text);
}
std::uint8_t ToByte(std::string_view text) {
  return ToWhole<std::uint8_t>(text);
}

std::string NumberText(std::int64_t number) {
  return std::to_string(number);
}

std::string SignedNumberText(std::int64_t number) {
  return number < 0 ? NumberText(number) : " " + NumberText(number);
}

}  // namespace quillary
