#include "app/preferences.h"

#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

TEST(Preferences, AreReadAndTheVersionIsRaisedButNeverLowered) {
  const TempFolder folder;
  HostDisk disk;
  const FileNames names(disk, folder.Path(), folder.Path());
  Profile profile(disk, names);
  SharedData shared;
  const auto expectAfterLoading = [&](const std::string& before, const std::string& after) {
    folder.WriteFile("varek.ini", "[QL32]\r\n" + before);
    LoadPreferences(profile, shared);
    EXPECT_EQ(folder.ReadFile("varek.ini"), "[QL32]\r\n" + after);
  };
  const std::string entries =
      "NameField=2\r\nShow=1\r\nUsePrefix=-1\r\nPrefixSprt=\" 3\"\r\nPhone1Prefix=\" Tel \"\r\n"
      "CopyName=1\r\nCopyAddress=\" 1\"\r\nCopyFax= 1\r\nCopyEMail=0\r\n";
  expectAfterLoading("Version=1.5\r\n" + entries, "Version=2.0\r\n" + entries);
  EXPECT_EQ(shared.Version, "2.0");
  EXPECT_TRUE(shared.NameStyle == 2 && shared.ViewMode == 1 && shared.PrefixSprt == 3);
  EXPECT_TRUE(shared.UsePrefix);
  EXPECT_EQ(shared.Phone1Prefix, " Tel ");
  EXPECT_EQ(shared.CopyValues, (std::array<double, CopyFlagCount>{1, 0, 0, 1, 0, 0, 1, 0}));

  // What an earlier use of the data may have left.
  shared.FilterOn = true;
  shared.MsgBoxAnswer = -1;
  expectAfterLoading("Version=3\r\n", "Version=3\r\n");
  EXPECT_EQ(shared.Version, "3");
  EXPECT_TRUE(shared.NameStyle == 0 && !shared.UsePrefix && !shared.FilterOn);
  EXPECT_EQ(shared.MsgBoxAnswer, 1);
}

}  // namespace
}  // namespace quillary::test
