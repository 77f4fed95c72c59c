#include "LinuxWorkspace.h"

#include "FileIdentity.h"
#include "LinuxLaunchedApplications.h"
#include "LinuxVolumes.h"
#include "SystemLog.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace brisko {
namespace {

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

}  // namespace

std::vector<LaunchedApplication> LinuxWorkspace::launchedApplications() {
  return linuxLaunchedApplications();
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

std::string LinuxWorkspace::iconName(const std::string& path) {
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
  std::string program = "xdg-open";
  std::string argument = address;
  std::array<char*, 3> arguments{program.data(), argument.data(), nullptr};
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  for (int descriptor : {0, 1, 2}) {
    posix_spawn_file_actions_addopen(&files, descriptor, "/dev/null", O_RDWR, 0);
  }
  pid_t child = 0;
  const int failure =
      posix_spawnp(&child, program.c_str(), &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  if (failure != 0) {
    SystemLog::line("Could not open {}: no program for addresses", address);
    return false;
  }
  // The browser may stay in the foreground of xdg-open for hours; somebody has to take its status.
  std::thread([child] { waitpid(child, nullptr, 0); }).detach();
  return true;
}

}  // namespace brisko
