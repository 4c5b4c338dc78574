#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillary {

// Record numbers from Begin up to and without End.
struct NumberRange {
  std::int32_t Begin = 0;
  std::int32_t End = 0;
};

// Numbers in rising order as they stand in the header: "7,100-149".
std::string RangesText(const std::vector<std::int32_t>& numbers);

// The numbers of such a text, in rising order. What is no range is passed over, and so is what lies
// outside `bounds`.
std::vector<std::int32_t> ParseRanges(std::string_view text, NumberRange bounds);

}  // namespace quillary
