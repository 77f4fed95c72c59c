#include "DirectWay.h"

#include "Failure.h"
#include "FileDescriptor.h"
#include "LinuxDrive.h"
#include "MountFolder.h"
#include "Programs.h"
#include "SystemLog.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>

#include <blkid/blkid.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <linux/blkpg.h>
#include <linux/fs.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko::diskutil {
namespace {

namespace fs = std::filesystem;

/// The code that the partition's table should have for such a file system; empty when it may stay.
std::string newPartitionCode(const Device& device, const Format& format) {
  const std::string& code = device.signature.partitionType;
  if (device.isWhole() || code.empty()) return {};
  // A FAT partition to start from stays one.
  if (isBootPartition(code) && format.type == "vfat") return {};
  const bool isDos = code.starts_with("0x");
  const std::string wanted(isDos ? format.dosCode : format.gptCode);
  if (code == (isDos ? "0x" + wanted : wanted)) return {};
  return wanted;
}

/// Opened so that the kernel lets no one mount or format it meanwhile, and gives up on a device in
/// use, also where another name space has it mounted.
FileDescriptor openExclusively(const Device& device) {
  const std::string& name = device.block.identifier;
  FileDescriptor file(
      open(device.block.node().c_str(), O_RDWR | O_EXCL | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (!file && errno == EBUSY) throw Failure(name + " is in use by another program");
  if (!file) throw Failure(fmt::format("{}: {}", device.block.node(), std::strerror(errno)));
  struct stat status;
  std::uint64_t size = 0;
  if (fstat(file.get(), &status) != 0 || !S_ISBLK(status.st_mode) ||
      status.st_rdev != device.block.number || ioctl(file.get(), BLKGETSIZE64, &size) != 0 ||
      size != device.block.size) {
    throw Failure(name + " is not the device any more that it was");
  }
  return file;
}

/// Takes every signature off, so that nothing later finds the old file system beside the new one.
void wipeSignatures(const FileDescriptor& file, const std::string& name) {
  const std::unique_ptr<blkid_struct_probe, void (*)(blkid_probe)> probe(blkid_new_probe(),
                                                                         blkid_free_probe);
  if (!probe || blkid_probe_set_device(probe.get(), file.get(), 0, 0) != 0)
    throw Failure(name + " cannot be read");
  blkid_probe_enable_superblocks(probe.get(), 1);
  blkid_probe_set_superblocks_flags(probe.get(), BLKID_SUBLKS_MAGIC | BLKID_SUBLKS_BADCSUM);
  blkid_probe_enable_partitions(probe.get(), 1);
  blkid_probe_set_partitions_flags(probe.get(), BLKID_PARTS_MAGIC);
  // Each find must be gone before the next is looked for; the bound ends a device that takes writes
  // and keeps nothing.
  constexpr int kMost = 64;
  for (int found = 0; blkid_do_probe(probe.get()) == 0; ++found) {
    if (found == kMost || blkid_do_wipe(probe.get(), 0) != 0)
      throw Failure(name + " cannot be written");
  }
  if (fsync(file.get()) != 0) throw Failure(fmt::format("{}: {}", name, std::strerror(errno)));
}

/// Waits until the device manager has looked at what changed.
void settle() {
  std::error_code error;
  const std::string udevadm = programPath("udevadm");
  if (udevadm.empty() || !fs::exists("/run/udev/control", error)) return;
  try {
    runProgram(udevadm, {"settle", "--timeout=10"});
  } catch (const Failure&) {
    // It looks later then.
  }
}

void setPartitionCode(const Device& device, const std::string& code) {
  const std::string disk =
      linuxNodeOf(fs::path(device.block.folder).parent_path().string()).path;
  // Other partitions of the disk may be in use, and their places do not change.
  runProgram(requireProgram("sfdisk", "fdisk"),
             {"--quiet", "--no-reread", "--no-tell-kernel", "--part-type", disk,
              std::to_string(device.block.partition), code});
}

/// Without these the partitions of an image that others brought in would outlive it.
void dropPartitions(int disk, const Disk& of) {
  for (const Device& partition : of.partitions) {
    blkpg_partition which{};
    which.pno = partition.block.partition;
    blkpg_ioctl_arg request{};
    request.op = BLKPG_DEL_PARTITION;
    request.datalen = sizeof which;
    request.data = &which;
    ioctl(disk, BLKPG, &request);
  }
}

void detachLoop(const Disk& disk) {
  const Device& device = disk.device;
  const FileDescriptor file(open(device.block.node().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  struct stat status;
  if (!file || fstat(file.get(), &status) != 0 || status.st_rdev != device.block.number)
    throw Failure(fmt::format("{}: {}", device.block.node(), std::strerror(errno)));
  dropPartitions(file.get(), disk);
  // One that detaches by itself is gone with its last mount.
  if (ioctl(file.get(), LOOP_CLR_FD) != 0 && errno != ENXIO)
    throw Failure(fmt::format("{}: {}", device.block.identifier, std::strerror(errno)));
}

void unplug(const LinuxBlockDevice& disk) {
  const FileDescriptor drive(
      open(disk.node().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW));
  if (drive) fsync(drive.get());
  const std::string file = disk.folder + "/device/delete";
  const FileDescriptor control(open(file.c_str(), O_WRONLY | O_CLOEXEC));
  if (!control || write(control.get(), "1", 1) != 1)
    throw Failure(fmt::format("{}: {}", disk.identifier, std::strerror(errno)));
}

bool isMemoryCard(const LinuxBlockDevice& disk) {
  return disk.identifier.starts_with("mmcblk");
}

std::string optionsOf(const Mount& mount, bool sameKind) {
  if (sameKind) return mount.options;
  // What belongs to the file system itself says nothing to another kind.
  std::string kept;
  std::size_t begin = 0;
  while (begin <= mount.options.size()) {
    const std::size_t end = std::min(mount.options.find(',', begin), mount.options.size());
    const std::string option = mount.options.substr(begin, end - begin);
    for (std::string_view known : {"ro", "rw", "nosuid", "nodev", "noexec", "noatime", "relatime",
                                   "nodiratime", "sync", "dirsync"}) {
      if (option == known) kept += (kept.empty() ? "" : ",") + option;
    }
    begin = end + 1;
  }
  return kept.empty() ? "defaults" : kept;
}

}  // namespace

void DirectWay::checkRename(const Device& device, const std::string& name) {
  const auto labeller = labellerFor(device.signature.type, name, device.block.node());
  if (!labeller) {
    throw Failure(fmt::format("nothing here can rename a volume of type {}",
                              escapedForDisplay(namesOf(device.signature).name)));
  }
  requireProgram(labeller->program, labeller->package);
}

void DirectWay::checkFormat(const Device& device, const Format& format) {
  requireProgram(format.program, format.package);
  if (!newPartitionCode(device, format).empty()) requireProgram("sfdisk", "fdisk");
}

void DirectWay::checkEject(const Disk& disk) {
  const LinuxBlockDevice& block = disk.device.block;
  if (block.isLoop || isMemoryCard(block)) return;
  if (block.isOptical || !block.isExternal) requireProgram("eject", "eject");
}

void DirectWay::unmount(const Device& device, const Mount& mount) {
  if (umount2(mount.target.c_str(), UMOUNT_NOFOLLOW) == 0) return;
  const std::string reason = errno == EBUSY ? "files on it are open" : std::strerror(errno);
  throw Failure(fmt::format("{} cannot be unmounted from {}: {}", device.block.identifier,
                            escapedForDisplay(mount.target), reason));
}

std::string DirectWay::mountAgain(const Device& device, const Mount& mount,
                                  const std::string& name) {
  settle();
  const Signature now = signatureOf(device.block, true);
  const std::string type = now.type.empty() ? device.signature.type : now.type;
  const bool sameKind = type == device.signature.type;
  MountFolder folder(mount.target, name);
  runProgram(requireProgram("mount", "mount"),
             {"-t", sameKind ? mount.type : type, "-o", optionsOf(mount, sameKind), "--",
              device.block.node(), folder.path()});
  folder.keep();
  return folder.path();
}

std::string DirectWay::mountNew(const Device&) {
  return {};
}

void DirectWay::rename(const Device& device, const std::string& name) {
  const auto labeller = labellerFor(device.signature.type, name, device.block.node());
  if (!labeller) throw Failure("nothing here can rename " + device.block.identifier);
  runProgram(requireProgram(labeller->program, labeller->package), labeller->arguments);
  settle();
}

void DirectWay::format(const Device& device, const Format& format, const std::string& name) {
  const std::string program = requireProgram(format.program, format.package);
  const std::string code = newPartitionCode(device, format);
  {
    const FileDescriptor file = openExclusively(device);
    wipeSignatures(file, device.block.identifier);
  }
  runProgram(program, makingArguments(format, name, device.block.node(), device.isWhole(),
                                      device.owner, device.group));
  if (!code.empty()) {
    try {
      setPartitionCode(device, code);
    } catch (const Failure& failure) {
      throw Failure(std::string("formatted, but the partition table names the old type: ") +
                    failure.what());
    }
  }
  settle();
}

void DirectWay::eject(const Disk& disk) {
  const LinuxBlockDevice& block = disk.device.block;
  if (block.isLoop) return detachLoop(disk);
  if (isMemoryCard(block)) return;  // unmounted, it can be pulled out
  if (!block.isOptical && block.isExternal && !block.isRemovable) return unplug(block);
  // The volumes are unmounted already, with their reasons.
  runProgram(requireProgram("eject", "eject"), {"--no-unmount", "--", block.node()});
}

}  // namespace brisko::diskutil
