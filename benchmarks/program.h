#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/disk.h"
#include "platform/file_names.h"
#include "platform/text.h"
#include "store/profile.h"
#include "store/records.h"
#include "tests/support/data_set.h"
#include "tests/support/temp_folder.h"

namespace quillary::benchmarks {

class NoProgress : public ProgressHooks {
 public:
  void Begin(std::string_view, std::string_view) override {}
  void Step(double) override {}
  void End() override {}
};

class NoLines : public ListHooks {
 public:
  void SetLines(const TextList&, const TextList&) override {}
  void InsertLine(std::size_t, std::string_view, std::string_view) override {}
  void RemoveLine(std::size_t) override {}
};

// A program over a data set of its own.
struct Program {
  explicit Program(const test::DataSetShape& shape) {
    test::WriteDataSet(Folder.Path(), shape);
    Data.DataPath = ProgramPath(Folder.Path()) + "\\";
    Data.DataFile = Data.DataPath + "quill.dat";
    Data.NoOfRecords = static_cast<std::int16_t>(shape.Live);
  }
  // Files that were written just now are compared with what is kept of them at every read.
  static void LetFilesSettle() { std::this_thread::sleep_for(std::chrono::milliseconds(2100)); }

  std::vector<std::string> Files() const {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(Folder.Path())) {
      files.push_back(entry.path());
    }
    return files;
  }

  test::TempFolder Folder;
  HostDisk Machine;
  FileNames Names{Machine, Folder.Path(), Folder.Path()};
  Profile Access{Machine, Names};
  TextComparer Comparer;
  StoreData Data;
  NoProgress Hooks;
  NoLines Lines;
  Records Store{Data, Access, Comparer, Hooks, Lines};
};

}  // namespace quillary::benchmarks
