#include "LinuxLoginItems.h"

#include "AutostartEntry.h"
#include "DesktopEntries.h"
#include "DesktopEntry.h"
#include "HiddenStart.h"
#include "HostFolders.h"
#include "Preferences.h"
#include "RegularFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOrderKey = "LoginItemsOrder";

int statusOf(int error) {
  switch (error) {
    case 0:
      return LoginItems::noErr;
    case ENOENT:
    case ENOTDIR:
      return LoginItems::fnfErr;
    case EACCES:
    case EPERM:
    case EROFS:
      return LoginItems::permErr;
    case ENOSPC:
    case EDQUOT:
      return LoginItems::dskFulErr;
    case ENOMEM:
      return LoginItems::memFulErr;
    default:
      return LoginItems::ioErr;
  }
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::vector<std::string> sharedFoldersOf(const HostFolders& folders) {
  const std::string listed = folders.hasRoot() ? "" : environment("XDG_CONFIG_DIRS");
  std::vector<std::string> all;
  std::string_view rest = listed.empty() ? "/etc/xdg" : std::string_view(listed);
  while (!rest.empty()) {
    const std::size_t end = rest.find(':');
    const std::string_view each = rest.substr(0, end);
    if (each.starts_with('/')) all.push_back(folders.path(each) + "/autostart");
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return all;
}

bool isThere(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0;
}

std::string withoutSlashes(std::string path) {
  while (path.size() > 1 && path.ends_with('/'))
    path.pop_back();
  return path;
}

/// Names of the entries in the folder; none when it cannot be read.
std::vector<std::string> entriesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator each(folder, error), end; !error && each != end;
       each.increment(error)) {
    if (each->path().extension() == AutostartEntry::kSuffix)
      names.push_back(each->path().filename());
  }
  return names;
}

}  // namespace

LinuxLoginItems::LinuxLoginItems(const HostFolders& folders, Preferences& preferences)
    : folder_(folders.variable("XDG_CONFIG_HOME").value_or("") + "/autostart"),
      sharedFolders_(sharedFoldersOf(folders)),
      preferences_(preferences),
      watch_([&] {
        std::vector<std::string> all = sharedFolders_;
        all.push_back(folder_);
        return all;
      }()) {}

std::string LinuxLoginItems::sharedFileOf(const std::string& name) const {
  for (const std::string& folder : sharedFolders_) {
    std::string file = folder + "/" + name;
    if (isThere(file)) return file;
  }
  return {};
}

std::vector<std::string> LinuxLoginItems::keptOrder() const {
  std::vector<std::string> order;
  const PropertyList kept = preferences_.value(Preferences::kApplicationDomain, kOrderKey);
  for (const PropertyList& name : kept.array())
    order.push_back(name.string());
  return order;
}

void LinuxLoginItems::keepOrder(const std::vector<std::string>& names) {
  PropertyList::Array order;
  for (const std::string& name : names) {
    // One that is no text would break the preferences' file; it comes by its name.
    if (AutostartEntry::validUtf8(name) == name) order.emplace_back(name);
  }
  preferences_.setValue(Preferences::kApplicationDomain, kOrderKey, std::move(order));
  preferences_.synchronize();
}

// The files of the user's folder: those in the kept order, then what others put there, by name.
std::vector<std::string> LinuxLoginItems::names() const {
  const std::vector<std::string> all = entriesIn(folder_);
  std::set<std::string> there(all.begin(), all.end());
  std::vector<std::string> ordered;
  for (const std::string& name : keptOrder()) {
    if (there.erase(name) == 1) ordered.push_back(name);
  }
  ordered.insert(ordered.end(), there.begin(), there.end());
  return ordered;
}

int LinuxLoginItems::snapshot(std::vector<LoginItem>& items) {
  std::lock_guard lock(mutex_);
  items.clear();
  for (const std::string& name : names()) {
    const DesktopEntryText entry = AutostartEntry::at(fileOf(name));
    if (AutostartEntry::isSwitchedOff(entry) || !sharedFileOf(name).empty()) continue;
    items.push_back({name, entry.isTrue(AutostartEntry::kHiddenKey)});
  }
  return noErr;
}

std::optional<std::string> LinuxLoginItems::resolve(const LoginItem& item) {
  const std::string file = fileOf(item.identifier);
  int error = 0;
  const std::optional<std::string> text = AutostartEntry::textOf(file, error);
  if (!text && error == ENOENT) return std::nullopt;
  const std::optional<DesktopEntry> entry =
      text ? parseDesktopEntry(*text, "") : std::optional<DesktopEntry>();
  const std::vector<std::string> words =
      entry ? execWords(entry->exec) : std::vector<std::string>();
  if (words.empty()) return file;
  if (const auto path = DesktopEntryText(*text).value(AutostartEntry::kPathKey)) {
    return isThere(*path) ? path : std::nullopt;
  }
  const std::string program = entry->tryExec.empty() ? programOf(words) : entry->tryExec;
  if (program.empty() || AutostartEntry::isProgramThere(program)) return file;
  return std::nullopt;
}

// A name under which nothing starts yet: a file of the same name would take a shared entry's place.
std::string LinuxLoginItems::freeName(const std::string& path) const {
  std::string stem = AutostartEntry::validUtf8(path.substr(path.rfind('/') + 1));
  if (stem.ends_with(AutostartEntry::kSuffix))
    stem.resize(stem.size() - std::string_view(AutostartEntry::kSuffix).size());
  stem = stem.empty() ? "root" : stem.substr(0, 200);
  std::string name = stem + AutostartEntry::kSuffix;
  std::error_code error;
  for (int number = 2;
       fs::is_symlink(fileOf(name), error) || isThere(fileOf(name)) || !sharedFileOf(name).empty();
       ++number) {
    name = stem + "-" + std::to_string(number) + AutostartEntry::kSuffix;
  }
  return name;
}

int LinuxLoginItems::write(const std::string& name, const DesktopEntryText& entry) {
  std::error_code error;
  fs::create_directories(folder_, error);
  if (error) return statusOf(error.value());
  return statusOf(replaceFile(fileOf(name), entry.text()));
}

int LinuxLoginItems::insertLast(const std::string& given, bool isHidden) {
  const std::string path = withoutSlashes(given);
  if (!path.starts_with('/')) return paramErr;
  if (!isThere(path)) return fnfErr;
  std::vector<LoginItem> items;
  snapshot(items);
  std::string name;
  for (const LoginItem& item : items) {
    if (resolve(item) == path) name = item.identifier;
  }
  std::lock_guard lock(mutex_);
  std::vector<std::string> order = names();
  int status = noErr;
  if (name.empty()) {
    name = freeName(path);
    status = write(name, AutostartEntry::opening(path, isHidden));
  }
  if (status != noErr) return status;
  std::erase(order, name);
  order.push_back(name);
  keepOrder(order);
  return noErr;
}

int LinuxLoginItems::setHidden(const LoginItem& item, bool isHidden) {
  std::lock_guard lock(mutex_);
  int error = 0;
  const std::optional<std::string> text = AutostartEntry::textOf(fileOf(item.identifier), error);
  if (!text) return statusOf(error);
  DesktopEntryText entry(*text);
  if (!entry.isEntry()) return paramErr;
  entry.set(AutostartEntry::kHiddenKey, isHidden ? "true" : "false");
  startHidden(entry, isHidden);
  return write(item.identifier, entry);
}

// These files are the store itself, not anything of the user's that an item leads to.
int LinuxLoginItems::removeFile(const std::string& name) {
  if (name.empty() || name.find('/') != std::string::npos) return paramErr;
  return ::unlink(fileOf(name).c_str()) == 0 ? noErr : statusOf(errno);
}

int LinuxLoginItems::remove(const LoginItem& item) {
  std::lock_guard lock(mutex_);
  return removeFile(item.identifier);
}

std::vector<SwitchedLoginItem> LinuxLoginItems::switchedItems() {
  std::lock_guard lock(mutex_);
  std::set<std::string> seen;
  std::vector<SwitchedLoginItem> items;
  const std::string desktops = environment("XDG_CURRENT_DESKTOP");
  const std::string locale = messageLocale();
  const auto add = [&](const std::string& name, const std::string& file, bool isForEveryone) {
    int error = 0;
    const std::string text = AutostartEntry::textOf(file, error).value_or("");
    const std::optional<DesktopEntry> entry = parseDesktopEntry(text, locale);
    if (!entry || entry->noDisplay || !seen.insert(name).second) return;
    if (isForEveryone && (entry->hidden || !isShownIn(*entry, desktops))) return;
    if (!entry->tryExec.empty() && !AutostartEntry::isProgramThere(entry->tryExec)) return;
    // One of our own switches whose shared entry is gone switches nothing.
    if (!isForEveryone && DesktopEntryText(text).isTrue(AutostartEntry::kOverrideKey)) return;
    const std::string own = fileOf(name);
    const bool isOn = !AutostartEntry::isSwitchedOff(isThere(own) ? AutostartEntry::at(own)
                                                                  : DesktopEntryText(text));
    if (isForEveryone || !isOn) items.push_back({name, entry->name, file, isOn, isForEveryone});
  };
  for (const std::string& folder : sharedFolders_) {
    for (const std::string& name : entriesIn(folder))
      add(name, folder + "/" + name, true);
  }
  for (const std::string& name : names()) {
    if (sharedFileOf(name).empty()) add(name, fileOf(name), false);
  }
  std::sort(items.begin(), items.end(), [](const auto& a, const auto& b) {
    return std::tie(a.name, a.identifier) < std::tie(b.name, b.identifier);
  });
  return items;
}

int LinuxLoginItems::setSwitched(const SwitchedLoginItem& item, bool isOn) {
  std::lock_guard lock(mutex_);
  const std::string own = fileOf(item.identifier);
  const std::string shared = sharedFileOf(item.identifier);
  const bool isOverridden = isThere(own);
  DesktopEntryText entry = AutostartEntry::at(isOverridden ? own : shared);
  if (!entry.isEntry()) return fnfErr;
  if (isOn && isOverridden && !shared.empty() && entry.isTrue(AutostartEntry::kOverrideKey) &&
      !AutostartEntry::isSwitchedOff(AutostartEntry::at(shared))) {
    return removeFile(item.identifier);
  }
  if (!isOverridden) entry.set(AutostartEntry::kOverrideKey, "true");
  isOn ? AutostartEntry::switchOn(entry) : AutostartEntry::switchOff(entry);
  return write(item.identifier, entry);
}

}  // namespace brisko
