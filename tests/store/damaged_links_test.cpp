#include <algorithm>
#include <set>

#include "platform/numbers.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

using RecNos = std::set<std::string>;

struct Damage {
  std::string RecNo;  // empty: the header
  std::string Key;
  std::string Value;
};

// The values that a link, head or count may take among a few records.
std::vector<Damage> AllDamages(int records) {
  std::vector<Damage> damages;
  for (int value = -2; value < records; ++value) {
    const std::string text = value < 0 ? (value == -1 ? "77" : "") : NumberText(value);
    for (const std::string key : {"NoOfRecords", "TotalNoOfRecords", "DelNoOfRecords",
                                  "NameFirstRecord", "CompanyFirstRecord", "DelFirstRecord"}) {
      damages.push_back({"", key, text});
    }
    for (int n = 0; n < records; ++n) {
      for (const std::string key :
           {"PrevName", "NextName", "PrevCompany", "NextCompany", "PrevDel", "NextDel"}) {
        damages.push_back({NumberText(n), key, text});
      }
    }
  }
  return damages;
}

struct DamagedLinksTest : StoreTest {
  DamagedLinksTest() {
    // Live 0, 2, 4 by name and 4, 2, 0 by company; deleted 6, 5, 3, 1.
    for (const std::string name : {"B", "C", "D", "E", "F", "G", "H"}) {
      World.Add("", name, std::string(1, static_cast<char>('Z' - name[0] + 'A')));
    }
    for (const std::string recNo : {"1", "3", "5", "6"}) {
      EXPECT_EQ(World.Delete(recNo), RunTimeError::None);
    }
  }

  void Open() {
    World.Open();
    World.Store.ReadDeletedNamesList();
  }

  // What the links in the files lead to, whatever the counts say.
  RecNos Chain(std::string_view first, std::string_view next) {
    RecNos chain;
    std::string at = Header(first);
    while (!Value(at, "ShowName").empty() && chain.insert(at).second) {
      at = Value(at, next);
    }
    return chain;
  }
  RecNos InChains() {
    RecNos all = Chain("NameFirstRecord", "NextName");
    all.merge(Chain("CompanyFirstRecord", "NextCompany"));
    all.merge(Chain("DelFirstRecord", "NextDel"));
    return all;
  }
  template <class List>
  static RecNos Shown(const List& recNos) {
    return RecNos(recNos.begin(), recNos.end());
  }
  // What the program shows, each record once.
  RecNos Listed() {
    RecNos listed = Shown(World.Lines.RecNos);
    if (!listed.empty()) {
      EXPECT_EQ(listed, Shown(World.Data.CompaniesRecNo));
    }
    listed.insert(World.Data.DelRecNo.begin(), World.Data.DelRecNo.end());
    EXPECT_EQ(listed.size(), World.Lines.RecNos.size() + World.Data.DelRecNo.size())
        << "both live and deleted";
    return listed;
  }

  RunTimeError Change(const std::string& what) {
    std::string recNo;
    auto& lines = World.Lines.RecNos;
    if (what == "add") return World.Add("", "Cc", "", recNo);
    RunTimeError error = RunTimeError::None;
    if (what == "restore") {
      for (const auto& deleted : World.Data.DelRecNo) {
        if (error == RunTimeError::None) error = World.Store.RestoreRecord(deleted);
      }
      return error;
    }
    if (lines.empty() || what == "open") return RunTimeError::None;
    if (what == "edit") {
      World.Data.FieldValues = {"", "", "Z"};
      return World.Edit(lines.front());
    }
    error = World.Delete(lines.back());
    return lines.empty() || error != RunTimeError::None ? error : World.Delete(lines.front());
  }
};

struct ChangeOfLists {
  const char* What;
  std::size_t Live;  // how many there are afterwards
  std::size_t Deleted;
};

TEST_F(DamagedLinksTest, NoSingleDamageLosesARecordOrMakesOneLiveAndDeleted) {
  for (const Damage& damage : AllDamages(7)) {
    const bool isHeader = damage.RecNo.empty();
    const bool isCount = damage.Key.find("NoOf") != std::string::npos;
    for (const auto& [what, live, deleted] : std::initializer_list<ChangeOfLists>{
             {"open", 3, 4}, {"add", 4, 4}, {"edit", 3, 4}, {"delete", 1, 6}, {"restore", 7, 0}}) {
      SCOPED_TRACE(what + (" after " + damage.RecNo) + "." + damage.Key + "=" + damage.Value);
      // In a group, nothing comes to the disk.
      const ProfileUpdate dropped(World.Access);
      if (isHeader) {
        SetHeader(damage.Key, damage.Value);
      } else {
        Set(damage.RecNo, damage.Key, damage.Value);
      }
      Open();
      const RecNos before = InChains();
      if (!isCount) {
        EXPECT_EQ(Shown(World.Lines.RecNos), (RecNos{"0", "2", "4"}));
        EXPECT_EQ(Shown(World.Data.DelRecNo), (RecNos{"1", "3", "5", "6"}));
      }
      EXPECT_EQ(Change(what), RunTimeError::None);
      Open();
      const RecNos listed = Listed();
      if (isCount) {
        // No more are listed than the header counts.
        const RecNos after = InChains();
        EXPECT_TRUE(std::includes(after.begin(), after.end(), before.begin(), before.end()))
            << testing::PrintToString(before) << " became " << testing::PrintToString(after);
      } else {
        EXPECT_EQ(World.Lines.RecNos.size(), live);
        EXPECT_EQ(World.Data.DelRecNo.size(), deleted);
        EXPECT_EQ(listed.size(), live + deleted);
      }
      World.Access.AbandonGroup();
    }
  }
}

}  // namespace
}  // namespace quillary::test
