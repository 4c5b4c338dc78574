#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/list_entries.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
namespace {

// How many of the first `count` entries of a sorted list satisfy `isBefore`.
template <typename Predicate>
std::size_t Position(const TextList& list, std::int16_t count, Predicate isBefore) {
  const auto end = list.begin() + std::max<std::int16_t>(count, 0);
  return static_cast<std::size_t>(std::partition_point(list.begin(), end, isBefore) - list.begin());
}

}  // namespace

void Records::ClearLinks(const std::string& recNo) {
  constexpr std::array<EntryValue, 6> Links{{{"PrevName", ""},
                                             {"NextName", ""},
                                             {"PrevCompany", ""},
                                             {"NextCompany", ""},
                                             {"PrevDel", ""},
                                             {"NextDel", ""}}};
  Note(RecordFile(recNo), RecordSection(recNo), Links);
}

// Links the record into one chain, before the entry at `position` of its list.
void Records::LinkRecord(const Chain& chain, const TextList& recNos, std::size_t position,
                         const std::string& recNo) {
  const bool isAtEnd = static_cast<std::int64_t>(position) >= data_.NoOfRecords;
  const std::string next =
      isAtEnd ? RecordBehind(chain, recNos) : std::string(Trim(recNos[position]));
  if (position == 0) {
    NoteHeaderEntry(chain.FirstRecord, recNo);
  } else {
    const std::string previous(Trim(recNos[position - 1]));
    NoteRecordEntry(recNo, chain.Prev, previous);
    NoteRecordEntry(previous, chain.Next, recNo);
  }
  if (!next.empty() && next != recNo) {
    NoteRecordEntry(recNo, chain.Next, next);
    NoteRecordEntry(next, chain.Prev, recNo);
  }
}

RunTimeError Records::InsertRecord(std::string_view RecNo, std::string_view ShowName,
                                   std::string_view ShowCompany) {
  assert(data_.NoOfRecords < MaxRecords);
  ProfileUpdate update(profile_);
  if (const RunTimeError error = RestoreLinks(); error != RunTimeError::None) return error;

  const std::string recNo(Trim(RecNo));
  const std::int16_t count = std::max<std::int16_t>(data_.NoOfRecords, 0);
  const std::size_t namePos = Position(data_.NamesList, count, [&](const auto& entry) {
    return comparer_.Compare(ShowName, entry) > 0;
  });
  const std::size_t companyPos = Position(data_.CompaniesList, count, [&](const auto& entry) {
    return comparer_.Compare(ShowCompany, entry) > 0;
  });
  RecordReader reader(profile_, data_.DataPath);
  const RunTimeError error = CheckPlace(reader, namePos, companyPos, 1);
  if (error != RunTimeError::None) return error;
  ClearLinks(recNo);
  LinkRecord(NameChain, data_.NamesRecNo, namePos, recNo);
  LinkRecord(CompanyChain, data_.CompaniesRecNo, companyPos, recNo);
  NoteHeaderEntry("NoOfRecords", NumberText(count + 1));

  InsertEntry(update, AllLists(data_),
              {recNo, std::string(ShowName), std::string(ShowCompany), namePos, companyPos});

  const bool isByName = data_.ViewMode == 0;
  if (!data_.FilterOn) {
    ShowNewLine(update, isByName ? namePos : companyPos, isByName ? ShowName : ShowCompany, recNo);
  } else if (RecordMatchesFilter(recNo)) {
    AddToFilteredLists(update, recNo, ShowName, ShowCompany);
  }
  return update.Commit();
}

// The places are those of a new last entry after sorting. Sorting would let events run, which must
// not happen while a group is open.
void Records::AddToFilteredLists(ProfileUpdate& update, const std::string& recNo,
                                 std::string_view showName, std::string_view showCompany) {
  const std::int16_t count = data_.FilteredCount;
  const std::size_t namePos = Position(data_.FilteredNames, count, [&](const auto& entry) {
    return comparer_.Compare(showName, entry) >= 0;
  });
  const std::size_t companyPos = Position(data_.FilteredCompanies, count, [&](const auto& entry) {
    return comparer_.Compare(showCompany, entry) >= 0;
  });
  InsertEntry(update, FilteredLists(data_),
              {recNo, std::string(showName), std::string(showCompany), namePos, companyPos});
  const bool isByName = data_.ViewMode == 0;
  ShowNewLine(update, isByName ? namePos : companyPos, isByName ? showName : showCompany, recNo);
}

void Records::ShowNewLine(ProfileUpdate& update, std::size_t index, std::string_view text,
                          const std::string& recNo) {
  lines_.InsertLine(index, text, recNo);
  update.OnUndo([this, index] { lines_.RemoveLine(index); });
}

}  // namespace quillary
