#include "store/records.h"

#include "tests/support/check_invariants.h"
#include "tests/support/data_set.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

// What the random sequences of the model test do not come upon.
struct RecordsTest : StoreTest {};

TEST_F(RecordsTest, RecordsStandInFilesOfAHundred) {
  Data.DataPath = "\\d\\";
  for (const auto& [recNo, file] : std::initializer_list<std::pair<std::string, std::string>>{
           {"99", "0"},
           {"100", "1"},
           {" 32766 ", "327"},
           // What damaged files may hold for a number.
           {"", "0"},
           {"-1", "-1"},
           {"99.5", "0"},
           {"9e999", "1000000000000000"}}) {
    EXPECT_EQ(Store.RecordFile(recNo), "\\d\\quill" + file + ".dat");
  }
}

TEST_F(RecordsTest, DisplayStrings) {
  struct Case {
    std::string First, Last, Company, ShowName, ShowCompany;
  };
  for (Case c :
       {Case{"Ann", "Lee", "Acme", "Lee, Ann", "( Acme )"}, Case{"  Ann ", "", "", "Ann", "Ann"},
        Case{"", " Lee", "  ", "Lee", "Lee"}, Case{"Ann", "Lee", "", "Lee, Ann", "Lee, Ann"},
        Case{" ", "", " Acme ", "( Acme )", "( Acme )"}, Case{"", "", "", "(  )", ""}}) {
    EXPECT_EQ(BuildShowName(c.First, c.Last, c.Company), c.ShowName);
    EXPECT_EQ(BuildShowCompany(c.First, c.Last, c.Company), c.ShowCompany);
    for (const auto& part : {c.First, c.Last, c.Company}) EXPECT_EQ(part, Trim(part));
  }
}

TEST_F(RecordsTest, WriteRecordStoresFieldsAsTypedAndTrimsAfterwards) {
  FieldArray& values = Data.FieldValues;
  for (std::size_t i = 0; i < values.size(); ++i) values.at(i) = " " + std::to_string(i) + " ";
  values[Field::Notes] = "Καλημέρα\rשלום\r\n\"王\" = [x] ; \\";
  const FieldArray typed = values;
  Machine.FailAt(1, RunTimeError::DiskFull, true);
  EXPECT_NE(Store.WriteRecord("100"), RunTimeError::None);
  EXPECT_EQ(values, typed);
  Machine.Reset();
  ASSERT_EQ(Store.WriteRecord("100"), RunTimeError::None);
  EXPECT_EQ(values[Field::FirstName] + values[Field::Company], "14");
  EXPECT_EQ(values[Field::Title], " 3 ");
  EXPECT_EQ(Value("100", "ShowName") + Value("100", "ShowCompany"), "2, 1( 4 )");
  EXPECT_TRUE(Folder.ReadFile("quill1.dat").starts_with("[Record100]\r\nSal="));
  EXPECT_EQ(Store.ReadRecord("100"), RunTimeError::None);
  EXPECT_EQ(values, typed);

  // Without a name there is no salutation; a name of blanks is a name here.
  for (const std::string name : {" ", ""}) {
    values = {"Mr.", name};
    ASSERT_EQ(Store.WriteRecord("5"), RunTimeError::None);
    EXPECT_EQ(Value("5", "Sal"), name.empty() ? "" : "Mr.");
  }
}

TEST_F(RecordsTest, ANewNumberNeverBelongsToARecordOfOldFiles) {
  SetHeader("TotalNoOfRecords", "98");
  Folder.WriteFile("quill0.dat", "[Record98]\r\nNotes=old\r\n[record99]\r\n");
  Folder.WriteFile("quill1.dat", "[Record100]\r\n");
  Open();
  EXPECT_FALSE(Store.RecordExists("9"));
  std::string recNo;
  for (const auto& [total, number] : std::initializer_list<std::pair<std::string, std::string>>{
           {"98", "101"}, {"-7", "0"}, {"none", "0"}, {"2147483646", "2147483646"}}) {
    SetHeader("TotalNoOfRecords", total);
    EXPECT_EQ(Store.NextRecordNumber(recNo), RunTimeError::None);
    EXPECT_EQ(recNo, number);
  }
  EXPECT_EQ(Store.NextRecordNumber(recNo), RunTimeError::DeviceError);
  EXPECT_EQ(Header("TotalNoOfRecords"), "2147483647");
}

TEST_F(RecordsTest, ADeletionIsRefusedBeforeAnythingIsWritten) {
  for (const std::string name : {"A", "B", "C"}) Add("", name);
  ASSERT_EQ(Delete("2"), RunTimeError::None);
  EXPECT_EQ(Store.DeleteRecord("7", 0), RunTimeError::BadRecordNumber);
  for (const std::string full : {"32767", "40000"}) {
    SetHeader("DelNoOfRecords", full);
    EXPECT_EQ(Delete("0"), RunTimeError::Overflow);
    EXPECT_EQ(Header("DelNoOfRecords"), full);
    // Editing needs no room there.
    EXPECT_EQ(Edit("0", Person("", "C")), RunTimeError::None);
    EXPECT_EQ(Lines.RecNos, (Texts{"1", "0"}));
  }
  SetHeader("DelNoOfRecords", "32766");
  EXPECT_EQ(Delete("0"), RunTimeError::None);
  EXPECT_EQ(Header("DelNoOfRecords"), "32767");
}

TEST_F(RecordsTest, TheCostOfAChangeDoesNotGrowWithTheNumberOfRecords) {
  const auto diskCalls = [](int live) {
    StoreWorld world;
    WriteDataSet(world.Folder.Path(), {.Live = live, .Deleted = 50});
    world.Open();
    const int before = world.Machine.Calls();
    world.Add("Maria", "Lind", "Cobalt");
    for (const std::size_t line : {5U, 80U, 200U}) {
      EXPECT_EQ(world.Store.DeleteRecord(world.Lines.RecNos[line], line), RunTimeError::None);
      EXPECT_EQ(world.Store.RestoreRecord(world.Header("DelFirstRecord")), RunTimeError::None);
    }
    EXPECT_TRUE(CheckInvariants(world));
    return world.Machine.Calls() - before;
  };
  // The neighbours stand in up to five other files, here as there.
  EXPECT_LT(diskCalls(3000), diskCalls(600) * 2);
}

}  // namespace
}  // namespace quillary::test
