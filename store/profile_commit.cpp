#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/process.h"
#include "store/host_path.h"
#include "store/profile.h"
#include "store/temporary_name.h"

namespace quillary {
namespace {

constexpr unsigned OwnerOnly = 0600;
// How often a commit starts again because another program wrote to the same files meanwhile.
constexpr int MostAttempts = 20;
// Files that are written in an idle moment: more than the change of one record concerns, and so few
// that nobody notices.
constexpr std::size_t MostLater = 16;

std::string JournalOf(const auto& files) {
  std::vector<const JournalPart*> parts;
  parts.reserve(files.size());
  for (const auto& pending : files) parts.push_back(&*pending.Entries);
  return JournalText(parts);
}

// More than the files take up on the disk once the changes are made, in bytes.
std::int64_t RoomOf(const auto& files) {
  constexpr std::size_t Block = 4096;
  std::size_t room = 0;
  for (const auto& pending : files) {
    room += pending.Entries->Text().size() + 2 * Block;
    if (pending.Before) room += pending.Before->Bytes().size();
  }
  return static_cast<std::int64_t>(room);
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

// Applies the changes to the file as it stands now.
RunTimeError Profile::ApplyChanges(PendingFile& pending) {
  CachedFile& file = *pending.File;
  DropTemporary(pending);
  const RunTimeError error = Refresh(file);
  if (error != RunTimeError::None) return error;
  pending.Before = file.Text;
  pending.Entries.emplace(NameOf(file.HostPath));
  const ProfileText none{std::string()};
  pending.After =
      (pending.Before ? *pending.Before : none).With(*pending.Changes, &*pending.Entries);
  return CheckWritable(pending);
}

// The new file would be writable however the old one is protected.
RunTimeError Profile::CheckWritable(const PendingFile& pending) {
  constexpr unsigned AnyWrite = 0222;
  const bool isProtected = pending.Before && (pending.File->Stamp.Permissions & AnyWrite) == 0;
  return isProtected && pending.IsChanged() ? RunTimeError::PermissionDenied : RunTimeError::None;
}

std::vector<Profile::PendingFile> Profile::FilesOf(const ProfileChanges& changes) {
  std::vector<PendingFile> files;
  files.reserve(changes.size());
  for (const auto& [path, fileChanges] : changes) {
    PendingFile& pending = files.emplace_back();
    pending.File = &FileAt(path);
    pending.Changes = &fileChanges;
  }
  return files;
}

// Begins to write what the changes have made of the file beside it.
RunTimeError Profile::StartPrepared(PendingFile& pending) {
  if (!pending.IsChanged()) return RunTimeError::None;
  const std::string& hostPath = pending.File->HostPath;
  const std::string path = FolderOf(hostPath) + TemporaryName(NameOf(hostPath), ProcessNumber());
  RunTimeError error = StartNewFile(path, pending.After, hostPath, pending.Handle, nullptr);
  if (error == RunTimeError::PathAccess) {
    // Left behind by an earlier program that had this program's number.
    (void)disk_.Remove(path);
    error = StartNewFile(path, pending.After, hostPath, pending.Handle, nullptr);
  }
  if (error == RunTimeError::None) pending.TemporaryPath = path;
  return error;
}

// Writes every file with its changes beside its place, again where another program wrote to it
// meanwhile.
RunTimeError Profile::PrepareAll(std::vector<PendingFile>& files, const GoesOn& goesOn) {
  const auto isGivenUp = [&] { return goesOn && !goesOn(false); };
  // Many files on their way to the disk together arrive sooner than one after the other.
  constexpr std::size_t MostTogether = 100;
  for (std::size_t begin = 0; begin < files.size(); begin += MostTogether) {
    const std::size_t end = std::min(begin + MostTogether, files.size());
    for (std::size_t i = begin; i < end; ++i) {
      RunTimeError error = ApplyChanges(files[i]);
      if (error == RunTimeError::None) error = StartPrepared(files[i]);
      if (error != RunTimeError::None) return error;
      if (isGivenUp()) return RunTimeError::NotReady;
    }
    for (std::size_t i = begin; i < end; ++i) {
      const RunTimeError error = FinishPrepared(files[i]);
      if (error != RunTimeError::None) return error;
      if (isGivenUp()) return RunTimeError::NotReady;
    }
  }
  for (int attempt = 0; attempt < MostAttempts; ++attempt) {
    bool isCurrent = true;
    for (PendingFile& pending : files) {
      RunTimeError error = Refresh(*pending.File);
      if (error == RunTimeError::None && pending.File->Text != pending.Before) {
        isCurrent = false;
        error = ApplyChanges(pending);
        if (error == RunTimeError::None) error = StartPrepared(pending);
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

// With the journal on the disk the group is decided.
RunTimeError Profile::Decide(const std::vector<PendingFile>& files, std::int64_t room) {
  const std::string folder = FolderOf(files.front().File->HostPath);
  const std::string path = folder + std::string(JournalName);
  unfinishedJournal_ = JournalOf(files);
  int handle = -1;
  bool isLeft = false;
  // It holds what stands in the files: for those who may read them.
  RunTimeError error =
      StartNewFile(path, unfinishedJournal_, files.front().File->HostPath, handle, &isLeft);
  if (error == RunTimeError::None && room > 0) {
    error = disk_.Reserve(handle, room, files.size());
    if (error != RunTimeError::None) {
      (void)disk_.Close(handle);
      isLeft = disk_.Remove(path) != RunTimeError::None;
    }
  }
  if (error == RunTimeError::None) error = FinishNewFile(path, handle, &isLeft);
  if (error == RunTimeError::None) {
    error = disk_.SyncFolder(folder);
    if (error != RunTimeError::None) isLeft = disk_.Remove(path) != RunTimeError::None;
  }
  if (isLeft) staleJournal_ = path;
  return error;
}

RunTimeError Profile::CommitSeveral(std::vector<PendingFile>& files,
                                    const ProfileChanges& changes) {
  const RunTimeError error = Decide(files, 0);
  if (error != RunTimeError::None) return error;
  const std::string folder = FolderOf(files.front().File->HostPath);
  bool isDone = true;
  for (PendingFile& pending : files) isDone = PutInPlace(pending) == RunTimeError::None && isDone;
  if (isDone && disk_.SyncFolder(folder) == RunTimeError::None &&
      disk_.Remove(folder + std::string(JournalName)) == RunTimeError::None &&
      disk_.SyncFolder(folder) == RunTimeError::None) {
    return RunTimeError::None;
  }
  unfinished_ = changes;
  // Nothing is lost if this fails: it is tried again.
  if (Finish() != RunTimeError::None && onDue_) onDue_();
  return RunTimeError::None;
}

// Only the journal is written now. It keeps the room for the rest.
RunTimeError Profile::CommitLater(std::vector<PendingFile>& files, ProfileChanges& changes) {
  for (PendingFile& pending : files) {
    RunTimeError error = Refresh(*pending.File);
    if (error != RunTimeError::None) return error;
    pending.Before = pending.File->Text;
    pending.Entries.emplace(NameOf(pending.File->HostPath));
    const ProfileText none{std::string()};
    (pending.Before ? *pending.Before : none).AddChanged(*pending.Changes, *pending.Entries);
    error = CheckWritable(pending);
    if (error != RunTimeError::None) return error;
  }
  std::erase_if(files, [](const PendingFile& pending) { return !pending.IsChanged(); });
  if (files.empty()) return RunTimeError::None;
  const RunTimeError error = Decide(files, RoomOf(files));
  if (error != RunTimeError::None) return error;
  unfinished_ = std::move(changes);
  onDue_();
  return RunTimeError::None;
}

RunTimeError Profile::CommitNow(std::vector<PendingFile>& files, const ProfileChanges& changes,
                                const GoesOn& goesOn) {
  RunTimeError error = PrepareAll(files, goesOn);
  if (error == RunTimeError::None) {
    std::erase_if(files, [](const PendingFile& pending) { return !pending.IsChanged(); });
    if (files.size() == 1) error = CommitOne(files.front());
    if (files.size() > 1) error = CommitSeveral(files, changes);
  }
  for (PendingFile& pending : files) DropTemporary(pending);
  return error;
}

RunTimeError Profile::CopyFile(std::string_view From, std::string_view To) {
  RunTimeError error = Finish();
  if (error != RunTimeError::None) return error;
  std::string bytes;
  FileStamp stamp;
  const std::string from = names_.Find(From);
  error = disk_.Read(from, bytes, stamp);
  if (error != RunTimeError::None) return error;
  const std::string path = names_.Find(To);
  const std::string beside = FolderOf(path) + TemporaryName(NameOf(path), ProcessNumber());
  error = WriteNewFile(beside, bytes, from);
  if (error != RunTimeError::None) return error;
  error = disk_.Rename(beside, path);
  if (error != RunTimeError::None) (void)disk_.Remove(beside);
  return error == RunTimeError::None ? disk_.SyncFolder(FolderOf(path)) : error;
}

RunTimeError Profile::Commit(ProfileChanges changes, const GoesOn& goesOn) {
  if (changes.empty()) return RunTimeError::None;
  const std::string folder = FolderOf(changes.begin()->first);
  const auto isElsewhere = [&](const auto& change) { return FolderOf(change.first) != folder; };
  if (std::any_of(changes.begin(), changes.end(), isElsewhere)) return RunTimeError::PathAccess;
  RunTimeError error = Finish();
  // A lone file of another folder need not wait.
  const bool isThere = !unfinished_.empty() && FolderOf(unfinished_.begin()->first) == folder;
  const bool mustWait = isThere || !staleJournal_.empty() || changes.size() > 1;
  if (error != RunTimeError::None && mustWait) return error;

  std::vector<PendingFile> files = FilesOf(changes);
  const bool isLater = onDue_ && files.size() > 1 && files.size() <= MostLater;
  error = isLater ? CommitLater(files, changes) : CommitNow(files, changes, goesOn);
  FileStamp stamp;
  if (error != RunTimeError::PathAccess ||
      disk_.Stamp(folder + std::string(JournalName), stamp) != RunTimeError::None) {
    return error;
  }
  // Another program was stopped in the middle of a group. Now its group is done, and what this one
  // was built upon may not hold any more.
  error = CompleteJournal(folder);
  return error == RunTimeError::None ? RunTimeError::BadRecordNumber : error;
}

}  // namespace quillary
