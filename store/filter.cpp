#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "platform/text_search.h"
#include "store/number_table.h"
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
  const auto count = static_cast<std::uint16_t>(std::max<std::int16_t>(data_.FilteredCount, 0));
  NumberTable<std::uint16_t> places;  // in the filtered lists, from 1 on
  for (std::uint16_t i = 0; i < count; ++i) {
    places[Number(data_.FilteredNamesRecNo[i])] = static_cast<std::uint16_t>(i + 1);
  }
  // For each place in the filtered lists the one in the full lists.
  constexpr auto Nowhere = std::numeric_limits<std::size_t>::max();
  std::vector<std::size_t> names(data_.FilteredNames.size(), Nowhere);
  std::vector<std::size_t> companies(data_.FilteredCompanies.size(), Nowhere);
  double done = 0;
  for (std::size_t i = 0; i < data_.NamesRecNo.size(); ++i) {
    const std::uint16_t place = places[Number(data_.NamesRecNo[i])];
    if (place == 0) continue;
    names[place - 1U] = i;
    done += 1;
    progress_.Step(done / count * 100);
  }
  for (std::size_t i = 0; i < data_.CompaniesRecNo.size(); ++i) {
    const std::uint16_t place = places[Number(data_.CompaniesRecNo[i])];
    if (place != 0) companies[place - 1U] = i;
  }
  data_.FilteredNames = data_.NamesList.Picked(names);
  data_.FilteredCompanies = data_.CompaniesList.Picked(companies);
  // Where the header's count is too small, other records are listed by company than by name.
  for (std::size_t i = 0; i < count; ++i) {
    if (companies[i] != Nowhere) continue;
    data_.FilteredCompanies.set(i, ReadRecordEntry(data_.FilteredNamesRecNo[i], "ShowCompany"));
  }
  progress_.End();
}

}  // namespace quillary
