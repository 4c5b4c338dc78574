#include <gtest/gtest.h>

#include <string>

#include "platform/desktop/volumes.h"

namespace quillary::test {
namespace {

TEST(Volumes, AreTheRootTheHomeFolderAndTheMedia) {
  const QByteArray table =
      "21 26 0:20 / /proc rw,relatime - proc proc rw\n"
      "26 1 8:1 / / rw,relatime shared:1 master:2 - ext4 /dev/sda1 rw\n"
      "27 26 8:2 / /home rw - ext4 /dev/sda2 rw\n"
      "28 26 8:3 / /boot/efi rw - vfat /dev/sdb3 rw\n"
      "29 26 0:24 / /media rw - tmpfs tmpfs rw\n"
      "30 26 8:17 / /media/me/OLD\\040STICK\\134 rw shared:7 - vfat /dev/sdb1 rw\n"
      "31 26 0:50 / /mnt/server rw - nfs server:/all rw\n"
      "32 26 0:51 / /mnt/auto rw - autofs systemd-1 rw\n"
      "33 26 8:33 / /data/card rw - exfat /dev/sdc1 rw\n"
      "34 26 8:49 / /data/disk rw - ext4 /dev/sdd1 rw\n"
      "35 30 8:18 / /media/me/OLD\\040STICK\\134 rw - vfat /dev/sdb2 rw\n"
      "half a line\n"
      "36 26 8:1 / /run/media/me/X rw -";
  std::string found;
  for (const Volume& volume :
       VolumesOf(table, QStringLiteral("/home/me"), [](const QByteArray& device) {
         return device == "8:33" || device == "8:3" || device == "8:1";
       })) {
    found += volume.Name.toStdString() + "|" + volume.Path.toStdString();
    found += volume.IsRemovable ? "|removable\n" : "\n";
  }
  EXPECT_EQ(found,
            "File System|/\nHome|/home/me\ncard|/data/card|removable\n"
            "OLD STICK\\|/media/me/OLD STICK\\|removable\nserver|/mnt/server|removable\n");
  EXPECT_EQ(MountedVolumes().at(0).Path, QStringLiteral("/"));  // of this machine
}

}  // namespace
}  // namespace quillary::test
