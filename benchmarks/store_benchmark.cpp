// What the store does, beside the least that the machine needs for the same work. The folder for
// the data is the one that TMPDIR names; it should be on a real disk.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/program.h"
#include "platform/disk.h"
#include "tests/support/data_set.h"

namespace quillary {
namespace {

using benchmarks::Program;
using test::DataSetShape;

constexpr int Full = MaxRecords;

std::string ReadWhole(HostDisk& disk, const std::string& path) {
  std::string bytes;
  FileStamp stamp;
  if (disk.Read(path, bytes, stamp) != RunTimeError::None) std::abort();
  return bytes;
}

void WriteDurably(HostDisk& disk, const std::string& path, std::string_view bytes) {
  int handle = -1;
  const std::string beside = path + ".new";
  const bool isDone =
      disk.Create(beside, 0600, handle) == RunTimeError::None &&
      disk.Write(handle, bytes) == RunTimeError::None && disk.Sync(handle) == RunTimeError::None &&
      disk.Close(handle) == RunTimeError::None && disk.Rename(beside, path) == RunTimeError::None;
  if (!isDone) std::abort();
}

void SyncFolder(HostDisk& disk, const std::string& folder) {
  if (disk.SyncFolder(folder) != RunTimeError::None) std::abort();
}

void StatOfTheFile(benchmark::State& state) {
  Program program({100});
  const std::string path = program.Folder.File("quill0.dat");
  FileStamp stamp;
  for (auto _ : state) benchmark::DoNotOptimize(program.Machine.Stamp(path, stamp));
}
BENCHMARK(StatOfTheFile);

void ReadEntry(benchmark::State& state) {
  Program program({100});
  const std::string file = program.Data.DataPath + "quill0.dat";
  Program::LetFilesSettle();
  program.Access.ReadEntry(file, "Record57", "EMail");
  for (auto _ : state) {
    benchmark::DoNotOptimize(program.Access.ReadEntry(file, "Record57", "EMail"));
  }
}
BENCHMARK(ReadEntry);

void WriteSyncRename(benchmark::State& state) {
  Program program({100});
  const std::string path = program.Folder.File("quill0.dat");
  const std::string bytes = ReadWhole(program.Machine, path);
  for (auto _ : state) {
    WriteDurably(program.Machine, path, bytes);
    SyncFolder(program.Machine, program.Folder.Path());
  }
}
BENCHMARK(WriteSyncRename)->Iterations(300)->UseRealTime()->Unit(benchmark::kMillisecond);

void WriteEntry(benchmark::State& state) {
  Program program({100});
  const std::string file = program.Data.DataPath + "quill0.dat";
  int value = 0;
  for (auto _ : state) {
    const auto error =
        program.Access.WriteEntry(file, "Record57", "Phone1", std::to_string(++value));
    if (error != RunTimeError::None) std::abort();
  }
}
BENCHMARK(WriteEntry)->Iterations(300)->UseRealTime()->Unit(benchmark::kMillisecond);

void ReadAllFiles(benchmark::State& state) {
  Program program({Full});
  const auto files = program.Files();
  for (auto _ : state) {
    for (const auto& file : files) benchmark::DoNotOptimize(ReadWhole(program.Machine, file));
  }
}
BENCHMARK(ReadAllFiles)->UseRealTime()->Unit(benchmark::kMillisecond);

void GetNamesList(benchmark::State& state) {
  Program program({Full});
  for (auto _ : state) {
    // As at the start of the program: nothing is kept of any file yet.
    Profile access(program.Machine, program.Names);
    Records store(program.Data, access, program.Comparer, program.Hooks, program.Lines);
    store.GetNamesList();
    if (program.Data.ListsIncomplete || program.Data.NoOfRecords != Full) std::abort();
  }
}
BENCHMARK(GetNamesList)->UseRealTime()->Unit(benchmark::kMillisecond);

void WriteAllFilesDurably(benchmark::State& state) {
  Program program({.Live = Full, .Deleted = 0, .Scrambled = true});
  std::vector<std::pair<std::string, std::string>> files;
  for (const auto& path : program.Files()) {
    files.emplace_back(path, ReadWhole(program.Machine, path));
  }
  for (auto _ : state) {
    for (const auto& [path, bytes] : files) WriteDurably(program.Machine, path, bytes);
    SyncFolder(program.Machine, program.Folder.Path());
  }
}
BENCHMARK(WriteAllFilesDurably)->Iterations(5)->UseRealTime()->Unit(benchmark::kMillisecond);

void SortNamesList(benchmark::State& state) {
  const DataSetShape shape{.Live = Full, .Deleted = 0, .Scrambled = true};
  Program program(shape);
  for (auto _ : state) {
    state.PauseTiming();
    test::WriteDataSet(program.Folder.Path(), shape);
    program.Store.GetNamesList();
    state.ResumeTiming();
    if (program.Store.SortNamesList() != RunTimeError::None) std::abort();
  }
}
BENCHMARK(SortNamesList)->Iterations(5)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillary

BENCHMARK_MAIN();
