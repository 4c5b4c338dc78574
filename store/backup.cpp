#include "store/backup.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/file_set.h"
#include "store/host_path.h"

namespace quillary {
namespace {

constexpr std::string_view DataExtension = ".dat";
constexpr std::string_view CopyExtension = ".old";
constexpr std::string_view OlderExtension = ".ol2";
constexpr std::string_view DataEnd = "DAT";
constexpr std::string_view CopyEnd = "OLD";
constexpr std::string_view OlderEnd = "OL2";
constexpr std::string_view SpareEnd = ".spare";
constexpr std::string_view HeaderBase = "QUILL.";

std::string In(std::string_view folder, std::string_view name) {
  return std::string(folder).append(name);
}

// Why the data must not be copied over what is there, or not before the user has agreed.
CopyFault FaultOfReplacing(FileSet& data, bool isWhole, FileSet& copies, bool isAgreed) {
  if (!isWhole && copies.HasFiles()) return CopyFault::WouldReplace;
  if (isAgreed) return CopyFault::None;
  if (!isWhole) return CopyFault::NotWhole;
  if (!copies.HasHeader()) return CopyFault::None;
  if (!data.HasRecords() && copies.HasRecords()) return CopyFault::WouldEmpty;
  return data.LacksRecordsOf(copies) ? CopyFault::WouldLose : CopyFault::None;
}

// To names in capitals that end in `end`, or to those that `present` has already.
void AppendCopies(std::vector<Profile::FileCopy>& copies,
                  const std::map<std::string, std::string>& from, std::string_view source,
                  std::string_view destination, std::string_view end,
                  const std::map<std::string, std::string>& present = {}) {
  for (const auto& [base, name] : from) {
    const auto place = present.find(base);
    const std::string to = place != present.end() ? place->second : In(base, end);
    copies.push_back({In(source, name), In(destination, to)});
  }
}

// The data to the safety copy, and what stands there to the older one; nothing where the data stand
// there already, so that doing the same twice pushes nothing out.
RunTimeError AppendSafetyCopy(std::vector<Profile::FileCopy>& copies, Profile& profile,
                              std::string_view folder, const FoundFiles& dataFiles,
                              FileSet& dataSet, const Profile::GoesOn& goesOn) {
  FoundFiles files;
  const RunTimeError error = FindFiles(profile, folder, CopyExtension, UpperCase, files);
  if (error != RunTimeError::None) return error;
  FileSet copy(profile, folder, files, goesOn);
  const bool isKept = copy.HasHeader();
  const bool isSame = isKept && copy.Holds(dataSet);
  for (const FileSet* set : {&copy, &dataSet}) {
    if (set->Error() != RunTimeError::None) return set->Error();
  }
  if (isSame) return RunTimeError::None;
  if (isKept) AppendCopies(copies, files.Names, folder, folder, OlderEnd);
  AppendCopies(copies, dataFiles.Names, folder, folder, CopyEnd);
  return RunTimeError::None;
}

// Where the safety copy becomes the data: all of them move on by one place.
RunTimeError AppendTurn(std::vector<Profile::FileCopy>& copies, Profile& profile,
                        std::string_view folder, const FoundFiles& dataFiles) {
  FoundFiles older;
  const RunTimeError error = FindFiles(profile, folder, OlderExtension, UpperCase, older);
  if (error != RunTimeError::None) return error;
  FileSet set(profile, folder, older);
  const bool hasOlder = set.HasHeader();
  if (set.Error() != RunTimeError::None) return set.Error();
  if (hasOlder) AppendCopies(copies, older.Names, folder, folder, CopyEnd);
  AppendCopies(copies, dataFiles.Names, folder, folder, hasOlder ? OlderEnd : CopyEnd);
  return RunTimeError::None;
}

// The name and the first end that makes a name which no file has; none where that cannot be told.
std::string SpareName(Profile& profile, std::string_view folder, const std::string& name) {
  for (int i = 1;; ++i) {
    const std::string end = i == 1 ? std::string(SpareEnd) : In(SpareEnd, NumberText(i));
    std::vector<std::string> taken;
    const RunTimeError error = profile.ListFiles(folder, In(DataExtension, end), taken);
    if (error != RunTimeError::None) return {};
    std::string spare = name + end;
    const bool isFree = std::none_of(taken.begin(), taken.end(), [&](const std::string& other) {
      return EqualWithoutCase(other, spare);
    });
    if (isFree) return spare;
  }
}

// Names that are out of use do no harm, should they stay.
void SetAside(Profile& profile, std::string_view folder, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const std::string spare = SpareName(profile, folder, name);
    if (!spare.empty()) static_cast<void>(profile.RenameFile(In(folder, name), spare));
  }
}

}  // namespace

RunTimeError BackUpFiles(Profile& profile, const StoreData& data, std::string_view Destination,
                         CopyFault* fault, const Profile::GoesOn& goesOn, bool isAgreed) {
  CopyFault ignored = CopyFault::None;
  CopyFault& faultAt = fault != nullptr ? *fault : ignored;
  faultAt = CopyFault::Data;
  RunTimeError error = profile.Recover(data.DataFile);
  if (error != RunTimeError::None) return error;
  FoundFiles files;
  error = FindFiles(profile, data.DataPath, DataExtension, LowerCase, files);
  if (error != RunTimeError::None) return error;
  FileSet set(profile, data.DataPath, files, goesOn);
  const bool hasHeader = set.HasHeader();
  if (set.Error() != RunTimeError::None) return set.Error();
  // Such copies would be of no use, yet replace good ones.
  if (!hasHeader) return RunTimeError::FileNotFound;
  const bool isBeside = IsDataFolder(profile, data, Destination);
  const bool isWhole = isBeside || set.IsWhole();
  if (set.Error() != RunTimeError::None) return set.Error();

  faultAt = CopyFault::Medium;
  error = profile.Recover(In(Destination, HeaderBase).append(CopyEnd));
  if (error != RunTimeError::None) return error;
  FoundFiles present;
  error = FindFiles(profile, Destination, CopyExtension, UpperCase, present);
  if (error != RunTimeError::None) return error;
  if (!isBeside) {
    FileSet copiesThere(profile, Destination, present);
    faultAt = FaultOfReplacing(set, isWhole, copiesThere, isAgreed);
    if (copiesThere.Error() != RunTimeError::None) {
      faultAt = CopyFault::Medium;
      return copiesThere.Error();
    }
    if (faultAt != CopyFault::None) return RunTimeError::FileNotFound;
    faultAt = CopyFault::Medium;
  }

  std::vector<Profile::FileCopy> copies;
  if (isBeside) {
    error = AppendSafetyCopy(copies, profile, data.DataPath, files, set, goesOn);
    if (error != RunTimeError::None) return error;
  } else {
    AppendCopies(copies, files.Names, data.DataPath, Destination, CopyEnd);
  }
  Profile::CopyFailure failure;
  error = profile.CopyFiles(copies, goesOn, &failure);
  if (failure.IsRead) faultAt = CopyFault::Data;
  if (error == RunTimeError::None) faultAt = CopyFault::None;
  return error;
}

std::optional<RunTimeError> RestoreFiles(Profile& profile, const StoreData& data,
                                         std::string_view Source, CopyFault* fault,
                                         const Profile::GoesOn& goesOn,
                                         const RestoreChoice& choice) {
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
  FileSet fromSet(profile, Source, from, goesOn);
  const bool hasCopy = fromSet.HasHeader();
  const bool isWhole = hasCopy && fromSet.IsWhole() && !fromSet.LacksRecords();
  if (fromSet.Error() != RunTimeError::None) return fromSet.Error();
  if (!hasCopy) return std::nullopt;
  if (!isWhole && !choice.EvenNotWhole) {
    faultAt = CopyFault::NotWhole;
    return RunTimeError::FileNotFound;
  }

  std::vector<Profile::FileCopy> copies;
  if (choice.CopiesAside) {
    faultAt = CopyFault::SafetyCopy;
    FileSet set(profile, data.DataPath, present, goesOn);
    const bool hasHeader = set.HasHeader();
    if (set.Error() != RunTimeError::None) return set.Error();
    if (!hasHeader) return RunTimeError::FileNotFound;
    if (IsDataFolder(profile, data, Source)) {
      error = AppendTurn(copies, profile, data.DataPath, present);
    } else if (!set.Holds(fromSet)) {
      error = AppendSafetyCopy(copies, profile, data.DataPath, present, set, goesOn);
    }
    if (error != RunTimeError::None) return error;
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
    if (failure.IsDecided) faultAt = CopyFault::Decided;
    // They were listed right before.
    if (failure.IsRead && IsMissing(error)) error = RunTimeError::NotReady;
  }
  return error;
}

bool HasSafetyCopy(Profile& profile, const StoreData& data) {
  FoundFiles files;
  return FindFiles(profile, data.DataPath, CopyExtension, UpperCase, files) == RunTimeError::None &&
         FileSet(profile, data.DataPath, files).HasHeader();
}

bool IsDataFolder(Profile& profile, const StoreData& data, std::string_view Folder) {
  return profile.IsSameFolder(data.DataPath, Folder);
}

}  // namespace quillary
