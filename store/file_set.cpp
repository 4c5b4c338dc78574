#include "store/file_set.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/number_ranges.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
namespace {

constexpr std::string_view Base = "QUILL";
constexpr std::string_view HeaderBase = "QUILL.";
constexpr std::string_view HeaderSection = "General Info";

// The counter is the present program's, whatever the other entries are.
std::string WithoutUses(const ProfileText& header) {
  FileChanges changes;
  changes.Set(HeaderSection, "NoOfUses", "0");
  return header.With(changes);
}

}  // namespace

// One of the lists: what the header and the records have of it.
struct FileSet::Chain {
  std::string_view First;
  std::string_view Count;
  std::int32_t RecordLinks::*Next;
  bool RecordLinks::*IsIn;
};

RunTimeError FindFiles(Profile& profile, std::string_view folder, std::string_view extension,
                       std::string (*wanted)(std::string_view), FoundFiles& files) {
  files = {};
  std::vector<std::string> names;
  const RunTimeError error = profile.ListFiles(folder, extension, names);
  for (std::string& name : names) {
    const auto [place, isFirst] =
        files.Names.try_emplace(UpperCase(name.substr(0, name.find('.') + 1)), name);
    if (isFirst) continue;
    if (name == wanted(name)) std::swap(place->second, name);
    files.OutOfUse.push_back(std::move(name));
  }
  return error;
}

bool FileSet::HasHeader() {
  return EqualWithoutCase(HeaderEntry("Application"), "Quillary") &&
         !HeaderEntry("TotalNoOfRecords").empty() && !HeaderEntry("NoOfRecords").empty();
}

FileSet::FileSet(Profile& profile, std::string_view folder, const FoundFiles& files,
                 Profile::GoesOn goesOn)
    : snapshot_(profile),
      folder_(folder),
      files_(files),
      goesOn_(std::move(goesOn)),
      records_(profile, [this](std::int32_t number) { return PathOfRecordFile(number); }) {}

RunTimeError FileSet::Error() const {
  return snapshot_.Error() != RunTimeError::None ? snapshot_.Error() : records_.Error();
}

bool FileSet::HasFiles() const {
  return std::any_of(files_.Names.begin(), files_.Names.end(), [](const auto& file) {
    std::string_view number = file.first;
    if (!number.starts_with(Base) || !number.ends_with('.')) return false;
    number.remove_prefix(Base.size());
    return number.find_first_not_of("0123456789") == number.size() - 1;
  });
}

bool FileSet::IsWhole() {
  return HasHeader() &&
         IsChainWhole(
             {"NameFirstRecord", "NoOfRecords", &RecordLinks::NextName, &RecordLinks::IsInNames}) &&
         IsChainWhole({"CompanyFirstRecord", "NoOfRecords", &RecordLinks::NextCompany,
                       &RecordLinks::IsInCompanies}) &&
         IsChainWhole({"DelFirstRecord", "DelNoOfRecords", &RecordLinks::NextDel,
                       &RecordLinks::IsInDeleted});
}

bool FileSet::HasRecords() {
  return ToInt16(HeaderEntry("NoOfRecords")) > 0 || !HeaderEntry("NameFirstRecord").empty() ||
         !HeaderEntry("CompanyFirstRecord").empty();
}

bool FileSet::LacksRecordsOf(FileSet& other) {
  const std::vector<std::int32_t> lacking = LackingRecords();
  const std::vector<std::int32_t> awaited = other.AwaitedNumbers();
  return std::any_of(lacking.begin(), lacking.end(), [&](std::int32_t number) {
    return !std::binary_search(awaited.begin(), awaited.end(), number) && other.HasRecord(number);
  });
}

bool FileSet::Holds(FileSet& other) {
  for (const auto& [base, name] : other.files_.Names) {
    if (!GoesOn()) return false;
    const auto own = files_.Names.find(base);
    if (own == files_.Names.end()) return false;
    const bool isEqual = base == HeaderBase ? WithoutUses(*Header()) == WithoutUses(*other.Header())
                                            : snapshot_.Bytes(PathOf(own->second)) ==
                                                  other.snapshot_.Bytes(other.PathOf(name));
    if (!isEqual) return false;
  }
  return true;
}

// A count that is damaged proves nothing, one that is right may stand before a stray link: so every
// link must lead to a record, but a circle is only one after all that are counted.
bool FileSet::IsChainWhole(const Chain& chain) {
  const auto counted =
      static_cast<std::size_t>(std::max<int>(ToInt16(HeaderEntry(chain.Count)), 0));
  std::size_t passed = 0;
  std::int32_t link = LinkedNumber(HeaderEntry(chain.First));
  while (link != Nowhere) {
    const std::optional<ListedRecord> record = records_.Find(link);
    if (!record || isGivenUp_) return false;
    if (std::exchange(record->Chained->*chain.IsIn, true)) return counted > 0 && passed >= counted;
    ++passed;
    link = record->Chained->*chain.Next;
  }
  return passed >= counted;
}

const ProfileText* FileSet::Header() {
  const auto name = files_.Names.find(std::string(HeaderBase));
  return name == files_.Names.end() ? nullptr : &snapshot_.Text(PathOf(name->second));
}

std::string FileSet::HeaderEntry(std::string_view key) {
  const ProfileText* const header = Header();
  if (header == nullptr) return {};
  return std::string(Trim(header->Value(HeaderSection, key).value_or(std::string())));
}

std::string FileSet::PathOfRecordFile(std::int32_t number) {
  isGivenUp_ = isGivenUp_ || !GoesOn();
  const auto name = files_.Names.find(std::string(Base) + NumberText(number) + '.');
  return isGivenUp_ || name == files_.Names.end() ? std::string() : PathOf(name->second);
}

std::vector<std::int32_t> FileSet::AwaitedNumbers() {
  const std::int32_t given = ToInt32(HeaderEntry("TotalNoOfRecords"));
  return ParseRanges(HeaderEntry(Records::MissingRecords),
                     {0, std::clamp(given, 0, ListedRecords::UsualNumbers)});
}

std::vector<std::int32_t> FileSet::LackingRecords() {
  std::vector<std::int32_t> numbers = AwaitedNumbers();
  std::erase_if(numbers, [this](std::int32_t number) { return HasRecord(number); });
  return numbers;
}

// A section without a display string holds links at most.
bool FileSet::HasRecord(std::int32_t number) {
  const std::string path = PathOfRecordFile(number / RecordsPerFile);
  if (path.empty()) return false;
  const auto name = snapshot_.Text(path).Value(RecordSection(NumberText(number)), "ShowName");
  return !name.value_or(std::string()).empty();
}

}  // namespace quillary
