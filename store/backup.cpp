#include "store/backup.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
namespace {

constexpr std::string_view DataExtension = ".dat";
constexpr std::string_view CopyExtension = ".old";
constexpr std::string_view DataEnd = "DAT";
constexpr std::string_view CopyEnd = "OLD";
constexpr std::string_view HeaderBase = "QUILL.";
constexpr std::string_view HeaderSection = "General Info";

// The file names, each by the upper-cased part of it up to its dot.
using NamesByBase = std::map<std::string, std::string>;

bool IsMissing(RunTimeError error) {
  return error == RunTimeError::FileNotFound || error == RunTimeError::PathNotFound;
}

// Of names that differ in case alone, the one that a program path of `wanted` case leads to: that
// name itself, else the first in code order.
RunTimeError ListByBase(Profile& profile, std::string_view folder, std::string_view extension,
                        std::string (*wanted)(std::string_view), NamesByBase& byBase) {
  std::vector<std::string> names;
  const RunTimeError error = profile.ListFiles(folder, extension, names);
  for (std::string& name : names) {
    const std::string base = UpperCase(name.substr(0, name.find('.') + 1));
    if (name == wanted(name)) {
      byBase[base] = std::move(name);
    } else {
      byBase.try_emplace(base, std::move(name));
    }
  }
  return error;
}

std::string In(std::string_view folder, std::string_view name) {
  return std::string(folder).append(name);
}

std::vector<Profile::FileCopy> Copies(const NamesByBase& from, std::string_view source,
                                      std::string_view destination, std::string_view end) {
  std::vector<Profile::FileCopy> copies;
  for (const auto& [base, name] : from) {
    copies.push_back({In(source, name), In(destination, base).append(end)});
  }
  return copies;
}

std::string HeaderEntry(const ProfileText& header, std::string_view key) {
  return header.Value(HeaderSection, key).value_or(std::string());
}

bool IsValidHeader(const ProfileText& header) {
  return EqualWithoutCase(HeaderEntry(header, "Application"), "Quillary") &&
         !HeaderEntry(header, "TotalNoOfRecords").empty() &&
         !HeaderEntry(header, "NoOfRecords").empty();
}

// A set of copies, as far as it must be known before it replaces the data.
class CopiedSet {
 public:
  CopiedSet(Profile& profile, std::string_view folder, const NamesByBase& names)
      : snapshot_(profile), folder_(folder), names_(names) {}

  // Whether there is a valid header, and the file of every record in the name list. What else is
  // wrong in the lists shows when they are read.
  bool IsWhole() {
    const ProfileText* const header = Find(HeaderBase);
    if (header == nullptr || !IsValidHeader(*header)) return false;
    std::string recNo(Trim(HeaderEntry(*header, "NameFirstRecord")));
    const std::int16_t count = ToInt16(HeaderEntry(*header, "NoOfRecords"));
    for (std::int16_t i = 0; i < count && ParseRecordNumber(recNo); ++i) {
      const ProfileText* const file = RecordFile(RecordFileNumber(recNo));
      if (file == nullptr || file->Bytes().empty()) return false;
      recNo = Trim(file->Value(RecordSection(recNo), "NextName").value_or(std::string()));
    }
    return true;
  }
  RunTimeError Error() const { return snapshot_.Error(); }

 private:
  const ProfileText* Find(std::string_view base) {
    const auto name = names_.find(std::string(base));
    return name == names_.end() ? nullptr : &snapshot_.Text(In(folder_, name->second));
  }

  const ProfileText* RecordFile(std::int64_t number) {
    const auto [place, isNew] = recordFiles_.try_emplace(number, nullptr);
    if (isNew) place->second = Find("QUILL" + NumberText(number) + '.');
    return place->second;
  }

  ProfileSnapshot snapshot_;
  std::string_view folder_;
  const NamesByBase& names_;
  std::unordered_map<std::int64_t, const ProfileText*> recordFiles_;
};

}  // namespace

RunTimeError BackUpFiles(Profile& profile, const StoreData& data, std::string_view Destination,
                         bool* isSourceAtFault) {
  bool isIgnored = false;
  bool& isAtFault = isSourceAtFault != nullptr ? *isSourceAtFault : isIgnored;
  isAtFault = true;
  RunTimeError error = profile.Recover(data.DataFile);
  if (error != RunTimeError::None) return error;
  NamesByBase names;
  error = ListByBase(profile, data.DataPath, DataExtension, LowerCase, names);
  if (error != RunTimeError::None) return error;
  // Without it the copies would be of no use, yet replace good ones.
  ProfileSnapshot snapshot(profile);
  const bool isValid = IsValidHeader(snapshot.Text(data.DataFile));
  if (snapshot.Error() != RunTimeError::None) return snapshot.Error();
  if (!isValid) return RunTimeError::FileNotFound;

  isAtFault = false;
  error = profile.Recover(In(Destination, HeaderBase).append(CopyEnd));
  if (error != RunTimeError::None) return error;
  return profile.CopyFiles(Copies(names, data.DataPath, Destination, CopyEnd), &isAtFault);
}

std::optional<RunTimeError> RestoreFiles(Profile& profile, const StoreData& data,
                                         std::string_view Source) {
  RunTimeError error = profile.Recover(data.DataFile);
  if (error != RunTimeError::None) return error;
  NamesByBase names;
  error = profile.Recover(In(Source, HeaderBase).append(CopyEnd));
  if (error == RunTimeError::None) {
    error = ListByBase(profile, Source, CopyExtension, UpperCase, names);
  }
  if (IsMissing(error)) return std::nullopt;
  if (error != RunTimeError::None) return RunTimeError::NotReady;
  {
    CopiedSet copies(profile, Source, names);
    const bool isWhole = copies.IsWhole();
    if (copies.Error() != RunTimeError::None) return RunTimeError::NotReady;
    if (!isWhole) return std::nullopt;
  }
  bool isReadError = false;
  error = profile.CopyFiles(Copies(names, Source, data.DataPath, DataEnd), &isReadError);
  return isReadError ? RunTimeError::NotReady : error;
}

bool IsDataFolder(Profile& profile, const StoreData& data, std::string_view Folder) {
  return profile.IsSameFolder(data.DataPath, Folder);
}

}  // namespace quillary
