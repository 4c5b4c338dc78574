#include <sys/stat.h>

#include "tests/store/backup_world.h"

namespace quillary::test {
namespace {

TEST_F(BackupTest, CopiesEveryDataFileUnderItsNameInCapitals) {
  const std::string other(3'000'000, 'o');
  World.Folder.WriteFile("Other.Dat", other);
  World.Folder.WriteFile("quill.2020.dat", "[General Info]\nApplication=Quillary\n");
  World.Folder.WriteFile("notes.txt", "no data");
  fs::create_directory(World.Folder.File("photos.dat"));
  fs::rename(Medium.File("QUILL0.OLD"), Medium.File("quill0.Old"));
  const Files data = World.Folder.Files();
  const std::string stale = Medium.ReadFile("QUILL2.OLD");
  ASSERT_EQ(BackUp(), RunTimeError::None);
  EXPECT_EQ(Medium.Files(), (Files{{"QUILL.OLD", data.at("quill.dat")},
                                   {"quill0.Old", data.at("quill0.dat")},
                                   {"QUILL1.OLD", data.at("quill1.dat")},
                                   {"QUILL2.OLD", stale},
                                   {"OTHER.OLD", other},
                                   {"letter.txt", "Dear Ann"}}));
  EXPECT_EQ(World.Folder.Files(), data);

  // Of names that differ in case alone the one in use is copied; the safety copy is beside the
  // data.
  World.Folder.WriteFile("QUILL1.DAT", "older");
  ASSERT_EQ(BackUpFiles(World.Access, World.Data, World.Data.DataPath), RunTimeError::None);
  EXPECT_EQ(World.Folder.ReadFile("QUILL1.OLD"), data.at("quill1.dat"));
}

TEST_F(BackupTest, RestoresEveryCopyAndThePresentProgramSeesIt) {
  World.Open();
  EXPECT_FALSE(World.Store.RecordExists("205"));
  World.Folder.WriteFile("quill7.dat", "[Record700]\n");
  const Files data = World.Folder.Files();
  fs::permissions(Medium.File("QUILL2.OLD"), fs::perms(0644));
  const Files backup = Medium.Files();
  ASSERT_EQ(Restore(), RunTimeError::None);
  EXPECT_EQ(fs::status(World.Folder.File("QUILL2.DAT")).permissions(), fs::perms(0600));
  EXPECT_EQ(World.Folder.Files(), (Files{{"quill.dat", backup.at("QUILL.OLD")},
                                         {"quill0.dat", backup.at("QUILL0.OLD")},
                                         {"quill1.dat", backup.at("QUILL1.OLD")},
                                         {"QUILL2.DAT", backup.at("QUILL2.OLD")},
                                         {"quill7.dat", "[Record700]\n"},
                                         {"QUILL.OLD", data.at("quill.dat")},
                                         {"QUILL0.OLD", data.at("quill0.dat")},
                                         {"QUILL1.OLD", data.at("quill1.dat")},
                                         {"QUILL7.OLD", "[Record700]\n"}}));
  EXPECT_EQ(Medium.Files(), backup);
  ASSERT_EQ(World.Store.WriteRecordEntry("205", "Notes", "back again"), RunTimeError::None);
  EXPECT_FALSE(fs::exists(World.Folder.File("quill2.dat")));
  World.Open();
  EXPECT_EQ(World.Data.NoOfRecords, 210);
  EXPECT_TRUE(DataAreWhole());
}

TEST_F(BackupTest, ASafetyCopyAndTheDataChangePlaces) {
  const Files before = World.Folder.Files();
  ASSERT_EQ(Restore(), RunTimeError::None);
  ASSERT_EQ(RestoreFrom(World.Data.DataPath), RunTimeError::None);
  for (const auto& [name, bytes] : before) EXPECT_EQ(World.Folder.ReadFile(name), bytes);
  ASSERT_EQ(RestoreFrom(World.Data.DataPath), RunTimeError::None);
  EXPECT_EQ(World.Folder.ReadFile("quill.dat"), Medium.ReadFile("QUILL.OLD"));
  EXPECT_TRUE(DataAreWhole());
}

// The medium is taken for a good one twice, and opened in between.
TEST_F(BackupTest, TheSameRestoreTwiceLeavesTheSafetyCopyAlone) {
  const Files before = World.Folder.Files();
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(Restore(), RunTimeError::None);
    ASSERT_EQ(World.Store.WriteHeaderEntry("NoOfUses", std::to_string(i)), RunTimeError::None);
    EXPECT_EQ(World.Folder.ReadFile("QUILL0.OLD"), before.at("quill0.dat")) << i;
    EXPECT_EQ(World.Folder.ReadFile("QUILL.OL2"), "") << i;
  }
}

// Whoever writes to a file that stays must not write to its safety copy.
TEST_F(BackupTest, OnlyWhatIsReplacedIsMovedToTheSafetyCopyInsteadOfCopied) {
  World.Folder.WriteFile("quill7.dat", "stays");
  const Files before = World.Folder.Files();
  const auto inode = [&](const std::string& name) {
    FileStamp stamp;
    EXPECT_EQ(World.Machine.Stamp(World.Folder.File(name), stamp), RunTimeError::None);
    return stamp.Inode;
  };
  const auto data = inode("quill0.dat");
  ASSERT_EQ(Restore(), RunTimeError::None);
  EXPECT_EQ(inode("QUILL0.OLD"), data);
  for (const auto& [name, bytes] : before) {
    const std::string copy = UpperCase(name.substr(0, name.find('.'))) + ".OLD";
    EXPECT_EQ(World.Folder.ReadFile(copy), bytes);
    EXPECT_NE(inode(name), inode(copy));
  }
  ASSERT_EQ(BackUpFiles(World.Access, World.Data, World.Data.DataPath), RunTimeError::None);
  EXPECT_EQ(inode("QUILL0.OL2"), data);
  EXPECT_NE(inode("quill0.dat"), inode("QUILL0.OLD"));
}

TEST_F(BackupTest, TheSafetyCopyBeforeTheLastComesBackInItsTurn) {
  const std::string folder = World.Data.DataPath;
  const auto copyAside = [&] { return BackUpFiles(World.Access, World.Data, folder); };
  const auto generation = [&](const std::string& notes) {
    ASSERT_EQ(World.Store.WriteRecordEntry("0", "Notes", notes), RunTimeError::None);
  };
  const auto notes = [&] { return World.Store.ReadRecordEntry("0", "Notes"); };
  generation("first");
  const Files first = World.Folder.Files();
  // What is copied twice pushes nothing out.
  for (const std::string name : {"first", "second", "second", "third"}) {
    generation(name);
    if (name != "third") {
      ASSERT_EQ(copyAside(), RunTimeError::None);
    }
  }
  for (const std::string name : {"second", "first", "third", "second"}) {
    World.Machine.HasLinks = name != "first";
    ASSERT_EQ(RestoreFrom(folder), RunTimeError::None);
    EXPECT_EQ(notes(), name);
    for (const std::string file : {"quill.dat", "quill1.dat"}) {
      EXPECT_EQ(World.Folder.ReadFile(file), first.at(file));
    }
  }
}

// Whatever the file in use is called, it is the one that is replaced.
TEST_F(BackupTest, OfNamesThatDifferInCaseOneRemains) {
  World.Folder.WriteFile("QUILL.DAT", "[General Info]\nApplication=Quillary\n");
  World.Folder.WriteFile("QUILL0.DAT", "spare");
  fs::rename(World.Folder.File("quill1.dat"), World.Folder.File("Quill1.Dat"));
  const Files backup = Medium.Files();
  ASSERT_EQ(Restore(), RunTimeError::None);
  const Files now = World.Folder.Files();
  EXPECT_EQ(now.at("quill.dat"), backup.at("QUILL.OLD"));
  EXPECT_EQ(now.at("quill0.dat"), backup.at("QUILL0.OLD"));
  EXPECT_EQ(now.at("Quill1.Dat"), backup.at("QUILL1.OLD"));
  EXPECT_EQ(now.at("QUILL0.DAT.spare"), "spare");
  EXPECT_EQ(now.size(), 4U + 3U + 2U) << "data, safety copies, spare ones";
  World.Folder.WriteFile("QUILL0.DAT", "another");
  ASSERT_EQ(Restore(), RunTimeError::None);
  EXPECT_EQ(World.Folder.ReadFile("QUILL0.DAT.spare"), "spare");
  EXPECT_EQ(World.Folder.ReadFile("QUILL0.DAT.spare2"), "another");
}

TEST_F(BackupTest, GivenUpAnywhereNothingIsChanged) {
  const Files data = World.Folder.Files();
  const Files medium = Medium.Files();
  for (int last = 0;; last += 5) {
    int asked = 0;
    const auto goesOn = [&](bool isDecided) { return isDecided || asked++ < last; };
    (void)BackUpFiles(World.Access, World.Data, Stick, nullptr, goesOn);
    if (Medium.Files() != medium) break;
    (void)RestoreFiles(World.Access, World.Data, Stick, nullptr, goesOn);
    EXPECT_EQ(World.Folder.Files(), data) << last;
    ASSERT_LT(last, 1000);
  }
  // Once the files take their places, a write to one of them comes too late or in time, but not
  // between.
  int decided = 0;
  const auto writes = [&](bool isDecided) {
    if (isDecided && decided++ == 0) {
      EXPECT_EQ(World.Store.WriteHeaderEntry("NoOfUses", "0"), RunTimeError::None);
    }
    return true;
  };
  Prepare();
  EXPECT_EQ(RestoreFiles(World.Access, World.Data, Stick, nullptr, writes), RunTimeError::None);
  EXPECT_EQ(decided, 7);
  EXPECT_EQ(World.Store.ReadHeaderEntry("NoOfRecords"), "210");
  EXPECT_TRUE(DataAreWhole());
}

TEST_F(BackupTest, TellsWhoseFaultItIs) {
  World.Machine.FailWrites(RunTimeError::PermissionDenied);
  EXPECT_EQ(BackUp(), RunTimeError::PermissionDenied);
  EXPECT_EQ(Fault, CopyFault::Medium);
  EXPECT_EQ(Restore(), RunTimeError::PermissionDenied);
  EXPECT_EQ(Fault, CopyFault::SafetyCopy);
  const JournalPart part("QUILL.OLD", ".quillary-12-QUILL.OLD.tmp");
  Medium.WriteFile("quill.jnl", JournalText({&part}));
  EXPECT_EQ(Restore(), RunTimeError::PermissionDenied);
  EXPECT_EQ(Fault, CopyFault::Unfinished);
  World.Machine.Reset();
  // A name of the data may be a folder's.
  fs::create_directory(World.Folder.File("QUILL2.DAT"));
  EXPECT_EQ(Restore(), RunTimeError::PathAccess);
  EXPECT_EQ(Fault, CopyFault::Data);
  fs::remove(World.Folder.File("QUILL2.DAT"));
  fs::create_symlink("pulled out", Medium.File("SPARE.OLD"));
  EXPECT_EQ(Restore(), RunTimeError::NotReady);
  EXPECT_EQ(Fault, CopyFault::Medium);
  fs::remove(Medium.File("SPARE.OLD"));
  ASSERT_EQ(mkfifo(Medium.File("SPARE.OLD").c_str(), 0600), 0);
  EXPECT_EQ(Restore(), RunTimeError::PathAccess);
  EXPECT_EQ(Fault, CopyFault::Medium);
  fs::remove(Medium.File("SPARE.OLD"));

  const Files before = Medium.Files();
  fs::remove(World.Folder.File("quill.dat"));
  EXPECT_EQ(BackUp(), RunTimeError::FileNotFound);
  EXPECT_EQ(Fault, CopyFault::Data);
  EXPECT_EQ(Medium.Files(), before);
}

TEST_F(BackupTest, TellsWhetherAFailedRestoreMayStillBeDone) {
  bool sawDecided = false;
  for (int call = 1;; ++call) {
    Prepare();
    const Files before = World.Folder.Files();
    Profile program = NewProgram();
    World.Machine.FailAt(call, RunTimeError::DiskFull, true);
    (void)RestoreFiles(program, World.Data, Stick, &Fault);
    const bool wasReached = World.Machine.WasReached();
    World.Machine.Reset();
    Profile next = NewProgram();
    ASSERT_EQ(next.Recover(World.Data.DataFile), RunTimeError::None);
    const bool mayChange = Fault == CopyFault::Decided || Fault == CopyFault::None;
    ASSERT_TRUE(mayChange || World.Folder.Files() == before) << call;
    sawDecided |= Fault == CopyFault::Decided;
    if (!wasReached) break;
  }
  EXPECT_TRUE(sawDecided);
}

TEST_F(BackupTest, AJournalMovesNothingButItsOwnTemporaryFiles) {
  const auto isObeyed = [](const std::string& temporary) {
    const JournalPart part("QUILL.OLD", temporary);
    return ParseJournal(JournalText({&part})).has_value();
  };
  EXPECT_TRUE(isObeyed(".quillary-12-QUILL.OLD.tmp"));
  EXPECT_FALSE(isObeyed("letter.txt"));
  EXPECT_FALSE(isObeyed(".quillary-12-/../../letter.tmp"));
}

}  // namespace
}  // namespace quillary::test
