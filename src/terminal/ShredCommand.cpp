#include "ShredCommand.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "Interruption.h"
#include "Json.h"
#include "Output.h"
#include "SystemLog.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/stat.h>

namespace brisko {
namespace {

std::string sizeText(std::uint64_t bytes) {
  return CommUti::longlongDiskSize(bytes);
}

Json itemJson(const std::string& url, const std::string& failStr, const std::string& reason) {
  Json one = Json::object();
  setPath(one, "url", url);
  if (!failStr.empty()) one["failStr"] = failStr;
  if (!failStr.empty()) one["reason"] = replacedUtf8(reason);
  return one;
}

}  // namespace

void ShredCommand::declare(CLI::App& app) {
  app.add_option("PATH", paths_, "Files and folders to erase")->required();
  app.add_option("--times", times_,
                 "Overwriting passes on disks with moving parts: 1, 3, 7 or 35; else the "
                 "preference EraserTimes")
      ->type_name("N");
  app.add_flag("--all-names", allNames_, "Erase files that have further names (hard links) too");
}

void ShredCommand::checkPaths() const {
  for (const std::string& path : paths_) {
    struct stat status;
    if (path.empty() || ::lstat(path.c_str(), &status) != 0) {
      throw WrongUsage(
          fmt::format("shred: {}: {}", path, std::strerror(path.empty() ? ENOENT : errno)));
    }
  }
  const auto isChoice = [&](const EraserChoice& choice) { return choice.times == times_; };
  if (times_ != 0 && std::none_of(kEraserChoices.begin(), kEraserChoices.end(), isChoice)) {
    throw WrongUsage(fmt::format("shred: --times takes 1, 3, 7 or 35, not {}", times_));
  }
}

bool ShredCommand::plan(FileShareModel& model) const {
  ProgressLine progress;
  model.preparePlan();
  Dispatch::runUntil([&] {
    if (Interruption::happened()) model.cancelPlan();
    if (progress.isDue()) progress.show("Counting", {});
    return !model.isPlanning();
  });
  return !Interruption::happened();
}

bool ShredCommand::isWanted(const FileShareModel& model, const GlobalOptions& global) const {
  if (global.yes) return true;
  return confirm(fmt::format("Erase {} ({}) beyond recovery?", counted(model.planCount(), "item"),
                             sizeText(model.planBytes())));
}

void ShredCommand::run(FileShareModel& model) const {
  struct Progress : FileShareModelListener {
    ProgressLine line;
    void changeProgressValue(int percentage, const std::string& path) override {
      if (line.isDue()) line.show(fmt::format("Erasing {:3}%", percentage), path);
    }
  } progress;
  model.setListener(&progress);
  model.doDeleteButtonClick();
  Dispatch::runUntil([&] {
    if (Interruption::happened()) model.cancelShred();
    return !model.isShredding();
  });
  model.setListener(nullptr);
}

bool ShredCommand::write(const FileShareModel& model, const GlobalOptions& global,
                         bool isPlan) const {
  const FileObjs& items = isPlan ? model.plan() : model.deleteErrorArr();
  if (global.json) {
    Json document = Json::object();
    Json list = Json::array();
    for (const auto& item : items)
      list.push_back(itemJson(item->url, isPlan ? "" : item->failStr, item->reason));
    for (const FileShareRefusal& refused : refused_)
      list.push_back(itemJson(refused.path, "Failed", refused.reason));
    if (isPlan) document["dryRun"] = true;
    document["items"] = std::move(list);
    if (isPlan) document["bytes"] = model.planBytes();
    if (!isPlan) document["notes"] = model.notes();
    return writeOut(documentText(document));
  }
  const Style style = Style::ofStandardOutput();
  std::string text;
  for (const auto& item : items) {
    text += isPlan ? "Would erase " : fmt::format("{} ", item->failStr);
    text += escapedForDisplay(item->url);
    if (!item->reason.empty()) text += style.warning(": " + escapedForDisplay(item->reason));
    text += '\n';
  }
  for (const FileShareRefusal& refused : refused_) {
    text += "Failed " + escapedForDisplay(refused.path) +
            style.warning(": " + escapedForDisplay(refused.reason)) + '\n';
  }
  if (isPlan) {
    text += fmt::format("{}, {}.\n", counted(items.size(), "item"), sizeText(model.planBytes()));
  }
  for (const std::string& note : model.notes())
    text += style.dim("Note: " + note) + '\n';
  return writeOut(text);
}

int ShredCommand::execute(const GlobalOptions& global) {
  checkPaths();
  if (!global.yes && !global.dryRun && !canConfirm()) {
    throw WrongUsage("shred erases files: say --yes when nobody can be asked");
  }
  FileShareModel model;
  if (times_ != 0) model.overrideEraserTimes(times_);
  model.setErasesAllNames(allNames_);
  refused_ = model.addFileToArr(paths_);
  if (!plan(model)) {
    writeError("interrupted; nothing was erased");
    return kInterrupted;
  }
  const bool hasWork = model.planCount() > 0;
  if (!global.dryRun && hasWork) {
    if (!isWanted(model, global)) {
      writeError("nothing was erased");
      return Interruption::happened() ? kInterrupted : kNotDone;
    }
    run(model);
  }
  if (!write(model, global, global.dryRun)) return kNotDone;
  if (model.isCancel()) {
    writeError(model.errorString());
    return kInterrupted;
  }
  return model.isFailedEraser() || !refused_.empty() ? kNotDone : kDone;
}

}  // namespace brisko
