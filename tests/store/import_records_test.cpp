#include <algorithm>
#include <filesystem>
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

class ImportRecordsTest : public StoreTest {
 protected:
  ImportRecordsTest() { World.Open(); }

  RunTimeError Import(const std::vector<FieldArray>& people, bool replace = false) {
    return World.Store.ImportRecords(
        people.size(), [&](std::size_t i) { return people.at(i); }, replace);
  }
  void ExpectWhole() {
    World.Store.ShowRecords();
    EXPECT_TRUE(CheckInvariants(World));
  }
};

// Record by record each new one would be put before all others; then the lists are sorted stably.
TEST_F(ImportRecordsTest, StoresEveryRecordAndLinksItBeforeItsEquals) {
  int total = 0;
  for (const int count : {1, 40, 150}) {
    Texts names(Data.NamesRecNo.begin(), Data.NamesRecNo.end());
    Texts companies(Data.CompaniesRecNo.begin(), Data.CompaniesRecNo.end());
    if (total == 0) names = companies = {};
    const std::vector<FieldArray> people = People(count, count);
    ASSERT_EQ(Import(people), RunTimeError::None);
    for (int i = 0; i < count; ++i) {
      const std::string recNo = NumberText(total++);
      ASSERT_EQ(World.Store.ReadRecord(recNo), RunTimeError::None);
      EXPECT_EQ(Data.FieldValues, people.at(static_cast<std::size_t>(i))) << recNo;
      for (auto* list : {&names, &companies}) list->insert(list->begin(), recNo);
    }
    const auto sort = [this](Texts& recNos, const char* key) {
      std::stable_sort(recNos.begin(), recNos.end(), [&](const auto& a, const auto& b) {
        return World.Comparer.Compare(Value(a, key), Value(b, key)) < 0;
      });
    };
    sort(names, "ShowName");
    sort(companies, "ShowCompany");
    EXPECT_EQ(Data.NamesRecNo, names);
    EXPECT_EQ(Data.CompaniesRecNo, companies);
    ExpectWhole();
  }
  EXPECT_EQ(Header("TotalNoOfRecords"), "191");
}

TEST_F(ImportRecordsTest, StoresFieldsAndDisplayStringsWithTheirBlanks) {
  FieldArray mixed = Person(" Ann ", "  ", " Acme ");
  mixed[Field::Sal] = "Mr.";
  FieldArray firm = Person("", " ", "Bell ");
  firm[Field::Sal] = "Mr.";
  ASSERT_EQ(Import({mixed, firm, Person("Ann", "Lee ")}), RunTimeError::None);
  EXPECT_EQ(Value("0", "ShowName") + "|" + Value("0", "ShowCompany"), " Ann |(  Acme  )");
  EXPECT_EQ(Value("1", "ShowName") + "|" + Value("1", "ShowCompany"), "( Bell  )|( Bell  )");
  EXPECT_EQ(Value("1", "Sal") + "|" + Value("1", "LastName"), "Mr.| ");
  EXPECT_EQ(Value("2", "ShowName") + "|" + Value("2", "ShowCompany"), "Lee , Ann|Lee , Ann");
}

TEST_F(ImportRecordsTest, ReplacingLeavesTheOldRecordsInTheirFiles) {
  ASSERT_EQ(Import(People(130, 1)), RunTimeError::None);
  SetHeader("NoOfUses", "1");
  const std::string oldName = Value("57", "ShowName");
  ASSERT_EQ(Import({Person("Zoe", "Aster"), Person("Ann", "Lee")}, true), RunTimeError::None);
  EXPECT_EQ(Data.NamesList, (Texts{"Aster, Zoe", "Lee, Ann"}));
  EXPECT_EQ(Data.NamesRecNo, (Texts{"130", "131"}));
  EXPECT_EQ(Value("57", "ShowName"), oldName);
  EXPECT_EQ(Header("TotalNoOfRecords"), "132");
  EXPECT_EQ(Header("DelNoOfRecords"), "0");
  EXPECT_EQ(Header("NoOfUses"), "1");
  const auto replaced = Data.NamesRecNo;
  EXPECT_EQ(Import(std::vector<FieldArray>(MaxRecords - 1)), RunTimeError::Overflow);
  World.Open();
  EXPECT_FALSE(Data.ListsIncomplete);
  EXPECT_EQ(Data.NamesRecNo, replaced);

  // Their file may vanish and come back with the new ones.
  const std::string hidden = World.Folder.ReadFile("quill1.dat");
  std::filesystem::remove(World.Folder.File("quill1.dat"));
  World.Open();
  EXPECT_EQ(World.Add("", "Zz"), "200");
  World.Folder.WriteFile("quill1.dat", hidden);
  World.Open();
  EXPECT_EQ(Data.NamesRecNo, (Texts{"130", "131", "200"}));
}

TEST_F(ImportRecordsTest, KeepsWhatStandsBehindTheCount) {
  ASSERT_EQ(Import({Person("b", ""), Person("d", ""), Person("f", "")}), RunTimeError::None);
  SetHeader("NoOfRecords", "2");
  World.Open();
  ASSERT_EQ(Import({Person("a", ""), Person("c", "")}), RunTimeError::None);
  EXPECT_EQ(Header("NoOfRecords"), "4");
  EXPECT_EQ(Value(Data.NamesRecNo.back(), "NextName"), "2");
  EXPECT_EQ(Value("2", "PrevName"), Data.NamesRecNo.back());
}

}  // namespace
}  // namespace quillary::test
