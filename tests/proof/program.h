#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "tests/support/store_world.h"

namespace quillary::test {

// Everything below a folder: files by their paths from there with their bytes, folders by theirs
// with a slash at the end.
using Tree = std::map<std::string, std::string>;

Tree ReadTree(const std::string& root);
// Makes the folder hold just that.
void WriteTree(const std::string& root, const Tree& tree);

// Whether the environment asks for every case (QUILLARY_THOROUGH), which takes minutes, and not for
// those alone that differ most.
bool IsThorough();

// The folders of a machine that has the program: "conf" with the preferences, "own" for the
// program, "data", and the "stick" for backups. Texts that stand for the folder itself in the
// preferences depend on it, so every program of a test works in the same one.
inline constexpr const char* DataFolder = "data";
inline constexpr const char* StickFolder = "stick";

struct ProgramData {
  SharedData Data;
};

// A program without windows over such a folder: what a start, a command and the other application
// would do.
struct Program : ProgramData, StoreProgram, OpenDataFileHooks {
  Program(const std::string& root, Disk& disk);

  // A start: opens the data files (a new data set is made where there is none), reads and sorts the
  // lists; and what the next use of the stick does first. The program is not counted as a user.
  RunTimeError Open();

  bool AskToCreate(std::string_view) override { return true; }

  std::string Root;
  std::string Stick;  // a program path
  SharingGuard Guard{Access, Data, [] {}};
};

}  // namespace quillary::test
