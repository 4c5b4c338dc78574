#include "store/list_entries.h"

#include <algorithm>

namespace quillary {
namespace {

void InsertText(TextList& list, std::int16_t count, std::size_t index, const std::string& text) {
  if (count < 1) {
    list = {text};
  } else {
    list.insert(index, text);
  }
}

void RemoveText(TextList& list, std::size_t index) {
  if (list.size() == 1) {
    list = {""};
  } else {
    list.erase(index);
  }
}

void Insert(const RecordLists& lists, const ListEntry& entry) {
  const std::int16_t count = std::max<std::int16_t>(lists.Count, 0);
  InsertText(lists.Names, count, entry.NamePos, entry.ShowName);
  InsertText(lists.NamesRecNo, count, entry.NamePos, entry.RecNo);
  InsertText(lists.Companies, count, entry.CompanyPos, entry.ShowCompany);
  InsertText(lists.CompaniesRecNo, count, entry.CompanyPos, entry.RecNo);
  lists.Count = static_cast<std::int16_t>(count + 1);
}

void Remove(const RecordLists& lists, const ListEntry& entry) {
  --lists.Count;
  RemoveText(lists.Names, entry.NamePos);
  RemoveText(lists.NamesRecNo, entry.NamePos);
  RemoveText(lists.Companies, entry.CompanyPos);
  RemoveText(lists.CompaniesRecNo, entry.CompanyPos);
}

std::size_t Index(const TextList& list, const TextList::const_iterator& place) {
  return static_cast<std::size_t>(place - list.begin());
}

// Where the list has the record; its size if nowhere. It is found at once among the entries of that
// text where they are sorted.
std::size_t Find(const TextList& recNos, const TextList& texts, const TextComparer& comparer,
                 std::string_view recNo, std::string_view text) {
  const auto first = std::partition_point(texts.begin(), texts.end(), [&](std::string_view entry) {
    return comparer.Compare(text, entry) > 0;
  });
  const auto begin = recNos.begin() + (first - texts.begin());
  if (begin != recNos.end() && *begin == recNo) return Index(recNos, begin);
  const auto last = std::partition_point(first, texts.end(), [&](std::string_view entry) {
    return comparer.Compare(text, entry) >= 0;
  });
  const auto end = recNos.begin() + (last - texts.begin());
  auto found = std::find(begin, end, recNo);
  if (found == end) found = std::find(recNos.begin(), recNos.end(), recNo);
  return Index(recNos, found);
}

}  // namespace

RecordLists AllLists(StoreData& data) {
  return {data.NamesList, data.NamesRecNo, data.CompaniesList, data.CompaniesRecNo,
          data.NoOfRecords};
}

RecordLists FilteredLists(StoreData& data) {
  return {data.FilteredNames, data.FilteredNamesRecNo, data.FilteredCompanies,
          data.FilteredCompaniesRecNo, data.FilteredCount};
}

std::optional<ListEntry> FindEntry(const RecordLists& lists, const TextComparer& comparer,
                                   std::string_view recNo, std::string_view showName,
                                   std::string_view showCompany) {
  if (lists.Count < 1) return std::nullopt;
  ListEntry entry;
  entry.RecNo = recNo;
  entry.NamePos = Find(lists.NamesRecNo, lists.Names, comparer, recNo, showName);
  entry.CompanyPos = Find(lists.CompaniesRecNo, lists.Companies, comparer, recNo, showCompany);
  if (entry.NamePos == lists.NamesRecNo.size() || entry.CompanyPos == lists.CompaniesRecNo.size()) {
    return std::nullopt;
  }
  entry.ShowName = lists.Names[entry.NamePos];
  entry.ShowCompany = lists.Companies[entry.CompanyPos];
  return entry;
}

void InsertEntry(ProfileUpdate& update, const RecordLists& lists, const ListEntry& entry) {
  const std::int16_t count = lists.Count;
  Insert(lists, entry);
  update.OnUndo([lists, entry, count] {
    Remove(lists, entry);
    lists.Count = count;
  });
}

void RemoveEntry(ProfileUpdate& update, const RecordLists& lists, const ListEntry& entry) {
  Remove(lists, entry);
  update.OnUndo([lists, entry] { Insert(lists, entry); });
}

}  // namespace quillary
