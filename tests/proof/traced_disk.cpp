#include "tests/proof/traced_disk.h"

#include <cstddef>
#include <utility>

namespace quillary::test {
namespace {

using Step = DiskChange::Step;

std::string FolderOf(const std::string& name) {
  // A folder's own name ends in a slash.
  const std::size_t slash = name.size() < 2 ? std::string::npos : name.rfind('/', name.size() - 2);
  return slash == std::string::npos ? std::string() : name.substr(0, slash + 1);
}

}  // namespace

RunTimeError TracedDisk::Note(RunTimeError error, DiskChange change) {
  if (error == RunTimeError::None) trace_.push_back(std::move(change));
  return error;
}

RunTimeError TracedDisk::Open(const std::string& path, int& handle, FileStamp& stamp) {
  const RunTimeError error = FaultDisk::Open(path, handle, stamp);
  if (error == RunTimeError::None) paths_[handle] = path;
  return error;
}

RunTimeError TracedDisk::Create(const std::string& path, unsigned permissions, int& handle) {
  const RunTimeError error = FaultDisk::Create(path, permissions, handle);
  if (error == RunTimeError::None) {
    files_[handle] = ++count_;
    paths_.erase(handle);
  }
  return Note(error, {Step::Make, count_, path});
}

RunTimeError TracedDisk::Write(int handle, std::string_view bytes) {
  return Note(FaultDisk::Write(handle, bytes),
              {Step::Write, files_.at(handle), {}, {}, std::string(bytes)});
}

DiskChange TracedDisk::SyncOf(int handle) const {
  const auto path = paths_.find(handle);
  if (path != paths_.end()) return {Step::Sync, 0, path->second};
  return {Step::Sync, files_.at(handle)};
}

RunTimeError TracedDisk::Sync(int handle) {
  return Note(FaultDisk::Sync(handle), SyncOf(handle));
}

RunTimeError TracedDisk::SyncAll(const std::vector<int>& handles) {
  const RunTimeError error = FaultDisk::SyncAll(handles);
  for (const int handle : handles) (void)Note(error, SyncOf(handle));
  return error;
}

RunTimeError TracedDisk::Link(const std::string& from, const std::string& to) {
  return Note(FaultDisk::Link(from, to), {Step::Link, 0, from, to});
}

RunTimeError TracedDisk::Rename(const std::string& from, const std::string& to) {
  return Note(FaultDisk::Rename(from, to), {Step::Rename, 0, from, to});
}

RunTimeError TracedDisk::Remove(const std::string& path) {
  return Note(FaultDisk::Remove(path), {Step::Remove, 0, path});
}

RunTimeError TracedDisk::MakeFolder(const std::string& path) {
  return Note(FaultDisk::MakeFolder(path), {Step::MakeFolder, 0, path});
}

RunTimeError TracedDisk::SyncFolder(const std::string& folder) {
  return Note(FaultDisk::SyncFolder(folder), {Step::SyncFolder, 0, folder});
}

Trace TracedDisk::TakeTrace() {
  return std::exchange(trace_, {});
}

DiskModel::DiskModel(std::string root, const Tree& tree) : root_(std::move(root)) {
  int number = 0;
  for (const auto& [name, bytes] : tree) {
    // Those that the program makes count upwards from 1.
    now_[name] = --number;
    files_[number] = {bytes, bytes};
  }
  synced_ = now_;
}

std::string DiskModel::Below(const std::string& path) const {
  return path.substr(root_.size() + 1);
}

void DiskModel::NameChange::Apply(Names& names) const {
  if (!Gone.empty()) names.erase(Gone);
  if (!Name.empty()) names[Name] = Number;
}

void DiskModel::Change(NameChange change) {
  change.Apply(now_);
  unsynced_.push_back(std::move(change));
}

void DiskModel::Apply(const DiskChange& change) {
  const std::string name = change.Path.empty() ? std::string() : Below(change.Path);
  switch (change.What) {
    case Step::Make:
      files_[change.File] = {};
      return Change({FolderOf(name), {}, name, change.File});
    case Step::Write:
      files_[change.File].Bytes += change.Bytes;
      return;
    case Step::Sync: {
      File& file = files_.at(change.File == 0 ? now_.at(name) : change.File);
      file.Synced = file.Bytes;
      return;
    }
    case Step::MakeFolder:
      return Change({FolderOf(name + '/'), {}, name + '/', 0});
    case Step::Link:
      return Change({FolderOf(Below(change.To)), {}, Below(change.To), now_.at(name)});
    case Step::Rename:
      return Change({FolderOf(name), name, Below(change.To), now_.at(name)});
    case Step::Remove:
      return Change({FolderOf(name), name, {}, 0});
    case Step::SyncFolder: {
      const std::string folder = name.empty() || name.ends_with('/') ? name : name + '/';
      std::erase_if(unsynced_, [&](const NameChange& unsynced) {
        if (unsynced.Folder == folder) unsynced.Apply(synced_);
        return unsynced.Folder == folder;
      });
    }
  }
}

// A name in a folder that is not there is not there either.
template <typename Contents>
Tree DiskModel::TreeOf(const Names& names, Contents contents) {
  Tree tree;
  for (const auto& [name, number] : names) {
    const std::string folder = FolderOf(name);
    if (!folder.empty() && !tree.contains(folder)) continue;
    tree[name] = name.ends_with('/') ? std::string() : contents(number);
  }
  return tree;
}

Tree DiskModel::AfterStop() const {
  return TreeOf(now_, [&](int number) { return files_.at(number).Bytes; });
}

std::vector<Tree> DiskModel::AfterPowerCuts(std::mt19937& random) const {
  const std::size_t mostForAll = IsThorough() ? 7 : 4;  // changes of names
  const std::size_t some = IsThorough() ? 60 : 5;
  const std::size_t count = unsynced_.size();
  std::vector<std::vector<bool>> cases;
  if (count <= mostForAll) {
    for (std::size_t kept = 0; kept < (std::size_t{1} << count); ++kept) {
      std::vector<bool>& isKept = cases.emplace_back(count);
      for (std::size_t i = 0; i < count; ++i) isKept[i] = ((kept >> i) & 1U) != 0;
    }
  } else {
    cases = {std::vector<bool>(count, false), std::vector<bool>(count, true)};
    for (std::size_t n = 0; n < some; ++n) {
      std::vector<bool>& isKept = cases.emplace_back(count);
      for (std::size_t i = 0; i < count; ++i) isKept[i] = random() % 2 == 0;
    }
  }
  std::vector<Tree> trees;
  for (const auto& isKept : cases) {
    Names names = synced_;
    for (std::size_t i = 0; i < count; ++i) {
      if (isKept[i]) unsynced_[i].Apply(names);
    }
    // Of the bytes that were not synced: none, half of them, all.
    for (const std::size_t part : {0U, 1U, 2U}) {
      trees.push_back(TreeOf(names, [&](int number) {
        const File& file = files_.at(number);
        if (file.Bytes == file.Synced) return file.Bytes;
        return part == 0 ? file.Synced : file.Bytes.substr(0, file.Bytes.size() * part / 2);
      }));
    }
  }
  return trees;
}

}  // namespace quillary::test
