#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillary {

// What a group of writes does to the files of one folder, written down before the first of them is
// changed, so that it can be completed whatever stops the program.

struct JournalEntry {
  std::string Section;
  std::string Key;
  std::optional<std::string> Old;  // nothing: there was no such entry
  std::string New;
};

struct JournalFile {
  std::string Name;  // a name in the journal's own folder
  std::vector<JournalEntry> Entries;
};

using Journal = std::vector<JournalFile>;

inline constexpr std::string_view JournalName = "quill.jnl";

std::string JournalText(const Journal& journal);

// Nothing for a text that is not a whole journal, or that names a file outside its folder.
std::optional<Journal> ParseJournal(std::string_view text);

}  // namespace quillary
