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

void FileChanges::Set(std::string_view section, std::span<const EntryValue> entries) {
  // Writes come section by section as a rule.
  if (sections_.empty() || !EqualNames(sections_[lastSet_].Name, section)) {
    const auto [place, isNew] = byName_.try_emplace(FoldedName(section), sections_.size());
    if (isNew) sections_.push_back({std::string(section), {}});
    lastSet_ = place->second;
  }
  auto& changes = sections_[lastSet_].Entries;
  for (const EntryValue& entry : entries) {
    const auto change = FindKey(changes, entry.Key);
    if (change == changes.end()) {
      if (changes.empty()) changes.reserve(entries.size());
      changes.emplace_back(entry.Key, entry.Value);
    } else {
      change->second = entry.Value;
    }
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
