#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "platform/file_names.h"
#include "platform/text.h"
#include "store/records.h"
#include "tests/support/store_world.h"
#include "tests/support/temp_folder.h"

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

// A program without windows over such a folder: what a start, a command and the other application
// would do.
struct Program : OpenDataFileHooks {
  Program(const std::string& root, Disk& disk);

  // A start: opens the data files (a new data set is made where there is none), reads and sorts the
  // lists; and what the next use of the stick does first. The program is not counted as a user.
  RunTimeError Open();
  void Filter(const std::string& lastName);

  // The commands of the windows.
  RunTimeError Add(const FieldArray& fields);
  RunTimeError Edit(const std::string& recNo, const FieldArray& fields, bool moves);
  RunTimeError Delete(const std::string& recNo);
  RunTimeError Import(const std::vector<FieldArray>& people, bool replace);

  FieldArray Fields(const std::string& recNo);
  // All lists in memory and the list box, to be compared.
  std::vector<TextList> Memory() const { return ListsInMemory(Data, Lines); }
  testing::AssertionResult IsConsistent() const;

  bool AskToCreate(std::string_view) override { return true; }

  std::string Root;
  std::string Stick;  // a program path
  FileNames Names;
  Profile Access;
  TextComparer Comparer;
  RecordedProgress Progress;
  RecordedLines Lines;
  SharedData Data;
  Records Store{Data, Access, Comparer, Progress, Lines};
  SharingGuard Guard{Access, Data, [] {}};
};

}  // namespace quillary::test
