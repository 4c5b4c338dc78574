#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace quillary::test {

// A folder of its own, removed with everything in it at the end.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& Path() const { return path_; }
  // A file in it, as a path of the host.
  std::string File(const std::string& name) const { return path_ + "/" + name; }
  std::string ReadFile(const std::string& name) const;
  // The bytes of its files whose names end so, by name; those of a folder are "folder".
  std::map<std::string, std::string> Files(std::string_view ending = {}) const;
  void WriteFile(const std::string& name, const std::string& bytes) const;
  // A folder takes the file's place, which nobody can read.
  void MakeUnreadable(const std::string& name) const;

 private:
  std::string path_;
};

}  // namespace quillary::test
