#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace quillary {

// What the lines of a profile file mean. Lines may come with or without their end.

inline constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";  // may begin a file

// Blanks around names and values do not count.
inline bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

inline std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

inline std::string_view WithoutEnd(std::string_view line) {
  if (!line.empty() && line.back() == '\n') line.remove_suffix(1);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

// The name of the section that a line begins; nothing for any other line.
inline std::optional<std::string_view> ParseHeading(std::string_view line) {
  line = TrimBlanks(WithoutEnd(line));
  if (line.empty() || line.front() != '[') return std::nullopt;
  line.remove_prefix(1);
  return TrimBlanks(line.substr(0, line.find(']')));
}

struct WrittenEntry {
  std::string_view Key;      // empty: the line is no entry
  std::string_view Written;  // the value as it stands behind the equals sign
};

inline WrittenEntry ParseEntry(std::string_view line) {
  line = TrimBlanks(WithoutEnd(line));
  if (line.empty() || line.front() == ';') return {};
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return {};
  return {TrimBlanks(line.substr(0, equals)), TrimBlanks(line.substr(equals + 1))};
}

// Whether a section and a key of these names can be written so that they are found again.
inline bool CanBeNames(std::string_view section, std::string_view key) {
  for (const std::string_view name : {section, key}) {
    if (name.empty() || TrimBlanks(name) != name) return false;
    if (name.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos) return false;
  }
  return section.find(']') == std::string_view::npos && key.find('=') == std::string_view::npos &&
         key.front() != ';' && key.front() != '[';
}

}  // namespace quillary
