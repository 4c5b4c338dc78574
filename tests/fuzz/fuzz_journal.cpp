// Any bytes as a journal beside data files: the recovery ends, does to the files what the format
// says and nothing to others, leaves the folder alone around it, and finds nothing to do when it
// comes again. The input is the journal; where its first byte is odd, it is what stands between the
// first and the last line of one whose checksum is right.

#include <zlib.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "platform/file_names.h"
#include "store/journal.h"
#include "store/profile.h"
#include "store/temporary_name.h"
#include "tests/fuzz/reference.h"
#include "tests/support/temp_folder.h"

namespace {

namespace fs = std::filesystem;
using quillary::RunTimeError;
using quillary::reference::Entries;
using quillary::reference::Expect;
using Files = std::map<std::string, std::string>;

constexpr long NoProcess = 4194304;  // more than any system gives out
constexpr const char* Folder = "folder";

// The data folder, in a folder that it must not reach.
class Ground {
 public:
  Ground() {
    fs::create_directory(Path());
    outer_.WriteFile("quill.dat", "[General Info]\r\nApplication=Quillary\r\n");
    outer_.WriteFile("linked", "[Record100]\r\nNotes=linked\r\n");
    Lay();
    around_ = outer_.Files();
  }

  std::string Path() const { return outer_.File("data"); }
  Files Now() const {
    Files files;
    for (const auto& entry : fs::directory_iterator(Path())) {
      const std::string name = entry.path().filename();
      files[name] = entry.is_directory() ? Folder : outer_.ReadFile("data/" + name);
    }
    return files;
  }
  // The files as they are at first, and the journal.
  Files Begin(const std::string& journal) {
    if (isDirty_) {
      fs::remove_all(Path());
      fs::create_directory(Path());
      Lay();
    }
    isDirty_ = true;
    outer_.WriteFile("data/quill.jnl", journal);
    return Now();
  }
  void ExpectNothingAround() const {
    Expect(outer_.Files() == around_, "nothing is written outside the folder");
  }

 private:
  void Lay() const {
    const auto put = [&](const std::string& name, const std::string& bytes) {
      outer_.WriteFile("data/" + name, bytes);
    };
    put("quill.dat", "[General Info]\r\nApplication=Quillary\r\nNoOfRecords=5\r\nNoOfUses=1\r\n");
    put("quill0.dat", "[Record1]\r\nNotes=a\r\nNextName=\r\n\r\n[Record2]\r\nNextName=1\r\n");
    put("notes.txt", "not ours");
    fs::create_symlink(outer_.File("linked"), Path() + "/quill1.dat");
    fs::create_directory(Path() + "/sub");
    put(quillary::TemporaryName("quill0.dat.copy", 1), "[Record1]\r\nNotes=whole\r\n");
    put(quillary::TemporaryName("quill.dat.copy", NoProcess), "[General Info]\r\n");
  }

  quillary::test::TempFolder outer_;
  Files around_;
  bool isDirty_ = false;
};

std::string JournalOf(std::string_view input) {
  if (input.empty() || (input.front() & 1) == 0) return std::string(input);
  std::string text = "Quillary journal 1\n";
  text += input.substr(1);
  if (text.back() != '\n') text += '\n';
  const auto* const bytes = reinterpret_cast<const Bytef*>(text.data());
  std::array<char, 16> end{};
  (void)std::snprintf(end.data(), end.size(), "end %08lx\n", crc32_z(0, bytes, text.size()));
  return text + end.data();
}

// What becomes of the files: entries where a file is completed, bytes where it is replaced. False
// where that is not settled: it cannot be done, or the journal writes itself.
bool Complete(const quillary::Journal& journal, Files& files, std::map<std::string, Entries>& now) {
  for (const quillary::JournalFile& part : journal) {
    const auto file = files.find(part.Name);
    const bool isThere = file != files.end();
    if ((isThere && file->second == Folder) || part.Name == quillary::JournalName) return false;
    // The end of the longest name, in which the temporary file's stands as well.
    constexpr std::size_t Longest = 200;
    if (part.Name.size() > Longest || part.Replacement.size() > Longest) return false;
    if (!part.Replacement.empty()) {
      const auto copy = files.find(part.Replacement);
      if (copy == files.end()) continue;
      if (copy->second == Folder) return false;
      files[part.Name] = std::exchange(copy->second, {});
      files.erase(part.Replacement);
      continue;
    }
    const Entries before = isThere ? quillary::reference::EntriesOf(file->second) : Entries();
    Entries after = before;
    for (const quillary::JournalEntry& entry : part.Entries) {
      const std::pair names{quillary::reference::Lower(entry.Section),
                            quillary::reference::Lower(entry.Key)};
      const auto value = before.find(names);
      const auto held = value == before.end() ? std::nullopt : std::optional(value->second);
      if (held == entry.Old) after[names] = entry.New;
    }
    if (after == before) continue;
    files[part.Name];
    now[part.Name] = after;
  }
  return true;
}

void DropLeftTemporaries(Files& files) {
  std::erase_if(files, [](const auto& file) {
    const auto process = quillary::TemporaryProcess(file.first);
    return process && *process != 1 && file.second != Folder;
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Ground ground;
  const std::string text = JournalOf({reinterpret_cast<const char*>(data), size});
  Files expected = ground.Begin(text);
  const Files before = expected;
  expected.erase(std::string(quillary::JournalName));
  const auto journal = quillary::ParseJournal(text);
  std::map<std::string, Entries> completed;
  const bool isSettled = !journal || Complete(*journal, expected, completed);
  DropLeftTemporaries(expected);

  quillary::HostDisk disk;
  const quillary::FileNames names(disk, ground.Path(), ground.Path());
  const std::string file = quillary::ProgramPath(ground.Path()) + "\\quill.dat";
  const RunTimeError error = quillary::Profile(disk, names).Recover(file);
  Files after = ground.Now();
  ground.ExpectNothingAround();
  if (error != RunTimeError::None) {
    Expect(!isSettled, "what can be completed is completed");
    Expect(after.contains(std::string(quillary::JournalName)), "an unfinished journal stays");
  } else {
    Expect(!after.contains(std::string(quillary::JournalName)), "a finished journal goes");
    Expect(quillary::Profile(disk, names).Recover(file) == RunTimeError::None, "it is over");
    Expect(ground.Now() == after, "a second recovery finds nothing to do");
  }

  if (isSettled) {
    for (const auto& [name, entries] : completed) {
      const auto done = after.find(name);
      if (done == after.end()) continue;  // a temporary file, swept
      Expect(quillary::reference::EntriesOf(done->second) == entries, "the journal's state");
      after.erase(done);
      expected.erase(name);
    }
    Expect(after == expected, "no other file changes");
    return 0;
  }
  std::set<std::string> named{std::string(quillary::JournalName)};
  for (const quillary::JournalFile& part : *journal) {
    named.insert(part.Name);
    named.insert(part.Replacement);
  }
  for (const auto& [name, bytes] : before) {
    if (named.contains(name) || quillary::TemporaryProcess(name).value_or(1) != 1) continue;
    const auto kept = after.find(name);
    Expect(kept != after.end() && kept->second == bytes, "what is not named is kept");
  }
  return 0;
}
