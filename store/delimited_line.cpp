#include "store/delimited_line.h"

#include <algorithm>

#include "platform/text.h"

namespace quillary {
namespace {

// Bytes of a character behind its first one.
bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

std::string_view Fields(std::string_view line, const LineFormat& format) {
  if (!format.HasOuterQuotes) return line;
  do {
    line.remove_prefix(std::min<std::size_t>(line.size(), 1));
  } while (!line.empty() && IsContinuation(line.front()));
  while (!line.empty() && IsContinuation(line.back())) line.remove_suffix(1);
  line.remove_suffix(std::min<std::size_t>(line.size(), 1));
  return line;
}

void TakeBothNames(FieldArray& record, const std::string& value, bool isFirstNameFirst) {
  const std::size_t blank = value.find(' ');
  if (blank == std::string::npos) {
    record[Field::FirstName] = value;
    return;
  }
  record[isFirstNameFirst ? Field::FirstName : Field::LastName] = value.substr(0, blank);
  record[isFirstNameFirst ? Field::LastName : Field::FirstName] = value.substr(blank + 1);
}

}  // namespace

std::size_t CountFields(std::string_view line, const LineFormat& format) {
  std::string_view rest = Fields(line, format);
  std::size_t count = 1;
  while (count < MaxImportFields) {
    const std::size_t at = rest.find(format.Delimiter);
    if (at == std::string_view::npos) break;
    rest.remove_prefix(at + format.Delimiter.size());
    ++count;
  }
  return count;
}

std::vector<std::string> SplitLine(std::string_view line, const LineFormat& format,
                                   std::size_t count) {
  std::string_view rest = Fields(line, format);
  std::vector<std::string> fields(count);
  for (std::string& field : fields) {
    const std::size_t at = rest.find(format.Delimiter);
    field = rest.substr(0, at);
    rest.remove_prefix(at == std::string_view::npos ? rest.size() : at + format.Delimiter.size());
  }
  return fields;
}

FieldArray MakeRecord(const std::vector<std::string>& fields, const std::vector<int>& choices) {
  // The two meanings that are two fields stand between those that are one.
  constexpr int BothNames = 2;
  FieldArray record;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const int choice = choices.at(i);
    if (choice == FirstThenLastName || choice == LastThenFirstName) {
      TakeBothNames(record, fields[i], choice == FirstThenLastName);
    } else if (choice < FirstThenLastName) {
      record.at(static_cast<std::size_t>(choice)) = fields[i];
    } else if (choice < NoneOfTheAbove) {
      record.at(static_cast<std::size_t>(choice - BothNames)) = fields[i];
    }
  }
  const auto isBlank = [&](Field field) { return Trim(record[field]).empty(); };
  if (isBlank(Field::FirstName) && isBlank(Field::LastName) && isBlank(Field::Company)) {
    record[Field::FirstName] = "NULL NAME";
  }
  return record;
}

}  // namespace quillary
