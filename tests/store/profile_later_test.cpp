#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/file_names.h"
#include "store/profile.h"
#include "tests/support/fault_disk.h"
#include "tests/support/temp_folder.h"

namespace quillary {
namespace {

// Groups that are finished in an idle moment.
struct ProfileLaterTest : testing::Test {
  ProfileLaterTest() {
    for (const char* file : {"a.dat", "b.dat"}) {
      EXPECT_EQ(Access.WriteEntry(file, "S", "Key", "old"), RunTimeError::None);
      EXPECT_EQ(Access.WriteEntry(file, "S", "Other", "old"), RunTimeError::None);
    }
    Access.FinishLater([this] { ++Due; });
  }
  static RunTimeError WriteBoth(Profile& program, const std::string& value) {
    ProfileUpdate update(program);
    for (const char* file : {"a.dat", "b.dat"}) {
      (void)program.WriteEntry(file, "S", "Key", value);
    }
    return update.Commit();
  }
  RunTimeError WriteBoth(const std::string& value) { return WriteBoth(Access, value); }
  // What another program reads.
  std::string Seen(const char* file, const char* key = "Key") {
    return Profile(Machine, Names).ReadEntry(file, "S", key);
  }
  bool HasJournal() const { return std::filesystem::exists(Folder.File("quill.jnl")); }

  test::TempFolder Folder;
  test::FaultDisk Machine;
  FileNames Names{Machine, Folder.Path(), Folder.Path()};
  Profile Access{Machine, Names};
  int Due = 0;
};

TEST_F(ProfileLaterTest, AGroupHoldsAtOnceAndReachesTheFilesInFinish) {
  ASSERT_EQ(WriteBoth("new"), RunTimeError::None);
  EXPECT_EQ(Due, 1);
  EXPECT_EQ(Access.ReadEntry("a.dat", "S", "Key"), "new");
  EXPECT_EQ(ProfileSnapshot(Access).Text("b.dat").Value("S", "Key"), "new");
  EXPECT_EQ(Seen("a.dat"), "old");
  EXPECT_TRUE(HasJournal());

  ASSERT_EQ(Access.Finish(), RunTimeError::None);
  EXPECT_EQ(Seen("a.dat") + Seen("b.dat"), "newnew");
  EXPECT_FALSE(HasJournal());
  EXPECT_EQ(Access.Finish(), RunTimeError::None);
}

TEST_F(ProfileLaterTest, WhatAnotherProgramWritesMeanwhileIsSeenAndStays) {
  ASSERT_EQ(WriteBoth("new"), RunTimeError::None);
  ASSERT_EQ(Profile(Machine, Names).WriteEntry("a.dat", "S", "Other", "theirs"),
            RunTimeError::None);
  ASSERT_EQ(Profile(Machine, Names).WriteEntry("b.dat", "S", "Key", "theirs"), RunTimeError::None);
  EXPECT_EQ(Access.ReadEntry("a.dat", "S", "Other"), "theirs");
  ASSERT_EQ(Access.Finish(), RunTimeError::None);
  EXPECT_EQ(Seen("a.dat"), "new");
  EXPECT_EQ(Seen("a.dat", "Other"), "theirs");
  EXPECT_EQ(Seen("b.dat"), "theirs");
  EXPECT_EQ(Access.ReadEntry("b.dat", "S", "Key"), "theirs");
}

TEST_F(ProfileLaterTest, WhateverComesNextComesAfterIt) {
  ASSERT_EQ(WriteBoth("1"), RunTimeError::None);
  ASSERT_EQ(WriteBoth("2"), RunTimeError::None);
  EXPECT_EQ(Seen("a.dat"), "1");
  ASSERT_EQ(Access.WriteEntry("a.dat", "S", "Other", "alone"), RunTimeError::None);
  EXPECT_EQ(Seen("b.dat"), "2");

  ASSERT_EQ(WriteBoth("3"), RunTimeError::None);
  ASSERT_EQ(Access.CopyFile("b.dat", "copy.dat"), RunTimeError::None);
  EXPECT_EQ(Seen("copy.dat"), "3");
  ASSERT_EQ(WriteBoth("4"), RunTimeError::None);
  ASSERT_EQ(Access.CopyFiles({{"b.dat", "copy.dat"}}), RunTimeError::None);
  EXPECT_EQ(Seen("copy.dat"), "4");
  ASSERT_EQ(WriteBoth("5"), RunTimeError::None);
  ASSERT_EQ(Access.Recover("a.dat"), RunTimeError::None);
  EXPECT_EQ(Seen("a.dat", "Other") + Seen("a.dat") + Seen("b.dat"), "alone55");
}

TEST_F(ProfileLaterTest, AFaultInFinishIsToldAndTheGroupStays) {
  ASSERT_EQ(WriteBoth("new"), RunTimeError::None);
  Machine.FailWrites(RunTimeError::DiskFull);
  EXPECT_EQ(Access.Finish(), RunTimeError::DiskFull);
  EXPECT_EQ(WriteBoth("newer"), RunTimeError::DiskFull);
  EXPECT_EQ(Access.ReadEntry("b.dat", "S", "Key"), "new");
  Machine.Reset();
  ASSERT_EQ(Access.Finish(), RunTimeError::None);
  EXPECT_EQ(Seen("a.dat") + Seen("b.dat"), "newnew");
}

TEST_F(ProfileLaterTest, AGroupOutlivesItsJournalAndItsDisk) {
  ASSERT_EQ(WriteBoth("1"), RunTimeError::None);
  std::filesystem::remove(Folder.File("quill.jnl"));
  ASSERT_EQ(Access.Finish(), RunTimeError::None);
  EXPECT_EQ(Seen("a.dat") + Seen("b.dat"), "11");

  // The folder is another one for a while.
  ASSERT_EQ(WriteBoth("2"), RunTimeError::None);
  test::TempFolder away;
  const auto move = [](const test::TempFolder& from, const test::TempFolder& to) {
    for (const char* file : {"a.dat", "b.dat", "quill.jnl"}) {
      std::filesystem::rename(from.File(file), to.File(file));
    }
  };
  move(Folder, away);
  EXPECT_EQ(Access.Finish(), RunTimeError::FileNotFound);
  EXPECT_EQ(WriteBoth("3"), RunTimeError::FileNotFound);
  move(away, Folder);
  ASSERT_EQ(Access.Finish(), RunTimeError::None);
  EXPECT_EQ(Seen("a.dat") + Seen("b.dat"), "22");
}

TEST_F(ProfileLaterTest, AForeignGroupIsCompletedAndNothingIsBuiltUponWhatWasBefore) {
  Profile other(Machine, Names);
  other.FinishLater([] {});
  ASSERT_EQ(WriteBoth(other, "theirs"), RunTimeError::None);
  EXPECT_EQ(WriteBoth("mine"), RunTimeError::BadRecordNumber);
  EXPECT_EQ(Seen("a.dat") + Seen("b.dat"), "theirstheirs");
  ASSERT_EQ(WriteBoth("mine"), RunTimeError::None);
  ASSERT_EQ(Access.Finish(), RunTimeError::None);
  EXPECT_EQ(other.Finish(), RunTimeError::None);
  EXPECT_EQ(Seen("a.dat") + Seen("b.dat"), "minemine");
}

TEST_F(ProfileLaterTest, AProtectedFileIsToldBeforeAnythingIsDecided) {
  std::filesystem::permissions(Folder.File("b.dat"), std::filesystem::perms::owner_read);
  EXPECT_EQ(WriteBoth("new"), RunTimeError::PermissionDenied);
  EXPECT_FALSE(HasJournal());
  EXPECT_EQ(Access.ReadEntry("a.dat", "S", "Key"), "old");
}

}  // namespace
}  // namespace quillary
