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

  /// Shows this disk's health; of a volume, or of nothing (null), none. Another node with the same
  /// identifier may be another disk: the drive is asked anew, and what was shown stays until then.
  void show(const DiskNode& node);

  State state() const { return state_; }
  std::string temperature() const;
  std::string powerOnHours() const;
  std::string powerCycles() const;
  const std::string& explanation() const { return explanation_; }

 private:
  struct Lifetime {
    DiskHealth* health = nullptr;
  };
  void start();
  void take(std::shared_ptr<CSMARTAttribute> reader);
  void look();
  static void dropLater(std::shared_ptr<CSMARTAttribute> reader);

  std::function<void()> changed_;
  std::shared_ptr<Lifetime> lifetime_;
  std::shared_ptr<CSMARTAttribute> reader_;
  DiskNode node_;
  State state_ = State::hidden;
  std::string explanation_;
  int token_ = 0;
};

/// Why a reader has no values, as a sentence for people; `device` is what it was asked for.
std::string smartExplanation(const CSMARTAttribute& reader, const std::string& device);

/// "38 °C"; "Unknow" for 0, which means that the drive gives none.
std::string temperatureText(int degrees);

/// A count with its digits in groups of three.
std::string groupedNumber(std::uint64_t number);

}  // namespace brisko
