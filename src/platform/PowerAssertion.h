#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brisko {

/// Keeps the machine awake. What is held here is let go by the system when the process ends,
/// however it ends.
class PowerAssertion {
 public:
  using Identifier = std::uint32_t;
  static constexpr Identifier kNoIdentifier = 0;

  static constexpr int kLevelOff = 0;
  static constexpr int kLevelOn = 255;

  /// Neither the machine nor its display goes to sleep because nobody touches it.
  static constexpr std::string_view kNoDisplaySleep = "NoDisplaySleepAssertion";
  /// The display may go dark, the machine stays awake.
  static constexpr std::string_view kNoIdleSleep = "NoIdleSleepAssertion";

  struct Creation {
    Identifier identifier = kNoIdentifier;
    std::string reason;  ///< why there is none; for people
  };

  virtual ~PowerAssertion() = default;

  /// Asserts `type` at `level`; `name` tells people what for. Sleep that the user asks for is never
  /// held up. Blocks for at most some seconds. On failure the identifier is `kNoIdentifier`.
  virtual Creation create(std::string_view type, int level, const std::string& name) = 0;

  /// Lets go. False for an identifier that is not held.
  virtual bool release(Identifier identifier) = 0;

  /// Tells the system that the user is active now, as a key press would. False when there is nobody
  /// to tell.
  virtual bool updateSystemActivity() = 0;
};

}  // namespace brisko
