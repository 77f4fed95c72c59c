#include "FindDuplicateApp.h"

#include "ListingWalk.h"
#include "ReaderCrew.h"
#include "SystemLog.h"

#include <algorithm>
#include <functional>
#include <map>
#include <system_error>
#include <tuple>
#include <utility>

#include <sys/stat.h>

namespace brisko {
namespace {

// By what two files pair up.
using FileKey = std::tuple<std::uint64_t, std::uint64_t, std::uint64_t>;

template <typename Work>
void forEachInCrew(std::size_t count, const std::atomic<bool>& stop, Work work) {
  std::atomic<std::size_t> next = 0;
  ReaderCrew crew;
  crew.run(count, ReaderCrew::kMaximum, [&](ReaderCrew::Member& member) {
    for (std::size_t at = next++; at < count && !stop; at = next++) {
      work(at);
      member.unitDone();
    }
  });
}

// Has no digest, and is known all the same.
bool isEmptyFile(const fileAttrbItem& file) {
  return file.identity.kind == FileKind::regular && file.fileSize == 0;
}

bool isFolder(const ListedEntry& entry) {
  if (entry.identity.kind != FileKind::symbolicLink) {
    return entry.identity.kind == FileKind::directory;
  }
  struct stat target;
  return stat(entry.path.c_str(), &target) == 0 && S_ISDIR(target.st_mode);
}

}  // namespace

bool FindDuplicateApp::getAllFilePathName(const std::string& path, AppAttrbItem& item,
                                          const std::atomic<bool>& stop) {
  const auto folder = FileIdentity::at(path + "/.");
  if (!folder || folder->kind != FileKind::directory) return false;
  item.identity = *folder;
  ListingWalk walk;
  walk.visit = [&](const ListedEntry& entry) {
    if (isFolder(entry)) return true;
    auto file = std::make_shared<fileAttrbItem>();
    file->filePathName = entry.path;
    file->fileName = lastPathComponent(entry.path);
    file->fileSize = entry.size;
    file->identity = entry.identity;
    file->ModificationDate = {entry.identity.modificationSeconds,
                              static_cast<std::int32_t>(entry.identity.modificationNanoseconds)};
    item.DirectorySize += entry.size;
    item.AllFileInDirectory.push_back(std::move(file));
    return true;
  };
  walk.unreadable = [](const std::string& at, int error) {
    SystemLog::line("get contents Of Directory At Path failed{}: {}", at,
                    std::generic_category().message(error));
    return false;
  };
  return walk.run(path, stop);
}

bool FindDuplicateApp::InitInputAppDirectory(const std::vector<std::string>& paths) {
  std::vector<std::shared_ptr<AppAttrbItem>> listed(paths.size());
  forEachInCrew(paths.size(), stop_, [&](std::size_t at) {
    auto item = std::make_shared<AppAttrbItem>();
    item->DirectoryPathName = paths[at];
    item->DirectoryName = lastPathComponent(paths[at]);
    if (getAllFilePathName(paths[at], *item, stop_)) listed[at] = std::move(item);
  });
  currentSearchFile_.set({});
  for (auto& item : listed) {
    if (item) m_AllAppItem.push_back({std::move(item)});
  }
  return true;
}

bool FindDuplicateApp::getSameSizeDirInArray(const AppGroup& array, const AppAttrbItem& item,
                                             AppGroup& out) {
  std::copy_if(array.begin(), array.end(), std::back_inserter(out),
               [&](const auto& each) { return each->DirectorySize == item.DirectorySize; });
  return true;
}

bool FindDuplicateApp::CompareDir(AppAttrbItem& item, AppAttrbItem& other) {
  if (item.AllFileInDirectory.size() != other.AllFileInDirectory.size()) return false;
  for (AppAttrbItem* bundle : {&item, &other}) {
    algorithm reader;
    for (const auto& file : bundle->AllFileInDirectory)
      reader.getMD5_1K(*file);
  }
  algorithm reader;
  const auto isRead = [&](fileAttrbItem& file) {
    return isEmptyFile(file) || reader.getSingleMd5WithData(file);
  };
  algorithm::FileArray pool = other.AllFileInDirectory;
  return std::all_of(
      item.AllFileInDirectory.begin(), item.AllFileInDirectory.end(), [&](const auto& x) {
        const auto partner = std::find_if(pool.begin(), pool.end(), [&](const auto& y) {
          return x->md5_1k == y->md5_1k && x->fileSize == y->fileSize && isRead(*x) && isRead(*y) &&
                 x->md5 == y->md5;
        });
        if (partner == pool.end()) return false;
        pool.erase(partner);
        return true;
      });
}

bool FindDuplicateApp::getDuplicateAppDirInArray(const AppGroup& array,
                                                 const std::shared_ptr<AppAttrbItem>& item,
                                                 AppGroup& out) {
  AppGroup sameSize;
  getSameSizeDirInArray(array, *item, sameSize);
  std::erase_if(sameSize, [&](const auto& other) { return !CompareDir(*item, *other); });
  if (sameSize.empty()) return false;
  out.insert(out.end(), sameSize.begin(), sameSize.end());
  out.push_back(item);
  return true;
}

void FindDuplicateApp::examined(std::size_t count) {
  remaining_ -= std::min<std::uint64_t>(count, remaining_);
  progress_ = static_cast<std::uint32_t>(remaining_ * 100 / m_AppCount);
}

// Splits each class by what its bundles' files are, in any order; what is alone then drops out.
void FindDuplicateApp::splitByFiles(std::vector<std::vector<Bundle*>>& classes, bool byWhole) {
  std::vector<std::vector<Bundle*>> split;
  for (const auto& bundles : classes) {
    std::map<std::vector<FileKey>, std::vector<Bundle*>> byKeys;
    for (Bundle* bundle : bundles) {
      if (!bundle->isComparable) {
        examined(1);
        continue;
      }
      std::vector<FileKey> keys;
      for (const auto& file : bundle->item->AllFileInDirectory)
        keys.emplace_back(file->fileSize, file->md5_1k, byWhole ? file->md5 : 0);
      std::sort(keys.begin(), keys.end());
      byKeys[std::move(keys)].push_back(bundle);
    }
    for (auto& [keys, same] : byKeys) {
      if (same.size() > 1) {
        split.push_back(std::move(same));
      } else {
        examined(1);
      }
    }
  }
  classes = std::move(split);
}

void FindDuplicateApp::digestHeads(const std::vector<std::vector<Bundle*>>& classes) {
  std::vector<Bundle*> bundles;
  for (const auto& same : classes)
    bundles.insert(bundles.end(), same.begin(), same.end());
  forEachInCrew(bundles.size(), stop_, [&](std::size_t at) {
    AppAttrbItem& item = *bundles[at]->item;
    currentSearchFile_.offer([&] { return item.DirectoryPathName; });
    algorithm reader;
    for (const auto& file : item.AllFileInDirectory) {
      if (stop_) return;
      reader.getMD5_1K(*file);
    }
  });
}

void FindDuplicateApp::digestWhole(const std::vector<std::vector<Bundle*>>& classes) {
  struct Job {
    Bundle* bundle;
    fileAttrbItem* file;
    bool isRead;
  };
  std::vector<Job> jobs;
  for (const auto& same : classes) {
    for (Bundle* bundle : same) {
      for (const auto& file : bundle->item->AllFileInDirectory) {
        if (!isEmptyFile(*file)) jobs.push_back({bundle, file.get(), false});
      }
    }
  }
  forEachInCrew(jobs.size(), stop_, [&](std::size_t at) {
    currentSearchFile_.offer([&] { return jobs[at].bundle->item->DirectoryPathName; });
    algorithm reader;
    jobs[at].isRead = reader.getMD5(*jobs[at].file, &stop_);
  });
  for (const Job& job : jobs) {
    if (!job.isRead) job.bundle->isComparable = false;
  }
}

bool FindDuplicateApp::FindAppInArray(const std::vector<std::string>& paths, OutArray& out) {
  InitInputAppDirectory(paths);
  m_AppCount = paths.size();
  remaining_ = m_AllAppItem.size();
  if (m_AllAppItem.empty() || stop_) return true;

  std::map<std::pair<std::uint64_t, std::size_t>, std::vector<Bundle*>> bySize;
  for (Bundle& bundle : m_AllAppItem) {
    const AppAttrbItem& item = *bundle.item;
    bySize[{item.DirectorySize, item.AllFileInDirectory.size()}].push_back(&bundle);
  }
  std::vector<std::vector<Bundle*>> classes;
  for (auto& [size, bundles] : bySize) {
    if (bundles.size() > 1) {
      classes.push_back(std::move(bundles));
    } else {
      examined(1);
    }
  }
  digestHeads(classes);
  if (stop_) return true;
  splitByFiles(classes, false);
  digestWhole(classes);
  if (stop_) return true;
  splitByFiles(classes, true);

  // Bundles stand in one array, so their addresses tell their order.
  std::sort(classes.begin(), classes.end(),
            [](const auto& a, const auto& b) { return std::less<>()(a.front(), b.front()); });
  for (const auto& same : classes) {
    AppGroup& group = out.emplace_back();
    for (std::size_t i = 1; i < same.size(); ++i)
      group.push_back(same[i]->item);
    group.push_back(same.front()->item);
    examined(same.size());
  }
  return true;
}

}  // namespace brisko
