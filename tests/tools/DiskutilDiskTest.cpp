// diskutil on made disks: real loop devices with real partition tables and file systems.

#include "HostTools.h"
#include "LoopDisk.h"
#include "Machine.h"
#include "PropertyList.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <utility>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/swap.h>
#include <unistd.h>

namespace brisko::test {
namespace {

constexpr const char* kBasicData = "EBD0A0A2-B9E5-4433-87C0-68B6B72699C7";

HostTools::Outcome diskutil(std::vector<std::string> words) {
  words.insert(words.begin(), buildTree() + "/libexec/brisko/diskutil");
  return HostTools::run(words);
}

PropertyList listOf(std::vector<std::string> words) {
  const HostTools::Outcome outcome = diskutil(std::move(words));
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  return PropertyList::parse(outcome.output, "diskutil");
}

PropertyList infoOf(const std::string& node) {
  return listOf({"info", "-plist", node});
}

/// The tool refused with one line that says `why`.
void expectRefusal(const std::vector<std::string>& words, const std::string& why) {
  const HostTools::Outcome outcome = diskutil(words);
  EXPECT_EQ(outcome.status, 1) << outcome.output;
  EXPECT_EQ(outcome.output, "");
  EXPECT_NE(outcome.errors.find(why), std::string::npos) << outcome.errors;
  EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
}

void expectDone(const std::vector<std::string>& words) {
  const HostTools::Outcome outcome = diskutil(words);
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
}

bool mountExt4(const std::string& node, const std::string& at) {
  return ::mount(node.c_str(), at.c_str(), "ext4", MS_NOSUID, nullptr) == 0;
}

class DiskutilDisk : public testing::Test {
 protected:
  void SetUp() override {
    const std::string missing = LoopDisk::missing();
    if (!missing.empty()) GTEST_SKIP() << "because " << missing;
    if (!LoopDisk(folder / "probe.img", 1).isAttached())
      GTEST_SKIP() << "because the machine lets no loop device be attached";
  }

  /// A disk with three partitions of 60 MiB: ext4 "one", FAT "TWO", exFAT "drei".
  bool fill(const LoopDisk& disk) {
    return disk.partition(fmt::format("label: gpt\\n size=60M, type={0}\\n size=60M, type={0}\\n "
                                      "size=60M, type={0}\\n",
                                      kBasicData)) &&
           runs("mkfs.ext4 -q -L one " + disk.node(1)) &&
           runs("mkfs.fat -F 32 -n TWO " + disk.node(2)) &&
           runs("LC_ALL=C.UTF-8 mkfs.exfat -L drei " + disk.node(3));
  }

  /// In a mount name space of its own; fails the test when `work` failed there.
  void isolated(const std::function<void()>& work) {
    const int result = inMountNamespace([&] {
      work();
      return HasFailure() ? 1 : 0;
    });
    if (result == -2) GTEST_SKIP() << "because mount name spaces are not allowed here";
    EXPECT_EQ(result, 0);
  }

  TemporaryFolder folder;
  // No disk service of the machine answers here: the administrator's way is what is tried.
  Environment bus{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
};

TEST_F(DiskutilDisk, ListsDisksWithTheirVolumesInValidPropertyLists) {
  const LoopDisk disk(folder / "disk.img", 200);
  const LoopDisk straight(folder / "straight.img", 40);
  if (!fill(disk)) GTEST_SKIP() << "because partitions cannot be made here";
  ASSERT_TRUE(runs("mkfs.ext4 -q " + straight.node()));
  ASSERT_TRUE(runs("tune2fs -L \"$(printf 'e\\033v\\377i<l&')\" " + disk.node(1)));
  const std::string place = folder.folder("mounted");

  isolated([&] {
    ASSERT_TRUE(mountExt4(straight.node(), place));
    const PropertyList list = listOf({"list", "-plist"});
    const PropertyList* entry = nullptr;
    const PropertyList* single = nullptr;
    for (const PropertyList& each : list["AllDisksAndPartitions"].array()) {
      if (each["DeviceIdentifier"].string() == disk.identifier()) entry = &each;
      if (each["DeviceIdentifier"].string() == straight.identifier()) single = &each;
    }
    ASSERT_NE(entry, nullptr);
    ASSERT_NE(single, nullptr);
    ASSERT_EQ((*entry)["Partitions"].array().size(), 3U);
    EXPECT_EQ((*entry)["Partitions"][2U]["DeviceIdentifier"].string(), disk.identifier(3));
    ASSERT_EQ((*single)["Partitions"].array().size(), 1U);
    EXPECT_EQ((*single)["Partitions"][std::size_t{0}]["DeviceIdentifier"].string(),
              straight.identifier());

    const PropertyList whole = infoOf(disk.node());
    EXPECT_EQ(whole["BusProtocol"].string(), "Disk Image");
    EXPECT_EQ(whole["MediaName"].string(), "Disk Image " + disk.identifier());
    EXPECT_EQ(whole["Content"].string(), "GUID_partition_scheme");
    EXPECT_EQ(whole["VirtualOrPhysical"].string(), "Virtual");
    EXPECT_TRUE(whole["Ejectable"].isBool() && whole["Ejectable"].boolean());
    EXPECT_EQ(whole["TotalSize"].unsignedInteger(), 200U << 20);

    const PropertyList hostile = infoOf(disk.node(1));
    EXPECT_EQ(hostile["VolumeName"].string(), "e\xEF\xBF\xBDv\xEF\xBF\xBDi<l&");
    EXPECT_EQ(hostile["MountPoint"].string(), "");
    EXPECT_TRUE(hostile["MountPoint"].isString());
    const PropertyList fat = infoOf(disk.identifier(2));
    EXPECT_EQ(fat["FilesystemName"].string(), "MS-DOS FAT32");
    EXPECT_EQ(fat["VolumeName"].string(), "TWO");
    EXPECT_EQ(fat["TotalSize"].unsignedInteger(), 60U << 20);
    EXPECT_FALSE(fat["GlobalPermissionsEnabled"].boolean());
    EXPECT_EQ(infoOf(disk.node(3))["FilesystemName"].string(), "ExFAT");
    EXPECT_EQ(infoOf(fat["VolumeUUID"].string()), fat);

    const PropertyList nameless = infoOf(place);
    EXPECT_EQ(nameless["DeviceIdentifier"].string(), straight.identifier());
    EXPECT_EQ(nameless["VolumeName"].string(), "41.94 MB Volume");
    EXPECT_EQ(nameless["MountPoint"].string(), place);
    EXPECT_GT(nameless["FreeSpace"].unsignedInteger(), 20U << 20);

    const std::string shown = diskutil({"list"}).output;
    EXPECT_NE(shown.find("e\\x1Bv\\xFFi<l&"), std::string::npos) << shown;
    // Where no device manager tells what is on the disks, others than root are told so once.
    const bool isTold = std::filesystem::exists("/run/udev/data");
    EXPECT_EQ(asUser(kNobody,
                     [&] {
                       const HostTools::Outcome outcome = diskutil({"list", "-plist"});
                       EXPECT_EQ(outcome.status, 0);
                       EXPECT_NE(isTold, outcome.errors.starts_with("diskutil: no permission"));
                       return HasFailure() ? 1 : 0;
                     }),
              0);
  });
}

TEST_F(DiskutilDisk, FormatsWithEachTypeAndMountsAgainWhatWasMounted) {
  const LoopDisk disk(folder / "disk.img", 200);
  if (!fill(disk)) GTEST_SKIP() << "because partitions cannot be made here";
  const std::string place = folder.folder("mounted");

  isolated([&] {
    ASSERT_TRUE(mountExt4(disk.node(1), place));
    ASSERT_EQ(::chown(place.c_str(), kNobody, kNobody), 0);
    expectDone({"eraseVolume", "ext4", "$(new) -n", disk.node(1)});
    const PropertyList kept = infoOf(disk.node(1));
    EXPECT_EQ(kept["VolumeName"].string(), "$(new) -n");
    EXPECT_EQ(kept["MountPoint"].string(), place);
    EXPECT_EQ(kept["Content"].string(), "Linux");
    struct stat status;
    ASSERT_EQ(::stat(place.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, kNobody);
    ASSERT_EQ(::umount(place.c_str()), 0);

    struct Case {
      const char* type;
      const char* name;
      const char* shown;
      const char* content;
      const char* check;
    };
    const Case cases[] = {
        {"ExFAT", "Füße 12345", "Füße 12345", "Microsoft Basic Data", "fsck.exfat -n "},
        {"MS-DOS FAT32", "my stick", "MY STICK", "Microsoft Basic Data", "fsck.fat -n "},
        {"fat16", "-F", "-F", "Microsoft Basic Data", "fsck.fat -n "},
        {"ext4", "back", "back", "Linux", "e2fsck -fn "},
    };
    for (const Case& each : cases) {
      expectDone({"eraseVolume", each.type, each.name, disk.node(1)});
      const PropertyList info = infoOf(disk.node(1));
      EXPECT_EQ(info["VolumeName"].string(), each.shown);
      EXPECT_EQ(info["Content"].string(), each.content);
      EXPECT_TRUE(runs(each.check + disk.node(1))) << each.type;
      EXPECT_TRUE(info["MountPoint"].string().empty());
    }
    // The others stand as they were.
    EXPECT_EQ(infoOf(disk.node(2))["VolumeName"].string(), "TWO");
    EXPECT_TRUE(runs("fsck.exfat -n " + disk.node(3)));

    const std::string before = infoOf(disk.node(2))["VolumeUUID"].string();
    expectDone({"reformat", disk.node(2)});
    const PropertyList again = infoOf(disk.node(2));
    EXPECT_EQ(again["FilesystemName"].string(), "MS-DOS FAT32");
    EXPECT_EQ(again["VolumeName"].string(), "TWO");
    EXPECT_NE(again["VolumeUUID"].string(), before);
  });
}

TEST_F(DiskutilDisk, TheLeastSizesAreEnoughAndLessIsRefusedBeforeAnythingIsWritten) {
  const std::pair<const char*, std::uint64_t> cases[] = {
      {"ExFAT", 4}, {"MS-DOS FAT32", 33}, {"MS-DOS FAT16", 9}, {"ext4", 2}};
  for (const auto& [type, megabytes] : cases) {
    const LoopDisk enough(folder / fmt::format("{}.img", type), megabytes);
    expectDone({"eraseVolume", type, "ENOUGH", enough.node()});
    const LoopDisk less(folder / fmt::format("{} less.img", type), megabytes - 1);
    ASSERT_TRUE(runs("mke2fs -q -L OLD " + less.node()));
    expectRefusal({"eraseVolume", type, "NEW", less.node()}, "too small");
    EXPECT_EQ(infoOf(less.node())["VolumeName"].string(), "OLD");
  }
}

TEST_F(DiskutilDisk, RenamesByUuidAndTakesNamesLiterally) {
  const LoopDisk disk(folder / "disk.img", 200);
  if (!fill(disk)) GTEST_SKIP() << "because partitions cannot be made here";
  const std::string place = folder.folder("mounted");

  isolated([&] {
    ASSERT_TRUE(mountExt4(disk.node(1), place));
    const auto rename = [&](int partition, const std::string& name, const std::string& shown) {
      expectDone({"rename", infoOf(disk.node(partition))["VolumeUUID"].string(), name});
      EXPECT_EQ(infoOf(disk.node(partition))["VolumeName"].string(), shown);
    };
    rename(1, "-L `id` '\"", "-L `id` '\"");
    rename(2, "$(a) b", "$(A) B");
    rename(3, "--Änderung", "--Änderung");
    EXPECT_EQ(infoOf(disk.node(1))["MountPoint"].string(), place);

    expectRefusal({"rename", disk.node(1), "seventeen letters"}, "16 bytes");
    expectRefusal({"rename", disk.node(2), "twelve chars"}, "11 bytes");
    expectRefusal({"rename", disk.node(2), "a/b"}, "cannot hold '/'");
    expectRefusal({"rename", disk.node(2), "é"}, "ASCII");
    expectRefusal({"rename", disk.node(3), "a\nb"}, "control character");
    expectRefusal({"rename", disk.node(3), " "}, "empty");
    expectRefusal({"rename", disk.node(), "x"}, "no file system");
    EXPECT_EQ(infoOf(disk.node(3))["VolumeName"].string(), "--Änderung");
    EXPECT_EQ(asUser(kNobody,
                     [&] {
                       expectRefusal({"rename", disk.node(1), "x"}, "the administrator");
                       return HasFailure() ? 1 : 0;
                     }),
              0);
  });
}

TEST_F(DiskutilDisk, RefusesToFormatOrEjectWhatIsInUse) {
  const LoopDisk disk(folder / "disk.img", 200);
  if (!fill(disk)) GTEST_SKIP() << "because partitions cannot be made here";
  const LoopDisk swap(folder / "swap.img", 40);
  const LoopDisk fixed(folder / "fixed.img", 40, true);
  const std::string place = folder.folder("mounted");
  ASSERT_TRUE(runs("mkswap " + swap.node()));

  isolated([&] {
    const auto refusesBoth = [&](const LoopDisk& of, int partition, const std::string& why) {
      expectRefusal({"eraseVolume", "ExFAT", "x", of.node(partition)}, why);
      expectRefusal({"eject", of.node(partition)}, why);
    };
    if (::swapon(swap.node().c_str(), 0) == 0) {
      refusesBoth(swap, 0, "swap space");
      ASSERT_EQ(::swapoff(swap.node().c_str()), 0);
    }

    ASSERT_TRUE(mountExt4(disk.node(1), "/srv"));
    refusesBoth(disk, 1, "running system");
    ASSERT_EQ(::umount("/srv"), 0);

    ASSERT_TRUE(mountExt4(disk.node(1), place));
    ASSERT_EQ(::mkdir((place + "/inner").c_str(), 0755), 0);
    ASSERT_EQ(::mount("none", (place + "/inner").c_str(), "tmpfs", 0, nullptr), 0);
    refusesBoth(disk, 1, "mounted inside");
    ASSERT_EQ(::umount((place + "/inner").c_str()), 0);
    const int open = ::open((place + "/inner").c_str(), O_RDONLY | O_CLOEXEC);
    refusesBoth(disk, 1, "are open");
    ::close(open);
    ASSERT_EQ(::umount(place.c_str()), 0);

    const int held = ::open(disk.node(2).c_str(), O_RDWR | O_EXCL | O_CLOEXEC);
    expectRefusal({"eraseVolume", "ExFAT", "x", disk.node(2)}, "in use by another program");
    ::close(held);

    expectRefusal({"eraseVolume", "ExFAT", "x", disk.node()}, "whole disk with partitions");
    expectRefusal({"reformat", disk.node()}, "whole disk with partitions");
    expectRefusal({"eraseVolume", "ExFAT", "x", fixed.node()}, "read-only");
    expectRefusal({"eraseVolume", "ExFAT", "twelve chars", disk.node(2)}, "11 characters");
    expectRefusal({"eject", "/dev/nothing"}, "no disk or volume");
    EXPECT_EQ(diskutil({"eraseVolume", "ReiserFS", "x", disk.node(2)}).status, 2);
    EXPECT_EQ(diskutil({"eraseVolume", "ExFAT", disk.node(2)}).status, 2);

    EXPECT_EQ(infoOf(disk.node(1))["VolumeName"].string(), "one");
    EXPECT_EQ(infoOf(disk.node(2))["VolumeName"].string(), "TWO");
    EXPECT_TRUE(runs("e2fsck -fn " + disk.node(1)) && runs("fsck.fat -n " + disk.node(2)));
  });
  EXPECT_TRUE(disk.isAttached());
}

TEST_F(DiskutilDisk, WhatTheStartLooksForKeepsItsNames) {
  if (::access("/etc/fstab", F_OK) != 0) GTEST_SKIP() << "because this system has no fstab";
  const LoopDisk disk(folder / "disk.img", 20);
  ASSERT_TRUE(runs("mkfs.ext4 -q -L one " + disk.node()));
  const std::string uuid = infoOf(disk.node())["VolumeUUID"].string();

  isolated([&] {
    const auto tableSays = [&](const std::string& tag, const char* options) {
      const std::string table = folder.file("fstab", tag + " /data ext4 " + options + " 0 2\n");
      ASSERT_EQ(::mount(table.c_str(), "/etc/fstab", nullptr, MS_BIND, nullptr), 0);
    };
    tableSays("UUID=" + uuid, "defaults");
    expectRefusal({"reformat", disk.node()}, "by its UUID");
    tableSays("LABEL=one", "defaults,nofail");
    expectRefusal({"eraseVolume", "ext4", "two", disk.node()}, "by its LABEL");
    expectRefusal({"rename", disk.node(), "two"}, "by its LABEL");
    tableSays("LABEL=one", "noauto");
    expectDone({"rename", disk.node(), "two"});
  });
}

TEST_F(DiskutilDisk, RefusesToFormatWhatIsTheRootOfAChangedRoot) {
  const LoopDisk disk(folder / "disk.img", 60);
  ASSERT_TRUE(runs("mkfs.ext4 -q -L system " + disk.node()));
  const std::string root = folder.folder("root");

  isolated([&] {
    ASSERT_TRUE(mountExt4(disk.node(), root));
    for (const std::string& part :
         {std::string("/usr"), std::string("/bin"), std::string("/lib"), std::string("/lib64"),
          std::string("/proc"), std::string("/sys"), std::string("/dev"), buildTree()}) {
      if (::access(part.c_str(), F_OK) != 0) continue;
      std::filesystem::create_directories(root + part);
      ASSERT_EQ(::mount(part.c_str(), (root + part).c_str(), nullptr, MS_BIND | MS_REC, nullptr),
                0);
    }
    ASSERT_TRUE(::chroot(root.c_str()) == 0 && ::chdir("/") == 0);
    expectRefusal({"eraseVolume", "ext4", "x", disk.node()}, "(it is mounted at /)");
    expectRefusal({"eject", disk.node()}, "(it is mounted at /)");
    EXPECT_FALSE(infoOf("/")["Ejectable"].boolean());
  });
}

TEST_F(DiskutilDisk, EjectUnmountsEverythingAndDetaches) {
  const LoopDisk disk(folder / "disk.img", 200);
  if (!fill(disk) || !runs("mkfs.ext4 -q -F " + disk.node(2)))
    GTEST_SKIP() << "because partitions cannot be made here";
  const std::string place = folder.folder("mounted");
  const std::string other = folder.folder("other");

  isolated([&] {
    ASSERT_TRUE(mountExt4(disk.node(1), place));
    ASSERT_TRUE(mountExt4(disk.node(2), other));
    // One of two cannot be unmounted: both stay.
    const int open = ::open((place + "/lost+found").c_str(), O_RDONLY | O_CLOEXEC);
    expectRefusal({"eject", disk.identifier()}, "are open");
    EXPECT_EQ(infoOf(disk.node(1))["MountPoint"].string(), place);
    EXPECT_EQ(infoOf(disk.node(2))["MountPoint"].string(), other);
    ::close(open);

    // One inside the other, both of this disk, is no obstacle; saying a volume ejects its disk.
    ASSERT_EQ(::umount(other.c_str()), 0);
    ASSERT_TRUE(mountExt4(disk.node(2), place + "/lost+found"));
    expectDone({"eject", disk.node(2)});
    const std::string content = contentOf("/proc/self/mountinfo");
    EXPECT_EQ(content.find(disk.identifier()), std::string::npos) << content;
  });
  if (IsSkipped()) return;
  EXPECT_FALSE(disk.isAttached());
  EXPECT_NE(::access(disk.node(1).c_str(), F_OK), 0);
}

}  // namespace
}  // namespace brisko::test
