#include "platform/file_names.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QByteArray>
#include <filesystem>

#include "platform/text.h"
#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

namespace fs = std::filesystem;

// Counts what the names cost.
class CountingDisk : public HostDisk {
 public:
  RunTimeError Stamp(const std::string& path, FileStamp& stamp) override {
    ++Stamps;
    return HostDisk::Stamp(path, stamp);
  }
  RunTimeError List(const std::string& folder, std::vector<std::string>& names) override {
    ++Lists;
    return HostDisk::List(folder, names);
  }

  int Stamps = 0;
  int Lists = 0;
};

class FileNamesTest : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(folder_.File("own/quilldat"));
    fs::create_directories(folder_.File("config"));
  }

  // `name` as a path of the program, beginning at the temporary folder.
  std::string Program(const std::string& name) const {
    return ProgramPath(folder_.Path()) + "\\" + name;
  }

  TempFolder folder_;
  CountingDisk disk_;
  FileNames names_{disk_, folder_.File("own"), folder_.File("config")};
};

TEST_F(FileNamesTest, FindsWithoutRegardToCase) {
  for (const char* name : {"OWN", "Own", "oWN/quilldat", "Übergröße", "ışık", "ςσ", "caf\xE9"}) {
    fs::create_directories(folder_.File(name));
  }
  for (const char* file :
       {"own/quilldat/QUILL.DAT", "own/quilldat/QUILL.dat", "config/Varek.INI"}) {
    folder_.WriteFile(file, "");
  }
  // Links that lead nowhere are entries, too.
  fs::create_symlink("loop", folder_.File("loop"));
  fs::create_symlink("missing", folder_.File("dangling"));
  folder_.WriteFile("Dangling", "");
  const std::pair<std::string, std::string> cases[] = {
      {Program("own\\quilldat\\QUILL.DAT"), "own/quilldat/QUILL.DAT"},
      {Program("own/quilldat\\\\quill.dat"), "own/quilldat/QUILL.DAT"},  // the first in code order
      {UpperCase(Program("own\\quilldat\\quill.dat")), "OWN/QUILLDAT/QUILL.DAT"},
      {Program("own\\QUILLDAT\\"), "own/quilldat"},
      {Program("oWN\\x"), "oWN/x"},
      {Program("owN\\QUILLDAT\\x"), "own/quilldat/x"},
      {Program("OWN\\Fresh\\Quill.dat"), "OWN/Fresh/Quill.dat"},
      // What does not exist ends the search, even for a name that exists elsewhere.
      {Program("Nowhere\\QUILLDAT"), "Nowhere/QUILLDAT"},
      {Program("dangling"), "dangling"},
      {Program("LOOP\\Quill.dat"), "loop/Quill.dat"},
      {"varek.ini", "config/Varek.INI"},
      {"other.ini", "config/other.ini"},
      {"QUILLDAT\\quill.x", "own/quilldat/quill.x"}};
  for (const auto& [name, path] : cases) EXPECT_EQ(names_.Find(name), folder_.File(path)) << name;
  // A data path is stored in upper case.
  for (const char* name : {"Übergröße", "ışık", "ςσ", "caf\xE9"}) {
    EXPECT_EQ(names_.Find(Program(UpperCase(name))), folder_.File(name));
  }
  EXPECT_EQ(names_.Find("\\"), "/");
  EXPECT_EQ(names_.OwnDirectory(), Program("own\\"));
}

TEST_F(FileNamesTest, FindsManyFilesWithOneLookAtTheirFolders) {
  fs::create_directory(folder_.File("stick"));
  for (const char* name : {"QUILL0.DAT", "Quill1.Dat", "QUILL1.dat", "İ.dat"}) {
    folder_.WriteFile(std::string("own/quilldat/") + name, "");
  }
  std::vector<std::string> names{"other.ini", Program("nowhere\\QUILL.OLD")};
  for (const char* name : {"quill0.dat", "QUILL1.DAT", "quill2.dat", "i.dat"}) {
    names.push_back(Program("OWN/quilldat\\") + name);
    names.push_back(Program("stick\\") + name);
  }
  std::vector<std::string> each;
  each.reserve(names.size());
  for (const std::string& name : names) each.push_back(names_.Find(name));
  disk_.Lists = 0;
  EXPECT_EQ(names_.FindAll({names.begin(), names.end()}), each);
  EXPECT_LT(disk_.Lists, static_cast<int>(names.size()));
}

// A home folder may be one that can be entered but not read.
TEST_F(FileNamesTest, ReadsNoFolderForAPathThatExistsAndOnTheWayToItsOwnData) {
  folder_.WriteFile("own/quilldat/quill.dat", "");
  const std::string file = folder_.File("own/quilldat/quill.dat");
  EXPECT_EQ(names_.Find(Program("own\\quilldat\\quill.dat")), file);
  EXPECT_EQ(disk_.Stamps, 1);
  EXPECT_EQ(names_.Find(UpperCase(Program("own\\quilldat\\")) + "quill.dat"), file);
  EXPECT_EQ(disk_.Lists, 0);
}

// The folders of a user, as the environment tells them.
class UserFoldersTest : public testing::Test {
 protected:
  UserFoldersTest() { qputenv("HOME", folder_.Path().c_str()); }
  void TearDown() override {
    qputenv("HOME", home_);
    qunsetenv("XDG_DATA_HOME");
    qunsetenv("XDG_CONFIG_HOME");
  }

  const QByteArray home_ = qgetenv("HOME");
  TempFolder folder_;
};

TEST_F(UserFoldersTest, DataStandBesideTheExecutableUnlessThatIsInBinOrCannotBeWritten) {
  qunsetenv("XDG_DATA_HOME");
  fs::create_directories(folder_.File("opt/bin"));
  EXPECT_EQ(FindOwnDirectory(folder_.File("opt")), folder_.File("opt"));
  EXPECT_FALSE(fs::exists(folder_.File(".local")));

  const std::string users = folder_.File(".local/share/quillary");
  EXPECT_EQ(FindOwnDirectory(folder_.File("opt/bin")), users);
  EXPECT_EQ(FindOwnDirectory(folder_.File("gone")), users);
  struct stat status = {};
  ASSERT_EQ(stat(users.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);

  qputenv("XDG_DATA_HOME", folder_.File("data").c_str());
  EXPECT_EQ(FindOwnDirectory(folder_.File("opt/bin")), folder_.File("data/quillary"));
}

TEST_F(UserFoldersTest, ProfilesStandInTheConfigurationFolder) {
  qputenv("XDG_CONFIG_HOME", "config");  // relative: another folder at every start
  EXPECT_EQ(FindProfileFolder(), folder_.File(".config"));
  EXPECT_TRUE(fs::is_directory(folder_.File(".config")));
  qputenv("XDG_CONFIG_HOME", folder_.File("a/b").c_str());
  EXPECT_EQ(FindProfileFolder(), folder_.File("a/b"));
  EXPECT_TRUE(fs::is_directory(folder_.File("a/b")));
  qunsetenv("HOME");
  qunsetenv("XDG_CONFIG_HOME");
  EXPECT_TRUE(FindProfileFolder().ends_with("/.config"));
}

}  // namespace
}  // namespace quillary::test
