// Writes an invented data set, for measuring and for trying the program out:
//   generate_data <folder> <count> [--scrambled] [--deleted N]

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/data_set.h"

namespace {

constexpr std::string_view Usage =
    "usage: generate_data <folder> <count> [--scrambled] [--deleted N]\n";

bool Parse(const std::vector<std::string>& arguments, quillary::test::DataSetShape& shape) {
  if (arguments.size() < 2) return false;
  shape.Live = std::stoi(arguments[1]);
  for (std::size_t i = 2; i < arguments.size(); ++i) {
    if (arguments[i] == "--scrambled") {
      shape.Scrambled = true;
    } else if (arguments[i] == "--deleted" && i + 1 < arguments.size()) {
      shape.Deleted = std::stoi(arguments[++i]);
    } else {
      return false;
    }
  }
  return shape.Live >= 0 && shape.Deleted >= 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    quillary::test::DataSetShape shape;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (!Parse(arguments, shape)) {
      std::cerr << Usage;
      return EXIT_FAILURE;
    }
    std::filesystem::create_directories(arguments[0]);
    quillary::test::WriteDataSet(arguments[0], shape);
    return EXIT_SUCCESS;
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n' << Usage;
    return EXIT_FAILURE;
  }
}
