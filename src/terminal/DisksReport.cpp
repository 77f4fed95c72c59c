#include "DisksReport.h"

#include "DiskDetail.h"
#include "Host.h"
#include "Interruption.h"
#include "Output.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>

namespace brisko {
namespace {

constexpr std::size_t kCaptionColumns = 20;

std::string shown(const std::string& text, const char* whenEmpty) {
  return text.empty() ? whenEmpty : escapedForDisplay(text);
}

std::size_t widestName(const DiskListing& listing) {
  std::size_t widest = 0;
  for (const DiskNode& disk : listing.tree.disks) {
    widest = std::max(widest, disk->diskId.size());
    for (const DiskNode& volume : disk->chrArr)
      widest = std::max(widest, volume->diskId.size() + 2);
  }
  return widest;
}

std::string diskLine(const DiskAndVolumeObj& disk, std::size_t columns, const Style& style) {
  std::string line = style.bold(leftAligned(escapedForDisplay(disk.diskId), columns));
  line += "  " + rightAligned(disk.totalSpace, 10) + "  ";
  line += leftAligned(shown(disk.volumeName, "Unknow"), 28) + "  ";
  line += style.dim(fmt::format(
      "{}, {}, {}{}", shown(disk.diskType, "Unknow"), disk.isInter ? "internal" : "external",
      disk.isSolidState ? "solid state" : "disk", disk.bCanEject ? ", can be ejected" : ""));
  return line + "\n";
}

std::string volumeLine(const DiskAndVolumeObj& volume, std::size_t columns, const Style& style) {
  std::string line = "  " + leftAligned(escapedForDisplay(volume.diskId), columns - 2);
  line += "  " + rightAligned(volume.totalSpace, 10) + "  ";
  line += leftAligned(shown(volume.volumeName, "Unknow"), 28) + "  ";
  line += style.dim(fmt::format("{}, {} free, at {}", shown(volume.diskType, "Unknow"),
                                volume.freeSpace, shown(volume.diskMount, "Unknow")));
  return line + "\n";
}

std::string offered(const DiskOffers& offers, const DiskDetail& detail) {
  std::string words;
  const auto add = [&](bool isOffered, const char* word) {
    if (isOffered) words += words.empty() ? word : fmt::format(", {}", word);
  };
  add(offers.rename && detail.renameAllowed, "rename");
  add(offers.format, "format");
  add(offers.eject, "eject");
  return words.empty() ? "nothing" : words;
}

// The volume of a disk that holds a file system without partitions.
DiskNode ownVolume(const DiskAndVolumeObj& node) {
  return node.isDisk ? diskWithId(node.chrArr, node.diskId) : nullptr;
}

void addDetail(Json& document, const DiskListing& listing, const DiskAndVolumeObj& node) {
  const DiskDetail detail = diskDetail(node, isSystemVolume(listing.tree.disks, node));
  const DiskOffers offers = listing.offersFor(node);
  Json& panel = document["detail"];
  setPath(panel, "title", detail.title);
  setPath(panel, "subtitle", detail.subtitle);
  panel["rows"] = Json::array();
  for (const auto* column : {&detail.left, &detail.right}) {
    for (const DiskDetailRow& row : *column) {
      Json one = {{"caption", row.caption}};
      setPath(one, "value", row.value);
      panel["rows"].push_back(std::move(one));
    }
  }
  panel["usage"] = {{"caption", detail.usageCaption},
                    {"value", detail.usageValue},
                    {"percent", detail.usagePercent}};
  document["offers"] = {{"rename", offers.rename && detail.renameAllowed},
                        {"format", offers.format},
                        {"eject", offers.eject}};
}

std::string nodeText(const DiskListing& listing, const DiskAndVolumeObj& node) {
  const Style style = Style::ofStandardOutput();
  const DiskDetail detail = diskDetail(node, isSystemVolume(listing.tree.disks, node));
  std::string text = style.bold(escapedForDisplay(detail.title)) + "\n" +
                     style.dim(escapedForDisplay(detail.subtitle)) + "\n\n";
  for (const auto* column : {&detail.left, &detail.right}) {
    for (const DiskDetailRow& row : *column) {
      text +=
          "  " + leftAligned(row.caption, kCaptionColumns) + escapedForDisplay(row.value) + "\n";
    }
  }
  text += fmt::format("\n  {}{} ({}%)\n", leftAligned(detail.usageCaption + ":", kCaptionColumns),
                      detail.usageValue, detail.usagePercent);
  text += "  " + leftAligned("Offered:", kCaptionColumns) +
          offered(listing.offersFor(node), detail) + "\n";
  return text;
}

}  // namespace

DiskListing DiskListing::take() {
  DiskListing listing;
  listing.tree = buildDiskTree(DiskTreeRules::forDiskManager(), Interruption::happened);
  if (Interruption::happened()) return listing;
  listing.mounted = Host::current().workspace->mountedVolumes();
  return listing;
}

void DiskListing::writeComplaints() const {
  std::istringstream lines(tree.complaints);
  for (std::string line; std::getline(lines, line);)
    writeError(line);
}

DiskNode DiskListing::nodeNamed(const std::string& id, bool prefersVolume) const {
  DiskNode node = prefersVolume ? volumeWithId(tree.disks, id) : diskWithId(tree.disks, id);
  if (!node) node = prefersVolume ? diskWithId(tree.disks, id) : volumeWithId(tree.disks, id);
  if (!node && tree.disks.empty() && !tree.complaints.empty()) {
    writeError(tree.complaints.substr(0, tree.complaints.find('\n')));
  } else if (!node) {
    writeError(fmt::format("no disk or volume \"{}\"; \"brisko disks\" lists them", id));
  }
  return node;
}

DiskOffers DiskListing::offersFor(const DiskAndVolumeObj& node) const {
  return checkNTFS(node, isSystemVolume(tree.disks, node), mounted);
}

Json diskJson(const DiskAndVolumeObj& node) {
  Json json;
  const auto text = [&](const char* key, const std::string& value) { setPath(json, key, value); };
  json["volRefNumber"] = node.volRefNumber;
  json["volType"] = node.volType;
  json["bIsDefaultVol"] = node.bIsDefaultVol;
  text("volumeName", node.volumeName);
  text("freeSpace", node.freeSpace);
  text("totalSpace", node.totalSpace);
  text("volRootDir", node.volRootDir);
  text("volIcon", node.volIcon);
  json["bCanEject"] = node.bCanEject;
  json["nTotalSize"] = node.nTotalSize;
  json["nFreeSize"] = node.nFreeSize;
  text("diskType", node.diskType);
  text("diskId", node.diskId);
  text("diskMediaName", node.diskMediaName);
  text("diskSMARTStatus", node.diskSMARTStatus);
  text("diskContent", node.diskContent);
  text("diskEx", node.diskEx);
  text("diskMount", node.diskMount);
  text("vORpStr", node.vORpStr);
  text("diskUUID", node.diskUUID);
  text("volumePath", node.volumePath);
  json["volumeNum"] = node.volumeNum;
  json["isInter"] = node.isInter;
  json["isSolidState"] = node.isSolidState;
  json["isWritable"] = node.isWritable;
  json["isDisk"] = node.isDisk;
  json["isOeners"] = node.isOeners;
  json["chrCount"] = node.chrCount;
  json["chrArr"] = Json::array();
  for (const DiskNode& child : node.chrArr)
    json["chrArr"].push_back(diskJson(*child));
  return json;
}

Json disksDocument(const DiskListing& listing) {
  Json document;
  document["disks"] = Json::array();
  for (const DiskNode& disk : listing.tree.disks)
    document["disks"].push_back(diskJson(*disk));
  return document;
}

Json diskDocument(const DiskListing& listing, const DiskAndVolumeObj& node) {
  Json document;
  document["disks"] = Json::array({diskJson(node)});
  addDetail(document, listing, node);
  if (const DiskNode volume = ownVolume(node)) addDetail(document["volume"], listing, *volume);
  return document;
}

std::string disksText(const DiskListing& listing) {
  if (listing.tree.disks.empty()) return "No disks were found.\n";
  const Style style = Style::ofStandardOutput();
  const std::size_t columns = widestName(listing);
  std::string text;
  for (const DiskNode& disk : listing.tree.disks) {
    text += diskLine(*disk, columns, style);
    for (const DiskNode& volume : disk->chrArr)
      text += volumeLine(*volume, columns, style);
  }
  return text;
}

std::string diskText(const DiskListing& listing, const DiskAndVolumeObj& node) {
  const DiskNode volume = ownVolume(node);
  return nodeText(listing, node) + (volume ? "\n" + nodeText(listing, *volume) : "");
}

}  // namespace brisko
