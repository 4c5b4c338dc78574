#include <algorithm>
#include <cstddef>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {

RunTimeError Records::ReadListKeys(ListKeys& values) {
  constexpr ListKeys::size_type Count = std::tuple_size_v<ListKeys>;
  const std::array<std::string_view, Count> keys{"NoOfRecords", NameChain.FirstRecord,
                                                 CompanyChain.FirstRecord, "DelNoOfRecords",
                                                 "DelFirstRecord"};
  ProfileSnapshot snapshot(profile_);
  const ProfileText& header = snapshot.Text(data_.DataFile);
  for (std::size_t i = 0; i < Count; ++i) {
    values.at(i) = Trim(header.Value(HeaderSection, keys.at(i)).value_or(std::string()));
  }
  return snapshot.Error();
}

// Whether the header is that of the lists in memory.
RunTimeError Records::CheckLists() {
  ListKeys now;
  if (const RunTimeError error = ReadListKeys(now); error != RunTimeError::None) return error;
  bool isKnown = false;
  if (data_.ListsIncomplete || linksOutdated_) {
    // All links are about to be written from memory: no record may have come or gone.
    isKnown = now == readKeys_;
  } else {
    const int count = std::max<int>(data_.NoOfRecords, 0);
    isKnown = std::max<int>(ToInt16(now[0]), 0) == count &&
              (count == 0 ||
               (now[1] == Trim(data_.NamesRecNo[0]) && now[2] == Trim(data_.CompaniesRecNo[0])));
  }
  return isKnown ? RunTimeError::None : RunTimeError::BadRecordNumber;
}

// Whether the files lead from the entry before `position` to the one there, as the list does. The
// heads of the lists stand in the header.
bool Records::IsLinkKnown(RecordReader& reader, const Chain& chain, std::size_t position) {
  const auto& recNos = &chain == &NameChain ? data_.NamesRecNo : data_.CompaniesRecNo;
  if (position == 0) return true;
  const std::string last(Trim(recNos[position - 1]));
  const std::string value = reader.Value(last, chain.Next);
  const std::string_view next = Trim(value);
  if (static_cast<std::int64_t>(position) < data_.NoOfRecords) {
    return next == Trim(recNos[position]);
  }
  // Nothing follows, or a stray link; but not a record that another program has moved there.
  return !ParseRecordNumber(next) || Trim(reader.Value(next, chain.Prev)) != last ||
         std::find(recNos.begin(), recNos.end(), next) == recNos.end();
}

// Whether the files are joined as the lists are before the entries at these positions.
RunTimeError Records::CheckPlace(std::size_t namePos, std::size_t companyPos) {
  RecordReader reader(profile_, data_.DataPath);
  const bool isKnown =
      IsLinkKnown(reader, NameChain, namePos) && IsLinkKnown(reader, CompanyChain, companyPos);
  if (reader.Error() != RunTimeError::None) return reader.Error();
  return isKnown ? RunTimeError::None : RunTimeError::BadRecordNumber;
}

RunTimeError Records::ReadListsAgain() {
  ReadNoOfRecords();
  GetNamesList();
  const RunTimeError error = SortNamesList();
  if (data_.FilterOn) {
    BuildFilteredList();
    GetFilteredNamesList();
    SortFilteredList();
  }
  ShowRecords();
  return error;
}

}  // namespace quillary
