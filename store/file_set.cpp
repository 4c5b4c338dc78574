#include "store/file_set.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <unordered_set>
#include <utility>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
namespace {

constexpr std::string_view HeaderBase = "QUILL.";
constexpr std::string_view HeaderSection = "General Info";

// The counter is the present program's, whatever the other entries are.
std::string WithoutUses(const ProfileText& header) {
  FileChanges changes;
  changes.Set(HeaderSection, "NoOfUses", "0");
  return header.With(changes);
}

}  // namespace

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

bool FileSet::IsWhole(const Profile::GoesOn& goesOn) {
  return HasHeader() && IsChainWhole("NameFirstRecord", "NextName", "NoOfRecords", goesOn) &&
         IsChainWhole("CompanyFirstRecord", "NextCompany", "NoOfRecords", goesOn) &&
         IsChainWhole("DelFirstRecord", "NextDel", "DelNoOfRecords", goesOn);
}

bool FileSet::HasRecords() {
  return ToInt16(HeaderEntry("NoOfRecords")) > 0 || !HeaderEntry("NameFirstRecord").empty() ||
         !HeaderEntry("CompanyFirstRecord").empty();
}

bool FileSet::Holds(FileSet& other, const Profile::GoesOn& goesOn) {
  for (const auto& [base, name] : other.files_.Names) {
    if (goesOn && !goesOn(false)) return false;
    const auto own = files_.Names.find(base);
    if (own == files_.Names.end()) return false;
    const bool isEqual =
        base == HeaderBase
            ? WithoutUses(*Find(base)) == WithoutUses(*other.Find(base))
            : snapshot_.Bytes(PathOf(own->second)) == other.snapshot_.Bytes(other.PathOf(name));
    if (!isEqual) return false;
  }
  return true;
}

// A count that is damaged proves nothing, one that is right may stand before a stray link: so every
// link must lead to a record, but a circle is only one after all that are counted.
bool FileSet::IsChainWhole(std::string_view first, std::string_view next, std::string_view count,
                           const Profile::GoesOn& goesOn) {
  const auto counted = static_cast<std::size_t>(std::max<int>(ToInt16(HeaderEntry(count)), 0));
  std::unordered_set<std::int32_t> passed;
  std::string link = HeaderEntry(first);
  while (!link.empty()) {
    if (goesOn && !goesOn(false)) return false;
    const std::optional<std::int32_t> number = ParseRecordNumber(link);
    const ProfileText* const file = number ? RecordFile(RecordFileNumber(link)) : nullptr;
    if (file == nullptr) return false;
    const ProfileText::Section record = file->Find(RecordSection(link));
    if (!record.Exists()) return false;
    if (!passed.insert(*number).second) return counted > 0 && passed.size() >= counted;
    link = Trim(record.Value(next).value_or(std::string()));
  }
  return passed.size() >= counted;
}

std::string FileSet::HeaderEntry(std::string_view key) {
  const ProfileText* const header = Find(HeaderBase);
  if (header == nullptr) return {};
  return std::string(Trim(header->Value(HeaderSection, key).value_or(std::string())));
}

const ProfileText* FileSet::Find(std::string_view base) {
  const auto name = files_.Names.find(std::string(base));
  if (name == files_.Names.end()) return nullptr;
  return &snapshot_.Text(PathOf(name->second));
}

const ProfileText* FileSet::RecordFile(std::int64_t number) {
  const auto [place, isNew] = recordFiles_.try_emplace(number, nullptr);
  if (isNew) place->second = Find("QUILL" + NumberText(number) + '.');
  return place->second;
}

}  // namespace quillary
