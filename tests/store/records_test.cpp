#include "store/records.h"

#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

struct RecordsTest : testing::Test {
  StoreWorld World;
  Records& Store = World.Store;
  FieldArray& Values = World.Data.FieldValues;
};

TEST_F(RecordsTest, RecordsStandInFilesOfAHundred) {
  World.Data.DataPath = "\\d\\";
  EXPECT_EQ(Store.RecordFile("0"), "\\d\\quill0.dat");
  EXPECT_EQ(Store.RecordFile("99"), "\\d\\quill0.dat");
  EXPECT_EQ(Store.RecordFile("100"), "\\d\\quill1.dat");
  EXPECT_EQ(Store.RecordFile(" 32766 "), "\\d\\quill327.dat");
  // What damaged files may hold for a number.
  EXPECT_EQ(Store.RecordFile(""), "\\d\\quill0.dat");
  EXPECT_EQ(Store.RecordFile("-1"), "\\d\\quill-1.dat");
  EXPECT_EQ(Store.RecordFile("99.5"), "\\d\\quill0.dat");
  EXPECT_EQ(Store.RecordFile("9e999"), "\\d\\quill1000000000000000.dat");
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
    EXPECT_EQ(c.First + c.Last + c.Company, std::string(Trim(c.First)) + std::string(Trim(c.Last)) +
                                                std::string(Trim(c.Company)));
  }
}

TEST_F(RecordsTest, WriteRecordStoresFieldsAsTypedAndTrimsAfterwards) {
  for (std::size_t i = 0; i < Values.size(); ++i) Values.at(i) = " " + std::to_string(i) + " ";
  Values[Field::Notes] = "Καλημέρα\rשלום\r\n\"王\" = [x] ; \\";
  const FieldArray typed = Values;
  ASSERT_EQ(Store.WriteRecord("100"), RunTimeError::None);
  EXPECT_EQ(Values[Field::FirstName], "1");
  EXPECT_EQ(Values[Field::Company], "4");
  EXPECT_EQ(Values[Field::Title], " 3 ");
  EXPECT_EQ(Store.ReadRecordEntry("100", "ShowName"), "2, 1");
  EXPECT_EQ(Store.ReadRecordEntry("100", "ShowCompany"), "( 4 )");
  EXPECT_TRUE(World.Folder.ReadFile("quill1.dat").starts_with("[Record100]\r\nSal="));
  EXPECT_EQ(Store.ReadRecord("100"), RunTimeError::None);
  EXPECT_EQ(Values, typed);

  // Without a name there is no salutation; a name of blanks is a name here.
  Values = {"Mr.", " "};
  ASSERT_EQ(Store.WriteRecord("5"), RunTimeError::None);
  EXPECT_EQ(Store.ReadRecordEntry("5", "Sal"), "Mr.");
  Values = {"Mr."};
  ASSERT_EQ(Store.WriteRecord("5"), RunTimeError::None);
  EXPECT_EQ(Store.ReadRecordEntry("5", "Sal"), "");
}

TEST_F(RecordsTest, AFailedWriteRecordLeavesTheFieldsAsTyped) {
  Values = {"Mr.", " Ann "};
  const FieldArray typed = Values;
  World.Machine.FailAt(1, RunTimeError::DiskFull, true);
  EXPECT_NE(Store.WriteRecord("0"), RunTimeError::None);
  EXPECT_EQ(Values, typed);
}

TEST_F(RecordsTest, ANewNumberNeverBelongsToARecordOfOldFiles) {
  World.Folder.WriteFile("quill.dat",
                         "[General Info]\r\nApplication=Quillary\r\nTotalNoOfRecords=98\r\n");
  World.Folder.WriteFile("quill0.dat", "[Record98]\r\nNotes=old\r\n[record99]\r\n");
  World.Folder.WriteFile("quill1.dat", "[Record100]\r\n");
  World.Open();
  std::string recNo;
  EXPECT_TRUE(Store.RecordExists("98"));
  EXPECT_FALSE(Store.RecordExists("9"));
  ASSERT_EQ(Store.NextRecordNumber(recNo), RunTimeError::None);
  EXPECT_EQ(recNo, "101");
  EXPECT_EQ(Store.ReadHeaderEntry("TotalNoOfRecords"), "102");

  for (const auto& [total, number] : std::initializer_list<std::pair<std::string, std::string>>{
           {"-7", "0"}, {"none", "0"}, {"257", "257"}, {"2147483646", "2147483646"}}) {
    ASSERT_EQ(Store.WriteHeaderEntry("TotalNoOfRecords", total), RunTimeError::None);
    EXPECT_EQ(Store.NextRecordNumber(recNo), RunTimeError::None);
    EXPECT_EQ(recNo, number);
  }
  EXPECT_EQ(Store.NextRecordNumber(recNo), RunTimeError::DeviceError);
  EXPECT_EQ(Store.ReadHeaderEntry("TotalNoOfRecords"), "2147483647");
}

}  // namespace
}  // namespace quillary::test
