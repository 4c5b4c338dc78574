#include "store/backup.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
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
constexpr std::string_view SpareEnd = ".spare";
constexpr std::string_view HeaderBase = "QUILL.";
constexpr std::string_view HeaderSection = "General Info";

// The file names, each by the upper-cased part of it up to its dot.
using NamesByBase = std::map<std::string, std::string>;

bool IsMissing(RunTimeError error) {
  return error == RunTimeError::FileNotFound || error == RunTimeError::PathNotFound;
}

// The files of a folder that have the extension.
struct FoundFiles {
  NamesByBase Names;
  std::vector<std::string> OutOfUse;  // names that differ from one of these in case alone
};

// Of names that differ in case alone, the one that a program path of `wanted` case leads to: that
// name itself, else the first in code order.
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

std::string In(std::string_view folder, std::string_view name) {
  return std::string(folder).append(name);
}

// To names in capitals that end in `end`, or to those that `present` has already.
void AppendCopies(std::vector<Profile::FileCopy>& copies, const NamesByBase& from,
                  std::string_view source, std::string_view destination, std::string_view end,
                  const NamesByBase& present = {}) {
  for (const auto& [base, name] : from) {
    const auto place = present.find(base);
    const std::string to = place != present.end() ? place->second : In(base, end);
    copies.push_back({In(source, name), In(destination, to)});
  }
}

std::string HeaderEntry(const ProfileText& header, std::string_view key) {
  return header.Value(HeaderSection, key).value_or(std::string());
}

bool IsValidHeader(const ProfileText& header) {
  return EqualWithoutCase(HeaderEntry(header, "Application"), "Quillary") &&
         !HeaderEntry(header, "TotalNoOfRecords").empty() &&
         !HeaderEntry(header, "NoOfRecords").empty();
}

// A set of data files or copies, as far as it must be known before it replaces another.
class FileSet {
 public:
  FileSet(Profile& profile, std::string_view folder, const NamesByBase& names)
      : snapshot_(profile), folder_(folder), names_(names) {}

  bool HasHeader() {
    const ProfileText* const header = Find(HeaderBase);
    return header != nullptr && IsValidHeader(*header);
  }

  // Whether there is also the file of every record in the name list. What else is wrong in the
  // lists shows when they are read. False, too, when it is not to go on.
  bool IsWhole(const Profile::GoesOn& goesOn) {
    if (!HasHeader()) return false;
    const ProfileText& header = *Find(HeaderBase);
    std::string recNo(Trim(HeaderEntry(header, "NameFirstRecord")));
    const std::int16_t count = ToInt16(HeaderEntry(header, "NoOfRecords"));
    for (std::int16_t i = 0; i < count && ParseRecordNumber(recNo); ++i) {
      if (goesOn && !goesOn(false)) return false;
      const ProfileText* const file = RecordFile(RecordFileNumber(recNo));
      if (file == nullptr || file->Bytes().empty()) return false;
      recNo = Trim(file->Value(RecordSection(recNo), "NextName").value_or(std::string()));
    }
    return true;
  }
  // What kept a file from being read.
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

// Names that are out of use do no harm, should they stay.
void SetAside(Profile& profile, std::string_view folder, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    static_cast<void>(profile.RenameFile(In(folder, name), std::string(name).append(SpareEnd)));
  }
}

}  // namespace

RunTimeError BackUpFiles(Profile& profile, const StoreData& data, std::string_view Destination,
                         CopyFault* fault, const Profile::GoesOn& goesOn) {
  CopyFault ignored = CopyFault::None;
  CopyFault& faultAt = fault != nullptr ? *fault : ignored;
  faultAt = CopyFault::Data;
  RunTimeError error = profile.Recover(data.DataFile);
  if (error != RunTimeError::None) return error;
  FoundFiles files;
  error = FindFiles(profile, data.DataPath, DataExtension, LowerCase, files);
  if (error != RunTimeError::None) return error;
  {
    FileSet set(profile, data.DataPath, files.Names);
    const bool isBeside = IsDataFolder(profile, data, Destination);
    const bool isGood = isBeside ? set.HasHeader() : set.IsWhole(goesOn);
    if (set.Error() != RunTimeError::None) return set.Error();
    // Such copies would be of no use, yet replace good ones.
    if (!isGood) {
      faultAt = CopyFault::NotWhole;
      return RunTimeError::FileNotFound;
    }
  }

  faultAt = CopyFault::Medium;
  error = profile.Recover(In(Destination, HeaderBase).append(CopyEnd));
  if (error != RunTimeError::None) return error;
  std::vector<Profile::FileCopy> copies;
  AppendCopies(copies, files.Names, data.DataPath, Destination, CopyEnd);
  Profile::CopyFailure failure;
  error = profile.CopyFiles(copies, goesOn, &failure);
  if (failure.IsRead) faultAt = CopyFault::Data;
  if (error == RunTimeError::None) faultAt = CopyFault::None;
  return error;
}

std::optional<RunTimeError> RestoreFiles(Profile& profile, const StoreData& data,
                                         std::string_view Source, CopyFault* fault,
                                         const Profile::GoesOn& goesOn, bool copiesAside) {
  CopyFault ignored = CopyFault::None;
  CopyFault& faultAt = fault != nullptr ? *fault : ignored;
  faultAt = CopyFault::Data;
  RunTimeError error = profile.Recover(data.DataFile);
  if (error != RunTimeError::None) return error;
  FoundFiles present;
  error = FindFiles(profile, data.DataPath, DataExtension, LowerCase, present);
  if (error != RunTimeError::None) return error;

  faultAt = CopyFault::Medium;
  FoundFiles from;
  error = FindFiles(profile, Source, CopyExtension, UpperCase, from);
  if (IsMissing(error)) return std::nullopt;
  if (error != RunTimeError::None) return error;
  faultAt = CopyFault::Unfinished;
  error = profile.Recover(In(Source, HeaderBase).append(CopyEnd));
  if (error != RunTimeError::None) return error;
  faultAt = CopyFault::Medium;
  // What was recovered may have new names.
  error = FindFiles(profile, Source, CopyExtension, UpperCase, from);
  if (error != RunTimeError::None) return error;
  {
    FileSet set(profile, Source, from.Names);
    const bool isWhole = set.IsWhole(goesOn);
    if (set.Error() != RunTimeError::None) return set.Error();
    if (!isWhole) return std::nullopt;
  }

  std::vector<Profile::FileCopy> copies;
  if (copiesAside) {
    faultAt = CopyFault::SafetyCopy;
    FileSet set(profile, data.DataPath, present.Names);
    const bool hasHeader = set.HasHeader();
    if (set.Error() != RunTimeError::None) return set.Error();
    if (!hasHeader) return RunTimeError::FileNotFound;
    AppendCopies(copies, present.Names, data.DataPath, data.DataPath, CopyEnd);
  }
  const std::size_t aside = copies.size();
  AppendCopies(copies, from.Names, Source, data.DataPath, DataEnd, present.Names);
  Profile::CopyFailure failure;
  error = profile.CopyFiles(copies, goesOn, &failure);
  if (error == RunTimeError::None) {
    faultAt = CopyFault::None;
    SetAside(profile, data.DataPath, present.OutOfUse);
  } else if (failure.Index >= aside) {
    faultAt = failure.IsRead ? CopyFault::Medium : CopyFault::Data;
    // They were listed right before.
    if (failure.IsRead && IsMissing(error)) error = RunTimeError::NotReady;
  }
  return error;
}

bool HasSafetyCopy(Profile& profile, const StoreData& data) {
  FoundFiles files;
  return FindFiles(profile, data.DataPath, CopyExtension, UpperCase, files) == RunTimeError::None &&
         FileSet(profile, data.DataPath, files.Names).HasHeader();
}

bool IsDataFolder(Profile& profile, const StoreData& data, std::string_view Folder) {
  return profile.IsSameFolder(data.DataPath, Folder);
}

}  // namespace quillary
