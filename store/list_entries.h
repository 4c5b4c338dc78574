#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/text.h"
#include "store/profile.h"
#include "store/store_data.h"

namespace quillary {

// The lists of all records, or of the filtered ones. Without records each has one empty entry.
struct RecordLists {
  TextList& Names;
  TextList& NamesRecNo;
  TextList& Companies;
  TextList& CompaniesRecNo;
  std::int16_t& Count;
};

RecordLists AllLists(StoreData& data);
RecordLists FilteredLists(StoreData& data);

// One record's place in the lists.
struct ListEntry {
  std::string RecNo;
  std::string ShowName;
  std::string ShowCompany;
  std::size_t NamePos = 0;
  std::size_t CompanyPos = 0;
};

// The record's entry; nothing if it is not in both lists. Found at once by the texts that it has in
// them, where they are sorted.
std::optional<ListEntry> FindEntry(const RecordLists& lists, const TextComparer& comparer,
                                   std::string_view recNo, std::string_view showName,
                                   std::string_view showCompany);

// Both are taken back if the group fails.
void InsertEntry(ProfileUpdate& update, const RecordLists& lists, const ListEntry& entry);
void RemoveEntry(ProfileUpdate& update, const RecordLists& lists, const ListEntry& entry);

}  // namespace quillary
