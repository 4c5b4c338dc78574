// Changes of one record among few and among many, on the disk that TMPDIR names. All are made once
// in each round, so that what else the disk and the processor have to do meets all of them. The
// rounds come in a row, and in another run at the pace of a user, with some seconds between them:
// by then the processor has forgotten the files, each of which costs more than the one before.
//
// A change counts until it is sure to be kept and the lists in memory have it. The files are
// finished after it, like in the program with its windows; "finish" tells how long that takes.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/program.h"
#include "store/profile.h"

namespace quillary {
namespace {

using benchmarks::Program;

constexpr int Few = 100;
constexpr int Full = MaxRecords;
constexpr int Rounds = 31;

void Expect(RunTimeError error) {
  if (error != RunTimeError::None) std::abort();
}

std::string NameOf(int round) {
  return std::string(1, static_cast<char>('A' + round * 7 % 26)) + "nderson";
}

// A record from all over the list.
std::size_t IndexOf(const Program& program, int round) {
  return static_cast<std::size_t>(round + 1) * 7919 % program.Data.NamesRecNo.size();
}

void InsertRecord(Program& program, int round) {
  ProfileUpdate update(program.Access);
  program.Data.FieldValues = {"", "", NameOf(round)};
  std::string recNo;
  Expect(program.Store.NextRecordNumber(recNo));
  Expect(program.Store.WriteRecord(recNo));
  Expect(program.Store.InsertRecord(recNo, NameOf(round), NameOf(round)));
  Expect(update.Commit());
}

void DeleteRecord(Program& program, int round) {
  const std::size_t index = IndexOf(program, round);
  Expect(program.Store.DeleteRecord(std::string(program.Data.NamesRecNo[index]), index));
}

void RestoreRecord(Program& program, int round) {
  const auto index = static_cast<std::size_t>(round);
  Expect(program.Store.RestoreRecord(std::string(program.Data.DelRecNo[index])));
}

void ChangeNotes(Program& program, int round) {
  const std::size_t index = IndexOf(program, round);
  const std::string recNo(program.Data.NamesRecNo[index]);
  Expect(program.Store.ReadRecord(recNo));
  program.Data.FieldValues[Notes] = "Changed " + NameOf(round);
  Expect(program.Store.ChangeRecord(recNo, index, false));
}

void ChangeName(Program& program, int round) {
  const std::size_t index = IndexOf(program, round);
  const std::string recNo(program.Data.NamesRecNo[index]);
  Expect(program.Store.ReadRecord(recNo));
  program.Data.FieldValues = {"", "", NameOf(round), "", NameOf(round)};
  Expect(program.Store.ChangeRecord(recNo, index, true));
}

struct Kind {
  const char* What;
  void (*Change)(Program&, int round);
};
constexpr Kind Kinds[]{{"InsertRecord", InsertRecord},
                       {"DeleteRecord", DeleteRecord},
                       {"RestoreRecord", RestoreRecord},
                       {"ChangeNotes", ChangeNotes},
                       {"ChangeName", ChangeName}};

// A program in the middle of its work: every file has been read, and not changed just now.
struct Place {
  Place(const Kind& kind, const char* among, const test::DataSetShape& shape)
      : Change(kind.Change), Name(std::string(kind.What) + ' ' + among), Writer(shape) {
    Writer.Store.GetNamesList();
    Writer.Store.ReadDeletedNamesList();
    Writer.Access.FinishLater([] {});
    for (const std::string_view recNo : Writer.Data.NamesRecNo) {
      static_cast<void>(Writer.Store.ReadRecordEntry(recNo, "Notes"));
    }
  }

  void (*Change)(Program&, int round);
  std::string Name;
  Program Writer;
};

// In milliseconds.
double TimeOf(const auto& function) {
  const auto begin = std::chrono::steady_clock::now();
  function();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
      .count();
}

double MedianOf(std::vector<double>& times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

// Counts medians in milliseconds.
void Changes(benchmark::State& state, std::chrono::milliseconds betweenRounds) {
  std::vector<std::unique_ptr<Place>> places;
  for (const Kind& kind : Kinds) {
    places.push_back(std::make_unique<Place>(kind, "few", test::DataSetShape{Few, Rounds}));
    places.push_back(
        std::make_unique<Place>(kind, "few in many files", test::DataSetShape{Few, Full - Few}));
    places.push_back(
        std::make_unique<Place>(kind, "many", test::DataSetShape{Full - Rounds, Rounds}));
  }
  std::map<std::string, std::vector<double>> times;
  // The files of the places are not to be on their way to the disk meanwhile.
  sync();
  for (auto _ : state) {
    for (int round = 0; round < Rounds; ++round) {
      std::this_thread::sleep_for(betweenRounds);
      for (std::size_t i = 0; i < places.size(); ++i) {
        // Not always in the same order.
        Place& place = *places[(i + static_cast<std::size_t>(round)) % places.size()];
        times[place.Name].push_back(TimeOf([&] { place.Change(place.Writer, round); }));
      }
      for (const auto& place : places) {
        times["finish " + place->Name].push_back(
            TimeOf([&] { Expect(place->Writer.Access.Finish()); }));
      }
    }
  }
  for (auto& [name, each] : times) state.counters[name] = MedianOf(each);
}
BENCHMARK_CAPTURE(Changes, InARow, std::chrono::milliseconds(0))->Iterations(1);
BENCHMARK_CAPTURE(Changes, NowAndThen, std::chrono::milliseconds(5200))->Iterations(1);

}  // namespace
}  // namespace quillary

BENCHMARK_MAIN();
