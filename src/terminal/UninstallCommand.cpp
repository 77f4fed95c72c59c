#include "UninstallCommand.h"

#include "AppArgument.h"
#include "AppsReport.h"
#include "CommUti.h"
#include "Dispatch.h"
#include "Interruption.h"
#include "Output.h"
#include "UninstallModel.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>

namespace brisko {

bool reviewArguments(UninstallModel& model, RelatedFilesModel& review,
                     const std::vector<std::string>& arguments, const char* command) {
  if (!scanInstalled(model)) return false;
  AppItems chosen;
  for (const std::string& argument : arguments) {
    AppItem item = installedItem(model, argument, command);
    const bool isNew = std::none_of(chosen.begin(), chosen.end(), [&](const AppItem& other) {
      return other->path == item->path;
    });
    if (isNew) chosen.push_back(std::move(item));
  }
  ProgressLine progress;
  review.setAllRelaltedFiles(chosen, model.everything());
  Dispatch::runUntil([&] {
    if (progress.isDue()) progress.show("Looking for related files", "");
    return (review.isComplete() && review.isMeasured()) || Interruption::happened();
  });
  return !Interruption::happened();
}

void UninstallCommand::declare(CLI::App& app) {
  app.add_option("PATH", paths_, "Bundles' paths, or listed applications' paths or identifiers")
      ->required();
}

int UninstallCommand::remove(RelatedFilesModel& review, const GlobalOptions& global) const {
  const AppItems entries = review.selectDeletePath();
  const std::string question = fmt::format("Remove {}, {}? They do not go to the trash.",
                                           counted(review.selectedCount(), "item"),
                                           CommUti::longlongDiskSize(review.selectedBytes()));
  if (!entries.empty() && !global.yes && !confirm(question)) {
    writeError("nothing was removed");
    return Interruption::happened() ? kInterrupted : kNotDone;
  }
  if (!entries.empty()) {
    ProgressLine progress;
    review.doRemove();
    Dispatch::runUntil([&] {
      if (Interruption::happened()) review.stop();
      if (progress.isDue()) {
        progress.show(fmt::format("Removing {}/{}", review.deleteCount(), review.allSelectCount()),
                      review.pathLabel());
      }
      return !review.isRemoving();
    });
  }
  if (!writeOut(AppsReport(global.json).outcome(review, entries))) return kNotDone;
  if (Interruption::happened()) return kInterrupted;
  return AppsReport::stayed(review, entries).empty() ? kDone : kNotDone;
}

int UninstallCommand::execute(const GlobalOptions& global) {
  if (!global.dryRun && !global.yes && !canConfirm()) {
    throw WrongUsage("uninstall removes files: say --yes when nobody can be asked");
  }
  UninstallModel model;
  RelatedFilesModel review;
  if (!reviewArguments(model, review, paths_, name())) {
    writeError("interrupted; nothing was removed");
    return kInterrupted;
  }
  const std::string plan = AppsReport(global.json).plan(review, global.dryRun);
  if (!plan.empty() && !writeOut(plan)) return kNotDone;
  return global.dryRun ? kDone : remove(review, global);
}

}  // namespace brisko
