#pragma once

#include "Output.h"
#include "SystemSampler.h"
#include "TCVolumDetail.h"
#include "VarSystemInfo.h"

#include <string>
#include <vector>

namespace brisko {

/// How "brisko status" tells a sample.
class StatusReport {
 public:
  explicit StatusReport(VarSystemInfo information);

  /// For people, in so many columns where that is possible.
  std::string text(const SystemSample& sample, const std::vector<TCVolumDetail>& volumes,
                   std::size_t columns) const;
  /// The one document.
  std::string json(const SystemSample& sample, const std::vector<TCVolumDetail>& volumes) const;

 private:
  std::string machine(const SystemSample& sample) const;
  std::string processor(const SystemSample& sample, std::size_t columns) const;
  std::string cores(const SystemSample& sample, std::size_t columns) const;
  std::string memory(const SystemSample& sample, std::size_t columns) const;
  std::string volumes(const std::vector<TCVolumDetail>& volumes, std::size_t columns) const;
  std::string transfers(const SystemSample& sample) const;
  std::string temperatures(const SystemSample& sample) const;
  std::string line(std::string_view label, std::string_view text) const;
  std::string bar(double fraction, std::size_t columns) const;

  VarSystemInfo information_;
  Style style_;
};

}  // namespace brisko
