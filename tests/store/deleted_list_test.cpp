#include <algorithm>
#include <filesystem>
#include <sstream>

#include "platform/numbers.h"
#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

struct DeletedListTest : StoreTest {
  // Adds and deletes records of these last names, the companies being the names turned round.
  void AddDeleted(const Texts& names) {
    for (const auto& name : names) {
      const std::string recNo = World.Add("", name, std::string(name.rbegin(), name.rend()));
      ASSERT_EQ(World.Delete(recNo), RunTimeError::None);
    }
  }
  TextList Read() {
    World.Store.ReadDeletedNamesList();
    return Data.DelRecNo;
  }
  void Restore(const std::string& recNo) {
    ASSERT_EQ(World.Store.RestoreRecord(recNo), RunTimeError::None) << recNo;
    ASSERT_TRUE(CheckInvariants(World)) << recNo;
  }
};

TEST_F(DeletedListTest, ListsTheShownDisplayStringsWithProgress) {
  AddDeleted({"Brown", "adams"});
  EXPECT_EQ(Read(), (Texts{"1", "0"}));
  EXPECT_EQ(Data.DelNamesList, (Texts{"adams", "Brown"}));
  EXPECT_EQ(World.Progress.Stages, (Texts{"Please wait while getting deleted names list...|",
                                          "Please wait while sorting deleted names list...|"}));
  EXPECT_EQ(World.Progress.Steps.back(), 100);
  EXPECT_FALSE(World.Progress.IsOpen);
  Data.ViewMode = 1;
  EXPECT_EQ(Read(), (Texts{"0", "1"}));
  EXPECT_EQ(Data.DelNamesList[0], "( nworB )");
}

TEST_F(DeletedListTest, WhatIsNotInTheListIsNotRestored) {
  World.Add("", "M");
  AddDeleted({"A", "B"});
  const TextList listed = Read();
  Restore("1");  // as another program might
  const auto memory = World.Memory();
  for (const std::string recNo : {"1", "0", "77", "x", ""}) {
    EXPECT_EQ(World.Store.RestoreRecord(recNo), RunTimeError::BadRecordNumber) << recNo;
    EXPECT_EQ(World.Store.RemoveFromDeletedList(recNo), RunTimeError::BadRecordNumber) << recNo;
  }
  EXPECT_EQ(World.Memory(), memory);
  EXPECT_TRUE(CheckInvariants(World));
  ASSERT_EQ(World.Store.RemoveFromDeletedList("2"), RunTimeError::None);
  EXPECT_TRUE(CheckInvariants(World));
  EXPECT_EQ(World.Store.RestoreRecord("2"), RunTimeError::BadRecordNumber);

  AddDeleted({"C"});
  Data.NoOfRecords = MaxRecords;
  EXPECT_EQ(World.Store.RestoreRecord("3"), RunTimeError::Overflow);
}

TEST_F(DeletedListTest, WhatChangedSinceTheListWasReadIsNotBuiltUpon) {
  AddDeleted({"A", "B", "C", "D", "E", "F"});  // 5, 4, 3, 2, 1, 0
  Read();
  Restore("3");
  Restore("5");
  Restore("0");
  AddDeleted({"G"});  // 6, 4, 2, 1
  Restore("4");
  Read();
  // As another program might: the list leads past 2, which is counted still.
  Set("6", "NextDel", "1");
  Set("1", "PrevDel", "6");
  EXPECT_EQ(World.Store.RestoreRecord("0"), RunTimeError::BadRecordNumber);
  Restore("2");
  EXPECT_EQ(Header("DelNoOfRecords"), "2");

  // Nor does a lost link cut off what follows.
  AddDeleted({"H", "I"});  // 8, 7, 6, 1
  EXPECT_EQ(Read(), (Texts{"1", "6", "7", "8"}));
  Set("7", "NextDel", "");
  Restore("7");
  EXPECT_EQ(Header("DelNoOfRecords"), "3");
  EXPECT_EQ(Value("8", "NextDel"), "1");
  EXPECT_EQ(Read(), (Texts{"1", "6", "8"}));
}

TEST_F(DeletedListTest, AWrongCountIsPutRightWithTheNextRestore) {
  AddDeleted({"A", "B", "C", "D"});
  for (const auto& [count, listed] :
       std::initializer_list<std::pair<std::string, std::size_t>>{{"9", 4}, {"1", 1}}) {
    SetHeader("DelNoOfRecords", count);
    ASSERT_EQ(Read().size(), listed);
    Restore(Header("DelFirstRecord"));
  }
  EXPECT_EQ(Header("DelNoOfRecords"), "2");
}

TEST_F(DeletedListTest, AMissingRecordFileDoesNotCutTheListOff) {
  SetHeader("TotalNoOfRecords", "96");
  AddDeleted({"E"});
  for (const std::string name : {"A", "B", "C", "D"}) World.Add("", name);
  ASSERT_EQ(World.Delete("99"), RunTimeError::None);
  ASSERT_EQ(World.Delete("100"), RunTimeError::None);
  const std::string hidden = World.Folder.ReadFile("quill1.dat");
  std::filesystem::remove(World.Folder.File("quill1.dat"));
  for (const std::string recNo : {"97", "98"}) {
    ASSERT_EQ(World.Delete(recNo), RunTimeError::None);
  }
  ASSERT_EQ(World.Store.RestoreRecord("97"), RunTimeError::None);
  EXPECT_EQ(Header("DelNoOfRecords"), "4");
  EXPECT_EQ(Read(), (Texts{"98", "99", "96"}));
  EXPECT_EQ(World.Add("", "F"), "200");
  EXPECT_FALSE(std::filesystem::exists(World.Folder.File("quill1.dat")));

  World.Folder.WriteFile("quill1.dat", hidden);
  EXPECT_EQ(Read(), (Texts{"98", "99", "100", "96"}));
  for (const std::string recNo : {"99", "100", "98"}) {
    ASSERT_EQ(World.Store.RestoreRecord(recNo), RunTimeError::None) << recNo;
  }
  EXPECT_TRUE(CheckInvariants(World));
}

TEST_F(DeletedListTest, ListsThe8000DeletedLast) {
  for (const int count : {1, 8000, 8001, MaxRecords}) {
    for (int first = 0; first < count; first += RecordsPerFile) {
      std::ostringstream records;
      for (int n = first; n < std::min(first + RecordsPerFile, count); ++n) {
        records << "[Record" << n << "]\nShowName=" << n % 3
                << "\nPrevDel=" << (n + 1 < count ? NumberText(n + 1) : "")
                << "\nNextDel=" << (n > 0 ? NumberText(n - 1) : "") << '\n';
      }
      World.Folder.WriteFile("quill" + std::to_string(first / RecordsPerFile) + ".dat",
                             records.str());
    }
    SetHeader("DelFirstRecord", NumberText(count - 1));
    SetHeader("DelNoOfRecords", NumberText(count));
    Read();
    EXPECT_EQ(Data.DelCount, count);
    const int listed = std::min(count, MaxDeletedListed);
    Texts expected;
    for (int rest = 0; rest < 3; ++rest) {
      for (int n = count - 1; n >= count - listed; --n) {
        if (n % 3 == rest) expected.push_back(NumberText(n));
      }
    }
    EXPECT_EQ(Data.DelRecNo, expected);
  }
  // One of the full list.
  ASSERT_EQ(World.Store.RestoreRecord("20000"), RunTimeError::None);
  EXPECT_EQ(Header("DelNoOfRecords"), "32766");
  EXPECT_EQ(Value("20001", "NextDel"), "19999");
}

}  // namespace
}  // namespace quillary::test
