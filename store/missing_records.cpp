#include <algorithm>
#include <string>

#include "platform/numbers.h"
#include "store/listed_records.h"
#include "store/number_ranges.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
// Those before an import that replaced all records belong to none of the lists any more. A program
// that begins the header anew without knowing of them leaves a limit that is too high.
NumberRange Records::GivenNumbers() {
  const std::int32_t end =
      std::clamp(ToInt32(ReadHeaderEntry("TotalNoOfRecords")), 0, ListedRecords::UsualNumbers);
  const std::int32_t begin = std::max(ToInt32(ReadHeaderEntry(ReplacedRecords)), 0);
  return {begin > end ? 0 : begin, end};
}

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
