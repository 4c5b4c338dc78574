#include "store/number_ranges.h"

#include <algorithm>
#include <cstddef>

#include "platform/numbers.h"
#include "store/record_reader.h"

namespace quillary {

std::string RangesText(const std::vector<std::int32_t>& numbers) {
  std::string text;
  for (std::size_t first = 0, end = 0; first < numbers.size(); first = end) {
    for (end = first + 1; end < numbers.size() && numbers[end] == numbers[end - 1] + 1;) ++end;
    if (!text.empty()) text += ',';
    text += NumberText(numbers[first]);
    if (end - first > 1) text += '-' + NumberText(numbers[end - 1]);
  }
  return text;
}

std::vector<std::int32_t> ParseRanges(std::string_view text, NumberRange bounds) {
  std::vector<std::int32_t> numbers;
  while (!text.empty()) {
    const std::size_t comma = std::min(text.find(','), text.size());
    const std::string_view range = text.substr(0, comma);
    const std::size_t dash = std::min(range.find('-'), range.size());
    const auto first = ParseRecordNumber(range.substr(0, dash));
    const auto last = dash < range.size() ? ParseRecordNumber(range.substr(dash + 1)) : first;
    // In no other order than RangesText's, so that none comes twice.
    if (first && last && (numbers.empty() || *first > numbers.back())) {
      for (std::int32_t number = std::max(*first, bounds.Begin);
           number < bounds.End && number <= *last; ++number) {
        numbers.push_back(number);
      }
    }
    text.remove_prefix(std::min(comma + 1, text.size()));
  }
  return numbers;
}

}  // namespace quillary
