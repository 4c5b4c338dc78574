#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"
#include "store/hooks.h"
#include "store/profile.h"
#include "store/store_data.h"

namespace quillary {

// Asked by OpenDataFile when there is no valid header; true means "create a new data set".
class OpenDataFileHooks {
 public:
  virtual ~OpenDataFileHooks() = default;
  // `text`: the whole question, lines separated by a carriage return.
  virtual bool AskToCreate(std::string_view text) = 0;
};

// The records and their three lists: every procedure that reads or changes the data files.
//
// A procedure that writes several entries does so in a ProfileUpdate of its own, which joins the
// caller's where one is open. When the group fails, files, StoreData and list box are as before.
class Records {
 public:
  Records(StoreData& data, Profile& profile, const TextComparer& comparer, ProgressHooks& progress,
          ListHooks& lines);

  // Finds the data directory from the preferences, completes or drops an unfinished change there,
  // and reads NoOfRecords; where there is no valid header, asks and creates a new data set in
  // "quilldat" of the program's own directory (`ownDirectory`, a program path); a header of other
  // records that lies there is kept as "quill.old". False: the program
  // is to end; then `error` tells why, None meaning that the user declined. When a new data set
  // cannot be made, StoreData is as it was before the question.
  bool OpenDataFile(std::string_view prefsFile, std::string_view ownDirectory,
                    OpenDataFileHooks& hooks, RunTimeError& error);
  // Writes the empty header into DataFile; changes nothing in memory.
  RunTimeError WriteNewHeader();

  // The record file of record number n: DataPath & "quill" & Int(n / 100) & ".dat".
  std::string RecordFile(std::string_view RecNo) const;
  std::string ReadRecordEntry(std::string_view RecNo, std::string_view Key);
  RunTimeError WriteRecordEntry(std::string_view RecNo, std::string_view Key,
                                std::string_view Value);
  std::string ReadHeaderEntry(std::string_view Key);
  RunTimeError WriteHeaderEntry(std::string_view Key, std::string_view Value);
  // The record's fields into FieldValues, all of them as they stood at one moment. A missing record
  // has empty fields; so has one whose file cannot be read, which is an error.
  RunTimeError ReadRecord(std::string_view RecNo);

  // Whether the record's section is in its file, linked or not.
  bool RecordExists(std::string_view RecNo);
  // The number for a new record: TotalNoOfRecords, or the first one above it that no section
  // bears, so that a record of an older or damaged data set is never overwritten. Raises
  // TotalNoOfRecords to the number after it; to be called inside the group that writes the record.
  // On an error (no number is left: DeviceError; the data files are gone: FileNotFound) nothing has
  // changed.
  RunTimeError NextRecordNumber(std::string& RecNo);

  // Writes FieldValues and the two display strings into the record. Clears the salutation of a
  // record without a personal name, and trims first name, last name and company in FieldValues
  // after they were written.
  RunTimeError WriteRecord(std::string_view RecNo);

  // Reads both lists from the files into memory: exactly NoOfRecords entries of each. Where a chain
  // ends early, runs in a circle or points nowhere, or the two do not hold the same records, takes
  // every record that either chain reaches or that stands in the files without being deleted,
  // sorted, sets NoOfRecords to their number and ListsIncomplete. Changes nothing on disk.
  void GetNamesList();
  // Sorts both lists (equal ones keep their order) and, if anything moved, writes every link and
  // the list heads anew as one group. On an error the files are as before and the lists in memory
  // are sorted all the same; the next change writes the links first.
  RunTimeError SortNamesList();
  void SortFilteredList();
  // To be called at the start of a group that reads or changes links. If the links in the files are
  // not those of the lists in memory, writes all of them anew. Fails, so that nothing is written,
  // where the data files are gone or a part of them could not be read.
  RunTimeError RestoreLinks();
  // Fills the list box from the list that ViewMode and FilterOn choose.
  void ShowRecords();

  // Links the record, whose fields and display strings are stored already, into both lists, in the
  // files, in memory and in the list box; with the filter on, into the filtered lists if it
  // matches. It is placed before the entries equal to it (in the filtered lists behind them).
  // Preconditions: NoOfRecords < MaxRecords; the record is in neither list.
  RunTimeError InsertRecord(std::string_view RecNo, std::string_view ShowName,
                            std::string_view ShowCompany);

  // Whether the record's fields contain every criterion that is not empty, upper and lower case
  // being the same.
  bool RecordMatchesFilter(std::string_view RecNo);
  // Puts the numbers of the matching live records, in name order, into both filtered number lists.
  void BuildFilteredList();
  // Reads the display strings of the filtered records.
  void GetFilteredNamesList();

 private:
  static constexpr std::string_view Signature = "Quillary";

  struct Chain;  // the names of one list's keys
  static const Chain NameChain;
  static const Chain CompanyChain;

  // For use inside a group, which fails if the write cannot be noted.
  void Note(std::string_view file, std::string_view section, std::span<const EntryValue> entries);
  void NoteRecordEntry(std::string_view RecNo, std::string_view Key, std::string_view Value);
  void NoteHeaderEntry(std::string_view Key, std::string_view Value);

  RunTimeError CheckHeader();
  RunTimeError KeepOldHeader();

  std::string RecordBehind(const Chain& chain, const std::vector<std::string>& recNos);
  void NoteLink(const Chain& chain, const std::vector<std::string>& recNos, std::size_t index,
                const std::string& behind);
  void NoteLinks(const std::string& behindNames, const std::string& behindCompanies,
                 ProgressHooks* progress);
  void LinkRecord(const Chain& chain, const std::vector<std::string>& recNos, std::size_t position,
                  const std::string& recNo);
  void AddToFilteredLists(ProfileUpdate& update, const std::string& recNo,
                          std::string_view showName, std::string_view showCompany);
  void ShowNewLine(ProfileUpdate& update, std::size_t index, std::string_view text,
                   const std::string& recNo);

  StoreData& data_;
  Profile& profile_;
  const TextComparer& comparer_;
  ProgressHooks& progress_;
  ListHooks& lines_;

  // Why the lists in memory are not to be written over the links in the files.
  RunTimeError listsError_ = RunTimeError::None;
  // The order in memory could not be stored; what follows the listed records in the files.
  bool linksOutdated_ = false;
  std::string behindNames_;
  std::string behindCompanies_;
};

// The display strings of the two lists. All three arguments are trimmed in place.
std::string BuildShowName(std::string& FirstName, std::string& LastName, std::string& Company);
std::string BuildShowCompany(std::string& FirstName, std::string& LastName, std::string& Company);

}  // namespace quillary
