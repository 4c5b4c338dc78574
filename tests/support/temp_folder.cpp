#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace quillary::test {

TempFolder::TempFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "quillary-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = pattern;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::ReadFile(const std::string& name) const {
  std::ifstream stream(File(name), std::ios::binary);
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  return bytes.str();
}

std::map<std::string, std::string> TempFolder::Files(std::string_view ending) const {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(path_)) {
    const std::string name = entry.path().filename();
    if (name.ends_with(ending)) files[name] = entry.is_regular_file() ? ReadFile(name) : "folder";
  }
  return files;
}

void TempFolder::WriteFile(const std::string& name, const std::string& bytes) const {
  std::ofstream stream(File(name), std::ios::binary | std::ios::trunc);
  stream << bytes;
  if (!stream.flush()) throw std::runtime_error("cannot write " + File(name));
}

void TempFolder::MakeUnreadable(const std::string& name) const {
  std::filesystem::remove(File(name));
  std::filesystem::create_directory(File(name));
}

}  // namespace quillary::test
