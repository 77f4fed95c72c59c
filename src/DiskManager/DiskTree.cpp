#include "DiskTree.h"

#include "CommUti.h"
#include "DiskAndVolumeInfo.h"
#include "DiskCommandText.h"
#include "PropertyList.h"
#include "SystemLog.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <utility>

namespace brisko {
namespace {

constexpr const char* kUnknown = "Unknow";
constexpr std::size_t kMostComplaints = 16;

void setSizes(DiskAndVolumeObj& node, std::uint64_t total, std::uint64_t free) {
  node.nTotalSize = total;
  node.totalSpace = CommUti::convertVolSpace(total);
  node.nFreeSize = free;
  node.freeSpace = CommUti::convertVolSpace(free);
}

// What the details of disks and of volumes have in common.
DiskNode nodeOf(const PropertyList& info) {
  auto node = std::make_shared<DiskAndVolumeObj>();
  node->bCanEject = info["Ejectable"].boolean();
  setSizes(*node, info["TotalSize"].unsignedInteger(), info["FreeSpace"].unsignedInteger());
  node->diskId = info["DeviceIdentifier"].string();
  node->diskMediaName = info["MediaName"].string();
  node->diskSMARTStatus = info["SMARTStatus"].string();
  node->diskContent = info["Content"].string();
  node->isInter = info["Internal"].boolean();
  node->isSolidState = info["SolidState"].boolean();
  node->volRootDir = node->volumePath = info["DeviceNode"].string();
  node->isWritable = info["Writable"].boolean();
  node->vORpStr = info["VirtualOrPhysical"].string();
  return node;
}

DiskNode diskOf(const PropertyList& info) {
  DiskNode disk = nodeOf(info);
  disk->diskType = info["BusProtocol"].string();
  disk->volumeName = disk->diskMediaName;
  disk->isDisk = true;
  return disk;
}

// A volume that shares its container's free space has none of its own, and shows none.
DiskNode volumeOf(const PropertyList& info, const DiskTreeRules& rules) {
  DiskNode volume = nodeOf(info);
  volume->diskType = info[rules.volumeTypeIsItsBus ? "BusProtocol" : "FilesystemName"].string();
  volume->diskMount = info["MountPoint"].string();
  volume->isOeners = info["GlobalPermissionsEnabled"].boolean();
  volume->diskEx = info["FilesystemUserVisibleName"].string();
  volume->volumeName = info["VolumeName"].string();
  volume->diskUUID = info["VolumeUUID"].string();
  return volume;
}

DiskNode containerVolumeOf(const PropertyList& volume, const DiskAndVolumeObj& disk) {
  auto node = std::make_shared<DiskAndVolumeObj>();
  // From the text, as people see it on the disk.
  const std::uint64_t total = CommUti::volSpaceFromString(disk.totalSpace);
  const std::uint64_t used = volume["CapacityInUse"].unsignedInteger();
  setSizes(*node, total, total - std::min(total, used));
  node->diskType = "APFS";
  node->diskId = volume["DeviceIdentifier"].string();
  node->diskMediaName = kUnknown;
  node->diskSMARTStatus = node->diskId;
  node->diskContent = "PCI";
  node->isSolidState = true;
  node->volRootDir = node->volumePath = volume["DeviceNode"].string();
  node->diskMount = disk.diskId;
  node->isWritable = true;
  node->isOeners = true;
  node->diskEx = kUnknown;
  node->volumeName = volume["Name"].string();
  node->vORpStr = kUnknown;
  node->diskUUID = volume["APFSVolumeUUID"].string();
  return node;
}

class TreeBuilder {
 public:
  TreeBuilder(const DiskTreeRules& rules, const std::function<bool()>& cancelled)
      : rules_(rules), cancelled_(cancelled) {}

  DiskTree build() {
    DiskCommandEnd end;
    const PropertyList listing = DiskAndVolumeInfo::getAllDiskAndVolumes(&end);
    takeDown(end.errors);
    const auto& entries = listing["AllDisksAndPartitions"].array();
    for (std::size_t index = 0; index < entries.size() && !isCancelled(); ++index) {
      DiskNode disk = diskOfEntry(entries[index]);
      if (disk && index == 0) tree_.first = disk;
      if (disk) tree_.disks.push_back(std::move(disk));
    }
    return std::move(tree_);
  }

 private:
  bool isCancelled() const { return cancelled_ && cancelled_(); }

  // What the tool complains of, each line once, and no more of them than people would read.
  void takeDown(const std::string& errors) {
    std::istringstream lines(errors);
    for (std::string line; std::getline(lines, line);) {
      const bool isNew = !line.empty() && !complaints_.contains(line);
      if (!isNew || complaints_.size() >= kMostComplaints) continue;
      complaints_.insert(line);
      tree_.complaints += (tree_.complaints.empty() ? "" : "\n") + line;
    }
  }

  PropertyList detailsOf(const PropertyList& entry) {
    DiskCommandEnd end;
    const std::string device = "/dev/" + entry["DeviceIdentifier"].string();
    PropertyList details = DiskAndVolumeInfo::detailsOf(device, &end);
    takeDown(end.errors);
    return details;
  }

  bool isListed(const std::string& mediaName) const {
    return std::any_of(tree_.disks.begin(), tree_.disks.end(),
                       [&](const DiskNode& disk) { return disk->volumeName == mediaName; });
  }

  bool isLeftOut(const PropertyList& info) const {
    const std::string& mediaName = info["MediaName"].string();
    if (!rules_.dropsRepeatedDisks) return mediaName.empty();
    return !info["Ejectable"].boolean() && (isListed(mediaName) || mediaName.empty());
  }

  DiskNode diskOfEntry(const PropertyList& entry) {
    const PropertyList info = detailsOf(entry);
    if (isLeftOut(info)) return nullptr;
    DiskNode disk = diskOf(info);
    const auto* partitions = &entry["Partitions"].array();
    if (partitions->empty() && rules_.readsContainerVolumes) {
      partitions = &entry["APFSVolumes"].array();
    }
    disk->chrCount = static_cast<std::int32_t>(partitions->size());
    for (const PropertyList& partition : *partitions) {
      if (isCancelled()) break;
      addPartition(*disk, partition);
    }
    return disk;
  }

  void addPartition(DiskAndVolumeObj& disk, const PropertyList& partition) {
    const PropertyList info = detailsOf(partition);
    const bool isSmall = info["TotalSize"].unsignedInteger() < rules_.partitionFloor;
    if (isSmall && !info["Ejectable"].boolean()) return;
    const std::string& name = info["VolumeName"].string();
    if (name.empty()) {
      addContainerVolumes(partition["DeviceIdentifier"].string(), disk);
      return;
    }
    const PropertyList& mount = info["MountPoint"];
    const bool isUnmounted = mount.isString() && mount.string().empty();
    if (rules_.dropsBootAndUnmounted && (name == "EFI" || isUnmounted)) return;
    disk.chrArr.push_back(volumeOf(info, rules_));
  }

  // Of each container on the physical store `store` the first volume stands for the whole.
  void addContainerVolumes(const std::string& store, DiskAndVolumeObj& disk) {
    const PropertyList listing = containers();
    if (rules_.logsContainers) SystemLog::line("APFS-1-----------|{}|", store);
    for (const PropertyList& container : listing["Containers"].array()) {
      const std::string& place = container["DesignatedPhysicalStore"].string();
      const auto& volumes = container["Volumes"].array();
      if (place != store || volumes.empty()) continue;
      if (rules_.logsContainers) SystemLog::line("APFS-1----------|{}| |{}|", place, store);
      disk.chrArr.push_back(containerVolumeOf(volumes.front(), disk));
    }
  }

  PropertyList containers() {
    const DiskCommandLock lock(rules_.containerFile);
    const std::string path = diskCommandFilePath(rules_.containerFile);
    if (path.empty()) return {};
    const auto end = runDiskCommand(DiskCommandText::apfsList(path), rules_.containerFile);
    takeDown(end.errors);
    return end.path ? PropertyList::read(*end.path) : PropertyList();
  }

  const DiskTreeRules& rules_;
  const std::function<bool()>& cancelled_;
  DiskTree tree_;
  std::set<std::string> complaints_;
};

}  // namespace

DiskTreeRules DiskTreeRules::forVolumeLists() {
  DiskTreeRules rules;
  rules.partitionFloor = 10'737'418'240;
  rules.dropsRepeatedDisks = false;
  rules.readsContainerVolumes = false;
  rules.dropsBootAndUnmounted = false;
  rules.volumeTypeIsItsBus = true;
  rules.logsContainers = true;
  rules.containerFile = DiskCommandFile::azkapfs;
  return rules;
}

bool isSystemVolume(const std::vector<DiskNode>& disks, const DiskAndVolumeObj& node) {
  if (node.isDisk || disks.empty() || disks.front()->chrArr.empty()) return false;
  return disks.front()->chrArr.front()->diskId == node.diskId;
}

DiskNode diskWithId(const std::vector<DiskNode>& disks, std::string id) {
  if (id.starts_with("/dev/")) id.erase(0, 5);
  const auto found = std::find_if(disks.begin(), disks.end(),
                                  [&](const DiskNode& disk) { return disk->diskId == id; });
  return id.empty() || found == disks.end() ? nullptr : *found;
}

DiskNode volumeWithId(const std::vector<DiskNode>& disks, std::string id) {
  for (const DiskNode& disk : disks) {
    if (DiskNode volume = diskWithId(disk->chrArr, id)) return volume;
  }
  return nullptr;
}

DiskTree buildDiskTree(const DiskTreeRules& rules, const std::function<bool()>& cancelled) {
  return TreeBuilder(rules, cancelled).build();
}

}  // namespace brisko
