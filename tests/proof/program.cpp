#include "tests/proof/program.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "app/preferences.h"
#include "tests/support/check_invariants.h"

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
    if (!tree.contains(old->first)) fs::remove(root + '/' + old->first);
  }
  for (const auto& [path, bytes] : tree) {
    const auto old = now.find(path);
    if (old != now.end() && old->second == bytes) continue;
    if (path.ends_with('/')) {
      fs::create_directory(root + '/' + path);
      continue;
    }
    std::ofstream stream(root + '/' + path, std::ios::binary | std::ios::trunc);
    if (!(stream << bytes).flush()) throw std::runtime_error("cannot write " + path);
  }
}

Program::Program(const std::string& root, Disk& disk)
    : Root(root),
      Stick(ProgramPath(root + '/' + StickFolder) + '\\'),
      Names(disk, root + "/own", root + "/conf"),
      Access(disk, Names) {}

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

void Program::Filter(const std::string& lastName) {
  Data.FilterCriteria = {"", lastName};
  Data.FilterOn = true;
  Store.BuildFilteredList();
  Store.GetFilteredNamesList();
  Store.SortFilteredList();
  Store.ShowRecords();
}

RunTimeError Program::Add(const FieldArray& fields) {
  ProfileUpdate update(Access);
  Data.FieldValues = fields;
  std::string recNo;
  RunTimeError error = Store.NextRecordNumber(recNo);
  if (error == RunTimeError::None) error = Store.WriteRecord(recNo);
  if (error == RunTimeError::None) {
    error = Store.InsertRecord(recNo, Store.ReadRecordEntry(recNo, "ShowName"),
                               Store.ReadRecordEntry(recNo, "ShowCompany"));
  }
  return error == RunTimeError::None ? update.Commit() : error;
}

RunTimeError Program::Edit(const std::string& recNo, const FieldArray& fields, bool moves) {
  Data.FieldValues = fields;
  return Store.ChangeRecord(recNo, Lines.Line(recNo), moves);
}

RunTimeError Program::Delete(const std::string& recNo) {
  return Store.DeleteRecord(recNo, Lines.Line(recNo));
}

RunTimeError Program::Import(const std::vector<FieldArray>& people, bool replace) {
  const RunTimeError error = Store.ImportRecords(
      people.size(), [&](std::size_t i) { return people.at(i); }, replace);
  if (error == RunTimeError::None) {
    Data.FilterOn = false;
    Store.ShowRecords();
  }
  return error;
}

FieldArray Program::Fields(const std::string& recNo) {
  FieldArray fields;
  if (Store.ReadFields(recNo, fields) != RunTimeError::None) {
    throw std::runtime_error("cannot read record " + recNo);
  }
  return fields;
}

testing::AssertionResult Program::IsConsistent() const {
  std::string folder = Data.DataPath;
  std::replace(folder.begin(), folder.end(), '\\', '/');
  folder.pop_back();
  return CheckInvariants(Names.Find(folder), Data, Lines);
}

}  // namespace quillary::test
