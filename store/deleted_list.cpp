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
      : header_(records.profile_), reader_(records.profile_, records.data_.DataPath) {
    const auto value = [&](std::string_view key) {
      const auto text = header_.Text(records.data_.DataFile).Value(HeaderSection, key);
      return std::string(Trim(text.value_or(std::string())));
    };
    firstName_ = value(NameChain.FirstRecord);
    firstCompany_ = value(CompanyChain.FirstRecord);
    first_ = next_ = value("DelFirstRecord");
    end_ = ToInt32(value("TotalNoOfRecords"));
  }

  const std::string& First() const { return first_; }

  // The record that a link names. Nothing if there is none, or if it is a live one.
  std::optional<ProfileText::Section> Find(const std::string& recNo) {
    if (!ParseRecordNumber(recNo)) return std::nullopt;
    const ProfileText::Section record = reader_.Record(recNo);
    if (!record.Exists() || IsLive(recNo, record)) return std::nullopt;
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
  // All records from the first one on.
  std::vector<std::string> All() {
    std::vector<std::string> all;
    for (std::string recNo; Go(recNo);) all.push_back(recNo);
    return all;
  }
  // The link that ended the way.
  const std::string& End() const { return next_; }

  // Whether a link leads into a file that is missing; it may come back, with the rest of the list.
  bool IsHidden(const std::string& recNo) {
    const auto number = ParseRecordNumber(recNo);
    return number && *number < end_ && reader_.File(RecordFileNumber(recNo)).Bytes().empty();
  }

  // The first error that kept a file from being read.
  RunTimeError Error() const {
    return header_.Error() != RunTimeError::None ? header_.Error() : reader_.Error();
  }

 private:
  static std::string Link(const ProfileText::Section& record, std::string_view key) {
    return std::string(Trim(record.Value(key).value_or(std::string())));
  }

  // Links that are not answered are strays.
  bool IsAnswered(const std::string& recNo, const std::string& other, std::string_view back) {
    return other != recNo && ParseRecordNumber(other) && Link(reader_.Record(other), back) == recNo;
  }
  bool IsLive(const std::string& recNo, const ProfileText::Section& record) {
    if (recNo == firstName_ && recNo == firstCompany_) return true;
    const auto isLinked = [&](const Chain& chain) {
      return IsAnswered(recNo, Link(record, chain.Prev), chain.Next) ||
             IsAnswered(recNo, Link(record, chain.Next), chain.Prev);
    };
    return isLinked(NameChain) || isLinked(CompanyChain);
  }

  ProfileSnapshot header_;
  RecordReader reader_;
  std::string firstName_;
  std::string firstCompany_;
  std::string first_;
  std::string next_;
  std::int32_t end_ = 0;
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

RunTimeError Records::ReadDeletedNumbers(std::unordered_set<std::int32_t>& numbers) {
  DeletedList list(*this);
  for (const auto& recNo : list.All()) numbers.insert(ToInt32(recNo));
  return list.Error();
}

// The link that cannot be followed; empty as a rule.
std::string Records::EndOfDeletedList() {
  DeletedList list(*this);
  static_cast<void>(list.All());
  return list.End();
}

// Puts a record without links at the front of the deleted list.
RunTimeError Records::AddToDeletedList(const std::string& recNo, int count) {
  DeletedList list(*this);
  const std::string& first = list.First();
  const bool isThere = first != recNo && list.Find(first);
  const bool isHidden = !isThere && list.IsHidden(first);
  // A count that cannot be right is not built upon.
  if (isThere && count < 1) count = static_cast<int>(list.All().size());
  if (!isThere && !isHidden) count = 0;
  if (list.Error() != RunTimeError::None) return list.Error();

  if (isThere || isHidden) NoteRecordEntry(recNo, "NextDel", first);
  if (isThere) NoteRecordEntry(first, "PrevDel", recNo);
  NoteHeaderEntry("DelNoOfRecords", NumberText(count + 1));
  NoteHeaderEntry("DelFirstRecord", recNo);
  return RunTimeError::None;
}

RunTimeError Records::RemoveFromDeletedList(std::string_view RecNo) {
  ProfileUpdate update(profile_);
  if (const RunTimeError error = RestoreLinks(); error != RunTimeError::None) return error;
  const std::string recNo(Trim(RecNo));
  DeletedList list(*this);
  const std::vector<std::string> all = list.All();
  const std::string hidden = list.IsHidden(list.End()) ? list.End() : std::string();
  if (list.Error() != RunTimeError::None) return list.Error();
  const auto found = std::find(all.begin(), all.end(), recNo);
  if (found == all.end()) return RunTimeError::BadRecordNumber;

  const bool isLast = found + 1 == all.end();
  const std::string& next = isLast ? hidden : *(found + 1);
  const std::string previous = found == all.begin() ? std::string() : *(found - 1);
  // The length that was found, whatever the count says; only what is hidden counts unseen.
  int left = static_cast<int>(all.size()) - 1;
  if (!hidden.empty()) left = std::max(left, ToInt16(ReadHeaderEntry("DelNoOfRecords")) - 1);
  NoteHeaderEntry("DelNoOfRecords", NumberText(left));
  NoteRecordEntry(recNo, "PrevDel", "");
  NoteRecordEntry(recNo, "NextDel", "");
  if (previous.empty()) {
    NoteHeaderEntry("DelFirstRecord", next);
  } else {
    NoteRecordEntry(previous, "NextDel", next);
  }
  if (!isLast) NoteRecordEntry(next, "PrevDel", previous);
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
