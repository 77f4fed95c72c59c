#include "ApplicationListing.h"

#include "DpkgDatabase.h"
#include "HostFolders.h"
#include "PathNames.h"
#include "SnapApplications.h"
#include "UserPrograms.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace brisko {
namespace {

using Kind = InstalledApplication::Kind;

// When the item was made; its last change where the file system does not keep that.
std::int64_t dateOf(const std::string& path) {
  struct statx facts;
  if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BTIME | STATX_MTIME, &facts) !=
      0) {
    return 0;
  }
  const bool hasBirth = (facts.stx_mask & STATX_BTIME) != 0 && facts.stx_btime.tv_sec > 0;
  return hasBirth ? facts.stx_btime.tv_sec : facts.stx_mtime.tv_sec;
}

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// A key of two letters, or the name of an interpreter, finds what belongs to others.
void addKey(std::vector<std::string>& keys, const std::string& key) {
  constexpr std::size_t kShortest = 3;
  const bool isKnown = std::find(keys.begin(), keys.end(), key) != keys.end();
  if (key.size() >= kShortest && !isKnown && !isInterpreter(key)) keys.push_back(key);
}

class Listing {
 public:
  Listing(std::vector<DesktopEntry> entries, const HostFolders& folders,
          const std::vector<FlatpakInstallation>& flatpaks)
      : entries_(std::move(entries)), folders_(folders), flatpaks_(flatpaks) {}

  std::vector<InstalledApplication> make() {
    std::vector<const DesktopEntry*> open;
    for (const DesktopEntry& entry : entries_) {
      auto application = ofExport(entry);
      if (application) {
        all_.push_back(*std::move(application));
      } else {
        open.push_back(&entry);
      }
    }
    takePackages(open);
    for (const DesktopEntry* entry : open) {
      if (auto application = ofFiles(*entry)) all_.push_back(*std::move(application));
    }
    sort();
    return std::move(all_);
  }

 private:
  static InstalledApplication made(const DesktopEntry& entry, Kind kind) {
    InstalledApplication application;
    application.kind = kind;
    application.desktopID = entry.id;
    application.name = entry.name;
    application.iconName = entry.icon;
    application.path = entry.path;
    return application;
  }

  // Flatpaks and snaps, told by the folder that the entry is in: their own, or that of one with the
  // same id that the user has changed a copy of.
  std::optional<InstalledApplication> ofExport(const DesktopEntry& entry) const {
    std::vector<std::string> files = {entry.path};
    files.insert(files.end(), entry.shadowed.begin(), entry.shadowed.end());
    for (const std::string& file : files) {
      for (const FlatpakInstallation& installation : flatpaks_) {
        if (isBelow(file, installation.exports())) return ofFlatpak(entry, installation);
      }
      if (isBelow(file, snapExports(folders_.root()))) return ofSnap(entry, lastName(file));
    }
    return std::nullopt;
  }

  std::optional<InstalledApplication> ofFlatpak(const DesktopEntry& entry,
                                                const FlatpakInstallation& installation) const {
    // An application may export several entries; their names then begin with its id.
    auto deployment = installation.deployment(entry.flatpak.empty() ? entry.id : entry.flatpak);
    if (!deployment) return std::nullopt;
    InstalledApplication application = made(entry, Kind::flatpak);
    application.version = deployment->version;
    application.packageName = deployment->ref;
    application.isForUser = installation.isForUser();
    application.bytes = deployment->bytes;
    application.date = deployment->date;
    addKey(application.keys, deployment->id);
    addKeys(application, entry);
    return application;
  }

  std::optional<InstalledApplication> ofSnap(const DesktopEntry& entry,
                                             const std::string& file) const {
    // "NAME_APP.desktop"; only the entry itself can say that there is a "_" in the name.
    const std::string snap = entry.snap.empty() ? file.substr(0, file.find('_')) : entry.snap;
    const auto facts = snapFacts(folders_.root(), snap);
    if (!facts) return std::nullopt;
    InstalledApplication application = made(entry, Kind::snap);
    application.version = facts->version;
    application.packageName = snap;
    application.bytes = facts->bytes;
    application.date = facts->date;
    addKey(application.keys, snap);
    addKeys(application, entry);
    return application;
  }

  // Takes the entries out of `open` that a package owns: by the file (or the one that the user's
  // copy hides, or the one that a link leads to), else by the program that a system's entry starts.
  void takePackages(std::vector<const DesktopEntry*>& open) {
    if (open.empty()) return;
    const DpkgDatabase database(folders_.path("/var/lib/dpkg"));
    take(open, database, ".desktop", [this](const auto& entry) { return filesOf(entry); });
    take(open, database, "", [this](const auto& entry) { return programsOf(entry); });
    dropStarters(open, database);
  }

  // A starter of the user's own for a package's program makes that no program of the user's.
  void dropStarters(std::vector<const DesktopEntry*>& open, const DpkgDatabase& database) const {
    const auto programOfEntry = [this](const DesktopEntry* entry) {
      return withoutRoot(programOf(execWords(entry->exec)));
    };
    std::vector<std::string> programs;
    for (const DesktopEntry* entry : open) {
      std::string program = programOfEntry(entry);
      if (isBelow(program, "/opt")) programs.push_back(std::move(program));
    }
    const auto owners = database.owners(programs, "");
    std::erase_if(open, [&](const auto* entry) { return owners.contains(programOfEntry(entry)); });
  }

  // `pathsOf` gives the paths by any of which a package may own the entry, those first that count
  // more.
  template <typename Paths>
  void take(std::vector<const DesktopEntry*>& open, const DpkgDatabase& database,
            std::string_view suffix, const Paths& pathsOf) {
    std::unordered_map<const DesktopEntry*, std::vector<std::string>> paths;
    std::vector<std::string> wanted;
    for (const DesktopEntry* entry : open) {
      const auto& own = paths.emplace(entry, pathsOf(*entry)).first->second;
      wanted.insert(wanted.end(), own.begin(), own.end());
    }
    const auto owners = database.owners(wanted, suffix);
    std::erase_if(open, [&](const DesktopEntry* entry) {
      for (const std::string& path : paths[entry]) {
        const auto found = owners.find(path);
        if (found == owners.end()) continue;
        all_.push_back(ofPackage(*entry, found->second));
        return true;
      }
      return false;
    });
  }

  InstalledApplication ofPackage(const DesktopEntry& entry,
                                 const DpkgDatabase::Owner& owner) const {
    InstalledApplication application = made(entry, Kind::package);
    application.version = owner.package->version;
    application.packageName = owner.package->name;
    application.bytes = owner.package->bytes;
    application.date = owner.date;
    addKeys(application, entry);
    addKey(application.keys, owner.package->name.substr(0, owner.package->name.find(':')));
    return application;
  }

  std::optional<InstalledApplication> ofFiles(const DesktopEntry& entry) const {
    if (!isBelow(entry.path, folders_.home()) &&
        !isBelow(entry.path, folders_.variable("XDG_DATA_HOME").value_or("/"))) {
      return std::nullopt;
    }
    std::vector<std::string> files = userProgramFiles(entry, folders_);
    if (files.empty()) return std::nullopt;
    InstalledApplication application = made(entry, Kind::files);
    application.version = entry.version;
    application.path = files.front();
    application.date = dateOf(files.front());
    application.files = std::move(files);
    addKeys(application, entry);
    return application;
  }

  static void addKeys(InstalledApplication& application, const DesktopEntry& entry) {
    addKey(application.keys, entry.id);
    std::string program = lastName(programOf(execWords(entry.exec)));
    for (const std::string_view suffix : {".AppImage", ".appimage", ".sh", ".py", ".jar"}) {
      if (program.ends_with(suffix)) program.resize(program.size() - suffix.size());
    }
    addKey(application.keys, program);
    addKey(application.keys, entry.windowClass);
  }

  // As packages list them: without the root.
  std::vector<std::string> filesOf(const DesktopEntry& entry) const {
    std::vector<std::string> files = {entry.path};
    files.insert(files.end(), entry.shadowed.begin(), entry.shadowed.end());
    std::error_code error;
    if (std::filesystem::is_symlink(entry.path, error)) {
      const std::string target = std::filesystem::canonical(entry.path, error);
      if (!error) files.push_back(target);
    }
    for (std::string& file : files)
      file = withoutRoot(std::move(file));
    return files;
  }

  // Only for the system's entries: the user may have a starter of an own for any program.
  std::vector<std::string> programsOf(const DesktopEntry& entry) const {
    const std::string program = programOf(execWords(entry.exec));
    if (program.empty() || isInterpreter(lastName(program)) ||
        isBelow(entry.path, folders_.home())) {
      return {};
    }
    if (program.starts_with('/')) return {program};
    if (program.find('/') != std::string::npos) return {};
    return {"/usr/bin/" + program, "/usr/games/" + program, "/bin/" + program};
  }

  std::string withoutRoot(std::string path) const {
    return folders_.hasRoot() && isBelow(path, folders_.root())
               ? path.substr(folders_.root().size())
               : path;
  }

  void sort() {
    std::vector<std::pair<std::string, InstalledApplication>> keyed;
    keyed.reserve(all_.size());
    for (InstalledApplication& application : all_) {
      std::string key = lowerCase(application.name) + '\0' + application.desktopID;
      keyed.emplace_back(std::move(key), std::move(application));
    }
    std::sort(keyed.begin(), keyed.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    all_.clear();
    for (auto& [key, application] : keyed)
      all_.push_back(std::move(application));
  }

  const std::vector<DesktopEntry> entries_;
  const HostFolders& folders_;
  const std::vector<FlatpakInstallation>& flatpaks_;
  std::vector<InstalledApplication> all_;
};

}  // namespace

std::vector<InstalledApplication> listedApplications(
    std::vector<DesktopEntry> entries, const HostFolders& folders,
    const std::vector<FlatpakInstallation>& flatpaks) {
  return Listing(std::move(entries), folders, flatpaks).make();
}

}  // namespace brisko
