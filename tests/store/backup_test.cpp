#include "store/backup.h"

#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

// A data set of two record files, an older backup of one that had other records, and programs over
// them.
struct BackupTest : testing::Test {
  BackupTest() { Prepare(); }

  void Prepare() {
    for (const TempFolder* folder : {&World.Folder, &Medium}) {
      for (const auto& entry : fs::directory_iterator(folder->Path())) fs::remove_all(entry);
    }
    WriteDataSet(World.Folder.Path(), {.Live = 120, .Deleted = 5});
    const TempFolder other;
    WriteDataSet(other.Path(), {.Live = 210});
    for (const auto& [name, bytes] : other.Files()) {
      Medium.WriteFile(UpperCase(name.substr(0, name.size() - 3)) + "OLD", bytes);
    }
    Medium.WriteFile("letter.txt", "Dear Ann");
  }
  RunTimeError BackUp(bool isAgreed = false) {
    return BackUpFiles(World.Access, World.Data, Stick, &Fault, {}, isAgreed);
  }
  RunTimeError CopyAside() { return BackUpFiles(World.Access, World.Data, World.Data.DataPath); }
  std::optional<RunTimeError> Restore() { return RestoreFrom(Stick); }
  std::optional<RunTimeError> RestoreFrom(const std::string& source) {
    return RestoreFiles(World.Access, World.Data, source, &Fault);
  }
  // The checks look for the names that the program itself gives.
  bool DataAreWhole() {
    for (const std::string number : {"1", "2"}) {
      std::error_code isNoMore;
      fs::rename(World.Folder.File("QUILL" + number + ".DAT"),
                 World.Folder.File("quill" + number + ".dat"), isNoMore);
    }
    return CheckFiles(World.Folder.Path());
  }
  StoreWorld World;
  TempFolder Medium;
  std::string Stick = ProgramPath(Medium.Path()) + "\\";
  CopyFault Fault = CopyFault::None;
};

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
  ASSERT_EQ(CopyAside(), RunTimeError::None);
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
  World.Set("205", "Notes", "back again");
  EXPECT_FALSE(fs::exists(World.Folder.File("quill2.dat")));
  World.Open();
  EXPECT_EQ(World.Data.NoOfRecords, 210);
  EXPECT_TRUE(DataAreWhole());
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
  ASSERT_EQ(CopyAside(), RunTimeError::None);
  EXPECT_EQ(inode("QUILL0.OL2"), data);
  EXPECT_NE(inode("quill0.dat"), inode("QUILL0.OLD"));
}

// What is copied or restored twice pushes nothing out.
TEST_F(BackupTest, TheSafetyCopyBeforeTheLastComesBackInItsTurn) {
  const Files before = World.Folder.Files();
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(Restore(), RunTimeError::None);
    World.SetHeader("NoOfUses", std::to_string(i));
    EXPECT_EQ(World.Folder.ReadFile("QUILL0.OLD"), before.at("quill0.dat")) << i;
    EXPECT_EQ(World.Folder.ReadFile("QUILL.OL2"), "") << i;
  }
  Prepare();
  const Files first = World.Folder.Files();
  for (const std::string name : {"first", "second", "second", "third"}) {
    World.Set("0", "Notes", name);
    if (name != "third") {
      ASSERT_EQ(CopyAside(), RunTimeError::None);
    }
  }
  for (const std::string name : {"second", "first", "third", "second"}) {
    World.Machine.HasLinks = name != "first";
    ASSERT_EQ(RestoreFrom(World.Data.DataPath), RunTimeError::None);
    EXPECT_EQ(World.Value("0", "Notes"), name);
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
  EXPECT_EQ(World.Header("NoOfRecords"), "210");
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
    Profile program(World.Machine, World.Names);
    World.Machine.FailAt(call, RunTimeError::DiskFull, true);
    (void)RestoreFiles(program, World.Data, Stick, &Fault);
    const bool wasReached = World.Machine.WasReached();
    World.Machine.Reset();
    Profile next(World.Machine, World.Names);
    ASSERT_EQ(next.Recover(World.Data.DataFile), RunTimeError::None);
    const bool mayChange = Fault == CopyFault::Decided || Fault == CopyFault::None;
    ASSERT_TRUE(mayChange || World.Folder.Files() == before) << call;
    sawDecided |= Fault == CopyFault::Decided;
    if (!wasReached) break;
  }
  EXPECT_TRUE(sawDecided);
}

// What a damaged file may have lost: a record, the way to it, the count that would tell.
TEST_F(BackupTest, DataThatAreNotWholeReplaceNoBackup) {
  const Files whole = World.Folder.Files();
  const Files backup = Medium.Files();
  const auto with = [](std::string bytes, const std::string& old, const std::string& now) {
    const std::size_t at = bytes.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    return at == std::string::npos ? bytes : bytes.replace(at, old.size(), now);
  };
  const std::string& header = whole.at("quill.dat");
  const std::string& records = whole.at("quill1.dat");
  const std::string lost = with(records, "[Record110]", "[Lost110]");
  const std::string notCounted = with(header, "NoOfRecords=120", "NoOfRecords=?");
  const std::string circle = "NextName=" + World.Header("NameFirstRecord") + "\r\nx=";
  const std::pair<std::string, std::string> damaged[] = {
      {header, ""},
      {header, lost},
      {notCounted, lost},
      {header, records.substr(0, records.size() / 2)},
      {with(header, "NameFirstRecord=", "NameFirstRecord=\r\nx="), records},
      {with(header, "DelFirstRecord=", "DelFirstRecord=9"), records},
      {header, with(records, "NextName=", circle)}};
  for (const auto& [headerNow, recordsNow] : damaged) {
    World.Folder.WriteFile("quill.dat", headerNow);
    World.Folder.WriteFile("quill1.dat", recordsNow);
    for (const bool isAgreed : {false, true}) {
      EXPECT_NE(BackUp(isAgreed), RunTimeError::None) << headerNow;
      EXPECT_EQ(Fault, CopyFault::WouldReplace) << headerNow;
      EXPECT_EQ(Medium.Files(), backup);
    }
  }
  // They are copied aside all the same, before something whole takes their place.
  EXPECT_EQ(Restore(), RunTimeError::None);
  EXPECT_TRUE(fs::exists(World.Folder.File("QUILL0.OLD")) && DataAreWhole());
  World.Folder.WriteFile("quill0.dat", whole.at("quill0.dat"));
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
  World.Set("0", "Notes", "newer");
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
  const Files valid = Medium.Files();
  const auto expectRefused = [&](const std::string& why) {
    const bool isWhole = Restore() && Fault != CopyFault::NotWhole;
    EXPECT_FALSE(isWhole) << why;
    EXPECT_EQ(World.Folder.Files(), before) << why;
  };
  for (const auto& [file, bytes] : std::initializer_list<std::pair<std::string, std::string>>{
           {"QUILL.OLD", "[General Info]\n"},
           {"QUILL.OLD", "[General Info]\nApplication=Other\nTotalNoOfRecords=1\nNoOfRecords=1\n"},
           {"QUILL.OLD", "[General Info]\nApplication=Quillary\nTotalNoOfRecords=1\n"},
           {"QUILL1.OLD", ""}}) {
    Medium.WriteFile(file, bytes);
    expectRefused(file + bytes);
    fs::remove(Medium.File(file));
    expectRefused("no " + file);
    Medium.WriteFile(file, valid.at(file));
  }
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
  EXPECT_EQ(BackUp(true), RunTimeError::None);
  EXPECT_EQ(Medium.ReadFile("LETTERS.OLD"), "Ann");
  // Of a backup any file may be what is left.
  fs::remove(Medium.File("QUILL.OLD"));
  fs::remove(Medium.File("QUILL0.OLD"));
  Medium.WriteFile("QUILL7.OLD", "");
  (void)BackUp(true);
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
    ASSERT_EQ(World.Header("MissingRecords"), "100-119");
    const Files before = Medium.Files();
    (void)BackUp();
    EXPECT_EQ(Fault, CopyFault::WouldLose);
    EXPECT_EQ(Medium.Files(), before);
    EXPECT_EQ(BackUp(true), RunTimeError::None);
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
