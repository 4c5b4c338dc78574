#include "store/record_reader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <tuple>
#include <utility>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/store_data.h"

namespace quillary {
namespace {

constexpr std::string_view SectionPrefix = "Record";

}  // namespace

std::string RecordSection(std::string_view RecNo) {
  std::string section(SectionPrefix);
  section += Trim(RecNo);
  return section;
}

std::optional<std::int32_t> ParseRecordNumber(std::string_view RecNo) {
  std::string_view text = RecNo;
  if (text.starts_with(' ') || text.ends_with(' ')) text = Trim(text);
  // "007" would lead to a section of another name.
  if (text.empty() || (text.front() == '0' && text.size() > 1)) return std::nullopt;
  std::int64_t number = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') return std::nullopt;
    number = number * 10 + (digit - '0');
    if (number > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  }
  return static_cast<std::int32_t>(number);
}

std::optional<std::int32_t> RecordOfSection(std::string_view section) {
  if (!EqualNames(section.substr(0, SectionPrefix.size()), SectionPrefix)) return std::nullopt;
  const std::string_view digits = section.substr(SectionPrefix.size());
  return digits.starts_with(' ') ? std::nullopt : ParseRecordNumber(digits);
}

std::int64_t RecordFileNumber(std::string_view RecNo) {
  if (const auto number = ParseRecordNumber(RecNo)) return *number / RecordsPerFile;
  constexpr double Largest = 1e15;
  return static_cast<std::int64_t>(
      std::clamp(std::floor(Val(RecNo) / RecordsPerFile), -Largest, Largest));
}

std::vector<std::size_t> OrderInFiles(const TextList& recNos) {
  std::vector<std::pair<std::int32_t, std::size_t>> numbers;
  numbers.reserve(recNos.size());
  for (const auto& recNo : recNos) numbers.emplace_back(ToInt32(recNo), numbers.size());
  std::sort(numbers.begin(), numbers.end());
  std::vector<std::size_t> order;
  order.reserve(numbers.size());
  for (const auto& [number, index] : numbers) order.push_back(index);
  return order;
}

std::string RecordFileName(std::string_view dataPath, std::int64_t fileNumber) {
  std::string name(dataPath);
  name += "quill";
  name += NumberText(fileNumber);
  name += ".dat";
  return name;
}

RecordReader::RecordReader(Profile& profile, std::string_view dataPath)
    : snapshot_(profile), dataPath_(dataPath) {}

const ProfileText& RecordReader::File(std::int64_t fileNumber) {
  const auto block = static_cast<std::uint64_t>(fileNumber) / std::tuple_size_v<Files>;
  // Damaged data may name any record file.
  if (block >= files_.size()) return snapshot_.Text(RecordFileName(dataPath_, fileNumber));
  std::unique_ptr<Files>& files = files_[block];
  if (!files) files = std::make_unique<Files>();
  const ProfileText*& file = (*files)[static_cast<std::size_t>(fileNumber) % files->size()];
  if (file == nullptr) file = &snapshot_.Text(RecordFileName(dataPath_, fileNumber));
  return *file;
}

ProfileText::Section RecordReader::Record(std::string_view RecNo) {
  return File(RecordFileNumber(RecNo)).Find(RecordSection(RecNo));
}

std::vector<std::int32_t> RecordReader::MissingRecords(std::int32_t begin, std::int32_t end) {
  std::vector<std::int32_t> missing;
  for (std::int32_t number = begin; number < end; ++number) {
    if (!HasRecord(NumberText(number))) missing.push_back(number);
  }
  return missing;
}

std::string RecordReader::Value(std::string_view RecNo, std::string_view key) {
  return Record(RecNo).Value(key).value_or(std::string());
}

}  // namespace quillary
