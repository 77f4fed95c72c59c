#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brisko {

/// The red, green and blue ramps of a screen.
struct GammaRamps {
  std::vector<std::uint16_t> red;
  std::vector<std::uint16_t> green;
  std::vector<std::uint16_t> blue;

  /// Ramps of `size` steps, straight at `warmth` 0 and with the white of a light bulb (2700 K)
  /// at 1.
  static GammaRamps warm(std::size_t size, double warmth);
};

/// The colours of the screens of the X display in DISPLAY.
class ScreenGamma {
 public:
  /// Sets all screens to `warmth`, 0 to 1. False, with the reason, where no display takes it.
  static bool set(double warmth, std::string& reason);
};

}  // namespace brisko
