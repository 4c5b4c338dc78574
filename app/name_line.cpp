#include "app/name_line.h"

namespace quillary {

std::string ComposeName(std::uint8_t nameStyle, const FieldArray& fields) {
  const std::string salutation = fields[Sal].empty() ? "" : fields[Sal] + " ";
  switch (nameStyle) {
    case 1:
      return salutation + fields[FirstName] + " " + fields[LastName];
    case 2:
      return fields[FirstName] + " " + fields[LastName];
    case 3:
      return fields[FirstName];
    default:
      return salutation + fields[LastName];
  }
}

std::optional<std::string> OfferedName(int item, const FieldArray& fields) {
  const bool salutation = !fields[Sal].empty();
  const bool first = !fields[FirstName].empty();
  const bool last = !fields[LastName].empty();
  const std::array offered{salutation && last, salutation && first && last, first && last, first};
  if (!offered.at(static_cast<std::size_t>(item))) return std::nullopt;
  return ComposeName(static_cast<std::uint8_t>(item), fields);
}

std::array<std::string, DetailLineCount> ComposeLines(std::uint8_t nameStyle,
                                                      const FieldArray& fields) {
  const bool both = !fields[Address4].empty() && !fields[Address5].empty();
  return {ComposeName(nameStyle, fields),
          fields[Title],
          fields[Company],
          fields[Address1],
          fields[Address2],
          fields[Address3],
          fields[Address4] + (both ? ", " : "") + fields[Address5],
          fields[Address6],
          fields[Phone1],
          fields[Phone2],
          fields[Fax],
          fields[EMail],
          fields[Notes]};
}

}  // namespace quillary
