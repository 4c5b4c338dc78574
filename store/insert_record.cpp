#include <algorithm>
#include <cassert>
#include <cstddef>
#include <utility>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/records.h"

namespace quillary {
namespace {

using Texts = std::vector<std::string>;

// A list without records has one empty entry.
void InsertEntry(Texts& list, std::int16_t count, std::size_t index, std::string_view text) {
  if (count < 1) {
    list.assign(1, std::string(text));
  } else {
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(index), std::string(text));
  }
}

void RemoveEntry(Texts& list, std::size_t index) {
  if (list.size() == 1) {
    list[0].clear();
  } else {
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
  }
}

// The lists of all records, or of the filtered ones.
struct Lists {
  Texts& Names;
  Texts& NamesRecNo;
  Texts& Companies;
  Texts& CompaniesRecNo;
  std::int16_t& Count;
};

struct NewEntry {
  const std::string& RecNo;
  std::string_view ShowName;
  std::string_view ShowCompany;
  std::size_t NamePos;
  std::size_t CompanyPos;
};

void Insert(ProfileUpdate& update, const Lists& lists, const NewEntry& entry) {
  const std::int16_t count = std::max<std::int16_t>(lists.Count, 0);
  InsertEntry(lists.Names, count, entry.NamePos, entry.ShowName);
  InsertEntry(lists.NamesRecNo, count, entry.NamePos, entry.RecNo);
  InsertEntry(lists.Companies, count, entry.CompanyPos, entry.ShowCompany);
  InsertEntry(lists.CompaniesRecNo, count, entry.CompanyPos, entry.RecNo);
  lists.Count = static_cast<std::int16_t>(count + 1);
  update.OnUndo([lists, count, namePos = entry.NamePos, companyPos = entry.CompanyPos] {
    lists.Count = count;
    RemoveEntry(lists.Names, namePos);
    RemoveEntry(lists.NamesRecNo, namePos);
    RemoveEntry(lists.Companies, companyPos);
    RemoveEntry(lists.CompaniesRecNo, companyPos);
  });
}

// How many of the first `count` entries of a sorted list satisfy `isBefore`.
template <typename Predicate>
std::size_t Position(const Texts& list, std::int16_t count, Predicate isBefore) {
  const auto end = list.begin() + std::max<std::int16_t>(count, 0);
  return static_cast<std::size_t>(std::partition_point(list.begin(), end, isBefore) - list.begin());
}

}  // namespace

// Links the record into one chain, before the entry at `position` of its list.
void Records::LinkRecord(const Chain& chain, const Texts& recNos, std::size_t position,
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
  for (const std::string_view key :
       {"PrevName", "NextName", "PrevCompany", "NextCompany", "PrevDel", "NextDel"}) {
    NoteRecordEntry(recNo, key, "");
  }
  const std::int16_t count = std::max<std::int16_t>(data_.NoOfRecords, 0);
  const std::size_t namePos = Position(data_.NamesList, count, [&](const auto& entry) {
    return comparer_.Compare(ShowName, entry) > 0;
  });
  const std::size_t companyPos = Position(data_.CompaniesList, count, [&](const auto& entry) {
    return comparer_.Compare(ShowCompany, entry) > 0;
  });
  LinkRecord(NameChain, data_.NamesRecNo, namePos, recNo);
  LinkRecord(CompanyChain, data_.CompaniesRecNo, companyPos, recNo);
  NoteHeaderEntry("NoOfRecords", NumberText(count + 1));

  Insert(update,
         {data_.NamesList, data_.NamesRecNo, data_.CompaniesList, data_.CompaniesRecNo,
          data_.NoOfRecords},
         {recNo, ShowName, ShowCompany, namePos, companyPos});

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
  Insert(update,
         {data_.FilteredNames, data_.FilteredNamesRecNo, data_.FilteredCompanies,
          data_.FilteredCompaniesRecNo, data_.FilteredCount},
         {recNo, showName, showCompany, namePos, companyPos});
  const bool isByName = data_.ViewMode == 0;
  ShowNewLine(update, isByName ? namePos : companyPos, isByName ? showName : showCompany, recNo);
}

void Records::ShowNewLine(ProfileUpdate& update, std::size_t index, std::string_view text,
                          const std::string& recNo) {
  lines_.InsertLine(index, text, recNo);
  update.OnUndo([this, index] { lines_.RemoveLine(index); });
}

}  // namespace quillary
