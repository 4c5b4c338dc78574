#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/process.h"
#include "store/backup.h"
#include "store/journal.h"
#include "store/temporary_name.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

namespace fs = std::filesystem;

// Tells of every file that others could read while it was made.
struct WatchedDisk : HostDisk {
  RunTimeError Rename(const std::string& from, const std::string& to) override {
    Look(from);
    Look(fs::path(from).replace_filename(JournalName));
    return HostDisk::Rename(from, to);
  }
  void Look(const std::string& path) {
    FileStamp stamp;
    if (Stamp(path, stamp) != RunTimeError::None) return;
    if ((stamp.Permissions & 0077U) != 0) Readable.push_back(path);
    ++Seen;
  }
  std::vector<std::string> Readable;
  int Seen = 0;
};

struct Access {
  mode_t Permissions = 0;
  gid_t Group = 0;
  std::string List;
  bool operator==(const Access&) const = default;
};

constexpr const char* ListName = "system.posix_acl_access";

Access AccessOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
  std::string list(1024, '\0');
  const ssize_t size = getxattr(path.c_str(), ListName, list.data(), list.size());
  list.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  return {status.st_mode & 07777U, status.st_gid, list};
}

// Owner and user number 7 read and write, the group has nothing.
bool GiveAccessList(const std::string& path) {
  struct Entry {
    std::uint16_t Tag;
    std::uint16_t Permissions;
    std::uint32_t Id;
  };
  constexpr std::uint32_t None = 0xFFFFFFFF;
  const struct {
    std::uint32_t Version = 2;
    Entry Entries[5] = {{1, 6, None}, {2, 6, 7}, {4, 0, None}, {0x10, 6, None}, {0x20, 0, None}};
  } list;
  return setxattr(path.c_str(), ListName, &list, sizeof(list), 0) == 0;
}

TEST(Privacy, WhatIsMadeIsItsOwnersAloneFromItsFirstByteOn) {
  const mode_t before = umask(0);
  const TempFolder folder;
  const TempFolder medium;
  WatchedDisk disk;
  StoreData data;
  data.DataPath = ProgramPath(folder.Path()) + "\\quilldat\\";
  data.DataFile = data.DataPath + "quill.dat";
  StoreProgram program(disk, folder.Path(), folder.Path(), data);
  EXPECT_EQ(program.Access.MakeFolder(data.DataPath), RunTimeError::None);
  EXPECT_EQ(program.Access.WriteEntry("varek.ini", "QL32", "x", "1"), RunTimeError::None);
  EXPECT_EQ(program.Store.WriteNewHeader(), RunTimeError::None);
  program.Add("Ann", "Lee");
  for (const std::string& to : {ProgramPath(medium.Path()) + "\\", data.DataPath}) {
    EXPECT_EQ(BackUpFiles(program.Access, data, to), RunTimeError::None);
  }
  umask(before);

  EXPECT_GE(disk.Seen, 10);
  EXPECT_EQ(disk.Readable, std::vector<std::string>());
  EXPECT_EQ(AccessOf(folder.File("quilldat")).Permissions, 0700U);
  for (const std::string& path : {folder.Path(), medium.Path()}) {
    for (const auto& entry : fs::recursive_directory_iterator(path)) {
      if (entry.is_directory()) continue;
      EXPECT_EQ(AccessOf(entry.path()).Permissions, 0600U) << entry.path();
    }
  }
}

// Who has let others at a file has done so on purpose; but to them alone.
TEST(Privacy, AWriteLetsTheSamePeopleAtAFileAndNobodyElse) {
  StoreWorld world;
  const auto write = [&](const std::string& name) {
    return world.Access.WriteEntry(name, "S", "x", "1");
  };
  world.Folder.WriteFile("other", "[S]\r\n");
  for (const bool copies : {false, true}) {
    const std::string name = copies ? "copy" : "file";
    const std::string path = world.Folder.File(name);
    const auto expectKept = [&](const char* what) {
      const Access before = AccessOf(path);
      ASSERT_EQ(copies ? world.Access.CopyFiles({{"other", name}}) : write(name),
                RunTimeError::None);
      EXPECT_EQ(AccessOf(path), before) << what;
      world.Folder.WriteFile(name, "");
    };
    world.Folder.WriteFile(name, "");
    fs::permissions(path, fs::perms(0664));
    expectKept("permissions");
    // Whoever may give the file to another group.
    if (chown(path.c_str(), static_cast<uid_t>(-1), 1) == 0) expectKept("group");
    if (GiveAccessList(path)) expectKept("access list");
  }
  if (geteuid() != 0) return;

  // A user who is not in the file's group: its readers must not become those of his own group.
  fs::permissions(world.Folder.Path(), fs::perms(0777));
  world.Folder.WriteFile("theirs", "");
  constexpr uid_t Nobody = 65534;
  ASSERT_EQ(chown(world.Folder.File("theirs").c_str(), Nobody, 1), 0);
  fs::permissions(world.Folder.File("theirs"), fs::perms(0660));
  const pid_t child = fork();
  if (child == 0) {
    const bool isOther = setgroups(0, nullptr) == 0 && setgid(Nobody) == 0 && setuid(Nobody) == 0;
    _exit(isOther && write("theirs") == RunTimeError::None ? 0 : 1);
  }
  int status = 1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(AccessOf(world.Folder.File("theirs")), (Access{0600, Nobody, ""}));
}

// Whatever a link in the data folder or on the medium is called, what it leads to stays as it is.
TEST(Privacy, NothingIsWrittenThroughALink) {
  const TempFolder elsewhere;
  const TempFolder medium;
  StoreWorld world;
  const auto link = [&](const TempFolder& folder, const std::string& name,
                        const std::string& bytes) {
    elsewhere.WriteFile(name, bytes);
    fs::create_symlink(elsewhere.File(name), folder.File(name));
  };
  JournalPart part("quill.dat");
  part.Add("General Info", "NoOfRecords", "0", "9");
  link(world.Folder, "quill.jnl", JournalText({&part}));
  link(world.Folder, "quill.dat",
       "[General Info]\r\nApplication=Quillary\r\nTotalNoOfRecords=0\r\nNoOfRecords=0\r\n");
  link(world.Folder, "quill0.dat", "[Record7]\r\nx=1\r\n");
  for (const char* name : {"quill.dat", "quill0.dat", "quill0.dat.copy", "QUILL.OLD.copy"}) {
    link(world.Folder, TemporaryName(name, ProcessNumber()), name);
    link(medium, TemporaryName(name, ProcessNumber() + 1), name);
  }
  link(world.Folder, "QUILL.OL2", "older");
  link(medium, "QUILL.OLD", "[General Info]\r\n");
  link(medium, "QUILL0.OLD", "");
  fs::create_symlink("loop", world.Folder.File("loop"));
  const auto before = elsewhere.Files();

  EXPECT_EQ(world.Access.Recover(world.Data.DataFile), RunTimeError::None);
  world.Open();
  EXPECT_EQ(world.Access.ReadEntry(world.Data.DataPath + "quill0.dat", "Record7", "x"), "1");
  world.Add("Ann", "Lee");
  EXPECT_EQ(BackUpFiles(world.Access, world.Data, world.Data.DataPath, nullptr, {}, true),
            RunTimeError::None);
  EXPECT_EQ(
      BackUpFiles(world.Access, world.Data, ProgramPath(medium.Path()) + "\\", nullptr, {}, true),
      RunTimeError::None);
  world.Add("Bob", "Lee");
  EXPECT_EQ(world.Access.ReadEntry(world.Data.DataFile, "General Info", "TotalNoOfRecords"), "2");
  EXPECT_NE(world.Access.WriteEntry(world.Data.DataPath + "loop", "S", "x", "2"),
            RunTimeError::None);
  EXPECT_EQ(elsewhere.Files(), before);
}

// Links and counts name record files; no text in them leads anywhere else.
TEST(Privacy, NothingInARecordBecomesAPath) {
  const TempFolder outer;
  fs::create_directory(outer.File("data"));
  for (const char* text : {"../../x", "..\\..\\x", "0/../../x", "/etc/x", "-1", "4294967296",
                           "$(x)", "1;x", "99999999999999999999", "0\\\"\\n[x]\\n\""}) {
    StoreWorld world;
    world.Data.DataPath = ProgramPath(outer.File("data")) + "\\";
    world.Data.DataFile = world.Data.DataPath + "quill.dat";
    ASSERT_EQ(world.Store.WriteNewHeader(), RunTimeError::None);
    world.Open();
    for (const char* name : {"Ann", text, "Cid"}) world.Add(name, text, text);
    for (const char* key : {"NameFirstRecord", "CompanyFirstRecord", "DelFirstRecord",
                            "MissingRecords", "ReplacedRecords"}) {
      (void)world.Store.WriteHeaderEntry(key, text);
    }
    for (const char* key : {"NextName", "PrevName", "NextCompany", "NextDel"}) {
      (void)world.Store.WriteRecordEntry("1", key, text);
    }
    world.Open();
    world.Add("Dan", "Lee");
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(outer.Path())) {
      names.push_back(fs::relative(entry.path(), outer.Path()));
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"data", "data/quill.dat", "data/quill0.dat"}))
        << text;
    fs::remove(outer.File("data/quill.dat"));
    fs::remove(outer.File("data/quill0.dat"));
  }
}

}  // namespace
}  // namespace quillary::test
