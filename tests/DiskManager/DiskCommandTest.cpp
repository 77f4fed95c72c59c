#include "DiskAndVolumeInfo.h"
#include "DiskCommandText.h"
#include "DiskFormat.h"
#include "DiskOffers.h"
#include "DiskTestHost.h"
#include "ExecCommand.h"
#include "VolumeName.h"

#include <filesystem>

#include <sys/stat.h>

namespace brisko::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using DiskCommandTest = DiskTest;
using DiskCommandDeathTest = DiskTest;

TEST(DiskCommandTextTest, aNameFitsToTheLastCharacter) {
  const std::string head = "diskutil rename U \"\"";
  const std::string longest(127 - head.size(), 'x');
  EXPECT_TRUE(DiskCommandText::fits(DiskCommandText::rename("U", longest), 128));
  EXPECT_FALSE(DiskCommandText::fits(DiskCommandText::rename("U", longest + "x"), 128));
  EXPECT_EQ(DiskCommandText::fittingForRename("U", longest + "xyz"), longest.size());
  std::string wide;
  for (int i = 0; i < 100; ++i)
    wide += "ü";
  EXPECT_EQ(DiskCommandText::fittingForRename("U", wide), longest.size() / 2);
  EXPECT_EQ(DiskCommandText::fittingForRename("U", std::string(200, '$')), longest.size() / 2)
      << "each is escaped";
}

TEST(VolumeNameTest, fatTakesElevenCapitals) {
  EXPECT_EQ(VolumeName::forType("my long volume name", "MS-DOS FAT32"), "MY LONG VOL");
  EXPECT_EQ(VolumeName::forType("äöüéßñ-abcdefgh", "MS-DOS FAT32"), "ÄÖÜÉßÑ-ABCD");
  EXPECT_EQ(VolumeName::forType("\xFFx", "MS-DOS FAT32"), "\xFFX");
  EXPECT_EQ(VolumeName::forType("my long volume name", "MS-DOS FAT16"), "my long volume name");
}

TEST_F(DiskCommandTest, theShellTakesNamesLiterally) {
  for (const std::string name : {"$(touch pwned)", "`id`", "a\"b", "a\\", "a'b", "; rm -rf x", "*",
                                 "a && b", "-plist", "!x", "ü $HOME"}) {
    const auto before = disks.calls().size();
    EXPECT_TRUE(DiskAndVolumeInfo::renameDiskWithGuid("1234-ABCD", name));
    const auto calls = disks.calls();
    ASSERT_EQ(calls.size(), before + 1);
    EXPECT_EQ(calls.back(), "<rename><1234-ABCD><" + name + ">");
  }
  // What the tool itself says is a UUID or an identifier is no more to be trusted.
  DiskAndVolumeInfo::renameDiskWithGuid("U; touch pwned", "x");
  EXPECT_EQ(disks.calls().back(), "<rename><U; touch pwned><x>");
  DiskAndVolumeInfo::ejcDiskWithGuid("disk2 $(id)");
  EXPECT_EQ(disks.calls().back(), "<eject></dev/disk2 $(id)>");
}

TEST_F(DiskCommandTest, operationsSayYesWheneverTheToolWasStarted) {
  EXPECT_FALSE(DiskAndVolumeInfo::renameDiskWithGuid("U", ""));
  EXPECT_FALSE(DiskAndVolumeInfo::ejcDiskWithGuid(""));
  EXPECT_THAT(disks.calls(), IsEmpty());
  disks.setAction("eject", "echo 'it is in use' >&2; exit 3");
  DiskCommandEnd end;
  EXPECT_TRUE(DiskAndVolumeInfo::ejcDiskWithGuid("disk2", &end));
  EXPECT_EQ(end.status, 3);
  EXPECT_EQ(end.errors, "it is in use\n");
}

TEST_F(DiskCommandTest, runnersReturnTheirFileWhateverCameOfIt) {
  const std::string folder = disks.runtime() + "/brisko-" + std::to_string(geteuid()) + "/";
  EXPECT_EQ(ZKExecCommand(nullptr), std::nullopt);
  EXPECT_EQ(ZKExecCommand("exit 7"), folder + "quarnel.plist");
  EXPECT_EQ(LExecCommand("echo x"), folder + "MainDisk.plist");
  EXPECT_EQ(contentOf(folder + "MainDisk.plist"), "x\n");
  EXPECT_EQ(eraserDiskCommand("true"), folder + "briskoVeraserVolume.plist");
  EXPECT_EQ(eraserExecCommand("true"), folder + "briskoVolumeTemp.plist");
  EXPECT_EQ(aepairExecCommand("true"), folder + "briskoRepairTemp.plist");
  // What lies there already is deleted first: a link leads nowhere, and no answer is an old one.
  const std::string victim = root.file("victim", "mine");
  std::filesystem::remove(folder + "quarnel.plist");
  std::filesystem::create_symlink(victim, folder + "quarnel.plist");
  ZKExecCommand("echo over");
  EXPECT_EQ(contentOf(victim), "mine");
  EXPECT_EQ(contentOf(folder + "quarnel.plist"), "over\n");
  struct stat status {};
  ASSERT_EQ(stat(folder.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700U);
}

TEST_F(DiskCommandTest, volumesAreFoundByWhatLiesOnThemAndEjectedByTheirNumber) {
  mount("Outer");
  mount("Outer/Inner");
  workspace->volumes[1].device = "/dev/sdb1";
  const std::string outer = root / "Volumes/Outer";
  EXPECT_EQ(DiskAndVolumeInfo::getVolumeRefNumWith(outer + "/file"), 1);
  EXPECT_EQ(DiskAndVolumeInfo::getVolumeRefNumWith(outer + "/Inner/file"), 2);
  EXPECT_TRUE(host.logged("The server location is: file://" + outer + "/Inner"));
  EXPECT_EQ(DiskAndVolumeInfo::getVolumeRefNumWith(outer + "side"), 0);
  EXPECT_TRUE(host.logged("An error occurred: 2"));
  EXPECT_TRUE(DiskAndVolumeInfo::ejcDiskWithGuidNum(2));
  EXPECT_THAT(disks.calls(), ElementsAre("<eject></dev/sdb1>"));
  disks.setAction("eject", "exit 1");
  EXPECT_FALSE(DiskAndVolumeInfo::ejcDiskWithGuidNum(2));
  EXPECT_FALSE(DiskAndVolumeInfo::ejcDiskWithGuidNum(3));
}

TEST_F(DiskCommandDeathTest, aCommandThatDoesNotFitIsNeverRun) {
  const std::string name(200, 'x');
  EXPECT_DEATH(DiskAndVolumeInfo::ZKGetDiskInfo(name.c_str()), "");
  EXPECT_TRUE(DiskAndVolumeInfo::detailsOf(name)["MediaName"].string().empty());
  EXPECT_DEATH(DiskAndVolumeInfo::renameDiskWithGuid("U", name), "");
  EXPECT_DEATH(DiskAndVolumeInfo::ejcDiskWithGuid(name), "");
  EXPECT_DEATH(DiskAndVolumeInfo::GetMainDiskInfo(name.c_str()), "");
  EXPECT_DEATH(ZKExecCommand(std::string(2040, ' ').c_str()), "");
  EXPECT_THAT(disks.calls(), IsEmpty());
}

DiskAndVolumeObj volumeOfType(const char* type) {
  DiskAndVolumeObj volume;
  volume.volumeName = "Photos";
  volume.diskType = type;
  volume.volRootDir = volume.volumePath = "/dev/sdb1";
  return volume;
}

TEST_F(DiskCommandTest, whatAFormatDoesGoesByTheCurrentType) {
  const auto exfat = DiskFormat::plan(volumeOfType("ExFAT"), " ", "Journaled HFS+");
  EXPECT_EQ(exfat.command, "diskutil eraseVolume \"Journaled HFS+\" \"NEW\" \"/dev/sdb1\"");
  const auto fat = DiskFormat::plan(volumeOfType("ext4"), "holiday pictures", "MS-DOS FAT32");
  EXPECT_EQ(fat.command, "diskutil eraseVolume \"MS-DOS FAT32\" \"HOLIDAY PIC\" \"/dev/sdb1\"");
  const auto ntfs = DiskFormat::plan(volumeOfType("Windows NTFS"), "Mine", "ExFAT");
  EXPECT_EQ(ntfs.command, "diskutil eraseVolume \"MS-DOS FAT32\" NEW \"/dev/sdb1\"");
  const auto apfs = DiskFormat::plan(volumeOfType("APFS"), "Mine", "ExFAT");
  EXPECT_EQ(apfs.command, "/usr/sbin/diskutil reformat /dev/sdb1");
  // The panel before it starts with what will be made.
  EXPECT_FALSE(DiskFormat::question("A", "ExFAT").typeIsFixed);
  EXPECT_TRUE(DiskFormat::question("A", "APFS").typeIsFixed);
  EXPECT_EQ(DiskFormat::question("A 'b'", "ntfs3").type, "MS-DOS FAT32");
  EXPECT_EQ(DiskFormat::question("A 'b'", "ntfs3").text,
            "All data on 'A 'b'' will be deleted after format, do you want to format it?");
  EXPECT_EQ(DiskFormat::run(apfs).status, 0);
  EXPECT_EQ(DiskFormat::run(ntfs).status, 0);
  EXPECT_THAT(disks.calls(),
              ElementsAre("<reformat></dev/sdb1>", "<eraseVolume><MS-DOS FAT32><NEW></dev/sdb1>"));
  EXPECT_THAT(DiskFormat::refusal(exfat), IsEmpty());
  const auto tooLong = DiskFormat::plan(volumeOfType("ExFAT"), std::string(90, 'x'), "ExFAT");
  EXPECT_EQ(DiskFormat::refusal(tooLong),
            "The name is too long: it has 90 characters, and 84 fit.");
}

TEST_F(DiskCommandTest, operationsAreOfferedOnlyWhereTheyAreSafe) {
  struct Row {
    const char* name;
    const char* mount;
    const char* type;
    const char* driver;
    bool isSystemVolume;
    bool rename;
    bool format;
  };
  mount("Photos");
  mount("Old Name");
  mount("Windows", "ntfs3");
  mount("Fused", "fuseblk");
  const std::string volumes = root / "Volumes/";
  const Row rows[] = {
      {"Photos", "x", "ExFAT", "exfat", false, true, true},
      {"Photos", "x", "ExFAT", "exfat", true, true, false},
      {"Photos", "/", "ExFAT", "exfat", false, true, false},
      {"Photos", "x", "Disk Image", "exfat", false, true, false},
      {"Windows", "x", "whatever", "ntfs3", false, false, true},
      {"Fused", "x", "Windows NTFS", "fuseblk", false, false, true},
      {"Missing", "/home", "ext4", "ext4", false, false, false},
      {"..", "x", "ext4", "ext4", false, false, false},
      {"New Name", "Old Name", "ExFAT", "exfat", false, true, true},
  };
  for (const Row& row : rows) {
    DiskAndVolumeObj node = volumeOfType(row.type);
    node.volumeName = row.name;
    node.diskMount = row.mount == std::string("Old Name") ? volumes + row.mount : row.mount;
    const DiskOffers offers = checkNTFS(node, row.isSystemVolume, workspace->volumes);
    EXPECT_EQ(offers.rename, row.rename) << row.name << " " << row.type;
    EXPECT_EQ(offers.format, row.format) << row.name << " " << row.type;
  }
  EXPECT_TRUE(host.logged("Result:1 Volume: " + volumes +
                          "Windows, Removable:0, W:1, Unmountable:1, Desc:, type:ntfs3"));
  DiskAndVolumeObj disk = volumeOfType("USB");
  disk.isDisk = true;
  EXPECT_FALSE(checkNTFS(disk, false, workspace->volumes).format);
}

}  // namespace
}  // namespace brisko::test
