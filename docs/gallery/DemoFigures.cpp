#include "DemoFigures.h"

#include "FakeStatistics.h"
#include "Host.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace brisko::test {
namespace {

constexpr double kGigabyte = 1u << 30U;

// A curve that looks measured, 0 to 1: slow waves with a jitter on them.
double wave(double second, double phase) {
  const double slow =
      0.5 + 0.3 * std::sin(second / 17 + phase) + 0.2 * std::sin(second / 5.3 + 2 * phase);
  const double jitter = std::sin(second * 12.9898 + phase * 78.233) * 43758.5453;
  return std::clamp(slow * 0.85 + 0.15 * (jitter - std::floor(jitter)), 0.0, 1.0);
}

// Short and high now and then, else near nothing.
double burst(double second, double phase) {
  return std::pow(wave(second, phase), 4);
}

struct DemoActivity : HostActivity {
  std::vector<TransferCounters> disks() override { return {}; }
  std::vector<TransferCounters> networkInterfaces() override { return {}; }
  std::vector<Temperature> temperatures() override { return {}; }
  std::optional<std::uint64_t> upTimeSeconds() override { return std::nullopt; }
};

/// Eight cores of which each look finds the same load.
struct DemoStatistics : FakeStatistics {
  std::optional<std::vector<ProcessorTicks>> processorTicks() override {
    ++looks_;
    return std::vector<ProcessorTicks>(8, {looks_ * 3, looks_, looks_ * 96, 0});
  }

 private:
  std::uint32_t looks_ = 0;
};

}  // namespace

SystemSample demoSample(int second, int cores) {
  SystemSample sample;
  for (int core = 0; core < cores; ++core) {
    const double busy = burst(second, core * 1.7) * 0.8 + 0.04;
    sample.cores.push_back({busy * 0.74, busy * 0.26});
  }
  sample.memory.totalMemory = static_cast<std::uint64_t>(16 * kGigabyte);
  const auto bytes = [](double gigabytes) {
    return static_cast<std::uint64_t>(gigabytes * kGigabyte);
  };
  sample.memory.activeMemory = bytes(5.6 + 1.3 * wave(second / 3.0, 1));
  sample.memory.wiredMemory = bytes(1.3 + 0.1 * wave(second, 3));
  sample.memory.inactiveMemory = bytes(4.4 + 0.5 * wave(second / 2.0, 2));
  sample.memory.usedMomory = sample.memory.activeMemory + sample.memory.wiredMemory;
  sample.memory.freeMemory =
      sample.memory.totalMemory - sample.memory.usedMomory - sample.memory.inactiveMemory;
  sample.disks = {{"nvme0n1", 0, 0, true}};
  sample.interfaces = {{"wlan0", 0, 0, true}};
  sample.disk = {burst(second, 0.6) * 182e6, burst(second, 4.1) * 96e6};
  sample.network = {burst(second, 2.4) * 11.8e6, burst(second, 5.2) * 2.6e6};
  sample.temperatures = {{"Package id 0", Temperature::Kind::processor, 54.0},
                         {"Fast Drive 1TB", Temperature::Kind::drive, 41.0}};
  sample.upTimeSeconds = 3 * 86400 + 4 * 3600 + static_cast<std::uint64_t>(second);
  return sample;
}

void installDemoFigures(Host& host) {
  auto statistics = std::make_unique<DemoStatistics>();
  statistics->memory.emplace();
  statistics->memory->free = 950'000;
  statistics->memory->inactive = 1'120'000;
  statistics->memory->active = 1'520'000;
  statistics->memory->wired = 330'000;
  statistics->values = {
      {"hw.pagesize", std::uint64_t{4096}},
      {"hw.physmem", static_cast<std::uint64_t>(16 * kGigabyte)},
      {"hw.model", std::string("MacBookPro15,1")},
      {"hw.memsize", static_cast<std::uint64_t>(16 * kGigabyte)},
      {"hw.ncpu", std::uint64_t{8}},
      {"hw.cpufrequency", std::uint64_t{4'100'000'000}},
      {"machdep.cpu.brand_string", std::string("Intel(R) Core(TM) i7-8850H CPU @ 2.60GHz")},
      {"kern.osrelease", std::string("6.1.0-28-amd64")}};
  statistics->product = "Debian GNU/Linux 12 (bookworm)";
  host.statistics = std::move(statistics);
  host.activity = std::make_unique<DemoActivity>();
}

}  // namespace brisko::test
