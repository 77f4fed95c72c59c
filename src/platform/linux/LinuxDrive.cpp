#include "LinuxDrive.h"

#include "LibUdev.h"
#include "LinuxBlockDevices.h"
#include "RegularFile.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <utility>

#include <sys/sysmacros.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

/// True when the name of a folder on the way to the device begins so, `#` at the end standing for a
/// digit.
bool passes(std::string_view folder, std::string_view name) {
  const bool counted = name.ends_with('#');
  if (counted) name.remove_suffix(1);
  for (std::size_t at = folder.find(name); at != std::string_view::npos;
       at = folder.find(name, at + 1)) {
    const std::size_t end = at + name.size();
    if (at == 0 || folder[at - 1] != '/') continue;
    if (!counted) return true;
    if (end < folder.size() && std::isdigit(static_cast<unsigned char>(folder[end])) != 0)
      return true;
  }
  return false;
}

std::string busOfVirtual(const LinuxBlockDevice& disk) {
  if (disk.identifier.starts_with("md")) return "RAID";
  const std::string uuid = sysfsText(disk.folder + "/dm/uuid");
  constexpr std::pair<std::string_view, std::string_view> kMappings[] = {
      {"LVM-", "LVM"}, {"CRYPT-", "Encrypted"}, {"mpath-", "Multipath"}, {"DMRAID-", "RAID"}};
  for (const auto& [prefix, bus] : kMappings) {
    if (uuid.starts_with(prefix)) return std::string(bus);
  }
  return "Device Mapper";
}

std::string busOf(const LinuxBlockDevice& disk) {
  if (disk.isLoop) return "Disk Image";
  if (disk.isVirtual) return busOfVirtual(disk);
  const std::string& name = disk.identifier;
  if (name.starts_with("mmcblk")) {
    return sysfsText(disk.folder + "/device/type") == "MMC" ? "MMC" : "Secure Digital";
  }
  // The nearest to the device decides: an ATA drive in a USB enclosure is on USB.
  constexpr std::pair<std::string_view, std::string_view> kFolders[] = {
      {"usb#", "USB"},
      {"fw#", "FireWire"},
      {"nvme-fabrics", "NVMe over Fabrics"},
      {"session#", "iSCSI"},
      {"rport-", "Fibre Channel"}};
  for (const auto& [folder, bus] : kFolders) {
    if (passes(disk.folder, folder)) return std::string(bus);
  }
  if (name.starts_with("nvme")) return "PCI-Express";
  if (passes(disk.folder, "ata#")) return "SATA";
  if (disk.folder.find("/end_device-") != std::string::npos) return "SAS";
  if (passes(disk.folder, "virtio#")) return "VirtIO";
  if (name.starts_with("xvd")) return "Xen";
  if (name.starts_with("nbd") || name.starts_with("rbd")) return "Network";
  return "SCSI";
}

/// What the firmware says of the ports on the way to the device: "removable", "fixed" or nothing.
std::string portOf(const LinuxBlockDevice& disk) {
  for (fs::path folder = fs::path(disk.folder).parent_path();
       folder.has_relative_path() && folder.filename() != "devices";
       folder = folder.parent_path()) {
    std::string text = sysfsText((folder / "removable").string());
    if (text == "removable" || text == "fixed") return text;
  }
  return {};
}

std::string modelOf(const LinuxBlockDevice& disk) {
  if (disk.isLoop) return {};
  if (disk.isVirtual) return sysfsText(disk.folder + "/dm/name");
  std::string model = sysfsText(disk.folder + "/device/model");
  if (model.empty() && disk.identifier.starts_with("mmcblk"))
    model = sysfsText(disk.folder + "/device/name");
  const std::string vendor = sysfsText(disk.folder + "/device/vendor");
  // Bridges of ATA drives say just that; virtio says a number.
  if (model.empty() || vendor.empty() || vendor == "ATA" || vendor.starts_with("0x") ||
      model.starts_with(vendor)) {
    return model;
  }
  return vendor + " " + model;
}

}  // namespace

std::string sysfsText(const std::string& file) {
  int error = 0;
  std::string text = readFile(file, 65536, error).value_or("");
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ' || text.back() == '\0'))
    text.pop_back();
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string udevProperty(const std::string& folder, const char* key) {
  std::string value;
  if (!libudev.isThere()) return value;
  udev* context = udev_new();
  udev_device* device =
      context != nullptr ? udev_device_new_from_syspath(context, folder.c_str()) : nullptr;
  if (device != nullptr) {
    const char* text = udev_device_get_property_value(device, key);
    if (text != nullptr) value = text;
    udev_device_unref(device);
  }
  if (context != nullptr) udev_unref(context);
  return value;
}

std::string udevDecoded(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned value = 0;
    if (text.compare(i, 2, "\\x") == 0 && i + 4 <= text.size()) {
      const char* digits = text.data() + i + 2;
      if (std::from_chars(digits, digits + 2, value, 16).ptr == digits + 2) {
        bytes += static_cast<char>(value);
        i += 3;
        continue;
      }
    }
    bytes += text[i];
  }
  return bytes;
}

LinuxNode linuxNodeOf(const std::string& folder) {
  LinuxNode node;
  const std::string text = sysfsText(folder + "/dev");
  const std::size_t colon = text.find(':');
  std::error_code error;
  // Character devices have such a file too.
  if (colon == std::string::npos ||
      (!fs::exists(folder + "/partition", error) && !fs::exists(folder + "/queue", error))) {
    return node;
  }
  unsigned majorNumber = 0;
  unsigned minorNumber = 0;
  std::from_chars(text.data(), text.data() + colon, majorNumber);
  std::from_chars(text.data() + colon + 1, text.data() + text.size(), minorNumber);
  node.number = makedev(majorNumber, minorNumber);
  node.path = "/dev/" + fs::path(folder).filename().string();
  // sysfs writes a slash of a device's name as an exclamation mark.
  std::replace(node.path.begin() + 5, node.path.end(), '!', '/');
  return node;
}

void describeDrive(LinuxBlockDevice& disk) {
  const std::string& name = disk.identifier;
  disk.isLoop = name.starts_with("loop");
  disk.isOptical = name.starts_with("sr") || name.starts_with("scd");
  disk.isVirtual = disk.isLoop || name.starts_with("dm-") || name.starts_with("md");
  disk.backingFile = sysfsText(disk.folder + "/loop/backing_file");
  disk.bus = busOf(disk);
  disk.model = modelOf(disk);
  disk.isRemovable = disk.isLoop || disk.isOptical || disk.bus == "Secure Digital" ||
                     sysfsText(disk.folder + "/removable") == "1";
  if (disk.isVirtual) return;
  const std::string port = portOf(disk);
  disk.isExternal =
      port == "removable" || (port != "fixed" && (disk.bus == "USB" || disk.bus == "FireWire"));
}

}  // namespace brisko
