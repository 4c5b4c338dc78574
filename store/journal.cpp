#include "store/journal.h"

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>

#include "store/profile_line.h"
#include "store/profile_text.h"
#include "store/temporary_name.h"

namespace quillary {
namespace {

constexpr std::string_view FirstLine = "Quillary journal 1";
constexpr std::string_view FileMark = "file ";
constexpr std::string_view WholeMark = "whole ";
constexpr std::string_view SectionMark = "section ";
constexpr std::string_view EndMark = "end ";
constexpr char OldMark = '-';
constexpr char NewMark = '+';
constexpr char LineEnd = '\n';

// The CRC-32 that archives and networks use, as eight hexadecimal digits.
std::string Checksum(std::string_view bytes) {
  const auto* const data = reinterpret_cast<const Bytef*>(bytes.data());
  const auto crc = static_cast<std::uint32_t>(crc32_z(0, data, bytes.size()));
  std::string text(8, '0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] = "0123456789abcdef"[(crc >> (28 - 4 * i)) & 0xFU];
  }
  return text;
}

void AppendLine(std::string& text, std::string_view mark, std::string_view content) {
  text += mark;
  text += content;
  text += LineEnd;
}

void AppendEntry(std::string& text, char mark, std::string_view key, std::string_view value) {
  text += mark;
  text += key;
  text += '=';
  text += EncodeValue(value);
  text += LineEnd;
}

// A name that stays in the journal's folder wherever it is used.
bool IsPlainName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of(std::string_view("/\\\0", 3)) == std::string_view::npos;
}

// Reads one line of a journal after the other into its result.
class Parser {
 public:
  bool Take(std::string_view line) {
    if (line.starts_with(FileMark)) return TakeFile(line.substr(FileMark.size()));
    if (journal.empty()) return false;
    if (line.starts_with(WholeMark)) return TakeReplacement(line.substr(WholeMark.size()));
    if (line.starts_with(SectionMark)) {
      section_ = line.substr(SectionMark.size());
      return !old_;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || equals < 2) return false;
    const std::string_view key = line.substr(1, equals - 1);
    std::string value = DecodeValue(line.substr(equals + 1));
    if (line.front() == OldMark && !old_) {
      oldKey_ = key;
      old_ = std::move(value);
      return true;
    }
    if (line.front() != NewMark || (old_ && oldKey_ != key)) return false;
    if (!CanBeNames(section_, key)) return false;
    journal.back().Entries.push_back(
        {section_, std::string(key), std::move(old_), std::move(value)});
    old_.reset();
    return true;
  }
  bool IsComplete() const { return !old_; }

  Journal journal;

 private:
  bool TakeFile(std::string_view name) {
    journal.push_back({std::string(name), {}});
    section_.clear();
    return TakeName(name);
  }
  bool TakeReplacement(std::string_view name) {
    journal.back().Replacement = name;
    return TakeName(name) && TemporaryProcess(name).has_value();
  }
  // Of what stands twice nobody could say which comes first.
  bool TakeName(std::string_view name) {
    return IsPlainName(name) && names_.emplace(name).second && !old_;
  }

  std::set<std::string, std::less<>> names_;
  std::string section_;
  std::string oldKey_;
  std::optional<std::string> old_;
};

}  // namespace

JournalPart::JournalPart(std::string_view fileName, std::string_view replacement) {
  AppendLine(text_, FileMark, fileName);
  if (!replacement.empty()) AppendLine(text_, WholeMark, replacement);
}

void JournalPart::Add(std::string_view section, std::string_view key,
                      const std::optional<std::string_view>& old, std::string_view value) {
  hasEntries_ = true;
  if (section_ != section) {
    section_ = section;
    AppendLine(text_, SectionMark, section);
  }
  if (old) AppendEntry(text_, OldMark, key, *old);
  AppendEntry(text_, NewMark, key, value);
}

std::string JournalText(const std::vector<const JournalPart*>& parts) {
  constexpr std::size_t Ends = 64;  // more than the first and the last line need
  std::size_t size = Ends;
  for (const JournalPart* part : parts) size += part->Text().size();
  std::string text;
  text.reserve(size);
  AppendLine(text, {}, FirstLine);
  for (const JournalPart* part : parts) text += part->Text();
  AppendLine(text, EndMark, Checksum(text));
  return text;
}

std::optional<Journal> ParseJournal(std::string_view text) {
  const std::size_t last = text.rfind(EndMark);
  if (last == std::string_view::npos || last == 0 || text[last - 1] != LineEnd) return std::nullopt;
  std::string_view body = text.substr(0, last);
  if (text.substr(last) != std::string(EndMark) + Checksum(body) + LineEnd) return std::nullopt;

  Parser parser;
  bool isFirst = true;
  while (!body.empty()) {
    const std::size_t size = body.find(LineEnd);
    const std::string_view line = body.substr(0, size);
    body.remove_prefix(size + 1);
    if (isFirst ? line != FirstLine : !parser.Take(line)) return std::nullopt;
    isFirst = false;
  }
  if (isFirst || !parser.IsComplete()) return std::nullopt;
  return std::move(parser.journal);
}

}  // namespace quillary
