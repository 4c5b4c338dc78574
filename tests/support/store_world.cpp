#include "tests/support/store_world.h"

#include <algorithm>
#include <stdexcept>

#include "platform/numbers.h"

namespace quillary::test {

void RecordedProgress::Begin(std::string_view status, std::string_view splash) {
  Stages.push_back(std::string(status) + '|' + std::string(splash));
  Steps.clear();
}

void RecordedLines::SetLines(const TextList& texts, const TextList& recordNumbers) {
  Texts.assign(texts.begin(), texts.end());
  RecNos.assign(recordNumbers.begin(), recordNumbers.end());
}

void RecordedLines::InsertLine(std::size_t index, std::string_view text,
                               std::string_view recordNumber) {
  if (index > Texts.size()) throw std::out_of_range("no such line");
  Texts.insert(Texts.begin() + static_cast<std::ptrdiff_t>(index), std::string(text));
  RecNos.insert(RecNos.begin() + static_cast<std::ptrdiff_t>(index), std::string(recordNumber));
}

void RecordedLines::RemoveLine(std::size_t index) {
  if (index >= Texts.size()) throw std::out_of_range("no such line");
  Texts.erase(Texts.begin() + static_cast<std::ptrdiff_t>(index));
  RecNos.erase(RecNos.begin() + static_cast<std::ptrdiff_t>(index));
}

std::size_t RecordedLines::Line(const std::string& recNo) const {
  const auto line = std::find(RecNos.begin(), RecNos.end(), recNo);
  if (line == RecNos.end()) throw std::out_of_range("no line of record " + recNo);
  return static_cast<std::size_t>(line - RecNos.begin());
}

FieldArray Person(const std::string& firstName, const std::string& lastName,
                  const std::string& company, const std::string& notes) {
  FieldArray fields{"", firstName, lastName, "", company};
  fields[Field::Notes] = notes;
  return fields;
}

StoreProgram::StoreProgram(Disk& disk, const std::string& ownFolder, const std::string& prefsFolder,
                           StoreData& data)
    : Names(disk, ownFolder, prefsFolder),
      Access(disk, Names),
      Store(data, Access, Comparer, Progress, Lines),
      lists_(data) {}

RunTimeError StoreProgram::Add(const FieldArray& fields, std::string* recNo) {
  ProfileUpdate update(Access);
  std::string number;
  RunTimeError error = Store.NextRecordNumber(number);
  lists_.FieldValues = fields;
  if (error == RunTimeError::None) error = Store.WriteRecord(number);
  if (error == RunTimeError::None) {
    error = Store.InsertRecord(number, Value(number, "ShowName"), Value(number, "ShowCompany"));
  }
  if (recNo != nullptr) *recNo = number;
  return error == RunTimeError::None ? update.Commit() : error;
}

std::string StoreProgram::Add(const std::string& firstName, const std::string& lastName,
                              const std::string& company) {
  std::string recNo;
  if (Add(Person(firstName, lastName, company), &recNo) != RunTimeError::None) {
    throw std::runtime_error("cannot add " + firstName + ' ' + lastName);
  }
  return recNo;
}

RunTimeError StoreProgram::Edit(const std::string& recNo, const FieldArray& fields, bool moves) {
  lists_.FieldValues = fields;
  return Store.ChangeRecord(recNo, Lines.Line(recNo), moves);
}

RunTimeError StoreProgram::Import(const std::vector<FieldArray>& people, bool replace) {
  const RunTimeError error = Store.ImportRecords(
      people.size(), [&](std::size_t i) { return people.at(i); }, replace);
  if (error == RunTimeError::None) {
    lists_.FilterOn = false;
    Store.ShowRecords();
  }
  return error;
}

void StoreProgram::Filter(const std::array<std::string, 5>& criteria) {
  lists_.FilterCriteria = criteria;
  lists_.FilterOn = true;
  Store.BuildFilteredList();
  Store.GetFilteredNamesList();
  Store.SortFilteredList();
  Store.ShowRecords();
}

void StoreProgram::SetHeader(std::string_view key, std::string_view value) {
  ASSERT_EQ(Store.WriteHeaderEntry(key, value), RunTimeError::None);
}

void StoreProgram::Set(std::string_view recNo, std::string_view key, std::string_view value) {
  ASSERT_EQ(Store.WriteRecordEntry(recNo, key, value), RunTimeError::None);
}

std::vector<TextList> StoreProgram::Memory() const {
  return {lists_.NamesList,
          lists_.NamesRecNo,
          lists_.CompaniesList,
          lists_.CompaniesRecNo,
          lists_.FilteredNames,
          lists_.FilteredNamesRecNo,
          lists_.FilteredCompanies,
          lists_.FilteredCompaniesRecNo,
          Lines.Texts,
          Lines.RecNos,
          {NumberText(lists_.NoOfRecords), NumberText(lists_.FilteredCount)}};
}

StoreWorld::StoreWorld() : StoreProgram(Machine, Folder.Path(), Folder.Path(), Data) {
  Data.DataPath = ProgramPath(Folder.Path()) + '\\';
  Data.DataFile = Data.DataPath + "quill.dat";
}

StoreWorld::StoreWorld(const StoreData& other) : StoreWorld() {
  Data.DataPath = other.DataPath;
  Data.DataFile = other.DataFile;
}

void StoreWorld::Open() {
  Data.NoOfRecords = ToInt16(Store.ReadHeaderEntry("NoOfRecords"));
  Store.GetNamesList();
  Store.ShowRecords();
}

}  // namespace quillary::test
