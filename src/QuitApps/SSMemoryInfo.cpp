#include "SSMemoryInfo.h"

#include <fmt/format.h>

namespace brisko {

std::string SSMemoryInfo::covertMemory(std::int64_t bytes) {
  constexpr std::uint64_t kKB = 1024;
  constexpr std::uint64_t kMB = 1024 * kKB;
  constexpr std::uint64_t kGB = 1024 * kMB;
  const auto count = static_cast<std::uint64_t>(bytes);
  const auto number = static_cast<float>(count);
  if (count < kMB) return fmt::format("{:.2f} KB", number / static_cast<float>(kKB));
  if (count < kGB) return fmt::format("{:.2f} MB", number / static_cast<float>(kMB));
  return fmt::format("{:.2f} GB", number / static_cast<float>(kGB));
}

}  // namespace brisko
