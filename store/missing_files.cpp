#include <algorithm>
#include <cstddef>
#include <string>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/listed_records.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {

std::set<std::int32_t> Records::AwaitedFiles() {
  std::set<std::int32_t> files;
  const std::string text = ReadHeaderEntry(MissingFiles);
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    const auto number = ParseRecordNumber(rest.substr(0, comma));
    if (number && *number < ListedRecords::UsualNumbers / RecordsPerFile) files.insert(*number);
    rest.remove_prefix(std::min(comma + 1, rest.size()));
  }
  return files;
}

// Those before an import that replaced all records belong to none of the lists any more.
NumberRange Records::GivenNumbers() {
  const std::int32_t end =
      std::clamp(ToInt32(ReadHeaderEntry("TotalNoOfRecords")), 0, ListedRecords::UsualNumbers);
  return {std::clamp(ToInt32(ReadHeaderEntry(ReplacedRecords)), 0, end), end};
}

// The record numbers in files that were missing when the links were written, and are there again.
std::vector<NumberRange> Records::ReturnedNumbers() {
  std::vector<NumberRange> ranges;
  const NumberRange given = GivenNumbers();
  RecordReader reader(profile_, data_.DataPath);
  for (const std::int32_t file : AwaitedFiles()) {
    if (!reader.HasRecords(file)) continue;
    const std::int32_t first = file * RecordsPerFile;
    ranges.push_back({std::max(first, given.Begin), std::min(first + RecordsPerFile, given.End)});
  }
  return ranges;
}

// Whether a head or a listed record leads to a record of a file that is missing.
bool Records::LinksLeadNowhere(RecordReader& reader, std::int32_t end) {
  const auto leadsNowhere = [&](const std::string& link) {
    const auto number = ParseRecordNumber(link);
    return number && *number < end && !reader.HasRecords(RecordFileNumber(link));
  };
  for (const Chain* chain : {&NameChain, &CompanyChain}) {
    if (leadsNowhere(ReadHeaderEntry(chain->FirstRecord))) return true;
    for (const auto key : {chain->Prev, chain->Next}) {
      const auto isLost = [&](const auto& recNo) { return leadsNowhere(reader.Value(recNo, key)); };
      if (std::any_of(data_.NamesRecNo.begin(), data_.NamesRecNo.end(), isLost)) return true;
    }
  }
  return false;
}

// Before the links are written without the records of missing files. Behind a missing file others
// may be missing that no link leads to any more.
void Records::NoteMissingFiles(RecordReader& reader) {
  std::set<std::int32_t> missing = AwaitedFiles();
  const auto isThere = [&](std::int32_t file) { return reader.HasRecords(file); };
  std::erase_if(missing, isThere);
  const NumberRange given = GivenNumbers();
  if (LinksLeadNowhere(reader, given.End)) {
    for (std::int32_t file = given.Begin / RecordsPerFile; file * RecordsPerFile < given.End;
         ++file) {
      if (!isThere(file)) missing.insert(file);
    }
  }
  std::string text;
  for (const std::int32_t file : missing) {
    if (!text.empty()) text += ',';
    text += NumberText(file);
  }
  if (text != ReadHeaderEntry(MissingFiles)) NoteHeaderEntry(MissingFiles, text);
}

}  // namespace quillary
