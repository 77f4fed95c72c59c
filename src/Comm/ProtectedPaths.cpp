#include "ProtectedPaths.h"

#include "PathResolution.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr const char* kUsualHomes[] = {"/home/*", "/Users/*", "/root", "/var/root",
                                       "/private/var/root"};
// Links among protected places add rules; a table or a machine that makes more than this is broken.
constexpr std::size_t kMaximumRules = 20000;

bool hasWildcard(std::string_view name) {
  return name.find_first_of("*#") != std::string_view::npos;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// Names in `folder` that match `pattern`. A folder that cannot be listed has none that we could
// see.
std::vector<std::string> namesMatching(const std::string& folder, const std::string& pattern) {
  std::vector<std::string> names;
  DIR* listing = ::opendir(folder.c_str());
  if (listing == nullptr) return names;
  while (const dirent* entry = ::readdir(listing)) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != ".." && matchesPattern(name, pattern)) names.emplace_back(name);
  }
  ::closedir(listing);
  return names;
}

std::string realPath(const std::string& path) {
  char* found = ::realpath(path.c_str(), nullptr);
  if (found == nullptr) return {};
  std::string real = found;
  std::free(found);
  return real;
}

std::string shown(const std::vector<std::string>& names) {
  return escapedForDisplay(names.empty() ? "/" : joinPath(names, names.size()));
}

}  // namespace

bool matchesPattern(std::string_view name, std::string_view pattern) {
  if (pattern.empty()) return name.empty();
  const std::string_view rest = pattern.substr(1);
  switch (pattern.front()) {
    case '*':
      for (std::size_t skip = 0; skip <= name.size(); ++skip) {
        if (matchesPattern(name.substr(skip), rest)) return true;
      }
      return false;
    case '#':
      for (std::size_t digits = 1; digits <= name.size() && isDigit(name[digits - 1]); ++digits) {
        if (matchesPattern(name.substr(digits), rest)) return true;
      }
      return false;
    default:
      return !name.empty() && name.front() == pattern.front() &&
             matchesPattern(name.substr(1), rest);
  }
}

ProtectedPaths::ProtectedPaths(const PropertyList& table, const Layout& layout) : layout_(layout) {
  for (const std::string& root : layout_.roots)
    addRule(root, self);
  readable_ = addTable(table);
  for (const std::string& place : layout_.places)
    addRule(place, self);
  for (const std::string& folder : layout_.tools)
    addRule(folder, everything);
  findInodes();
}

void ProtectedPaths::add(const PropertyList& table) {
  readable_ = addTable(table) && readable_;
  findInodes();
}

bool ProtectedPaths::addTable(const PropertyList& table) {
  if (!table.isDictionary() || table.dictionary().empty()) return false;
  for (const auto& [key, list] : table.dictionary()) {
    // A numbered place; see SystemFolder.
    if (!key.empty() && key.find_first_not_of("0123456789") == std::string::npos) {
      if (!list.isString() || !addPlace(list.string(), self)) return false;
      continue;
    }
    if (!list.isArray() || list.array().empty()) return false;
    if (key == "rotatedNames") {
      for (const PropertyList& name : list.array()) {
        if (!name.isString() || name.string().empty()) return false;
        rotatedNames_.push_back(name.string());
      }
    } else if (!addPlaces(list, key == "self"         ? self
                                : key == "children"   ? children
                                : key == "everything" ? everything
                                : key == "rotated"    ? rotated
                                                      : 0U)) {
      return false;
    }
  }
  return true;
}

bool ProtectedPaths::addPlaces(const PropertyList& list, unsigned scope) {
  if (scope == 0) return false;
  return std::all_of(list.array().begin(), list.array().end(), [&](const PropertyList& place) {
    return place.isString() && addPlace(place.string(), scope);
  });
}

bool ProtectedPaths::addPlace(const std::string& place, unsigned scope) {
  Names names;
  if (place.starts_with("/")) {
    if (!splitPath(place, names)) return false;
    for (const std::string& root : layout_.roots)
      addRule(root + place, scope);
    return true;
  }
  const std::size_t end = std::min(place.find('/'), place.size());
  const std::string first = place.substr(0, end);
  const std::string rest = place.substr(end);
  if (!rest.empty() && !splitPath(rest, names)) return false;
  if (first == "~") {
    for (const std::string& home : layout_.homes)
      addRule(home + rest, scope);
    for (const std::string& root : layout_.roots) {
      for (const char* home : kUsualHomes)
        addRule(root + home + rest, scope);
    }
    return true;
  }
  if (first.size() < 2 || first.front() != '$') return false;
  const auto variable = layout_.variables.find(first.substr(1));
  if (variable != layout_.variables.end()) addRule(variable->second + rest, scope);
  return true;
}

void ProtectedPaths::addRule(const std::string& path, unsigned scope) {
  Names names;
  if (!path.empty() && !splitPath(path, names)) return;
  addRule(std::move(names), scope);
}

void ProtectedPaths::addRule(Names names, unsigned scope) {
  if (rules_.size() >= kMaximumRules) {
    readable_ = false;
    return;
  }
  if (!known_.insert(joinPath(names, names.size()) + '\0' + std::to_string(scope)).second) return;
  rules_.push_back({std::move(names), scope});
}

const std::optional<struct stat>& ProtectedPaths::Looked::at(const std::string& path) {
  const auto [found, isNew] = items.try_emplace(path);
  struct stat status;
  if (isNew && ::lstat(path.empty() ? "/" : path.c_str(), &status) == 0) found->second = status;
  return found->second;
}

const ProtectedPaths::Names& ProtectedPaths::Looked::matching(const std::string& folder,
                                                              const std::string& pattern) {
  const auto [found, isNew] = listings.try_emplace(folder + "/" + pattern);
  if (isNew) found->second = namesMatching(folder.empty() ? "/" : folder, pattern);
  return found->second;
}

void ProtectedPaths::findInodes() {
  inodes_.clear();
  Looked looked;
  // Links that lead elsewhere add rules while this runs.
  for (std::size_t i = 0; i < rules_.size(); ++i) {
    const Rule rule = rules_[i];
    findInodes(rule, 0, "", looked);
  }
}

void ProtectedPaths::findInodes(const Rule& rule, std::size_t depth, const std::string& path,
                                Looked& looked) {
  const std::optional<struct stat>& status = looked.at(path);
  if (!status) return;
  const bool isPlace = depth == rule.names.size();
  inodes_[{status->st_dev, status->st_ino}] |= isPlace ? self | rule.scope : unsigned{self};
  if (S_ISLNK(status->st_mode)) {
    followLink(rule, depth, path, *status);
  } else if (!isPlace && S_ISDIR(status->st_mode)) {
    const std::string& name = rule.names[depth];
    if (!hasWildcard(name)) {
      findInodes(rule, depth + 1, path + "/" + name, looked);
    } else {
      for (const std::string& found : looked.matching(path, name)) {
        findInodes(rule, depth + 1, path + "/" + found, looked);
      }
    }
  }
}

// What a link leads to is protected like the place itself, unless somebody laid the link whom the
// target does not belong to: nobody shall be able to protect another user's files from that user.
void ProtectedPaths::followLink(const Rule& rule, std::size_t depth, const std::string& path,
                                const struct stat& link) {
  struct stat target;
  if (::stat(path.c_str(), &target) != 0) return;
  if (link.st_uid != 0 && link.st_uid != target.st_uid) return;
  Names names;
  if (!splitPath(realPath(path), names)) return;
  names.insert(names.end(), rule.names.begin() + static_cast<std::ptrdiff_t>(depth),
               rule.names.end());
  addRule(std::move(names), rule.scope);
}

std::optional<std::string> ProtectedPaths::reasonFor(const std::string& path) const {
  if (!readable_) return "The table of protected places cannot be read, so nothing is removed.";
  Names names;
  if (!splitPath(path, names)) return std::nullopt;
  if (names.empty()) return "The root of the file system is protected.";
  for (const Rule& rule : rules_) {
    if (auto reason = byName(rule, names, path)) return reason;
  }
  return byInode(names);
}

std::optional<std::string> ProtectedPaths::byName(const Rule& rule, const Names& names,
                                                  const std::string& path) const {
  const std::size_t common = std::min(rule.names.size(), names.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (!matchesPattern(names[i], rule.names[i])) return std::nullopt;
  }
  if (names.size() < rule.names.size()) {
    return fmt::format("A protected place may lie in it: \"{}\".", shown(rule.names));
  }
  if (names.size() == rule.names.size()) return "It is a protected place.";
  const Names place(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(common));
  if ((rule.scope & everything) != 0 ||
      ((rule.scope & children) != 0 && names.size() == rule.names.size() + 1)) {
    return fmt::format("It belongs to the protected place \"{}\".", shown(place));
  }
  if ((rule.scope & rotated) != 0 && !isRotatedFile(names.back(), path)) {
    return fmt::format("Of \"{}\" only rotated files may go.", shown(place));
  }
  return std::nullopt;
}

bool ProtectedPaths::isRotatedFile(const std::string& name, const std::string& path) const {
  struct stat status;
  if (::lstat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) return false;
  return std::any_of(rotatedNames_.begin(), rotatedNames_.end(),
                     [&](const std::string& pattern) { return matchesPattern(name, pattern); });
}

std::optional<std::string> ProtectedPaths::byInode(const Names& names) const {
  struct stat status;
  for (std::size_t depth = 1; depth <= names.size(); ++depth) {
    const std::string path = joinPath(names, depth);
    if (::lstat(path.c_str(), &status) != 0) return std::nullopt;
    const auto found = inodes_.find({status.st_dev, status.st_ino});
    if (found == inodes_.end()) continue;
    const std::size_t below = names.size() - depth;
    const unsigned scope = found->second;
    if (below == 0) return "It is a protected place under another name.";
    if ((scope & everything) != 0 || ((scope & children) != 0 && below == 1)) {
      return fmt::format("It belongs to a protected place under another name, \"{}\".",
                         escapedForDisplay(path));
    }
    if ((scope & rotated) != 0 && !isRotatedFile(names.back(), joinPath(names, names.size()))) {
      return fmt::format("Of \"{}\" only rotated files may go.", escapedForDisplay(path));
    }
  }
  return std::nullopt;
}

}  // namespace brisko
