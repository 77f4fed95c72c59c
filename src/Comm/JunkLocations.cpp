// Where junk is looked for: the locations of the six categories, in scan order.

#include "CommUti.h"
#include "Host.h"
#include "SystemLog.h"
#include "TCDiskVolums.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>

#include <unistd.h>

namespace brisko {
namespace {

using Domain = HostFolders::Domain;

std::vector<std::string> namesIn(Catalog::Folder& folder) {
  std::vector<std::string> names;
  CatalogBatch batch;
  while (folder.read(batch, 0)) {
    for (const CatalogItem& item : batch.items)
      names.emplace_back(item.name);
  }
  return names;
}

// Steps down one name at a time, so that no link on the way is followed.
std::unique_ptr<Catalog::Folder> descend(Catalog::Folder& from,
                                         std::initializer_list<std::string_view> names) {
  std::unique_ptr<Catalog::Folder> folder;
  Catalog::Folder* at = &from;
  int error = 0;
  for (std::string_view name : names) {
    std::unique_ptr<Catalog::Folder> next = at->open(name, error);
    if (!next) return nullptr;
    folder = std::move(next);
    at = folder.get();
  }
  return folder;
}

// One location for each item in each application container's caches folder.
void containerPaths(const std::string& containers, std::vector<std::string>& array) {
  int error = 0;
  auto folder = Host::current().catalog->open(containers, error);
  if (!folder) return;
  for (const std::string& name : namesIn(*folder)) {
    auto caches = descend(*folder, {name, "Data", "Library", "Caches"});
    if (!caches) continue;
    const std::string path = fmt::format("{}/{}/Data/Library/Caches", containers, name);
    for (const std::string& item : namesIn(*caches)) {
      array.push_back(fmt::format("{}/{}", path, item));
      SystemLog::line("-------{}", array.back());
    }
  }
}

// The mounted volumes in the volumes folder. Below another root nothing is mounted on its behalf:
// there the folders in it are what that system's volumes left, and stand for them.
std::vector<std::string> volumeRoots(const HostFolders& folders) {
  std::vector<std::string> roots;
  TCDiskVolums volumes;
  for (const TCVolumDetail& volume : volumes.allDiskVolums()) {
    if (volume.volRootDir.starts_with(folders.volumes())) roots.push_back(volume.volRootDir);
  }
  int error = 0;
  auto folder =
      folders.hasRoot() ? Host::current().catalog->open(folders.volumes(), error) : nullptr;
  if (!folder) return roots;
  for (const std::string& name : namesIn(*folder)) {
    std::string root = folders.volumes() + "/" + name;
    const bool isKnown = std::find(roots.begin(), roots.end(), root) != roots.end();
    if (!isKnown && folder->open(name, error)) roots.push_back(std::move(root));
  }
  return roots;
}

// The trash folders that applications keep beside their documents in the cloud folder.
void documentTrashPaths(const std::string& documents, std::vector<std::string>& array) {
  int error = 0;
  auto folder = Host::current().catalog->open(documents, error);
  if (!folder) return;
  for (const std::string& name : namesIn(*folder)) {
    if (!folder->open(name, error)) continue;
    std::string trash = fmt::format("{}/{}/.Trash", documents, name);
    if (::access(trash.c_str(), X_OK) == 0) array.push_back(std::move(trash));
  }
}

}  // namespace

void CommUti::folderPath(int category, std::vector<std::string>& array) {
  const HostFolders& folders = *Host::current().folders;
  const std::string userLibrary = folders.library(Domain::user);
  switch (category) {
    case 0:
      array.push_back(folders.caches(Domain::local));
      array.push_back(folders.caches(Domain::user));
      array.push_back(folders.library(Domain::local) + "/Logs");
      array.push_back(userLibrary + "/Logs");
      array.push_back(folders.path("/private/var/log"));
      break;
    case 1:
      containerPaths(userLibrary + "/Containers", array);
      break;
    case 2:
      array.push_back(userLibrary + "/Containers/com.apple.mail/Data/Library/Mail Downloads");
      break;
    case 3:
      array.push_back(folders.applicationSupport(Domain::user) + "/MobileSync/Backup");
      break;
    case 4:
      trashPaths(array);
      break;
    case 5:
      getXcodePaths(array);
      break;
    default:
      break;
  }
}

void CommUti::trashPaths(std::vector<std::string>& array) {
  const HostFolders& folders = *Host::current().folders;
  for (const std::string& root : volumeRoots(folders)) {
    array.push_back(fmt::format("{}/.Trashes/{}", root, ::getuid()));
  }
  array.push_back(folders.home() + "/.Trash");
  documentTrashPaths(folders.userFolder() + "/Library/Mobile Documents", array);
}

void CommUti::getXcodePaths(std::vector<std::string>& array) {
  const std::string developer = Host::current().folders->userFolder() + "/Library/Developer";
  // Three of them end with a slash, which then doubles the separator in their entries' paths.
  for (const char* name : {"Xcode/DerivedData", "Xcode/Archives", "Xcode/Products/",
                           "CoreSimulator/Devices/", "Xcode/iOS DeviceSupport", "XCPGDevices/"}) {
    array.push_back(developer + "/" + name);
  }
}

}  // namespace brisko
