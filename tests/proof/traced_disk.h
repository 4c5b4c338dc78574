#pragma once

#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/proof/program.h"
#include "tests/support/fault_disk.h"

namespace quillary::test {

// One change that a program has made to files, or had the disk make sure of.
struct DiskChange {
  enum class Step { Make, Write, Sync, MakeFolder, Link, Rename, Remove, SyncFolder };

  Step What;
  int File = 0;           // its number, for the first three; 0: the one at Path
  std::string Path = {};  // of the host
  std::string To = {};
  std::string Bytes = {};
};
using Trace = std::vector<DiskChange>;

// Remembers what is changed.
class TracedDisk : public FaultDisk {
 public:
  RunTimeError Open(const std::string& path, int& handle, FileStamp& stamp) override;
  RunTimeError Create(const std::string& path, unsigned permissions, int& handle) override;
  RunTimeError Write(int handle, std::string_view bytes) override;
  RunTimeError Sync(int handle) override;
  RunTimeError SyncAll(const std::vector<int>& handles) override;
  RunTimeError Link(const std::string& from, const std::string& to) override;
  RunTimeError Rename(const std::string& from, const std::string& to) override;
  RunTimeError Remove(const std::string& path) override;
  RunTimeError MakeFolder(const std::string& path) override;
  RunTimeError SyncFolder(const std::string& folder) override;

  // What was changed since the last call.
  Trace TakeTrace();

 private:
  RunTimeError Note(RunTimeError error, DiskChange change);
  DiskChange SyncOf(int handle) const;

  Trace trace_;
  std::map<int, int> files_;          // by handle
  std::map<int, std::string> paths_;  // of those that were opened to be read, by handle
  int count_ = 0;
};

// What a disk promises, and no more: the bytes of a file stay once it is synced, the names in a
// folder once that is. Before, any of the changes may have reached it, in any order.
class DiskModel {
 public:
  // All of it is sure to stay. Paths are those below `root`.
  DiskModel(std::string root, const Tree& tree);

  void Apply(const DiskChange& change);

  // What is there when the program ends.
  Tree AfterStop() const;
  // What may be there after a power cut: every case where these are few, otherwise the clear ones
  // and some others.
  std::vector<Tree> AfterPowerCuts(std::mt19937& random) const;

 private:
  struct File {
    std::string Bytes;
    std::string Synced;
  };
  using Names = std::map<std::string, int>;  // the file's number; folders as in Tree
  struct NameChange {
    std::string Folder;
    std::string Gone;
    std::string Name;
    int Number;

    void Apply(Names& names) const;
  };

  std::string Below(const std::string& path) const;
  void Change(NameChange change);
  template <typename Contents>
  static Tree TreeOf(const Names& names, Contents contents);

  std::string root_;
  std::map<int, File> files_;
  Names now_;
  Names synced_;
  std::vector<NameChange> unsynced_;
};

}  // namespace quillary::test
