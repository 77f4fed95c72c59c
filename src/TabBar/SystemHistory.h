#pragma once

#include "SystemSampler.h"

#include <cstddef>
#include <vector>

namespace brisko {

/// The last two minutes of one figure, one value a second, oldest first. A second in which nobody
/// looked is a gap (not a number).
class FigureHistory {
 public:
  static constexpr std::size_t kSeconds = 120;

  void add(double value);
  /// Leaves a gap of so many seconds.
  void skip(std::size_t seconds);
  const std::vector<float>& values() const { return values_; }

 private:
  std::vector<float> values_;
};

/// The last two minutes of all figures.
class SystemHistory {
 public:
  void add(const SystemSample& sample);
  void skip(std::size_t seconds);

  /// The latest sample; one of zeros before the first.
  const SystemSample& latest() const { return latest_; }
  bool isEmpty() const { return isEmpty_; }

  FigureHistory processor;  ///< 0 to 1, as the two below, of which it is the sum
  FigureHistory processorUser;
  FigureHistory processorSystem;
  FigureHistory usedMemory;  ///< bytes, as the three below
  FigureHistory activeMemory;
  FigureHistory wiredMemory;
  FigureHistory inactiveMemory;
  FigureHistory diskRead;  ///< bytes per second, as the three below
  FigureHistory diskWritten;
  FigureHistory networkReceived;
  FigureHistory networkSent;
  std::vector<FigureHistory> cores;  ///< user and system together, 0 to 1

 private:
  std::vector<FigureHistory*> all();

  SystemSample latest_;
  bool isEmpty_ = true;
};

}  // namespace brisko
