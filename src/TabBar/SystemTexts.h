#pragma once

#include "SystemSampler.h"
#include "VarSystemInfo.h"

#include <optional>
#include <string>

namespace brisko {

/// The machine's figures as texts, the same in the window and in the terminal.
namespace SystemTexts {

/// "23%"; a fraction of 0 to 1, rounded.
std::string percent(double fraction);
/// Bytes per second: "12.34 MB/s".
std::string rate(double bytesPerSecond);
/// What is used of a volume, 0 to 1; 0 for one that does not tell its size.
double usedFraction(std::uint64_t totalBytes, std::uint64_t freeBytes);
/// "54 °C".
std::string degrees(double celsius);
/// "3 days 4 h", "4 h 12 min", "12 min", "less than a minute"; empty for 0, which is unknown.
std::string upTime(std::uint64_t seconds);

/// The hottest sensor of a kind; nothing when none answers.
std::optional<double> hottest(const SystemSample& sample, Temperature::Kind kind);
/// "Connected through eth0", "Not connected", "No network device".
std::string networkState(const SystemSample& sample);

/// What the machine is called: its model, else "Virtual machine" or "This machine".
std::string machineName(const VarSystemInfo& info);
/// Brand, number of cores and highest speed, as far as known: "Intel Core i7, 8 cores, 3.20 GHz".
std::string processor(const VarSystemInfo& info);
/// The system with its kernel: "Debian GNU/Linux 12 (bookworm), kernel 6.1.0".
std::string system(const VarSystemInfo& info);
/// Fills all that the record leaves to its users. Reads the host: not for the main thread.
VarSystemInfo systemInformation();

}  // namespace SystemTexts

}  // namespace brisko
