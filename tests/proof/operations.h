#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tests/proof/program.h"

namespace quillary::test {

// What a user can have the program do to files.
struct Operation {
  const char* Name;
  RunTimeError (*Run)(Program&);
  // Prepares the usual files for it.
  void (*SetUp)(Program&) = nullptr;
  bool IsStart = false;          // a start of the program itself
  bool ReplacesFiles = false;    // whole, with all that anyone has written to them
  bool IsFinishedLater = false;  // like every change in the program with its windows

  friend void PrintTo(const Operation& operation, std::ostream* stream) {
    *stream << operation.Name;
  }
};

const std::vector<Operation>& Operations();
inline std::string NameOf(const testing::TestParamInfo<Operation>& operation) {
  return operation.param.Name;
}

// The files before the operation: a few records, live and deleted, in three record files; an older
// backup on the stick. `root` is the folder that they are for, and holds them afterwards.
Tree FilesBefore(const Operation& operation, const std::string& root);

}  // namespace quillary::test
