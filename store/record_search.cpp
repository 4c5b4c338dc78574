#include "store/record_search.h"

#include <algorithm>
#include <utility>

#include "platform/code_point.h"
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

// False for most lines that have another key.
bool MayHaveKey(std::string_view line, std::string_view key) {
  if (line.empty()) return false;
  return IsBlank(line.front()) || AsciiLower(line.front()) == AsciiLower(key.front());
}

// Of two entries of one key the first one counts.
bool HaveKey(std::string_view lines, std::string_view key) {
  LineReader reader(lines);
  std::string_view line;
  while (reader.Next(line)) {
    if (MayHaveKey(line, key) && EqualNames(ParseEntry(line).Key, key)) return true;
  }
  return false;
}

// The index behind the line's end.
std::size_t LineEnd(std::string_view bytes, std::size_t at) {
  const std::size_t end = bytes.find('\n', at);
  return end == std::string_view::npos ? bytes.size() : end + 1;
}

// The line of the next heading from `at`, the beginning of a line, on; empty if there is none.
// Looks for brackets, not for lines: there are far fewer of them.
std::string_view NextHeading(std::string_view bytes, std::size_t at) {
  const std::size_t start = at;
  while ((at = bytes.find('[', at)) != std::string_view::npos) {
    std::size_t begin = at;
    while (begin > start && IsBlank(bytes[begin - 1])) --begin;
    if (begin == start || bytes[begin - 1] == '\n') {
      return bytes.substr(begin, LineEnd(bytes, at) - begin);
    }
    ++at;
  }
  return bytes.substr(bytes.size());
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
  std::unique_ptr<const Found>& file = files_[fileNumber];
  if (!file) file = std::make_unique<const Found>(SearchFile(fileNumber));
  const std::size_t key = file->at(static_cast<std::size_t>(*number % RecordsPerFile));
  return key < keys_.size() ? std::optional(key) : std::nullopt;
}

RecordSearch::Found RecordSearch::SearchFile(std::int32_t fileNumber) {
  Found found;
  found.fill(static_cast<std::uint8_t>(keys_.size()));
  std::string_view bytes = snapshot_.Bytes(RecordFileName(dataPath_, fileNumber));
  if (bytes.starts_with(ByteOrderMark)) bytes.remove_prefix(ByteOrderMark.size());

  // Of two sections of one record the first one counts.
  std::array<bool, RecordsPerFile> isKnown{};
  std::size_t hit = written_.Find(bytes, 0);
  if (hit == std::string_view::npos) return found;
  std::string_view heading = NextHeading(bytes, 0);
  while (!heading.empty()) {
    const auto number = RecordOfSection(ParseHeading(heading).value_or(std::string_view()));
    const auto begin = static_cast<std::size_t>(heading.data() - bytes.data()) + heading.size();
    heading = NextHeading(bytes, begin);
    if (!number || *number / RecordsPerFile != fileNumber) continue;
    const auto index = static_cast<std::size_t>(*number % RecordsPerFile);
    if (std::exchange(isKnown.at(index), true)) continue;
    if (hit < begin) hit = written_.Find(bytes, begin);
    if (hit == std::string_view::npos) break;
    const auto end = static_cast<std::size_t>(heading.data() - bytes.data());
    found.at(index) = SearchSection(bytes, begin, end, hit);
  }
  return found;
}

// Looks only at the lines that have the text, and no further than to one of the first key. The
// section's lines are from `begin` up to `end`; `hit` is the first place of the text from `begin`
// on, and goes ahead.
std::uint8_t RecordSearch::SearchSection(std::string_view bytes, std::size_t begin, std::size_t end,
                                         std::size_t& hit) const {
  std::size_t first = keys_.size();
  while (first > 0 && hit < end) {
    const std::size_t lineBegin = bytes.rfind('\n', hit) + 1;
    const std::size_t lineEnd = LineEnd(bytes, hit);
    const std::size_t key = KeyOf(bytes.substr(lineBegin, lineEnd - lineBegin), first);
    const std::string_view before = bytes.substr(begin, lineBegin - begin);
    if (key < first && !HaveKey(before, keys_[key])) first = key;
    hit = written_.Find(bytes, lineEnd);
  }
  return static_cast<std::uint8_t>(first);
}

// The index of the line's key, if it is below `before` and the value contains the text; otherwise
// `before`.
std::size_t RecordSearch::KeyOf(std::string_view line, std::size_t before) const {
  const auto mayBe = [&](const std::string& key) { return MayHaveKey(line, key); };
  if (std::none_of(keys_.begin(), keys_.end(), mayBe)) return before;
  const WrittenEntry entry = ParseEntry(line);
  std::size_t key = 0;
  while (key < before && !EqualNames(keys_[key], entry.Key)) ++key;
  if (key == before) return before;
  const bool isFound = IsPlainValue(entry.Written) ? text_.IsIn(entry.Written)
                                                   : text_.IsIn(DecodeValue(entry.Written));
  return isFound ? key : before;
}

}  // namespace quillary
