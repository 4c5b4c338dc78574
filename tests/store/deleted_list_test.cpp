#include <algorithm>
#include <sstream>

#include "platform/numbers.h"
#include "tests/support/check_invariants.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

struct DeletedListTest : StoreTest {
  void AddDeleted(const Texts& names) {
    for (const auto& name : names) ASSERT_EQ(Delete(Add("", name)), RunTimeError::None);
  }
  TextList Read() {
    Store.ReadDeletedNamesList();
    return Data.DelRecNo;
  }
  void Restore(const std::string& recNo) {
    ASSERT_EQ(Store.RestoreRecord(recNo), RunTimeError::None) << recNo;
    ASSERT_TRUE(CheckInvariants(*this)) << recNo;
  }
};

TEST_F(DeletedListTest, WhatIsNotInTheListIsNotRestored) {
  Add("", "M");
  AddDeleted({"A", "B"});
  Read();
  Restore("1");  // as another program might
  const auto memory = Memory();
  for (const std::string recNo : {"1", "0", "77", "x", ""}) {
    EXPECT_EQ(Store.RestoreRecord(recNo), RunTimeError::BadRecordNumber) << recNo;
    EXPECT_EQ(Store.RemoveFromDeletedList(recNo), RunTimeError::BadRecordNumber) << recNo;
  }
  EXPECT_EQ(Memory(), memory);
  EXPECT_TRUE(CheckInvariants(*this));
  ASSERT_EQ(Store.RemoveFromDeletedList("2"), RunTimeError::None);
  EXPECT_EQ(Store.RestoreRecord("2"), RunTimeError::BadRecordNumber);

  AddDeleted({"C"});
  Data.NoOfRecords = MaxRecords;
  EXPECT_EQ(Store.RestoreRecord("3"), RunTimeError::Overflow);
}

TEST_F(DeletedListTest, WhatChangedSinceTheListWasReadIsNotBuiltUpon) {
  AddDeleted({"A", "B", "C", "D", "E", "F"});  // 5, 4, 3, 2, 1, 0
  Read();
  for (const std::string recNo : {"3", "5", "0"}) Restore(recNo);
  AddDeleted({"G"});  // 6, 4, 2, 1
  Restore("4");
  Read();
  // As another program might: the list leads past 2, which is counted still.
  Set("6", "NextDel", "1");
  Set("1", "PrevDel", "6");
  EXPECT_EQ(Store.RestoreRecord("0"), RunTimeError::BadRecordNumber);
  Restore("2");
  EXPECT_EQ(Header("DelNoOfRecords"), "2");

  // Nor does a lost link cut off what follows.
  AddDeleted({"H", "I"});  // 8, 7, 6, 1
  EXPECT_EQ(Read(), (Texts{"1", "6", "7", "8"}));
  Set("7", "NextDel", "");
  Restore("7");
  EXPECT_EQ(Read(), (Texts{"1", "6", "8"}));
}

TEST_F(DeletedListTest, ListsThe8000DeletedLast) {
  for (const int count : {8001, MaxRecords}) {
    for (int first = 0; first < count; first += RecordsPerFile) {
      std::ostringstream records;
      for (int n = first; n < std::min(first + RecordsPerFile, count); ++n) {
        records << "[Record" << n << "]\nShowName=" << n % 3
                << "\nPrevDel=" << (n + 1 < count ? NumberText(n + 1) : "")
                << "\nNextDel=" << (n > 0 ? NumberText(n - 1) : "") << '\n';
      }
      Folder.WriteFile("quill" + NumberText(first / RecordsPerFile) + ".dat", records.str());
    }
    SetHeader("DelFirstRecord", NumberText(count - 1));
    SetHeader("DelNoOfRecords", NumberText(count));
    Read();
    EXPECT_EQ(Data.DelCount, count);
    Texts expected;
    for (int rest = 0; rest < 3; ++rest) {
      for (int n = count - 1; n >= count - MaxDeletedListed; --n) {
        if (n % 3 == rest) expected.push_back(NumberText(n));
      }
    }
    EXPECT_EQ(Data.DelRecNo, expected);
  }
  // One of the full list.
  ASSERT_EQ(Store.RestoreRecord("20000"), RunTimeError::None);
  EXPECT_EQ(Header("DelNoOfRecords"), "32766");
  EXPECT_EQ(Value("20001", "NextDel"), "19999");
}

}  // namespace
}  // namespace quillary::test
