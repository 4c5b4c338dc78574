#include <algorithm>
#include <utility>
#include <vector>

#include "platform/process.h"
#include "store/host_path.h"
#include "store/profile.h"
#include "store/temporary_name.h"

namespace quillary {

RunTimeError Profile::Recover(std::string_view File) {
  const std::string path = names_.Find(File);
  const std::string folder = FolderOf(path);
  // A journal that was told to be void must not be completed.
  RunTimeError error = Finish();
  if (error != RunTimeError::None) return error;
  FileStamp stamp;
  error = disk_.Stamp(folder, stamp);
  if (IsMissing(error)) return RunTimeError::None;
  // Names that a program gave which was stopped right then: what is built upon them must not
  // outlive them.
  static_cast<void>(disk_.SyncFolder(folder));
  if (error == RunTimeError::None) error = CompleteJournal(folder);
  if (error == RunTimeError::None) SweepTemporaries(folder);
  return error;
}

RunTimeError Profile::Finish() {
  if (!staleJournal_.empty()) {
    const RunTimeError error = disk_.Remove(staleJournal_);
    if (error != RunTimeError::None && !IsMissing(error)) return error;
    staleJournal_.clear();
  }
  if (unfinished_.empty()) return RunTimeError::None;
  const std::string folder = FolderOf(unfinished_.begin()->first);
  RunTimeError error = BringBackJournal(folder);
  if (error == RunTimeError::None) error = CompleteJournal(folder);
  // The journal may have been removed before, without its removal being sure to stay.
  if (error == RunTimeError::None) error = disk_.SyncFolder(folder);
  if (error == RunTimeError::None) unfinished_.clear();
  return error;
}

// The journal may have gone with its disk, or by the hand of somebody who did not know what it was;
// and another program may have left its own, which comes first.
RunTimeError Profile::BringBackJournal(const std::string& folder) {
  const std::string path = folder + std::string(JournalName);
  std::string bytes;
  FileStamp stamp;
  RunTimeError error = disk_.Read(path, bytes, stamp);
  if (error == RunTimeError::None) {
    if (bytes == unfinishedJournal_) return error;
    error = CompleteJournal(folder);
    if (error != RunTimeError::None) return error;
  } else if (!IsMissing(error)) {
    return error;
  }
  const bool areFilesThere =
      std::any_of(unfinished_.begin(), unfinished_.end(), [&](const auto& change) {
        error = disk_.Stamp(change.first, stamp);
        return error == RunTimeError::None;
      });
  if (!areFilesThere) return error;
  error = WriteNewFile(path, unfinishedJournal_, unfinished_.begin()->first);
  return error == RunTimeError::None ? disk_.SyncFolder(folder) : error;
}

// Who wrote the journal may have been stopped before it was sure to stay. The files must not be
// changed by it before: a power cut could leave some of the changes, and no journal.
RunTimeError Profile::MakeSureOf(const std::string& journalPath) {
  int handle = -1;
  FileStamp stamp;
  RunTimeError error = disk_.Open(journalPath, handle, stamp);
  if (error != RunTimeError::None) return error;
  error = disk_.Sync(handle);
  const RunTimeError closeError = disk_.Close(handle);
  return error == RunTimeError::None ? closeError : error;
}

// Brings the folder's files to the state that its journal says, and removes the journal.
RunTimeError Profile::CompleteJournal(const std::string& folder, const GoesOn& goesOn) {
  const std::string journalPath = folder + std::string(JournalName);
  std::string bytes;
  FileStamp stamp;
  RunTimeError error = disk_.Read(journalPath, bytes, stamp);
  if (IsMissing(error)) return RunTimeError::None;
  if (error != RunTimeError::None) return error;
  // A journal that is not whole was stopped before anything else was changed.
  if (const std::optional<Journal> journal = ParseJournal(bytes)) {
    error = MakeSureOf(journalPath);
    if (error == RunTimeError::None) error = disk_.SyncFolder(folder);
    if (error != RunTimeError::None) return error;
    // The room that it keeps is for what is written now.
    disk_.Release(journalPath);
    error = Complete(folder, *journal, goesOn);
    if (error == RunTimeError::None) error = disk_.SyncFolder(folder);
    if (error != RunTimeError::None) return error;
  }
  error = disk_.Remove(journalPath);
  return error == RunTimeError::None ? disk_.SyncFolder(folder) : error;
}

// Another program may have written since: its entries stay, be it in a file that the journal names.
RunTimeError Profile::Complete(const std::string& folder, const Journal& journal,
                               const GoesOn& goesOn) {
  RunTimeError error = RunTimeError::None;
  ProfileChanges changes;
  for (const JournalFile& entries : journal) {
    CachedFile& file = FileAt(folder + entries.Name);
    if (entries.Replacement.empty()) {
      error = Refresh(file);
      for (const JournalEntry& entry : entries.Entries) {
        const std::optional<std::string> now =
            file.Text ? file.Text->Value(entry.Section, entry.Key) : std::nullopt;
        if (now == entry.Old) changes[file.HostPath].Set(entry.Section, entry.Key, entry.New);
      }
    } else {
      file.Text.reset();
      error = disk_.Rename(folder + entries.Replacement, file.HostPath);
      // Without the temporary file it is done already.
      if (IsMissing(error)) error = RunTimeError::None;
    }
    if (error != RunTimeError::None) return error;
    if (goesOn) goesOn(true);
  }
  std::vector<PendingFile> files = FilesOf(changes);
  error = PrepareAll(files, {});
  for (PendingFile& pending : files) {
    if (error == RunTimeError::None && pending.IsChanged()) error = PutInPlace(pending);
    DropTemporary(pending);
  }
  return error;
}

// Removes the temporary files of programs that are no more. One that stays does no harm.
void Profile::SweepTemporaries(const std::string& folder) {
  std::vector<std::string> names;
  if (disk_.List(folder, names) != RunTimeError::None) return;
  for (const std::string& name : names) {
    const std::optional<long> process = TemporaryProcess(name);
    if (process && (*process == ProcessNumber() || !ProcessIsAlive(*process))) {
      (void)disk_.Remove(folder + name);
    }
  }
}

}  // namespace quillary
