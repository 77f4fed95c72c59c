#include "LargeCommand.h"

#include "CommUti.h"
#include "Controller.h"
#include "Dispatch.h"
#include "FileFilter.h"
#include "Interruption.h"
#include "LargeReport.h"
#include "Output.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <unordered_set>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

// The library takes "-1" for the largest number there is.
std::string notNegative(const std::string& number) {
  return number.starts_with('-') ? number + " is below 0" : "";
}

}  // namespace

void LargeCommand::declare(CLI::App& app) {
  app_ = &app;
  app.add_option("DIR", folder_, "The folder to look through")->required();
  app.add_option("--depth", depth_, "How many levels to list; 0 for all (1, with a filter 0)")
      ->check(notNegative)
      ->type_name("N");
  app.add_option("--top", top_, "Of each folder only the N largest entries; 0 for all (0)")
      ->check(notNegative)
      ->type_name("N");
  app.add_option("--older-than", olderThan_, "Only files that were not changed for so many days")
      ->check(notNegative)
      ->type_name("DAYS");
  app.add_option("--min-size", minSize_, "Only files of at least this many bytes; 10MB, 2GiB …")
      ->transform(CLI::AsSizeValue(true))
      ->type_name("SIZE");
  app.add_option("--remove", remove_, "Remove these entries, each of which must be in the list")
      ->type_name("PATH");
}

// The folder, absolute and free of links, so that what is found in it can be removed by its path.
std::string LargeCommand::scannedFolder() const {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(folder_.c_str(), nullptr),
                                                         &std::free);
  struct stat status;
  if (!real || ::stat(real.get(), &status) != 0) {
    throw WrongUsage(fmt::format("large: {}: {}", folder_, std::strerror(errno)));
  }
  if (!S_ISDIR(status.st_mode)) throw WrongUsage(fmt::format("large: {}: not a folder", folder_));
  if (::access(real.get(), R_OK | X_OK) != 0) {
    throw WrongUsage(fmt::format("large: {}: {}", folder_, std::strerror(errno)));
  }
  return real.get();
}

void LargeCommand::scan(Controller& controller, const std::string& folder) const {
  ProgressLine progress;
  controller.setFilter(FileFilter::of(minSize_, olderThan_));
  controller.eumeAllRootFileNodeWithRootArr(folder);
  Dispatch::runUntil([&] {
    if (Interruption::happened()) controller.stopScan();
    if (controller.isScanning() && progress.isDue()) {
      EumeRoot& scan = *controller.eumeRoot();
      progress.show(fmt::format("Reading {:3.0f}%", scan.getProgress()), scan.pathAtWork());
    }
    return !controller.isScanning();
  });
}

// Follows the names of `path` down the list. The path may begin with the folder as it was given.
FileNode* LargeCommand::listed(Controller& controller, const std::string& folder,
                               const std::string& path) const {
  std::string_view rest = path;
  for (std::string_view begin : {std::string_view(folder), std::string_view(folder_)}) {
    if (begin.ends_with('/')) begin.remove_suffix(1);
    if (!path.starts_with(begin) || path.size() <= begin.size() || path[begin.size()] != '/') {
      continue;
    }
    rest.remove_prefix(begin.size() + 1);
    break;
  }
  if (rest.size() == path.size()) return nullptr;
  const LargeListing listing{depth_, top_};
  FileNode* at = controller.root();
  for (std::size_t level = 0; !rest.empty(); ++level) {
    if (level > 0 && !listing.goesBelow(level)) return nullptr;
    const std::string_view name = rest.substr(0, rest.find('/'));
    const auto entries = listing.entriesOf(*at);
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const FileNode* node) { return node->_name() == name; });
    if (found == entries.end()) return nullptr;
    at = *found;
    rest.remove_prefix(name.size());
    if (rest.empty()) return at;
    rest.remove_prefix(1);
  }
  return nullptr;
}

std::vector<FileNode*> LargeCommand::wanted(Controller& controller,
                                            const std::string& folder) const {
  std::vector<FileNode*> nodes;
  std::unordered_set<const FileNode*> named;
  for (const std::string& path : remove_) {
    FileNode* node = listed(controller, folder, path);
    if (node == nullptr) throw WrongUsage(fmt::format("large: {}: not in the list", path));
    if (isCut(*node)) {
      throw WrongUsage(fmt::format("large: {}: the filter hides some of what is in it", path));
    }
    if (named.insert(node).second) nodes.push_back(node);
  }
  // What lies in another one goes with it.
  std::erase_if(nodes, [&named](const FileNode* node) {
    for (const FileNode* at = node->holder; at != nullptr; at = at->holder) {
      if (named.contains(at)) return true;
    }
    return false;
  });
  return nodes;
}

int LargeCommand::remove(Controller& controller, const std::vector<FileNode*>& nodes,
                         const GlobalOptions& global) const {
  std::uint64_t bytes = 0;
  for (const FileNode* node : nodes)
    bytes += node->size;
  const std::string question = fmt::format("Remove {}, {}?", counted(nodes.size(), "item"),
                                           CommUti::longlongDiskSize(bytes));
  if (!global.yes && !confirm(question)) {
    writeError("nothing was removed");
    return Interruption::happened() ? kInterrupted : kNotDone;
  }
  controller.removeSelectFilesWithDic(nodes);
  Dispatch::runUntil([&] {
    if (Interruption::happened()) controller.stopRemove();
    return !controller.isRemoving();
  });
  if (Interruption::happened()) {
    writeError("interrupted; the rest was not tried");
    return kInterrupted;
  }
  return controller.failures().empty() ? kDone : kNotDone;
}

int LargeCommand::execute(const GlobalOptions& global) {
  if (app_->count("--depth") == 0 && (minSize_ > 0 || olderThan_ > 0)) depth_ = 0;
  const bool isRemoving = !remove_.empty() && !global.dryRun;
  if (isRemoving && !global.yes && !canConfirm()) {
    throw WrongUsage("large --remove removes files: say --yes when nobody can be asked");
  }
  const std::string folder = scannedFolder();
  Controller controller;
  scan(controller, folder);
  if (controller.root() == nullptr) {
    throw WrongUsage(
        fmt::format("large: {}: {}", folder_, std::strerror(controller.eumeRoot()->error())));
  }
  const bool isWhole = !Interruption::happened();
  const std::vector<FileNode*> nodes =
      isWhole ? wanted(controller, folder) : std::vector<FileNode*>();

  LargeReport report(controller, {depth_, top_}, global.json);
  report.writeTree();
  int status = kDone;
  if (!isWhole) {
    writeError("interrupted while reading; this is what was found so far");
    status = kInterrupted;
  } else if (global.dryRun && !nodes.empty()) {
    report.writePlan(nodes);
  } else if (isRemoving && report.isWritten()) {
    status = remove(controller, nodes, global);
    report.writeOutcome();
  }
  report.writeEnd();
  return report.isWritten() ? status : kNotDone;
}

}  // namespace brisko
