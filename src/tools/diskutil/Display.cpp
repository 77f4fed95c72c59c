#include "Display.h"

#include "CommUti.h"
#include "Description.h"
#include "FileSystems.h"
#include "SystemLog.h"

#include <algorithm>
#include <array>
#include <utility>

#include <fmt/format.h>

namespace brisko::diskutil {
namespace {

using Row = std::array<std::string, 5>;

/// Characters, as near as counting them comes to columns of a terminal.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char character) {
    return (static_cast<unsigned char>(character) & 0xC0U) != 0x80U;
  }));
}

std::string aligned(const std::vector<Row>& rows) {
  Row::size_type last = std::tuple_size_v<Row> - 1;
  std::array<std::size_t, std::tuple_size_v<Row>> widths{};
  for (const Row& row : rows)
    for (std::size_t column = 0; column <= last; ++column)
      widths[column] = std::max(widths[column], widthOf(row[column]));
  std::string text;
  for (const Row& row : rows) {
    std::string line = "  ";
    for (std::size_t column = 0; column <= last; ++column) {
      const std::string blanks(widths[column] - widthOf(row[column]), ' ');
      // Sizes stand at the right.
      line += column == 3 ? blanks + row[column] : row[column] + blanks;
      line += "  ";
    }
    text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
  }
  return text;
}

std::string placeOf(const LinuxBlockDevice& drive) {
  if (drive.isVirtual) return "virtual";
  return drive.isExternal ? "external" : "internal";
}

Row rowOf(const Device& device) {
  const FileSystemNames names = namesOf(device.signature);
  std::string use = mountPoint(device);
  if (device.isSwap) use = "(in use as swap space)";
  return {escapedForDisplay(device.block.identifier),
          escapedForDisplay(names.name.empty() ? "unknown" : names.name),
          escapedForDisplay(volumeName(device)), CommUti::longlongDiskSize(device.block.size),
          escapedForDisplay(use)};
}

std::string yesOrNo(bool value) {
  return value ? "Yes" : "No";
}

}  // namespace

std::string shownListing(const Inventory& inventory) {
  std::string text;
  for (const Disk& disk : inventory.disks()) {
    const LinuxBlockDevice& drive = disk.device.block;
    if (!text.empty()) text += "\n";
    text += fmt::format("{}  {}  {}  ({}, {})\n", escapedForDisplay(drive.node()),
                        escapedForDisplay(mediaName(inventory, disk.device)),
                        CommUti::longlongDiskSize(drive.size), placeOf(drive), drive.bus);
    std::vector<Row> rows;
    for (const Device* volume : inventory.volumes(disk))
      rows.push_back(rowOf(*volume));
    text += rows.empty() ? "  (no volumes)\n" : aligned(rows);
  }
  return text.empty() ? "No disks.\n" : text;
}

std::string shownInformation(const Inventory& inventory, const Device& device) {
  const Disk& disk = inventory.diskOf(device);
  const LinuxBlockDevice& drive = disk.device.block;
  const PropertyList list = information(inventory, device);
  std::vector<std::pair<std::string, std::string>> lines = {
      {"Device identifier", device.block.identifier},
      {"Device node", device.block.node()},
      {"Part of", device.isWhole() ? std::string() : drive.identifier},
      {"Media name", list["MediaName"].string()},
      {"Image file", drive.backingFile},
      {"Content", list["Content"].string()},
  };
  if (!list["FilesystemName"].string().empty() || !device.isWhole()) {
    lines.insert(lines.end(), {
        {"Volume name", volumeName(device)},
        {"Volume UUID", list["VolumeUUID"].string()},
        {"File system", list["FilesystemUserVisibleName"].string()},
        {"Mount point", device.isMounted() ? mountPoint(device) : "Not mounted"},
        {"Owners kept", yesOrNo(list["GlobalPermissionsEnabled"].boolean())},
    });
  }
  lines.insert(lines.end(), {
      {"Total size", fmt::format("{} ({} bytes)", CommUti::longlongDiskSize(device.totalBytes),
                                 device.totalBytes)},
      {"Free", device.isMounted() ? CommUti::longlongDiskSize(device.freeBytes) : std::string()},
      {"Connection", drive.bus},
      {"Location", drive.isVirtual ? "Virtual" : drive.isExternal ? "External" : "Internal"},
      {"Ejectable", yesOrNo(list["Ejectable"].boolean())},
      {"Solid state", yesOrNo(list["SolidState"].boolean())},
      {"Writable", yesOrNo(list["Writable"].boolean())},
      {"S.M.A.R.T. status", list["SMARTStatus"].string()},
  });
  std::string text;
  for (const auto& [caption, value] : lines)
    if (!value.empty()) text += fmt::format("{:<20}{}\n", caption + ":", escapedForDisplay(value));
  return text;
}

}  // namespace brisko::diskutil
