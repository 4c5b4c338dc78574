#include <filesystem>

#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

constexpr std::string_view EmptyHeader =
    "[General Info]\r\nApplication=Quillary\r\nTotalNoOfRecords=0\r\nNoOfRecords=0\r\n"
    "NameFirstRecord=\r\nCompanyFirstRecord=\r\nDelNoOfRecords=0\r\nDelFirstRecord=\r\n";

struct OpenDataFileTest : testing::Test, OpenDataFileHooks {
  bool AskToCreate(std::string_view text) override {
    Question = text;
    return Answer;
  }
  bool Open() {
    Question.clear();
    return World.Store.OpenDataFile("varek.ini", World.Names.OwnDirectory(), *this, Error);
  }
  // A header in the folder "data", which the preferences name.
  void Prepare(const std::string& header) {
    std::filesystem::create_directory(World.Folder.File("data"));
    World.Folder.WriteFile("data/quill.dat", header);
    const std::string path = World.Names.OwnDirectory() + "DATA\\";
    ASSERT_EQ(World.Access.WriteEntry("varek.ini", "Data Files", "QuillDataPath", path),
              RunTimeError::None);
  }

  StoreWorld World;
  bool Answer = true;
  std::string Question;
  RunTimeError Error = RunTimeError::None;
};

TEST_F(OpenDataFileTest, OpensAValidHeaderAndHoldsItsCountInRange) {
  for (const auto& [count, expected] : std::initializer_list<std::pair<std::string, int>>{
           {"12", 12}, {"99999", 32767}, {"-3", 0}, {"many", 0}}) {
    Prepare("[General Info]\nApplication=qUILLARY\nTotalNoOfRecords=x\nNoOfRecords=" + count);
    EXPECT_TRUE(Open());
    EXPECT_EQ(Question, "");
    EXPECT_EQ(World.Data.NoOfRecords, expected);
    EXPECT_TRUE(World.Data.DataFile.ends_with("\\DATA\\quill.dat"));
  }
  // Where the count says nothing, the lists do.
  for (const std::string count : {"many", "-5"}) {
    Prepare(
        "[General Info]\nApplication=Quillary\nTotalNoOfRecords=1\nNameFirstRecord=0\n"
        "CompanyFirstRecord=0\nNoOfRecords=" +
        count);
    World.Folder.WriteFile("data/quill0.dat", "[Record0]\nShowName=A\nShowCompany=A\n");
    EXPECT_TRUE(Open());
    World.Store.GetNamesList();
    EXPECT_EQ(World.Data.NoOfRecords, 1) << count;
  }
}

TEST_F(OpenDataFileTest, AsksAboutEveryOtherHeaderAndWritesNothingWhenDeclined) {
  const std::string missing =
      "I can't find an Quillary data files.\rShould I create a new empty one now?";
  const std::string foreign =
      "This is not a valid Quillary data file.\rShould I create a new empty one now?";
  Answer = false;
  EXPECT_FALSE(Open());
  EXPECT_EQ(Question, missing);
  EXPECT_FALSE(std::filesystem::exists(World.Folder.File("varek.ini")));

  for (const auto& [header, question] : std::initializer_list<std::pair<std::string, std::string>>{
           {"", missing},
           {"Application=Quillary\nTotalNoOfRecords=3\n", missing},
           {"Application=Quillary\nNoOfRecords=3\nTotalNoOfRecords=\n", missing},
           {"Application=Other\nTotalNoOfRecords=3\nNoOfRecords=3\n", foreign}}) {
    Prepare("[General Info]\n" + header);
    EXPECT_FALSE(Open());
    EXPECT_EQ(Question, question);
    EXPECT_EQ(Error, RunTimeError::None);
    EXPECT_EQ(World.Folder.ReadFile("data/quill.dat"), "[General Info]\n" + header);
    EXPECT_FALSE(std::filesystem::exists(World.Folder.File("quilldat")));
  }
}

TEST_F(OpenDataFileTest, CreatesAnEmptyDataSetBesideTheProgram) {
  const std::string foreign = "[General Info]\nApplication=Other\nNoOfRecords=7\n";
  Prepare(foreign);
  ASSERT_TRUE(Open());
  EXPECT_EQ(World.Data.NoOfRecords, 0);
  EXPECT_EQ(World.Data.DataPath, World.Names.OwnDirectory() + "quilldat\\");
  EXPECT_EQ(World.Folder.ReadFile("quilldat/quill.dat"), EmptyHeader);
  EXPECT_EQ(World.Folder.ReadFile("data/quill.dat"), foreign);
  EXPECT_EQ(World.Access.ReadEntry("varek.ini", "Data Files", "QuillDataPath"),
            UpperCase(World.Data.DataPath));

  // The next start finds it, in capitals, without a question.
  EXPECT_EQ(World.Add("Ann", "Lee"), "0");
  EXPECT_TRUE(Open());
  EXPECT_EQ(Question, "");

  // A damaged header there is replaced, the records of the old files stay.
  World.Folder.WriteFile("quilldat/quill.dat", "[General Info]\r\nApplication=?\r\n");
  ASSERT_TRUE(Open());
  EXPECT_EQ(World.Folder.ReadFile("quilldat/quill.dat"), EmptyHeader);
  World.Data.NamesList = World.Data.NamesRecNo = {""};
  World.Data.CompaniesList = World.Data.CompaniesRecNo = {""};
  EXPECT_EQ(World.Add("Bo", "Lee"), "1");
  EXPECT_EQ(World.Value("0", "FirstName"), "Ann");
}

TEST_F(OpenDataFileTest, KeepsTheHeaderOfRecordsThatLieThereAlready) {
  ASSERT_TRUE(Open());
  World.Add("Ann", "Lee", "");
  const std::string header = World.Folder.ReadFile("quilldat/quill.dat");
  std::filesystem::remove(World.Folder.File("varek.ini"));
  for (int start = 0; start < 2; ++start) {
    ASSERT_TRUE(Open());
    EXPECT_EQ(World.Folder.ReadFile("quilldat/quill.dat.kept"), header);
    std::filesystem::remove(World.Folder.File("varek.ini"));
  }
  EXPECT_FALSE(std::filesystem::exists(World.Folder.File("quilldat/quill.dat.kept2")));
  World.Folder.WriteFile("quilldat/quill.dat", header + "Other=1\r\n");
  ASSERT_TRUE(Open());
  EXPECT_EQ(World.Folder.ReadFile("quilldat/quill.dat.kept"), header);
  EXPECT_EQ(World.Folder.ReadFile("quilldat/quill.dat.kept2"), header + "Other=1\r\n");
}

TEST_F(OpenDataFileTest, WhatCannotBeCreatedIsToldAndNotOpen) {
  World.Machine.FailWrites(RunTimeError::DiskFull);
  EXPECT_FALSE(Open());
  EXPECT_EQ(Error, RunTimeError::DiskFull);
  EXPECT_EQ(World.Data.DataPath, "");
}

TEST_F(OpenDataFileTest, AHeaderThatCannotBeReadIsNotTakenForNone) {
  ASSERT_TRUE(Open());
  const std::string prefs = World.Folder.ReadFile("varek.ini");
  World.Folder.MakeUnreadable("quilldat/quill.dat");
  EXPECT_FALSE(Open());
  EXPECT_NE(Error, RunTimeError::None);
  EXPECT_EQ(World.Folder.ReadFile("varek.ini"), prefs);
}

}  // namespace
}  // namespace quillary::test
