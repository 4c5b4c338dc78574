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

}  // namespace

RecordLists AllLists(StoreData& data) {
  return {data.NamesList, data.NamesRecNo, data.CompaniesList, data.CompaniesRecNo,
          data.NoOfRecords};
}

RecordLists FilteredLists(StoreData& data) {
  return {data.FilteredNames, data.FilteredNamesRecNo, data.FilteredCompanies,
          data.FilteredCompaniesRecNo, data.FilteredCount};
}

std::optional<ListEntry> FindEntry(const RecordLists& lists, std::string_view recNo) {
  if (lists.Count < 1) return std::nullopt;
  const auto name = std::find(lists.NamesRecNo.begin(), lists.NamesRecNo.end(), recNo);
  const auto company = std::find(lists.CompaniesRecNo.begin(), lists.CompaniesRecNo.end(), recNo);
  if (name == lists.NamesRecNo.end() || company == lists.CompaniesRecNo.end()) return std::nullopt;
  const auto namePos = static_cast<std::size_t>(name - lists.NamesRecNo.begin());
  const auto companyPos = static_cast<std::size_t>(company - lists.CompaniesRecNo.begin());
  return ListEntry{std::string(recNo), std::string(lists.Names[namePos]),
                   std::string(lists.Companies[companyPos]), namePos, companyPos};
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
