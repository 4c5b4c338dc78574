#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/text.h"
#include "store/hooks.h"
#include "store/profile.h"
#include "store/store_data.h"

namespace quillary {

class RecordReader;
struct ListEntry;
struct NumberRange;

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
//
// BadRecordNumber says that the lists in memory are not those of the files any more, since another
// program has changed them: what was asked for is refused until ReadListsAgain.
class Records {
 public:
  Records(StoreData& data, Profile& profile, const TextComparer& comparer, ProgressHooks& progress,
          ListHooks& lines);

  // Finds the data directory from the preferences, completes or drops an unfinished change there,
  // and reads NoOfRecords; where there is no valid header, asks and creates a new data set in
  // "quilldat" of the program's own directory (`ownDirectory`, a program path); a header of other
  // records that lies there is kept as "quill.dat.kept", "quill.dat.kept2" ... A header that cannot
  // be read is an error and no reason to ask. False: the program is to end; then `error` tells why,
  // None meaning that the user declined. When a new data set cannot be made, StoreData is as it was
  // before the question.
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
  // A record's fields into `fields`, or into FieldValues, all of them as they stood at one moment.
  // A missing record has empty fields; so has one whose file cannot be read, which is an error.
  RunTimeError ReadFields(std::string_view RecNo, FieldArray& fields);
  RunTimeError ReadRecord(std::string_view RecNo) { return ReadFields(RecNo, data_.FieldValues); }

  // Whether the record's section is in its file, linked or not.
  bool RecordExists(std::string_view RecNo);
  // The number for a new record: TotalNoOfRecords, or the first one above it that no section
  // bears, so that a record of an older or damaged data set is never overwritten. A record file
  // that lacks a record is left out, as the whole one may come back. Raises
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
  // every record that either chain reaches and the deleted list does not; unless one of them,
  // linked in both directions, has NoOfRecords, also every other one in the files that is not
  // deleted. Where a record is there again without which the links were written, or other records
  // are found where a name is not linked back to the one before, does the same. Then both lists are
  // sorted, NoOfRecords is their length, and ListsIncomplete is set. Changes nothing on disk.
  void GetNamesList();
  // Sorts both lists (equal ones keep their order) and, if anything moved, writes every link and
  // the list heads anew as one group. On an error, and without `mayStore`, the files are as before
  // and the lists in memory are sorted all the same; the next change writes the links first.
  RunTimeError SortNamesList(bool mayStore = true);
  void SortFilteredList();
  // What another program has changed meanwhile: reads NoOfRecords and all lists anew, as at a start
  // of the program, the filtered ones included where the filter is on, and fills the list box. The
  // result is SortNamesList's; `unread` tells why the first file that could not be read could not.
  RunTimeError ReadListsAgain(RunTimeError* unread = nullptr);
  // Whether changes are refused after this error until ReadListsAgain.
  bool MustReadLists(RunTimeError error) const {
    return error == RunTimeError::BadRecordNumber || listsError_ != RunTimeError::None;
  }
  // To be called at the start of a group that reads or changes links. If the links in the files are
  // not those of the lists in memory, writes all of them anew, and those of the deleted list where
  // records fell out of it; records that are missing then are noted in the header. Fails, so that
  // nothing is written, where the data files are gone or a part of them could not be read, and with
  // BadRecordNumber where the header is not any more that of the lists in memory, or all links are
  // to be written and the files have other records.
  RunTimeError RestoreLinks();
  // Fills the list box from the list that ViewMode and FilterOn choose.
  void ShowRecords();

  // Links the record, whose fields and display strings are stored already, into both lists, in the
  // files, in memory and in the list box; with the filter on, into the filtered lists if it
  // matches. It is placed before the entries equal to it (in the filtered lists behind them).
  // Preconditions: NoOfRecords < MaxRecords; the record is in neither list.
  RunTimeError InsertRecord(std::string_view RecNo, std::string_view ShowName,
                            std::string_view ShowCompany);

  // Takes the record, which is line `ListIndex` of the list box, out of both lists and puts it at
  // the front of the deleted list: in the files, in memory, in the filtered lists where the filter
  // is on, and in the list box. Its fields and display strings stay as they are. The number of keys
  // written does not depend on the number of records. Refused with Overflow, before anything is
  // written, where the deleted list holds MaxRecords already, and with BadRecordNumber where the
  // record is in no list.
  RunTimeError DeleteRecord(std::string_view RecNo, std::size_t ListIndex);
  // Stores the fields of a live record, which is line `ListIndex` of the list box, as WriteRecord
  // does. Where it `Moves`, it goes to the place of its new display strings in both lists: what
  // DeleteRecord, RemoveFromDeletedList and InsertRecord would do one after the other, and so
  // without a change to the deleted list, full or not. With the filter on, it leaves the filtered
  // lists then if it does not match any more. Without `Moves` the display strings must be those
  // that are stored. BadRecordNumber where the files do not have the record where the lists have
  // it, or show it or what is beside it otherwise, also if it stays there.
  RunTimeError ChangeRecord(std::string_view RecNo, std::size_t ListIndex, bool Moves);

  // Stores `count` new records and puts them into both lists, before the entries equal to them; of
  // two new ones that are equal the later one stands first. `fields(i)` gives the fields of the new
  // record i, from 0 on, each once; unlike those that WriteRecord gets they are stored as they are,
  // and the display strings are made of them with their blanks. With `replace`, the header is
  // written anew first: the records that were there stay in their files, but no list leads to them
  // and none of their numbers is used again. Everything is one group, and the list box stays as it
  // is. Reports its progress and lets events run in the group, which is dropped if the program is
  // asked to end. Refused with Overflow where there would be more than MaxRecords.
  RunTimeError ImportRecords(std::size_t count,
                             const std::function<FieldArray(std::size_t)>& fields, bool replace);

  // Whether there are deleted records. A count that is no number counts as none.
  bool EnableRestoreEntry();
  // Reads the deleted list into DelCount, DelNamesList and DelRecNo, sorted by the display strings
  // that ViewMode chooses (equal ones keep their order), MaxDeletedListed entries at most. Where
  // the chain breaks off, runs in a circle or leads to a record that is not deleted before all that
  // DelNoOfRecords counts are found, takes also the other records that are in no list; where there
  // are too few of them, the list is shorter. Where it does so behind them, or ListsIncomplete is
  // set, takes those of the others that have links of deleted records. Changes nothing on disk.
  // Reports its progress and lets events run. A list that is found whole is not gone through again
  // to take a record off it.
  void ReadDeletedNamesList();
  // Unlinks the record from the deleted list and clears its two keys there. Refused with
  // BadRecordNumber where the record is not in it, or not any more.
  RunTimeError RemoveFromDeletedList(std::string_view RecNo);
  // Takes a deleted record off the deleted list and inserts it into both lists, as InsertRecord
  // does. Refused as RemoveFromDeletedList is, and with Overflow where there are MaxRecords live
  // ones.
  RunTimeError RestoreRecord(std::string_view RecNo);

  // The entry after `start` (then round from the first one up to `start` itself) whose record has
  // `text` in one of the fields, upper and lower case being the same; nothing if there is none.
  // `recordNos`: the entries' record numbers. Records in a file that cannot be read are passed
  // over; `error` tells why the first such file could not be. Reports its progress and lets events
  // run.
  struct FoundEntry {
    std::size_t Index = 0;     // of the entry
    std::size_t KeyIndex = 0;  // of the first field in `fields` that has the text
  };
  std::optional<FoundEntry> FindText(std::string_view text, const std::vector<Field>& fields,
                                     const TextList& recordNos, std::size_t start,
                                     RunTimeError* error = nullptr);

  // Whether the record's fields contain every criterion that is not empty, upper and lower case
  // being the same.
  bool RecordMatchesFilter(std::string_view RecNo);
  // Puts the numbers of the matching live records, in name order, into both filtered number lists.
  // Records in a file that cannot be read do not match; `error` tells why the first such file could
  // not be.
  void BuildFilteredList(RunTimeError* error = nullptr);
  // Reads the display strings of the filtered records.
  void GetFilteredNamesList();

  // The key under which the header notes the records that were missing when the links were last
  // written without them; their numbers, in rising order.
  static constexpr std::string_view MissingRecords = "MissingRecords";
  std::vector<std::int32_t> AwaitedNumbers();

 private:
  static constexpr std::string_view HeaderSection = "General Info";
  static constexpr std::string_view Signature = "Quillary";
  static constexpr std::string_view ReplacedRecords = "ReplacedRecords";

  struct Chain;  // the names of one list's keys
  class DeletedList;
  struct NewRecord {
    std::string RecNo;
    std::string ShowName;
    std::string ShowCompany;
  };
  // The lists as the files have them.
  struct ListsInFiles {
    TextList Names;
    TextList NamesRecNo;
    TextList Companies;
    TextList CompaniesRecNo;
    std::int16_t Count = 0;
    bool IsIncomplete = false;
    bool HaveReturned = false;
    RunTimeError Error = RunTimeError::None;
  };
  static const Chain NameChain;
  static const Chain CompanyChain;

  // For use inside a group, which fails if the write cannot be noted.
  void Note(std::string_view file, std::string_view section, std::span<const EntryValue> entries);
  void NoteRecordEntry(std::string_view RecNo, std::string_view Key, std::string_view Value);
  void NoteHeaderEntry(std::string_view Key, std::string_view Value);

  // For work whose end is not long after all of it was counted.
  Profile::GoesOn EventsRun() {
    return [this](bool) {
      progress_.Step(100);
      return true;
    };
  }
  RunTimeError CheckHeader();
  std::int16_t CountInHeader();
  void ReadNoOfRecords();
  ListsInFiles ReadLists(std::int16_t countInHeader, ProgressHooks* progress);
  // What the header says of the three lists.
  static constexpr std::array<std::string_view, 6> ListKeyNames{
      "NoOfRecords",    "NameFirstRecord", "CompanyFirstRecord",
      "DelNoOfRecords", "DelFirstRecord",  "TotalNoOfRecords"};
  using ListKeys = std::array<std::string, ListKeyNames.size()>;
  RunTimeError ReadListKeys(ListKeys& values);
  RunTimeError CheckLists();
  RunTimeError CheckRecords();
  bool IsLinkKnown(RecordReader& reader, const Chain& chain, std::size_t position);
  RunTimeError CheckPlace(RecordReader& reader, std::size_t namePos, std::size_t companyPos,
                          std::size_t links);
  RunTimeError KeepOldHeader();
  NumberRange GivenNumbers();
  bool HasReturned();
  void NoteMissingRecords(RecordReader& reader);
  bool LinksLeadTo(const std::vector<std::int32_t>& numbers);
  std::int64_t FirstNewNumber(RecordReader& reader);
  RunTimeError FindFreeNumbers(std::size_t count, std::vector<std::string>& numbers);

  std::string RecordBehind(const Chain& chain, const TextList& recNos);
  void NoteLink(const Chain& chain, const TextList& recNos, std::size_t index,
                const std::string& behind);
  void NoteLinks(const std::string& behindNames, const std::string& behindCompanies,
                 ProgressHooks* progress);
  void ClearLinks(const std::string& recNo);
  void LinkRecord(const Chain& chain, const TextList& recNos, std::size_t position,
                  const std::string& recNo);
  void UnlinkFrom(const Chain& chain, const TextList& recNos, std::size_t position);
  RunTimeError FindChecked(std::string_view recNo, ListEntry& entry);
  void UnlinkRecord(ProfileUpdate& update, const ListEntry& entry, std::size_t listIndex);
  RunTimeError ReadDeletedNumbers(std::unordered_set<std::int32_t>& numbers);
  std::string EndOfDeletedList();
  void NoteDeletedLinks(const std::vector<std::string>& recNos, const std::string& end);
  RunTimeError RestoreDeletedLinks();
  RunTimeError AddToDeletedList(const std::string& recNo);
  void AddToFilteredLists(ProfileUpdate& update, const std::string& recNo,
                          std::string_view showName, std::string_view showCompany);
  void KeepLists(ProfileUpdate& update);
  void ForgetLists();
  void NoteNewRecord(const NewRecord& record, const FieldArray& values);
  void PrependToLists(const std::vector<NewRecord>& records);
  void ShowNewLine(ProfileUpdate& update, std::size_t index, std::string_view text,
                   const std::string& recNo);
  void RemoveLine(ProfileUpdate& update, std::size_t index, const std::string& text,
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
  // Those of the header when the lists were read, with this program's own changes since.
  ListKeys knownKeys_;
  // The deleted list as it was last gone through, without what has been taken off it since. Empty
  // where it is not known to be whole.
  std::vector<std::int32_t> knownDeleted_;
};

// The display strings of the two lists. All three arguments are trimmed in place.
std::string BuildShowName(std::string& FirstName, std::string& LastName, std::string& Company);
std::string BuildShowCompany(std::string& FirstName, std::string& LastName, std::string& Company);

}  // namespace quillary
