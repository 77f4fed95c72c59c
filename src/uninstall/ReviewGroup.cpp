#include "ReviewGroup.h"

#include "AppNames.h"
#include "Host.h"
#include "HostApplications.h"
#include "HostRelatedLocations.h"
#include "InstalledNames.h"
#include "PathNames.h"
#include "Removal.h"
#include "fileAttrbItem.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace brisko {
namespace {

using Role = AMAppItem::Role;
using Kind = InstalledApplication::Kind;

// Whether the item is open. A process knows its program by the place that no link leads to.
bool isRunning(const AMAppItem& item, const std::vector<LaunchedApplication>& running) {
  std::error_code error;
  const std::string place = std::filesystem::canonical(item.path, error);
  const bool isProgram = !error && !isOfPackage(item);
  return std::any_of(running.begin(), running.end(), [&](const LaunchedApplication& application) {
    if (!item.bundleID.empty() && application.bundleIdentifier == item.bundleID) return true;
    return isProgram && (application.path == place || isBelow(application.path, place));
  });
}

AppItem made(const std::string& path, SizeTime sizes) {
  return sizes == SizeTime::now ? RelatedAppFilesScanner::aConstructItem(path, 0)
                                : RelatedAppFilesScanner::constructItem(path, 0);
}

AppItem packageItem(const std::string& name, Role role) {
  auto item = std::make_shared<AMAppItem>();
  item->role = role;
  item->name = name;
  item->image = "package-x-generic";
  item->bIsGetSize = true;
  item->size = "";
  return item;
}

/// Builds the group of one application of the host's.
class HostGroup {
 public:
  HostGroup(ReviewGroup& group, const InstalledNames& names, SizeTime sizes)
      : group_(group), host_(*group.item->host), names_(names), sizes_(sizes) {}

  void build() {
    auto plan = std::make_shared<UninstallPlan>(Host::current().installedApplications->plan(host_));
    group_.refusal = plan->refusal;
    going_ = plan->removes;
    going_.insert(going_.end(), plan->alsoRemoves.begin(), plan->alsoRemoves.end());
    if (host_.kind == Kind::files) {
      addFiles();
    } else {
      addPackages(std::move(plan));
    }
    if (!group_.refusal.empty()) {
      for (const AppItem& entry : group_.entries) {
        entry->canBeTicked = entry->startsTicked = false;
        entry->note = group_.refusal;
      }
    }
    for (const HostRelatedLocation& location : hostRelatedLocations())
      addRelated(location);
  }

 private:
  void addFiles() {
    for (const std::string& path : host_.files) {
      AppItem entry = made(path, sizes_);
      if (group_.entries.empty()) {
        entry->name = group_.item->name;
        entry->image = group_.item->image;
        entry->host = group_.item->host;
      } else {
        entry->owner = group_.item->host;
      }
      group_.entries.push_back(std::move(entry));
    }
  }

  void addPackages(std::shared_ptr<const UninstallPlan> plan) {
    AppItem own = packageItem(group_.item->name, Role::package);
    own->image = group_.item->image;
    own->path = host_.packageName;
    own->bundleID = group_.item->bundleID;
    own->bundleVersion = group_.item->bundleVersion;
    own->date = group_.item->date;
    own->host = group_.item->host;
    own->plan = plan;
    const std::uint64_t bytes = plan->bytes > 0 ? plan->bytes : host_.bytes;
    if (bytes > 0) own->setBytes(bytes);
    if (!plan->leavesUnused.empty()) {
      const std::size_t count = plan->leavesUnused.size();
      own->note =
          fmt::format("Leaves {} package{} that nothing else needs", count, count == 1 ? "" : "s");
    }
    group_.entries.push_back(std::move(own));
    for (const std::string& name : plan->alsoRemoves) {
      AppItem along = packageItem(name, Role::packageAlong);
      along->path = name;
      along->canBeTicked = along->startsTicked = false;
      group_.entries.push_back(std::move(along));
    }
  }

  void addRelated(const HostRelatedLocation& location) {
    std::vector<std::string> entries;
    int error = 0;
    const auto opened = Host::current().catalog->open(location.folder, error);
    CatalogBatch batch;
    while (opened && opened->read(batch, 0)) {
      for (const CatalogItem& entry : batch.items)
        entries.emplace_back(entry.name);
    }
    std::unordered_map<std::string, AppItem> found;
    // The name comes first, as in the library locations.
    take(location, entries, host_.name, false, found);
    for (const std::string& key : host_.keys)
      take(location, entries, key, true, found);
  }

  void take(const HostRelatedLocation& location, const std::vector<std::string>& entries,
            const std::string& key, bool isOwnKey,
            std::unordered_map<std::string, AppItem>& found) {
    for (const std::string& entry : entries) {
      if (!location.matches(entry, key)) continue;
      const bool isClose = isOwnKey && (location.isWhole || endsAtWord(entry, key));
      const auto [known, isNew] = found.try_emplace(entry);
      if (isNew) known->second = relatedItem(location.folder + "/" + entry, entry);
      AMAppItem& item = *known->second;
      if (!isClose || !item.sharedWith.empty() || !item.canBeTicked) continue;
      // What stays keeps its settings, unless the user says so.
      item.startsTicked = group_.refusal.empty();
      item.note.clear();
    }
  }

  AppItem relatedItem(const std::string& path, const std::string& entry) {
    AppItem item = made(path, sizes_);
    item->role = Role::relatedFile;
    item->owner = group_.item->host;
    item->sharedWith = names_.otherOwner(entry, *group_.item, going_);
    item->startsTicked = false;
    if (item->sharedWith.empty()) item->note = "Only the name begins alike";
    if (const auto refusal = RemovalEngine().refusal(path)) {
      item->canBeTicked = false;
      item->note = refusal->reason;
    }
    group_.entries.push_back(item);
    return item;
  }

  // What follows the key is not part of the same word: "foo", "foo.conf", "foo-2", not "foobar".
  static bool endsAtWord(const std::string& entry, const std::string& key) {
    const std::string name = withoutBlanks(lowerCased(entry));
    const std::string wanted = withoutBlanks(lowerCased(key));
    if (name.size() <= wanted.size()) return true;
    const auto next = static_cast<unsigned char>(name[wanted.size()]);
    return next < 0x80 && std::isalnum(next) == 0;
  }

  ReviewGroup& group_;
  const InstalledApplication& host_;
  const InstalledNames& names_;
  SizeTime sizes_;
  std::vector<std::string> going_;
};

void addSharers(AppItems& entries, const AMAppItem& item, const InstalledNames& names) {
  for (const AppItem& entry : entries) {
    if (entry->role != Role::relatedFile) continue;
    entry->sharedWith = names.otherOwner(lastPathComponent(entry->path), item, {});
  }
}

}  // namespace

ReviewGroup makeReviewGroup(const AppItem& item, const InstalledNames& names,
                            const std::vector<LaunchedApplication>& running, SizeTime sizes) {
  ReviewGroup group;
  group.item = item;
  group.title = item->name;
  group.isRunning = isRunning(*item, running);
  if (item->host) {
    HostGroup(group, names, sizes).build();
  } else {
    group.entries = RelatedAppFilesScanner::relatedFilesToApplicationAtPath(item->path, sizes);
    addSharers(group.entries, *item, names);
  }
  group.isReady = true;
  return group;
}

}  // namespace brisko
