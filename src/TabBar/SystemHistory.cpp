#include "SystemHistory.h"

#include <algorithm>
#include <limits>

namespace brisko {

void FigureHistory::add(double value) {
  if (values_.size() >= kSeconds) values_.erase(values_.begin());
  values_.push_back(static_cast<float>(value));
}

void FigureHistory::skip(std::size_t seconds) {
  if (values_.empty()) return;
  if (seconds >= kSeconds) {
    values_.clear();
    return;
  }
  for (std::size_t i = 0; i < seconds; ++i)
    add(std::numeric_limits<double>::quiet_NaN());
}

std::vector<FigureHistory*> SystemHistory::all() {
  std::vector<FigureHistory*> figures = {&processor,       &processorUser, &processorSystem,
                                         &usedMemory,      &activeMemory,  &wiredMemory,
                                         &inactiveMemory,  &diskRead,      &diskWritten,
                                         &networkReceived, &networkSent};
  for (FigureHistory& core : cores)
    figures.push_back(&core);
  return figures;
}

void SystemHistory::add(const SystemSample& sample) {
  latest_ = sample;
  isEmpty_ = false;
  if (!sample.cores.empty()) {
    const CpuLoad together = sample.processor();
    processor.add(together.user + together.system);
    processorUser.add(together.user);
    processorSystem.add(together.system);
    // With another number of cores the old curves are not of the same cores.
    if (cores.size() != sample.cores.size()) cores.assign(sample.cores.size(), {});
    for (std::size_t i = 0; i < cores.size(); ++i)
      cores[i].add(sample.cores[i].user + sample.cores[i].system);
  }
  usedMemory.add(static_cast<double>(sample.memory.usedMomory));
  activeMemory.add(static_cast<double>(sample.memory.activeMemory));
  wiredMemory.add(static_cast<double>(sample.memory.wiredMemory));
  inactiveMemory.add(static_cast<double>(sample.memory.inactiveMemory));
  diskRead.add(sample.disk.in);
  diskWritten.add(sample.disk.out);
  networkReceived.add(sample.network.in);
  networkSent.add(sample.network.out);
}

void SystemHistory::skip(std::size_t seconds) {
  for (FigureHistory* figure : all())
    figure->skip(seconds);
}

}  // namespace brisko
