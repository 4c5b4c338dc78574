// Searches and the deleted list, on the disk that TMPDIR names.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "benchmarks/program.h"

namespace quillary {
namespace {

using benchmarks::Program;

constexpr int Full = MaxRecords;

const std::vector<Field> AllFields{Sal,      FirstName, LastName, Title,    Company,  Address1,
                                   Address2, Address3,  Address4, Address5, Address6, Phone1,
                                   Phone2,   Fax,       EMail,    Notes};

// A search over full data, each time as the first one after the start of the program.
template <typename Search>
void Searching(benchmark::State& state, Search search) {
  Program program({Full});
  program.Store.GetNamesList();
  Program::LetFilesSettle();
  for (auto _ : state) {
    Profile access(program.Machine, program.Names);
    Records store(program.Data, access, program.Comparer, program.Hooks, program.Lines);
    search(program.Data, store);
  }
}

void FindNothing(benchmark::State& state, const std::string& word) {
  Searching(state, [&](StoreData& data, Records& store) {
    if (store.FindText(word, AllFields, data.NamesRecNo, 5)) std::abort();
  });
}

void Filter(benchmark::State& state, const std::string& word) {
  Searching(state, [&](StoreData& data, Records& store) {
    data.FilterCriteria = {};
    data.FilterCriteria[1] = word;
    store.BuildFilteredList();
    store.GetFilteredNamesList();
  });
}

// The least that a search could be: a whole process that counts the lines with the word.
void Grep(benchmark::State& state, const std::string& word) {
  const Program program({Full});
  std::vector<std::string> arguments{"grep", "-ciF", "-e", word};
  for (const auto& file : program.Files()) arguments.push_back(file);
  std::vector<char*> argv;
  for (auto& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  std::string locale = "LC_ALL=C.UTF-8";
  std::vector<char*> environment{locale.data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  for (auto _ : state) {
    pid_t child = 0;
    if (posix_spawnp(&child, "grep", &actions, nullptr, argv.data(), environment.data()) != 0 ||
        waitpid(child, nullptr, 0) != child) {
      std::abort();
    }
  }
  posix_spawn_file_actions_destroy(&actions);
}

void RegisterSearches() {
  struct Case {
    const char* What;
    const char* Word;
  };
  const auto add = [](const std::string& name, auto function, const std::string& word) {
    benchmark::RegisterBenchmark(name.c_str(), [=](auto& state) { function(state, word); })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
  };
  for (const Case& c : {Case{"nowhere", "zebra"}, Case{"in the keys", "phone"},
                        Case{"of two scripts", "Ιωάννα X"}}) {
    add(std::string("FindText, ") + c.What, FindNothing, c.Word);
    add(std::string("grep FindText, ") + c.What, Grep, c.Word);
  }
  for (const Case& c : {Case{"none", "zebra"}, Case{"many", "an"}, Case{"Greek", "ΠΑΠΑΔΌ"}}) {
    add(std::string("filter, ") + c.What, Filter, c.Word);
    add(std::string("grep filter, ") + c.What, Grep, c.Word);
  }
}

void ReadDeletedNamesList(benchmark::State& state) {
  Program program({.Live = Full, .Deleted = MaxDeletedListed});
  for (auto _ : state) {
    Profile access(program.Machine, program.Names);
    Records store(program.Data, access, program.Comparer, program.Hooks, program.Lines);
    store.ReadDeletedNamesList();
    if (program.Data.DelNamesList.size() != MaxDeletedListed) std::abort();
  }
}
BENCHMARK(ReadDeletedNamesList)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillary

int main(int argc, char** argv) {
  quillary::RegisterSearches();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
