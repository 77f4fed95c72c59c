#include "DuplicatesCommand.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "DuplicateModel.h"
#include "DuplicatesReport.h"
#include "Interruption.h"
#include "Output.h"
#include "getFileList.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

// Each stage of a search has its own large tables. The C library would keep them for the next ones
// of the same size, which do not come; the peak is a sixth lower when they go.
void giveBackLargeBlocks() {
#ifdef __GLIBC__
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);
#endif
}

void tickAll(DuplicateModel& model) {
  model.setAllSelectOrNoSelect(true);
  Dispatch::runUntil([&] { return !model.isTicking(); });
}

}  // namespace

void DuplicatesCommand::declare(CLI::App& app) {
  app.add_option("DIR", folder_, "The folder to search")->required();
  app.add_flag("--remove", remove_, "Remove all copies of each group but the last one listed");
  app.add_option("--type", type_, "Only groups of this type: 0 to 6, or a title such as Pictures");
  app.add_flag("--no-hidden", noHidden_, "Leave out hidden files and folders");
  app.add_flag("--no-system", noSystem_, "Leave out the system's folders when DIR is /");
  app.add_option("--min-size", minSize_, "Only files of at least this many bytes; 10KB, 2MiB …")
      ->transform(CLI::AsSizeValue(true))
      ->type_name("SIZE");
}

// The folder, absolute and free of links, so that what is found in it can be removed by its path.
std::string DuplicatesCommand::searchedFolder() const {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(folder_.c_str(), nullptr),
                                                         &std::free);
  struct stat status;
  if (!real || ::stat(real.get(), &status) != 0) {
    throw WrongUsage(fmt::format("duplicates: {}: {}", folder_, std::strerror(errno)));
  }
  if (!S_ISDIR(status.st_mode)) {
    throw WrongUsage(fmt::format("duplicates: {}: not a folder", folder_));
  }
  if (::access(real.get(), R_OK | X_OK) != 0) {
    throw WrongUsage(fmt::format("duplicates: {}: {}", folder_, std::strerror(errno)));
  }
  return real.get();
}

std::size_t DuplicatesCommand::wantedSegment() const {
  if (type_.empty()) return 0;
  if (type_.size() == 1 && type_[0] >= '0' &&
      type_[0] < '0' + static_cast<int>(kDuplicateSegments)) {
    return static_cast<std::size_t>(type_[0] - '0');
  }
  for (std::size_t i = 1; i < kDuplicateSegments; ++i) {
    if (strcasecmp(type_.c_str(), std::string(kDuplicateTitles[i]).c_str()) == 0) return i;
  }
  throw WrongUsage(fmt::format("duplicates: no type \"{}\"; give 0 to {} or a title such as \"{}\"",
                               type_, kDuplicateSegments - 1, kDuplicateTitles[1]));
}

void DuplicatesCommand::search(DuplicateModel& model) const {
  DuplicateSearchOption option;
  option.searchesHiddenFiles = !noHidden_;
  option.searchesSystemFolders = !noSystem_;
  model.setSearchOption(option);
  model.setLimitSize(std::max<std::uint64_t>(minSize_, 1) - 1);
  ProgressLine progress;
  model.searchBtnClicked(searchedFolder());
  Dispatch::runUntil([&] {
    if (Interruption::happened()) model.stopScanBtnClicked();
    if (progress.isDue()) {
      model.getPathForSreachDuplicate();
      const auto percent = static_cast<int>(model.progress() * 100);
      progress.show(fmt::format("Searching {:3}%", percent), model.pathAtWork());
    }
    return !model.isSearching();
  });
}

int DuplicatesCommand::remove(DuplicateModel& model, const GlobalOptions& global) const {
  tickAll(model);
  if (model.selectedCount() == 0) return kDone;
  const std::string question = fmt::format("Remove {}, {}? One copy of each group is kept.",
                                           countedCopies(model.selectedCount()),
                                           CommUti::longlongDiskSize(model.selectedSize()));
  if (!global.yes && !confirm(question)) {
    writeError("nothing was removed");
    return Interruption::happened() ? kInterrupted : kNotDone;
  }
  struct Progress : DuplicateModelListener {
    ProgressLine line;
    std::size_t total = 0;
    void removalProgressed(const std::string& path, std::size_t done) override {
      if (line.isDue()) line.show(fmt::format("Removing {}/{}", done, total), path);
    }
  } progress;
  progress.total = model.selectedCount();
  model.setListener(&progress);
  model.doRemoveDuplicateAction();
  Dispatch::runUntil([&] {
    if (Interruption::happened()) model.stopRemoveBtnClicked();
    return !model.isRemoving();
  });
  model.setListener(nullptr);
  if (Interruption::happened()) return kInterrupted;
  return model.failures().empty() ? kDone : kNotDone;
}

int DuplicatesCommand::execute(const GlobalOptions& global) {
  const std::size_t segment = wantedSegment();
  const bool isRemoving = remove_ && !global.dryRun;
  if (isRemoving && !global.yes && !canConfirm()) {
    throw WrongUsage("duplicates --remove removes files: say --yes when nobody can be asked");
  }
  getFileList::setLogsCandidates(global.verbose);
  giveBackLargeBlocks();
  DuplicateModel model;
  search(model);
  model.loadValueForSegment(segment);

  DuplicatesReport report(model, global.json);
  report.writeGroups();
  int status = kDone;
  if (Interruption::happened()) {
    writeError("interrupted while searching; these are the groups found so far");
    status = kInterrupted;
  } else if (remove_ && global.dryRun) {
    tickAll(model);
    report.writePlan();
  } else if (isRemoving && report.isWritten()) {
    status = remove(model, global);
    report.writeOutcome();
  }
  report.writeEnd();
  return report.isWritten() ? status : kNotDone;
}

}  // namespace brisko
