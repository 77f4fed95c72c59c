#pragma once

#include "CSMARTAttribute.h"
#include "DiskAndVolumeObj.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace brisko {

/// The health of the selected drive, read in the background and kept up to date while it is
/// selected. Belongs to the main thread.
class DiskHealth {
 public:
  enum class State : int {
    hidden,  ///< no disk is selected
    reading,
    shown,   ///< the drive answered
    silent,  ///< it did not; `explanation` says why, and what would help
  };

  explicit DiskHealth(std::function<void()> changed);
  ~DiskHealth();
  DiskHealth(const DiskHealth&) = delete;
  DiskHealth& operator=(const DiskHealth&) = delete;

  /// Shows this disk's health; of a volume, or of nothing (null), none.
  void show(const DiskAndVolumeObj* node);

  State state() const { return state_; }
  std::string temperature() const;  ///< "38 °C"; "Unknow" when the drive gives none
  std::string powerOnHours() const;
  std::string powerCycles() const;
  const std::string& explanation() const { return explanation_; }

 private:
  struct Lifetime {
    DiskHealth* health = nullptr;
  };
  void start(const std::string& device);
  void take(std::shared_ptr<CSMARTAttribute> reader);
  void drop();

  std::function<void()> changed_;
  std::shared_ptr<Lifetime> lifetime_;
  std::shared_ptr<CSMARTAttribute> reader_;
  std::string device_;
  State state_ = State::hidden;
  std::string explanation_;
  int token_ = 0;
};

/// Why a reader has no values, as a sentence for people; `device` is what it was asked for.
std::string smartExplanation(const CSMARTAttribute& reader, const std::string& device);

/// A byte or hour count with its digits in groups of three.
std::string groupedNumber(std::uint64_t number);

}  // namespace brisko
