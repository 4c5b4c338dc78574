#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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

// The way along one of the two chains.
struct Walk {
  std::int32_t RecordLinks::*Next;
  bool RecordLinks::*IsIn;
  std::int32_t At;
  std::vector<ListedRecord> Found;

  // False at the end of the chain, be it a proper one or not.
  bool Go(ListedRecords& records) {
    const std::optional<ListedRecord> record = records.Find(At);
    if (!record || record->Chained->*IsIn) return false;
    record->Chained->*IsIn = true;
    Found.push_back(*record);
    At = record->Chained->*Next;
    return true;
  }
};

TextList MakeList(const std::vector<ListedRecord>& found, std::string_view RecordTexts::*text,
                  const std::shared_ptr<TextStore>& store) {
  return {store, std::max<std::size_t>(found.size(), 1), [&](std::size_t i) {
            return i < found.size() ? found[i].Shown->*text : std::string_view();
          }};
}

using Numbers = std::unordered_set<std::int32_t>;

// A stray link may lead into the deleted list.
void DropDeleted(Walk& walk, const Numbers& deleted) {
  std::erase_if(walk.Found, [&](const ListedRecord& record) {
    return deleted.contains(record.Chained->Number);
  });
}

// Whether each name is linked back to the one before, also one that is not counted any more.
bool AreJoined(const Walk& names, ListedRecords& records) {
  std::int32_t previous = Nowhere;
  const auto isJoined = [&](const ListedRecord& record) {
    return record.Chained->PrevName == std::exchange(previous, record.Chained->Number);
  };
  if (!std::all_of(names.Found.begin(), names.Found.end(), isJoined)) return false;
  const std::optional<ListedRecord> next = records.Find(names.At);
  return names.At == Nowhere || (next && isJoined(*next));
}

// Whether the way alone proves that no record is missing: it leads to as many as are counted and
// ends there, and each is linked back to the one before.
bool IsProven(const Walk& walk, std::size_t count, std::string_view prevKey, RecordReader& reader) {
  if (walk.Found.size() != count || walk.At != Nowhere) return false;
  std::string_view previous;
  for (const ListedRecord& record : walk.Found) {
    const std::string_view recNo = record.Shown->RecNo;
    if (Trim(reader.Value(recNo, prevKey)) != previous) return false;
    previous = recNo;
  }
  return true;
}

bool HaveSameRecords(const Walk& a, const Walk& b) {
  const auto numbers = [](const Walk& walk) {
    std::vector<std::int32_t> found;
    for (const ListedRecord& record : walk.Found) found.push_back(record.Chained->Number);
    std::sort(found.begin(), found.end());
    return found;
  };
  return numbers(a) == numbers(b);
}

// The records of the range that neither chain leads to, though they are not deleted.
std::vector<ListedRecord> FindStrays(ListedRecords& records, NumberRange range,
                                     const Numbers& deleted) {
  std::vector<ListedRecord> strays;
  for (std::int32_t number = range.Begin; number < range.End; ++number) {
    const std::optional<ListedRecord> record = records.Find(number);
    if (!record || record->Chained->IsInNames || record->Chained->IsInCompanies) continue;
    // A section without a display string holds links at most.
    if (record->Shown->ShowName.empty() || deleted.contains(number)) continue;
    strays.push_back(*record);
  }
  return strays;
}

bool IsOnlyThere(const ListedRecord& companyRecord) {
  return !companyRecord.Chained->IsInNames;
}

// Both lists become all records that either way has found, and the strays. False if there are more
// than the lists can hold.
bool Unite(Walk& names, Walk& companies, const std::vector<ListedRecord>& strays,
           const TextComparer& comparer) {
  std::vector<ListedRecord> all = names.Found;
  std::copy_if(companies.Found.begin(), companies.Found.end(), std::back_inserter(all),
               IsOnlyThere);
  all.insert(all.end(), strays.begin(), strays.end());
  const auto sorted = [&](std::string_view RecordTexts::*text) {
    std::vector<ListedRecord> list = all;
    std::stable_sort(list.begin(), list.end(), [&](const ListedRecord& a, const ListedRecord& b) {
      return comparer.Compare(a.Shown->*text, b.Shown->*text) < 0;
    });
    if (list.size() > MaxRecords) list.resize(MaxRecords);
    return list;
  };
  names.Found = sorted(&RecordTexts::ShowName);
  companies.Found = sorted(&RecordTexts::ShowCompany);
  return all.size() <= MaxRecords;
}

}  // namespace

Records::ListsInFiles Records::ReadLists(std::int16_t countInHeader, ProgressHooks* progress) {
  const auto count = static_cast<std::size_t>(std::max<std::int16_t>(countInHeader, 0));
  const auto texts = std::make_shared<TextStore>();
  const auto recNos = std::make_shared<TextStore>();
  ListedRecords records(profile_, data_.DataPath, *texts, *recNos);
  Walk names{&RecordLinks::NextName,
             &RecordLinks::IsInNames,
             LinkedNumber(ReadHeaderEntry(NameChain.FirstRecord)),
             {}};
  Walk companies{&RecordLinks::NextCompany,
                 &RecordLinks::IsInCompanies,
                 LinkedNumber(ReadHeaderEntry(CompanyChain.FirstRecord)),
                 {}};
  names.Found.reserve(count);
  companies.Found.reserve(count);
  bool isWhole = true;
  for (std::size_t i = 0; i < count && isWhole; ++i) {
    if (i > 0 && progress != nullptr) {
      progress->Step(static_cast<double>(i + 1) / static_cast<double>(count) * 100);
    }
    isWhole = names.Go(records);
    isWhole = companies.Go(records) && isWhole;
  }
  // Also a count that is too small is to show the same records in both lists.
  isWhole = isWhole &&
            std::all_of(names.Found.begin(), names.Found.end(),
                        [](const ListedRecord& record) { return record.Chained->IsInCompanies; });

  // Nor is what has been deleted to be reached, as in an older copy of its file.
  const auto deleted = records.Find(LinkedNumber(ReadHeaderEntry("DelFirstRecord")));
  isWhole =
      isWhole && !(deleted && (deleted->Chained->IsInNames || deleted->Chained->IsInCompanies));

  ListsInFiles lists;
  bool isTooLong = false;
  // What is there again brings links with it that are out of date.
  const bool hasReturned = HasReturned();
  // With an older copy of a file the chains may lead past a record, and to another one instead.
  const bool isJoined = AreJoined(names, records);
  if (!isWhole || !isJoined || hasReturned) {
    Walk allNames = names;
    Walk allCompanies = companies;
    Numbers deletedNumbers;
    lists.Error = ReadDeletedNumbers(deletedNumbers);
    while (allNames.Found.size() < MaxRecords && allNames.Go(records)) {
    }
    while (allCompanies.Found.size() < MaxRecords && allCompanies.Go(records)) {
    }
    RecordReader reader(profile_, data_.DataPath);
    // Where none is missing, what else stands in the files was left behind on purpose.
    const bool areAllFound =
        !hasReturned && (IsProven(allNames, count, NameChain.Prev, reader) ||
                         IsProven(allCompanies, count, CompanyChain.Prev, reader));
    DropDeleted(allNames, deletedNumbers);
    DropDeleted(allCompanies, deletedNumbers);
    std::vector<ListedRecord> strays;
    if (!areAllFound) strays = FindStrays(records, GivenNumbers(), deletedNumbers);
    // What has no place in the lists must not fall out of the chains.
    isTooLong = !Unite(allNames, allCompanies, strays, comparer_);
    // A wrong link back alone does no harm.
    lists.IsIncomplete = !isWhole || hasReturned || !HaveSameRecords(allNames, names);
    lists.HaveReturned = isWhole && hasReturned;
    if (lists.IsIncomplete) {
      names = std::move(allNames);
      companies = std::move(allCompanies);
    }
  }
  if (lists.Error == RunTimeError::None) lists.Error = records.Error();
  if (lists.Error == RunTimeError::None && isTooLong) lists.Error = RunTimeError::DeviceError;
  lists.Count = lists.IsIncomplete ? static_cast<std::int16_t>(names.Found.size()) : countInHeader;
  lists.Names = MakeList(names.Found, &RecordTexts::ShowName, texts);
  lists.NamesRecNo = MakeList(names.Found, &RecordTexts::RecNo, recNos);
  lists.Companies = MakeList(companies.Found, &RecordTexts::ShowCompany, texts);
  lists.CompaniesRecNo = MakeList(companies.Found, &RecordTexts::RecNo, recNos);
  return lists;
}

void Records::GetNamesList() {
  const auto count = static_cast<std::size_t>(std::max<std::int16_t>(data_.NoOfRecords, 0));
  for (auto* list :
       {&data_.NamesList, &data_.NamesRecNo, &data_.CompaniesList, &data_.CompaniesRecNo}) {
    *list = TextList(std::max<std::size_t>(count, 1));
  }
  data_.ListsIncomplete = false;
  linksOutdated_ = false;
  listsError_ = ReadListKeys(knownKeys_);
  behindNames_.clear();
  behindCompanies_.clear();
  knownDeleted_.clear();
  progress_.Begin("Please wait while getting names list...", "Loading Names...");
  ListsInFiles lists = ReadLists(data_.NoOfRecords, &progress_);
  if (listsError_ == RunTimeError::None) listsError_ = lists.Error;
  data_.ListsIncomplete = lists.IsIncomplete;
  data_.RecordsReturned = lists.HaveReturned && listsError_ == RunTimeError::None;
  data_.NoOfRecords = lists.Count;
  data_.NamesList = std::move(lists.Names);
  data_.NamesRecNo = std::move(lists.NamesRecNo);
  data_.CompaniesList = std::move(lists.Companies);
  data_.CompaniesRecNo = std::move(lists.CompaniesRecNo);
  progress_.End();
}

}  // namespace quillary
