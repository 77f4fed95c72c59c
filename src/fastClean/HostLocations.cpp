#include "HostLocations.h"

#include "Host.h"
#include "Resources.h"
#include "SystemLog.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include <sys/stat.h>

namespace brisko {
namespace {

using Strings = std::vector<std::string>;

constexpr const char* kTableName = "HostLocations.plist";

// A row as the table has it, its lists resolved.
struct Row {
  int category = 0;
  std::string location;
  Strings include;
  Strings exclude;
  Strings keepIfContains;
  Strings skipLocations;
  std::vector<FileKind> kinds;
  std::string stickyFolder;
  std::string besideFolder;
};

/// Reads the table; the first thing it does not understand ends it.
class TableReader {
 public:
  explicit TableReader(const PropertyList& table) : table_(table) {}

  std::optional<std::vector<Row>> read() {
    if (!table_.isDictionary()) return std::nullopt;
    std::vector<Row> rows;
    for (const PropertyList& entry : table_["locations"].array()) {
      ++index_;
      rows.push_back(row(entry));
      if (!complaint_.empty()) {
        SystemLog::line("{}: location {}: {}; no host locations are used", kTableName, index_,
                        complaint_);
        return std::nullopt;
      }
    }
    return rows;
  }

 private:
  Row row(const PropertyList& entry) {
    Row row;
    for (const auto& [key, value] : entry.dictionary())
      take(row, key, value);
    if (row.location.empty()) complain("has no location");
    if (!entry["category"].isNumber() || row.category < 0 || row.category > 5) {
      complain("has no category from 0 to 5");
    }
    return row;
  }

  void take(Row& row, const std::string& key, const PropertyList& value) {
    if (key == "category") {
      row.category = static_cast<int>(value.integer());
    } else if (key == "location") {
      row.location = value.string();
    } else if (key == "include") {
      row.include = strings(value);
    } else if (key == "exclude") {
      row.exclude = lowerCase(strings(value));
    } else if (key == "keepIfContains") {
      row.keepIfContains = lowerCase(strings(value));
    } else if (key == "skipLocations") {
      row.skipLocations = strings(value);
    } else if (key == "stickyFolder") {
      row.stickyFolder = value.string();
    } else if (key == "besideFolder") {
      row.besideFolder = value.string();
    } else if (key == "kinds") {
      for (const std::string& name : strings(value))
        row.kinds.push_back(kind(name));
    } else {
      complain("unknown key " + key);
    }
  }

  // An array of patterns, in which "@name" stands for the list of that name.
  Strings strings(const PropertyList& value) {
    Strings all;
    if (!value.isArray() || value.array().empty()) complain("an empty list");
    for (const PropertyList& element : value.array()) {
      const std::string& text = element.string();
      if (text.empty()) complain("a list element that is no text");
      if (!text.starts_with("@")) {
        all.push_back(text);
        continue;
      }
      const PropertyList& list = table_["lists"][std::string_view(text).substr(1)];
      if (list.array().empty()) complain("unknown list " + text);
      for (const PropertyList& pattern : list.array())
        all.push_back(pattern.string());
    }
    return all;
  }

  static Strings lowerCase(Strings patterns) {
    for (std::string& pattern : patterns)
      pattern = brisko::lowerCase(pattern);
    return patterns;
  }

  FileKind kind(const std::string& name) {
    if (name == "file") return FileKind::regular;
    if (name == "folder") return FileKind::directory;
    if (name == "link") return FileKind::symbolicLink;
    complain("unknown kind " + name);
    return FileKind::unknown;
  }

  void complain(std::string what) {
    if (complaint_.empty()) complaint_ = std::move(what);
  }

  const PropertyList& table_;
  int index_ = 0;
  std::string complaint_;
};

bool isRealFolder(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isStickyFolder(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         (status.st_mode & S_ISVTX) != 0;
}

// A location on its way from the table to a path: what is resolved, and where the part begins that
// a placeholder gave, which may lead through links of the system's own.
struct Partial {
  std::string base;
  std::string rest;  ///< "/a/*/b"
};

// Replaces the placeholders of `text`. A placeholder stands at the start of a location, or as a
// whole or partial name further on ("/.Trash-${UID}").
Strings withValues(const std::string& text, const HostLocations::Variables& variables) {
  const std::size_t begin = text.find("${");
  if (begin == std::string::npos) return {text};
  const std::size_t end = text.find('}', begin);
  if (end == std::string::npos) return {};
  Strings all;
  for (const std::string& value : variables(text.substr(begin + 2, end - begin - 2))) {
    // What follows a value may hold further placeholders, the value itself never does.
    for (const std::string& tail : withValues(text.substr(end + 1), variables)) {
      all.push_back(text.substr(0, begin) + value + tail);
    }
  }
  return all;
}

std::vector<Partial> bases(const std::string& location, const HostLocations::Variables& variables) {
  std::vector<Partial> all;
  if (!location.starts_with("${")) {
    for (std::string& rest : withValues(location, variables))
      all.push_back({"", std::move(rest)});
    return all;
  }
  const std::size_t end = location.find('}');
  if (end == std::string::npos) return all;
  for (std::string& base : variables(location.substr(2, end - 2))) {
    if (base == "/") base.clear();
    for (std::string& rest : withValues(location.substr(end + 1), variables)) {
      all.push_back({base, std::move(rest)});
    }
  }
  return all;
}

Strings realFoldersIn(const std::string& path, const std::string& pattern) {
  Strings names;
  int error = 0;
  auto folder = Host::current().catalog->open(path.empty() ? "/" : path, error);
  if (!folder) return names;
  CatalogBatch batch;
  while (folder->read(batch, 0)) {
    for (const CatalogItem& item : batch.items) {
      std::string name(item.name);
      if (nameMatches(pattern, name) && isRealFolder(path + "/" + name)) {
        names.push_back(std::move(name));
      }
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

// Walks `rest` below `path`, name by name. Every folder on the way must be a real one; of the last
// name, unless it is a wildcard, nothing is asked: the scan looks at it and says why it skips it.
void resolve(const std::string& path, const std::string& rest, Strings& paths) {
  if (rest.empty()) {
    paths.push_back(path);
    return;
  }
  const std::size_t end = std::min(rest.find('/', 1), rest.size());
  const std::string name = rest.substr(1, end - 1);
  const std::string after = rest.substr(end);
  if (name.find_first_of("*?[") != std::string::npos) {
    for (const std::string& found : realFoldersIn(path, name)) {
      resolve(path + "/" + found, after, paths);
    }
    return;
  }
  const std::string next = path + "/" + name;
  if (after.empty() || isRealFolder(next)) resolve(next, after, paths);
}

JunkLocation locationOf(const Row& row, std::string path) {
  JunkLocation location;
  location.path = std::move(path);
  location.include = row.include;
  location.exclude = row.exclude;
  location.keepIfContains = row.keepIfContains;
  location.kinds = row.kinds;
  return location;
}

bool isBelow(const std::string& path, const std::string& folder) {
  return path.starts_with(folder + "/");
}

// Sees to it that an entry is found once: by the location that names it rather than by the one that
// takes everything, by the deeper one rather than by the one around it, else by the first.
void settleClaims(std::vector<std::pair<int, JunkLocation>>& all) {
  for (std::size_t i = 0; i < all.size(); ++i) {
    JunkLocation& location = all[i].second;
    Strings others;
    for (std::size_t j = 0; j < all.size(); ++j) {
      const JunkLocation& other = all[j].second;
      if (i == j) continue;
      if (isBelow(other.path, location.path)) location.claimed.push_back(other.path);
      const bool otherGoesFirst = !other.include.empty() && (location.include.empty() || j < i);
      if (other.path == location.path && otherGoesFirst) {
        for (const std::string& pattern : other.include)
          others.push_back(lowerCase(pattern));
      }
    }
    location.exclude.insert(location.exclude.end(), others.begin(), others.end());
  }
}

bool isInside(const std::string& path, const std::string& folder) {
  return path == folder || isBelow(path, folder);
}

// A base folder of the environment is believed only when it can be one of its own: not the home or
// something around it, not a top-level folder, and not shared with data that must stay.
bool isOwnBase(const HostFolders& folders, std::string_view name, const std::string& value) {
  if (!value.starts_with("/") || std::count(value.begin(), value.end(), '/') < 2) return false;
  if (value.ends_with("/") || value.find("//") != std::string::npos) return false;
  if ((value + "/").find("/../") != std::string::npos) return false;
  if (isInside(folders.home(), value)) return false;
  for (const char* other :
       {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
    if (name == other) continue;
    const auto otherValue = folders.variable(other);
    if (otherValue && isInside(*otherValue, value)) return false;
  }
  return true;
}

std::vector<std::string> variablesOfHost(std::string_view name) {
  Host& host = Host::current();
  if (name == "VOLUME") {
    Strings roots;
    for (const MountedVolume& volume : host.workspace->mountedVolumes()) {
      roots.push_back(volume.root);
    }
    return roots;
  }
  const auto value = host.folders->variable(name);
  if (!value || value->empty()) return {};
  if (name.starts_with("XDG_") && !isOwnBase(*host.folders, name, *value)) return {};
  return {*value};
}

}  // namespace

HostLocations::HostLocations(const PropertyList& table, const Variables& variables) {
  const auto rows = TableReader(table).read();
  if (!rows) return;
  std::vector<std::pair<int, JunkLocation>> all;
  for (const Row& row : *rows) {
    Strings paths;
    for (const Partial& partial : bases(row.location, variables)) {
      // The sticky folder stands right in the base, and one base's says nothing of another's.
      if (!row.stickyFolder.empty() && !isStickyFolder(partial.base + "/" + row.stickyFolder)) {
        continue;
      }
      resolve(partial.base, partial.rest, paths);
    }
    for (std::string& path : paths) {
      if (matchesAny(row.skipLocations, path)) continue;
      if (!row.besideFolder.empty() && !isRealFolder(path + "/" + row.besideFolder)) continue;
      all.emplace_back(row.category, locationOf(row, std::move(path)));
    }
  }
  settleClaims(all);
  for (auto& [category, location] : all) {
    locations_[static_cast<std::size_t>(category)].push_back(std::move(location));
  }
}

HostLocations HostLocations::current() {
#ifdef __linux__
  if (!Host::current().folders->hasRoot()) {
    return {Resources::table(kTableName), variablesOfHost};
  }
#endif
  return {};
}

}  // namespace brisko
