#include "AppsCommand.h"

#include "AppArgument.h"
#include "AppsReport.h"
#include "Dispatch.h"
#include "Interruption.h"
#include "Output.h"
#include "UninstallModel.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

namespace brisko {
namespace {

constexpr const char* kTypeNames[] = {"applications", "widgets", "plugins"};

}  // namespace

void AppsCommand::declare(CLI::App& app) {
  app.add_option("--type", type_, "applications, widgets or plugins")->type_name("TYPE");
  app.add_option("--search", search_, "Only those whose name contains this, in any case");
  app.add_option("--sort", sort_, "name: A first; size: the largest first")->type_name("KEY");
}

int AppsCommand::wantedType() const {
  for (int type = 0; type < UninstallModel::kTypes; ++type) {
    if (type_ == kTypeNames[type]) return type;
  }
  throw WrongUsage(
      fmt::format("apps: no type \"{}\"; give applications, widgets or plugins", type_));
}

int AppsCommand::execute(const GlobalOptions& global) {
  const int type = wantedType();
  if (!sort_.empty() && sort_ != "name" && sort_ != "size") {
    throw WrongUsage(fmt::format("apps: cannot sort by \"{}\"; give name or size", sort_));
  }
  UninstallModel model;
  bool isWhole = scanInstalled(model);
  model.segmentClickAction(type);
  model.controlTextDidChange(search_);
  {
    ProgressLine progress;
    for (std::size_t row = 0; row < model.showListArr().size(); ++row)
      model.sizeText(row);
    Dispatch::runUntil([&] {
      if (progress.isDue()) progress.show("Measuring", "");
      return model.isMeasured() || Interruption::happened();
    });
  }
  isWhole = isWhole && !Interruption::happened();
  if (sort_ == "name") model.sortBy(UninstallColumn::appname, true);
  if (sort_ == "size") model.sortBy(UninstallColumn::Size, false);
  const AppsReport report(global.json);
  const bool isWritten = writeOut(report.list(model));
  if (!isWhole) {
    writeError("interrupted; the list or its sizes are not complete");
    return kInterrupted;
  }
  return isWritten ? kDone : kNotDone;
}

}  // namespace brisko
