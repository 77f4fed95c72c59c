#include "Signature.h"

#include "FileDescriptor.h"
#include "LinuxDrive.h"

#include <memory>
#include <optional>

#include <blkid/blkid.h>
#include <fcntl.h>
#include <libudev.h>
#include <sys/stat.h>

namespace brisko::diskutil {
namespace {

std::optional<Signature> fromDeviceManager(dev_t number) {
  const std::unique_ptr<udev, udev* (*)(udev*)> context(udev_new(), udev_unref);
  if (!context) return std::nullopt;
  const std::unique_ptr<udev_device, udev_device* (*)(udev_device*)> device(
      udev_device_new_from_devnum(context.get(), 'b', number), udev_device_unref);
  if (!device || udev_device_get_is_initialized(device.get()) <= 0) return std::nullopt;
  const auto property = [&](const char* key) {
    const char* value = udev_device_get_property_value(device.get(), key);
    return std::string(value != nullptr ? value : "");
  };
  Signature signature;
  signature.isKnown = true;
  signature.type = property("ID_FS_TYPE");
  signature.version = property("ID_FS_VERSION");
  signature.usage = property("ID_FS_USAGE");
  signature.label = udevDecoded(property("ID_FS_LABEL_ENC"));
  signature.uuid = property("ID_FS_UUID");
  signature.tableType = property("ID_PART_TABLE_TYPE");
  signature.partitionType = property("ID_PART_ENTRY_TYPE");
  return signature;
}

using Probe = std::unique_ptr<blkid_struct_probe, void (*)(blkid_probe)>;

std::string value(const Probe& probe, const char* name) {
  const char* data = nullptr;
  std::size_t size = 0;
  if (blkid_probe_lookup_value(probe.get(), name, &data, &size) != 0 || size == 0) return {};
  return {data, data[size - 1] == '\0' ? size - 1 : size};
}

Signature fromDevice(const LinuxBlockDevice& device) {
  Signature signature;
  const FileDescriptor file(open(device.node().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status;
  if (!file || fstat(file.get(), &status) != 0 || status.st_rdev != device.number) return signature;
  const Probe probe(blkid_new_probe(), blkid_free_probe);
  if (!probe || blkid_probe_set_device(probe.get(), file.get(), 0, 0) != 0) return signature;
  blkid_probe_enable_superblocks(probe.get(), 1);
  blkid_probe_set_superblocks_flags(probe.get(), BLKID_SUBLKS_LABEL | BLKID_SUBLKS_UUID |
                                                     BLKID_SUBLKS_TYPE | BLKID_SUBLKS_USAGE |
                                                     BLKID_SUBLKS_VERSION);
  blkid_probe_enable_partitions(probe.get(), 1);
  blkid_probe_set_partitions_flags(probe.get(), BLKID_PARTS_ENTRY_DETAILS);
  // Two signatures that contradict each other (-2) count as none.
  signature.isKnown = blkid_do_safeprobe(probe.get()) != -1;
  signature.type = value(probe, "TYPE");
  signature.version = value(probe, "VERSION");
  signature.usage = value(probe, "USAGE");
  signature.label = value(probe, "LABEL");
  signature.uuid = value(probe, "UUID");
  signature.tableType = value(probe, "PTTYPE");
  signature.partitionType = value(probe, "PART_ENTRY_TYPE");
  return signature;
}

}  // namespace

Signature signatureOf(const LinuxBlockDevice& device, bool fresh) {
  if (!fresh) {
    if (const auto known = fromDeviceManager(device.number)) return *known;
  }
  Signature signature = fromDevice(device);
  if (fresh && !signature.isKnown) return fromDeviceManager(device.number).value_or(signature);
  return signature;
}

}  // namespace brisko::diskutil
