// A profile file of any bytes: every entry is read as the format says, and a write changes what it
// names and nothing else. The input is some changes (section, key, value) and then the file.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/journal.h"
#include "store/profile_line.h"
#include "store/profile_text.h"
#include "tests/fuzz/reference.h"

namespace {

using quillary::FileChanges;
using quillary::ProfileText;
using quillary::reference::Entries;
using quillary::reference::Expect;
using Lines = std::vector<std::string_view>;

struct Change {
  std::string Section;
  std::string Key;
  std::string Value;
};

std::vector<Change> TakeChanges(FuzzedDataProvider& input) {
  // What gives a value another meaning at its ends.
  constexpr std::array<std::string_view, 6> Marks{"", "\"", "\\\"", "'", " ", "\t"};
  std::vector<Change> changes(input.ConsumeIntegralInRange<std::size_t>(1, 4));
  for (Change& change : changes) {
    change.Section = input.ConsumeRandomLengthString();
    change.Key = input.ConsumeRandomLengthString();
    change.Value = input.PickValueInArray(Marks);
    change.Value += input.ConsumeRandomLengthString();
    change.Value += input.PickValueInArray(Marks);
  }
  std::erase_if(changes, [](const Change& change) {
    return !quillary::CanBeNames(change.Section, change.Key);
  });
  return changes;
}

std::string With(const std::string& bytes, const std::vector<Change>& changes,
                 quillary::JournalPart* journal = nullptr) {
  FileChanges set;
  for (const Change& change : changes) set.Set(change.Section, change.Key, change.Value);
  return ProfileText(bytes).With(set, journal);
}

Entries Expected(Entries entries, const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    entries[{quillary::reference::Lower(change.Section), quillary::reference::Lower(change.Key)}] =
        change.Value;
  }
  return entries;
}

void ExpectReadsAs(const std::string& bytes, const Entries& entries) {
  const ProfileText text(bytes);
  for (const auto& [names, value] : entries) {
    Expect(text.Value(names.first, names.second) == value, "an entry reads as the format says");
  }
}

// One line more, one section more, or one line in another's place; the last line may get its end.
void ExpectOneLineChanged(const std::string& before, const std::string& after) {
  const Lines old = quillary::reference::Lines(before);
  const Lines now = quillary::reference::Lines(after);
  const auto same = [](std::string_view a, std::string_view b) {
    return a == b || (a.back() != '\n' && quillary::WithoutEnd(a) == quillary::WithoutEnd(b));
  };
  std::size_t first = 0;
  while (first < std::min(old.size(), now.size()) && same(old[first], now[first])) ++first;
  std::size_t last = 0;
  while (last < std::min(old.size(), now.size()) - first &&
         same(old[old.size() - 1 - last], now[now.size() - 1 - last])) {
    ++last;
  }
  const std::size_t gone = old.size() - first - last;
  const std::size_t added = now.size() - first - last;
  Expect(added <= 2 && gone <= 1 && gone + added <= 2, "a write leaves the other lines alone");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const std::vector<Change> changes = TakeChanges(input);
  const std::string before = input.ConsumeRemainingBytesAsString();
  const Entries entries = quillary::reference::EntriesOf(before);
  ExpectReadsAs(before, entries);

  std::string oneByOne = before;
  Entries expected = entries;
  for (const Change& change : changes) {
    const std::string after = With(oneByOne, {change});
    ExpectOneLineChanged(oneByOne, after);
    expected = Expected(expected, {change});
    Expect(quillary::reference::EntriesOf(after) == expected, "a write changes its entry alone");
    ExpectReadsAs(after, expected);
    oneByOne = after;
  }

  quillary::JournalPart journal("quill.dat");
  const std::size_t noneSize = journal.Text().size();
  const std::string together = With(before, changes, &journal);
  Expect(quillary::reference::EntriesOf(together) == expected, "a group is its writes");
  Expect(With(together, changes) == together, "what is written already is not written again");
  Expect((journal.Text().size() > noneSize) == (expected != entries),
         "the journal names what changes");
  return 0;
}
