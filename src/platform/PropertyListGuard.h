#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brisko {

/// Bounds on a property list from anywhere. The library that reads lists recurses once per level,
/// makes a value for each reference to a shared one and moves the rest of a text at each entity, so
/// a small hostile file could end the process or stop it for hours. What passes here can do
/// neither.
struct PropertyListBounds {
  static constexpr std::size_t kBytes = std::size_t{64} << 20U;
  static constexpr std::size_t kLevels = 512;
  static constexpr std::uint64_t kValues = 2'000'000;
  static constexpr std::uint64_t kExpandedBytes = std::uint64_t{256} << 20U;
  static constexpr std::uint64_t kEntityMoves = std::uint64_t{1} << 35U;  ///< bytes: some 2 s
  static constexpr std::uint64_t kKeyPairs = 4'000'000'000;  ///< 63,000 keys of one dictionary
};

bool isBinaryPropertyList(std::string_view bytes);

/// Why `bytes` must not be read as a list, or nothing when they may. An XML list must be
/// well-formed: known elements, properly nested, nothing but blanks between them, no document type
/// of its own.
std::optional<std::string> xmlPropertyListFault(std::string_view bytes);
std::optional<std::string> binaryPropertyListFault(std::string_view bytes);

}  // namespace brisko
