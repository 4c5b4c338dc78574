#include "platform/file_names.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <optional>

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
  std::string Find(const std::string& name) const { return names_.Find(Program(name)); }

  TempFolder folder_;
  CountingDisk disk_;
  FileNames names_{disk_, folder_.File("own"), folder_.File("config")};
};

TEST_F(FileNamesTest, TakesBothSeparatorsAndFindsWithoutRegardToCase) {
  folder_.WriteFile("own/quilldat/QUILL.DAT", "x");
  const std::string file = folder_.File("own/quilldat/QUILL.DAT");
  EXPECT_EQ(Find("own\\quilldat\\QUILL.DAT"), file);
  EXPECT_EQ(Find("own/quilldat\\\\quill.dat"), file);
  EXPECT_EQ(names_.Find(UpperCase(Program("own\\quilldat\\quill.dat"))), file);
  EXPECT_EQ(Find("OWN\\QUILLDAT\\"), folder_.File("own/quilldat"));
  EXPECT_EQ(names_.Find("\\"), "/");
}

TEST_F(FileNamesTest, BareNamesStandInTheProfileFolderOthersBeginAtARoot) {
  folder_.WriteFile("config/Varek.INI", "");
  EXPECT_EQ(names_.Find("varek.ini"), folder_.File("config/Varek.INI"));
  EXPECT_EQ(names_.Find("other.ini"), folder_.File("config/other.ini"));
  EXPECT_EQ(names_.Find("QUILLDAT\\quill.dat"), folder_.File("own/quilldat/quill.dat"));
  EXPECT_EQ(names_.OwnDirectory(), Program("own\\"));
}

TEST_F(FileNamesTest, KeepsWhatDoesNotExistAsItIsWritten) {
  EXPECT_EQ(Find("OWN\\Fresh\\Quill.dat"), folder_.File("own/Fresh/Quill.dat"));
  // The part that does not exist ends the search, even for a name that exists elsewhere.
  EXPECT_EQ(Find("Nowhere\\QUILLDAT"), folder_.File("Nowhere/QUILLDAT"));
}

TEST_F(FileNamesTest, ChoosesAmongSeveralMatches) {
  for (const char* name : {"OWN", "Own", "oWN/quilldat"}) {
    fs::create_directories(folder_.File(name));
  }
  EXPECT_EQ(Find("oWN\\x"), folder_.File("oWN/x"));
  EXPECT_EQ(Find("owN\\QUILLDAT\\x"), folder_.File("own/quilldat/x"));
  folder_.WriteFile("own/quilldat/Quill.dat", "");
  folder_.WriteFile("own/quilldat/QUILL.dat", "");
  EXPECT_EQ(Find("own\\quilldat\\quill.DAT"), folder_.File("own/quilldat/QUILL.dat"));
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
  for (const std::string& name : names) each.push_back(names_.Find(name));
  disk_.Lists = 0;
  EXPECT_EQ(names_.FindAll({names.begin(), names.end()}), each);
  EXPECT_LT(disk_.Lists, static_cast<int>(names.size()));
}

// A data path is stored in upper case.
TEST_F(FileNamesTest, FindsAgainWhatWasPutIntoUpperCase) {
  for (const char* name : {"Übergröße", "ışık", "ςσ", "caf\xE9"}) {
    fs::create_directories(folder_.File(name));
    EXPECT_EQ(Find(UpperCase(name)), folder_.File(name));
  }
}

TEST_F(FileNamesTest, LinksThatLeadNowhereAreEntriesToo) {
  fs::create_symlink("loop", folder_.File("loop"));
  fs::create_symlink("missing", folder_.File("dangling"));
  folder_.WriteFile("Dangling", "");
  EXPECT_EQ(Find("dangling"), folder_.File("dangling"));
  EXPECT_EQ(Find("LOOP\\Quill.dat"), folder_.File("loop/Quill.dat"));
}

// A home folder may be one that can be entered but not read.
TEST_F(FileNamesTest, ReadsNoFolderForAPathThatExistsAndOnTheWayToItsOwnData) {
  folder_.WriteFile("own/quilldat/quill.dat", "");
  const std::string file = folder_.File("own/quilldat/quill.dat");
  EXPECT_EQ(Find("own\\quilldat\\quill.dat"), file);
  EXPECT_EQ(disk_.Stamps, 1);
  EXPECT_EQ(names_.Find(UpperCase(Program("own\\quilldat\\")) + "quill.dat"), file);
  EXPECT_EQ(disk_.Lists, 0);
}

// Sets an environment variable, or takes it away, as long as it lives.
class Environment {
 public:
  Environment(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    Set(value);
  }
  ~Environment() { Set(before_); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  void Set(const std::optional<std::string>& value) const {
    value ? setenv(name_, value->c_str(), 1) : unsetenv(name_);
  }

  const char* name_;
  std::optional<std::string> before_;
};

TEST(OwnDirectoryTest, IsTheExecutablesFolderUnlessThatIsBinOrCannotBeWritten) {
  const TempFolder folder;
  const Environment home("HOME", folder.Path());
  const Environment noData("XDG_DATA_HOME", std::nullopt);
  fs::create_directories(folder.File("opt/bin"));
  EXPECT_EQ(FindOwnDirectory(folder.File("opt")), folder.File("opt"));
  EXPECT_FALSE(fs::exists(folder.File(".local")));

  const std::string users = folder.File(".local/share/quillary");
  EXPECT_EQ(FindOwnDirectory(folder.File("opt/bin")), users);
  EXPECT_EQ(FindOwnDirectory(folder.File("gone")), users);
  if (geteuid() != 0) {  // who may write everywhere
    fs::permissions(folder.File("opt"), fs::perms(0500));
    EXPECT_EQ(FindOwnDirectory(folder.File("opt")), users);
  }
  struct stat status = {};
  ASSERT_EQ(stat(users.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);

  const Environment data("XDG_DATA_HOME", folder.File("data"));
  EXPECT_EQ(FindOwnDirectory(folder.File("opt/bin")), folder.File("data/quillary"));
}

TEST(OwnDirectoryTest, ProfilesStandInTheConfigurationFolder) {
  const TempFolder folder;
  const Environment home("HOME", folder.Path());
  {
    // A relative path would be another folder at every start.
    const Environment relative("XDG_CONFIG_HOME", "config");
    EXPECT_EQ(FindProfileFolder(), folder.File(".config"));
    EXPECT_TRUE(fs::is_directory(folder.File(".config")));
  }
  const Environment config("XDG_CONFIG_HOME", folder.File("a/b"));
  EXPECT_EQ(FindProfileFolder(), folder.File("a/b"));
  EXPECT_TRUE(fs::is_directory(folder.File("a/b")));

  const Environment noHome("HOME", std::nullopt);
  const Environment noConfig("XDG_CONFIG_HOME", std::nullopt);
  EXPECT_TRUE(FindProfileFolder().ends_with("/.config"));
}

}  // namespace
}  // namespace quillary::test
