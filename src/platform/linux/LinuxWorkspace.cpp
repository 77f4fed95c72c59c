#include "LinuxWorkspace.h"

#include "DesktopEntries.h"
#include "DesktopEntry.h"
#include "FileIdentity.h"
#include "FileURL.h"
#include "Host.h"
#include "LinuxLaunchedApplications.h"
#include "LinuxVolumes.h"
#include "RegularFile.h"
#include "SystemLog.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace brisko {
namespace {

constexpr std::size_t kLargestEntry = 1U << 20;
constexpr std::chrono::minutes kEntriesLast{1};

constexpr std::pair<std::string_view, std::string_view> kIconsByExtension[] = {
    {"7z", "package-x-generic"},  {"app", "application-x-executable"}, {"bz2", "package-x-generic"},
    {"deb", "package-x-generic"}, {"dmg", "package-x-generic"},        {"eml", "mail-message"},
    {"flac", "audio-x-generic"},  {"gif", "image-x-generic"},          {"gz", "package-x-generic"},
    {"jpeg", "image-x-generic"},  {"jpg", "image-x-generic"},          {"log", "text-x-generic"},
    {"m4a", "audio-x-generic"},   {"mkv", "video-x-generic"},          {"mov", "video-x-generic"},
    {"mp3", "audio-x-generic"},   {"mp4", "video-x-generic"},          {"ogg", "audio-x-generic"},
    {"pdf", "x-office-document"}, {"pkg", "package-x-generic"},        {"png", "image-x-generic"},
    {"svg", "image-x-generic"},   {"tar", "package-x-generic"},        {"txt", "text-x-generic"},
    {"wav", "audio-x-generic"},   {"webm", "video-x-generic"},         {"webp", "image-x-generic"},
    {"xz", "package-x-generic"},  {"zip", "package-x-generic"},        {"zst", "package-x-generic"},
};

std::string_view iconForName(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('/') + 1);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos) return "unknown";
  std::string extension(name.substr(dot + 1));
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto* found =
      std::lower_bound(std::begin(kIconsByExtension), std::end(kIconsByExtension), extension,
                       [](const auto& row, const std::string& key) { return row.first < key; });
  if (found == std::end(kIconsByExtension) || found->first != extension) return "unknown";
  return found->second;
}

// "scheme:rest" as the generic syntax of addresses has it. What passes can be no option of the
// program that gets it.
bool isAddress(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == 0 || colon == std::string_view::npos || colon + 1 == text.size()) return false;
  if (std::isalpha(static_cast<unsigned char>(text.front())) == 0) return false;
  return std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(colon), [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '+' || c == '-' || c == '.';
  });
}

// Starts a program, found by PATH, with nothing to read from and nowhere to write to. 0 when it
// could not be started. Nothing but the new process sees the arguments, and no shell.
pid_t start(std::vector<std::string> arguments) {
  std::vector<char*> pointers;
  for (std::string& argument : arguments)
    pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  for (int descriptor : {0, 1, 2}) {
    posix_spawn_file_actions_addopen(&files, descriptor, "/dev/null", O_RDWR, 0);
  }
  pid_t child = 0;
  const int failure = posix_spawnp(&child, pointers[0], &files, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  return failure == 0 ? child : 0;
}

bool endsWell(pid_t child) {
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// A session without a bus or without a file manager on it answers with a failure.
std::vector<std::string> showItemsCall(const std::string& address) {
  return {"dbus-send",
          "--session",
          "--print-reply",
          "--reply-timeout=5000",
          "--dest=org.freedesktop.FileManager1",
          "/org/freedesktop/FileManager1",
          "org.freedesktop.FileManager1.ShowItems",
          "array:string:" + address,
          "string:"};
}

// A desktop entry stands for its application, whose name and icon it tells.
std::optional<DesktopEntry> applicationAt(const std::string& path) {
  if (!path.ends_with(".desktop")) return std::nullopt;
  int error = 0;
  const std::optional<std::string> text = readFile(path, kLargestEntry, error);
  return text ? parseDesktopEntry(*text, messageLocale()) : std::nullopt;
}

}  // namespace

std::vector<LaunchedApplication> LinuxWorkspace::launchedApplications() {
  // Applications come and go all the time, their entries hardly ever.
  const std::lock_guard lock(entriesMutex_);
  const auto now = std::chrono::steady_clock::now();
  if (entries_.empty() || now - entriesRead_ > kEntriesLast) {
    entries_ = readDesktopEntries(applicationFolders(*Host::current().folders), messageLocale());
    entriesRead_ = now;
  }
  return linuxLaunchedApplications("/proc", entries_);
}

std::uint64_t LinuxWorkspace::processBeginning(int processIdentifier) {
  return linuxProcessBeginning("/proc/" + std::to_string(processIdentifier));
}

std::vector<MountedVolume> LinuxWorkspace::mountedVolumes() {
  return linuxMountedVolumes();
}

int LinuxWorkspace::observeVolumes(Observer observer) {
  return watch_.observe(std::move(observer));
}

void LinuxWorkspace::stopObserving(int token) {
  watch_.stopObserving(token);
}

std::string LinuxWorkspace::displayName(const std::string& path) {
  const std::optional<DesktopEntry> application = applicationAt(path);
  return application ? application->name : "";
}

std::string LinuxWorkspace::iconName(const std::string& path) {
  const std::optional<DesktopEntry> application = applicationAt(path);
  if (application && !application->icon.empty()) return application->icon;
  const auto identity = FileIdentity::at(path);
  return iconNameOfKind(path, identity ? identity->kind : FileKind::unknown);
}

std::string LinuxWorkspace::iconNameOfKind(const std::string& path, FileKind kind) {
  switch (kind) {
    case FileKind::directory:
      return "folder";
    case FileKind::symbolicLink:
      return "emblem-symbolic-link";
    case FileKind::regular:
      return std::string(iconForName(path));
    default:
      return "unknown";
  }
}

bool LinuxWorkspace::openAddress(const std::string& address) {
  if (!isAddress(address)) {
    SystemLog::line("Not an address: {}", address);
    return false;
  }
  const pid_t child = start({"xdg-open", address});
  if (child == 0) {
    SystemLog::line("Could not open {}: no program for addresses", address);
    return false;
  }
  // The browser may stay in the foreground of xdg-open for hours; somebody has to take its status.
  std::thread([child] { endsWell(child); }).detach();
  return true;
}

bool LinuxWorkspace::reveal(const std::string& path) {
  if (!path.starts_with('/')) {
    SystemLog::line("Not an absolute path: {}", path);
    return false;
  }
  const std::string folder = path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
  const auto openFolder = [folder] { return start({"xdg-open", fileURL(folder)}); };
  const pid_t call = start(showItemsCall(fileURL(path)));
  const pid_t browser = call == 0 ? openFolder() : 0;
  if (call == 0 && browser == 0) {
    SystemLog::line("Could not show {}: no file browser", path);
    return false;
  }
  // The file manager may have to be started first, which takes a while.
  std::thread([call, browser, openFolder] {
    const pid_t last = call != 0 && !endsWell(call) ? openFolder() : browser;
    if (last != 0) endsWell(last);
  }).detach();
  return true;
}

}  // namespace brisko
