#pragma once

#include "HostActivity.h"
#include "HostStatistics.h"

#include <cerrno>
#include <map>
#include <string>

namespace brisko::test {

/// Kernel counters that the test writes down.
struct FakeStatistics : HostStatistics {
  std::optional<std::vector<ProcessorTicks>> ticks;
  std::optional<VirtualMemoryStatistics> memory;
  std::map<std::string, NamedValue, std::less<>> values;
  std::map<std::string, std::string, std::less<>> properties;
  std::string product;

  std::optional<std::vector<ProcessorTicks>> processorTicks() override { return ticks; }
  bool virtualMemory(VirtualMemoryStatistics& statistics) override {
    if (memory) statistics = *memory;
    return memory.has_value();
  }
  int namedValue(std::string_view name, NamedValue& value) override {
    const auto found = values.find(name);
    if (found == values.end()) return ENOENT;
    value = found->second;
    return 0;
  }
  std::optional<std::string> platformProperty(std::string_view name) override {
    const auto found = properties.find(name);
    return found == properties.end() ? std::nullopt : std::optional(found->second);
  }
  std::string productName() override { return product; }
};

}  // namespace brisko::test
