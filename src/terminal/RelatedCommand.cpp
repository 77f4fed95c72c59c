#include "RelatedCommand.h"

#include "AppArgument.h"
#include "AppsReport.h"
#include "Output.h"
#include "UninstallCommand.h"
#include "UninstallModel.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace brisko {

void RelatedCommand::declare(CLI::App& app) {
  app.add_option("PATH", path_, "A bundle's path, or a listed application's path or identifier")
      ->required();
}

int RelatedCommand::execute(const GlobalOptions& global) {
  UninstallModel model;
  RelatedFilesModel review;
  if (!reviewArguments(model, review, {path_}, name())) {
    writeError("interrupted; nothing is complete");
    return kInterrupted;
  }
  return writeOut(AppsReport(global.json).related(review)) ? kDone : kNotDone;
}

}  // namespace brisko
