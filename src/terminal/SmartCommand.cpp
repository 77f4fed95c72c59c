#include "SmartCommand.h"

#include "CSMARTAttribute.h"
#include "DiskHealth.h"
#include "Dispatch.h"
#include "Interruption.h"
#include "Json.h"
#include "Output.h"
#include "RegularFile.h"
#include "SystemLog.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <optional>

namespace brisko {
namespace {

SmartSector savedSector(const std::string& path) {
  int error = 0;
  SmartSector sector{};
  const auto content = readFile(path, sector.size(), error);
  if (!content && error != EFBIG) {
    throw WrongUsage(fmt::format("smart: {}: {}", path, std::strerror(error)));
  }
  if (!content || content->size() != sector.size()) {
    throw WrongUsage(fmt::format("smart: {}: not a sector of {} bytes", path, sector.size()));
  }
  std::copy(content->begin(), content->end(), sector.begin());
  return sector;
}

int show(const CSMARTAttribute& reader, bool isJson) {
  if (isJson) {
    const Json document = {{"iTemperature", reader.GetTemperature()},
                           {"u64PowerOnHour", reader.GetPowerOnHour()},
                           {"u64PowerCycleCount", reader.GetPowerCycleCount()}};
    return writeOut(documentText(document)) ? kDone : kNotDone;
  }
  const std::string text =
      fmt::format("Temperature:     {}\nPower-on hours:  {}\nPower cycles:    {}\n",
                  temperatureText(reader.GetTemperature()), groupedNumber(reader.GetPowerOnHour()),
                  groupedNumber(reader.GetPowerCycleCount()));
  return writeOut(text) ? kDone : kNotDone;
}

}  // namespace

void SmartCommand::declare(CLI::App& app) {
  auto* device = app.add_option("--device", device_, "The drive; \"disk0\", the first, without it");
  app.add_option("--sector", sector_, "A saved S.M.A.R.T. data sector of 512 bytes instead")
      ->type_name("FILE")
      ->excludes(device);
}

int SmartCommand::execute(const GlobalOptions& global) {
  auto reader = std::make_shared<CSMARTAttribute>();
  if (!sector_.empty()) {
    reader->PrintSMART(savedSector(sector_));
    return show(*reader, global.json);
  }
  std::optional<std::string> name;
  if (!device_.empty()) name = device_.starts_with("/dev/") ? device_.substr(5) : device_;
  // Elsewhere, so that an interrupt ends the wait for a drive that does not answer.
  auto isRead = std::make_shared<std::atomic<bool>>(false);
  Dispatch::global([reader, name, isRead] {
    reader->GetSmartAttribute(name);
    *isRead = true;
  });
  Dispatch::runUntil([&] { return *isRead || Interruption::happened(); });
  if (!*isRead) return kInterrupted;
  if (reader->state() != CSMARTAttribute::State::answering) {
    writeError(smartExplanation(*reader, name.value_or("disk0")));
    return kNotDone;
  }
  return show(*reader, global.json);
}

}  // namespace brisko
