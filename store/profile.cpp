#include "store/profile.h"

#include <utility>

#include "store/host_path.h"
#include "store/profile_line.h"

namespace quillary {

Profile::Profile(Disk& disk, const FileNames& names) : disk_(disk), names_(names) {}

Profile::CachedFile& Profile::FileAt(const std::string& hostPath) {
  CachedFile& file = files_.try_emplace(hostPath).first->second;
  if (file.HostPath.empty()) file.HostPath = hostPath;
  return file;
}

// Brings what is kept of the file up to date. A missing file is no error.
RunTimeError Profile::Refresh(CachedFile& file) {
  FileStamp stamp;
  RunTimeError error = disk_.Stamp(file.HostPath, stamp);
  if (error == RunTimeError::None) {
    const bool looksTheSame = file.Text && stamp == file.Stamp;
    if (looksTheSame && stamp.IsSettled(file.ReadClockNs)) return RunTimeError::None;
    const std::int64_t clockNs = disk_.ClockNs();
    error = disk_.Read(file.HostPath, readBuffer_, stamp);
    if (error == RunTimeError::None) {
      file.Stamp = stamp;
      file.ReadClockNs = clockNs;
      if (!file.Text || file.Text->Bytes() != readBuffer_) {
        file.Text = std::make_shared<const ProfileText>(readBuffer_);
      }
      return RunTimeError::None;
    }
  }
  file.Text.reset();
  return IsMissing(error) ? RunTimeError::None : error;
}

Profile::CachedFile& Profile::Current(std::string_view File, RunTimeError& error) {
  const auto known = byName_.find(File);
  if (known != byName_.end()) {
    CachedFile& file = *known->second;
    error = Refresh(file);
    if (file.Text || error != RunTimeError::None) return file;
  }
  // Not known yet or not there any more: another name may match now.
  CachedFile& file = FileAt(names_.Find(File));
  byName_.insert_or_assign(std::string(File), &file);
  error = Refresh(file);
  return file;
}

const std::string* Profile::UnwrittenValue(const CachedFile& file, std::string_view section,
                                           std::string_view key) const {
  for (const ProfileChanges* changes : {&group_.Changes, &unfinished_}) {
    const auto found = changes->find(file.HostPath);
    if (found == changes->end()) continue;
    const std::string* const value = found->second.Find(section, key);
    if (value != nullptr) return value;
  }
  return nullptr;
}

std::shared_ptr<const ProfileText> Profile::TextWithUnwritten(const CachedFile& file) const {
  std::shared_ptr<const ProfileText> text = file.Text;
  if (!text) text = std::make_shared<const ProfileText>(std::string());
  for (const ProfileChanges* changes : {&unfinished_, &group_.Changes}) {
    const auto found = changes->find(file.HostPath);
    if (found != changes->end()) {
      text = std::make_shared<const ProfileText>(text->With(found->second));
    }
  }
  return text;
}

// What could not be read must not be the ground for what is written.
void Profile::NoteReadError(RunTimeError error) {
  if (group_.Depth > 0 && group_.Error == RunTimeError::None) group_.Error = error;
}

std::string Profile::ReadEntry(std::string_view File, std::string_view Section,
                               std::string_view Key) {
  RunTimeError error = RunTimeError::None;
  const CachedFile& file = Current(File, error);
  if (error != RunTimeError::None) NoteReadError(error);
  if (!group_.Changes.empty() || !unfinished_.empty()) {
    const std::string* const value = UnwrittenValue(file, Section, Key);
    if (value != nullptr) return *value;
  }
  if (!file.Text) return {};
  return file.Text->Value(Section, Key).value_or(std::string());
}

RunTimeError Profile::WriteEntry(std::string_view File, std::string_view Section,
                                 std::string_view Key, std::string_view Value) {
  const EntryValue entry{Key, Value};
  return WriteEntries(File, Section, {&entry, 1});
}

RunTimeError Profile::WriteEntries(std::string_view File, std::string_view Section,
                                   std::span<const EntryValue> Entries) {
  for (const EntryValue& entry : Entries) {
    if (!CanBeNames(Section, entry.Key)) return RunTimeError::PathAccess;
  }
  if (group_.Depth == 0) {
    ProfileUpdate update(*this);
    const RunTimeError error = WriteEntries(File, Section, Entries);
    return error == RunTimeError::None ? update.Commit() : error;
  }
  const auto known = byName_.find(File);
  RunTimeError error = RunTimeError::None;
  const CachedFile& file = known != byName_.end() ? *known->second : Current(File, error);
  group_.Changes[file.HostPath].Set(Section, Entries);
  return RunTimeError::None;
}

RunTimeError Profile::MakeFolder(std::string_view Folder) {
  const std::string path = names_.Find(Folder);
  FileStamp stamp;
  if (disk_.Stamp(path, stamp) != RunTimeError::None) {
    const RunTimeError error = disk_.MakeFolder(path);
    if (error != RunTimeError::None) return error;
  }
  // What is stored in it is sure to stay only if the folder is.
  return disk_.SyncFolder(FolderOf(path));
}

void Profile::AbandonGroup() {
  group_.Changes.clear();
  group_.UndoSteps.clear();
  group_.Error = RunTimeError::None;
  group_.Depth = 0;
}

void Profile::EndGroup(bool undo) {
  std::vector<std::function<void()>> steps = std::move(group_.UndoSteps);
  AbandonGroup();
  if (!undo) return;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) (*step)();
}

ProfileUpdate::ProfileUpdate(Profile& profile) : profile_(profile) {
  ++profile_.group_.Depth;
}

ProfileUpdate::~ProfileUpdate() {
  if (isDecided_ || profile_.group_.Depth == 0) return;
  if (profile_.group_.Depth == 1) {
    profile_.EndGroup(true);
    return;
  }
  --profile_.group_.Depth;
  profile_.NoteReadError(RunTimeError::DeviceError);
}

void ProfileUpdate::OnUndo(std::function<void()> step) {
  profile_.group_.UndoSteps.push_back(std::move(step));
}

RunTimeError ProfileUpdate::Commit(const Profile::GoesOn& goesOn) {
  isDecided_ = true;
  Profile::Group& group = profile_.group_;
  if (group.Depth != 1) {
    if (group.Depth > 0) --group.Depth;
    return group.Error;
  }
  RunTimeError error = group.Error;
  if (error == RunTimeError::None) {
    error = profile_.Commit(std::exchange(group.Changes, {}), goesOn);
  }
  profile_.EndGroup(error != RunTimeError::None);
  return error;
}

ProfileSnapshot::ProfileSnapshot(Profile& profile) : profile_(profile) {}

void ProfileSnapshot::NoteError(RunTimeError error) {
  if (error == RunTimeError::None) return;
  if (error_ == RunTimeError::None) error_ = error;
  profile_.NoteReadError(error);
}

const ProfileText& ProfileSnapshot::Text(std::string_view File) {
  const auto known = texts_.find(File);
  if (known != texts_.end()) return *known->second;
  RunTimeError error = RunTimeError::None;
  const Profile::CachedFile& file = profile_.Current(File, error);
  NoteError(error);
  return *texts_.emplace(std::string(File), profile_.TextWithUnwritten(file)).first->second;
}

std::string_view ProfileSnapshot::Bytes(std::string_view File) {
  const auto known = profile_.byName_.find(File);
  const bool isKept =
      texts_.contains(File) || (known != profile_.byName_.end() && known->second->Text != nullptr);
  if (isKept || !profile_.group_.Changes.empty() || !profile_.unfinished_.empty()) {
    return Text(File).Bytes();
  }
  FileStamp stamp;
  RunTimeError error = profile_.disk_.Read(profile_.names_.Guess(File), buffer_, stamp);
  if (IsMissing(error)) {
    error = profile_.disk_.Read(profile_.names_.Find(File), buffer_, stamp);
  }
  if (error != RunTimeError::None) buffer_.clear();
  if (!IsMissing(error)) NoteError(error);
  return buffer_;
}

}  // namespace quillary
