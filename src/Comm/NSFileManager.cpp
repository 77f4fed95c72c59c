#include "NSFileManager.h"

#include "CommUti.h"
#include "FolderSize.h"
#include "Host.h"
#include "Medium.h"
#include "NSString.h"
#include "SystemLog.h"

#include <sys/stat.h>

namespace brisko {
namespace {

bool isReferenced(const FSRef& reference, const CatalogItem& item) {
  return item.hasInformation && item.device == reference.device && item.inode == reference.inode;
}

// The whole tree of a folder, or the one item; nothing counted when it is another one by now.
FolderSize sizeOf(const FSRef& reference, const std::atomic<bool>* cancel) {
  Catalog& catalog = *Host::current().catalog;
  if (!reference.isFilled()) return {};
  const CatalogItem item = catalog.information(reference.path);
  if (!isReferenced(reference, item)) return {};
  if (item.kind != FileKind::directory) {
    FolderSize size;
    size.dataSize = item.dataSize;
    size.resourceSize = item.resourceSize;
    return size;
  }
  int error = 0;
  const auto folder = catalog.open(reference.path, error);
  if (!folder || !isReferenced(reference, folder->self())) return {};
  return folderSize(*folder, cancel);
}

}  // namespace

std::uint64_t NSFileManager::fileSize(const std::string& path, const std::atomic<bool>* cancel) {
  const CatalogItem item = Host::current().catalog->information(path);
  if (item.kind == FileKind::symbolicLink) return item.dataSize;
  return fastFolderSizeAtFSRef(convertStringToFSRef(path), cancel);
}

std::uint64_t NSFileManager::fastFolderSizeAtFSRef(const FSRef& reference,
                                                   const std::atomic<bool>* cancel) {
  return sizeOf(reference, cancel).total();
}

std::uint64_t CommUti::sizeOfFileRef(const FSRef& reference, const std::atomic<bool>* cancel) {
  return sizeOf(reference, cancel).dataSize;
}

bool NSFileManager::isFileSymbolicLink(const std::string& path) {
  return Host::current().catalog->information(path).kind == FileKind::symbolicLink;
}

FSRef NSFileManager::convertStringToFSRef(const std::string& path) {
  const CatalogItem item = Host::current().catalog->information(path);
  if (item.hasInformation) return {path, item.device, item.inode};
  SystemLog::line("Failed to create FSRef.");
  return {};
}

FSRef NSString::fsref(const std::string& path) {
  return NSFileManager::convertStringToFSRef(path);
}

bool NSFileManager::createDirectoryAtPathWithIntermediateDirectories(
    const std::string& path, const FolderAttributes& attributes) {
  // A failure is no failure here: callers look for the folder when they use it.
  static_cast<void>(mkdir(path.c_str(), attributes.posixPermissions));
  return true;
}

bool NSFileManager::isSolidState(const std::string& path) {
  switch (mediumOf(path)) {
    case Medium::solidState:
      return true;
    case Medium::rotating:
      return false;
    case Medium::noDevice:
      SystemLog::line("Could not find io classes of disk");
      return false;
    case Medium::noParent:
      SystemLog::line("Error while getting parent service entry");
      return false;
    case Medium::unreadable:
      SystemLog::line("Can't iterate services");
      return false;
  }
  return false;
}

}  // namespace brisko
