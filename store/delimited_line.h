#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "store/store_data.h"

namespace quillary {

inline constexpr std::size_t MaxImportFields = 20;   // of a line; what follows is not used
inline constexpr std::size_t MaxImportLines = 8001;  // that one import can take
inline constexpr int MaxImportRecords = 8000;        // in the data after an import

// How the fields of a line are told apart.
struct LineFormat {
  std::string Delimiter;  // not empty; upper and lower case are different
  // The line's first and last character, whatever they are, do not belong to its fields.
  bool HasOuterQuotes = false;
};

// 1, where the delimiter is not in the line, to MaxImportFields.
std::size_t CountFields(std::string_view line, const LineFormat& format);
// The first `count` fields as they stand; those that the line does not have are empty.
std::vector<std::string> SplitLine(std::string_view line, const LineFormat& format,
                                   std::size_t count);

// What a field of a line may be, in the order of FieldMeanings.
enum FieldMeaning : int {
  FirstThenLastName = 3,
  LastThenFirstName = 4,
  NoneOfTheAbove = 18,
};
inline constexpr std::array FieldMeanings{"Salute",
                                          "1st. Name",
                                          "2nd. Name",
                                          "1st. Name + 2nd. Name",
                                          "2st. Name + 1nd. Name",
                                          "Title",
                                          "Company",
                                          "Address1",
                                          "Address2",
                                          "Address3",
                                          "Address4",
                                          "ZIP/Postal Code",
                                          "Country",
                                          "Phone1",
                                          "Phone2",
                                          "Fax",
                                          "E-Mail",
                                          "Notes",
                                          "NONE OF THE ABOVE"};

// The record that a line's fields make: `choices` says for each field which of FieldMeanings it is.
// Of two fields with one meaning the later one counts. A record with neither a name nor a company
// (blanks are none) gets the first name "NULL NAME".
FieldArray MakeRecord(const std::vector<std::string>& fields, const std::vector<int>& choices);

}  // namespace quillary
