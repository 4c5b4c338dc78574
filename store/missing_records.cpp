#include <algorithm>
#include <cstddef>
#include <string>

#include "platform/numbers.h"
#include "store/listed_records.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
namespace {

// As they stand in the header: "7,100-149".
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

// What is no range is passed over, and so is what lies outside `bounds`.
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

}  // namespace

// Those before an import that replaced all records belong to none of the lists any more. A program
// that begins the header anew without knowing of them leaves a limit that is too high.
NumberRange Records::GivenNumbers() {
  const std::int32_t end =
      std::clamp(ToInt32(ReadHeaderEntry("TotalNoOfRecords")), 0, ListedRecords::UsualNumbers);
  const std::int32_t begin = std::max(ToInt32(ReadHeaderEntry(ReplacedRecords)), 0);
  return {begin > end ? 0 : begin, end};
}

// Those that were missing when the links were written without them, in their order.
std::vector<std::int32_t> Records::AwaitedNumbers() {
  return ParseRanges(ReadHeaderEntry(MissingRecords), GivenNumbers());
}

bool Records::HasReturned() {
  RecordReader reader(profile_, data_.DataPath);
  const std::vector<std::int32_t> awaited = AwaitedNumbers();
  return std::any_of(awaited.begin(), awaited.end(),
                     [&](std::int32_t number) { return reader.HasRecord(NumberText(number)); });
}

// Before the links are written without the records that are missing: none leads to them then, and
// the count does not tell of them either. A number may also have been given out and never used.
void Records::NoteMissingRecords(RecordReader& reader) {
  const NumberRange given = GivenNumbers();
  std::vector<std::int32_t> missing = reader.MissingRecords(given.Begin, given.End);
  if (data_.NoOfRecords >= CountInHeader() && !LinksLeadTo(missing)) {
    const std::vector<std::int32_t> awaited = AwaitedNumbers();
    std::erase_if(missing, [&](std::int32_t number) {
      return !std::binary_search(awaited.begin(), awaited.end(), number);
    });
  }
  const std::string text = RangesText(missing);
  if (text != ReadHeaderEntry(MissingRecords)) NoteHeaderEntry(MissingRecords, text);
}

}  // namespace quillary
