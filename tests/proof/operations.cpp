#include "tests/proof/operations.h"

#include <filesystem>
#include <stdexcept>

#include "app/preferences.h"
#include "store/backup.h"

namespace quillary::test {
namespace {

constexpr const char* OwnHeader = "own/quilldat/quill.dat";

void Check(RunTimeError error) {
  if (error != RunTimeError::None) throw std::runtime_error(RunTimeErrorText(error));
}

void SetHeader(Program& program, const char* key, const char* value) {
  Check(program.Store.WriteHeaderEntry(key, value));
}

RunTimeError BackUp(Program& program, const std::string& folder) {
  return BackUpFiles(program.Access, program.Data, folder);
}
RunTimeError Restore(Program& program, const std::string& folder) {
  return RestoreFiles(program.Access, program.Data, folder).value_or(RunTimeError::NotReady);
}

Tree UsualFiles(const std::string& root) {
  const std::string data = ProgramPath(root + '/' + DataFolder);
  WriteTree(root,
            {{"conf/", ""},
             {"own/", ""},
             {"data/", ""},
             {"stick/", ""},
             {"conf/varek.ini",
              "[QL32]\r\nVersion=2.0\r\nShow=0\r\nTips=1\r\n"
              "[Data Files]\r\nQuillDataPath=" +
                  data + "\\\r\n"},
             {"data/quill.dat",
              "[General Info]\r\nApplication=Quillary\r\nTotalNoOfRecords=98\r\nNoOfRecords=0\r\n"
              "NameFirstRecord=\r\nCompanyFirstRecord=\r\nDelNoOfRecords=0\r\nDelFirstRecord=\r\n"
              "NoOfUses=1\r\n"}});
  FaultDisk disk;
  Program program(root, disk);
  Check(program.Open());
  Check(program.Add(Person("Ann", "Gorse", "Tor", "met in May")));          // 98
  Check(program.Add(Person("Ben", "Ivy")));                                 // 99
  Check(program.Add(Person("Cleo", "Elm", "Acme", "calls \"late\"\r\n")));  // 100
  Check(program.Add(Person("Dan", "Birch")));                               // 101
  Check(BackUp(program, program.Stick));
  SetHeader(program, "TotalNoOfRecords", "199");
  Check(program.Open());
  Check(program.Add(Person("Eve", "Hazel", "Sol", " x ")));  // 199
  Check(program.Add(Person("", "Cedar", "Mons")));           // 200
  Check(program.Add(Person("Flo", "Fir", "Luna")));          // 201
  Check(program.Add(Person("Gus", "Dogwood")));              // 202
  Check(program.Delete("99"));
  Check(program.Delete("201"));
  return ReadTree(root);
}

void ForgetDataFolder(Program& program) {
  Check(program.Access.WriteEntry("varek.ini", "Data Files", "QuillDataPath", ""));
}
void LeaveForeignHeader(Program& program) {
  ForgetDataFolder(program);
  Check(program.Access.MakeFolder(program.Names.OwnDirectory() + "quilldat"));
  Tree tree = ReadTree(program.Root);
  tree[OwnHeader] = "[General Info]\r\nApplication=Other\r\nTotalNoOfRecords=7\r\n";
  WriteTree(program.Root, tree);
}
void MisplaceNames(Program& program) {
  for (const auto& [recNo, name] : {std::pair{"98", "Zelkova"}, {"199", "Aspen"}, {"100", "Yew"}}) {
    for (const auto* key : {"LastName", "ShowName"}) {
      Check(program.Store.WriteRecordEntry(recNo, key, name));
    }
  }
}
void CopyAsideTwice(Program& program) {
  for (const auto* notes : {"first", "second"}) {
    Check(program.Store.WriteRecordEntry("100", "Notes", notes));
    Check(BackUp(program, program.Data.DataPath));
  }
  Check(program.Store.WriteRecordEntry("100", "Notes", "third"));
}

RunTimeError Start(Program& program) {
  return program.Open();
}
RunTimeError EditAndMove(Program& program) {
  return program.Edit("199", Person("Eve", "Alder", "Terra", "edited"));
}
RunTimeError EditInPlace(Program& program) {
  FieldArray fields;
  const RunTimeError error = program.Store.ReadFields("100", fields);
  if (error != RunTimeError::None) return error;
  fields[Field::Phone1] = "555";
  return program.Edit("100", fields, false);
}
RunTimeError SetUpPreferences(Program& program) {
  program.Data.ViewMode = 1;
  program.Data.CopyValues.fill(1);
  program.Data.DialSystem = "DT";
  const RunTimeError error = StorePreferences(program.Access, program.Data, false);
  program.Data.ViewMode = 0;
  return error;
}
RunTimeError Import(Program& program, bool replace) {
  return program.Import({Person("Mia", "Larch"), Person("Ned", "Beech", "Vesta")}, replace);
}

}  // namespace

const std::vector<Operation>& Operations() {
  const auto later = [](Operation operation) {
    operation.IsFinishedLater = true;
    return operation;
  };
  static const std::vector<Operation> operations{
      later({"CreateData", Start, ForgetDataFolder, true}),
      {"CreateDataOverForeignHeader", Start, LeaveForeignHeader, true},
      later({"SortAtStart", Start, MisplaceNames, true}),
      later({"Add", [](Program& it) { return it.Add(Person("Zoe", "Ferne", "Nova", "new")); }}),
      later({"EditInPlace", EditInPlace}),
      later({"EditAndMove", EditAndMove}),
      {"EditAndMoveAtOnce", EditAndMove},
      later({"Delete", [](Program& it) { return it.Delete("100"); }}),
      later({"RestoreDeleted", [](Program& it) { return it.Store.RestoreRecord("99"); }}),
      {"ImportAppend", [](Program& it) { return Import(it, false); }},
      {"ImportReplace", [](Program& it) { return Import(it, true); }},
      {"CopyAside", [](Program& it) { return BackUp(it, it.Data.DataPath); }, CopyAsideTwice},
      {"CreateBackUp", [](Program& it) { return BackUp(it, it.Stick); }},
      {"RestoreBackUp", [](Program& it) { return Restore(it, it.Stick); }, nullptr, false, true},
      {"RestoreSafetyCopy", [](Program& it) { return Restore(it, it.Data.DataPath); },
       CopyAsideTwice, false, true},
      {"SetUpPreferences", SetUpPreferences},
      {"CountUp", [](Program& it) { return it.Guard.IncrementUses(); }},
      {"CountDown", [](Program& it) { return it.Guard.DecrementUses(); }},
  };
  return operations;
}

Tree FilesBefore(const Operation& operation, const std::string& root) {
  Tree usual = UsualFiles(root);
  if (operation.SetUp == nullptr) return usual;
  FaultDisk disk;
  Program program(root, disk);
  Check(program.Open());
  operation.SetUp(program);
  return ReadTree(root);
}

}  // namespace quillary::test
