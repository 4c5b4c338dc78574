#include <algorithm>
#include <filesystem>

#include "platform/numbers.h"
#include "tests/support/check_invariants.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

// Names in no order, some of them equal or without a company.
std::vector<FieldArray> People(int count, int seed) {
  std::vector<FieldArray> people;
  for (int i = 0; i < count; ++i) {
    const int number = (i * 7919 + seed * 104729) % 97;
    people.push_back(Person(number % 5 == 0 ? "" : "Ann " + NumberText(number % 13),
                            std::string(1, static_cast<char>('a' + number % 26)) + "strand",
                            number % 3 == 0 ? " Firm " + NumberText(number) : "",
                            "line " + NumberText(i) + " \\ \"quoted\""));
  }
  return people;
}

struct ImportRecordsTest : StoreTest {
  ImportRecordsTest() { Open(); }
};

// Record by record each new one would be put before all others; then the lists are sorted stably.
TEST_F(ImportRecordsTest, StoresEveryRecordAndLinksItBeforeItsEquals) {
  int total = 0;
  Texts names;
  Texts companies;
  for (const int count : {1, 40, 150}) {
    const std::vector<FieldArray> people = People(count, count);
    ASSERT_EQ(Import(people), RunTimeError::None);
    for (int i = 0; i < count; ++i) {
      const std::string recNo = NumberText(total++);
      ASSERT_EQ(Store.ReadRecord(recNo), RunTimeError::None);
      EXPECT_EQ(Data.FieldValues, people.at(static_cast<std::size_t>(i))) << recNo;
      for (auto* list : {&names, &companies}) list->insert(list->begin(), recNo);
    }
    const auto sort = [this](Texts& recNos, const char* key) {
      std::stable_sort(recNos.begin(), recNos.end(), [&](const auto& a, const auto& b) {
        return Comparer.Compare(Value(a, key), Value(b, key)) < 0;
      });
    };
    sort(names, "ShowName");
    sort(companies, "ShowCompany");
    EXPECT_EQ(Data.NamesRecNo, names);
    EXPECT_EQ(Data.CompaniesRecNo, companies);
    EXPECT_TRUE(CheckInvariants(*this));
  }
}

TEST_F(ImportRecordsTest, StoresFieldsAndDisplayStringsWithTheirBlanks) {
  FieldArray firm = Person("", " ", "Bell ");
  firm[Field::Sal] = "Mr.";
  ASSERT_EQ(Import({Person(" Ann ", "  ", " Acme "), firm, Person("Ann", "Lee ")}),
            RunTimeError::None);
  const auto shown = [this](const char* recNo) {
    return Value(recNo, "ShowName") + "|" + Value(recNo, "ShowCompany");
  };
  EXPECT_EQ(shown("0"), " Ann |(  Acme  )");
  EXPECT_EQ(shown("1"), "( Bell  )|( Bell  )");
  EXPECT_EQ(Value("1", "Sal") + "|" + Value("1", "LastName"), "Mr.| ");
  EXPECT_EQ(shown("2"), "Lee , Ann|Lee , Ann");
}

TEST_F(ImportRecordsTest, ReplacingLeavesTheOldRecordsInTheirFiles) {
  ASSERT_EQ(Import(People(130, 1)), RunTimeError::None);
  SetHeader("NoOfUses", "1");
  const std::string oldName = Value("57", "ShowName");
  ASSERT_EQ(Import({Person("Zoe", "Aster"), Person("Ann", "Lee")}, true), RunTimeError::None);
  EXPECT_EQ(Data.NamesRecNo, (Texts{"130", "131"}));
  EXPECT_EQ(Value("57", "ShowName"), oldName);
  EXPECT_EQ(Header("DelNoOfRecords"), "0");
  EXPECT_EQ(Header("NoOfUses"), "1");
  EXPECT_EQ(Import(std::vector<FieldArray>(MaxRecords - 1)), RunTimeError::Overflow);

  // Their file may vanish and come back with the new ones.
  const std::string hidden = Folder.ReadFile("quill1.dat");
  std::filesystem::remove(Folder.File("quill1.dat"));
  Open();
  EXPECT_EQ(Add("", "Zz"), "200");
  Folder.WriteFile("quill1.dat", hidden);
  Open();
  EXPECT_EQ(Data.NamesRecNo, (Texts{"130", "131", "200"}));
}

TEST_F(ImportRecordsTest, KeepsWhatStandsBehindTheCount) {
  ASSERT_EQ(Import({Person("b", ""), Person("d", ""), Person("f", "")}), RunTimeError::None);
  SetHeader("NoOfRecords", "2");
  Open();
  ASSERT_EQ(Import({Person("a", ""), Person("c", "")}), RunTimeError::None);
  EXPECT_EQ(Header("NoOfRecords"), "4");
  EXPECT_EQ(Value(Data.NamesRecNo.back(), "NextName"), "2");
  EXPECT_EQ(Value("2", "PrevName"), Data.NamesRecNo.back());
}

}  // namespace
}  // namespace quillary::test
