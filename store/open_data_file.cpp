#include <algorithm>
#include <cctype>
#include <utility>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/records.h"

namespace quillary {
namespace {

constexpr std::string_view HeaderName = "quill.dat";

}  // namespace

bool Records::OpenDataFile(std::string_view prefsFile, std::string_view ownDirectory,
                           OpenDataFileHooks& hooks, RunTimeError& error) {
  constexpr std::string_view PathSection = "Data Files";
  constexpr std::string_view PathKey = "QuillDataPath";

  // A group without writes: preferences that cannot be read are not the same as none.
  ProfileUpdate reading(profile_);
  data_.DataPath = profile_.ReadEntry(prefsFile, PathSection, PathKey);
  error = reading.Commit();
  if (error != RunTimeError::None) return false;
  data_.DataFile = data_.DataPath + std::string(HeaderName);
  // Without a data directory the name would stand for a profile in the user's configuration.
  error = data_.DataPath.empty() ? RunTimeError::None : profile_.Recover(data_.DataFile);

  std::string application;
  bool isCounted = false;
  if (!data_.DataPath.empty()) {
    ProfileSnapshot snapshot(profile_);
    const ProfileText::Section header = snapshot.Text(data_.DataFile).Find(HeaderSection);
    const auto value = [&](std::string_view key) { return header.Value(key).value_or(""); };
    application = value("Application");
    isCounted = !value("NoOfRecords").empty() && !value("TotalNoOfRecords").empty();
    // What cannot be read is not missing.
    if (snapshot.Error() != RunTimeError::None) {
      error = snapshot.Error();
      return false;
    }
  }
  const bool isOurs = EqualWithoutCase(application, Signature);
  ProfileUpdate readingCount(profile_);
  ReadNoOfRecords();
  const RunTimeError countError = readingCount.Commit();
  if (isOurs && isCounted) {
    if (error == RunTimeError::None) error = countError;
    // Over half of an unfinished change nothing must be built.
    return error == RunTimeError::None;
  }

  error = RunTimeError::None;
  std::string question = isOurs || application.empty() ? "I can't find an Quillary data files."
                                                       : "This is not a valid Quillary data file.";
  question += "\rShould I create a new empty one now?";
  if (!hooks.AskToCreate(question)) return false;

  std::string folder(ownDirectory);
  if (!folder.ends_with('\\')) folder += '\\';
  folder += "quilldat";
  std::string oldPath = std::exchange(data_.DataPath, folder + '\\');
  std::string oldFile = std::exchange(data_.DataFile, data_.DataPath + std::string(HeaderName));

  // A folder that cannot be made shows in the writes that follow.
  static_cast<void>(profile_.MakeFolder(folder));
  // The preference comes first: while it cannot be stored, a header that lies there stays as it is.
  error = profile_.WriteEntry(prefsFile, PathSection, PathKey, UpperCase(data_.DataPath));
  if (error == RunTimeError::None) {
    // What an older program left half done there must not be completed over the new header.
    error = profile_.Recover(data_.DataFile);
    if (error == RunTimeError::None) error = KeepOldHeader();
    if (error == RunTimeError::None) error = WriteNewHeader();
    if (error != RunTimeError::None) {
      static_cast<void>(profile_.WriteEntry(prefsFile, PathSection, PathKey, oldPath));
    }
  }
  if (error != RunTimeError::None) {
    data_.DataPath = std::move(oldPath);
    data_.DataFile = std::move(oldFile);
    return false;
  }
  data_.NoOfRecords = 0;
  return true;
}

std::int16_t Records::CountInHeader() {
  const std::string count = ReadHeaderEntry("NoOfRecords");
  // Where the count says nothing, the lists are followed as far as they go.
  const bool isCount =
      !Trim(count).empty() && std::isdigit(static_cast<unsigned char>(Trim(count)[0]));
  if (!isCount && !ReadHeaderEntry(NameChain.FirstRecord).empty()) return MaxRecords;
  return std::max<std::int16_t>(ToInt16(count), 0);
}

void Records::ReadNoOfRecords() {
  data_.NoOfRecords = CountInHeader();
  // Lists without entries are not read from the files; changes are checked against the header all
  // the same, and what cannot be read now fails then.
  static_cast<void>(ReadListKeys(knownKeys_));
}

// A header that is about to be emptied may be the only way to records of an older data set. Its
// name is none that a safety copy uses, and one kept before stays.
RunTimeError Records::KeepOldHeader() {
  if (ReadHeaderEntry("TotalNoOfRecords") == "0") return RunTimeError::None;
  const std::string name = data_.DataFile + ".kept";
  std::string free = name;
  ProfileSnapshot kept(profile_);
  const std::string& header = kept.Text(data_.DataFile).Bytes();
  for (int number = 2; !kept.Text(free).Bytes().empty(); ++number) {
    // Kept by a program that was stopped before it was sure to stay.
    if (kept.Text(free).Bytes() == header) break;
    free = name + NumberText(number);
  }
  if (kept.Error() != RunTimeError::None) return kept.Error();
  const RunTimeError error = profile_.CopyFile(data_.DataFile, free);
  return error == RunTimeError::FileNotFound ? RunTimeError::None : error;
}

RunTimeError Records::WriteNewHeader() {
  ProfileUpdate update(profile_);
  NoteHeaderEntry("Application", Signature);
  NoteHeaderEntry("TotalNoOfRecords", "0");
  NoteHeaderEntry("NoOfRecords", "0");
  NoteHeaderEntry("NameFirstRecord", "");
  NoteHeaderEntry("CompanyFirstRecord", "");
  NoteHeaderEntry("DelNoOfRecords", "0");
  NoteHeaderEntry("DelFirstRecord", "");
  for (const auto key : {MissingRecords, ReplacedRecords}) {
    if (!ReadHeaderEntry(key).empty()) NoteHeaderEntry(key, "");
  }
  return update.Commit();
}

}  // namespace quillary
