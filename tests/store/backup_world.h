#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "store/backup.h"
#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/store_world.h"

namespace quillary::test {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

// A data set of two record files, an older backup of one that had other records, and programs over
// them.
struct BackupTest : testing::Test {
  BackupTest() { Prepare(); }

  void Prepare() {
    for (const TempFolder* folder : {&World.Folder, &Medium}) {
      for (const auto& entry : fs::directory_iterator(folder->Path())) fs::remove_all(entry);
    }
    WriteDataSet(World.Folder.Path(), {.Live = 120, .Deleted = 5});
    const TempFolder other;
    WriteDataSet(other.Path(), {.Live = 210});
    for (const auto& [name, bytes] : other.Files()) {
      Medium.WriteFile(UpperCase(name.substr(0, name.size() - 3)) + "OLD", bytes);
    }
    Medium.WriteFile("letter.txt", "Dear Ann");
  }
  // What the medium's files are to be after a backup of the data.
  Files FilesAfterBackUp() {
    Files files = Medium.Files();
    for (const auto& [name, bytes] : World.Folder.Files()) {
      files[UpperCase(name.substr(0, name.find('.'))) + ".OLD"] = bytes;
    }
    return files;
  }
  RunTimeError BackUp() { return BackUpFiles(World.Access, World.Data, Stick, &Fault); }
  // The same once the user has agreed.
  RunTimeError BackUpAgreed() {
    return BackUpFiles(World.Access, World.Data, Stick, &Fault, {}, true);
  }
  std::optional<RunTimeError> Restore() { return RestoreFrom(Stick); }
  std::optional<RunTimeError> RestoreFrom(const std::string& source) {
    return RestoreFiles(World.Access, World.Data, source, &Fault);
  }
  // The checks look for the names that the program itself gives.
  bool DataAreWhole() {
    for (const std::string number : {"1", "2"}) {
      std::error_code isNoMore;
      fs::rename(World.Folder.File("QUILL" + number + ".DAT"),
                 World.Folder.File("quill" + number + ".dat"), isNoMore);
    }
    return CheckFiles(World.Folder.Path());
  }
  // A program that is started now.
  Profile NewProgram() { return {World.Machine, World.Names}; }

  StoreWorld World;
  TempFolder Medium;
  std::string Stick = ProgramPath(Medium.Path()) + "\\";
  CopyFault Fault = CopyFault::None;
};

}  // namespace quillary::test
