#include "StatusCommand.h"

#include "Interruption.h"
#include "LiveBlock.h"
#include "Output.h"
#include "StatusReport.h"
#include "SystemSampler.h"
#include "SystemTexts.h"
#include "TCDiskVolums.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <chrono>
#include <thread>

namespace brisko {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kInterval{1};

// False when the user does not want to wait for it.
bool waitUntil(Clock::time_point due) {
  // Short enough that an interrupt that comes just before a sleep is not noticed late.
  constexpr std::chrono::milliseconds kStep{50};
  while (!Interruption::happened() && Clock::now() < due)
    std::this_thread::sleep_for(std::min<Clock::duration>(kStep, due - Clock::now()));
  return !Interruption::happened();
}

}  // namespace

void StatusCommand::declare(CLI::App& app) {
  app.add_flag("--watch", watch_, "Show it again every second, until interrupted");
}

int StatusCommand::watch(SystemSampler& sampler, StatusReport& report) const {
  LiveBlock block;
  TCDiskVolums volumes;
  for (auto due = Clock::now() + kInterval; waitUntil(due); due += kInterval) {
    // After a pause of the whole process there is nothing to catch up with.
    due = std::max(due, Clock::now() - kInterval);
    if (!block.show(report.text(sampler.sample(), volumes.allDiskVolums(), block.columns())))
      return kNotDone;
  }
  return kInterrupted;
}

int StatusCommand::execute(const GlobalOptions& global) {
  if (watch_ && global.json) {
    throw WrongUsage("status: --json is one document; leave out --watch, or run it again");
  }
  SystemSampler sampler;
  StatusReport report(SystemTexts::systemInformation());
  if (watch_) return watch(sampler, report);
  if (!waitUntil(Clock::now() + kInterval)) return kInterrupted;
  const SystemSample sample = sampler.sample();
  const auto volumes = TCDiskVolums().allDiskVolums();
  const std::string text = global.json ? report.json(sample, volumes)
                                       : report.text(sample, volumes, LiveBlock::outputColumns());
  return writeOut(text) ? kDone : kNotDone;
}

}  // namespace brisko
