#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "platform/numbers.h"
#include "tests/support/check_invariants.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

FieldArray Person(const std::string& firstName, const std::string& lastName,
                  const std::string& company = "") {
  FieldArray fields;
  fields[Field::FirstName] = firstName;
  fields[Field::LastName] = lastName;
  fields[Field::Company] = company;
  return fields;
}

// Names in no order, some of them equal or without a company.
std::vector<FieldArray> People(int count, int seed) {
  std::vector<FieldArray> people;
  for (int i = 0; i < count; ++i) {
    const int number = (i * 7919 + seed * 104729) % 97;
    FieldArray fields = Person(number % 5 == 0 ? "" : "Ann " + std::to_string(number % 13),
                               std::string(1, static_cast<char>('a' + number % 26)) + "strand",
                               number % 3 == 0 ? " Firm " + std::to_string(number) : "");
    fields[Field::Notes] = "line " + std::to_string(i) + " \\ \"quoted\"";
    people.push_back(std::move(fields));
  }
  return people;
}

class ImportRecordsTest : public testing::Test {
 protected:
  ImportRecordsTest() { Start(world_); }

  static void Start(StoreWorld& world) {
    EXPECT_EQ(world.Store.WriteNewHeader(), RunTimeError::None);
    world.Open();
  }
  static RunTimeError Import(StoreWorld& world, const std::vector<FieldArray>& people,
                             bool replace = false) {
    return world.Store.ImportRecords(
        people.size(), [&](std::size_t i) { return people.at(i); }, replace);
  }
  RunTimeError Import(const std::vector<FieldArray>& people, bool replace = false) {
    return Import(world_, people, replace);
  }
  std::string Entry(const std::string& RecNo, const char* key) {
    return world_.Store.ReadRecordEntry(RecNo, key);
  }
  void ExpectWhole() {
    world_.Store.ShowRecords();
    EXPECT_TRUE(CheckInvariants(world_));
  }

  StoreWorld world_;
};

// What an import comes to, record by record: each one is put before all others, and the lists are
// read and sorted at the end.
void ImportOneByOne(StoreWorld& world, const std::vector<FieldArray>& people) {
  Records& store = world.Store;
  ProfileUpdate update(world.Access);
  for (const FieldArray& fields : people) {
    const int live = ToInt32(store.ReadHeaderEntry("NoOfRecords"));
    const std::string recNo = store.ReadHeaderEntry("TotalNoOfRecords");
    (void)store.WriteHeaderEntry("TotalNoOfRecords", NumberText(ToInt32(recNo) + 1));
    (void)store.WriteHeaderEntry("NoOfRecords", NumberText(live + 1));
    for (const char* key :
         {"PrevName", "NextName", "PrevCompany", "NextCompany", "PrevDel", "NextDel"}) {
      (void)store.WriteRecordEntry(recNo, key, "");
    }
    std::string first = fields[Field::FirstName];
    std::string last = fields[Field::LastName];
    std::string firm = fields[Field::Company];
    std::string showCompany = BuildShowCompany(first, last, firm);
    if (!firm.empty()) showCompany = "( " + fields[Field::Company] + " )";
    (void)store.WriteRecordEntry(recNo, "ShowName", BuildShowName(first, last, firm));
    (void)store.WriteRecordEntry(recNo, "ShowCompany", showCompany);
    for (std::size_t i = 0; i < world.Data.NoOfFields; ++i) {
      (void)store.WriteRecordEntry(recNo, world.Data.FieldKeys.at(i), fields.at(i));
    }
    for (const auto& [head, prev, next] : {std::array{"NameFirstRecord", "PrevName", "NextName"},
                                           {"CompanyFirstRecord", "PrevCompany", "NextCompany"}}) {
      const std::string old = store.ReadHeaderEntry(head);
      (void)store.WriteHeaderEntry(head, recNo);
      if (old.empty()) continue;
      (void)store.WriteRecordEntry(recNo, next, old);
      (void)store.WriteRecordEntry(old, prev, recNo);
    }
  }
  ASSERT_EQ(update.Commit(), RunTimeError::None);
  world.Open();
  ASSERT_EQ(world.Store.SortNamesList(), RunTimeError::None);
}

TEST_F(ImportRecordsTest, LeavesWhatOneRecordAfterTheOtherWouldLeave) {
  StoreWorld other;
  Start(other);
  for (const int count : {1, 40, 150}) {
    const std::vector<FieldArray> people = People(count, count);
    ASSERT_EQ(Import(people), RunTimeError::None);
    ImportOneByOne(other, people);
    EXPECT_EQ(world_.Folder.Files(), other.Folder.Files()) << count;
    EXPECT_EQ(world_.Data.NamesRecNo, other.Data.NamesRecNo);
    EXPECT_EQ(world_.Data.CompaniesRecNo, other.Data.CompaniesRecNo);
    ExpectWhole();
  }
}

TEST_F(ImportRecordsTest, StoresFieldsAndDisplayStringsWithTheirBlanks) {
  FieldArray mixed = Person(" Ann ", "  ", " Acme ");
  mixed[Field::Sal] = "Mr.";
  FieldArray firm = Person("", " ", "Bell ");
  firm[Field::Sal] = "Mr.";
  ASSERT_EQ(Import({mixed, firm, Person("Ann", "Lee ")}), RunTimeError::None);
  EXPECT_EQ(Entry("0", "ShowName") + "|" + Entry("0", "ShowCompany"), " Ann |(  Acme  )");
  EXPECT_EQ(Entry("1", "ShowName") + "|" + Entry("1", "ShowCompany"), "( Bell  )|( Bell  )");
  EXPECT_EQ(Entry("1", "Sal") + "|" + Entry("1", "LastName"), "Mr.| ");
  EXPECT_EQ(Entry("2", "ShowName") + "|" + Entry("2", "ShowCompany"), "Lee , Ann|Lee , Ann");
}

TEST_F(ImportRecordsTest, ReplacingLeavesTheOldRecordsInTheirFiles) {
  ASSERT_EQ(Import(People(130, 1)), RunTimeError::None);
  ASSERT_EQ(world_.Store.WriteHeaderEntry("NoOfUses", "1"), RunTimeError::None);
  const std::string oldName = Entry("57", "ShowName");
  ASSERT_EQ(Import({Person("Zoe", "Aster"), Person("Ann", "Lee")}, true), RunTimeError::None);
  EXPECT_EQ(world_.Data.NamesList, (std::vector<std::string>{"Aster, Zoe", "Lee, Ann"}));
  EXPECT_EQ(world_.Data.NamesRecNo, (std::vector<std::string>{"130", "131"}));
  EXPECT_EQ(Entry("57", "ShowName"), oldName);
  EXPECT_EQ(world_.Store.ReadHeaderEntry("TotalNoOfRecords"), "132");
  EXPECT_EQ(world_.Store.ReadHeaderEntry("DelNoOfRecords"), "0");
  EXPECT_EQ(world_.Store.ReadHeaderEntry("NoOfUses"), "1");
  const auto replaced = world_.Data.NamesRecNo;
  EXPECT_EQ(Import(std::vector<FieldArray>(MaxRecords - 1)), RunTimeError::Overflow);
  world_.Open();
  EXPECT_FALSE(world_.Data.ListsIncomplete);
  EXPECT_EQ(world_.Data.NamesRecNo, replaced);
}

TEST_F(ImportRecordsTest, KeepsWhatStandsBehindTheCount) {
  ASSERT_EQ(Import({Person("b", ""), Person("d", ""), Person("f", "")}), RunTimeError::None);
  ASSERT_EQ(world_.Store.WriteHeaderEntry("NoOfRecords", "2"), RunTimeError::None);
  world_.Open();
  ASSERT_EQ(Import({Person("a", ""), Person("c", "")}), RunTimeError::None);
  EXPECT_EQ(world_.Store.ReadHeaderEntry("NoOfRecords"), "4");
  EXPECT_EQ(Entry(std::string(world_.Data.NamesRecNo.back()), "NextName"), "2");
  EXPECT_EQ(Entry("2", "PrevName"), world_.Data.NamesRecNo.back());
}

// Whichever call to the disk fails, and wherever the power goes: the old data or the new ones.
TEST_F(ImportRecordsTest, IsDoneWhollyOrNotAtAll) {
  ASSERT_EQ(Import(People(3, 1)), RunTimeError::None);
  // The new ones come into two files.
  ASSERT_EQ(world_.Store.WriteHeaderEntry("TotalNoOfRecords", "99"), RunTimeError::None);
  const auto before = world_.Folder.Files();
  const auto list = world_.Data.NamesRecNo;
  const std::vector<FieldArray> people = People(3, 2);
  for (const bool replace : {false, true}) {
    for (const bool stops : {false, true}) {
      bool reached = true;
      int kept = 0;
      for (int call = 1; reached; ++call) {
        for (const auto& entry : std::filesystem::directory_iterator(world_.Folder.Path())) {
          std::filesystem::remove(entry);
        }
        for (const auto& [name, bytes] : before) world_.Folder.WriteFile(name, bytes);
        world_.Open();
        if (stops) {
          world_.Machine.StopAt(call);
        } else {
          world_.Machine.FailAt(call, RunTimeError::DiskFull, false);
        }
        RunTimeError error = RunTimeError::None;
        bool stopped = false;
        try {
          error = Import(people, replace);
        } catch (const ProgramStopped&) {
          stopped = true;
        }
        reached = world_.Machine.WasReached();
        world_.Machine.Reset();
        if (stopped) {
          // The next start.
          world_.Access.AbandonGroup();
          Profile access(world_.Machine, world_.Names);
          ASSERT_EQ(access.Recover(world_.Data.DataFile), RunTimeError::None);
          const bool isOld = world_.Folder.Files() == before;
          kept += isOld ? 1 : 0;
          world_.Open();
          EXPECT_EQ(world_.Data.NoOfRecords, isOld || replace ? 3 : 6) << call;
          EXPECT_FALSE(world_.Data.ListsIncomplete);
          EXPECT_TRUE(isOld || replace || CheckFiles(world_.Folder.Path())) << call;
        } else if (error != RunTimeError::None) {
          ++kept;
          EXPECT_EQ(world_.Folder.Files(), before) << call;
          EXPECT_EQ(world_.Data.NamesRecNo, list);
          EXPECT_EQ(world_.Data.NoOfRecords, 3);
          ExpectWhole();
        }
      }
      EXPECT_GT(kept, 5);
    }
  }
}

}  // namespace
}  // namespace quillary::test
