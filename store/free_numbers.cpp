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

// Whether a head, a listed record or the deleted list leads to a record of that file.
bool Records::LinksLeadInto(std::int64_t fileNumber) {
  const auto leadsThere = [&](const std::string& link) {
    return ParseRecordNumber(link) && RecordFileNumber(link) == fileNumber;
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

// TotalNoOfRecords; behind the records of its file where that is missing, though it was there: it
// may come back, with records of its own.
std::int64_t Records::FirstNewNumber(RecordReader& reader) {
  const std::int64_t number = std::max(ToInt32(ReadHeaderEntry("TotalNoOfRecords")), 0);
  const std::int64_t inFile = number % RecordsPerFile;
  const std::int64_t fileNumber = number / RecordsPerFile;
  const bool isMissing = inFile != 0 && !reader.HasRecords(fileNumber);
  const auto isAwaited = [&] {
    return LinksLeadInto(fileNumber) ||
           AwaitedFiles().contains(static_cast<std::int32_t>(fileNumber));
  };
  return isMissing && isAwaited() ? number - inFile + RecordsPerFile : number;
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
