#include "BrowserKinds.h"

#include "BrowserPaths.h"
#include "CommUti.h"
#include "DeletablePermission.h"
#include "FileAttributes.h"
#include "KindRecipe.h"
#include "PropertyList.h"
#include "Removal.h"

#include <fmt/format.h>

#include <algorithm>

namespace brisko::BrowserKinds {
namespace {

using Strings = std::vector<std::string>;
using Pick = KindRecipe::Pick;
using Shows = KindRecipe::Shows;

constexpr const char* kSafariClosedTabs = "/Users/%@/Library/Safari/RecentlyClosedTabs.plist";
constexpr const char* kSafariDownloads = "/Users/%@/Library/Safari/Downloads.plist";
constexpr const char* kSafariStorage = "/Users/%@/Library/Safari/LocalStorage";
constexpr const char* kWebKitStorage = "/Users/%@/Library/WebKit/LocalStorage";

// The folders and files that the kind's templates stand for.
Strings pathsOf(const BrowerObj& kind) {
  if (kind.isBundle) return {BrowserPaths::formatted(kind.urlStr)};
  Strings paths;
  for (const std::string& location : kind.kindRule.locations) {
    for (std::string& path : BrowserPaths::resolved(location, kind.kindRule.holds))
      paths.push_back(std::move(path));
  }
  return paths;
}

// A bundle's template names the folder of all profiles, of which one counts; a desktop browser's is
// each profile.
Strings profilesOf(const BrowerObj& kind) {
  Strings paths = pathsOf(kind);
  if (!kind.isBundle) return paths;
  std::string profile = BrowserPaths::getDefaultWithPath(paths.front());
  if (profile.empty()) return {};
  return {std::move(profile)};
}

class Targets {
 public:
  void add(const std::string& path, bool isDatabase = false) {
    auto shown = FileIdentity::at(path);
    if (shown) all_.push_back({path, std::move(shown), isDatabase});
  }
  // A file that may be a database, with what SQLite keeps beside it: it must not outlive the file.
  void addFile(const std::string& path) {
    add(path);
    for (const char* suffix : {"-wal", "-shm", "-journal"})
      add(path + suffix);
  }
  void addAll(const Strings& paths) {
    for (const std::string& path : paths)
      add(path);
  }
  std::vector<BrowserTarget> take() { return std::move(all_); }

 private:
  std::vector<BrowserTarget> all_;
};

void addProfileFiles(const BrowerObj& kind, const KindRecipe& recipe, Targets& targets) {
  const Strings& files = kind.kindRule.files.empty() ? recipe.files : kind.kindRule.files;
  for (const std::string& profile : profilesOf(kind)) {
    for (const std::string& name : files) {
      if (recipe.remove != nullptr) {
        targets.add(profile + "/" + name, true);
      } else {
        targets.addFile(profile + "/" + name);
      }
    }
  }
}

std::vector<BrowserTarget> targetsOf(const BrowerObj& kind, const KindRecipe& recipe) {
  Targets targets;
  const Strings paths = pathsOf(kind);
  switch (recipe.pick) {
    case Pick::nothing:
      break;
    case Pick::path:
      for (const std::string& path : paths) {
        if (recipe.remove != nullptr) {
          targets.add(path, true);
        } else {
          targets.addFile(path);
        }
      }
      break;
    case Pick::sessionEntries:
      for (const std::string& path : paths)
        targets.addAll(BrowserPaths::entriesContaining(path, "Session"));
      break;
    case Pick::profileFiles:
      addProfileFiles(kind, recipe, targets);
      break;
    case Pick::profileCaches:
      for (const std::string& profile : profilesOf(kind))
        targets.addAll(BrowserPaths::entriesContaining(profile, "cache"));
      break;
    case Pick::safariCaches:
      for (const std::string& path : paths)
        targets.addAll({path + "Metadata", path + "com.apple.Safari"});
      break;
    case Pick::safariHistory:
      for (const std::string& path : paths)
        targets.add(path, true);
      targets.add(BrowserPaths::formatted(kSafariClosedTabs));
      break;
    case Pick::safariDownloads:
      targets.add(BrowserPaths::formatted(kSafariDownloads));
      break;
    case Pick::safariStorage:
      targets.addAll(
          {BrowserPaths::formatted(kSafariStorage), BrowserPaths::formatted(kWebKitStorage)});
      break;
  }
  return targets.take();
}

std::string itemsText(std::int64_t count) {
  return fmt::format("{} {}", count, count == 0 ? "Item" : "Items");
}

void showBytes(BrowerObj& kind) {
  for (const BrowserTarget& target : kind.targets)
    kind.bytes += BrowserPaths::fileSizeWithPath(target.path);
  kind.size = CommUti::longlongDiskSize(kind.bytes);
}

// Counts in what is there; a bundle's database that is not there is tried all the same, which says
// so in the log.
void showRows(BrowerObj& kind, const KindRecipe& recipe) {
  const ToGetDB& databases = ToGetDB::returnToGetDB();
  std::int64_t count = 0;
  bool hasDatabase = false;
  for (const BrowserTarget& target : kind.targets) {
    if (!target.isDatabase) {
      ++count;
      continue;
    }
    hasDatabase = true;
    const RowCount rows = (databases.*recipe.count)(target.path);
    count += rows.rows;
    if (!rows.reason.empty()) kind.reasons.push_back(target.path + ": " + rows.reason);
  }
  if (kind.isBundle && !hasDatabase)
    (databases.*recipe.count)(BrowserPaths::formatted(kind.urlStr));
  kind.count = count;
  kind.size = itemsText(count);
}

void read(BrowerObj& kind, BrowserFamily family) {
  const KindRecipe recipe = KindRecipe::of(family, kind.name);
  kind.bytes = 0;
  kind.count.reset();
  kind.reasons.clear();
  kind.targets = targetsOf(kind, recipe);
  std::int64_t count = 0;
  switch (recipe.shows) {
    case Shows::nothing:
      kind.size = "";
      return;
    case Shows::bytes:
      showBytes(kind);
      return;
    case Shows::rows:
      showRows(kind, recipe);
      return;
    case Shows::downloads:
      for (const BrowserTarget& target : kind.targets) {
        if (target.shown->kind != FileKind::regular) continue;
        count += static_cast<std::int64_t>(
            PropertyList::read(target.path)["DownloadHistory"].array().size());
      }
      break;
    case Shows::entries:
      for (const BrowserTarget& target : kind.targets)
        count += static_cast<std::int64_t>(BrowserPaths::getAllFileWithPath(target.path).size());
      break;
  }
  kind.count = count;
  kind.size = fmt::format("{} Items", count);
}

}  // namespace

std::string getIconWithKey(const std::string& kind) {
  if (kind == "Browsing History") return "icon_history";
  std::string word = kind;
  std::erase(word, ' ');
  if (word == "Session") return "icon_autofill";
  if (kind == "Caches") return "icon_caches";
  if (kind == "Download History" || kind == "Downloads History") return "icon_download";
  if (kind == "Save Password") return "icon_password";
  if (kind == "a Form Values") return "icon_tabform";
  return "icon_cookies";
}

void getGoogleFileSizeWithBrower(BrowerObj& kind) {
  read(kind, BrowserFamily::chrome);
}

void getFirefoxSizeWithBrower(BrowerObj& kind) {
  read(kind, BrowserFamily::firefox);
}

void getOpearSizeWithBrower(BrowerObj& kind) {
  read(kind, BrowserFamily::opera);
}

void getSafariSizeWithBrower(BrowerObj& kind) {
  read(kind, BrowserFamily::safari);
}

void readSize(BrowerObj& kind) {
  switch (kind.family) {
    case BrowserFamily::chrome:
      return getGoogleFileSizeWithBrower(kind);
    case BrowserFamily::firefox:
      return getFirefoxSizeWithBrower(kind);
    case BrowserFamily::opera:
      return getOpearSizeWithBrower(kind);
    case BrowserFamily::safari:
      return getSafariSizeWithBrower(kind);
  }
}

Cleaning clean(const BrowerObj& kind) {
  const KindRecipe recipe = KindRecipe::of(kind.family, kind.name);
  Cleaning cleaning;
  for (const BrowserTarget& target : kind.targets) {
    const std::string reason = target.isDatabase
                                   ? (ToGetDB::returnToGetDB().*recipe.remove)(target.path)
                                   : deleteFileWithPath(target, cleaning.freedBytes);
    if (!reason.empty()) cleaning.reasons.push_back(target.path + ": " + reason);
  }
  switch (recipe.after) {
    case KindRecipe::After::bytes:
      cleaning.size = "0 byte";
      break;
    case KindRecipe::After::items:
      cleaning.size = "0 Item";
      break;
    case KindRecipe::After::unchanged:
      cleaning.size = kind.size;
      break;
  }
  return cleaning;
}

std::string deleteFileWithPath(const BrowserTarget& target, std::uint64_t& freedBytes) {
  clearImmutable(target.path, target.shown);
  const DeletablePermission permission(target.path, target.shown);
  const RemovalReport report = RemovalEngine().remove(target.path, target.shown);
  freedBytes += report.freedBytes;
  return report.gone() ? "" : report.reason;
}

std::string lossText(const BrowerObj& kind) {
  const auto browser = kind.parObj.lock();
  const std::string name = browser ? browser->name : "";
  if (kind.name != "Save Password") return "";
  switch (kind.family) {
    case BrowserFamily::chrome: {
      const std::int64_t count = kind.count.value_or(0);
      return fmt::format("{} saved {} of {} will be lost. They cannot be brought back.", count,
                         count == 1 ? "password" : "passwords", name);
    }
    case BrowserFamily::opera:
      return fmt::format("The remembered searches of {} will be lost. Its passwords stay.", name);
    case BrowserFamily::firefox:
      return fmt::format("The search keywords of {} will be lost. Its passwords stay.", name);
    case BrowserFamily::safari:
      return fmt::format("The saved passwords of {} will be lost.", name);
  }
  return "";
}

}  // namespace brisko::BrowserKinds
