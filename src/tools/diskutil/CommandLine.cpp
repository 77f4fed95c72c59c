#include "CommandLine.h"

#include "Description.h"
#include "Display.h"
#include "Failure.h"
#include "Operations.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <string_view>

#include <unistd.h>

namespace brisko::diskutil {
namespace {

constexpr std::string_view kUsage = R"(diskutil: the machine's disks and volumes

  diskutil list [-plist] [NODE]         all disks, or one
  diskutil info [-plist] NODE           one disk or volume
  diskutil apfs list [-plist]           containers (there are none on this system)
  diskutil rename VOLUME NAME           VOLUME is a node or the UUID of a volume
  diskutil eraseVolume TYPE NAME NODE   makes a new, empty file system
  diskutil reformat NODE                the same with the type and name it has
  diskutil eject NODE                   unmounts a disk's volumes and takes it off

NODE is what the kernel calls it (sda1, /dev/sda1), its place in the list (disk0, disk0s1), the
folder where it is mounted, or its UUID. Types: ExFAT, MS-DOS FAT32, MS-DOS FAT16, Journaled HFS+,
ext4. Exit status: 0 done, 1 it could not be done, 2 wrong usage.
)";

void print(std::string_view text) {
  // Someone may not wait for the end (a pager that was closed); a full disk must be said.
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
    throw Failure("the output could not be written");
}

void printList(const PropertyList& list) {
  print(list.xml());
}

void finish(const Report& report) {
  print(report.done + "\n");
  if (!report.warning.empty()) fmt::print(stderr, "diskutil: {}\n", report.warning);
}

void need(bool fits, std::string_view how) {
  if (!fits) throw WrongUsage(fmt::format("usage: diskutil {}", how));
}

void complainOfUnreadable(const Inventory& inventory) {
  std::string names;
  for (const std::string& name : inventory.unreadable())
    names += (names.empty() ? "" : ", ") + escapedForDisplay(name);
  if (names.empty()) return;
  fmt::print(stderr, "diskutil: no permission to look into {}{}\n", names,
             geteuid() == 0 ? "" : "; the administrator has it");
}

void list(const std::vector<std::string>& words, bool asPropertyList) {
  need(words.size() <= 1, "list [-plist] [NODE]");
  const Inventory inventory = Inventory::read();
  if (words.size() == 1) {
    const Device& device = inventory.find(words[0]);
    if (!asPropertyList) return print(shownInformation(inventory, device));
    const std::string& wanted = inventory.diskOf(device).device.block.identifier;
    PropertyList whole = listing(inventory);
    PropertyList::Array kept;
    for (const PropertyList& entry : whole["AllDisksAndPartitions"].array())
      if (entry["DeviceIdentifier"].string() == wanted) kept.push_back(entry);
    whole.set("AllDisksAndPartitions", kept);
    return printList(whole);
  }
  if (asPropertyList) {
    printList(listing(inventory));
  } else {
    print(shownListing(inventory));
  }
  complainOfUnreadable(inventory);
}

void info(const std::vector<std::string>& words, bool asPropertyList) {
  need(words.size() == 1, "info [-plist] NODE");
  const Inventory inventory = Inventory::read();
  const Device& device = inventory.find(words[0]);
  if (asPropertyList) return printList(information(inventory, device));
  print(shownInformation(inventory, device));
}

void apfs(const std::vector<std::string>& words, bool asPropertyList) {
  need(words.size() == 1 && words[0] == "list", "apfs list [-plist]");
  if (!asPropertyList) return print("No APFS containers.\n");
  PropertyList list;
  list.set("Containers", PropertyList::Array());
  printList(list);
}

}  // namespace

void runCommand(std::vector<std::string> words) {
  if (words.empty()) throw WrongUsage("say what to do; diskutil help tells what there is");
  const std::string verb = words.front();
  words.erase(words.begin());
  if (verb == "help" || verb == "--help" || verb == "-h") return print(kUsage);

  if (verb == "list" || verb == "info" || verb == "apfs") {
    const auto flag = std::find(words.begin(), words.end(), "-plist");
    const bool asPropertyList = flag != words.end();
    if (asPropertyList) words.erase(flag);
    if (verb == "list") return list(words, asPropertyList);
    return verb == "info" ? info(words, asPropertyList) : apfs(words, asPropertyList);
  }
  if (verb == "rename" || verb == "renameVolume") {
    need(words.size() == 2, "rename VOLUME NAME");
    return finish(rename(words[0], words[1]));
  }
  if (verb == "eraseVolume") {
    need(words.size() == 3, "eraseVolume TYPE NAME NODE");
    return finish(eraseVolume(words[0], words[1], words[2]));
  }
  if (verb == "reformat") {
    need(words.size() == 1, "reformat NODE");
    return finish(reformat(words[0]));
  }
  if (verb == "eject") {
    need(words.size() == 1, "eject NODE");
    return finish(eject(words[0]));
  }
  throw WrongUsage(fmt::format("\"{}\" is nothing it can do; diskutil help tells what there is",
                               escapedForDisplay(verb)));
}

}  // namespace brisko::diskutil
