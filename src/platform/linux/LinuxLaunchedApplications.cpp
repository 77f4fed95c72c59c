#include "LinuxLaunchedApplications.h"

#include "RegularFile.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOwnWindow = "brisko-window";
constexpr const char* kOwnId = "com.brisko.Brisko";
constexpr const char* kOwnName = "Brisko";

std::string unescaped(std::string_view escaped) {
  std::string plain;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    unsigned value = 0;
    if (escaped.substr(i, 2) == "\\x" && i + 3 < escaped.size() &&
        std::from_chars(&escaped[i + 2], &escaped[i + 2] + 2, value, 16).ec == std::errc()) {
      plain += static_cast<char>(value);
      i += 3;
    } else {
      plain += escaped[i];
    }
  }
  return plain;
}

// The id that the innermost unit of an application in the process's place in the group tree tells.
std::string applicationIdIn(const std::string& groupFile) {
  std::ifstream stream(groupFile);
  for (std::string line; std::getline(stream, line);) {
    for (auto slash = line.rfind('/'); slash != std::string::npos; slash = line.rfind('/')) {
      std::string id = applicationIdOfUnit(std::string_view(line).substr(slash + 1));
      if (!id.empty()) return id;
      line.resize(slash);
    }
  }
  return {};
}

// "snap.SNAP.APP-UUID.scope", older ones with a dot before the UUID: their entries are "SNAP_APP".
std::string idOfSnap(std::string_view unit) {
  constexpr std::size_t kUuid = 36;
  if (unit.size() <= kUuid + 1) return {};
  std::string id = unescaped(unit.substr(0, unit.size() - kUuid - 1));
  const std::size_t dot = id.find('.');
  if (dot == std::string::npos) return {};
  id[dot] = '_';
  return id;
}

std::string baseName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

int processNumber(const std::string& name) {
  int number = 0;
  const auto parsed = std::from_chars(name.data(), name.data() + name.size(), number);
  return parsed.ec == std::errc() && parsed.ptr == name.data() + name.size() ? number : 0;
}

std::string contentOf(const std::string& file) {
  // Not by a stream's iterator, which throws when the process ends between opening and reading.
  constexpr std::size_t kMaximum = 1 << 20;
  int error = 0;
  return readFile(file, kMaximum, error).value_or("");
}

std::vector<std::string> commandOf(const std::string& process) {
  const std::string text = contentOf(process + "/cmdline");
  std::vector<std::string> words;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\0', begin), text.size());
    words.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return words;
}

/// Desktop entries by id, and by what they start.
class EntryIndex {
 public:
  explicit EntryIndex(const std::vector<DesktopEntry>& entries) {
    for (const DesktopEntry& entry : entries) {
      if (entry.hidden) continue;
      byId_.emplace(entry.id, &entry);
      const std::string program = programOf(execWords(entry.exec));
      if (!entry.noDisplay && !program.empty() && !isInterpreter(baseName(program))) {
        byProgram_.emplace(isOwn(program) ? program : baseName(program), &entry);
      }
    }
  }

  const DesktopEntry* withId(const std::string& id) const { return found(byId_, id); }
  const DesktopEntry* starting(const std::string& program) const {
    if (program.empty()) return nullptr;
    const DesktopEntry* entry = found(byProgram_, program);
    return entry != nullptr ? entry : found(byProgram_, baseName(program));
  }

 private:
  using Entries = std::map<std::string, const DesktopEntry*>;

  // What a package starts is often a link or a script in front of the program of the same name. Of
  // a user's own programs there may be copies, so each is only its own file.
  static bool isOwn(const std::string& program) {
    return program.starts_with('/') && !program.starts_with("/usr/") &&
           !program.starts_with("/opt/") && !program.starts_with("/bin/");
  }
  static const DesktopEntry* found(const Entries& entries, const std::string& key) {
    const auto place = entries.find(key);
    return place == entries.end() ? nullptr : place->second;
  }

  Entries byId_;
  Entries byProgram_;
};

/// The application that a process belongs to; without an identifier when it belongs to none.
LaunchedApplication applicationOf(const std::string& process, const EntryIndex& index) {
  std::error_code error;
  LaunchedApplication application;
  application.path = fs::read_symlink(process + "/exe", error);
  application.bundleIdentifier = applicationIdIn(process + "/cgroup");
  const DesktopEntry* entry = index.withId(application.bundleIdentifier);
  if (entry == nullptr) entry = index.starting(application.path);
  if (entry == nullptr) entry = index.starting(programOf(commandOf(process)));
  if (entry != nullptr) {
    application.bundleIdentifier = entry->id;
    // What the session starts by itself has units too, but is none that people would close.
    if (!entry->noDisplay) application.name = entry->name;
    application.iconName = entry->icon;
  } else if (baseName(application.path) == kOwnWindow) {
    application.bundleIdentifier = kOwnId;
    application.name = kOwnName;
    application.iconName = kOwnId;
  }
  return application;
}

}  // namespace

// The process's name, which may hold anything, ends with the last bracket.
std::uint64_t linuxProcessBeginning(const std::string& folder) {
  constexpr int kFieldsBetween = 18;  // from the state, the third field, to the 22nd
  const std::string text = contentOf(folder + "/stat");
  const std::size_t name = text.rfind(')');
  if (name == std::string::npos) return 0;
  std::istringstream fields(text.substr(name + 1));
  std::string state;
  fields >> state;
  if (state == "Z" || state == "X") return 0;
  std::string skipped;
  for (int field = 0; field < kFieldsBetween; ++field)
    fields >> skipped;
  std::uint64_t start = 0;
  fields >> start;
  return start;
}

std::string applicationIdOfUnit(std::string_view unit) {
  if (unit.starts_with("snap.") && unit.ends_with(".scope"))
    return idOfSnap(unit.substr(5, unit.size() - 5 - 6));
  if (!unit.starts_with("app-")) return {};
  unit.remove_prefix(4);
  if (unit.ends_with(".scope")) {
    unit.remove_suffix(6);
    const std::size_t random = unit.rfind('-');
    if (random == std::string_view::npos) return {};
    unit = unit.substr(0, random);
  } else if (unit.ends_with(".service")) {
    unit.remove_suffix(8);
    unit = unit.substr(0, unit.find('@'));
  } else {
    return {};
  }
  // A "-" inside the id is escaped, so one that is left separates the launcher from it.
  return unescaped(unit.substr(unit.rfind('-') + 1));
}

std::vector<LaunchedApplication> linuxLaunchedApplications(
    const std::string& proc, const std::vector<DesktopEntry>& entries) {
  const EntryIndex index(entries);
  // The first one of an application: by its beginning, then by its number.
  using Beginning = std::pair<std::uint64_t, int>;
  std::map<std::string, std::pair<Beginning, LaunchedApplication>> byId;
  std::error_code error;
  for (fs::directory_iterator each(proc, error), end; !error && each != end;
       each.increment(error)) {
    const std::string folder = each->path();
    const int number = processNumber(each->path().filename());
    struct stat status;
    if (number == 0 || stat(folder.c_str(), &status) != 0 || status.st_uid != getuid()) continue;
    LaunchedApplication application = applicationOf(folder, index);
    if (application.bundleIdentifier.empty()) continue;
    application.processIdentifier = number;
    const Beginning began{linuxProcessBeginning(folder), number};
    // It has ended, and its parent has not noticed yet.
    if (began.first == 0) continue;
    const auto place = byId.try_emplace(application.bundleIdentifier, began, application);
    if (!place.second && began < place.first->second.first) {
      place.first->second = {began, std::move(application)};
    }
  }
  std::vector<LaunchedApplication> applications;
  for (auto& [id, found] : byId)
    applications.push_back(std::move(found.second));
  std::sort(applications.begin(), applications.end(),
            [](const auto& a, const auto& b) { return a.processIdentifier < b.processIdentifier; });
  return applications;
}

}  // namespace brisko
