#include "FastCleanScanFile.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "FileIdentity.h"
#include "FolderSize.h"
#include "Host.h"
#include "HostLocations.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace brisko {
namespace {

struct Found {
  std::string path;
  std::string name;
  const JunkLocation* location = nullptr;
};

struct Measured {
  std::optional<FileIdentity> identity;
  std::uint64_t bytes = 0;
  std::string icon;
  bool isLeftOut = false;  ///< gone meanwhile, a mount, or more than a cache
  std::string problem;     ///< why `bytes` is not the whole truth; "" when it is
};

using Patterns = std::vector<std::string>;

// Whether the folder holds an entry of one of these names, itself or one folder down.
bool contains(Catalog::Folder& folder, const Patterns& names, int levels) {
  CatalogBatch batch;
  std::vector<std::string> folders;
  while (folder.read(batch, 0)) {
    for (const CatalogItem& item : batch.items) {
      const std::string name(item.name);
      if (matchesAny(names, lowerCase(name))) return true;
      const bool mayBeFolder = item.kind == FileKind::directory || item.kind == FileKind::unknown;
      if (levels > 0 && mayBeFolder) folders.push_back(name);
    }
  }
  // What cannot be read to its end cannot be called clean.
  if (folder.error() != 0) return true;
  int error = 0;
  return std::any_of(folders.begin(), folders.end(), [&](const std::string& name) {
    auto below = folder.open(name, error);
    return below ? contains(*below, names, levels - 1) : error == EACCES;
  });
}

bool keepsMoreThanCache(const Found& found, const FileIdentity& identity) {
  const Patterns& names = found.location->keepIfContains;
  if (names.empty() || identity.kind != FileKind::directory) return false;
  int error = 0;
  auto folder = Host::current().catalog->open(found.path, error);
  return !folder || contains(*folder, names, 1);
}

// As CommUti::sizeOfFileRef, and says how many folders it could not look into.
void measureTree(const std::string& path, const std::atomic<bool>& cancel, Measured& measured) {
  int error = 0;
  auto folder = Host::current().catalog->open(path, error);
  if (!folder) {
    measured.problem = std::strerror(error);
    return;
  }
  const FolderSize size = folderSize(*folder, &cancel);
  measured.bytes = size.dataSize;
  if (size.skippedFolders > 0) {
    measured.problem = fmt::format("{} folder{} in it could not be looked into",
                                   size.skippedFolders, size.skippedFolders == 1 ? "" : "s");
  }
}

Measured measure(const Found& found, const std::atomic<bool>& cancel) {
  Measured measured;
  measured.identity = FileIdentity::at(found.path);
  if (!measured.identity) {
    measured.isLeftOut = errno == ENOENT;
    measured.problem = measured.isLeftOut ? "" : std::strerror(errno);
    return measured;
  }
  const CatalogItem item = Host::current().catalog->information(found.path);
  if (item.isMountPoint) {
    measured.isLeftOut = true;
    measured.problem = "Another file system is mounted there";
    return measured;
  }
  measured.isLeftOut = keepsMoreThanCache(found, *measured.identity);
  if (measured.isLeftOut) return measured;
  if (measured.identity->kind == FileKind::directory) {
    measureTree(found.path, cancel, measured);
  } else {
    measured.bytes = item.dataSize;
  }
  measured.icon = Host::current().workspace->iconName(found.path);
  return measured;
}

// Why a location gave nothing, when that is worth telling: a missing one is not, nor is a plain
// file.
std::optional<std::string> reasonForSkipping(const std::string& path, int error) {
  if (error == 0 || error == ENOENT) return std::nullopt;
  if (error != ENOTDIR && error != ELOOP) return std::string(std::strerror(error));
  const auto identity = FileIdentity::at(path);
  if (identity && identity->kind == FileKind::symbolicLink) return "It is a symbolic link";
  return std::nullopt;
}

std::shared_ptr<TCTreeNode> entryNode(const Found& found, Measured& measured, bool selected) {
  auto node = std::make_shared<TCTreeNode>();
  node->path = found.path;
  node->title = found.name;
  node->size = CommUti::convertVolSpace(measured.bytes);
  node->selectState = selected ? 1 : 0;
  node->image = std::move(measured.icon);
  node->logicalBytes = measured.bytes;
  node->identity = measured.identity;
  return node;
}

// Ascending by the size as shown; entries that show the same size keep the order they were found
// in.
void sortBySize(std::vector<std::shared_ptr<TCTreeNode>>& nodes) {
  std::vector<std::pair<std::uint64_t, std::shared_ptr<TCTreeNode>>> keyed;
  keyed.reserve(nodes.size());
  for (auto& node : nodes) {
    const std::uint64_t shown = CommUti::volSpaceFromString(node->size);
    keyed.emplace_back(shown, std::move(node));
  }
  std::stable_sort(keyed.begin(), keyed.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::transform(keyed.begin(), keyed.end(), nodes.begin(),
                 [](auto& pair) { return std::move(pair.second); });
}

// The test is CommUti::isBelongRunningApp's; asking the workspace once per category instead of once
// per location keeps a home with hundreds of containers from being hundreds of process listings.
std::set<std::string> runningApplications() {
  std::set<std::string> identifiers;
  for (const LaunchedApplication& application : Host::current().workspace->launchedApplications()) {
    identifiers.insert(application.bundleIdentifier);
  }
  return identifiers;
}

}  // namespace

/// One scan: what it fills, and whether anybody still wants to know.
struct FastCleanScanFile::Run {
  Nodes nodes;
  std::array<bool, kJunkCategoryCount> wanted{};
  std::function<void(int)> report;
  std::atomic<bool> isDropped{false};
};

namespace {

// The entries of one location that its filters let through, in the file system's order.
void listLocation(const JunkLocation& location, std::vector<Found>& found,
                  std::vector<SkippedPath>& skipped) {
  int error = 0;
  auto folder = Host::current().catalog->open(location.path, error);
  if (!folder) {
    if (auto reason = reasonForSkipping(location.path, error)) {
      skipped.push_back({location.path, std::move(*reason)});
    }
    return;
  }
  CatalogBatch batch;
  while (folder->read(batch, 0)) {
    for (CatalogItem& item : batch.items) {
      if (item.kind == FileKind::unknown && !location.kinds.empty()) {
        folder->information({&item, 1});
      }
      std::string name(item.name);
      if (!location.takes(name, item.kind)) continue;
      std::string path = location.path + "/" + name;
      found.push_back({std::move(path), std::move(name), &location});
    }
  }
  if (folder->error() != 0) {
    skipped.push_back({location.path, std::strerror(folder->error())});
  }
}

}  // namespace

FastCleanScanFile& FastCleanScanFile::shareInstall() {
  static auto* shared = new FastCleanScanFile;
  return *shared;
}

FastCleanScanFile::FastCleanScanFile() {
  wanted_.fill(true);
}
FastCleanScanFile::~FastCleanScanFile() = default;

const std::array<std::string, kJunkCategoryCount>& FastCleanScanFile::getIcon() {
  static const std::array<std::string, kJunkCategoryCount> icons = {
      "ic_systema", "ic_appa", "ic_email", "ic_itunes", "ic_trash", "ic_xcode"};
  return icons;
}

const std::array<std::string, kJunkCategoryCount>& FastCleanScanFile::getName() {
  static const std::array<std::string, kJunkCategoryCount> names = {
      "System Junk", "Application Junk", "Email Junk",
      "iTunes Junk", "Trash Bin Junk",   "Xcode Junk"};
  return names;
}

const std::array<std::string, kJunkCategoryCount>& FastCleanScanFile::subName() {
  static const std::array<std::string, kJunkCategoryCount> descriptions = {
      "Clean up system junk files, useless caches, logs, etc.",
      "Remove junk files produced by applications and software.",
      "Remove useless email attachments and useless files, etc.",
      "Clean up iTunes caches, useless backups, junk files, etc.",
      "Empty trash bin to save disk space.",
      "Remove junk files of Xcode."};
  return descriptions;
}

bool FastCleanScanFile::startsSelected(int category) {
  return category >= 0 && category <= 2;
}

FastCleanScanFile::Nodes FastCleanScanFile::getAllList() {
  if (run_) run_->isDropped = true;
  run_.reset();
  allType_.clear();
  for (std::size_t i = 0; i < kJunkCategoryCount; ++i) {
    auto node = std::make_shared<TCTreeNode>();
    node->title = getName()[i];
    node->subTitle = subName()[i];
    node->image = getIcon()[i];
    allType_.push_back(std::move(node));
  }
  return allType_;
}

void FastCleanScanFile::beginScan() {
  prepareScan();
  runScan();
}

void FastCleanScanFile::prepareScan() {
  if (allType_.empty() || run_) getAllList();
  auto run = std::make_shared<Run>();
  run->nodes = allType_;
  run->wanted = wanted_;
  run->report = progressSEL_;
  beStop_ = false;
  run_ = run;
  std::lock_guard lock(mutex_);
  prepared_ = std::move(run);
}

void FastCleanScanFile::runScan() {
  std::lock_guard scanning(scanning_);
  std::shared_ptr<Run> run;
  {
    std::lock_guard lock(mutex_);
    run = std::move(prepared_);
    if (!run) return;
    skipped_.clear();
  }
  std::optional<HostLocations> host;
  for (int category = 0; category < kJunkCategoryCount; ++category) {
    TCTreeNode& node = *run->nodes[static_cast<std::size_t>(category)];
    const bool isWanted = run->wanted[static_cast<std::size_t>(category)];
    if (isWanted && !beStop_ && !run->isDropped) {
      if (!host) host = HostLocations::current();
      scanCategory(*run, category, locations(category, *host));
    }
    std::uint64_t total = 0;
    for (const auto& entry : node.detailChildren)
      total += entry->logicalBytes;
    node.logicalBytes = total;
    node.size = CommUti::convertVolSpace(total);
    Dispatch::mainAsync([run, category] {
      if (run->report && !run->isDropped) run->report(category);
    });
  }
}

void FastCleanScanFile::scanCategory(Run& run, int category,
                                     const std::vector<JunkLocation>& places) {
  std::vector<Found> found;
  std::vector<SkippedPath> skippedHere;
  const std::set<std::string> running = runningApplications();
  for (const JunkLocation& location : places) {
    if (location.path.starts_with(".") || running.contains(location.path)) continue;
    listLocation(location, found, skippedHere);
  }

  std::vector<Measured> measured(found.size());
  Dispatch::apply(found.size(), [&](std::size_t i) {
    if (run.isDropped) return;
    {
      std::lock_guard lock(mutex_);
      pathAtWork_ = found[i].path;
    }
    measured[i] = measure(found[i], run.isDropped);
  });

  TCTreeNode& node = *run.nodes[static_cast<std::size_t>(category)];
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (!measured[i].problem.empty()) {
      skippedHere.push_back({found[i].path, std::move(measured[i].problem)});
    }
    if (measured[i].isLeftOut) continue;
    node.children.push_back(found[i].path);
    node.detailChildren.push_back(entryNode(found[i], measured[i], startsSelected(category)));
  }
  sortBySize(node.detailChildren);
  std::lock_guard lock(mutex_);
  std::move(skippedHere.begin(), skippedHere.end(), std::back_inserter(skipped_));
}

std::vector<std::string> FastCleanScanFile::entriesIn(const std::vector<JunkLocation>& places) {
  std::vector<Found> found;
  std::vector<SkippedPath> skipped;
  for (const JunkLocation& location : places)
    listLocation(location, found, skipped);
  std::vector<std::string> paths;
  for (const Found& entry : found) {
    const auto identity = FileIdentity::at(entry.path);
    if (identity && !keepsMoreThanCache(entry, *identity)) paths.push_back(entry.path);
  }
  return paths;
}

void FastCleanScanFile::setBeStop(bool stop) {
  beStop_ = stop;
}

void FastCleanScanFile::setCategories(const std::array<bool, kJunkCategoryCount>& wanted) {
  wanted_ = wanted;
}

void FastCleanScanFile::setProgressSEL(std::function<void(int)> report) {
  progressSEL_ = std::move(report);
}

std::string FastCleanScanFile::pathAtWork() const {
  std::lock_guard lock(mutex_);
  return pathAtWork_;
}

std::vector<SkippedPath> FastCleanScanFile::skipped() const {
  std::lock_guard lock(mutex_);
  return skipped_;
}

std::vector<JunkLocation> FastCleanScanFile::locations(int category) {
  return locations(category, HostLocations::current());
}

std::vector<JunkLocation> FastCleanScanFile::locations(int category, const HostLocations& host) {
  std::vector<std::string> defined;
  CommUti::folderPath(category, defined);
  std::vector<JunkLocation> all;
  for (std::string& path : defined) {
    JunkLocation location;
    location.path = std::move(path);
    all.push_back(std::move(location));
  }
  const std::vector<JunkLocation>& own = host.locations(category);
  all.insert(all.end(), own.begin(), own.end());
  return all;
}

}  // namespace brisko
