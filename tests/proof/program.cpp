#include "tests/proof/program.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "app/preferences.h"

namespace quillary::test {
namespace fs = std::filesystem;

bool IsThorough() {
  return std::getenv("QUILLARY_THOROUGH") != nullptr;
}

Tree ReadTree(const std::string& root) {
  Tree tree;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    const std::string path = entry.path().string().substr(root.size() + 1);
    if (entry.is_directory()) {
      tree[path + '/'];
    } else {
      std::ifstream stream(entry.path(), std::ios::binary);
      tree[path].assign(std::istreambuf_iterator<char>(stream), {});
    }
  }
  return tree;
}

void WriteTree(const std::string& root, const Tree& tree) {
  const Tree now = ReadTree(root);
  for (auto old = now.rbegin(); old != now.rend(); ++old) {
    if (!tree.contains(old->first)) fs::remove(fs::path(root) / old->first);
  }
  for (const auto& [name, bytes] : tree) {
    const fs::path path = fs::path(root) / name;
    const auto old = now.find(name);
    if (old != now.end() && old->second == bytes) continue;
    if (name.ends_with('/')) {
      fs::create_directory(path);
      continue;
    }
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    if (!(stream << bytes).flush()) throw std::runtime_error("cannot write " + name);
  }
}

Program::Program(const std::string& root, Disk& disk)
    : StoreProgram(disk, root + "/own", root + "/conf", Data),
      Root(root),
      Stick(ProgramPath(root + '/' + StickFolder) + '\\') {}

RunTimeError Program::Open() {
  LoadPreferences(Access, Data);
  RunTimeError error = RunTimeError::None;
  if (!Store.OpenDataFile(Data.PrefsFile, Names.OwnDirectory(), *this, error)) return error;
  Store.GetNamesList();
  error = Store.SortNamesList();
  Store.ShowRecords();
  // The user is told.
  if (Data.ListsIncomplete && error == RunTimeError::None) error = RunTimeError::DeviceError;
  const RunTimeError stickError = Access.Recover(Stick + "QUILL.OLD");
  return error == RunTimeError::None ? stickError : error;
}

}  // namespace quillary::test
