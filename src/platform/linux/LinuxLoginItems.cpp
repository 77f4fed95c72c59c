#include "LinuxLoginItems.h"

#include "DesktopEntries.h"
#include "DesktopEntry.h"
#include "DesktopEntryText.h"
#include "HiddenStart.h"
#include "HostFolders.h"
#include "Preferences.h"
#include "RegularFile.h"
#include "Utf8.h"

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
constexpr const char* kPathKey = "X-Brisko-Path";
constexpr const char* kHiddenKey = "X-Brisko-Hidden";
constexpr const char* kOverrideKey = "X-Brisko-Override";
constexpr const char* kDeletedKey =
    "Hidden";  // what the standard calls an entry that counts as gone
constexpr const char* kEnabledKey = "X-GNOME-Autostart-enabled";
constexpr const char* kSuffix = ".desktop";
constexpr std::size_t kLargestEntry = 1U << 20;

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

std::optional<std::string> textOf(const std::string& file, int& error) {
  return readFile(file, kLargestEntry, error);
}

DesktopEntryText entryOf(const std::string& file) {
  int error = 0;
  return DesktopEntryText(textOf(file, error).value_or(""));
}

bool isSwitchedOff(const DesktopEntryText& entry) {
  return entry.isTrue(kDeletedKey) || entry.value(kEnabledKey) == "false";
}

/// Where the search path or the name itself leads to a program.
bool isProgramThere(const std::string& program) {
  if (program.find('/') != std::string::npos) return ::access(program.c_str(), X_OK) == 0;
  std::string path = environment("PATH");
  std::string_view rest = path;
  while (!rest.empty()) {
    const std::size_t end = rest.find(':');
    const std::string candidate = std::string(rest.substr(0, end)) + "/" + program;
    if (::access(candidate.c_str(), X_OK) == 0) return true;
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return false;
}

bool isThere(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0;
}

bool isProgram(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::access(path.c_str(), X_OK) == 0;
}

std::string nameOf(const std::string& path) {
  return fs::path(path).filename().string();
}

/// Lines for a file, folder or program that has no entry of its own.
DesktopEntryText entryFor(const std::string& path) {
  DesktopEntryText entry("[Desktop Entry]\nType=Application\n");
  const std::string bytes = nameOf(path);
  std::string name;
  for (std::string_view rest = bytes; !rest.empty();) {
    const std::size_t length = utf8SequenceLength(rest);
    name += length == 0 ? "\xEF\xBF\xBD" : std::string(rest.substr(0, length));
    rest.remove_prefix(std::max<std::size_t>(length, 1));
  }
  entry.set("Name", name);
  entry.set("Exec", (isProgram(path) ? "" : "xdg-open ") + execWord(path));
  return entry;
}

/// Whether the desktop file at `path` starts a program, and so can be an autostart entry itself.
std::optional<std::string> applicationText(const std::string& path) {
  int error = 0;
  if (!path.ends_with(kSuffix)) return std::nullopt;
  std::optional<std::string> text = textOf(path, error);
  if (!text) return std::nullopt;
  const std::optional<DesktopEntry> entry = parseDesktopEntry(*text, "");
  if (!entry || execWords(entry->exec).empty()) return std::nullopt;
  return text;
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
  PropertyList::Array order(names.begin(), names.end());
  preferences_.setValue(Preferences::kApplicationDomain, kOrderKey, std::move(order));
  preferences_.synchronize();
}

// The files of the user's folder: those in the kept order, then what others put there, by name.
std::vector<std::string> LinuxLoginItems::names() const {
  std::set<std::string> there;
  std::error_code error;
  for (const auto& each : fs::directory_iterator(folder_, error)) {
    if (each.path().extension() == kSuffix) there.insert(each.path().filename());
  }
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
    const DesktopEntryText entry = entryOf(fileOf(name));
    if (isSwitchedOff(entry) || !sharedFileOf(name).empty()) continue;
    items.push_back({name, entry.isTrue(kHiddenKey)});
  }
  return noErr;
}

std::optional<std::string> LinuxLoginItems::resolve(const LoginItem& item) {
  const std::string file = fileOf(item.identifier);
  int error = 0;
  const std::optional<std::string> text = textOf(file, error);
  if (!text && error == ENOENT) return std::nullopt;
  const std::optional<DesktopEntry> entry =
      text ? parseDesktopEntry(*text, "") : std::optional<DesktopEntry>();
  const std::vector<std::string> words =
      entry ? execWords(entry->exec) : std::vector<std::string>();
  if (words.empty()) return file;
  if (const auto path = DesktopEntryText(*text).value(kPathKey)) {
    return isThere(*path) ? path : std::nullopt;
  }
  const std::string program = entry->tryExec.empty() ? programOf(words) : entry->tryExec;
  if (program.empty() || isProgramThere(program)) return file;
  return std::nullopt;
}

// A name under which nothing starts yet: a file of the same name would take a shared entry's place.
std::string LinuxLoginItems::freeName(const std::string& path) const {
  std::string stem = nameOf(path);
  if (stem.ends_with(kSuffix)) stem.resize(stem.size() - std::string_view(kSuffix).size());
  stem.resize(std::min<std::size_t>(stem.size(), 200));
  std::string name = stem + kSuffix;
  for (int number = 2;
       fs::is_symlink(fileOf(name)) || isThere(fileOf(name)) || !sharedFileOf(name).empty();
       ++number) {
    name = stem + "-" + std::to_string(number) + kSuffix;
  }
  return name;
}

int LinuxLoginItems::write(const std::string& name, const DesktopEntryText& entry) {
  std::error_code error;
  fs::create_directories(folder_, error);
  if (error) return statusOf(error.value());
  return statusOf(replaceFile(fileOf(name), entry.text()));
}

int LinuxLoginItems::insertLast(const std::string& path, bool isHidden) {
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
    const std::optional<std::string> own = applicationText(path);
    DesktopEntryText entry = own ? DesktopEntryText(*own) : entryFor(path);
    entry.set(kPathKey, path);
    entry.set(kHiddenKey, isHidden ? "true" : "false");
    if (isHidden) startHidden(entry, true);
    status = write(name, entry);
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
  const std::optional<std::string> text = textOf(fileOf(item.identifier), error);
  if (!text) return statusOf(error);
  DesktopEntryText entry(*text);
  if (!entry.isEntry()) return paramErr;
  entry.set(kHiddenKey, isHidden ? "true" : "false");
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
    const std::string text = textOf(file, error).value_or("");
    const std::optional<DesktopEntry> entry = parseDesktopEntry(text, locale);
    if (!entry || entry->noDisplay || !seen.insert(name).second) return;
    if (isForEveryone && (entry->hidden || !isShownIn(*entry, desktops))) return;
    if (!entry->tryExec.empty() && !isProgramThere(entry->tryExec)) return;
    const std::string own = fileOf(name);
    const bool isOn = !isSwitchedOff(isThere(own) ? entryOf(own) : DesktopEntryText(text));
    if (isForEveryone || !isOn) items.push_back({name, entry->name, file, isOn, isForEveryone});
  };
  for (const std::string& folder : sharedFolders_) {
    std::error_code error;
    for (const auto& each : fs::directory_iterator(folder, error)) {
      if (each.path().extension() == kSuffix) add(each.path().filename(), each.path(), true);
    }
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
  DesktopEntryText entry = entryOf(isOverridden ? own : shared);
  if (!entry.isEntry()) return fnfErr;
  if (isOn && isOverridden && !shared.empty() && entry.isTrue(kOverrideKey) &&
      !isSwitchedOff(entryOf(shared))) {
    return removeFile(item.identifier);
  }
  if (!isOverridden) entry.set(kOverrideKey, "true");
  if (isOn) {
    entry.remove(kDeletedKey);
    if (entry.value(kEnabledKey)) entry.set(kEnabledKey, "true");
  } else {
    entry.set(kDeletedKey, "true");
  }
  return write(item.identifier, entry);
}

}  // namespace brisko
