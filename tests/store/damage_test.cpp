#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <sstream>

#include "platform/numbers.h"
#include "store/record_reader.h"
#include "tests/support/check_invariants.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

using RecNos = std::set<std::string>;

// Another program that shares the files: it takes every link and count for granted.
class PlainProgram : public StoreWorld {
 public:
  explicit PlainProgram(const StoreData& data) : StoreWorld(data) {
    for (List& list : lists_) {
      std::string at = Header(list.First);
      for (int left = ToInt32(Header("NoOfRecords")); left > 0; --left) {
        list.RecNos.push_back(at);
        at = Value(at, "Next" + list.Kind);
      }
    }
  }
  const Texts& Live() const { return lists_[0].RecNos; }

  std::string Add(const std::string& name) {
    std::string recNo = Header("TotalNoOfRecords");
    SetHeader("TotalNoOfRecords", NumberText(ToInt32(recNo) + 1));
    for (const std::string key : {"LastName", "ShowName", "ShowCompany"}) Set(recNo, key, name);
    Insert(recNo);
    return recNo;
  }
  void Delete(const std::string& recNo) {
    for (List& list : lists_) {
      if (list.RecNos.size() == 1) {
        SetHeader(list.First, "");
      } else {
        Unlink(recNo, list.Kind, list.First);
      }
      std::erase(list.RecNos, recNo);
    }
    CountLive();
    ClearLinks(recNo);
    const int count = ToInt32(Header("DelNoOfRecords"));
    if (count > 0) {
      Set(recNo, "NextDel", Header("DelFirstRecord"));
      Set(Header("DelFirstRecord"), "PrevDel", recNo);
    }
    SetHeader("DelNoOfRecords", NumberText(count + 1));
    SetHeader("DelFirstRecord", recNo);
  }
  void Restore(const std::string& recNo) {
    SetHeader("DelNoOfRecords", NumberText(ToInt32(Header("DelNoOfRecords")) - 1));
    Unlink(recNo, "Del", "DelFirstRecord");
    Insert(recNo);
  }

 private:
  struct List {
    std::string Kind;
    std::string First;
    Texts RecNos = {};
  };

  void Insert(const std::string& recNo) {
    ClearLinks(recNo);
    for (List& list : lists_) {
      const std::string text = Value(recNo, "Show" + list.Kind);
      const auto place = std::find_if(list.RecNos.begin(), list.RecNos.end(), [&](const auto& at) {
        return Comparer.Compare(text, Value(at, "Show" + list.Kind)) <= 0;
      });
      if (place == list.RecNos.begin()) {
        SetHeader(list.First, recNo);
      } else {
        Link(*(place - 1), recNo, list.Kind);
      }
      if (place != list.RecNos.end()) Link(recNo, *place, list.Kind);
      list.RecNos.insert(place, recNo);
    }
    CountLive();
  }
  void CountLive() { SetHeader("NoOfRecords", NumberText(static_cast<int>(Live().size()))); }
  void Link(const std::string& recNo, const std::string& next, const std::string& kind) {
    Set(recNo, "Next" + kind, next);
    Set(next, "Prev" + kind, recNo);
  }
  void ClearLinks(const std::string& recNo) {
    for (const std::string kind : {"Name", "Company", "Del"}) {
      Set(recNo, "Prev" + kind, "");
      Set(recNo, "Next" + kind, "");
    }
  }
  void Unlink(const std::string& recNo, const std::string& kind, const std::string& first) {
    const std::string previous = Value(recNo, "Prev" + kind);
    const std::string next = Value(recNo, "Next" + kind);
    if (previous.empty()) {
      SetHeader(first, next);
    } else {
      Set(previous, "Next" + kind, next);
    }
    if (!next.empty()) Set(next, "Prev" + kind, previous);
  }

  std::array<List, 2> lists_{List{"Name", "NameFirstRecord"},
                             List{"Company", "CompanyFirstRecord"}};
};

// A data set to which something happens again and again while this program works with it.
class DamagedData : public StoreTest {
 public:
  void Run(unsigned long seed) {
    Engine.seed(static_cast<std::mt19937::result_type>(seed));
    MakeData();
    for (int step = 0; step < 15 && !HasFailure(); ++step) {
      Log("--");
      Damage();
      Open();
      Check();
      for (std::size_t changes = Below(3); changes > 0 && !HasFailure(); --changes) {
        Change();
        Open();
        Check();
      }
    }
    EXPECT_FALSE(HasFailure()) << "after" << History;
  }

 private:
  enum class State { Live, Deleted, Unknown };
  // A record file as it was once.
  struct OldCopy {
    std::string Bytes;
    std::map<std::string, State> States;
  };

  // A few records in each of several files.
  void MakeData() {
    ProfileUpdate update(Access);
    for (int file = 0; file < FileCount; ++file) {
      SetHeader("TotalNoOfRecords", NumberText(std::int64_t{file} * RecordsPerFile));
      for (int i = 0; i < 5; ++i) Truth[Add("", Word())] = State::Live;
    }
    for (int i = 0; i < 5; ++i) Delete();
    ASSERT_EQ(update.Commit(), RunTimeError::None);
    KeepCopies();
  }

  std::size_t Below(std::size_t limit) { return Engine() % limit; }
  bool OneIn(std::size_t limit) { return Below(limit) == 0; }
  template <class List>
  std::string AnyOf(const List& list) {
    if (list.empty()) return {};
    return std::string(*std::next(list.begin(), static_cast<int>(Below(list.size()))));
  }
  std::string Word() {
    return std::string(1, static_cast<char>('A' + Below(26))) + NumberText(++Words);
  }
  static int FileOf(const std::string& recNo) { return static_cast<int>(RecordFileNumber(recNo)); }
  static std::string FileName(int file) { return "quill" + NumberText(file) + ".dat"; }
  void Note(const std::string& recNo, State state) {
    Truth[recNo] = state;
    if (Away.contains(FileOf(recNo))) ChangedAway.insert(recNo);
  }

  // What the records hold besides their links.
  std::map<std::string, std::string> Contents() {
    std::map<std::string, std::string> contents;
    for (const auto& [name, bytes] : Folder.Files(".dat")) {
      std::istringstream lines(bytes);
      std::string recNo;
      for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('[')) {
          recNo = line.starts_with("[Record") ? line.substr(7, line.find(']') - 7) : "";
        } else if (!recNo.empty() && !line.starts_with("Prev") && !line.starts_with("Next")) {
          contents[recNo] += line;
        }
      }
    }
    return contents;
  }

  RecNos DeletedChain() {
    RecNos chain;
    std::string at = Header("DelFirstRecord");
    while (!at.empty() && chain.insert(at).second) at = Value(at, "NextDel");
    return chain;
  }

  // The only live or deleted one of its time may have no links, or only the damaged one: then
  // nobody can tell which it was.
  bool IsLinked(const std::string& recNo) {
    const auto isLink = [&](const std::string& key) {
      const std::string value = Value(recNo, key);
      const bool isDamaged = recNo == Damaged.RecNo && key == Damaged.Key && value == Damaged.Value;
      return !value.empty() && !isDamaged;
    };
    return std::any_of(Links.begin(), Links.end(), isLink) ||
           std::any_of(Heads.begin(), Heads.end(),
                       [&](const std::string& key) { return Header(key) == recNo; });
  }

  // --- What happens to the files.

  // One link or head; no other until that one is written anew.
  void DamageLink() {
    const auto value = [&] {
      return Damaged.RecNo.empty() ? Header(Damaged.Key) : Value(Damaged.RecNo, Damaged.Key);
    };
    if (!Damaged.Key.empty() && value() == Damaged.Value) return;
    RecNos all;
    for (const auto& [recNo, content] : Contents()) all.insert(recNo);
    Damaged.RecNo = OneIn(8) ? "" : AnyOf(all);
    Damaged.Key = AnyOf(Damaged.RecNo.empty() ? Heads : Links);
    Damaged.Value = AnyOf(Texts{"", "77", "999999", "x", AnyOf(all), AnyOf(all)});
    Log("damage " + Damaged.RecNo + "." + Damaged.Key + "=" + Damaged.Value);
    if (Damaged.Value == value()) {
      Damaged.Key.clear();
    } else if (Damaged.RecNo.empty()) {
      SetHeader(Damaged.Key, Damaged.Value);
    } else {
      Set(Damaged.RecNo, Damaged.Key, Damaged.Value);
    }
  }
  void KeepCopies() {
    for (int file = 0; file < FileCount; ++file) {
      if (Away.contains(file)) continue;
      Copies[file].push_back({Folder.ReadFile(FileName(file)), Truth});
    }
  }
  void Hide() {
    const int file = static_cast<int>(Below(FileCount));
    if (!Away.contains(file)) Away[file] = Folder.ReadFile(FileName(file));
    Log("hide " + NumberText(file));
    if (OneIn(3)) {
      Folder.WriteFile(FileName(file), std::string(100, '\0'));
    } else {
      std::filesystem::remove(Folder.File(FileName(file)));
    }
  }
  void PutOlderCopy() {
    const int file = static_cast<int>(Below(FileCount));
    const OldCopy& copy = Copies[file][Below(Copies[file].size())];
    // One that lacks nothing cannot be told from the file itself.
    const auto isLacking = [&](const auto& record) {
      return FileOf(record.first) == file && !copy.States.contains(record.first);
    };
    if (std::none_of(Truth.begin(), Truth.end(), isLacking)) return;
    Log("older " + NumberText(file));
    if (!Away.contains(file)) Away[file] = Folder.ReadFile(FileName(file));
    Folder.WriteFile(FileName(file), copy.Bytes);
    for (const auto& [recNo, state] : copy.States) {
      if (FileOf(recNo) == file && state != Truth[recNo]) Truth[recNo] = State::Unknown;
    }
  }
  void Return() {
    if (Away.empty()) return;
    const auto back = std::next(Away.begin(), static_cast<int>(Below(Away.size())));
    const auto& [file, bytes] = *back;
    // Who copies a file over new records loses them himself.
    for (const auto& [recNo, content] : Contents()) {
      const bool isNew = FileOf(recNo) == file && content.find("ShowName=") != std::string::npos &&
                         bytes.find("[Record" + recNo + "]") == std::string::npos;
      if (isNew) return;
    }
    Log("return " + NumberText(file));
    Folder.WriteFile(FileName(file), bytes);
    for (const auto& recNo : RecNos(ChangedAway)) {
      if (FileOf(recNo) != file) continue;
      Truth[recNo] = State::Unknown;
      ChangedAway.erase(recNo);
    }
    Away.erase(back);
  }
  // Another program changes sound data; a file may vanish after it has read the lists.
  void OtherProgram() {
    if (!CheckFiles(Folder.Path())) return;
    PlainProgram other(Data);
    if (OneIn(3)) Hide();
    for (std::size_t i = 0; i <= Below(3); ++i) {
      const std::string live = AnyOf(other.Live());
      const RecNos deleted = DeletedChain();
      if (OneIn(3) || (live.empty() && deleted.empty())) {
        const std::string recNo = other.Add(Word());
        Log("other adds " + recNo);
        Note(recNo, State::Live);
      } else if (!live.empty() && Contents().contains(live) && OneIn(2)) {
        Log("other deletes " + live);
        other.Delete(live);
        Note(live, State::Deleted);
      } else if (const std::string recNo = AnyOf(deleted); Contents().contains(recNo)) {
        Log("other restores " + recNo);
        other.Restore(recNo);
        Note(recNo, State::Live);
      }
    }
  }

  // --- What this program does.

  void Open() {
    StoreWorld::Open();
    ASSERT_EQ(Store.SortNamesList(), RunTimeError::None);
    Store.ShowRecords();
    Store.ReadDeletedNamesList();
  }
  // A command that must succeed, and makes of a record, if there is one, what is said.
  template <class Command>
  void Do(const char* what, const std::string& recNo, State state, Command command) {
    if (recNo.empty()) return;
    Log(std::string(what) + ' ' + recNo);
    ASSERT_EQ(command(recNo), RunTimeError::None);
    Note(recNo, state);
  }
  void Delete() {
    Do("delete", AnyOf(Lines.RecNos), State::Deleted,
       [&](const auto& recNo) { return StoreWorld::Delete(recNo); });
  }

  // Every record that is there is in one list, and in the right one.
  void Check() {
    const RecNos live(Lines.RecNos.begin(), Lines.RecNos.end());
    if (!live.empty()) {
      EXPECT_EQ(live, RecNos(Data.CompaniesRecNo.begin(), Data.CompaniesRecNo.end()));
    }
    const RecNos deleted(Data.DelRecNo.begin(), Data.DelRecNo.end());
    const RecNos chain = DeletedChain();
    for (const auto& [recNo, content] : Contents()) {
      const State state = Truth[recNo];
      if (content.find("ShowName=") == std::string::npos || state == State::Unknown) continue;
      const bool isLive = live.contains(recNo);
      const bool isDeleted = deleted.contains(recNo);
      // No more are listed than are counted.
      const bool isInList = isLive || isDeleted || chain.contains(recNo);
      EXPECT_TRUE(isInList) << recNo << " is in no list";
      EXPECT_FALSE(isLive && isDeleted) << recNo << " is in both lists";
      if (!IsLinked(recNo)) {
        Truth[recNo] = State::Unknown;
        continue;
      }
      EXPECT_FALSE(isLive && state == State::Deleted) << recNo << " has become live";
      EXPECT_FALSE(isDeleted && state == State::Live) << recNo << " has become deleted";
    }
  }
  // Nothing is overwritten.
  void CheckContents(const std::map<std::string, std::string>& before) {
    const auto after = Contents();
    for (const auto& [recNo, content] : before) {
      if (recNo == Changed || content.empty()) continue;
      const auto now = after.find(recNo);
      EXPECT_TRUE(now != after.end() && now->second == content) << recNo << " was overwritten";
    }
  }

  void Damage() {
    switch (Below(8)) {
      case 0:
        return Hide();
      case 1:
        return PutOlderCopy();
      case 2:
      case 3:
        return Return();
      case 4:
        return OtherProgram();
      case 5:
        return KeepCopies();
      default:
        return DamageLink();
    }
  }
  void Change() {
    Open();
    Changed.clear();
    const auto before = Contents();
    switch (Below(4)) {
      case 0:
        Changed = Add("", Word());
        Log("add " + Changed);
        Note(Changed, State::Live);
        break;
      case 1:
        Changed = AnyOf(Lines.RecNos);
        Do("edit", Changed, State::Live,
           [&](const auto& recNo) { return Edit(recNo, Person("", Word())); });
        break;
      case 2:
        Delete();
        break;
      default:
        Do("restore", AnyOf(Data.DelRecNo), State::Live,
           [&](const auto& recNo) { return Store.RestoreRecord(recNo); });
    }
    CheckContents(before);
  }
  void TestBody() override {}

  void Log(const std::string& what) { History += '\n' + what; }

  struct DamagedLink {
    std::string RecNo;  // empty: in the header
    std::string Key;    // empty: none
    std::string Value;
  };
  static constexpr int FileCount = 3;
  const Texts Links{"PrevName", "NextName", "PrevCompany", "NextCompany", "PrevDel", "NextDel"};
  const Texts Heads{"NameFirstRecord", "CompanyFirstRecord", "DelFirstRecord"};
  std::map<std::string, State> Truth;
  std::map<int, std::vector<OldCopy>> Copies;
  std::map<int, std::string> Away;  // what a file held before it was hidden or replaced
  RecNos ChangedAway;               // meanwhile
  std::string Changed;              // the record that was meant to be
  int Words = 0;
  std::mt19937 Engine;
  std::string History;
  DamagedLink Damaged;
};

// Each of these runs has found a fault of its own. QUILLARY_TEST_SEED and QUILLARY_TEST_RUNS make
// others and more: where copies of several ages are mixed, some state can be found that tells
// nobody what is right.
TEST(DamageTest, NoSequenceOfDamagesLosesARecordOrMovesItToAnotherList) {
  std::vector<unsigned long> seeds{474, 3153, 70024, 70217, 70333, 70366, 70933};
  if (const char* const seed = std::getenv("QUILLARY_TEST_SEED"); seed != nullptr) {
    const char* const runs = std::getenv("QUILLARY_TEST_RUNS");
    seeds.resize(runs != nullptr ? std::stoul(runs) : 1);
    std::iota(seeds.begin(), seeds.end(), std::stoul(seed));
  }
  for (const unsigned long seed : seeds) {
    SCOPED_TRACE("QUILLARY_TEST_SEED=" + std::to_string(seed));
    DamagedData().Run(seed);
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace quillary::test
