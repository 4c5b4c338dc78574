#include "app/preferences.h"

#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

class PreferencesTest : public testing::Test {
 protected:
  void Load(const std::string& entries) {
    folder_.WriteFile("varek.ini", "[QL32]\r\n" + entries);
    LoadPreferences(profile_, shared_);
  }

  TempFolder folder_;
  HostDisk disk_;
  FileNames names_{disk_, folder_.Path(), folder_.Path()};
  Profile profile_{disk_, names_};
  SharedData shared_;
};

TEST_F(PreferencesTest, WithoutAFileTheDefaultsHoldAndTheVersionIsWritten) {
  // What an earlier use may have left.
  shared_.FilterOn = true;
  shared_.MsgBoxAnswer = -1;
  LoadPreferences(profile_, shared_);
  EXPECT_EQ(shared_.Version, "2.0");
  EXPECT_EQ(folder_.ReadFile("varek.ini"), "[QL32]\r\nVersion=2.0\r\n");
  EXPECT_EQ(shared_.NameStyle, 0);
  EXPECT_EQ(shared_.ViewMode, 0);
  EXPECT_FALSE(shared_.UsePrefix);
  EXPECT_EQ(shared_.EMailPrefix, "");
  for (const double value : shared_.CopyValues) EXPECT_EQ(value, 0);
  EXPECT_FALSE(shared_.FilterOn);
  EXPECT_EQ(shared_.MsgBoxAnswer, 1);
}

TEST_F(PreferencesTest, AVersionIsRaisedButNeverLowered) {
  Load("Version=1.5\r\nShow=1\r\n");
  EXPECT_EQ(shared_.Version, "2.0");
  EXPECT_EQ(folder_.ReadFile("varek.ini"), "[QL32]\r\nVersion=2.0\r\nShow=1\r\n");

  const std::string newer = "Version=3\r\n";
  Load(newer);
  EXPECT_EQ(shared_.Version, "3");
  EXPECT_EQ(folder_.ReadFile("varek.ini"), "[QL32]\r\n" + newer);
}

TEST_F(PreferencesTest, ReadsEveryPreference) {
  Load(
      "Version=2.0\r\nNameField=2\r\nShow=1\r\nUsePrefix=-1\r\nPrefixSprt=\" 3\"\r\n"
      "Phone1Prefix=\" Tel \"\r\nPhone2Prefix=Mobile\r\nFaxPrefix=Fax\r\nEMailPrefix=Mail\r\n"
      "CopyName=1\r\nCopyAddress=\" 1\"\r\nCopyFax= 1\r\nCopyEMail=0\r\n");
  EXPECT_EQ(shared_.NameStyle, 2);
  EXPECT_EQ(shared_.ViewMode, 1);
  EXPECT_TRUE(shared_.UsePrefix);
  EXPECT_EQ(shared_.PrefixSprt, 3);
  EXPECT_EQ(shared_.Phone1Prefix, " Tel ");
  EXPECT_EQ(shared_.Phone2Prefix, "Mobile");
  EXPECT_EQ(shared_.FaxPrefix, "Fax");
  EXPECT_EQ(shared_.EMailPrefix, "Mail");
  EXPECT_EQ(shared_.CopyValues, (std::array<double, CopyFlagCount>{1, 0, 0, 1, 0, 0, 1, 0}));
}

}  // namespace
}  // namespace quillary::test
