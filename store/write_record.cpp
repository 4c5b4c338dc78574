#include "platform/text.h"
#include "store/records.h"

namespace quillary {
namespace {

void TrimInPlace(std::string& text) {
  text = std::string(Trim(text));
}

std::string Parenthesized(const std::string& company) {
  return "( " + company + " )";
}

std::string PersonName(const std::string& firstName, const std::string& lastName) {
  if (firstName.empty() || lastName.empty()) return lastName + firstName;
  return lastName + ", " + firstName;
}

}  // namespace

std::string BuildShowName(std::string& FirstName, std::string& LastName, std::string& Company) {
  TrimInPlace(FirstName);
  TrimInPlace(LastName);
  TrimInPlace(Company);
  if (FirstName.empty() && LastName.empty()) return Parenthesized(Company);
  return PersonName(FirstName, LastName);
}

std::string BuildShowCompany(std::string& FirstName, std::string& LastName, std::string& Company) {
  TrimInPlace(FirstName);
  TrimInPlace(LastName);
  TrimInPlace(Company);
  if (!Company.empty()) return Parenthesized(Company);
  return PersonName(FirstName, LastName);
}

RunTimeError Records::WriteRecord(std::string_view RecNo) {
  ProfileUpdate update(profile_);
  FieldArray& values = data_.FieldValues;
  update.OnUndo([&values, before = values] { values = before; });

  if (values[Field::FirstName].empty() && values[Field::LastName].empty()) {
    values[Field::Sal].clear();
  }
  for (std::size_t i = 0; i < data_.NoOfFields; ++i) {
    NoteRecordEntry(RecNo, data_.FieldKeys.at(i), values.at(i));
  }
  std::string& firstName = values[Field::FirstName];
  std::string& lastName = values[Field::LastName];
  std::string& company = values[Field::Company];
  NoteRecordEntry(RecNo, "ShowName", BuildShowName(firstName, lastName, company));
  NoteRecordEntry(RecNo, "ShowCompany", BuildShowCompany(firstName, lastName, company));
  return update.Commit();
}

}  // namespace quillary
