#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/profile_changes.h"

namespace quillary {

class JournalPart;

// The text of one profile file, with its sections found. Never changes after it is made.
// Any bytes are taken: what is not a section or an entry is passed over.
class ProfileText {
 public:
  // One section: a view into its ProfileText, to be copied freely.
  class Section {
   public:
    bool Exists() const { return lines_.data() != nullptr; }
    // The value of the first entry of that name, decoded; nothing if there is none.
    std::optional<std::string> Value(std::string_view key) const;

   private:
    friend class ProfileText;
    std::string_view lines_;
  };

  explicit ProfileText(std::string bytes);
  ProfileText(const ProfileText&) = delete;
  ProfileText& operator=(const ProfileText&) = delete;
  ~ProfileText() = default;

  const std::string& Bytes() const { return bytes_; }

  // The first section of that name; one that does not exist has no entries.
  Section Find(std::string_view name) const;
  std::optional<std::string> Value(std::string_view section, std::string_view key) const {
    return Find(section).Value(key);
  }

  // The file's bytes after `changes`. Lines that they do not name, and entries that have the new
  // value already, stay as they are; new entries go to the end of their section, new sections to
  // the end of the file. Entries that get another value are added to `journal`.
  std::string With(const FileChanges& changes, JournalPart* journal = nullptr) const;
  // Only adds these entries to `journal`.
  void AddChanged(const FileChanges& changes, JournalPart& journal) const;

 private:
  // Where a section stands in the bytes. Its lines end where the next heading begins.
  struct Span {
    std::uint32_t HeadingBegin;
    std::uint32_t NameBegin;  // between the brackets, without blanks
    std::uint32_t NameSize;
    std::uint32_t LinesBegin;
  };

  void FindSections();
  void IndexNames();
  Span ParseHeading(std::size_t lineStart, std::size_t bracket) const;
  std::size_t FindIndex(std::string_view name) const;
  std::string_view Name(const Span& span) const;
  std::size_t LinesEnd(std::size_t index) const;

  std::string bytes_;
  std::vector<Span> sections_;
  std::vector<std::uint32_t> hashTable_;  // index into sections_ plus 1; 0 is free
};

// A value as it stands behind the equals sign, and back.
std::string EncodeValue(std::string_view value);
std::string DecodeValue(std::string_view written);
// Whether the value is just what is written.
inline bool IsPlainValue(std::string_view written) {
  return written.empty() || (written.front() != '"' && written.front() != '\\');
}

}  // namespace quillary
