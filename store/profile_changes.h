#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillary {

struct EntryValue {
  std::string_view Key;
  std::string_view Value;
};

// New values for the entries of one file, in the order in which they were first set.
class FileChanges {
 public:
  struct SectionChanges {
    std::string Name;
    std::vector<std::pair<std::string, std::string>> Entries;  // key, new value
  };

  void Set(std::string_view section, std::span<const EntryValue> entries);
  void Set(std::string_view section, std::string_view key, std::string_view value) {
    const EntryValue entry{key, value};
    Set(section, {&entry, 1});
  }
  // The new value, or null where the entry is not changed.
  const std::string* Find(std::string_view section, std::string_view key) const;
  const std::vector<SectionChanges>& Sections() const { return sections_; }

 private:
  std::vector<SectionChanges> sections_;
  std::size_t lastSet_ = 0;
  std::unordered_map<std::string, std::size_t> byName_;  // the name in lower case
};

// New values for entries of several files, by the host's path of each.
using ProfileChanges = std::map<std::string, FileChanges, std::less<>>;

}  // namespace quillary
