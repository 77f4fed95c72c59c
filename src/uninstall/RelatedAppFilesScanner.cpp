#include "RelatedAppFilesScanner.h"

#include "AppNames.h"
#include "CommUti.h"
#include "Host.h"
#include "NSFileManager.h"
#include "RegularFile.h"
#include "SystemLog.h"

#include <cerrno>
#include <optional>
#include <utility>

namespace brisko {
namespace {

using Domain = HostFolders::Domain;

// Many times what any application says of itself. Reading more would only let one bundle hold up
// the whole list.
constexpr std::size_t kLargestInformation = 4U << 20U;

const HostFolders& folders() {
  return *Host::current().folders;
}

PropertyList informationOf(const std::string& bundle) {
  const std::string path = bundle + "/Contents/Info.plist";
  int error = 0;
  const auto bytes = readFile(path, kLargestInformation, error);
  if (bytes) return PropertyList::parse(*bytes, path);
  if (error == EFBIG) SystemLog::line("{}: too large to describe a bundle", path);
  return {};
}

void addFor(AppItems& items, const std::string& folder, const std::string& name,
            const std::string& identifier, SizeTime sizes) {
  AddPathIfExists(items, folder, name, sizes);
  AddPathIfExists(items, folder, identifier, sizes);
}

void addForLibraries(AppItems& items, const std::string& subfolder, const std::string& name,
                     const std::string& identifier, SizeTime sizes) {
  for (const Domain domain : {Domain::user, Domain::local})
    addFor(items, folders().library(domain) + subfolder, name, identifier, sizes);
}

AppItem made(const std::string& path, SizeTime sizes) {
  return sizes == SizeTime::now ? RelatedAppFilesScanner::aConstructItem(path, 0)
                                : RelatedAppFilesScanner::constructItem(path, 0);
}

}  // namespace

AppItem RelatedAppFilesScanner::getAppItemWithFilePath(const std::string& path, int /*appFlag*/) {
  const PropertyList information = informationOf(path);
  const std::string& identifier = information["CFBundleIdentifier"].string();
  const bool isSystemApp = identifier.starts_with("com.apple.");
  const CatalogItem facts = Host::current().catalog->information(path);
  auto item = std::make_shared<AMAppItem>(
      AMAppItem::initWithInfoDictionary(information, bundleDisplayName(path), path, identifier,
                                        information["CFBundleShortVersionString"].string(),
                                        facts.creationSeconds, isSystemApp ? "YES" : "NO", "0KB"));
  item->identity = FileIdentity::at(path);
  item->image = Host::current().workspace->iconNameOfKind(path, facts.kind);
  return item;
}

AppItem RelatedAppFilesScanner::constructItem(const std::string& path, int appFlag) {
  return getAppItemWithFilePath(path, appFlag);
}

AppItem RelatedAppFilesScanner::aConstructItem(const std::string& path, int appFlag) {
  AppItem item = getAppItemWithFilePath(path, appFlag);
  item->bIsGetSize = true;
  item->setBytes(CommUti::sizeOfFileRef(NSFileManager::convertStringToFSRef(path)));
  return item;
}

std::string RelatedAppFilesScanner::getFileSizeItem(const std::string& path) {
  return CommUti::convertVolSpace(
      CommUti::sizeOfFileRef(NSFileManager::convertStringToFSRef(path)));
}

AppItems RelatedAppFilesScanner::relatedFilesToApplicationAtPath(const std::string& path,
                                                                 SizeTime sizes) {
  if (path.empty()) SystemLog::line(".......");
  AppItems items{made(path, sizes)};
  const PropertyList information = informationOf(path);
  std::string name = information["CFBundleName"].string();
  if (name.empty()) name = information["CFBundleExecutable"].string();
  const std::string& identifier = items.front()->bundleID;
  if (name.empty() || identifier.empty() || identifier == " ") return items;
  AppItems found;
  GetPreferencePaths(found, name, identifier, sizes);
  GetCachePaths(found, name, identifier, sizes);
  GetLogPaths(found, name, identifier, sizes);
  GetSavedStatePaths(found, name, identifier, sizes);
  GetAppSupportPaths(found, name, identifier, sizes);
  GetDownloadPaths(found, name, identifier, sizes);
  GetGrowlPaths(found, name, sizes);
  for (AppItem& item : found) {
    item->role = AMAppItem::Role::relatedFile;
    items.push_back(std::move(item));
  }
  return items;
}

void GetPreferencePaths(AppItems& items, const std::string& name, const std::string& identifier,
                        SizeTime sizes) {
  addForLibraries(items, "/Preferences", name, identifier, sizes);
}

void GetCachePaths(AppItems& items, const std::string& name, const std::string& identifier,
                   SizeTime sizes) {
  for (const Domain domain : {Domain::user, Domain::local})
    addFor(items, folders().caches(domain), name, identifier, sizes);
}

void GetLogPaths(AppItems& items, const std::string& name, const std::string& identifier,
                 SizeTime sizes) {
  addForLibraries(items, "/Logs", name, identifier, sizes);
}

void GetSavedStatePaths(AppItems& items, const std::string& name, const std::string& identifier,
                        SizeTime sizes) {
  addFor(items, folders().library(Domain::user) + "/Saved Application State", name, identifier,
         sizes);
}

void GetAppSupportPaths(AppItems& items, const std::string& name, const std::string& identifier,
                        SizeTime sizes) {
  for (const Domain domain : {Domain::user, Domain::local})
    addFor(items, folders().applicationSupport(domain), name, identifier, sizes);
}

void GetDownloadPaths(AppItems& items, const std::string& name, const std::string& identifier,
                      SizeTime sizes) {
  addFor(items, folders().home() + "/Downloads", name, identifier, sizes);
}

void GetGrowlPaths(AppItems& items, const std::string& name, SizeTime sizes) {
  AddPathIfExists(items, folders().applicationSupport(Domain::user) + "/Growl/Tickets",
                  name + ".growlTicket", sizes);
}

void AddPathIfExists(AppItems& items, const std::string& folder, const std::string& key,
                     SizeTime sizes) {
  const std::string wanted = lowerCased(key);
  const std::string shortened = withoutBlanks(wanted);
  int error = 0;
  const auto opened = Host::current().catalog->open(folder, error);
  if (!opened || shortened.empty()) return;
  const auto fits = [&](std::string_view entry) {
    const std::string name = lowerCased(entry);
    if (name.starts_with(wanted)) return true;
    if (entry == "FlashPlayerInstallManager.log") SystemLog::line("Break here!");
    return name.starts_with(shortened);
  };
  CatalogBatch batch;
  while (opened->read(batch, 0)) {
    for (const CatalogItem& entry : batch.items) {
      if (fits(entry.name)) items.push_back(made(folder + "/" + std::string(entry.name), sizes));
    }
  }
}

}  // namespace brisko
