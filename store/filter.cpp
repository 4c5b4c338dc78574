#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "platform/text.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
namespace {

constexpr std::array<Field, 5> FilterFields{Field::FirstName, Field::LastName, Field::Title,
                                            Field::Company, Field::Notes};

// Searches values for one criterion.
class Criterion {
 public:
  explicit Criterion(std::string_view text) : lowered_(LowerCase(text)) {}

  bool IsIn(const std::string& value) {
    if (std::any_of(value.begin(), value.end(), [](char c) { return (c & '\x80') != 0; })) {
      return LowerCase(value).find(lowered_) != std::string::npos;
    }
    // Most values are plain ASCII, which needs no case tables.
    buffer_.resize(value.size());
    std::transform(value.begin(), value.end(), buffer_.begin(), [](char c) {
      return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return buffer_.find(lowered_) != std::string::npos;
  }

 private:
  std::string lowered_;
  std::string buffer_;
};

}  // namespace

bool Records::RecordMatchesFilter(std::string_view RecNo) {
  for (std::size_t i = 0; i < FilterFields.size(); ++i) {
    const std::string& criterion = data_.FilterCriteria.at(i);
    if (criterion.empty()) continue;
    const std::string& key = data_.FieldKeys.at(FilterFields.at(i));
    if (!Criterion(criterion).IsIn(ReadRecordEntry(RecNo, key))) return false;
  }
  return true;
}

void Records::BuildFilteredList() {
  progress_.Begin("Please wait. Searching...", "");
  std::vector<std::string> kept;
  if (data_.NoOfRecords > 0) kept = data_.NamesRecNo;
  RecordReader reader(profile_, data_.DataPath);
  for (std::size_t i = 0; i < FilterFields.size(); ++i) {
    if (data_.FilterCriteria.at(i).empty()) continue;
    Criterion criterion(data_.FilterCriteria.at(i));
    const std::string& key = data_.FieldKeys.at(FilterFields.at(i));
    const auto count = static_cast<double>(kept.size());
    double tested = 0;
    const auto end = std::remove_if(kept.begin(), kept.end(), [&](const std::string& recNo) {
      tested += 1;
      progress_.Step(tested / count * 100);
      return !criterion.IsIn(reader.Value(recNo, key));
    });
    kept.erase(end, kept.end());
  }
  data_.FilteredCount = static_cast<std::int16_t>(kept.size());
  if (kept.empty()) kept.emplace_back();
  data_.FilteredNames.assign(kept.size(), std::string());
  data_.FilteredCompanies.assign(kept.size(), std::string());
  data_.FilteredNamesRecNo = kept;
  data_.FilteredCompaniesRecNo = std::move(kept);
  progress_.End();
}

void Records::GetFilteredNamesList() {
  progress_.Begin("Please wait. Getting filtered names list...", "");
  RecordReader reader(profile_, data_.DataPath);
  const auto count = static_cast<std::size_t>(std::max<std::int16_t>(data_.FilteredCount, 0));
  for (std::size_t i = 0; i < count; ++i) {
    progress_.Step(static_cast<double>(i + 1) / static_cast<double>(count) * 100);
    const ProfileText::Section record = reader.Record(data_.FilteredNamesRecNo[i]);
    data_.FilteredNames[i] = record.Value("ShowName").value_or(std::string());
    data_.FilteredCompanies[i] = record.Value("ShowCompany").value_or(std::string());
  }
  progress_.End();
}

}  // namespace quillary
