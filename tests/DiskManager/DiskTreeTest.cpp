#include "DiskDetail.h"
#include "DiskTestHost.h"
#include "DiskTree.h"
#include "Dispatch.h"
#include "GetVolumeInfo.h"

#include <filesystem>
#include <fstream>

namespace brisko::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using DiskTreeTest = DiskTest;

std::vector<std::string> ids(const std::vector<DiskNode>& nodes) {
  std::vector<std::string> all;
  for (const DiskNode& node : nodes)
    all.push_back(node->diskId);
  return all;
}

DiskTree build() {
  return buildDiskTree(DiskTreeRules::forDiskManager());
}

TEST_F(DiskTreeTest, disksOfOneModelAreListedOnceUnlessTheyCanBeEjected) {
  auto stick = MadeDisks::disk("Twin", 8 * kGiB);
  stick["Ejectable"] = true;
  auto nameless = MadeDisks::disk("", 8 * kGiB);
  auto namelessStick = nameless;
  namelessStick["Ejectable"] = true;
  disks.addDisk("disk0", MadeDisks::disk("Twin", kGiB), {});
  disks.addDisk("disk1", MadeDisks::disk("Twin", kGiB), {});
  disks.addDisk("disk2", stick, {});
  disks.addDisk("disk3", nameless, {});
  disks.addDisk("disk4", namelessStick, {});
  const DiskTree tree = build();
  EXPECT_THAT(ids(tree.disks), ElementsAre("disk0", "disk2", "disk4"));
  EXPECT_EQ(tree.first, tree.disks[0]);
  // The shared list goes by the name alone.
  EXPECT_THAT(ids(buildDiskTree(DiskTreeRules::forVolumeLists()).disks),
              ElementsAre("disk0", "disk1", "disk2"));
}

TEST_F(DiskTreeTest, partitionsAreFilteredByWhatTheyAre) {
  auto small = MadeDisks::volume("Small", 800'000'000);
  auto smallStick = small;
  smallStick["Ejectable"] = true;
  auto unmounted = MadeDisks::volume("Unmounted", 20 * kGiB);
  unmounted["MountPoint"] = "";
  auto withoutPoint = MadeDisks::volume("NoPoint", 20 * kGiB);
  withoutPoint.erase("MountPoint");
  disks.setDetails("s1", MadeDisks::volume("EFI", 20 * kGiB));
  disks.setDetails("s2", small);
  disks.setDetails("s3", smallStick);
  disks.setDetails("s4", MadeDisks::volume("Five", 5'000'000'000));
  disks.setDetails("s5", unmounted);
  disks.setDetails("s6", withoutPoint);
  disks.addDisk("disk0", MadeDisks::disk("Disk", 90 * kGiB), {"s1", "s2", "s3", "s4", "s5", "s6"});
  const DiskTree tree = build();
  EXPECT_THAT(ids(tree.disks[0]->chrArr), ElementsAre("s3", "s4", "s6"));
  EXPECT_EQ(tree.disks[0]->chrCount, 6) << "before any filter";
  EXPECT_EQ(tree.disks[0]->chrArr[1]->diskType, "ExFAT");
  const auto shared = buildDiskTree(DiskTreeRules::forVolumeLists()).disks;
  EXPECT_THAT(ids(shared[0]->chrArr), ElementsAre("s1", "s3", "s5", "s6"));
  EXPECT_EQ(shared[0]->chrArr[0]->diskType, "USB") << "the bus";
}

TEST_F(DiskTreeTest, containersShowTheirFirstVolume) {
  using Fields = MadeDisks::Fields;
  auto store = MadeDisks::volume("", 20 * kGiB);
  disks.setDetails("disk0s2", store);
  disks.addDisk("disk0", MadeDisks::disk("Disk", 500'000'000'000), {"disk0s2"});
  const Fields first{{"DeviceIdentifier", "disk1s1"},
                     {"DeviceNode", "/dev/disk1s1"},
                     {"Name", "Data"},
                     {"CapacityInUse", 100'000'000'000},
                     {"APFSVolumeUUID", "U-1"}};
  const Fields second{{"DeviceIdentifier", "disk1s2"}, {"Name", "Other"}};
  const auto container = [&](const char* place, PropertyList::Array volumes) {
    return Fields{{"DesignatedPhysicalStore", place}, {"Volumes", std::move(volumes)}};
  };
  disks.setContainers({container("disk9s9", {second}), container("disk0s2", {}),
                       container("disk0s2", {first, second})});
  const DiskTree tree = build();
  ASSERT_EQ(tree.disks[0]->chrArr.size(), 1U);
  const DiskAndVolumeObj& node = *tree.disks[0]->chrArr[0];
  EXPECT_EQ(node.volumeName, "Data");
  EXPECT_EQ(node.diskType, "APFS");
  EXPECT_EQ(node.diskMediaName, "Unknow");
  EXPECT_EQ(node.diskContent, "PCI");
  EXPECT_EQ(node.diskSMARTStatus, "disk1s1") << "the identifier stands there";
  EXPECT_EQ(node.diskMount, "disk0");
  EXPECT_EQ(node.diskUUID, "U-1");
  EXPECT_EQ(node.nTotalSize, 499'999'997'952U) << "read back from the disk's text";
  EXPECT_EQ(node.nFreeSize, 399'999'997'952U);
  EXPECT_EQ(host.log().size(), 0U);
  buildDiskTree(DiskTreeRules::forVolumeLists());
  EXPECT_TRUE(host.logged("APFS-1-----------|disk0s2|"));
  EXPECT_TRUE(host.logged("APFS-1----------|disk0s2| |disk0s2|"));
}

TEST_F(DiskTreeTest, aDiskWithoutPartitionsShowsItsContainersVolumes) {
  disks.setDetails("disk1s1", MadeDisks::volume("Data", 20 * kGiB));
  disks.addDisk("disk1", MadeDisks::disk("Synthesized", 30 * kGiB), {"disk1s1"}, "APFSVolumes");
  EXPECT_THAT(ids(build().disks[0]->chrArr), ElementsAre("disk1s1"));
  const auto shared = buildDiskTree(DiskTreeRules::forVolumeLists()).disks;
  EXPECT_THAT(shared[0]->chrArr, IsEmpty());
}

TEST_F(DiskTreeTest, whatCannotBeReadMakesTheTreeShorter) {
  // Gone between the listing and the question; broken; with an identifier that fits no command.
  disks.addDisk("gone", {}, {});
  std::filesystem::remove(disks.detailsFile("gone"));
  disks.addDisk("broken", {}, {});
  std::ofstream(disks.detailsFile("broken")) << "<plist><dict><key>Media";
  disks.addDisk("disk2", MadeDisks::disk("Whole", kGiB), {"away", std::string(300, 'x')});
  const DiskTree tree = build();
  EXPECT_THAT(ids(tree.disks), ElementsAre("disk2"));
  EXPECT_EQ(tree.first, nullptr) << "the first entry was left out";
  EXPECT_THAT(tree.disks[0]->chrArr, IsEmpty());
  EXPECT_EQ(tree.disks[0]->chrCount, 2);
  EXPECT_THAT(tree.complaints, testing::HasSubstr("gone")) << "the tool's own words";
  for (const char* text : {"", "<plist><array/></plist>", "\x00\xFF"}) {
    std::ofstream(disks.listingFile()) << text;
    EXPECT_THAT(build().disks, IsEmpty());
  }
}

TEST_F(DiskTreeTest, theSharedListComesOnTheMainQueue) {
  disks.addDisk("disk0", MadeDisks::disk("Disk", kGiB), {});
  struct Delegate : GetVolumeInfoDelegate {
    bool ended = false;
    void scanEndVolume() override { ended = Dispatch::isMainThread(); }
  } delegate;
  GetVolumeInfo& shared = GetVolumeInfo::shareInstall();
  shared.delegate = &delegate;
  shared.getVolume();
  Dispatch::runUntil([&] { return delegate.ended; });
  shared.delegate = nullptr;
  EXPECT_THAT(ids(shared.allValue), ElementsAre("disk0"));
}

std::vector<std::string> values(const std::array<DiskDetailRow, 4>& rows) {
  std::vector<std::string> all;
  for (const DiskDetailRow& row : rows)
    all.push_back(row.caption + row.value);
  return all;
}

TEST_F(DiskTreeTest, thePanelSaysWhatIsKnown) {
  auto details = MadeDisks::volume("Photos", 4'000'000'000);
  details["Internal"] = false;
  disks.setDetails("disk0s1", details);
  disks.addDisk("disk0", MadeDisks::disk("Fast One", 500'000'000'000), {"disk0s1"});
  const DiskTree tree = build();
  const DiskDetail disk = diskDetail(*tree.disks[0], false);
  EXPECT_EQ(disk.subtitle, "500.00 GB SATA Internal Physical Disk  ");
  EXPECT_THAT(values(disk.left),
              ElementsAre("Location:Internal", "Connection:SATA",
                          "Partition Map:GUID_partition_scheme", "S.M.A.R.T.status:Verified"));
  EXPECT_THAT(values(disk.right), ElementsAre("Capacity:500.00 GB", "Child count:1",
                                              "Type:Solid state", "Device:disk0"));
  EXPECT_EQ(disk.usagePercent, 100);
  EXPECT_FALSE(disk.renameAllowed);
  const DiskDetail volume = diskDetail(*tree.disks[0]->chrArr[0], true);
  EXPECT_EQ(volume.imageName, "ic_diskos");
  EXPECT_EQ(volume.subtitle, "4.00 GB ExFAT External Physical Volumes ExFAT");
  EXPECT_THAT(values(volume.left), ElementsAre("Mount Point:/Volumes/Photos", "Capacity:4.00 GB",
                                               "Used:3.00 GB", "Device:disk0s1"));
  EXPECT_THAT(values(volume.right),
              ElementsAre("Type:ExFAT External Physical Volumes", "Available:1.00 GB",
                          "Owners:Disabled", "Connection:ExFAT"));
  EXPECT_EQ(volume.usagePercent, 75);
  EXPECT_TRUE(volume.renameAllowed);

  DiskAndVolumeObj bare;
  bare.diskUUID = "(null)";
  const DiskDetail unknown = diskDetail(bare, false);
  EXPECT_EQ(unknown.title, "Unknow");
  EXPECT_EQ(unknown.usagePercent, 0) << "a size of zero";
  EXPECT_EQ(unknown.left[0].value, "Unknow");
  EXPECT_FALSE(unknown.renameAllowed);
}

}  // namespace
}  // namespace brisko::test
