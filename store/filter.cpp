#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>

#include "platform/text_search.h"
#include "store/record_reader.h"
#include "store/record_search.h"
#include "store/records.h"

namespace quillary {
namespace {

constexpr std::array<Field, 5> FilterFields{Field::FirstName, Field::LastName, Field::Title,
                                            Field::Company, Field::Notes};

std::int32_t Number(std::string_view recNo) {
  return ParseRecordNumber(recNo).value_or(-1);
}

}  // namespace

bool Records::RecordMatchesFilter(std::string_view RecNo) {
  for (std::size_t i = 0; i < FilterFields.size(); ++i) {
    const std::string& criterion = data_.FilterCriteria.at(i);
    if (criterion.empty()) continue;
    const std::string& key = data_.FieldKeys.at(FilterFields.at(i));
    if (!TextSearch(criterion).IsIn(ReadRecordEntry(RecNo, key))) return false;
  }
  return true;
}

void Records::BuildFilteredList(RunTimeError* error) {
  progress_.Begin("Please wait. Searching...", "");
  RunTimeError firstError = RunTimeError::None;
  TextList kept;
  if (data_.NoOfRecords > 0) kept = data_.NamesRecNo;
  for (std::size_t i = 0; i < FilterFields.size(); ++i) {
    if (data_.FilterCriteria.at(i).empty()) continue;
    RecordSearch search(profile_, data_.DataPath, data_.FilterCriteria.at(i),
                        {data_.FieldKeys.at(FilterFields.at(i))});
    const auto count = static_cast<double>(kept.size());
    double tested = 0;
    kept.RemoveIf([&](std::string_view recNo) {
      tested += 1;
      progress_.Step(tested / count * 100);
      return !search.FirstKey(recNo);
    });
    if (firstError == RunTimeError::None) firstError = search.Error();
  }
  data_.FilteredCount = static_cast<std::int16_t>(kept.size());
  if (kept.empty()) kept = {""};
  data_.FilteredNames = TextList(kept.size());
  data_.FilteredCompanies = TextList(kept.size());
  data_.FilteredNamesRecNo = kept;
  data_.FilteredCompaniesRecNo = std::move(kept);
  progress_.End();
  if (error != nullptr) *error = firstError;
}

// The full lists have the display strings.
void Records::GetFilteredNamesList() {
  progress_.Begin("Please wait. Getting filtered names list...", "");
  const auto count = static_cast<std::size_t>(std::max<std::int16_t>(data_.FilteredCount, 0));
  std::unordered_map<std::int32_t, std::size_t> filtered;  // by record number
  for (std::size_t i = 0; i < count; ++i) filtered.emplace(Number(data_.FilteredNamesRecNo[i]), i);
  double done = 0;
  for (std::size_t i = 0; i < data_.NamesRecNo.size(); ++i) {
    const auto found = filtered.find(Number(data_.NamesRecNo[i]));
    if (found == filtered.end()) continue;
    data_.FilteredNames.set(found->second, data_.NamesList[i]);
    done += 1;
    progress_.Step(done / static_cast<double>(count) * 100);
  }
  for (std::size_t i = 0; i < data_.CompaniesRecNo.size(); ++i) {
    const auto found = filtered.find(Number(data_.CompaniesRecNo[i]));
    if (found == filtered.end()) continue;
    data_.FilteredCompanies.set(found->second, data_.CompaniesList[i]);
    filtered.erase(found);
  }
  // Where the header's count is too small, other records are listed by company than by name.
  for (const auto& [number, i] : filtered) {
    data_.FilteredCompanies.set(i, ReadRecordEntry(data_.FilteredNamesRecNo[i], "ShowCompany"));
  }
  progress_.End();
}

}  // namespace quillary
