#pragma once

#include "RepeatingTimer.h"
#include "SmartDevice.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace brisko {

/// Reads a drive's health: temperature, power-on hours, power cycles. Once opened it reads again
/// every 60 seconds until it goes, and tells the temperature each time with the notification
/// "updateTemperature", whose object is the number as text.
///
/// A drive that sleeps can take seconds to answer, so opening and the regular reading are no work
/// for the main thread; the notification is posted on the main queue. The values can be asked for
/// from everywhere.
class CSMARTAttribute {
 public:
  static constexpr const char* kUpdateTemperature = "updateTemperature";
  static constexpr std::chrono::seconds kInterval{60};

  /// How far opening came.
  enum class State : int {
    closed,
    noDevice,      ///< no such device, or nothing at or above it can be asked
    noInterface,   ///< it cannot be opened; `error` says why
    notAnswering,  ///< it was asked, and gave no values
    answering,
  };

  explicit CSMARTAttribute(std::chrono::milliseconds interval = kInterval);
  ~CSMARTAttribute();
  CSMARTAttribute(const CSMARTAttribute&) = delete;
  CSMARTAttribute& operator=(const CSMARTAttribute&) = delete;

  /// Opens a device ("disk0" for nothing), turns its S.M.A.R.T. on, reads once and starts the
  /// timer. To be called once. Each failure is logged; `errno` is ENODEV when nothing can be asked,
  /// and then there is no timer.
  State GetSmartAttribute(const std::optional<std::string>& name);

  /// Reads data and thresholds anew and tells the temperature when it is above 0. When the
  /// thresholds cannot be read, the temperature becomes 0; after any other failure values stay.
  void GetThreaholds();

  /// Takes the three values out of a data sector.
  void PrintSMART(const SmartSector& data);

  int GetTemperature() const { return iTemperature; }  ///< degrees Celsius; 0 is unknown
  std::uint64_t GetPowerOnHour() const { return u64PowerOnHour; }
  std::uint64_t GetPowerCycleCount() const { return u64PowerCycleCount; }

  State state() const { return state_; }
  int error() const { return error_; }  ///< errno of the failure behind `state`, or 0
  bool hasTimer() const { return temperatureTimer.isValid(); }

 private:
  std::optional<SmartNode> deviceNamed(std::string path) const;
  bool findInterface(const std::optional<std::string>& name);
  void readFirst();
  int readHealthLog();
  int readSectors(bool zeroesTemperature);

  std::atomic<std::int32_t> iTemperature{0};
  std::atomic<std::uint64_t> u64PowerOnHour{0};
  std::atomic<std::uint64_t> u64PowerCycleCount{0};
  std::unique_ptr<SmartInterface> smartIf;
  std::atomic<State> state_{State::closed};
  std::atomic<int> error_{0};
  std::chrono::milliseconds interval_;
  RepeatingTimer temperatureTimer;  ///< last: it ends before what it reads with goes
};

}  // namespace brisko
