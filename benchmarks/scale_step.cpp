// One step of what a user does with the largest data set, in a process of its own: tells, in one
// line, its milliseconds and the megabytes of memory that the process has used at most.
//
//   scale_step <step> <data folder> <folder of the medium>

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>

#include "benchmarks/program.h"
#include "platform/numbers.h"
#include "store/backup.h"

namespace quillary {
namespace {

constexpr std::size_t ImportedAtMost = 8000;

void Need(bool isDone) {
  if (!isDone) std::abort();
}

// The program over the data in a folder, with its lists read.
struct Program {
  Program(const std::string& folder, const std::string& medium)
      : Medium(ProgramPath(medium) + "\\"), Names(Machine, folder, folder) {
    Data.DataPath = ProgramPath(folder) + "\\";
    Data.DataFile = Data.DataPath + "quill.dat";
    Data.NoOfRecords = ToInt16(Store.ReadHeaderEntry("NoOfRecords"));
    Store.GetNamesList();
    Need(Data.NoOfRecords > 0 && !Data.ListsIncomplete);
  }
  std::size_t Middle() const { return Data.NamesRecNo.size() / 2; }

  std::string Medium;
  HostDisk Machine;
  FileNames Names;
  Profile Access{Machine, Names};
  TextComparer Comparer;
  StoreData Data;
  benchmarks::NoProgress Hooks;
  benchmarks::NoLines Lines;
  Records Store{Data, Access, Comparer, Hooks, Lines};
};

void Find(Program& program) {
  std::vector<Field> fields;
  for (int field = Sal; field <= Notes; ++field) fields.push_back(static_cast<Field>(field));
  Need(!program.Store.FindText("zebra", fields, program.Data.NamesRecNo, 0));
}

void Filter(Program& program) {
  program.Data.FilterCriteria[1] = "an";
  program.Store.BuildFilteredList();
  program.Store.GetFilteredNamesList();
  program.Store.SortFilteredList();
  Need(program.Data.FilteredCount > 0);
}

void EditInPlace(Program& program) {
  const std::string recNo(program.Data.NamesRecNo[program.Middle()]);
  Need(program.Store.ReadRecord(recNo) == RunTimeError::None);
  program.Data.FieldValues[Notes] = "Changed.";
  Need(program.Store.WriteRecord(recNo) == RunTimeError::None);
}

void EditThatMoves(Program& program) {
  const std::size_t index = program.Middle();
  const std::string recNo(program.Data.NamesRecNo[index]);
  Need(program.Store.ReadRecord(recNo) == RunTimeError::None);
  program.Data.FieldValues[LastName] = "Aardvark";
  Need(program.Store.ChangeRecord(recNo, index, true) == RunTimeError::None);
}

void ReadDeleted(Program& program) {
  program.Store.ReadDeletedNamesList();
  Need(!program.Data.DelNamesList.empty());
}

void Restore(Program& program) {
  program.Store.ReadDeletedNamesList();
  Need(program.Store.RestoreRecord(program.Data.DelRecNo[0]) == RunTimeError::None);
}

void Delete(Program& program) {
  const std::size_t index = program.Middle();
  Need(program.Store.DeleteRecord(std::string(program.Data.NamesRecNo[index]), index) ==
       RunTimeError::None);
}

void Sort(Program& program) {
  Need(program.Store.SortNamesList() == RunTimeError::None);
}

void Import(Program& program) {
  const auto person = [](std::size_t i) {
    const std::string number = std::to_string(i * 7919 % 10007);
    FieldArray fields;
    fields[FirstName] = "Ann " + number;
    fields[LastName] = "Lee" + number;
    fields[Field::Company] = "Acme " + number;
    fields[Phone1] = "+49 30 " + number;
    return fields;
  };
  Need(program.Store.ImportRecords(ImportedAtMost, person, true) == RunTimeError::None);
}

void BackUp(Program& program) {
  Need(BackUpFiles(program.Access, program.Data, program.Medium) == RunTimeError::None);
}

void RestoreBackUp(Program& program) {
  Need(RestoreFiles(program.Access, program.Data, program.Medium) == RunTimeError::None);
}

int Run(const std::string& step, const std::string& folder, const std::string& medium) {
  const std::map<std::string, std::function<void(Program&)>> steps{
      {"find", Find},
      {"filter", Filter},
      {"edit", EditInPlace},
      {"edit-moves", EditThatMoves},
      {"read-deleted", ReadDeleted},
      {"delete", Delete},
      {"restore", Restore},
      {"sort", Sort},
      {"import", Import},
      {"back-up", BackUp},
      {"restore-backup", RestoreBackUp},
  };
  const auto found = steps.find(step);
  if (found == steps.end()) return EXIT_FAILURE;
  Program program(folder, medium);
  const auto start = std::chrono::steady_clock::now();
  found->second(program);
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("%.1f %.0f\n", time.count(), static_cast<double>(usage.ru_maxrss) / 1024);
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace quillary

int main(int argc, char* argv[]) {
  return argc == 4 ? quillary::Run(argv[1], argv[2], argv[3]) : EXIT_FAILURE;
}
