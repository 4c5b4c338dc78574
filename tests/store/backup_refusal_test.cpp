#include "tests/store/backup_world.h"

namespace quillary::test {
namespace {

TEST_F(BackupTest, DataThatAreNotWholeReplaceNoBackup) {
  fs::remove(World.Folder.File("quill1.dat"));
  const Files before = Medium.Files();
  EXPECT_NE(BackUp(), RunTimeError::None);
  EXPECT_EQ(Fault, CopyFault::WouldReplace);
  EXPECT_EQ(Medium.Files(), before);
  EXPECT_NE(BackUpAgreed(), RunTimeError::None);
  EXPECT_EQ(Medium.Files(), before);
  // They are copied aside all the same, before something whole takes their place.
  EXPECT_EQ(Restore(), RunTimeError::None);
  EXPECT_TRUE(fs::exists(World.Folder.File("QUILL0.OLD")) && DataAreWhole());
}

// What a damaged file may have lost: a record, the way to it, the count that would tell.
TEST_F(BackupTest, MissesARecordWhateverElseIsDamaged) {
  const Files whole = World.Folder.Files();
  const auto with = [](std::string bytes, const std::string& old, const std::string& now) {
    const std::size_t at = bytes.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    return at == std::string::npos ? bytes : bytes.replace(at, old.size(), now);
  };
  const std::string& header = whole.at("quill.dat");
  const std::string& records = whole.at("quill1.dat");
  const std::string lost = with(records, "[Record110]", "[Lost110]");
  const std::string notCounted = with(header, "NoOfRecords=120", "NoOfRecords=?");
  const std::string deletedFirst = "DelFirstRecord=";
  const std::pair<std::string, std::string> damaged[] = {
      {header, lost},
      {notCounted, lost},
      {header, records.substr(0, records.size() / 2)},
      {with(header, "NameFirstRecord=", "NameFirstRecord=\r\nx="), records},
      {with(header, deletedFirst, deletedFirst + "9"), records},
      // A circle.
      {header, with(records, "NextName=",
                    "NextName=" + World.Store.ReadHeaderEntry("NameFirstRecord") + "\r\nx=")}};
  for (const auto& [headerNow, recordsNow] : damaged) {
    World.Folder.WriteFile("quill.dat", headerNow);
    World.Folder.WriteFile("quill1.dat", recordsNow);
    (void)BackUp();
    EXPECT_EQ(Fault, CopyFault::WouldReplace) << headerNow;
  }
  World.Folder.WriteFile("quill1.dat", records);
  World.Folder.WriteFile("quill.dat", notCounted);
  EXPECT_EQ(BackUp(), RunTimeError::None) << "nothing is missing";
}

TEST_F(BackupTest, TheUserDecidesOnDataThatLack) {
  const TempFolder empty;
  const std::string other = ProgramPath(empty.Path()) + "\\";
  fs::remove(World.Folder.File("quill1.dat"));
  for (const bool isAgreed : {false, true}) {
    (void)BackUpFiles(World.Access, World.Data, other, &Fault, {}, isAgreed);
    EXPECT_EQ(Fault, isAgreed ? CopyFault::None : CopyFault::NotWhole);
    EXPECT_EQ(fs::exists(empty.File("QUILL0.OLD")), isAgreed);
  }
  Prepare();
  ASSERT_EQ(World.Store.WriteRecordEntry("0", "Notes", "newer"), RunTimeError::None);
  for (const bool isAgreed : {false, true}) {
    const std::string before = World.Folder.ReadFile("quill0.dat");
    (void)RestoreFiles(World.Access, World.Data, other, &Fault, {}, {.EvenNotWhole = isAgreed});
    EXPECT_EQ(Fault, isAgreed ? CopyFault::None : CopyFault::NotWhole);
    EXPECT_EQ(World.Folder.ReadFile("QUILL0.OLD"), isAgreed ? before : "");
  }

  const std::string emptyHeader =
      "[General Info]\nApplication=Quillary\nTotalNoOfRecords=0\nNoOfRecords=0\n";
  World.Folder.WriteFile("quill.dat", emptyHeader);
  for (const bool isAgreed : {false, true}) {
    (void)BackUpFiles(World.Access, World.Data, Stick, &Fault, {}, isAgreed);
    EXPECT_EQ(Fault, isAgreed ? CopyFault::None : CopyFault::WouldEmpty);
    EXPECT_EQ(Medium.ReadFile("QUILL.OLD") == emptyHeader, isAgreed);
  }
}

TEST_F(BackupTest, TakesNothingButAWholeBackupOfItsOwn) {
  const Files before = World.Folder.Files();
  const std::string valid = Medium.ReadFile("QUILL.OLD");
  const auto expectRefused = [&](const std::string& why) {
    const bool isWhole = Restore() && Fault != CopyFault::NotWhole;
    EXPECT_FALSE(isWhole) << why;
    EXPECT_EQ(World.Folder.Files(), before) << why;
  };
  for (const std::string header : {"", "Application=Other\nTotalNoOfRecords=1\nNoOfRecords=1\n",
                                   "Application=Quillary\nTotalNoOfRecords=1\n"}) {
    Medium.WriteFile("QUILL.OLD", "[General Info]\n" + header);
    expectRefused(header);
  }
  Medium.WriteFile("QUILL.OLD", valid);
  const std::string file = Medium.ReadFile("QUILL1.OLD");
  fs::remove(Medium.File("QUILL1.OLD"));
  expectRefused("a record file is missing");
  Medium.WriteFile("QUILL1.OLD", "");
  expectRefused("a record file is empty");
  Medium.WriteFile("QUILL1.OLD", file);
  fs::remove(Medium.File("QUILL.OLD"));
  expectRefused("no header");
  fs::remove_all(Medium.Path());
  expectRefused("no folder");
  fs::create_directory(Medium.Path());
  expectRefused("an empty folder");

  // In capitals it is the same application.
  Medium.WriteFile("QUILL.OLD",
                   "[General Info]\nApplication=QUILLARY\nTotalNoOfRecords=0\nNoOfRecords=0\n");
  EXPECT_EQ(Restore(), RunTimeError::None);
}

// What lies there by chance is no backup.
TEST_F(BackupTest, OtherFilesOfThatKindDoNotKeepDamagedDataOut) {
  for (const char* name : {"QUILL.OLD", "QUILL0.OLD", "QUILL1.OLD", "QUILL2.OLD"}) {
    fs::remove(Medium.File(name));
  }
  for (const char* name : {"LETTERS.OLD", "QUILLPEN.OLD"}) Medium.WriteFile(name, "Ann");
  fs::remove(World.Folder.File("quill1.dat"));
  (void)BackUp();
  EXPECT_EQ(Fault, CopyFault::NotWhole);
  EXPECT_EQ(BackUpAgreed(), RunTimeError::None);
  EXPECT_EQ(Medium.ReadFile("LETTERS.OLD"), "Ann");
  // Of a backup any file may be what is left.
  fs::remove(Medium.File("QUILL.OLD"));
  fs::remove(Medium.File("QUILL0.OLD"));
  Medium.WriteFile("QUILL7.OLD", "");
  (void)BackUpAgreed();
  EXPECT_EQ(Fault, CopyFault::WouldReplace);
}

// The lists were stored without the names of a file that is lost; a backup still has them.
TEST_F(BackupTest, AsksOnceBeforeABackupWithMoreFilesIsReplaced) {
  for (const bool isOverwritten : {false, true}) {
    SCOPED_TRACE(isOverwritten);
    Prepare();
    WriteDataSet(World.Folder.Path(), {.Live = 120});
    ASSERT_EQ(BackUp(), RunTimeError::None);
    const std::string lost = World.Folder.ReadFile("quill1.dat");
    fs::remove(World.Folder.File("quill1.dat"));
    if (isOverwritten) World.Folder.WriteFile("quill1.dat", "nothing of its own");
    World.Open();
    World.Add("Ann", "Lee");
    ASSERT_EQ(World.Store.ReadHeaderEntry("MissingRecords"), "100-119");
    const Files before = Medium.Files();
    (void)BackUp();
    EXPECT_EQ(Fault, CopyFault::WouldLose);
    EXPECT_EQ(Medium.Files(), before);
    EXPECT_EQ(BackUpAgreed(), RunTimeError::None);
    EXPECT_EQ(BackUp(), RunTimeError::None);

    // The backup has the file as long as nothing takes its place.
    (void)Restore();
    EXPECT_EQ(Fault, isOverwritten ? CopyFault::NotWhole : CopyFault::None);
    fs::remove(Medium.File("QUILL1.OLD"));
    (void)Restore();
    EXPECT_EQ(Fault, CopyFault::NotWhole);
    // With the file there again nothing is lacking.
    Medium.WriteFile("QUILL1.OLD", lost);
    World.Folder.WriteFile("quill1.dat", lost);
    EXPECT_EQ(BackUp(), RunTimeError::None);
    EXPECT_EQ(Restore(), RunTimeError::None);
  }
}

}  // namespace
}  // namespace quillary::test
