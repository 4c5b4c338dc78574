#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/disk.h"

namespace quillary {

// Finds the host's file for the names that the program uses: paths whose parts are separated by
// `\` or `/` (the same thing), in which upper and lower case count alike.
class FileNames {
 public:
  // `ownDirectory`: the program's own directory, a path of the host. `profileFolder`: where bare
  // profile names (without any separator) stand, a path of the host.
  FileNames(Disk& disk, std::string ownDirectory, std::string profileFolder);

  // The host's path for `name`. Each part is the entry of its folder that matches exactly, else
  // the one that matches without regard to case; where several do, the one on the way to the
  // program's own data directory ("quilldat" in its own directory), then the first in code order.
  // From the first part that does not exist (or stands in a folder that cannot be read) on, the
  // name is kept as it is written. A path that does not begin with a separator starts in the
  // program's own directory. Reads folders, changes nothing.
  std::string Find(std::string_view name) const;

  // The paths that Find gives for the names of many files. Each of their folders is read once.
  std::vector<std::string> FindAll(const std::vector<std::string_view>& names) const;

  // The path that `name` probably has, without a look at the disk: in the folder in which the last
  // name was found. Empty if it is in another one.
  std::string Guess(std::string_view name) const;

  // The program's own directory in the program's way of writing, ending in a backslash.
  std::string OwnDirectory() const;

 private:
  std::string Search(std::string_view name) const;
  std::string FindIn(const std::string& folder, std::string_view part) const;

  Disk& disk_;
  std::string ownDirectory_;
  std::string profileFolder_;
  std::string ownData_;  // the data directory in it
  // The folder in which a file was found last: as a program path, and of the host.
  struct KnownFolder {
    std::string Name;
    std::string Path;
  };
  mutable KnownFolder lastFolder_;
};

// A path of the host in the program's way of writing: backslashes between the parts.
std::string ProgramPath(std::string_view hostPath);

// The folder of the executable, unless that is called "bin" or cannot be written; then the user's
// data folder for this program ($XDG_DATA_HOME/quillary, by default ~/.local/share/quillary),
// which is made if it is missing. A path of the host.
std::string FindOwnDirectory();
// The same for an executable that stands in `executableFolder`.
std::string FindOwnDirectory(const std::string& executableFolder);

// The folder of bare profile names: $XDG_CONFIG_HOME, by default ~/.config, made if it is missing.
// A path of the host.
std::string FindProfileFolder();

}  // namespace quillary
