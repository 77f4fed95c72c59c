// Finding copies and comparing whole folders, one after the other. A search of many files takes
// ContentGrouping instead, which comes to the same copies.

#include "BundleContent.h"
#include "ListingWalk.h"
#include "algorithm.h"

#include <algorithm>

namespace brisko {
namespace {

struct Below {
  std::string name;  // the path below the folder
  FileKind kind;
};

bool listBelow(const std::string& path, std::vector<Below>& entries) {
  const std::atomic<bool> never = false;
  ListingWalk walk;
  walk.visit = [&](const ListedEntry& entry) {
    entries.push_back({entry.path.substr(path.size()), entry.identity.kind});
    return true;
  };
  walk.unreadable = [](const std::string&, int) { return false; };
  if (!walk.run(path, never)) return false;
  // The order in which a file system lists a folder says nothing about what is in it.
  std::sort(entries.begin(), entries.end(),
            [](const Below& a, const Below& b) { return a.name < b.name; });
  return true;
}

bool haveSameNames(const std::vector<Below>& a, const std::vector<Below>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const Below& one, const Below& other) { return one.name == other.name; });
}

// A link is a candidate by its own size, but never opened, so its content is not known.
bool isLink(const fileAttrbItem& item) {
  return item.identity.kind == FileKind::symbolicLink;
}

}  // namespace

bool algorithm::findFileWithSize(const FileArray& array, FileArray& outArray,
                                 const fileAttrbItem& findItem) {
  std::copy_if(array.begin(), array.end(), std::back_inserter(outArray),
               [&](const auto& each) { return each->fileSize == findItem.fileSize; });
  return true;
}

bool algorithm::findFileWithMd5(const FileArray& array, FileArray& outArray,
                                fileAttrbItem& findItem) {
  if (isLink(findItem) || !getSingleMd5WithData(findItem)) return false;
  if (findItem.md5_1k == 0) getMD5_1K(findItem);
  for (const auto& each : array) {
    if (isLink(*each)) continue;
    if (each->md5_1k == 0) getMD5_1K(*each);
    if (each->md5_1k != findItem.md5_1k || !getSingleMd5WithData(*each)) continue;
    if (fileAttrbItem::isEqual(each.get(), &findItem)) outArray.push_back(each);
  }
  return true;
}

bool algorithm::getDuplicateFile(const std::shared_ptr<fileAttrbItem>& item, const FileArray& From,
                                 FileArray& Result) {
  FileArray sameSize;
  FileArray copies;
  if (!item || !findFileWithSize(From, sameSize, *item) || sameSize.empty() ||
      !findFileWithMd5(sameSize, copies, *item)) {
    return false;
  }
  if (copies.empty()) return true;
  Result.insert(Result.end(), copies.begin(), copies.end());
  Result.push_back(item);
  return true;
}

bool algorithm::CompareDirectoryWithoutHash(const std::string& path,
                                            const std::string& otherDirectory) {
  std::vector<Below> entries;
  std::vector<Below> others;
  return listBelow(path, entries) && listBelow(otherDirectory, others) &&
         haveSameNames(entries, others);
}

bool algorithm::compareWholeFile(const std::string& path, const std::string& anotherFile) {
  const auto identity = FileIdentity::at(path);
  const auto other = FileIdentity::at(anotherFile);
  if (!identity || !other || identity->kind != FileKind::regular) return false;
  if (*identity == *other) return true;
  const std::atomic<bool> never = false;
  std::string reason;
  return sameBytes(path, *identity, anotherFile, *other, never, reason);
}

bool algorithm::CompareDirectory(const std::string& path, const std::string& otherDirectory) {
  std::vector<Below> entries;
  std::vector<Below> others;
  if (!listBelow(path, entries) || !listBelow(otherDirectory, others) ||
      !haveSameNames(entries, others)) {
    return false;
  }
  return std::equal(entries.begin(), entries.end(), others.begin(),
                    [&](const Below& one, const Below& other) {
                      if (one.kind != other.kind) return false;
                      return one.kind == FileKind::directory ||
                             compareWholeFile(path + one.name, otherDirectory + other.name);
                    });
}

}  // namespace brisko
