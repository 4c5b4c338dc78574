#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>

#include "platform/numbers.h"
#include "store/chain.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {

// Whether a head, a listed record or the deleted list leads to one of these records; they stand in
// order.
bool Records::LinksLeadTo(const std::vector<std::int32_t>& numbers) {
  if (numbers.empty()) return false;
  const auto leadsThere = [&](const std::string& link) {
    const auto number = ParseRecordNumber(link);
    return number && std::binary_search(numbers.begin(), numbers.end(), *number);
  };
  for (const auto key : {NameChain.FirstRecord, CompanyChain.FirstRecord}) {
    if (leadsThere(ReadHeaderEntry(key))) return true;
  }
  if (leadsThere(EndOfDeletedList())) return true;
  RecordReader reader(profile_, data_.DataPath);
  const auto isLinked = [&](const auto& recNo) {
    for (const Chain* chain : {&NameChain, &CompanyChain}) {
      for (const auto key : {chain->Prev, chain->Next}) {
        if (leadsThere(reader.Value(recNo, key))) return true;
      }
    }
    return false;
  };
  return data_.NoOfRecords > 0 &&
         std::any_of(data_.NamesRecNo.begin(), data_.NamesRecNo.end(), isLinked);
}

// TotalNoOfRecords; behind the records of its file where one is missing there that was there once:
// the file may come back as it was, in place of the one that is there now.
std::int64_t Records::FirstNewNumber(RecordReader& reader) {
  const std::int32_t number = std::max(ToInt32(ReadHeaderEntry("TotalNoOfRecords")), 0);
  const std::int32_t first = number - number % RecordsPerFile;
  const std::vector<std::int32_t> missing = reader.MissingRecords(first, number);
  const std::vector<std::int32_t> awaited = AwaitedNumbers();
  const bool isAwaited =
      LinksLeadTo(missing) || std::find_first_of(missing.begin(), missing.end(), awaited.begin(),
                                                 awaited.end()) != missing.end();
  return isAwaited ? std::int64_t{first} + RecordsPerFile : number;
}

// The numbers for `count` new records.
RunTimeError Records::FindFreeNumbers(std::size_t count, std::vector<std::string>& numbers) {
  if (const RunTimeError error = CheckHeader(); error != RunTimeError::None) return error;
  constexpr std::int64_t Largest = std::numeric_limits<std::int32_t>::max() - 1;
  RecordReader reader(profile_, data_.DataPath);
  std::int64_t number = FirstNewNumber(reader);
  if (reader.Error() != RunTimeError::None) return reader.Error();
  for (; numbers.size() < count && number <= Largest; ++number) {
    std::string text = NumberText(number);
    if (!reader.Record(text).Exists()) numbers.push_back(std::move(text));
    if (reader.Error() != RunTimeError::None) return reader.Error();
  }
  return numbers.size() == count ? RunTimeError::None : RunTimeError::DeviceError;
}

RunTimeError Records::NextRecordNumber(std::string& RecNo) {
  ProfileUpdate update(profile_);
  // Before the record is in the files: there it would look like one that fell out of the lists.
  RunTimeError error = RestoreLinks();
  if (error != RunTimeError::None) return error;
  std::vector<std::string> numbers;
  error = FindFreeNumbers(1, numbers);
  if (error != RunTimeError::None) return error;
  const std::int64_t number = ToInt32(numbers.front());
  NoteHeaderEntry("TotalNoOfRecords", NumberText(number + 1));
  error = update.Commit();
  if (error == RunTimeError::None) RecNo = numbers.front();
  return error;
}

}  // namespace quillary
