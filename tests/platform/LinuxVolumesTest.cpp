#include "LinuxVolumes.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

namespace brisko {
namespace {

std::vector<std::string> rootsOf(const std::vector<MountedVolume>& volumes) {
  std::vector<std::string> roots;
  for (const MountedVolume& volume : volumes)
    roots.push_back(volume.root);
  return roots;
}

TEST(LinuxVolumes, KeepsWhatHoldsFilesOfPeopleAndNothingElse) {
  test::TemporaryFolder folder;
  const std::string table =
      folder.file("mountinfo",
                  "22 1 0:20 / /proc rw - proc proc rw\n"
                  "30 1 8:17 / /media/u/USB\\040STICK rw - vfat /dev/sdb1 rw\n"
                  "23 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                  "24 23 8:1 / /boot/efi rw - vfat /dev/sda1 rw\n"
                  "25 23 8:2 /srv/data /data rw - ext4 /dev/sda2 rw\n"
                  "26 23 7:0 / /snap/core/1 ro - squashfs /dev/loop0 ro\n"
                  "27 23 0:40 / /mnt/share rw - nfs4 server:/share rw\n"
                  "28 23 0:41 /@home /home rw - btrfs /dev/sdc1 rw\n"
                  "29 23 0:41 /@srv /srv rw - btrfs /dev/sdc1 rw\n"
                  "31 23 8:3 / /mnt/hidden rw - ext4 /dev/sda3 rw\n"
                  "32 31 8:4 / /mnt/hidden rw - ext4 /dev/sda4 rw\n");
  const auto volumes = linuxMountedVolumes(table);
  EXPECT_EQ(rootsOf(volumes), (std::vector<std::string>{"/", "/media/u/USB STICK", "/mnt/share",
                                                        "/home", "/mnt/hidden"}));
  EXPECT_EQ(volumes[4].device, "/dev/sda4") << "what was mounted last there is seen";
  EXPECT_EQ(volumes[2].place, MountedVolume::Place::network);
  EXPECT_TRUE(volumes[2].isEjectable);
  EXPECT_EQ(volumes[1].name, "USB STICK");
  EXPECT_FALSE(volumes[0].isEjectable);
}

TEST(LinuxVolumes, ThisMachineHasItsRootAndAnUnreadableTableHasNothing) {
  const auto volumes = linuxMountedVolumes();
  ASSERT_FALSE(volumes.empty());
  EXPECT_EQ(volumes.front().root, "/");
  EXPECT_GT(volumes.front().totalBytes, 0U);
  EXPECT_TRUE(linuxMountedVolumes("/nonexistent/mountinfo").empty());
}

}  // namespace
}  // namespace brisko
