#include "AppArgument.h"

#include "AppScanner.h"
#include "Command.h"
#include "Dispatch.h"
#include "Host.h"
#include "Interruption.h"
#include "Output.h"
#include "PathNames.h"
#include "RelatedAppFilesScanner.h"
#include "UninstallModel.h"
#include "fileAttrbItem.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <sys/stat.h>

namespace brisko {
namespace {

// Absolute and free of links but for the last name, which may be one: that link is what is meant.
// Empty, with errno, when there is nothing.
std::string placeOf(std::string path) {
  while (path.size() > 1 && path.ends_with('/'))
    path.pop_back();
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "."
                             : slash == 0               ? "/"
                                                        : path.substr(0, slash);
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(folder.c_str(), nullptr),
                                                         &std::free);
  if (!real) return "";
  const std::string name = path.substr(slash + 1);
  if (name.empty() || name == "." || name == "..") {
    errno = EINVAL;
    return "";
  }
  const std::string place = (std::strcmp(real.get(), "/") == 0 ? "" : real.get()) + ("/" + name);
  if (FileIdentity::at(place)) return place;
  errno = ENOENT;
  return "";
}

// With another root, a path of that system means the one below it.
std::string placeBelowRoot(const std::string& argument) {
  const HostFolders& folders = *Host::current().folders;
  std::string place = placeOf(argument);
  if (!folders.hasRoot() || isBelow(place, folders.root())) return place;
  place = argument.starts_with('/') ? placeOf(folders.path(argument)) : "";
  if (place.empty()) errno = ENOENT;
  return isBelow(place, folders.root()) ? place : "";
}

// As the list has it; null when there is none.
AppItem listedAt(const UninstallModel& model, const std::string& path) {
  for (const AppItem& item : model.everything()) {
    if (item->path == path) return item;
  }
  return nullptr;
}

// Null when none has it. Of several it would be chance which one goes.
AppItem listedAs(const UninstallModel& model, const std::string& identifier, const char* command) {
  AppItem found;
  for (const AppItem& item : model.everything()) {
    if (item->bundleID != identifier) continue;
    if (found) {
      throw WrongUsage(
          fmt::format("{}: {}: several have this identifier; give a path", command, identifier));
    }
    found = item;
  }
  return found;
}

// A folder, or a link to one; only packed extensions are files.
bool isBundle(const std::string& path) {
  struct stat status;
  const bool isFolder = ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  if (!isFolder && pathExtension(path) != "safariextz") return false;
  for (int type = 0; type < UninstallModel::kTypes; ++type) {
    if (AppScanner::isItem(type, path)) return true;
  }
  return false;
}

}  // namespace

bool scanInstalled(UninstallModel& model) {
  ProgressLine progress;
  model.begimScanFile();
  Dispatch::runUntil([&] {
    if (progress.isDue()) progress.show("Looking for what is installed", "");
    return !model.isBusy() || Interruption::happened();
  });
  return !Interruption::happened();
}

AppItem installedItem(const UninstallModel& model, const std::string& argument,
                      const char* command) {
  const std::string place = placeBelowRoot(argument);
  const int error = errno;
  if (!place.empty()) {
    if (AppItem item = listedAt(model, place)) return item;
    if (isBundle(place)) {
      AppItem item = RelatedAppFilesScanner::constructItem(place, 1);
      if (!item->isSystemApp) return item;
      throw WrongUsage(fmt::format("{}: {}: part of the system", command, argument));
    }
  }
  if (argument.find('/') == std::string::npos && !argument.empty()) {
    if (AppItem item = listedAs(model, argument, command)) return item;
  }
  const bool isName = argument.find('/') == std::string::npos;
  const char* why = !place.empty() ? "not an application, widget or plug-in"
                    : isName       ? "no such file, and no identifier of an application"
                                   : std::strerror(error);
  throw WrongUsage(fmt::format("{}: {}: {}", command, argument, why));
}

}  // namespace brisko
