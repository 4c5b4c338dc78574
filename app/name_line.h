#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "store/store_data.h"

namespace quillary {

inline constexpr std::size_t DetailLineCount = 13;

// The index of each detail line.
enum DetailLine : std::uint8_t {
  NameLine,
  TitleLine,
  CompanyLine,
  AddressLine,
  LastAddressLine = 7,
  Phone1Line,
  Phone2Line,
  FaxLine,
  EMailLine,
  NotesLine,
};

// What a person would call each detail line.
inline constexpr std::array<const char*, DetailLineCount> DetailLineNames{
    "Name",
    "Title",
    "Company",
    "Address line 1",
    "Address line 2",
    "Address line 3",
    "Address line 4 and postal code",
    "Country",
    "Phone 1",
    "Phone 2",
    "Fax",
    "E-mail",
    "Notes"};

// The name in a name style: 0 (and any above 3) salutation and last name, 1 salutation, first and
// last name, 2 first and last name, 3 first name. Without a salutation its blank is left out too;
// nothing else is trimmed.
std::string ComposeName(std::uint8_t nameStyle, const FieldArray& fields);

// The name as item 0 to 3 of the name-style menu offers it; nothing when the record lacks a part
// that the style needs.
std::optional<std::string> OfferedName(int item, const FieldArray& fields);

// The texts of all detail lines.
std::array<std::string, DetailLineCount> ComposeLines(std::uint8_t nameStyle,
                                                      const FieldArray& fields);

}  // namespace quillary
