#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/store_world.h"

namespace quillary::test {

// Reads the data files of a folder (a path of the host) with a small parser of its own and checks
// that all three lists hold together: both directions, order, counts, heads, empty links.
testing::AssertionResult CheckFiles(const std::string& folder);

// The same, and that the lists in memory, the filtered ones and the lines of the list box are those
// of the files.
testing::AssertionResult CheckInvariants(const StoreProgram& program);

}  // namespace quillary::test
