#include "LinuxSystemVersion.h"

#include "PropertyList.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace brisko {
namespace {

using Numbers = std::array<std::uint32_t, 3>;

// "11", "11.2" and "11.2.3" are versions; anything else is none.
bool parseVersion(const std::string& text, Numbers& numbers) {
  const char* at = text.data();
  const char* const end = at + text.size();
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const auto [next, error] = std::from_chars(at, end, numbers[i]);
    if (error != std::errc() || numbers[i] > 999) return false;
    if (next == end) return true;
    if (*next != '.') return false;
    at = next + 1;
  }
  return false;
}

// One digit each for minor and bug fix, which therefore stop at 9.
std::uint32_t packed(const Numbers& numbers) {
  const std::uint32_t major = std::min(numbers[0], 99U);
  return major / 10 << 12U | major % 10 << 8U | std::min(numbers[1], 9U) << 4U |
         std::min(numbers[2], 9U);
}

}  // namespace

LinuxSystemVersion::LinuxSystemVersion(std::string file) : file_(std::move(file)) {}

long LinuxSystemVersion::read(Selectors& selectors) {
  Numbers numbers = {};
  if (!parseVersion(PropertyList::read(file_)["ProductVersion"].string(), numbers)) {
    numbers = {10, 13, 0};
  }
  selectors = {packed(numbers), numbers[0], numbers[1], numbers[2]};
  return 0;
}

}  // namespace brisko
