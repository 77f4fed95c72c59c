#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace brisko {

/// Sorts by a 64-bit key; what has the same key keeps its order. Goes over the items once for each
/// byte in which the keys differ at all, which for sizes and inode numbers are few: several times
/// as fast as comparing. Needs room for a second copy of the items meanwhile.
template <typename T, typename Key>
void radixSort(std::vector<T>& items, Key key) {
  if (items.empty()) return;
  std::uint64_t anyBits = 0;
  std::uint64_t allBits = ~std::uint64_t{0};
  std::uint64_t before = 0;
  bool isSorted = true;
  for (const T& item : items) {
    const std::uint64_t value = key(item);
    isSorted = isSorted && value >= before;
    before = value;
    anyBits |= value;
    allBits &= value;
  }
  if (isSorted) return;
  std::vector<T> other(items.size());
  for (unsigned shift = 0; shift < 64; shift += 8) {
    if (((anyBits ^ allBits) >> shift & 0xFF) == 0) continue;
    const auto digit = [&](const T& item) { return key(item) >> shift & 0xFF; };
    std::array<std::size_t, 256> places{};
    for (const T& item : items)
      ++places[digit(item)];
    std::size_t begin = 0;
    for (std::size_t& place : places)
      begin += std::exchange(place, begin);
    for (const T& item : items)
      other[places[digit(item)]++] = item;
    items.swap(other);
  }
}

}  // namespace brisko
