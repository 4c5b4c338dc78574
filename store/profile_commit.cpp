#include <algorithm>
#include <utility>

#include "platform/process.h"
#include "store/profile.h"
#include "store/temporary_name.h"

namespace quillary {
namespace {

constexpr unsigned OwnerOnly = 0600;
// How often a commit starts again because another program wrote to the same files meanwhile.
constexpr int MostAttempts = 20;

std::string FolderOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? "." : std::string(path.substr(0, slash + 1));
}

std::string NameOf(std::string_view path) {
  return std::string(path.substr(path.rfind('/') + 1));
}

std::string JournalOf(const auto& files) {
  std::vector<const JournalPart*> parts;
  parts.reserve(files.size());
  for (const auto& pending : files) parts.push_back(&*pending.Entries);
  return JournalText(parts);
}

}  // namespace

// Makes a new file whose bytes are not sure to stay yet, for those that may use the file
// `accessOf`; where that is empty or missing, for its owner alone. On an error there is no such
// file, unless it could not be removed either (`isLeft`).
RunTimeError Profile::StartNewFile(const std::string& path, std::string_view bytes,
                                   const std::string& accessOf, int& handle, bool* isLeft) {
  RunTimeError error = disk_.Create(path, OwnerOnly, handle);
  if (error != RunTimeError::None) return error;
  if (!accessOf.empty()) error = disk_.CopyAccess(accessOf, handle);
  if (error == RunTimeError::None) error = disk_.Write(handle, bytes);
  if (error == RunTimeError::None) return error;
  (void)disk_.Close(handle);
  handle = -1;
  const bool isRemoved = disk_.Remove(path) == RunTimeError::None;
  if (isLeft != nullptr) *isLeft = !isRemoved;
  return error;
}

// Returns when the bytes of a started file are sure to stay. Errors as above.
RunTimeError Profile::FinishNewFile(const std::string& path, int& handle, bool* isLeft) {
  RunTimeError error = disk_.Sync(handle);
  const RunTimeError closeError = disk_.Close(handle);
  handle = -1;
  if (error == RunTimeError::None) error = closeError;
  if (error == RunTimeError::None) return error;
  const bool isRemoved = disk_.Remove(path) == RunTimeError::None;
  if (isLeft != nullptr) *isLeft = !isRemoved;
  return error;
}

RunTimeError Profile::WriteNewFile(const std::string& path, std::string_view bytes,
                                   const std::string& accessOf, bool* isLeft) {
  int handle = -1;
  const RunTimeError error = StartNewFile(path, bytes, accessOf, handle, isLeft);
  return error == RunTimeError::None ? FinishNewFile(path, handle, isLeft) : error;
}

void Profile::DropTemporary(PendingFile& pending) {
  if (pending.Handle >= 0) (void)disk_.Close(pending.Handle);
  pending.Handle = -1;
  if (!pending.TemporaryPath.empty()) (void)disk_.Remove(pending.TemporaryPath);
  pending.TemporaryPath.clear();
}

RunTimeError Profile::FinishPrepared(PendingFile& pending) {
  if (pending.Handle < 0) return RunTimeError::None;
  const RunTimeError error = FinishNewFile(pending.TemporaryPath, pending.Handle, nullptr);
  if (error != RunTimeError::None) pending.TemporaryPath.clear();
  return error;
}

// Applies the changes to the file as it stands now and begins to write the result beside it.
RunTimeError Profile::Prepare(PendingFile& pending) {
  CachedFile& file = *pending.File;
  DropTemporary(pending);
  RunTimeError error = Refresh(file);
  if (error != RunTimeError::None) return error;
  pending.Before = file.Text;
  pending.Entries.emplace(NameOf(file.HostPath));
  const ProfileText none{std::string()};
  pending.After =
      (pending.Before ? *pending.Before : none).With(*pending.Changes, &*pending.Entries);
  if (!pending.IsChanged()) return RunTimeError::None;
  // The new file would be writable however the old one is protected.
  constexpr unsigned AnyWrite = 0222;
  if (pending.Before && (file.Stamp.Permissions & AnyWrite) == 0) {
    return RunTimeError::PermissionDenied;
  }
  const std::string path =
      FolderOf(file.HostPath) + TemporaryName(NameOf(file.HostPath), ProcessNumber());
  error = StartNewFile(path, pending.After, file.HostPath, pending.Handle, nullptr);
  if (error == RunTimeError::PathAccess) {
    // Left behind by an earlier program that had this program's number.
    (void)disk_.Remove(path);
    error = StartNewFile(path, pending.After, file.HostPath, pending.Handle, nullptr);
  }
  if (error == RunTimeError::None) pending.TemporaryPath = path;
  return error;
}

// Prepares every file, again where another program wrote to it meanwhile.
RunTimeError Profile::PrepareAll(std::vector<PendingFile>& files) {
  // Many files on their way to the disk together arrive sooner than one after the other.
  constexpr std::size_t MostTogether = 100;
  for (std::size_t begin = 0; begin < files.size(); begin += MostTogether) {
    const std::size_t end = std::min(begin + MostTogether, files.size());
    for (std::size_t i = begin; i < end; ++i) {
      const RunTimeError error = Prepare(files[i]);
      if (error != RunTimeError::None) return error;
    }
    for (std::size_t i = begin; i < end; ++i) {
      const RunTimeError error = FinishPrepared(files[i]);
      if (error != RunTimeError::None) return error;
    }
  }
  for (int attempt = 0; attempt < MostAttempts; ++attempt) {
    bool isCurrent = true;
    for (PendingFile& pending : files) {
      RunTimeError error = Refresh(*pending.File);
      if (error == RunTimeError::None && pending.File->Text != pending.Before) {
        isCurrent = false;
        error = Prepare(pending);
        if (error == RunTimeError::None) error = FinishPrepared(pending);
      }
      if (error != RunTimeError::None) return error;
    }
    if (isCurrent) return RunTimeError::None;
  }
  return RunTimeError::PermissionDenied;
}

RunTimeError Profile::PutInPlace(PendingFile& pending) {
  CachedFile& file = *pending.File;
  const std::int64_t clockNs = disk_.ClockNs();
  const RunTimeError error = disk_.Rename(pending.TemporaryPath, file.HostPath);
  if (error != RunTimeError::None) return error;
  pending.TemporaryPath.clear();
  file.Text = std::make_shared<const ProfileText>(std::move(pending.After));
  file.ReadClockNs = clockNs;
  // Without its stamp the file is simply read again.
  if (disk_.Stamp(file.HostPath, file.Stamp) != RunTimeError::None) file.Text.reset();
  return RunTimeError::None;
}

RunTimeError Profile::CommitOne(PendingFile& pending) {
  RunTimeError error = PutInPlace(pending);
  if (error != RunTimeError::None) return error;
  const std::string folder = FolderOf(pending.File->HostPath);
  if (disk_.SyncFolder(folder) == RunTimeError::None) return RunTimeError::None;
  error = disk_.SyncFolder(folder);
  if (error == RunTimeError::None) return error;
  // The new file might not outlive a power cut: better the old one, and a caller who knows. Where
  // that cannot be had either, the new one stands.
  return TakeBack(pending) ? error : RunTimeError::None;
}

bool Profile::TakeBack(const PendingFile& done) {
  CachedFile& file = *done.File;
  if (!done.Before) {
    file.Text.reset();
    return disk_.Remove(file.HostPath) == RunTimeError::None;
  }
  PendingFile old;
  old.File = &file;
  old.After = done.Before->Bytes();
  const std::string path =
      FolderOf(file.HostPath) + TemporaryName(NameOf(file.HostPath), ProcessNumber());
  if (WriteNewFile(path, old.After, file.HostPath) != RunTimeError::None) return false;
  old.TemporaryPath = path;
  const bool isBack = PutInPlace(old) == RunTimeError::None;
  DropTemporary(old);
  return isBack;
}

// With the journal on the disk the group is decided: what cannot be done now is done before the
// next write or at the next opening.
RunTimeError Profile::CommitSeveral(std::vector<PendingFile>& files,
                                    const ProfileChanges& changes) {
  const std::string folder = FolderOf(files.front().File->HostPath);
  const std::string journalPath = folder + std::string(JournalName);
  std::string journal = JournalOf(files);
  bool isLeft = false;
  RunTimeError error = WriteNewFile(journalPath, journal, {}, &isLeft);
  if (error == RunTimeError::PathAccess && CompleteJournal(folder) == RunTimeError::None) {
    // Another program was stopped in the middle of a group; now its group is done, too.
    error = PrepareAll(files);
    if (error != RunTimeError::None) return error;
    journal = JournalOf(files);
    error = WriteNewFile(journalPath, journal, {}, &isLeft);
  }
  if (error == RunTimeError::None) {
    error = disk_.SyncFolder(folder);
    if (error != RunTimeError::None) isLeft = disk_.Remove(journalPath) != RunTimeError::None;
  }
  if (isLeft) staleJournal_ = journalPath;
  if (error != RunTimeError::None) return error;
  bool isDone = true;
  for (PendingFile& pending : files) isDone = PutInPlace(pending) == RunTimeError::None && isDone;
  if (isDone && disk_.SyncFolder(folder) == RunTimeError::None &&
      disk_.Remove(journalPath) == RunTimeError::None &&
      disk_.SyncFolder(folder) == RunTimeError::None) {
    return RunTimeError::None;
  }
  unfinished_ = changes;
  unfinishedFolder_ = folder;
  // Nothing is lost if this fails: it is tried again before the next write.
  (void)FinishUnfinished();
  return RunTimeError::None;
}

RunTimeError Profile::CopyFile(std::string_view From, std::string_view To) {
  std::string bytes;
  FileStamp stamp;
  const std::string from = names_.Find(From);
  RunTimeError error = disk_.Read(from, bytes, stamp);
  if (error != RunTimeError::None) return error;
  const std::string path = names_.Find(To);
  const std::string beside = FolderOf(path) + TemporaryName(NameOf(path), ProcessNumber());
  error = WriteNewFile(beside, bytes, from);
  if (error != RunTimeError::None) return error;
  error = disk_.Rename(beside, path);
  if (error != RunTimeError::None) (void)disk_.Remove(beside);
  return error == RunTimeError::None ? disk_.SyncFolder(FolderOf(path)) : error;
}

RunTimeError Profile::Commit(const ProfileChanges& changes) {
  if (changes.empty()) return RunTimeError::None;
  RunTimeError error = FinishUnfinished();
  if (error != RunTimeError::None) return error;

  std::vector<PendingFile> files;
  files.reserve(changes.size());
  const std::string folder = FolderOf(changes.begin()->first);
  for (const auto& [path, fileChanges] : changes) {
    if (FolderOf(path) != folder) return RunTimeError::PathAccess;
    PendingFile& pending = files.emplace_back();
    pending.File = &FileAt(path);
    pending.Changes = &fileChanges;
  }
  error = PrepareAll(files);
  if (error == RunTimeError::None) {
    std::erase_if(files, [](const PendingFile& pending) { return !pending.IsChanged(); });
    if (files.size() == 1) error = CommitOne(files.front());
    if (files.size() > 1) error = CommitSeveral(files, changes);
  }
  for (PendingFile& pending : files) DropTemporary(pending);
  return error;
}

}  // namespace quillary
