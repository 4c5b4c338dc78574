#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
namespace {

struct DeletedName {
  std::string Key;  // of the sorting
  std::string Text;
  std::string RecNo;
};

}  // namespace

// The deleted list in the files as they are at the first access to each.
class Records::DeletedList {
 public:
  explicit DeletedList(Records& records)
      : reader_(records.profile_, records.data_.DataPath),
        firstName_(Trim(records.ReadHeaderEntry(NameChain.FirstRecord))),
        firstCompany_(Trim(records.ReadHeaderEntry(CompanyChain.FirstRecord))),
        next_(Trim(records.ReadHeaderEntry("DelFirstRecord"))) {}

  // The record that a link names. Nothing if there is none, or if it is in the lists of live
  // records.
  std::optional<ProfileText::Section> Find(std::string_view recNo) {
    if (!ParseRecordNumber(recNo) || recNo == firstName_ || recNo == firstCompany_) {
      return std::nullopt;
    }
    const ProfileText::Section record = reader_.Record(recNo);
    if (!record.Exists()) return std::nullopt;
    for (const Chain* chain : {&NameChain, &CompanyChain}) {
      if (!Link(record, chain->Prev).empty() || !Link(record, chain->Next).empty()) {
        return std::nullopt;
      }
    }
    return record;
  }

  // The next record on the way from the first one; nothing at the end, be it a proper one or not.
  std::optional<ProfileText::Section> Go(std::string& recNo) {
    recNo = next_;
    const std::optional<ProfileText::Section> record = Find(recNo);
    if (!record || !seen_.insert(recNo).second) return std::nullopt;
    next_ = Link(*record, "NextDel");
    return record;
  }

 private:
  static std::string Link(const ProfileText::Section& record, std::string_view key) {
    return std::string(Trim(record.Value(key).value_or(std::string())));
  }

  RecordReader reader_;
  std::string firstName_;
  std::string firstCompany_;
  std::string next_;
  std::unordered_set<std::string> seen_;
};

bool Records::EnableRestoreEntry() {
  return ToInt16(ReadHeaderEntry("DelNoOfRecords")) != 0;
}

void Records::ReadDeletedNamesList() {
  progress_.Begin("Please wait while getting deleted names list...", "");
  data_.DelCount = ToInt16(ReadHeaderEntry("DelNoOfRecords"));
  const auto count = static_cast<std::size_t>(std::clamp<int>(data_.DelCount, 0, MaxDeletedListed));
  const std::string_view key = data_.ViewMode == 0 ? "ShowName" : "ShowCompany";
  std::vector<DeletedName> names;
  names.reserve(count);
  DeletedList list(*this);
  std::string recNo;
  while (names.size() < count) {
    const auto record = list.Go(recNo);
    if (!record) break;
    names.push_back({{}, record->Value(key).value_or(std::string()), recNo});
    progress_.Step(static_cast<double>(names.size()) / data_.DelCount * 100);
  }

  progress_.Begin("Please wait while sorting deleted names list...", "");
  std::size_t done = 0;
  for (auto& name : names) {
    name.Key = comparer_.SortKey(name.Text);
    progress_.Step(static_cast<double>(++done) / static_cast<double>(names.size()) * 100);
  }
  std::stable_sort(names.begin(), names.end(),
                   [](const DeletedName& a, const DeletedName& b) { return a.Key < b.Key; });
  data_.DelNamesList.clear();
  data_.DelRecNo.clear();
  for (auto& name : names) {
    data_.DelNamesList.push_back(std::move(name.Text));
    data_.DelRecNo.push_back(std::move(name.RecNo));
  }
  progress_.End();
}

// The record that a link of the deleted list names; empty if that is no deleted one.
std::string Records::DeletedRecord(std::string_view link) {
  std::string recNo(Trim(link));
  if (!recNo.empty() && !DeletedList(*this).Find(recNo)) recNo.clear();
  return recNo;
}

// The record before this one in the deleted list, empty for the first; nothing if the list does not
// lead to it.
std::optional<std::string> Records::DeletedBefore(const std::string& recNo) {
  if (Trim(ReadHeaderEntry("DelFirstRecord")) == recNo) return std::string();
  std::string previous = DeletedRecord(ReadRecordEntry(recNo, "PrevDel"));
  if (!previous.empty() && Trim(ReadRecordEntry(previous, "NextDel")) == recNo) return previous;
  // The way back is broken.
  DeletedList list(*this);
  while (list.Go(previous)) {
    if (Trim(ReadRecordEntry(previous, "NextDel")) == recNo) return previous;
  }
  return std::nullopt;
}

RunTimeError Records::RemoveFromDeletedList(std::string_view RecNo) {
  ProfileUpdate update(profile_);
  if (const RunTimeError error = RestoreLinks(); error != RunTimeError::None) return error;
  const std::string recNo(Trim(RecNo));
  if (DeletedRecord(recNo).empty()) return RunTimeError::BadRecordNumber;
  const std::optional<std::string> previous = DeletedBefore(recNo);
  if (!previous) return RunTimeError::BadRecordNumber;
  std::string next = DeletedRecord(ReadRecordEntry(recNo, "NextDel"));
  // In a circle the last record leads back.
  const bool isCircle =
      next == recNo || next == *previous || next == Trim(ReadHeaderEntry("DelFirstRecord"));
  if (isCircle) next.clear();

  const bool isOnly = previous->empty() && next.empty();
  const int left = isOnly ? 0 : std::max(ToInt16(ReadHeaderEntry("DelNoOfRecords")) - 1, 0);
  NoteHeaderEntry("DelNoOfRecords", NumberText(left));
  NoteRecordEntry(recNo, "PrevDel", "");
  NoteRecordEntry(recNo, "NextDel", "");
  if (previous->empty()) {
    NoteHeaderEntry("DelFirstRecord", next);
  } else {
    NoteRecordEntry(*previous, "NextDel", next);
  }
  if (!next.empty()) NoteRecordEntry(next, "PrevDel", *previous);
  return update.Commit();
}

RunTimeError Records::RestoreRecord(std::string_view RecNo) {
  if (data_.NoOfRecords >= MaxRecords) return RunTimeError::Overflow;
  ProfileUpdate update(profile_);
  RunTimeError error = RemoveFromDeletedList(RecNo);
  if (error == RunTimeError::None) {
    error = InsertRecord(RecNo, ReadRecordEntry(RecNo, "ShowName"),
                         ReadRecordEntry(RecNo, "ShowCompany"));
  }
  return error == RunTimeError::None ? update.Commit() : error;
}

}  // namespace quillary
