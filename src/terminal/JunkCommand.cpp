#include "JunkCommand.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "FastCleanModel.h"
#include "Interruption.h"
#include "JunkReport.h"
#include "Output.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

namespace brisko {
namespace {

int categoryIndex(const std::string& text) {
  if (text.size() == 1 && text[0] >= '0' && text[0] < '0' + kJunkCategoryCount) {
    return text[0] - '0';
  }
  for (int i = 0; i < kJunkCategoryCount; ++i) {
    const std::string& name = FastCleanScanFile::getName()[static_cast<std::size_t>(i)];
    if (lowerCase(name) == lowerCase(text)) return i;
  }
  throw WrongUsage(fmt::format("junk: no category \"{}\"; give 0 to {} or a title such as \"{}\"",
                               text, kJunkCategoryCount - 1, FastCleanScanFile::getName()[0]));
}

// Where the scan stands, for the progress line: the first row without a size.
std::string atWork(const FastCleanModel& model) {
  for (const FastTypeRow& row : model.rows()) {
    if (row.size.empty()) return "Scanning " + row.title;
  }
  return "Scanning";
}

}  // namespace

void JunkCommand::declare(CLI::App& app) {
  app.add_flag("--details", details_, "List every entry");
  app.add_flag("--clean", clean_,
               "Remove what starts ticked; with categories named, all entries of those");
  app.add_option("CATEGORY", categories_, "Only these: a number from 0 to 5, or a title");
}

JunkCommand::Wanted JunkCommand::wantedCategories() const {
  Wanted wanted;
  wanted.fill(categories_.empty());
  for (const std::string& text : categories_) {
    wanted[static_cast<std::size_t>(categoryIndex(text))] = true;
  }
  return wanted;
}

void JunkCommand::scan(FastCleanModel& model) {
  ProgressLine progress;
  model.setFullDiskAccessQuestion(
      [] { writeError("without full disk access some locations cannot be looked into"); });
  model.beginScanFile();
  Dispatch::runUntil([&] {
    if (progress.isDue()) progress.show(atWork(model), model.pathLabel());
    return model.indexPage() == 2 || Interruption::happened();
  });
}

JunkReport JunkCommand::reportOf(FastCleanModel& model, bool isDryRun) const {
  JunkReport report;
  const Wanted wanted = wantedCategories();
  report.wasInterrupted = model.indexPage() != 2;
  // What was found, before ticking turns the figure into what is ticked.
  report.total = CommUti::convertVolSpace(static_cast<std::uint64_t>(model.totalSize()));
  for (int i = 0; clean_ && !categories_.empty() && i < kJunkCategoryCount; ++i) {
    if (wanted[static_cast<std::size_t>(i)]) model.selectCategory(i);
  }
  report.takeScan(model, wanted);
  report.fullDiskAccess = model.authorizationStatus();
  report.skipped = FastCleanScanFile::shareInstall().skipped();
  report.isDryRun = isDryRun;
  return report;
}

bool JunkCommand::showScan(const JunkReport& report, bool isRemoving) const {
  const bool isPlan = clean_ || report.isDryRun;
  const auto ticked = isPlan ? JunkReport::Entries::selected : JunkReport::Entries::none;
  std::string text = report.overview(details_ ? JunkReport::Entries::all : ticked);
  const std::string items = counted(report.planCount, "item");
  if (isRemoving && report.planCount == 0) {
    text += "Nothing to remove.\n";
  } else if (report.isDryRun) {
    text += fmt::format("Would remove {}, {}.\n", items, report.planSize);
  } else if (!isRemoving && !report.wasInterrupted && report.planCount > 0) {
    text += fmt::format("Ticked: {}, {}. \"brisko junk --clean\" removes them.\n", items,
                        report.planSize);
  }
  return writeOut(text);
}

int JunkCommand::clean(FastCleanModel& model, JunkReport& report,
                       const GlobalOptions& global) const {
  const std::string question =
      fmt::format("Remove {}, {}?", counted(report.planCount, "item"), report.planSize);
  if (report.planCount > 0 && !global.yes && !confirm(question)) {
    writeError("nothing was removed");
    return Interruption::happened() ? kInterrupted : kNotDone;
  }
  if (report.planCount > 0) {
    ProgressLine progress;
    model.beginCleanFile();
    Dispatch::runUntil([&] {
      if (Interruption::happened()) model.stopCleaning();
      if (progress.isDue()) progress.show("Removing", model.pathLabel());
      return model.isCanClick();
    });
  }
  report.takeCleaning(model);
  if (Interruption::happened()) {
    report.wasInterrupted = true;
    return kInterrupted;
  }
  return report.failed.empty() ? kDone : kNotDone;
}

int JunkCommand::execute(const GlobalOptions& global) {
  const bool isRemoving = clean_ && !global.dryRun;
  FastCleanScanFile::shareInstall().setCategories(wantedCategories());
  if (isRemoving && !global.yes && !canConfirm()) {
    throw WrongUsage("junk --clean removes files: say --yes when nobody can be asked");
  }
  FastCleanModel model;
  scan(model);
  JunkReport report = reportOf(model, global.dryRun);
  if (!global.json && !showScan(report, isRemoving)) return kNotDone;

  int status = kDone;
  if (report.wasInterrupted) {
    writeError("interrupted while scanning; nothing was removed");
    status = kInterrupted;
  } else if (isRemoving) {
    status = clean(model, report, global);
  }
  std::string text;
  if (global.json) {
    text = report.document();
  } else if (report.wasCleaned && report.planCount > 0) {
    text = "\n" + report.outcome();
  }
  return text.empty() || writeOut(text) ? status : kNotDone;
}

}  // namespace brisko
