#include "tests/support/store_world.h"

#include <algorithm>
#include <stdexcept>

#include "platform/numbers.h"

namespace quillary::test {

void RecordedProgress::Begin(std::string_view status, std::string_view splash) {
  Stages.push_back(std::string(status) + '|' + std::string(splash));
  Steps.clear();
  IsOpen = true;
}

void RecordedProgress::Step(double percent) {
  Steps.push_back(percent);
}

void RecordedProgress::End() {
  IsOpen = false;
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

std::vector<TextList> ListsInMemory(const StoreData& data, const RecordedLines& lines) {
  return {data.NamesList,
          data.NamesRecNo,
          data.CompaniesList,
          data.CompaniesRecNo,
          data.FilteredNames,
          data.FilteredNamesRecNo,
          data.FilteredCompanies,
          data.FilteredCompaniesRecNo,
          lines.Texts,
          lines.RecNos,
          {NumberText(data.NoOfRecords), NumberText(data.FilteredCount)}};
}

StoreWorld::StoreWorld() {
  Data.DataPath = ProgramPath(Folder.Path()) + '\\';
  Data.DataFile = Data.DataPath + "quill.dat";
}

void StoreWorld::Open() {
  Data.NoOfRecords = ToInt16(Store.ReadHeaderEntry("NoOfRecords"));
  Store.GetNamesList();
  Store.ShowRecords();
}

RunTimeError StoreWorld::Add(const std::string& firstName, const std::string& lastName,
                             const std::string& company, std::string& RecNo) {
  ProfileUpdate update(Access);
  RunTimeError error = Store.NextRecordNumber(RecNo);
  if (error != RunTimeError::None) return error;
  FieldArray& fields = Data.FieldValues;
  fields = {"", firstName, lastName, "", company};
  error = Store.WriteRecord(RecNo);
  if (error != RunTimeError::None) return error;
  const std::string showName = BuildShowName(fields[1], fields[2], fields[4]);
  error = Store.InsertRecord(RecNo, showName, BuildShowCompany(fields[1], fields[2], fields[4]));
  return error == RunTimeError::None ? update.Commit() : error;
}

std::string StoreWorld::Add(const std::string& firstName, const std::string& lastName,
                            const std::string& company) {
  std::string recNo;
  if (Add(firstName, lastName, company, recNo) != RunTimeError::None) {
    throw std::runtime_error("cannot add " + firstName + ' ' + lastName);
  }
  return recNo;
}

void StoreWorld::Filter(const std::array<std::string, 5>& criteria) {
  Data.FilterCriteria = criteria;
  Data.FilterOn = true;
  Store.BuildFilteredList();
  Store.GetFilteredNamesList();
  Store.SortFilteredList();
  Store.ShowRecords();
}

RunTimeError StoreWorld::Edit(const std::string& recNo) {
  return Store.ChangeRecord(recNo, Lines.Line(recNo), true);
}

}  // namespace quillary::test
