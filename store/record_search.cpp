#include "store/record_search.h"

#include <algorithm>
#include <utility>

#include "platform/text.h"
#include "store/line_reader.h"
#include "store/profile_line.h"
#include "store/profile_text.h"
#include "store/record_reader.h"

namespace quillary {
namespace {

// The longest part without a character that a file may have another way of writing.
std::string_view WrittenPart(std::string_view text) {
  constexpr std::string_view Escaped("\r\n\0\\", 4);
  std::string_view longest;
  while (!text.empty()) {
    const std::string_view part = text.substr(0, text.find_first_of(Escaped));
    if (part.size() > longest.size()) longest = part;
    text.remove_prefix(std::min(part.size() + 1, text.size()));
  }
  return longest;
}

// Of two entries of one key the first one counts.
bool HasKey(std::string_view lines, std::string_view key) {
  LineReader reader(lines);
  std::string_view line;
  while (reader.Next(line)) {
    if (EqualNames(ParseEntry(line).Key, key)) return true;
  }
  return false;
}

// The index behind the line's end.
std::size_t LineEnd(std::string_view bytes, std::size_t at) {
  const std::size_t end = bytes.find('\n', at);
  return end == std::string_view::npos ? bytes.size() : end + 1;
}

// The line of the next heading, empty if there is none. Looks for brackets, not for lines: there
// are far fewer of them.
std::string_view NextHeading(std::string_view bytes) {
  std::size_t bracket = bytes.find('[');
  while (bracket != std::string_view::npos) {
    std::size_t begin = bracket;
    while (begin > 0 && IsBlank(bytes[begin - 1])) --begin;
    const std::size_t end = LineEnd(bytes, bracket);
    if (begin == 0 || bytes[begin - 1] == '\n') return bytes.substr(begin, end - begin);
    bracket = bytes.find('[', bracket + 1);
  }
  return {};
}

}  // namespace

RecordSearch::RecordSearch(Profile& profile, std::string_view dataPath, std::string_view text,
                           std::vector<std::string> keys)
    : snapshot_(profile),
      dataPath_(dataPath),
      text_(text),
      written_(WrittenPart(text)),
      keys_(std::move(keys)) {}

std::optional<std::size_t> RecordSearch::FirstKey(std::string_view recNo) {
  const std::optional<std::int32_t> number = ParseRecordNumber(recNo);
  if (!number) return std::nullopt;
  const std::int32_t fileNumber = *number / RecordsPerFile;
  auto file = files_.find(fileNumber);
  if (file == files_.end()) file = files_.emplace(fileNumber, SearchFile(fileNumber)).first;
  const std::size_t key = file->second.at(static_cast<std::size_t>(*number % RecordsPerFile));
  return key < keys_.size() ? std::optional(key) : std::nullopt;
}

RecordSearch::Found RecordSearch::SearchFile(std::int32_t fileNumber) {
  Found found;
  found.fill(static_cast<std::uint8_t>(keys_.size()));
  std::string_view bytes = snapshot_.Bytes(RecordFileName(dataPath_, fileNumber));
  if (!written_.IsIn(bytes)) return found;
  if (bytes.starts_with(ByteOrderMark)) bytes.remove_prefix(ByteOrderMark.size());

  // Of two sections of one record the first one counts.
  std::array<bool, RecordsPerFile> isKnown{};
  std::string_view heading = NextHeading(bytes);
  while (!heading.empty()) {
    const auto number = RecordOfSection(ParseHeading(heading).value_or(std::string_view()));
    bytes.remove_prefix(static_cast<std::size_t>(heading.data() - bytes.data()) + heading.size());
    heading = NextHeading(bytes);
    const std::string_view lines =
        heading.empty() ? bytes
                        : bytes.substr(0, static_cast<std::size_t>(heading.data() - bytes.data()));
    if (!number || *number / RecordsPerFile != fileNumber) continue;
    const auto index = static_cast<std::size_t>(*number % RecordsPerFile);
    if (!std::exchange(isKnown.at(index), true)) found.at(index) = SearchSection(lines);
  }
  return found;
}

// Looks only at the lines that have the text.
std::uint8_t RecordSearch::SearchSection(std::string_view lines) const {
  std::size_t first = keys_.size();
  std::size_t at = written_.Find(lines, 0);
  while (at < lines.size()) {
    const std::size_t begin = lines.rfind('\n', at) + 1;  // 0 where there is none
    const std::size_t end = LineEnd(lines, at);
    const std::size_t key = KeyOf(lines.substr(begin, end - begin));
    if (key < first && !HasKey(lines.substr(0, begin), keys_[key])) first = key;
    at = written_.Find(lines, end);
  }
  return static_cast<std::uint8_t>(first);
}

// The index of the line's key if its value contains the text.
std::size_t RecordSearch::KeyOf(std::string_view line) const {
  const WrittenEntry entry = ParseEntry(line);
  if (!written_.IsIn(entry.Written)) return keys_.size();
  const auto key = std::find_if(keys_.begin(), keys_.end(), [&](const std::string& candidate) {
    return EqualNames(candidate, entry.Key);
  });
  const bool isFound = key != keys_.end() && text_.IsIn(DecodeValue(entry.Written));
  return isFound ? static_cast<std::size_t>(key - keys_.begin()) : keys_.size();
}

}  // namespace quillary
