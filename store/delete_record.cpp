#include <algorithm>
#include <cstddef>
#include <optional>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/list_entries.h"
#include "store/records.h"

namespace quillary {

// Joins the neighbours of the record at `position`.
void Records::UnlinkFrom(const Chain& chain, const TextList& recNos, std::size_t position) {
  const bool isLast = position + 1 == recNos.size();
  const std::string next =
      isLast ? RecordBehind(chain, recNos) : std::string(Trim(recNos[position + 1]));
  std::string previous;
  if (position == 0) {
    NoteHeaderEntry(chain.FirstRecord, next);
  } else {
    previous = Trim(recNos[position - 1]);
    NoteRecordEntry(previous, chain.Next, next);
  }
  if (!next.empty()) NoteRecordEntry(next, chain.Prev, previous);
}

RunTimeError Records::CheckRecord(std::string_view RecNo) {
  std::optional<ListEntry> entry;
  return FindChecked(Trim(RecNo), entry);
}

RunTimeError Records::FindChecked(std::string_view recNo, std::optional<ListEntry>& entry) {
  if (const RunTimeError error = RestoreLinks(); error != RunTimeError::None) return error;
  entry = FindEntry(AllLists(data_), comparer_,
                    {std::string(recNo), ReadRecordEntry(recNo, "ShowName"),
                     ReadRecordEntry(recNo, "ShowCompany"), lastNamePos_, lastCompanyPos_});
  if (!entry) return RunTimeError::BadRecordNumber;
  lastNamePos_ = entry->NamePos;
  lastCompanyPos_ = entry->CompanyPos;
  return CheckPlace(entry->NamePos, entry->CompanyPos, 2);
}

// Takes the record out of both chains, the lists in memory and the list box. Its own links stay.
RunTimeError Records::UnlinkRecord(ProfileUpdate& update, const std::string& recNo,
                                   std::size_t listIndex) {
  std::optional<ListEntry> entry;
  const RunTimeError error = FindChecked(recNo, entry);
  if (error != RunTimeError::None) return error;
  UnlinkFrom(NameChain, data_.NamesRecNo, entry->NamePos);
  UnlinkFrom(CompanyChain, data_.CompaniesRecNo, entry->CompanyPos);
  NoteHeaderEntry("NoOfRecords", NumberText(data_.NoOfRecords - 1));

  RemoveEntry(update, AllLists(data_), *entry);
  if (data_.FilterOn) {
    const std::optional<ListEntry> filtered = FindEntry(FilteredLists(data_), comparer_, *entry);
    if (!filtered) return RunTimeError::None;  // and so it has no line
    RemoveEntry(update, FilteredLists(data_), *filtered);
  }
  RemoveLine(update, listIndex, data_.ViewMode == 0 ? entry->ShowName : entry->ShowCompany, recNo);
  return RunTimeError::None;
}

void Records::RemoveLine(ProfileUpdate& update, std::size_t index, const std::string& text,
                         const std::string& recNo) {
  lines_.RemoveLine(index);
  update.OnUndo([this, index, text, recNo] { lines_.InsertLine(index, text, recNo); });
}

RunTimeError Records::DeleteRecord(std::string_view RecNo, std::size_t ListIndex) {
  ProfileUpdate update(profile_);
  if (ToInt16(ReadHeaderEntry("DelNoOfRecords")) >= MaxRecords) return RunTimeError::Overflow;
  const std::string recNo(Trim(RecNo));
  RunTimeError error = UnlinkRecord(update, recNo, ListIndex);
  if (error != RunTimeError::None) return error;

  ClearLinks(recNo);
  error = AddToDeletedList(recNo);
  return error == RunTimeError::None ? update.Commit() : error;
}

RunTimeError Records::RelinkRecord(std::string_view RecNo, std::size_t ListIndex,
                                   std::string_view ShowName, std::string_view ShowCompany) {
  ProfileUpdate update(profile_);
  const std::string recNo(Trim(RecNo));
  RunTimeError error = UnlinkRecord(update, recNo, ListIndex);
  if (error == RunTimeError::None) error = InsertRecord(recNo, ShowName, ShowCompany);
  return error == RunTimeError::None ? update.Commit() : error;
}

}  // namespace quillary
