#include "SystemSampler.h"

#include "Host.h"

#include <algorithm>
#include <utility>

namespace brisko {
namespace {

constexpr unsigned kSamplesPerTemperature = 5;

double moved(std::uint64_t before, std::uint64_t now) {
  return now > before ? static_cast<double>(now - before) : 0;
}

}  // namespace

CpuLoad SystemSample::processor() const {
  CpuLoad mean;
  for (const CpuLoad& core : cores) {
    mean.user += core.user / static_cast<double>(cores.size());
    mean.system += core.system / static_cast<double>(cores.size());
  }
  return mean;
}

TransferRate rateBetween(const std::vector<TransferCounters>& before,
                         const std::vector<TransferCounters>& now, double seconds) {
  TransferRate rate;
  if (seconds <= 0) return rate;
  for (const TransferCounters& device : now) {
    const auto known = std::find_if(before.begin(), before.end(),
                                    [&](const auto& each) { return each.name == device.name; });
    if (known == before.end()) continue;
    rate.in += moved(known->in, device.in) / seconds;
    rate.out += moved(known->out, device.out) / seconds;
  }
  return rate;
}

SystemSampler::SystemSampler() {
  restart();
}

void SystemSampler::restart() {
  processor_.getNumCPUs();
  HostActivity& activity = *Host::current().activity;
  disks_ = activity.disks();
  interfaces_ = activity.networkInterfaces();
  taken_ = Clock::now();
  samples_ = 0;
}

SystemSample SystemSampler::sample() {
  HostActivity& activity = *Host::current().activity;
  SystemSample sample;
  sample.cores = processor_.monitorCPU().value_or(std::vector<CpuLoad>());
  sample.memory = memory_.usagePercent();
  sample.disks = activity.disks();
  sample.interfaces = activity.networkInterfaces();
  const auto now = Clock::now();
  const double seconds = std::chrono::duration<double>(now - taken_).count();
  sample.disk = rateBetween(disks_, sample.disks, seconds);
  sample.network = rateBetween(interfaces_, sample.interfaces, seconds);
  if (samples_++ % kSamplesPerTemperature == 0) temperatures_ = activity.temperatures();
  sample.temperatures = temperatures_;
  sample.upTimeSeconds = activity.upTimeSeconds().value_or(0);
  disks_ = sample.disks;
  interfaces_ = sample.interfaces;
  taken_ = now;
  return sample;
}

}  // namespace brisko
