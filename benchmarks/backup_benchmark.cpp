// Backup and restore beside "cp" and "sync" of the same files. The folders are made where TMPDIR
// says; it should be on a real disk. "cp" makes new files in place of the old ones, as a backup
// does. Some seconds pass before each: there are file systems that are slow to make a file while
// others were deleted a moment ago.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "platform/disk.h"
#include "platform/file_names.h"
#include "store/backup.h"
#include "store/profile.h"
#include "tests/support/data_set.h"
#include "tests/support/temp_folder.h"

namespace quillary {
namespace {

using test::TempFolder;

// A full data set and the medium. Every copying finds older copies there.
struct Program {
  Program() {
    test::WriteDataSet(Folder.Path(), {MaxRecords});
    Data.DataPath = ProgramPath(Folder.Path()) + "\\";
    Data.DataFile = Data.DataPath + "quill.dat";
    BackUp();
    std::filesystem::create_directory(Medium.File("cp"));
    CopyAndSync();
  }
  void BackUp() {
    if (quillary::BackUpFiles(Access, Data, ProgramPath(Medium.Path()) + "\\") !=
        RunTimeError::None) {
      std::abort();
    }
  }
  void Restore() {
    if (quillary::RestoreFiles(Access, Data, ProgramPath(Medium.Path()) + "\\") !=
        RunTimeError::None) {
      std::abort();
    }
  }
  void CopyAndSync() const {
    const std::string to = Medium.File("cp");
    const std::string command =
        "cp --remove-destination " + Folder.Path() + "/* " + to + " && sync -f " + to;
    if (std::system(command.c_str()) != 0) std::abort();
  }

  TempFolder Folder;
  TempFolder Medium;
  HostDisk Machine;
  FileNames Names{Machine, Folder.Path(), Folder.Path()};
  Profile Access{Machine, Names};
  StoreData Data;
};

void LetTimePass(benchmark::State& state) {
  state.PauseTiming();
  std::this_thread::sleep_for(std::chrono::milliseconds(5200));
  state.ResumeTiming();
}

void CopyAndSync(benchmark::State& state) {
  Program program;
  for (auto _ : state) {
    LetTimePass(state);
    program.CopyAndSync();
  }
}
BENCHMARK(CopyAndSync)->Iterations(2)->UseRealTime()->Unit(benchmark::kMillisecond);

void BackUpFiles(benchmark::State& state) {
  Program program;
  for (auto _ : state) {
    LetTimePass(state);
    program.BackUp();
  }
}
BENCHMARK(BackUpFiles)->Iterations(2)->UseRealTime()->Unit(benchmark::kMillisecond);

void RestoreFiles(benchmark::State& state) {
  Program program;
  int change = 0;
  for (auto _ : state) {
    // Data that are the same as the backup are not copied aside.
    state.PauseTiming();
    const auto error = program.Access.WriteEntry(program.Data.DataPath + "quill0.dat", "Record0",
                                                 "Notes", std::to_string(++change));
    if (error != RunTimeError::None) std::abort();
    state.ResumeTiming();
    LetTimePass(state);
    program.Restore();
  }
}
BENCHMARK(RestoreFiles)->Iterations(2)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillary

BENCHMARK_MAIN();
