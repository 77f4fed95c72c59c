#include "MadeDisks.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <utility>

namespace fs = std::filesystem;

namespace brisko::test {
namespace {

// Answers with the files beside it; never with anything of this machine.
constexpr const char* kTool = R"sh(#!/bin/sh
folder=$(dirname "$0")/..
line=
for word in "$@"; do line="$line<$word>"; done
printf '%s\n' "$line" >> "$folder/calls"
case "$1 $2" in
  "list -plist") cat "$folder/list.plist" ;;
  "info -plist") cat "$folder/details/$(basename "$3")" ;;
  "apfs list") cat "$folder/apfs.plist" ;;
  *) if [ -f "$folder/actions/$1" ]; then . "$folder/actions/$1"; fi ;;
esac
)sh";

void write(const fs::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace

MadeDisks::MadeDisks(std::string folder) : folder_(std::move(folder)) {
  for (const char* name : {"tools", "details", "actions", "run"})
    fs::create_directories(fs::path(folder_) / name);
  fs::permissions(runtime(), fs::perms::owner_all);
  const fs::path tool = fs::path(tools()) / "diskutil";
  write(tool, kTool);
  fs::permissions(tool, fs::perms::owner_all);
  writeListing();
  setContainers({});
}

void MadeDisks::writeListing() const {
  PropertyList::Dictionary listing;
  listing["AllDisksAndPartitions"] = entries_;
  write(listingFile(), PropertyList(listing).xml());
}

void MadeDisks::addDisk(const std::string& id, Fields details,
                        const std::vector<std::string>& partitions, const char* key) {
  PropertyList::Array parts;
  for (const std::string& partition : partitions)
    parts.push_back(Fields{{"DeviceIdentifier", partition}});
  entries_.push_back(Fields{{"DeviceIdentifier", id}, {key, parts}});
  writeListing();
  setDetails(id, std::move(details));
}

std::string MadeDisks::detailsFile(const std::string& id) const {
  return folder_ + "/details/" + id;
}

void MadeDisks::setDetails(const std::string& id, Fields details) {
  details["DeviceIdentifier"] = id;
  details["DeviceNode"] = "/dev/" + id;
  write(detailsFile(id), PropertyList(std::move(details)).xml());
}

void MadeDisks::setContainers(PropertyList::Array containers) {
  PropertyList::Dictionary answer;
  answer["Containers"] = std::move(containers);
  write(folder_ + "/apfs.plist", PropertyList(answer).xml());
}

void MadeDisks::setAction(const std::string& verb, const std::string& shell) {
  write(folder_ + "/actions/" + verb, shell + "\n");
}

std::vector<std::string> MadeDisks::calls() const {
  std::vector<std::string> lines;
  std::ifstream stream(folder_ + "/calls");
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

MadeDisks::Fields MadeDisks::disk(const std::string& mediaName, std::uint64_t size) {
  return {{"MediaName", mediaName},
          {"TotalSize", size},
          {"BusProtocol", "SATA"},
          {"Internal", true},
          {"SolidState", true},
          {"Ejectable", false},
          {"Content", "GUID_partition_scheme"},
          {"SMARTStatus", "Verified"},
          {"VirtualOrPhysical", "Physical"},
          {"Writable", true}};
}

MadeDisks::Fields MadeDisks::volume(const std::string& name, std::uint64_t size) {
  return {{"VolumeName", name},
          {"TotalSize", size},
          {"FreeSpace", size / 4},
          {"MountPoint", "/Volumes/" + name},
          {"FilesystemName", "ExFAT"},
          {"FilesystemUserVisibleName", "ExFAT"},
          {"BusProtocol", "USB"},
          {"VolumeUUID", "1234-ABCD"},
          {"GlobalPermissionsEnabled", true},
          {"Ejectable", false},
          {"Internal", true},
          {"VirtualOrPhysical", "Physical"}};
}

}  // namespace brisko::test
