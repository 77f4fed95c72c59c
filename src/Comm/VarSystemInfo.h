#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brisko {

/// What the machine is and what runs on it, as texts for people.
class VarSystemInfo {
 public:
  /// Fills `sysModelID` and `sysModelName`; the others are filled by whoever shows them.
  VarSystemInfo() { setupSystemInformation(); }

  std::string sysName;  ///< what the machine is called in the network
  std::string sysUserName;
  std::string sysFullUserName;
  std::string sysOSName;
  std::string sysOSVersion;
  std::string sysPhysicalMemory;
  std::string sysSerialNumber;
  std::string sysUUID;
  std::string sysModelID;    ///< empty where the machine does not tell
  std::string sysModelName;  ///< empty where the machine does not tell
  std::string sysProcessorName;
  std::string sysProcessorSpeed;
  std::string sysProcessorCount;

  /// The kernel's value of that name; nothing when there is none or when it is a number.
  static std::optional<std::string> _strControlEntry(std::string_view name);
  /// The same for numbers; 0 when there is none.
  static std::uint64_t _numControlEntry(std::string_view name);
  /// A text property of the machine's platform device; nothing when it has none.
  static std::optional<std::string> _strIORegistryEntry(std::string_view name);

  /// The name under which a model is sold, from the table "MachineNames"; for others the family
  /// that the identifier begins with, else the identifier itself.
  static std::string _modelNameFromID(const std::string& identifier);

  /// The processor's brand without trade marks, figures and speed: the words up to "CPU" that do
  /// not begin with a digit.
  static std::string _parseBrandName(std::string_view brand);

  /// "10.MAJOR.MINOR (BUILD)" from the kernel's release, whose major number runs four ahead.
  /// Nothing when the kernel does not tell release or build.
  static std::optional<std::string> getOSVersionInfo();
  /// The system's name by the same number, or that number as text. Nothing when the kernel does not
  /// tell its release.
  static std::optional<std::string> getMinorVer();

 private:
  void setupSystemInformation();
};

}  // namespace brisko
