#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <future>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "platform/process.h"
#include "platform/text.h"
#include "store/host_path.h"
#include "store/profile.h"
#include "store/temporary_name.h"

namespace quillary {
namespace {

constexpr unsigned OwnerOnly = 0600;
// Many files on their way to the disk together arrive sooner than one after the other; but who
// gives up waits until they are there. In bytes.
constexpr std::size_t MostTogether = 4'194'304;
constexpr std::size_t MostOpen = 500;
constexpr std::chrono::milliseconds BetweenEvents(16);
// Of a file that is large, for whatever reason.
constexpr std::size_t PartSize = 1'048'576;
// How often copying starts again because another program wrote to the same files meanwhile.
constexpr int MostAttempts = 20;

// What work that was given up comes to.
constexpr RunTimeError GivenUp = RunTimeError::NotReady;

}  // namespace

RunTimeError Profile::ListFiles(std::string_view Folder, std::string_view Extension,
                                std::vector<std::string>& names) {
  const std::string path = names_.Find(Folder);
  std::vector<std::string> all;
  RunTimeError error = disk_.List(path, all);
  if (error != RunTimeError::None) return error;
  names.clear();
  for (std::string& name : all) {
    const std::size_t dot = name.find('.');
    if (dot == 0 || dot == std::string::npos) continue;
    if (!EqualNames(std::string_view(name).substr(dot), Extension)) continue;
    // Such a name cannot be part of a program path.
    if (name.find('\\') != std::string::npos) continue;
    FileStamp stamp;
    std::string filePath = path;
    filePath.append("/").append(name);
    (void)disk_.Stamp(filePath, stamp);
    if (!stamp.IsFolder) names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end());
  return RunTimeError::None;
}

bool Profile::IsSameFolder(std::string_view Folder, std::string_view Other) {
  const std::string path = names_.Find(Folder);
  const std::string otherPath = names_.Find(Other);
  if (path == otherPath) return true;
  FileStamp stamp;
  FileStamp other;
  return disk_.Stamp(path, stamp) == RunTimeError::None &&
         disk_.Stamp(otherPath, other) == RunTimeError::None && stamp.Device == other.Device &&
         stamp.Inode == other.Inode;
}

RunTimeError Profile::RenameFile(std::string_view File, std::string_view NewName) {
  const std::string path = names_.Find(File);
  const RunTimeError error = disk_.Rename(path, FolderOf(path).append(NewName));
  byName_.clear();
  files_.clear();
  return error;
}

// What must be known before the group is decided: afterwards it has to succeed.
RunTimeError Profile::CheckReplaceable(const std::string& path) {
  FileStamp stamp;
  const RunTimeError error = disk_.Stamp(path, stamp);
  if (IsMissing(error)) return RunTimeError::None;
  if (error != RunTimeError::None) return error;
  if (stamp.IsFolder) return RunTimeError::PathAccess;
  constexpr unsigned AnyWrite = 0222;
  return (stamp.Permissions & AnyWrite) == 0 ? RunTimeError::PermissionDenied : RunTimeError::None;
}

RunTimeError Profile::CopyBytes(int from, CopiedFile& copy, const GoesOn& goesOn,
                                bool& isReadError) {
  // One byte more than the file has: most are read and written at once.
  const auto part = static_cast<std::size_t>(
      std::clamp<std::int64_t>(copy.Stamp.Size + 1, 1, std::int64_t{PartSize}));
  std::string bytes;
  while (true) {
    if (goesOn && !goesOn(false)) return GivenUp;
    RunTimeError error = disk_.ReadPart(from, part, bytes);
    isReadError = error != RunTimeError::None;
    if (isReadError || bytes.empty()) return error;
    error = disk_.Write(copy.Handle, bytes);
    if (error != RunTimeError::None) return error;
    copy.Written += bytes.size();
  }
}

// A file that loses its name in this group anyway is not copied: it gets a second one. False where
// that cannot be had.
bool Profile::IsMovedOn(CopiedFile& copy, const std::string& path) {
  RunTimeError error = disk_.Link(copy.From, path);
  if (error == RunTimeError::PathAccess) {
    (void)disk_.Remove(path);
    error = disk_.Link(copy.From, path);
  }
  if (error != RunTimeError::None) return false;
  copy.TemporaryPath = path;
  // The second name is a change of the file.
  if (disk_.Stamp(path, copy.Stamp) == RunTimeError::None) return true;
  DropCopy(copy);
  return false;
}

// Begins to write the file's bytes, as they are now, beside the file that they are to replace.
RunTimeError Profile::StartCopy(CopiedFile& copy, bool mayMoveOn, const GoesOn& goesOn,
                                bool& isReadError) {
  DropCopy(copy);
  int from = -1;
  RunTimeError error = disk_.Open(copy.From, from, copy.Stamp);
  isReadError = error != RunTimeError::None;
  if (isReadError) return error;
  error = CheckReplaceable(copy.To);
  // Another name than that of a write to the file, which may come before this one is in place.
  const std::string path =
      FolderOf(copy.To) + TemporaryName(NameOf(copy.To).append(".copy"), ProcessNumber());
  if (error == RunTimeError::None && mayMoveOn && IsMovedOn(copy, path)) {
    // Whoever wrote to it may not have synced it.
    copy.Handle = from;
    return goesOn && !goesOn(false) ? GivenUp : error;
  }
  if (error == RunTimeError::None) {
    error = disk_.Create(path, OwnerOnly, copy.Handle);
    if (error == RunTimeError::PathAccess) {
      // Left behind by an earlier program that had this program's number.
      (void)disk_.Remove(path);
      error = disk_.Create(path, OwnerOnly, copy.Handle);
    }
    if (error == RunTimeError::None) copy.TemporaryPath = path;
  }
  if (error == RunTimeError::None) error = disk_.CopyAccess(copy.To, copy.Handle);
  if (error == RunTimeError::None) error = CopyBytes(from, copy, goesOn, isReadError);
  (void)disk_.Close(from);
  return error;
}

// Events run while the bytes are on their way, which takes long on a slow medium.
RunTimeError Profile::SyncAll(const std::vector<int>& handles, const GoesOn& goesOn) {
  if (!goesOn) return disk_.SyncAll(handles);
  std::future<RunTimeError> syncing = std::async([&] { return disk_.SyncAll(handles); });
  bool isGivenUp = false;
  while (syncing.wait_for(BetweenEvents) == std::future_status::timeout) {
    isGivenUp = !goesOn(false) || isGivenUp;
  }
  const RunTimeError error = syncing.get();
  return isGivenUp ? GivenUp : error;
}

// Returns when the bytes of these copies are sure to stay.
RunTimeError Profile::FinishCopies(std::span<CopiedFile* const> copies, const GoesOn& goesOn) {
  std::vector<int> handles;
  handles.reserve(copies.size());
  for (const CopiedFile* copy : copies) handles.push_back(copy->Handle);
  RunTimeError error = SyncAll(handles, goesOn);
  for (CopiedFile* copy : copies) {
    const RunTimeError closeError = disk_.Close(std::exchange(copy->Handle, -1));
    if (error == RunTimeError::None) error = closeError;
  }
  return error;
}

void Profile::DropCopy(CopiedFile& copy) {
  if (copy.Handle >= 0) (void)disk_.Close(copy.Handle);
  copy.Handle = -1;
  if (!copy.TemporaryPath.empty()) (void)disk_.Remove(copy.TemporaryPath);
  copy.TemporaryPath.clear();
  copy.Written = 0;
}

// Every file is beside its place, as all of them stood together.
RunTimeError Profile::PrepareCopies(std::vector<CopiedFile>& copies, const GoesOn& goesOn,
                                    CopyFailure& failure) {
  std::vector<CopiedFile*> due;
  due.reserve(copies.size());
  for (CopiedFile& copy : copies) due.push_back(&copy);
  const auto at = [&](const CopiedFile* copy) {
    failure.Index = static_cast<std::size_t>(copy - copies.data());
  };
  for (int attempt = 0; attempt < MostAttempts && !due.empty(); ++attempt) {
    std::size_t begin = 0;
    std::size_t written = 0;
    for (std::size_t i = 0; i < due.size(); ++i) {
      at(due[i]);
      // Where the first attempt did not hold, a second name may be what changes the file.
      const bool mayMoveOn = due[i]->IsReplaced && attempt == 0;
      RunTimeError error = StartCopy(*due[i], mayMoveOn, goesOn, failure.IsRead);
      if (error != RunTimeError::None) return error;
      written += due[i]->Written;
      const std::size_t end = i + 1;
      if (written < MostTogether && end - begin < MostOpen && end < due.size()) continue;
      error = FinishCopies(std::span(due).subspan(begin, end - begin), goesOn);
      if (error != RunTimeError::None) return error;
      begin = end;
      written = 0;
    }
    due.clear();
    for (CopiedFile& copy : copies) {
      at(&copy);
      FileStamp stamp;
      const RunTimeError error = disk_.Stamp(copy.From, stamp);
      failure.IsRead = error != RunTimeError::None;
      if (failure.IsRead) return error;
      if (stamp != copy.Stamp) due.push_back(&copy);
    }
  }
  if (due.empty()) return RunTimeError::None;
  at(due.front());
  failure.IsRead = true;
  return RunTimeError::PermissionDenied;
}

// With the journal on the disk the group is decided, and goes the way of one that was stopped.
RunTimeError Profile::PutCopiesInPlace(std::vector<CopiedFile>& copies, const GoesOn& goesOn,
                                       bool& isDecided) {
  std::vector<JournalPart> parts;
  std::vector<const JournalPart*> places;
  parts.reserve(copies.size());
  places.reserve(copies.size());
  for (const CopiedFile& copy : copies) {
    places.push_back(&parts.emplace_back(NameOf(copy.To), NameOf(copy.TemporaryPath)));
  }
  const std::string journal = JournalText(places);
  // Names may hold any character but the separators.
  if (!ParseJournal(journal)) return RunTimeError::PathAccess;
  const std::string folder = FolderOf(copies.front().To);
  const std::string journalPath = folder + std::string(JournalName);
  isDecided = false;
  // A journal that outlived a power cut without the files it names would pass for one that is done.
  RunTimeError error = disk_.SyncFolder(folder);
  if (error != RunTimeError::None) return error;
  error = WriteNewFile(journalPath, journal, {}, &isDecided);
  if (error == RunTimeError::None) {
    error = disk_.SyncFolder(folder);
    isDecided = error == RunTimeError::None || disk_.Remove(journalPath) != RunTimeError::None;
  }
  if (isDecided) {
    // Whoever finds the journal needs all of them.
    for (CopiedFile& copy : copies) copy.TemporaryPath.clear();
  }
  if (error != RunTimeError::None) return error;
  error = CompleteJournal(folder, goesOn);
  return error == RunTimeError::None ? error : CompleteJournal(folder, goesOn);
}

RunTimeError Profile::CopyFiles(const std::vector<FileCopy>& Copies, const GoesOn& goesOn,
                                CopyFailure* failure) {
  CopyFailure ignored;
  CopyFailure& failed = failure != nullptr ? *failure : ignored;
  failed = {Copies.size(), false, false};
  if (Copies.empty()) return RunTimeError::None;
  RunTimeError error = Finish();
  if (error != RunTimeError::None) return error;

  std::vector<std::string_view> names;
  names.reserve(Copies.size() * 2);
  for (const FileCopy& copy : Copies) names.insert(names.end(), {copy.From, copy.To});
  std::vector<std::string> paths = names_.FindAll(names);
  std::vector<CopiedFile> copies(Copies.size());
  std::unordered_set<std::string_view> replaced;
  for (std::size_t i = 0; i < copies.size(); ++i) {
    copies[i].From = std::move(paths[2 * i]);
    copies[i].To = std::move(paths[2 * i + 1]);
    if (FolderOf(copies[i].To) != FolderOf(copies.front().To)) return RunTimeError::PathAccess;
    replaced.insert(copies[i].To);
  }
  for (CopiedFile& copy : copies) copy.IsReplaced = replaced.contains(copy.From);
  error = PrepareCopies(copies, goesOn, failed);
  if (error == RunTimeError::None) {
    failed = {Copies.size(), false, false};
    error = PutCopiesInPlace(copies, goesOn, failed.IsDecided);
  }
  for (CopiedFile& copy : copies) DropCopy(copy);
  // A name that stood for no file, or for one of another case, may have become that of a copy.
  byName_.clear();
  files_.clear();
  return error;
}

}  // namespace quillary
