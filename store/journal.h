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

  bool operator==(const JournalEntry&) const = default;
};

struct JournalFile {
  std::string Name;  // a name in the journal's own folder
  std::vector<JournalEntry> Entries;
  // Not empty: the temporary file of that folder whose bytes are to be the file's, whole. It is
  // gone once it took the file's place.
  std::string Replacement = {};

  bool operator==(const JournalFile&) const = default;
};

using Journal = std::vector<JournalFile>;

inline constexpr std::string_view JournalName = "quill.jnl";

// What becomes of one file, as its part of a journal's text.
class JournalPart {
 public:
  explicit JournalPart(std::string_view fileName, std::string_view replacement = {});
  void Add(std::string_view section, std::string_view key,
           const std::optional<std::string_view>& old, std::string_view value);
  const std::string& Text() const { return text_; }
  bool HasEntries() const { return hasEntries_; }

 private:
  bool hasEntries_ = false;
  std::string text_;
  std::string section_;  // of the last entry
};

std::string JournalText(const std::vector<const JournalPart*>& parts);

// Nothing for a text that is not a whole journal, or that names a file outside its folder, a file
// twice, or an entry that no profile file can hold.
std::optional<Journal> ParseJournal(std::string_view text);

}  // namespace quillary
