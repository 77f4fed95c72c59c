#include "PassScheme.h"

#include <fmt/format.h>

namespace brisko::srm {
namespace {

Pass random() {
  return {};
}

Pass fixed(std::uint8_t one, std::uint8_t two, std::uint8_t three) {
  return {false, {one, two, three}};
}

Pass byte(std::uint8_t value) {
  return fixed(value, value, value);
}

bool isZero(const Pass& pass) {
  return !pass.isRandom && pass.pattern == std::array<std::uint8_t, 3>{};
}

void addRandom(std::vector<Pass>& passes, int count) {
  for (int i = 0; i < count; ++i)
    passes.push_back(random());
}

// Bit patterns that drive the run-length-limited encodings of old drives to their extremes. The
// repeated ones serve more than one encoding.
void addEncodingPatterns(std::vector<Pass>& passes) {
  const auto addThreeRotations = [&](std::uint8_t a, std::uint8_t b, std::uint8_t c) {
    passes.push_back(fixed(a, b, c));
    passes.push_back(fixed(b, c, a));
    passes.push_back(fixed(c, a, b));
  };
  passes.push_back(byte(0x55));
  passes.push_back(byte(0xAA));
  addThreeRotations(0x92, 0x49, 0x24);
  for (unsigned nibble = 0; nibble < 16; ++nibble)
    passes.push_back(byte(static_cast<std::uint8_t>(nibble * 0x11)));
  addThreeRotations(0x92, 0x49, 0x24);
  addThreeRotations(0x6D, 0xB6, 0xDB);
}

}  // namespace

std::string Pass::description() const {
  if (isRandom) return "random";
  return fmt::format("0x{:02x} 0x{:02x} 0x{:02x}", pattern[0], pattern[1], pattern[2]);
}

std::vector<Pass> passesOf(Scheme scheme, bool zero) {
  std::vector<Pass> passes;
  switch (scheme) {
    case Scheme::simple:
      addRandom(passes, 1);
      break;
    case Scheme::doe:
      addRandom(passes, 2);
      passes.push_back(byte(0x00));
      break;
    case Scheme::dod:
      passes = {byte(0x35), byte(0xCA), random(), random(), byte(0x97), byte(0x68), random()};
      break;
    case Scheme::gutmann:
      addRandom(passes, 4);
      addEncodingPatterns(passes);
      addRandom(passes, 4);
      break;
  }
  if (zero && !isZero(passes.back())) passes.push_back(byte(0x00));
  return passes;
}

}  // namespace brisko::srm
