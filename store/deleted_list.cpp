#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/listed_records.h"
#include "store/number_ranges.h"
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
      : data_(records.data_),
        header_(records.profile_),
        reader_(records.profile_, records.data_.DataPath) {
    const auto value = [&](std::string_view key) {
      const auto text = header_.Text(records.data_.DataFile).Value(HeaderSection, key);
      return std::string(Trim(text.value_or(std::string())));
    };
    firstName_ = value(NameChain.FirstRecord);
    firstCompany_ = value(CompanyChain.FirstRecord);
    first_ = next_ = value("DelFirstRecord");
    given_ = records.GivenNumbers();
    count_ = static_cast<std::size_t>(std::max<int>(ToInt16(value("DelNoOfRecords")), 0));
  }

  const std::string& First() const { return first_; }

  // The record that a link names. Nothing if there is none, or if it is a live one.
  std::optional<ProfileText::Section> Find(const std::string& recNo) {
    if (!ParseRecordNumber(recNo)) return std::nullopt;
    const ProfileText::Section record = reader_.Record(recNo);
    if (!reader_.HasRecord(recNo) || IsLive(recNo, record)) return std::nullopt;
    return record;
  }

  // The next record on the way from the first one; nothing at the end, be it a proper one or not.
  std::optional<ProfileText::Section> Go(std::string& recNo) {
    const std::string previous = std::exchange(recNo, next_);
    const std::optional<ProfileText::Section> record = Find(recNo);
    if (!record || !Belongs(recNo, seen_.empty() ? std::string() : previous)) return std::nullopt;
    const std::int32_t number = ToInt32(recNo);
    if (!seen_.insert(number).second) return std::nullopt;
    passed_.push_back(number);
    next_ = Link(*record, "NextDel");
    return record;
  }
  // The link that ended the way.
  const std::string& End() const { return next_; }
  // Whether more records are counted than the way has led to.
  bool IsShort() const { return passed_.size() < count_; }
  // The numbers of the records on the way, if that is the whole list; otherwise none.
  std::vector<std::int32_t> Whole() const {
    const bool isWhole = next_.empty() && passed_.size() == count_ && Error() == RunTimeError::None;
    return isWhole ? passed_ : std::vector<std::int32_t>();
  }
  int Count() const { return static_cast<int>(count_); }

  // What a record stands between; empty where there is none.
  struct Place {
    std::string Previous;
    std::string Next;
    bool IsNextHidden = false;
  };
  // The place of a record in the list as it was when it was whole; nothing where the count or the
  // links there have become others.
  std::optional<Place> FindIn(const std::vector<std::int32_t>& whole, const std::string& recNo) {
    const auto found =
        std::find(whole.begin(), whole.end(), ParseRecordNumber(recNo).value_or(Nowhere));
    if (found == whole.end() || whole.size() != count_) return std::nullopt;
    Place place;
    if (found != whole.begin()) place.Previous = NumberText(*(found - 1));
    if (found + 1 != whole.end()) place.Next = NumberText(*(found + 1));
    const bool isSame = AreJoined(place.Previous, recNo) && AreJoined(recNo, place.Next);
    return isSame ? std::optional(place) : std::nullopt;
  }

  // All records from the first one on.
  std::vector<std::string> Way() {
    std::vector<std::string> way;
    for (std::string recNo; Go(recNo);) way.push_back(recNo);
    return way;
  }
  // Where the links do not hold together: the other records that are in no list and belong to this
  // one.
  std::vector<std::string> Strays() {
    std::vector<std::string> strays;
    if (!IsShort() && next_.empty() && !data_.ListsIncomplete) return strays;
    std::unordered_set<std::string_view> live(data_.NamesRecNo.begin(), data_.NamesRecNo.end());
    live.insert(data_.CompaniesRecNo.begin(), data_.CompaniesRecNo.end());
    for (std::int32_t number = given_.Begin; number < given_.End; ++number) {
      const std::string recNo = NumberText(number);
      if (live.contains(recNo) || seen_.contains(number) || !Find(recNo)) continue;
      if (IsShort() || DeletedLinks(recNo) > 0) strays.push_back(recNo);
    }
    return strays;
  }
  // Whether a record that follows `previous` (empty: the first) belongs there: a link that is out
  // of date may lead to one that has become live.
  bool Belongs(const std::string& recNo, const std::string& previous) {
    const std::optional<ProfileText::Section> record = Find(recNo);
    if (!record) return false;
    if (previous.empty()) return DeletedLinks(recNo) >= 0;
    // The link that leads to it is one more.
    return Link(*record, "PrevDel") == previous || DeletedLinks(recNo) + 1 >= 0;
  }
  // By how many more links of deleted records than of live ones a record is joined to others. A
  // head that leads to it is one, too.
  int DeletedLinks(const std::string& recNo) {
    const ProfileText::Section record = reader_.Record(recNo);
    int links = (recNo == first_) - (recNo == firstName_) - (recNo == firstCompany_);
    for (const auto key : {"PrevDel", "NextDel"}) links += Link(record, key).empty() ? 0 : 1;
    for (const Chain* chain : {&NameChain, &CompanyChain}) {
      for (const auto key : {chain->Prev, chain->Next}) {
        links -= Link(record, key).empty() ? 0 : 1;
      }
    }
    return links;
  }
  // Whether a record that is not on the way looks as if it belonged to the list.
  bool LooksDeleted(const std::string& recNo) {
    return Find(recNo) && DeletedLinks(recNo) >= (IsShort() ? 0 : 1);
  }
  // How many there are besides those that were found, in files that are missing: the count tells.
  int Hidden(std::size_t found) {
    for (std::int32_t number = given_.Begin; number < given_.End && found < count_; ++number) {
      if (!reader_.HasRecord(NumberText(number))) return static_cast<int>(count_ - found);
    }
    return 0;
  }

  // Whether a link leads to a record that is missing; it may come back, with the rest of the list.
  bool IsHidden(const std::string& recNo) {
    const auto number = ParseRecordNumber(recNo);
    return number && *number < given_.End && !reader_.HasRecord(recNo);
  }

  // The first error that kept a file from being read.
  RunTimeError Error() const {
    return header_.Error() != RunTimeError::None ? header_.Error() : reader_.Error();
  }

 private:
  static std::string Link(const ProfileText::Section& record, std::string_view key) {
    return std::string(Trim(record.Value(key).value_or(std::string())));
  }

  // Whether each of these leads to the other; empty: before the first one, behind the last one.
  bool AreJoined(const std::string& recNo, const std::string& next) {
    const auto leads = [&](const std::string& from, std::string_view key, const std::string& to) {
      const std::optional<ProfileText::Section> record = Find(from);
      return record && Link(*record, key) == to;
    };
    return (recNo.empty() ? first_ == next : leads(recNo, "NextDel", next)) &&
           (next.empty() || leads(next, "PrevDel", recNo));
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

  const StoreData& data_;
  ProfileSnapshot header_;
  RecordReader reader_;
  std::string firstName_;
  std::string firstCompany_;
  std::string first_;
  std::string next_;
  NumberRange given_;
  std::size_t count_ = 0;  // in the header
  std::vector<std::int32_t> passed_;
  std::unordered_set<std::int32_t> seen_;  // the same
};

bool Records::EnableRestoreEntry() {
  return ToInt16(ReadHeaderEntry("DelNoOfRecords")) != 0;
}

void Records::ReadDeletedNamesList() {
  progress_.Begin("Please wait while getting deleted names list...", "");
  data_.DelCount = ToInt16(ReadHeaderEntry("DelNoOfRecords"));
  const std::string_view key = data_.ViewMode == 0 ? "ShowName" : "ShowCompany";
  std::vector<DeletedName> names;
  DeletedList list(*this);
  std::string recNo;
  int found = 0;
  const auto take = [&](const ProfileText::Section& record) {
    if (++found <= MaxDeletedListed) {
      names.push_back({{}, record.Value(key).value_or(std::string()), recNo});
    }
    progress_.Step(std::min(static_cast<double>(found) / data_.DelCount, 1.0) * 100);
  };
  while (const auto record = list.Go(recNo)) {
    // What is not counted is not listed.
    if (found < data_.DelCount) take(*record);
  }
  knownDeleted_ = list.Whole();
  for (const std::string& stray : list.Strays()) {
    recNo = stray;
    take(*list.Find(recNo));
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

// Those that the list leads to, and those that look as if they belonged to it.
RunTimeError Records::ReadDeletedNumbers(std::unordered_set<std::int32_t>& numbers) {
  DeletedList list(*this);
  for (const auto& recNo : list.Way()) numbers.insert(ToInt32(recNo));
  const NumberRange given = GivenNumbers();
  for (std::int32_t number = given.Begin; number < given.End; ++number) {
    if (list.LooksDeleted(NumberText(number))) numbers.insert(number);
  }
  return list.Error();
}

// The link that cannot be followed; empty as a rule.
std::string Records::EndOfDeletedList() {
  DeletedList list(*this);
  static_cast<void>(list.Way());
  return list.End();
}

// All links of the deleted records anew; `end`: what follows the last record.
void Records::NoteDeletedLinks(const std::vector<std::string>& recNos, const std::string& end) {
  std::string previous;
  for (std::size_t i = 0; i < recNos.size(); ++i) {
    const std::array<EntryValue, 2> links{
        {{"PrevDel", previous}, {"NextDel", i + 1 < recNos.size() ? recNos[i + 1] : end}}};
    ClearLinks(recNos[i]);
    Note(RecordFile(recNos[i]), RecordSection(recNos[i]), links);
    previous = recNos[i];
  }
  NoteHeaderEntry("DelFirstRecord", recNos.empty() ? end : recNos.front());
}

// Takes into the chain what belongs to the list and is not linked. Where a file is missing it may
// be linked from there.
RunTimeError Records::RestoreDeletedLinks() {
  DeletedList list(*this);
  std::vector<std::string> all = list.Way();
  const std::vector<std::string> strays = list.Strays();
  const bool mayBeLinked = strays.empty() || list.IsHidden(list.End());
  if (list.Error() != RunTimeError::None || mayBeLinked) return list.Error();
  knownDeleted_.clear();
  all.insert(all.end(), strays.begin(), strays.end());
  const int count = static_cast<int>(all.size()) + list.Hidden(all.size());
  NoteDeletedLinks(all, {});
  NoteHeaderEntry("DelNoOfRecords", NumberText(count));
  return RunTimeError::None;
}

// Puts a record without links at the front of the deleted list.
RunTimeError Records::AddToDeletedList(const std::string& recNo) {
  knownDeleted_.clear();
  DeletedList list(*this);
  int count = list.Count();
  const std::string& first = list.First();
  const bool isThere = first != recNo && list.Belongs(first, {});
  const bool isHidden = !isThere && list.IsHidden(first);
  std::vector<std::string> strays;
  if (isThere && count < 1) {
    // A count that cannot be right is not built upon.
    count = static_cast<int>(list.Way().size());
  } else if (!isThere && !isHidden) {
    strays = list.Strays();
    std::erase(strays, recNo);
    count = static_cast<int>(strays.size()) + list.Hidden(strays.size());
  }
  if (list.Error() != RunTimeError::None) return list.Error();
  if (count >= MaxRecords) return RunTimeError::Overflow;

  NoteHeaderEntry("DelNoOfRecords", NumberText(count + 1));
  if (isThere || isHidden) {
    NoteRecordEntry(recNo, "NextDel", first);
    if (isThere) NoteRecordEntry(first, "PrevDel", recNo);
    NoteHeaderEntry("DelFirstRecord", recNo);
  } else {
    strays.insert(strays.begin(), recNo);
    NoteDeletedLinks(strays, {});
  }
  return RunTimeError::None;
}

RunTimeError Records::RemoveFromDeletedList(std::string_view RecNo) {
  ProfileUpdate update(profile_);
  if (const RunTimeError error = RestoreLinks(); error != RunTimeError::None) return error;
  const std::string recNo(Trim(RecNo));
  DeletedList list(*this);
  int left = list.Count() - 1;
  std::optional<DeletedList::Place> place = list.FindIn(knownDeleted_, recNo);
  if (!place) {
    std::vector<std::string> all = list.Way();
    const std::vector<std::string> strays = list.Strays();
    all.insert(all.end(), strays.begin(), strays.end());
    const std::string end = list.IsHidden(list.End()) ? list.End() : std::string();
    // The length that was found, whatever the count says; only what is hidden counts unseen.
    left = static_cast<int>(all.size()) - 1 + list.Hidden(all.size());
    if (list.Error() != RunTimeError::None) return list.Error();
    const auto found = std::find(all.begin(), all.end(), recNo);
    if (found == all.end()) return RunTimeError::BadRecordNumber;
    knownDeleted_ = list.Whole();
    if (strays.empty() && list.End() == end) {
      const bool isLast = found + 1 == all.end();
      place = {found == all.begin() ? std::string() : *(found - 1), isLast ? end : *(found + 1),
               isLast};
    } else {
      all.erase(found);
      NoteDeletedLinks(all, end);
    }
  }

  NoteHeaderEntry("DelNoOfRecords", NumberText(left));
  NoteRecordEntry(recNo, "PrevDel", "");
  NoteRecordEntry(recNo, "NextDel", "");
  if (place) {
    if (place->Previous.empty()) {
      NoteHeaderEntry("DelFirstRecord", place->Next);
    } else {
      NoteRecordEntry(place->Previous, "NextDel", place->Next);
    }
    if (!place->Next.empty() && !place->IsNextHidden) {
      NoteRecordEntry(place->Next, "PrevDel", place->Previous);
    }
  }
  std::erase(knownDeleted_, ToInt32(recNo));
  update.OnUndo([this] { knownDeleted_.clear(); });
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
