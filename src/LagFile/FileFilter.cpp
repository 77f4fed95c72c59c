#include "FileFilter.h"

#include <ctime>

namespace brisko {
namespace {

constexpr std::int64_t kDay = 86'400;

}  // namespace

FileFilter FileFilter::of(std::uint64_t minSize, std::uint32_t days) {
  FileFilter filter;
  filter.minSize = minSize;
  if (days > 0) filter.modifiedBefore = std::time(nullptr) - days * kDay;
  return filter;
}

}  // namespace brisko
