#include <algorithm>
#include <array>
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
using Damages = std::vector<Damage>;

// Some that come together, and every value that a link, head or count may take among a few records.
std::vector<Damages> AllDamages(int records) {
  std::vector<Damages> all{
      {{"0", "NextName", ""}, {"4", "NextCompany", ""}},
      {{"4", "NextName", "0"}, {"2", "NextCompany", "4"}},
      {{"0", "NextName", "77"}, {"2", "NextCompany", "99999999"}},
      {{"0", "NextName", "2x"}, {"2", "NextCompany", "00"}},
      {{"0", "NextName", "-1"}, {"2", "NextCompany", "2147483648"}},
      {{"", "NameFirstRecord", ""}, {"", "CompanyFirstRecord", "?"}},
      {{"0", "NextName", ""}, {"", "NoOfRecords", "1e9"}},
      {{"2", "NextName", ""}, {"4", "NextCompany", "0"}, {"", "NoOfRecords", "2"}}};
  for (int value = -2; value < records; ++value) {
    const std::string text = value < 0 ? (value == -1 ? "77" : "") : NumberText(value);
    for (const std::string key : {"NoOfRecords", "TotalNoOfRecords", "DelNoOfRecords",
                                  "NameFirstRecord", "CompanyFirstRecord", "DelFirstRecord"}) {
      all.push_back({{"", key, text}});
    }
    for (int n = 0; n < records; ++n) {
      for (const std::string key :
           {"PrevName", "NextName", "PrevCompany", "NextCompany", "PrevDel", "NextDel"}) {
        all.push_back({{NumberText(n), key, text}});
      }
    }
  }
  return all;
}

// Whether the order by company is the one by name turned round.
struct DamagedLinksTest : StoreTest, testing::WithParamInterface<bool> {
  DamagedLinksTest() {
    // Live 0, 2, 4 by name and as they are or 4, 2, 0 by company; deleted 6, 5, 3, 1.
    for (const std::string name : {"B", "C", "D", "E", "F", "G", "H"}) {
      Add("", name, GetParam() ? std::string(1, static_cast<char>('Z' - name[0] + 'A')) : name);
    }
    for (const std::string recNo : {"1", "3", "5", "6"}) {
      EXPECT_EQ(Delete(recNo), RunTimeError::None);
    }
  }

  void Open() {
    StoreWorld::Open();
    Store.ReadDeletedNamesList();
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
  // What is in a chain of live records, or deleted since.
  RecNos InChain(std::string_view first, std::string_view next) {
    RecNos all = Chain(first, next);
    all.merge(Chain("DelFirstRecord", "NextDel"));
    return all;
  }
  std::array<RecNos, 2> InChains() {
    return {InChain("NameFirstRecord", "NextName"), InChain("CompanyFirstRecord", "NextCompany")};
  }
  template <class List>
  static RecNos Shown(const List& recNos) {
    return RecNos(recNos.begin(), recNos.end());
  }
  // What the program shows, each record once.
  RecNos Listed() {
    RecNos listed = Shown(Lines.RecNos);
    if (!listed.empty()) {
      EXPECT_EQ(listed, Shown(Data.CompaniesRecNo));
    }
    listed.insert(Data.DelRecNo.begin(), Data.DelRecNo.end());
    EXPECT_EQ(listed.size(), Lines.RecNos.size() + Data.DelRecNo.size()) << "both live and deleted";
    return listed;
  }

  RunTimeError Change(const std::string& what) {
    if (what == "add") return Add(Person("", "Cc"));
    RunTimeError error = RunTimeError::None;
    if (what == "restore") {
      for (const auto& deleted : Data.DelRecNo) {
        if (error == RunTimeError::None) error = Store.RestoreRecord(deleted);
      }
      return error;
    }
    if (Lines.RecNos.empty() || what == "open") return error;
    if (what == "edit") return Edit(Lines.RecNos.front(), Person("", "Z"));
    error = Delete(Lines.RecNos.back());
    return Lines.RecNos.empty() || error != RunTimeError::None ? error
                                                               : Delete(Lines.RecNos.front());
  }
};

struct ChangeOfLists {
  const char* What;
  std::size_t Live;  // how many there are afterwards
  std::size_t Deleted;
};

TEST_P(DamagedLinksTest, NoDamageLosesARecordOrMakesOneLiveAndDeleted) {
  for (const Damages& damages : AllDamages(7)) {
    const Damage& first = damages.front();
    const bool isCount = std::any_of(damages.begin(), damages.end(), [](const Damage& damage) {
      return damage.Key.find("NoOf") != std::string::npos;
    });
    for (const auto& [what, live, deleted] : std::initializer_list<ChangeOfLists>{
             {"open", 3, 4}, {"add", 4, 4}, {"edit", 3, 4}, {"delete", 1, 6}, {"restore", 7, 0}}) {
      SCOPED_TRACE(what + (" after " + first.RecNo) + "." + first.Key + "=" + first.Value);
      // In a group, nothing comes to the disk.
      const ProfileUpdate dropped(Access);
      for (const auto& [recNo, key, value] : damages) {
        recNo.empty() ? SetHeader(key, value) : Set(recNo, key, value);
      }
      Open();
      const std::array<RecNos, 2> before = InChains();
      if (!isCount) {
        EXPECT_EQ(Shown(Lines.RecNos), (RecNos{"0", "2", "4"}));
        EXPECT_EQ(Shown(Data.DelRecNo), (RecNos{"1", "3", "5", "6"}));
      }
      EXPECT_EQ(Change(what), RunTimeError::None);
      Open();
      const RecNos listed = Listed();
      if (isCount) {
        // No more are listed than the header counts.
        const std::array<RecNos, 2> after = InChains();
        for (const std::size_t i : {0U, 1U}) {
          EXPECT_TRUE(std::includes(after.at(i).begin(), after.at(i).end(), before.at(i).begin(),
                                    before.at(i).end()))
              << testing::PrintToString(before) << " became " << testing::PrintToString(after);
        }
      } else {
        EXPECT_EQ(Lines.RecNos.size(), live);
        EXPECT_EQ(Data.DelRecNo.size(), deleted);
        EXPECT_EQ(listed.size(), live + deleted);
      }
      Access.AbandonGroup();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Orders, DamagedLinksTest, testing::Bool());

}  // namespace
}  // namespace quillary::test
