#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/process.h"
#include "platform/text.h"
#include "store/profile.h"
#include "store/temporary_name.h"

namespace quillary {
namespace {

constexpr unsigned OwnerOnly = 0600;
// Many files on their way to the disk together arrive sooner than one after the other; but no
// events run while they arrive.
constexpr std::size_t MostTogether = 25;
// Of a file that is large, for whatever reason.
constexpr std::size_t PartSize = 1'048'576;
// How often copying starts again because another program wrote to the same files meanwhile.
constexpr int MostAttempts = 20;

std::string FolderOf(std::string_view path) {
  return std::string(path.substr(0, path.rfind('/') + 1));
}

std::string NameOf(std::string_view path) {
  return std::string(path.substr(path.rfind('/') + 1));
}

// What work that was given up comes to.
constexpr RunTimeError GivenUp = RunTimeError::NotReady;

bool IsMissing(RunTimeError error) {
  return error == RunTimeError::FileNotFound || error == RunTimeError::PathNotFound;
}

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
    std::vector<std::string> inside;
    std::string filePath = path;
    filePath.append("/").append(name);
    const bool isFolder = disk_.List(filePath, inside) == RunTimeError::None;
    if (!isFolder) names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end());
  return RunTimeError::None;
}

bool Profile::IsSameFolder(std::string_view Folder, std::string_view Other) {
  FileStamp stamp;
  FileStamp other;
  return disk_.Stamp(names_.Find(Folder), stamp) == RunTimeError::None &&
         disk_.Stamp(names_.Find(Other), other) == RunTimeError::None &&
         stamp.Device == other.Device && stamp.Inode == other.Inode;
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
  std::vector<std::string> inside;
  if (disk_.List(path, inside) != RunTimeError::PathNotFound) return RunTimeError::PathAccess;
  constexpr unsigned AnyWrite = 0222;
  return (stamp.Permissions & AnyWrite) == 0 ? RunTimeError::PermissionDenied : RunTimeError::None;
}

RunTimeError Profile::CopyBytes(int from, int to, const GoesOn& goesOn, bool& isReadError) {
  std::string bytes;
  while (true) {
    if (goesOn && !goesOn(false)) return GivenUp;
    RunTimeError error = disk_.ReadPart(from, PartSize, bytes);
    isReadError = error != RunTimeError::None;
    if (isReadError || bytes.empty()) return error;
    error = disk_.Write(to, bytes);
    if (error != RunTimeError::None) return error;
  }
}

// Begins to write the file's bytes, as they are now, beside the file that they are to replace.
RunTimeError Profile::StartCopy(CopiedFile& copy, const GoesOn& goesOn, bool& isReadError) {
  DropCopy(copy);
  int from = -1;
  RunTimeError error = disk_.Open(copy.From, from, copy.Stamp);
  isReadError = error != RunTimeError::None;
  if (isReadError) return error;
  error = CheckReplaceable(copy.To);
  // Another name than that of a write to the file, which may come before this one is in place.
  const std::string path =
      FolderOf(copy.To) + TemporaryName(NameOf(copy.To).append(".copy"), ProcessNumber());
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
  if (error == RunTimeError::None) error = CopyBytes(from, copy.Handle, goesOn, isReadError);
  (void)disk_.Close(from);
  return error;
}

// Returns when the bytes of these copies are sure to stay.
RunTimeError Profile::FinishCopies(std::span<CopiedFile* const> copies) {
  std::vector<int> handles;
  handles.reserve(copies.size());
  for (const CopiedFile* copy : copies) handles.push_back(copy->Handle);
  RunTimeError error = disk_.SyncAll(handles);
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
    for (std::size_t begin = 0; begin < due.size(); begin += MostTogether) {
      const std::size_t end = std::min(begin + MostTogether, due.size());
      for (std::size_t i = begin; i < end; ++i) {
        at(due[i]);
        const RunTimeError error = StartCopy(*due[i], goesOn, failure.IsRead);
        if (error != RunTimeError::None) return error;
      }
      const RunTimeError error = FinishCopies(std::span(due).subspan(begin, end - begin));
      if (error != RunTimeError::None) return error;
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
  RunTimeError error = WriteNewFile(journalPath, journal, {}, &isDecided);
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
  RunTimeError error = FinishUnfinished();
  if (error != RunTimeError::None) return error;

  std::vector<CopiedFile> copies;
  copies.reserve(Copies.size());
  for (const FileCopy& copy : Copies) {
    copies.push_back({names_.Find(copy.From), names_.Find(copy.To), {}, {}, -1});
    if (FolderOf(copies.back().To) != FolderOf(copies.front().To)) return RunTimeError::PathAccess;
  }
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
