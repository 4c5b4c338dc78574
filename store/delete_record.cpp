#include <cstddef>
#include <optional>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/list_entries.h"
#include "store/record_reader.h"
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

// The record's entry in the lists, where the files have it as well.
RunTimeError Records::FindChecked(std::string_view recNo, ListEntry& entry) {
  if (const RunTimeError error = RestoreLinks(); error != RunTimeError::None) return error;
  RecordReader reader(profile_, data_.DataPath);
  const std::optional<ListEntry> found =
      FindEntry(AllLists(data_), comparer_, recNo, reader.Value(recNo, "ShowName"),
                reader.Value(recNo, "ShowCompany"));
  if (reader.Error() != RunTimeError::None) return reader.Error();
  if (!found) return RunTimeError::BadRecordNumber;
  entry = *found;
  return CheckPlace(reader, entry.NamePos, entry.CompanyPos, 2);
}

// Takes the record out of both chains, the lists in memory and the list box. Its own links stay.
void Records::UnlinkRecord(ProfileUpdate& update, const ListEntry& entry, std::size_t listIndex) {
  UnlinkFrom(NameChain, data_.NamesRecNo, entry.NamePos);
  UnlinkFrom(CompanyChain, data_.CompaniesRecNo, entry.CompanyPos);
  NoteHeaderEntry("NoOfRecords", NumberText(data_.NoOfRecords - 1));

  RemoveEntry(update, AllLists(data_), entry);
  if (data_.FilterOn) {
    const std::optional<ListEntry> filtered =
        FindEntry(FilteredLists(data_), comparer_, entry.RecNo, entry.ShowName, entry.ShowCompany);
    if (!filtered) return;  // and so it has no line
    RemoveEntry(update, FilteredLists(data_), *filtered);
  }
  RemoveLine(update, listIndex, data_.ViewMode == 0 ? entry.ShowName : entry.ShowCompany,
             entry.RecNo);
}

void Records::RemoveLine(ProfileUpdate& update, std::size_t index, const std::string& text,
                         const std::string& recNo) {
  lines_.RemoveLine(index);
  update.OnUndo([this, index, text, recNo] { lines_.InsertLine(index, text, recNo); });
}

RunTimeError Records::DeleteRecord(std::string_view RecNo, std::size_t ListIndex) {
  ProfileUpdate update(profile_);
  if (ToInt16(ReadHeaderEntry("DelNoOfRecords")) >= MaxRecords) return RunTimeError::Overflow;
  ListEntry entry;
  RunTimeError error = FindChecked(Trim(RecNo), entry);
  if (error != RunTimeError::None) return error;
  UnlinkRecord(update, entry, ListIndex);
  ClearLinks(entry.RecNo);
  error = AddToDeletedList(entry.RecNo);
  return error == RunTimeError::None ? update.Commit() : error;
}

RunTimeError Records::ChangeRecord(std::string_view RecNo, std::size_t ListIndex, bool Moves) {
  ProfileUpdate update(profile_);
  ListEntry entry;
  RunTimeError error = FindChecked(Trim(RecNo), entry);
  if (error != RunTimeError::None) return error;
  // Written first: whether the record still matches the filter depends on its new values.
  error = WriteRecord(entry.RecNo);
  if (error == RunTimeError::None && Moves) {
    UnlinkRecord(update, entry, ListIndex);
    FieldArray& values = data_.FieldValues;
    std::string& firstName = values[Field::FirstName];
    std::string& lastName = values[Field::LastName];
    std::string& company = values[Field::Company];
    error = InsertRecord(entry.RecNo, BuildShowName(firstName, lastName, company),
                         BuildShowCompany(firstName, lastName, company));
  }
  return error == RunTimeError::None ? update.Commit() : error;
}

}  // namespace quillary
