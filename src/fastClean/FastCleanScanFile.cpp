#include "FastCleanScanFile.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "FileIdentity.h"
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

std::shared_ptr<TCTreeNode> entryNode(JunkEntry& entry, bool selected) {
  auto node = std::make_shared<TCTreeNode>();
  node->path = std::move(entry.path);
  node->title = std::move(entry.name);
  node->size = CommUti::convertVolSpace(entry.bytes);
  node->selectState = selected ? 1 : 0;
  node->image = std::move(entry.icon);
  node->logicalBytes = entry.bytes;
  node->identity = entry.identity;
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
  TCTreeNode& node = *run.nodes[static_cast<std::size_t>(category)];
  const std::set<std::string> running = runningApplications();
  for (const JunkLocation& location : places) {
    if (location.path.starts_with(".") || running.contains(location.path)) continue;
    scanLocation(run, location, node, startsSelected(category));
  }
  sortBySize(node.detailChildren);
}

void FastCleanScanFile::scanLocation(const Run& run, const JunkLocation& location, TCTreeNode& node,
                                     bool selected) {
  std::vector<SkippedPath> skippedHere;
  JunkEntries found(location, skippedHere);
  std::vector<JunkEntry>& entries = found.entries();
  Dispatch::apply(entries.size(), [&](std::size_t i) {
    if (run.isDropped) return;
    {
      std::lock_guard lock(mutex_);
      pathAtWork_ = entries[i].path;
    }
    found.measure(entries[i], run.isDropped);
  });
  for (JunkEntry& entry : entries) {
    if (!entry.problem.empty()) skippedHere.push_back({entry.path, std::move(entry.problem)});
    if (entry.isLeftOut) continue;
    node.children.push_back(entry.path);
    node.detailChildren.push_back(entryNode(entry, selected));
  }
  std::lock_guard lock(mutex_);
  std::move(skippedHere.begin(), skippedHere.end(), std::back_inserter(skipped_));
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
