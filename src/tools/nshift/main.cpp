// Colours the screen for the evening:
//
//     nshift STRENGTH      0 for none to 100 for the warmest
//
// By the desktop's night light where it has one, which knows only on and off and keeps its own
// warmth and hours; else by the colour ramps of the X server, which keeps them until it ends.

#include "DesktopSettings.h"
#include "ScreenGamma.h"

#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>

int main(int argc, char** argv) {
  const std::string_view text = argc == 2 ? argv[1] : "";
  int strength = -1;
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), strength);
  if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size() || strength < 0 ||
      strength > 100) {
    std::fputs("nshift: usage: nshift STRENGTH, from 0 to 100\n", stderr);
    return 1;
  }
  using namespace brisko;
  std::string desktop;
  if (DesktopSettings::read(DesktopSetting::nightLight, desktop)) {
    if (DesktopSettings::write(DesktopSetting::nightLight, strength > 0, desktop)) return 0;
    std::fprintf(stderr, "nshift: %s\n", desktop.c_str());
    return 1;
  }
  std::string screen;
  if (ScreenGamma::set(strength / 100.0, screen)) return 0;
  std::fprintf(stderr, "nshift: %s, and %s\n", desktop.c_str(), screen.c_str());
  return 1;
}
