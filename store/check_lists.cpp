#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
namespace {

// Record numbers with their texts, in no particular order.
std::vector<std::pair<std::string_view, std::string_view>> Entries(const TextList& recNos,
                                                                   const TextList& texts) {
  std::vector<std::pair<std::string_view, std::string_view>> entries;
  entries.reserve(recNos.size());
  for (std::size_t i = 0; i < recNos.size(); ++i) entries.emplace_back(recNos[i], texts[i]);
  std::sort(entries.begin(), entries.end());
  return entries;
}

}  // namespace

RunTimeError Records::ReadListKeys(ListKeys& values) {
  ProfileSnapshot snapshot(profile_);
  const ProfileText& header = snapshot.Text(data_.DataFile);
  for (std::size_t i = 0; i < values.size(); ++i) {
    values.at(i) = Trim(header.Value(HeaderSection, ListKeyNames.at(i)).value_or(std::string()));
  }
  return snapshot.Error();
}

// Whether the header is that of the lists in memory, and what follows them in the files is there.
RunTimeError Records::CheckLists() {
  ListKeys now;
  if (const RunTimeError error = ReadListKeys(now); error != RunTimeError::None) return error;
  bool isKnown = now == knownKeys_;
  if (isKnown && !data_.ListsIncomplete && !linksOutdated_) {
    const int count = std::max<int>(data_.NoOfRecords, 0);
    isKnown = std::max<int>(ToInt16(now[0]), 0) == count &&
              (count == 0 ||
               (now[1] == Trim(data_.NamesRecNo[0]) && now[2] == Trim(data_.CompaniesRecNo[0])));
  }
  RecordReader reader(profile_, data_.DataPath);
  for (const std::string& recNo : {behindNames_, behindCompanies_}) {
    isKnown = isKnown && (recNo.empty() || reader.Record(recNo).Exists());
  }
  if (reader.Error() != RunTimeError::None) return reader.Error();
  return isKnown ? RunTimeError::None : RunTimeError::BadRecordNumber;
}

// Whether the files lead to the records that the lists have: to be asked before all links are
// written from memory. Where they ought to be joined as the lists are, nothing may differ.
RunTimeError Records::CheckRecords() {
  const ListsInFiles now = ReadLists(CountInHeader(), nullptr);
  if (now.Error != RunTimeError::None) return now.Error;
  bool isKnown = Entries(now.NamesRecNo, now.Names) == Entries(data_.NamesRecNo, data_.NamesList) &&
                 Entries(now.CompaniesRecNo, now.Companies) ==
                     Entries(data_.CompaniesRecNo, data_.CompaniesList);
  if (!data_.ListsIncomplete) isKnown = isKnown && !now.IsIncomplete;
  if (!data_.ListsIncomplete && !linksOutdated_) {
    isKnown =
        isKnown && now.NamesRecNo == data_.NamesRecNo && now.CompaniesRecNo == data_.CompaniesRecNo;
  }
  return isKnown ? RunTimeError::None : RunTimeError::BadRecordNumber;
}

// Whether the files lead from the entry before `position` to the one there, as the list does, and
// both have the texts there that the list has. The heads of the lists stand in the header.
bool Records::IsLinkKnown(RecordReader& reader, const Chain& chain, std::size_t position) {
  const bool isByName = &chain == &NameChain;
  const TextList& recNos = isByName ? data_.NamesRecNo : data_.CompaniesRecNo;
  const TextList& texts = isByName ? data_.NamesList : data_.CompaniesList;
  // Its links are about to be written, which must not make a file anew that is missing; and what
  // stands between it and the next one is to be sorted by what they are called now.
  const auto isThere = [&](std::size_t index) {
    const ProfileText::Section record = reader.Record(recNos[index]);
    return record.Exists() && record.Value(chain.Shown).value_or(std::string()) == texts[index];
  };
  if (static_cast<std::int64_t>(position) < data_.NoOfRecords && !isThere(position)) return false;
  if (position == 0) return true;
  if (!isThere(position - 1)) return false;
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

// Whether the files are joined as the lists are before the entries at these positions, and before
// those behind them: so many in each list.
RunTimeError Records::CheckPlace(RecordReader& reader, std::size_t namePos, std::size_t companyPos,
                                 std::size_t links) {
  bool isKnown = true;
  for (std::size_t i = 0; i < links && isKnown; ++i) {
    isKnown = IsLinkKnown(reader, NameChain, namePos + i) &&
              IsLinkKnown(reader, CompanyChain, companyPos + i);
  }
  if (reader.Error() != RunTimeError::None) return reader.Error();
  return isKnown ? RunTimeError::None : RunTimeError::BadRecordNumber;
}

RunTimeError Records::ReadListsAgain(RunTimeError* unread) {
  // Who changed the files may have been stopped in the middle; what cannot be completed is told
  // when something is written.
  static_cast<void>(profile_.Recover(data_.DataFile));
  ReadNoOfRecords();
  GetNamesList();
  RunTimeError readError = listsError_;
  const RunTimeError error = SortNamesList();
  if (data_.FilterOn) {
    RunTimeError filterError = RunTimeError::None;
    BuildFilteredList(&filterError);
    if (readError == RunTimeError::None) readError = filterError;
    GetFilteredNamesList();
    SortFilteredList();
  }
  ShowRecords();
  if (unread != nullptr) *unread = readError;
  return error;
}

}  // namespace quillary
