#include "BrowsersCommand.h"

#include "BrowsersReport.h"
#include "Dispatch.h"
#include "InternetModel.h"
#include "Interruption.h"
#include "JunkLocation.h"
#include "Output.h"
#include "SystemLog.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>

namespace brisko {
namespace {

using Strings = std::vector<std::string>;

bool isNamed(const Strings& wanted, const std::string& name) {
  return std::any_of(wanted.begin(), wanted.end(),
                     [&](const auto& each) { return lowerCase(each) == lowerCase(name); });
}

bool isWanted(const Strings& wanted, const BrowerObj& browser) {
  return isNamed(wanted, browser.name) || isNamed(wanted, browser.rule.key);
}

/// Throws for a name that nothing has.
void checkNames(const Strings& names, const char* what,
                const std::function<bool(const Strings& one)>& isKnown) {
  for (const std::string& name : names) {
    if (!isKnown({name})) throw WrongUsage(fmt::format("browsers: no {} \"{}\"", what, name));
  }
}

bool hasBrowser(const InternetModel& model, const Strings& one) {
  const auto& all = model.browserArr();
  return std::any_of(all.begin(), all.end(),
                     [&](const auto& each) { return isWanted(one, *each); });
}

bool hasKind(const InternetModel& model, const Strings& one) {
  for (const auto& browser : model.browserArr()) {
    for (const auto& kind : browser->chrArr) {
      if (isNamed(one, kind->name)) return true;
    }
  }
  return false;
}

void scan(InternetModel& model) {
  ProgressLine progress;
  model.getBrowserArr();
  Dispatch::runUntil([&] {
    if (progress.isDue()) progress.show("Looking at what browsers keep", "");
    return model.indePage() == InternetModel::Page::scanned || Interruption::happened();
  });
}

}  // namespace

void BrowsersCommand::declare(CLI::App& app) {
  app.add_flag("--clean", clean_, "Erase what is ticked");
  app.add_flag("--close", close_, "End ticked browsers that run, without a question");
  app.add_option("--browser", browsers_, "Tick only this browser; may be given again")
      ->allow_extra_args(false);
  app.add_option("--kind", kinds_, "Tick only this kind of data; may be given again")
      ->allow_extra_args(false);
}

void BrowsersCommand::tick(InternetModel& model) const {
  const auto& all = model.browserArr();
  checkNames(browsers_, "browser", [&](const Strings& one) { return hasBrowser(model, one); });
  if (!all.empty()) {
    checkNames(kinds_, "kind", [&](const Strings& one) { return hasKind(model, one); });
  }
  if (browsers_.empty() && kinds_.empty()) return;
  model.select([&](const BrowerObj& browser, const BrowerObj& kind) {
    const bool isOfBrowser =
        browsers_.empty() ? browser.isSelect != 0 : isWanted(browsers_, browser);
    return isOfBrowser && (kinds_.empty() || isNamed(kinds_, kind.name));
  });
}

int BrowsersCommand::clean(InternetModel& model, BrowsersReport& report,
                           const GlobalOptions& global) const {
  const auto kinds = model.plan().size();
  for (const std::string& loss : model.losses())
    writeError(loss);
  if (kinds > 0 && !global.yes &&
      !confirm(fmt::format("Erase {} of data?", counted(kinds, "kind")))) {
    writeError("nothing was erased");
    return Interruption::happened() ? kInterrupted : kNotDone;
  }
  bool isRefused = false;
  model.setCloseQuestion([&](const std::string& text) {
    if (close_) return true;
    writeError(text);
    const bool isAgreed = !global.json && canConfirm() && confirm("Close it now?");
    if (!isAgreed && !canConfirm()) writeError("--close ends running browsers");
    isRefused = !isAgreed;
    return isAgreed;
  });
  model.setAccessNotice([] { writeError("the system protects Safari's data"); });
  if (kinds > 0) {
    ProgressLine progress;
    model.cleanButtonAction();
    Dispatch::runUntil([&] {
      if (Interruption::happened()) model.stopCleaning();
      if (progress.isDue()) progress.show("Erasing", "");
      return model.isCanClick();
    });
  }
  model.setCloseQuestion({});
  if (isRefused) {
    writeError("nothing was erased");
    return kNotDone;
  }
  report.takeCleaning(model);
  if (Interruption::happened()) return kInterrupted;
  return report.failed.empty() ? kDone : kNotDone;
}

int BrowsersCommand::execute(const GlobalOptions& global) {
  const bool isErasing = clean_ && !global.dryRun;
  if (isErasing && !global.yes && !canConfirm()) {
    throw WrongUsage("browsers --clean erases data: say --yes when nobody can be asked");
  }
  InternetModel model;
  scan(model);
  if (Interruption::happened()) {
    writeError("interrupted while scanning; nothing was erased");
    return kInterrupted;
  }
  tick(model);
  BrowsersReport report;
  report.isDryRun = global.dryRun;
  report.takeScan(model);
  if (!global.json && !writeOut(report.overview(clean_ || global.dryRun))) return kNotDone;
  const int status = isErasing ? clean(model, report, global) : int{kDone};
  const std::string text = global.json ? report.document() : report.outcome();
  return text.empty() || writeOut(text) ? status : kNotDone;
}

}  // namespace brisko
