#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/disk.h"
#include "platform/file_names.h"
#include "store/journal.h"
#include "store/profile_changes.h"
#include "store/profile_text.h"

namespace quillary {

// The one way to the profile files: sections of keys with values (docs/file-format.md).
//
// Files are named by program paths (see FileNames) or bare profile names. Sections and keys
// compare without regard to case; values are any text and come back as they went in.
//
// What a file holds is kept in memory and checked against the file system at each access, so that
// what another program wrote is seen at the next read. No file is held open.
//
// A file on disk is always the whole old one or the whole new one. A group of writes
// (ProfileUpdate) is on disk wholly or not at all, across the files of a folder, whatever stops the
// program. Who may read and write a file stays as it is in a write; a new one is its owner's alone.
class Profile {
 public:
  Profile(Disk& disk, const FileNames& names);
  Profile(const Profile&) = delete;
  Profile& operator=(const Profile&) = delete;
  ~Profile() = default;

  // The value of the entry. A missing or unreadable file, section or key reads as the empty text.
  // Inside a group its own writes are seen, and a file that exists but cannot be read makes the
  // group fail.
  std::string ReadEntry(std::string_view File, std::string_view Section, std::string_view Key);

  // Stores the value; file, section and key are made as needed (a folder is not). Inside a group
  // the write is only noted and None returned. Otherwise it is on the disk, durably, when None is
  // returned, and with any other result nothing has changed. Names of sections and keys that a
  // profile file cannot hold (line ends, "]" in a section, "=" in a key, ...) give PathAccess.
  RunTimeError WriteEntry(std::string_view File, std::string_view Section, std::string_view Key,
                          std::string_view Value);
  // The same for several entries of a section, all of them or none.
  RunTimeError WriteEntries(std::string_view File, std::string_view Section,
                            std::span<const EntryValue> Entries);

  // To be called before the first use of the files beside `File`: makes the names found there
  // durable, completes a group that a crash or power cut stopped after it was sure to be kept,
  // drops one that was stopped before, and removes unfinished temporary files. An entry that
  // another program changed since keeps what that program wrote. On an error the group stays to be
  // completed at the next call.
  RunTimeError Recover(std::string_view File);

  // From now on a group over a few files is done when it is sure to be kept. Its files are written
  // in Finish, for which `onDue` asks: it is to be called soon, in an idle moment. Until then the
  // group holds for every read of this object; another program reads the files as they were.
  void FinishLater(std::function<void()> onDue) { onDue_ = std::move(onDue); }
  // Writes the files of a group that is still to be finished, if there is one. On an error it stays
  // to be finished: at the next call, before the next write, or by Recover at the next opening.
  RunTimeError Finish();

  // Makes a folder that only its owner can enter; one that exists already is no error. It is there
  // durably when None is returned.
  RunTimeError MakeFolder(std::string_view Folder);

  // Copies a file as it stands on the disk, in place of one that has the name `To`. The copy is
  // whole and durable when None is returned; otherwise there is none, or the old one.
  RunTimeError CopyFile(std::string_view From, std::string_view To);

  // The names in the folder that are a name of at least one character and `Extension` (".dat"),
  // with no other dot, upper and lower case being the same; in code order, without folders.
  RunTimeError ListFiles(std::string_view Folder, std::string_view Extension,
                         std::vector<std::string>& names);
  bool IsSameFolder(std::string_view Folder, std::string_view Other);

  struct FileCopy {
    std::string From;
    std::string To;
  };
  // Where a copying failed: at the file of that index, or with all of them together (their number),
  // and whether it was the reading.
  struct CopyFailure {
    std::size_t Index = 0;
    bool IsRead = false;
    bool IsDecided = false;  // Recover may find it and go on with it
  };
  // Called now and then in the middle of long work, also to let events run. False as an answer: the
  // work is to be given up. With `isDecided` it cannot be given up any more, and the answer does
  // not count. What runs in it may read or write nothing at work, unless it answers false.
  using GoesOn = std::function<bool(bool isDecided)>;

  // Copies files as they stand on the disk, each in place of one that has the name `To`, as one
  // group: durably all of them when None is returned. All `To` are in one folder; a file may be in
  // `From` and, for another copy, in `To`: then it is not copied, if the file system can do
  // without, but gets the other name as it is. Who may read a file that is replaced stays the same
  // for its copy; a new one is its owner's alone. On an error no file is changed, or, where the
  // disk failed while the files were given their names, Recover goes on with it; until then nothing
  // else may be written there. Given up (NotReady) nothing is changed. Not to be called inside a
  // group.
  RunTimeError CopyFiles(const std::vector<FileCopy>& Copies, const GoesOn& goesOn = {},
                         CopyFailure* failure = nullptr);

  // Gives a file another name in its folder, in place of a file that has it. Not durably.
  RunTimeError RenameFile(std::string_view File, std::string_view NewName);

  // The host's path for `File`, for people.
  std::string HostPath(std::string_view File) const { return names_.Find(File); }

  // Drops the open group without its undo steps. For a program that ends in the middle of it.
  void AbandonGroup();

 private:
  friend class ProfileUpdate;
  friend class ProfileSnapshot;

  // A file as it was last seen.
  struct CachedFile {
    std::string HostPath;
    std::shared_ptr<const ProfileText> Text;  // null: no such file, or never read
    FileStamp Stamp;
    std::int64_t ReadClockNs = 0;  // the disk's clock before the file was read
  };
  // A file on its way to the disk.
  struct PendingFile {
    CachedFile* File = nullptr;
    const FileChanges* Changes = nullptr;
    std::shared_ptr<const ProfileText> Before;  // what After was made from; null: no file
    std::string After;
    std::optional<JournalPart> Entries;  // what becomes of them
    std::string TemporaryPath;           // holds After, synced once Handle is closed
    int Handle = -1;
    bool IsChanged() const { return Entries && Entries->HasEntries(); }
  };
  // A file on its way into another's place. Paths of the host.
  struct CopiedFile {
    std::string From;
    std::string To;
    FileStamp Stamp;            // of From, from before it was read
    std::string TemporaryPath;  // holds the bytes, synced once Handle is closed
    int Handle = -1;
    std::size_t Written = 0;  // bytes
    bool IsReplaced = false;  // From is the To of another copy of the group
  };
  struct Group {
    int Depth = 0;
    RunTimeError Error = RunTimeError::None;
    ProfileChanges Changes;
    std::vector<std::function<void()>> UndoSteps;
  };
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>{}(text);
    }
  };
  template <class T>
  using TextMap = std::unordered_map<std::string, T, TextHash, std::equal_to<>>;

  // profile.cpp: reading
  CachedFile& FileAt(const std::string& hostPath);
  CachedFile& Current(std::string_view File, RunTimeError& error);
  RunTimeError Refresh(CachedFile& file);
  const std::string* UnwrittenValue(const CachedFile& file, std::string_view section,
                                    std::string_view key) const;
  std::shared_ptr<const ProfileText> TextWithUnwritten(const CachedFile& file) const;
  void NoteReadError(RunTimeError error);
  void EndGroup(bool undo);

  // profile_commit.cpp: writing
  RunTimeError Commit(ProfileChanges changes, const GoesOn& goesOn);
  RunTimeError CommitOne(PendingFile& pending);
  bool TakeBack(const PendingFile& done);
  RunTimeError CommitNow(std::vector<PendingFile>& files, const ProfileChanges& changes,
                         const GoesOn& goesOn);
  RunTimeError CommitSeveral(std::vector<PendingFile>& files, const ProfileChanges& changes);
  RunTimeError CommitLater(std::vector<PendingFile>& files, ProfileChanges& changes);
  RunTimeError Decide(const std::vector<PendingFile>& files, std::int64_t room);
  // Of each file one; the changes must outlive it.
  std::vector<PendingFile> FilesOf(const ProfileChanges& changes);
  RunTimeError ApplyChanges(PendingFile& pending);
  static RunTimeError CheckWritable(const PendingFile& pending);
  RunTimeError StartPrepared(PendingFile& pending);
  RunTimeError PrepareAll(std::vector<PendingFile>& files, const GoesOn& goesOn);
  RunTimeError StartNewFile(const std::string& path, std::string_view bytes,
                            const std::string& accessOf, int& handle, bool* isLeft);
  RunTimeError FinishNewFile(const std::string& path, int& handle, bool* isLeft);
  RunTimeError FinishPrepared(PendingFile& pending);
  RunTimeError WriteNewFile(const std::string& path, std::string_view bytes,
                            const std::string& accessOf, bool* isLeft = nullptr);
  RunTimeError PutInPlace(PendingFile& pending);
  void DropTemporary(PendingFile& pending);

  // profile_copy.cpp
  RunTimeError CheckReplaceable(const std::string& path);
  RunTimeError CopyBytes(int from, CopiedFile& copy, const GoesOn& goesOn, bool& isReadError);
  bool IsMovedOn(CopiedFile& copy, const std::string& path);
  RunTimeError StartCopy(CopiedFile& copy, bool mayMoveOn, const GoesOn& goesOn, bool& isReadError);
  RunTimeError SyncAll(const std::vector<int>& handles, const GoesOn& goesOn);
  RunTimeError FinishCopies(std::span<CopiedFile* const> copies, const GoesOn& goesOn);
  void DropCopy(CopiedFile& copy);
  RunTimeError PrepareCopies(std::vector<CopiedFile>& copies, const GoesOn& goesOn,
                             CopyFailure& failure);
  RunTimeError PutCopiesInPlace(std::vector<CopiedFile>& copies, const GoesOn& goesOn,
                                bool& isDecided);

  // profile_recovery.cpp
  RunTimeError BringBackJournal(const std::string& folder);
  RunTimeError MakeSureOf(const std::string& journalPath);
  RunTimeError CompleteJournal(const std::string& folder, const GoesOn& goesOn = {});
  RunTimeError Complete(const std::string& folder, const Journal& journal, const GoesOn& goesOn);
  void SweepTemporaries(const std::string& folder);

  Disk& disk_;
  const FileNames& names_;
  std::string readBuffer_;
  TextMap<CachedFile> files_;    // by the host's path
  TextMap<CachedFile*> byName_;  // by program path
  Group group_;
  // A group whose journal stands on the disk while its files are not all written yet: its changes,
  // which hold for every read, and its journal. Completed before anything else is written there.
  ProfileChanges unfinished_;
  std::string unfinishedJournal_;
  std::function<void()> onDue_;
  // A journal of a group that failed, which could not be removed. Goes before anything is written.
  std::string staleJournal_;
};

// A group of writes: from its making to its end, every WriteEntry of the program belongs to it and
// is seen by ReadEntry at once. Commit puts all of them on the disk or none. A group that ends
// without a successful Commit leaves the files as they were and runs the undo steps. All its files
// are in one folder.
//
// A group made while another is open joins it: its Commit only says that it has no objection, and
// the outermost Commit decides. A joined group that ends without Commit makes the outermost fail.
class ProfileUpdate {
 public:
  explicit ProfileUpdate(Profile& profile);
  ProfileUpdate(const ProfileUpdate&) = delete;
  ProfileUpdate& operator=(const ProfileUpdate&) = delete;
  ~ProfileUpdate();

  // Notes a step that takes a change in memory back; if the group fails, the steps run in reverse
  // order. They must not touch the disk.
  void OnUndo(std::function<void()> step);

  // May be called once. On an error nothing on disk has changed and, for the outermost group, the
  // undo steps have run. For the outermost group `goesOn` is called while many files are written;
  // given up (NotReady) nothing is changed. BadRecordNumber: another program had left a group in
  // the middle, which is completed now; what this one was built upon may not hold any more.
  RunTimeError Commit(const Profile::GoesOn& goesOn = {});

 private:
  Profile& profile_;
  bool isDecided_ = false;
};

// Reads many entries, each file as it was at the first access to it through this object (writes of
// an open group included). Spares the check of the file system at each read.
class ProfileSnapshot {
 public:
  explicit ProfileSnapshot(Profile& profile);

  // The file's sections; empty for a file that is missing or cannot be read. Valid as long as this
  // object.
  const ProfileText& Text(std::string_view File);

  // The file's bytes, without keeping them in memory for later reads. Valid until the next call.
  std::string_view Bytes(std::string_view File);

  // The first error that kept a file from being read; a missing file is none.
  RunTimeError Error() const { return error_; }

 private:
  void NoteError(RunTimeError error);

  Profile& profile_;
  RunTimeError error_ = RunTimeError::None;
  std::string buffer_;
  Profile::TextMap<std::shared_ptr<const ProfileText>> texts_;
};

}  // namespace quillary
