#include "getFileList.h"

#include "CandidateWalk.h"
#include "SystemLog.h"

#include <algorithm>
#include <array>
#include <iterator>

#include <strings.h>

namespace brisko {
namespace {

constexpr std::array<std::string_view, 6> kSystemFolders = {"Library", "Developer", "System",
                                                            "Volumes", "bin",       "sbin"};

std::atomic<bool> logsCandidates = false;

bool equalsInAnyCase(std::string_view text, std::string_view other) {
  return text.size() == other.size() && strncasecmp(text.data(), other.data(), text.size()) == 0;
}

// Calls `test` with each component and what of the path leads up to it, until it answers true.
template <typename Test>
bool anyComponent(std::string_view path, Test test) {
  for (std::size_t at = 0; at < path.size();) {
    const std::size_t slash = std::min(path.find('/', at), path.size());
    if (slash > at && test(path.substr(at, slash - at), path.substr(0, slash))) return true;
    at = slash + 1;
  }
  return false;
}

bool isNamedApp(std::string_view name) {
  return name.size() > 4 && equalsInAnyCase(name.substr(name.size() - 4), ".app");
}

}  // namespace

bool getFileList::getListAtPath(const std::string& path, CandidateStore& store,
                                std::vector<std::string>& DirectoryArray,
                                std::uint64_t LimittedSize) {
  skipped_.clear();
  store = {};
  constexpr std::size_t kLongestPath = std::size_t{1} << 16;
  if (path.empty() || path.size() > kLongestPath) return false;
  CandidateWalk walk(*this, store, LimittedSize);
  if (!walk.run(path, DirectoryArray)) return false;
  if (logsCandidates) {
    for (const Candidate* candidate : store.inOrder) {
      SystemLog::line("file:{} filesize:{}", CandidateStore::path(*candidate), candidate->fileSize);
    }
  }
  return true;
}

bool getFileList::getListAtPath(const std::string& path, std::vector<fileAttrbItem>& FileArray,
                                std::vector<std::string>& DirectoryArray,
                                std::uint64_t LimittedSize) {
  CandidateStore store;
  if (!getListAtPath(path, store, DirectoryArray, LimittedSize)) return false;
  std::transform(store.inOrder.begin(), store.inOrder.end(), std::back_inserter(FileArray),
                 [](const Candidate* candidate) { return CandidateStore::record(*candidate); });
  return true;
}

bool getFileList::IsHiddenFile(std::string_view path) {
  return anyComponent(path,
                      [](std::string_view name, std::string_view) { return name.front() == '.'; });
}

bool getFileList::IsSystemDirectory(std::string_view path) {
  bool isSystem = false;
  anyComponent(path, [&](std::string_view name, std::string_view) {
    isSystem = std::any_of(kSystemFolders.begin(), kSystemFolders.end(),
                           [&](std::string_view known) { return equalsInAnyCase(name, known); });
    return true;
  });
  return isSystem;
}

bool getFileList::IsAppDirectory(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/'))
    path.remove_suffix(1);
  const std::size_t slash = path.rfind('/');
  return isNamedApp(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

bool getFileList::HasAppDirectory(std::string_view path) {
  return anyComponent(path, [](std::string_view name, std::string_view) {
    return name.size() >= 4 && equalsInAnyCase(name.substr(name.size() - 4), ".app");
  });
}

std::string_view getFileList::outermostBundle(std::string_view path) {
  std::string_view bundle;
  anyComponent(path, [&](std::string_view name, std::string_view leading) {
    if (isNamedApp(name)) bundle = leading;
    return !bundle.empty();
  });
  return bundle;
}

void getFileList::setLogsCandidates(bool logs) {
  logsCandidates = logs;
}

}  // namespace brisko
