#include "platform/file_names.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <numeric>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "platform/text.h"

namespace quillary {

namespace {

constexpr std::string_view Separators = "\\/";

std::string Join(const std::string& folder, std::string_view part) {
  std::string path = folder;
  if (!path.ends_with('/')) path += '/';
  return path.append(part);
}

std::vector<std::string_view> Parts(std::string_view name) {
  std::vector<std::string_view> parts;
  while (true) {
    name.remove_prefix(std::min(name.find_first_not_of(Separators), name.size()));
    if (name.empty()) return parts;
    const std::size_t length = std::min(name.find_first_of(Separators), name.size());
    parts.push_back(name.substr(0, length));
    name.remove_prefix(length);
  }
}

// The part of `path` that stands in `folder`; empty if `path` does not lead through it.
std::string_view NextPart(std::string_view path, const std::string& folder) {
  const std::string start = Join(folder, "");
  if (!path.starts_with(start)) return {};
  path.remove_prefix(start.size());
  return path.substr(0, path.find('/'));
}

// What is the same for names that differ in case alone. Upper case first: it makes one letter of
// some that are otherwise two, and a path that was stored in upper case is to be found again.
std::string NameKey(std::string_view name) {
  return WithoutCase(UpperCase(name));
}

bool IsSameName(std::string_view a, std::string_view b) {
  return NameKey(a) == NameKey(b);
}

// The entries of a folder. Where it cannot be read it has none.
class Listing {
 public:
  Listing(Disk& disk, std::string folder) : folder_(std::move(folder)) {
    std::vector<std::string> names;
    isRead_ = disk.List(folder_, names) == RunTimeError::None;
    std::sort(names.begin(), names.end());
    for (std::string& name : names) {
      byKey_.try_emplace(NameKey(name), name);
      exact_.insert(std::move(name));
    }
  }

  bool IsRead() const { return isRead_; }
  std::string PathOf(const std::string& name) const {
    if (exact_.contains(name)) return Join(folder_, name);
    const auto found = byKey_.find(NameKey(name));
    return Join(folder_, found == byKey_.end() ? name : found->second);
  }

 private:
  std::string folder_;
  bool isRead_ = false;
  std::unordered_set<std::string> exact_;
  std::unordered_map<std::string, std::string> byKey_;  // the first in code order
};

bool Exists(Disk& disk, const std::string& path) {
  FileStamp stamp;
  return disk.Stamp(path, stamp) == RunTimeError::None;
}

// Failures show when the folder is used.
void MakeFolders(const std::string& path) {
  for (std::size_t end = 0; end != std::string::npos;) {
    end = path.find('/', end + 1);
    mkdir(path.substr(0, end).c_str(), 0700);
  }
}

std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home == '/') return home;
  const passwd* user = getpwuid(getuid());
  return user != nullptr && user->pw_dir != nullptr && *user->pw_dir == '/' ? user->pw_dir : "/";
}

// The folder that the environment variable names, else one in the home folder. Relative paths do
// not count: they would mean another folder at every start.
std::string UserFolder(const char* variable, std::string_view inHome) {
  const char* folder = std::getenv(variable);
  return folder != nullptr && *folder == '/' ? folder : Join(HomeFolder(), inHome);
}

}  // namespace

FileNames::FileNames(Disk& disk, std::string ownDirectory, std::string profileFolder)
    : disk_(disk),
      ownDirectory_(std::move(ownDirectory)),
      profileFolder_(std::move(profileFolder)) {
  const std::vector<std::string_view> parts = Parts(ownDirectory_);
  ownData_ = Join(std::accumulate(parts.begin(), parts.end(), std::string("/"), Join), "quilldat");
}

std::string FileNames::Guess(std::string_view name) const {
  const std::size_t folderSize = name.find_last_of(Separators) + 1;
  if (folderSize == 0 || name.substr(0, folderSize) != lastFolder_.Name) return {};
  return Join(lastFolder_.Path, name.substr(folderSize));
}

std::string FileNames::Find(std::string_view name) const {
  // One folder's files are asked for one after the other.
  std::string guess = Guess(name);
  if (!guess.empty() && Exists(disk_, guess)) return guess;
  std::string path = Search(name);
  const std::size_t folderSize = name.find_last_of(Separators) + 1;
  if (folderSize > 0 && folderSize < name.size()) {
    lastFolder_ = {std::string(name.substr(0, folderSize)), path.substr(0, path.rfind('/'))};
  }
  return path;
}

std::vector<std::string> FileNames::FindAll(const std::vector<std::string_view>& names) const {
  std::vector<std::string> paths;
  paths.reserve(names.size());
  std::map<std::string_view, Listing> folders;
  for (const std::string_view name : names) {
    const std::string_view folder = name.substr(0, name.find_last_of(Separators) + 1);
    auto listing = folders.find(folder);
    if (listing == folders.end() && !folder.empty()) {
      listing = folders.try_emplace(folder, disk_, Find(folder)).first;
    }
    const bool isListed = listing != folders.end() && listing->second.IsRead();
    paths.push_back(isListed ? listing->second.PathOf(std::string(name.substr(folder.size())))
                             : Find(name));
  }
  return paths;
}

std::string FileNames::Search(std::string_view name) const {
  std::string base = ownDirectory_;
  if (name.find_first_of(Separators) == std::string_view::npos) {
    base = profileFolder_;
  } else if (Separators.find(name.front()) != std::string_view::npos) {
    base = "/";
  }
  const std::vector<std::string_view> parts = Parts(name);
  std::string asWritten = std::accumulate(parts.begin(), parts.end(), base, Join);
  if (Exists(disk_, asWritten)) return asWritten;
  return std::accumulate(
      parts.begin(), parts.end(), base,
      [this](const std::string& folder, std::string_view part) { return FindIn(folder, part); });
}

std::string FileNames::FindIn(const std::string& folder, std::string_view part) const {
  std::string path = Join(folder, part);
  if (Exists(disk_, path)) return path;

  // The data path is stored in upper case, so this is the usual way. It needs no listing: a folder
  // on the way may be one that can be entered but not read.
  const std::string_view next = NextPart(ownData_, folder);
  std::string ownPath = Join(folder, next);
  if (IsSameName(next, part) && Exists(disk_, ownPath)) return ownPath;

  std::vector<std::string> names;
  if (disk_.List(folder, names) != RunTimeError::None) return path;
  // A link that leads nowhere does not exist for a stamp, yet it is the entry of that name.
  if (std::find(names.begin(), names.end(), part) != names.end()) return path;
  std::erase_if(names, [&](const std::string& name) { return !IsSameName(name, part); });
  return names.empty() ? path : Join(folder, *std::min_element(names.begin(), names.end()));
}

std::string FileNames::OwnDirectory() const {
  std::string path = ProgramPath(ownDirectory_);
  if (!path.ends_with('\\')) path += '\\';
  return path;
}

std::string ProgramPath(std::string_view hostPath) {
  std::string path(hostPath);
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

std::string FindOwnDirectory() {
  std::error_code ignored;
  return FindOwnDirectory(
      std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path().string());
}

std::string FindOwnDirectory(const std::string& executableFolder) {
  const bool isBin = std::filesystem::path(executableFolder).filename() == "bin";
  // A program path cannot name a folder with a backslash.
  const bool isUsable = !isBin && executableFolder.find('\\') == std::string::npos;
  if (isUsable && access(executableFolder.c_str(), W_OK | X_OK) == 0) return executableFolder;

  std::string folder = Join(UserFolder("XDG_DATA_HOME", ".local/share"), "quillary");
  MakeFolders(folder);
  return folder;
}

std::string FindProfileFolder() {
  std::string folder = UserFolder("XDG_CONFIG_HOME", ".config");
  MakeFolders(folder);
  return folder;
}

}  // namespace quillary
