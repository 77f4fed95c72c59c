#include "DemoDisks.h"

#include "Machine.h"
#include "UnlinkGuard.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace brisko::test {
namespace {

using Fields = MadeDisks::Fields;

// Beside the root: what is cleaned there must not take the disks along.
std::string folderBeside(const std::string& root) {
  const std::string folder = root + "-disks";
  UnlinkGuard::allow(root);
  UnlinkGuard::allow(folder);
  fs::remove_all(folder);
  fs::create_directories(folder);
  return folder;
}

Fields volume(const char* name, std::uint64_t size, std::uint64_t free, const char* type,
              const char* mount) {
  Fields fields = MadeDisks::volume(name, size);
  fields["FreeSpace"] = free;
  fields["FilesystemName"] = fields["FilesystemUserVisibleName"] = type;
  fields["MountPoint"] = mount;
  return fields;
}

}  // namespace

DemoDisks::~DemoDisks() {
  std::error_code error;
  fs::remove_all(root_ + "-disks", error);
}

DemoDisks::DemoDisks(const std::string& root) : root_(root), host_(folderBeside(root)) {
  MadeDisks& disks = host_.disks;
  // The other tools are the program's own.
  fs::create_symlink(buildTree() + "/libexec/brisko/srm", disks.tools() + "/srm");
  disks.setDetails("nvme0n1p2", volume("System", 480'000'000'000, 181'400'000'000, "ext4", "/"));
  disks.setDetails("nvme0n1p3",
                   volume("Archive", 32'000'000'000, 21'000'000'000, "ext4", "/srv/archive"));
  Fields internal = MadeDisks::disk("NVMe Drive 970", 512'110'190'592);
  internal["BusProtocol"] = "NVMe";
  disks.addDisk("nvme0n1", internal, {"nvme0n1p2", "nvme0n1p3"});
  Fields photos =
      volume("Photos", 2'000'000'000'000, 131'000'000'000, "ExFAT", "/media/anna/Photos");
  photos["Ejectable"] = true;
  photos["Internal"] = false;
  disks.setDetails("sda1", photos);
  Fields external = MadeDisks::disk("Portable SSD T7", 2'000'398'934'016);
  external["BusProtocol"] = "USB";
  external["Ejectable"] = true;
  external["Internal"] = false;
  disks.addDisk("sda", external, {"sda1"});
  Fields stick =
      volume("HOLIDAY", 15'600'000'000, 9'300'000'000, "MS-DOS FAT32", "/media/anna/HOLIDAY");
  stick["Ejectable"] = true;
  stick["Internal"] = false;
  disks.setDetails("sdb1", stick);
  Fields drive = MadeDisks::disk("USB Flash Drive", 15'728'640'000);
  drive["BusProtocol"] = "USB";
  drive["Ejectable"] = true;
  drive["Internal"] = false;
  drive["Content"] = "FDisk_partition_scheme";
  drive.erase("SMARTStatus");
  disks.addDisk("sdb", drive, {"sdb1"});
  const auto answering = host_.smart->add("nvme0n1");
  answering->nvme = true;
  answering->health = {38, 12'480, 934};
}

void mountDemoDisks(const std::string& root) {
  for (const char* name : {"System", "Photos", "HOLIDAY"})
    fs::create_directories(root + "/Volumes/" + name);
}

}  // namespace brisko::test
