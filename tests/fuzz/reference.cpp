#include "tests/fuzz/reference.h"

#include <cstdio>
#include <cstdlib>
#include <set>

namespace quillary::reference {
namespace {

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string Decoded(std::string_view written) {
  const bool isQuoted = written.size() >= 2 && written.front() == '"' && written.back() == '"';
  if (isQuoted) return std::string(written.substr(1, written.size() - 2));
  const bool isEscaped =
      written.size() >= 3 && written.substr(0, 2) == "\\\"" && written.back() == '"';
  if (!isEscaped) return std::string(written);
  const std::string_view inner = written.substr(2, written.size() - 3);
  std::string value;
  for (std::size_t i = 0; i < inner.size(); ++i) {
    const std::string_view two = inner.substr(i, 2);
    if (two == "\\\\") {
      value += '\\';
    } else if (two == "\\r") {
      value += '\r';
    } else if (two == "\\n") {
      value += '\n';
    } else if (two == "\\0") {
      value += '\0';
    } else {
      value += inner[i];
      continue;
    }
    ++i;
  }
  return value;
}

}  // namespace

std::vector<std::string_view> Lines(std::string_view bytes) {
  std::vector<std::string_view> lines;
  while (!bytes.empty()) {
    const std::size_t feed = bytes.find('\n');
    lines.push_back(bytes.substr(0, feed == std::string_view::npos ? feed : feed + 1));
    bytes.remove_prefix(lines.back().size());
  }
  return lines;
}

std::string Lower(std::string_view name) {
  std::string lower(name);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  return lower;
}

Entries EntriesOf(std::string_view bytes) {
  if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
  Entries entries;
  std::set<std::string> known;
  std::optional<std::string> section;  // nothing: what follows does not count
  for (std::string_view line : Lines(bytes)) {
    if (line.back() == '\n') line.remove_suffix(1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    line = Trimmed(line);
    if (line.empty()) continue;
    if (line.front() == '[') {
      line.remove_prefix(1);
      section = Lower(Trimmed(line.substr(0, line.find(']'))));
      if (!known.insert(*section).second) section.reset();
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!section || line.front() == ';' || equals == std::string_view::npos) continue;
    const std::string key = Lower(Trimmed(line.substr(0, equals)));
    if (!key.empty()) {
      entries.try_emplace({*section, key}, Decoded(Trimmed(line.substr(equals + 1))));
    }
  }
  return entries;
}

void Expect(bool fact, const char* what) {
  if (fact) return;
  static_cast<void>(std::fprintf(stderr, "Does not hold: %s\n", what));
  std::abort();
}

}  // namespace quillary::reference
