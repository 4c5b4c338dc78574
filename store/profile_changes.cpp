#include "store/profile_changes.h"

#include <algorithm>

#include "platform/text.h"

namespace quillary {
namespace {

std::string FoldedName(std::string_view name) {
  std::string folded(name);
  for (char& c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return folded;
}

auto FindKey(auto& entries, std::string_view key) {
  return std::find_if(entries.begin(), entries.end(),
                      [&](const auto& entry) { return EqualNames(entry.first, key); });
}

}  // namespace

void FileChanges::Set(std::string_view section, std::string_view key, std::string_view value) {
  const auto [place, isNew] = byName_.try_emplace(FoldedName(section), sections_.size());
  if (isNew) sections_.push_back({std::string(section), {}});
  auto& entries = sections_[place->second].Entries;
  const auto entry = FindKey(entries, key);
  if (entry == entries.end()) {
    entries.emplace_back(key, value);
  } else {
    entry->second = value;
  }
}

const std::string* FileChanges::Find(std::string_view section, std::string_view key) const {
  const auto place = byName_.find(FoldedName(section));
  if (place == byName_.end()) return nullptr;
  const auto& entries = sections_[place->second].Entries;
  const auto entry = FindKey(entries, key);
  return entry == entries.end() ? nullptr : &entry->second;
}

}  // namespace quillary
