#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
namespace {

bool IsBlank(const std::string& text) {
  return Trim(text).empty();
}

// The display strings of an imported record keep the blanks of its fields.
std::string PersonName(const std::string& firstName, const std::string& lastName) {
  if (IsBlank(firstName)) return lastName;
  return IsBlank(lastName) ? firstName : lastName + ", " + firstName;
}

std::string ShowNameOf(const FieldArray& fields) {
  const std::string& firstName = fields[Field::FirstName];
  const std::string& lastName = fields[Field::LastName];
  if (!IsBlank(firstName) || !IsBlank(lastName)) return PersonName(firstName, lastName);
  return "( " + fields[Field::Company] + " )";
}

std::string ShowCompanyOf(const FieldArray& fields) {
  if (!IsBlank(fields[Field::Company])) return "( " + fields[Field::Company] + " )";
  return PersonName(fields[Field::FirstName], fields[Field::LastName]);
}

}  // namespace

// Has the lists and what belongs to them taken back if the group fails.
void Records::KeepLists(ProfileUpdate& update) {
  update.OnUndo([this, count = data_.NoOfRecords, names = data_.NamesList,
                 namesRecNo = data_.NamesRecNo, companies = data_.CompaniesList,
                 companiesRecNo = data_.CompaniesRecNo, wasIncomplete = data_.ListsIncomplete,
                 wereOutdated = linksOutdated_, listsError = listsError_,
                 behindNames = behindNames_, behindCompanies = behindCompanies_] {
    data_.NoOfRecords = count;
    data_.NamesList = names;
    data_.NamesRecNo = namesRecNo;
    data_.CompaniesList = companies;
    data_.CompaniesRecNo = companiesRecNo;
    data_.ListsIncomplete = wasIncomplete;
    linksOutdated_ = wereOutdated;
    listsError_ = listsError;
    behindNames_ = behindNames;
    behindCompanies_ = behindCompanies;
  });
}

void Records::ForgetLists() {
  data_.NoOfRecords = 0;
  for (auto* list :
       {&data_.NamesList, &data_.NamesRecNo, &data_.CompaniesList, &data_.CompaniesRecNo}) {
    *list = {""};
  }
  data_.ListsIncomplete = false;
  linksOutdated_ = false;
  listsError_ = RunTimeError::None;
}

// The last of the new records comes first.
void Records::PrependToLists(const std::vector<NewRecord>& records) {
  const bool wasEmpty = data_.NoOfRecords < 1;
  const auto prepend = [&](TextList& list, std::string NewRecord::*text) {
    TextList longer;
    for (auto record = records.rbegin(); record != records.rend(); ++record) {
      longer.push_back((*record).*text);
    }
    if (!wasEmpty) {
      for (const std::string_view old : list) longer.push_back(old);
    }
    list = std::move(longer);
  };
  prepend(data_.NamesList, &NewRecord::ShowName);
  prepend(data_.NamesRecNo, &NewRecord::RecNo);
  prepend(data_.CompaniesList, &NewRecord::ShowCompany);
  prepend(data_.CompaniesRecNo, &NewRecord::RecNo);
  data_.NoOfRecords = static_cast<std::int16_t>(data_.NamesList.size());
}

void Records::NoteNewRecord(const NewRecord& record, const FieldArray& values) {
  std::vector<EntryValue> entries{{"PrevName", ""},
                                  {"NextName", ""},
                                  {"PrevCompany", ""},
                                  {"NextCompany", ""},
                                  {"PrevDel", ""},
                                  {"NextDel", ""},
                                  {"ShowName", record.ShowName},
                                  {"ShowCompany", record.ShowCompany}};
  for (std::size_t i = 0; i < data_.NoOfFields; ++i) {
    entries.push_back({data_.FieldKeys.at(i), values.at(i)});
  }
  Note(RecordFile(record.RecNo), RecordSection(record.RecNo), entries);
}

RunTimeError Records::ImportRecords(std::size_t count,
                                    const std::function<FieldArray(std::size_t)>& fields,
                                    bool replace) {
  const auto live = static_cast<std::size_t>(std::max<std::int16_t>(data_.NoOfRecords, 0));
  if (count + (replace ? 0 : live) > MaxRecords) return RunTimeError::Overflow;
  if (count == 0) return RunTimeError::None;
  ProfileUpdate update(profile_);
  KeepLists(update);
  RunTimeError error = replace ? RunTimeError::None : RestoreLinks();
  // All links will be written from memory.
  if (error == RunTimeError::None && !replace) error = CheckRecords();
  // Before the header forgets how many numbers were given out.
  std::vector<std::string> numbers;
  if (error == RunTimeError::None) error = FindFreeNumbers(count, numbers);
  if (error == RunTimeError::None && replace) error = WriteNewHeader();
  if (error != RunTimeError::None) return error;
  if (replace) {
    ForgetLists();
    if (numbers.front() != "0") NoteHeaderEntry(ReplacedRecords, numbers.front());
  }
  const std::string behindNames = RecordBehind(NameChain, data_.NamesRecNo);
  const std::string behindCompanies = RecordBehind(CompanyChain, data_.CompaniesRecNo);

  progress_.Begin("Please be patient while getting records into the data file...", "");
  std::vector<NewRecord> records;
  records.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    progress_.Step(static_cast<double>(i + 1) / static_cast<double>(count) * 100);
    const FieldArray values = fields(i);
    NewRecord& record = records.emplace_back();
    record = {std::move(numbers[i]), ShowNameOf(values), ShowCompanyOf(values)};
    NoteNewRecord(record, values);
  }
  NoteHeaderEntry("TotalNoOfRecords", NumberText(ToInt32(records.back().RecNo) + 1));
  PrependToLists(records);
  NoteHeaderEntry("NoOfRecords", NumberText(data_.NoOfRecords));
  // Sorting writes no links where the lists are in order already.
  NoteLinks(behindNames, behindCompanies, nullptr);
  error = SortNamesList();
  return error == RunTimeError::None ? update.Commit(EventsRun()) : error;
}

}  // namespace quillary
