#include "store/profile_text.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "platform/text.h"
#include "store/journal.h"
#include "store/line_reader.h"
#include "store/profile_line.h"

namespace quillary {
namespace {

constexpr std::string_view LineEnd = "\r\n";
constexpr std::size_t LargestText = std::numeric_limits<std::uint32_t>::max();

char LowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::size_t HashName(std::string_view name) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : name) {
    hash = (hash ^ static_cast<unsigned char>(LowerLetter(c))) * 1099511628211U;
  }
  return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

bool NeedsEscapes(std::string_view value) {
  return value.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

bool IsEnclosed(std::string_view text, char mark) {
  return text.size() >= 2 && text.front() == mark && text.back() == mark;
}

// Whether the value, written as it is, would be read as another one.
bool NeedsQuotes(std::string_view value) {
  return !value.empty() &&
         (IsBlank(value.front()) || IsBlank(value.back()) || IsEnclosed(value, '"') ||
          IsEnclosed(value, '\'') || value.starts_with("\\\""));
}

// The characters that have an escape, and the letter that stands for each behind a backslash.
constexpr std::array<std::pair<char, char>, 4> Escapes{
    {{'\\', '\\'}, {'\r', 'r'}, {'\n', 'n'}, {'\0', '0'}}};

std::string Unescape(std::string_view text) {
  std::string value;
  value.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) {
      const auto* const escape =
          std::find_if(Escapes.begin(), Escapes.end(),
                       [&](const auto& candidate) { return candidate.second == text[i + 1]; });
      if (escape != Escapes.end()) {
        value += escape->first;
        ++i;
        continue;
      }
    }
    value += text[i];
  }
  return value;
}

void EndLine(std::string& bytes) {
  if (bytes.empty() || bytes.back() == '\n') return;
  // A carriage return at the very end is half a line end already.
  bytes += bytes.back() == '\r' ? LineEnd.substr(1) : LineEnd;
}

void AppendEntry(std::string& bytes, std::string_view key, std::string_view value) {
  EndLine(bytes);
  bytes += key;
  bytes += '=';
  bytes += EncodeValue(value);
  bytes += LineEnd;
}

bool IsWrittenAs(std::string_view written, std::string_view value) {
  return IsPlainValue(written) ? written == value : DecodeValue(written) == value;
}

// A bit for the letter that a name begins with; others may share it.
std::uint64_t LetterBit(char letter) {
  return std::uint64_t{1} << (static_cast<unsigned char>(LowerLetter(letter)) % 64U);
}

// Where the blank lines at the end of a section begin.
std::size_t BlankLinesBegin(std::string_view lines) {
  std::size_t end = lines.size();
  while (end > 0) {
    const std::size_t feed = end > 1 ? lines.rfind('\n', end - 2) : std::string_view::npos;
    const std::size_t begin = feed == std::string_view::npos ? 0 : feed + 1;
    if (!TrimBlanks(WithoutEnd(lines.substr(begin, end - begin))).empty()) break;
    end = begin;
  }
  return end;
}

// Appends the lines of a section to `bytes`, with the changes to its entries made, and these to the
// journal.
void AppendSection(std::string& bytes, std::string_view lines,
                   const FileChanges::SectionChanges& changes, JournalPart* journal) {
  std::uint64_t letters = LetterBit(' ') | LetterBit('\t');
  for (const auto& [key, value] : changes.Entries) letters |= LetterBit(key.front());

  const std::size_t blankLines = BlankLinesBegin(lines);
  std::vector<bool> isDone(changes.Entries.size());
  std::size_t missing = changes.Entries.size();
  const char* copied = lines.data();
  LineReader reader(lines.substr(0, blankLines));
  std::string_view line;
  while (missing > 0 && reader.Next(line)) {
    if ((letters & LetterBit(line.front())) == 0) continue;
    const WrittenEntry entry = ParseEntry(line);
    std::size_t index = 0;
    while (index < isDone.size() &&
           (isDone[index] || !EqualNames(changes.Entries[index].first, entry.Key))) {
      ++index;
    }
    if (index == isDone.size()) continue;
    isDone[index] = true;
    --missing;
    const auto& [key, value] = changes.Entries[index];
    if (IsWrittenAs(entry.Written, value)) continue;
    bytes.append(copied, line.data());
    copied = line.data() + line.size();
    AppendEntry(bytes, entry.Key, value);
    if (journal != nullptr) {
      journal->Add(changes.Name, key, DecodeValue(entry.Written), value);
    }
  }
  bytes.append(copied, lines.data() + blankLines);
  for (std::size_t index = 0; index < isDone.size(); ++index) {
    if (isDone[index]) continue;
    const auto& [key, value] = changes.Entries[index];
    AppendEntry(bytes, key, value);
    if (journal != nullptr) journal->Add(changes.Name, key, std::nullopt, value);
  }
  bytes += lines.substr(blankLines);
}

}  // namespace

std::string EncodeValue(std::string_view value) {
  if (!NeedsEscapes(value)) {
    if (!NeedsQuotes(value)) return std::string(value);
    return '"' + std::string(value) + '"';
  }
  std::string written = "\\\"";
  for (const char c : value) {
    const auto* const escape =
        std::find_if(Escapes.begin(), Escapes.end(),
                     [&](const auto& candidate) { return candidate.first == c; });
    if (escape == Escapes.end()) {
      written += c;
    } else {
      written += '\\';
      written += escape->second;
    }
  }
  return written + '"';
}

std::string DecodeValue(std::string_view written) {
  if (IsEnclosed(written, '"')) return std::string(written.substr(1, written.size() - 2));
  if (written.size() >= 3 && written.starts_with("\\\"") && written.back() == '"') {
    return Unescape(written.substr(2, written.size() - 3));
  }
  return std::string(written);
}

ProfileText::ProfileText(std::string bytes) : bytes_(std::move(bytes)) {
  if (bytes_.size() < LargestText) FindSections();
  IndexNames();
}

// Looks for brackets, not for lines: there are far fewer of them.
void ProfileText::FindSections() {
  const std::size_t start = bytes_.starts_with(ByteOrderMark) ? ByteOrderMark.size() : 0;
  std::size_t bracket = bytes_.find('[', start);
  while (bracket != std::string::npos) {
    std::size_t lineStart = bracket;
    while (lineStart > start && IsBlank(bytes_[lineStart - 1])) --lineStart;
    std::size_t next = bracket + 1;
    if (lineStart == start || bytes_[lineStart - 1] == '\n') {
      sections_.push_back(ParseHeading(lineStart, bracket));
      next = sections_.back().LinesBegin;
    }
    bracket = bytes_.find('[', next);
  }
}

ProfileText::Span ProfileText::ParseHeading(std::size_t lineStart, std::size_t bracket) const {
  std::string_view line;
  LineReader(std::string_view(bytes_).substr(bracket)).Next(line);
  const std::string_view name = quillary::ParseHeading(line).value_or(std::string_view());
  return {static_cast<std::uint32_t>(lineStart),
          static_cast<std::uint32_t>(name.data() - bytes_.data()),
          static_cast<std::uint32_t>(name.size()),
          static_cast<std::uint32_t>(bracket + line.size())};
}

void ProfileText::IndexNames() {
  std::size_t size = 2;
  while (size < sections_.size() * 2) size *= 2;
  hashTable_.assign(size, 0);
  for (std::size_t index = 0; index < sections_.size(); ++index) {
    const std::string_view name = Name(sections_[index]);
    std::size_t slot = HashName(name) & (size - 1);
    while (hashTable_[slot] != 0 && !EqualNames(Name(sections_[hashTable_[slot] - 1]), name)) {
      slot = (slot + 1) & (size - 1);
    }
    if (hashTable_[slot] == 0) hashTable_[slot] = static_cast<std::uint32_t>(index + 1);
  }
}

std::string_view ProfileText::Name(const Span& span) const {
  return std::string_view(bytes_).substr(span.NameBegin, span.NameSize);
}

std::size_t ProfileText::LinesEnd(std::size_t index) const {
  return index + 1 < sections_.size() ? sections_[index + 1].HeadingBegin : bytes_.size();
}

std::size_t ProfileText::FindIndex(std::string_view name) const {
  const std::size_t mask = hashTable_.size() - 1;
  for (std::size_t slot = HashName(name) & mask; hashTable_[slot] != 0; slot = (slot + 1) & mask) {
    const std::size_t index = hashTable_[slot] - 1;
    if (EqualNames(Name(sections_[index]), name)) return index;
  }
  return sections_.size();
}

ProfileText::Section ProfileText::Find(std::string_view name) const {
  Section section;
  const std::size_t index = FindIndex(name);
  if (index < sections_.size()) {
    const std::size_t begin = sections_[index].LinesBegin;
    section.lines_ = std::string_view(bytes_).substr(begin, LinesEnd(index) - begin);
  }
  return section;
}

std::optional<std::string> ProfileText::Section::Value(std::string_view key) const {
  const char first = key.empty() ? '\0' : LowerLetter(key.front());
  LineReader reader(lines_);
  std::string_view line;
  while (reader.Next(line)) {
    // Most lines are told apart by their first letter.
    if (!IsBlank(line.front()) && LowerLetter(line.front()) != first) continue;
    const WrittenEntry entry = ParseEntry(line);
    if (!entry.Key.empty() && EqualNames(entry.Key, key)) return DecodeValue(entry.Written);
  }
  return std::nullopt;
}

void ProfileText::AddChanged(const FileChanges& changes, JournalPart& journal) const {
  for (const auto& section : changes.Sections()) {
    const Section now = Find(section.Name);
    for (const auto& [key, value] : section.Entries) {
      const std::optional<std::string> old = now.Value(key);
      if (old != value) journal.Add(section.Name, key, old, value);
    }
  }
}

std::string ProfileText::With(const FileChanges& changes, JournalPart* journal) const {
  std::vector<std::pair<std::size_t, const FileChanges::SectionChanges*>> known;
  std::vector<const FileChanges::SectionChanges*> added;
  for (const auto& section : changes.Sections()) {
    const std::size_t index = FindIndex(section.Name);
    if (index < sections_.size()) {
      known.emplace_back(index, &section);
    } else {
      added.push_back(&section);
    }
  }
  std::sort(known.begin(), known.end());

  std::string result;
  result.reserve(bytes_.size() + 1024);
  std::size_t copied = 0;
  for (const auto& [index, section] : known) {
    const std::size_t begin = sections_[index].LinesBegin;
    const std::size_t end = LinesEnd(index);
    result.append(bytes_, copied, begin - copied);
    AppendSection(result, std::string_view(bytes_).substr(begin, end - begin), *section, journal);
    copied = end;
  }
  result.append(bytes_, copied);
  for (const auto* section : added) {
    EndLine(result);
    result += '[' + section->Name + ']';
    result += LineEnd;
    AppendSection(result, {}, *section, journal);
  }
  return result;
}

}  // namespace quillary
