// The walk in its single steps, for those who want the list of paths itself. A search takes the
// walk of several threads instead, which comes to the same candidates.

#include "Host.h"
#include "SystemLog.h"
#include "getFileList.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace brisko {
namespace {

using Paths = std::vector<std::string>;

// The names in a folder in the file system's order. False, with the log line, when it cannot be
// listed.
bool namesIn(const std::string& path, Paths& names) {
  int error = 0;
  const auto folder = Host::current().catalog->open(path + "/.", error);
  CatalogBatch batch;
  while (folder && folder->read(batch, 0)) {
    for (const CatalogItem& item : batch.items)
      names.emplace_back(item.name);
  }
  if (folder) error = folder->error();
  if (folder && error == 0) return true;
  SystemLog::line("get contents Of Directory At Path failed{}: {}", path,
                  std::generic_category().message(error));
  return false;
}

std::string joined(const std::string& folder, const std::string& name) {
  return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

void append(Paths& all, Paths&& more) {
  all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

}  // namespace

bool getFileList::getDirectoryAtPath(const std::string& path, Paths& resultArray) {
  Paths names;
  if (path.empty() || !namesIn(path, names)) return false;
  for (const std::string& name : names) {
    const std::string full = joined(path, name);
    struct stat target;
    if (stat(full.c_str(), &target) != 0) {
      SystemLog::line("directory not exsts:{}", full);
    } else if (!S_ISDIR(target.st_mode)) {
      resultArray.push_back(full);
    } else if ((m_bSearchHiddenFile || !IsHiddenFile(full)) &&
               (m_bSearchSystemDirectory || path != "/" || !IsSystemDirectory(full))) {
      Paths below;
      getSubpathsOfDirectoryAtPath(below, full);
      append(resultArray, std::move(below));
    }
  }
  return true;
}

// As deep as the longest path that the system takes, no deeper.
bool getFileList::getSubpathsOfDirectoryAtPath(Paths& resultArray, const std::string& InPath) {
  if (InPath.empty() || m_bStopSearch) return false;
  currentPath_.set(InPath);
  Paths names;
  if (!namesIn(InPath, names)) return false;
  for (const std::string& name : names) {
    const std::string full = joined(InPath, name);
    struct stat status;
    if (lstat(full.c_str(), &status) != 0 || S_ISLNK(status.st_mode)) continue;
    if (S_ISDIR(status.st_mode)) {
      Paths below;
      if (!getSubpathsOfDirectoryAtPath(below, full)) continue;
      append(resultArray, std::move(below));
    }
    resultArray.push_back(full);
  }
  return true;
}

bool getFileList::getAppDirectory(const std::string& path, Paths& outArray,
                                  std::uint64_t limitSize) {
  const std::string_view bundle = outermostBundle(path);
  if (bundle.empty()) return false;
  const bool isListed = std::find(outArray.begin(), outArray.end(), bundle) != outArray.end();
  struct stat status;
  if (!isListed && lstat(path.c_str(), &status) == 0 &&
      static_cast<std::uint64_t>(status.st_size) > limitSize) {
    outArray.emplace_back(bundle);
  }
  return true;
}

}  // namespace brisko
