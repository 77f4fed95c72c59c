#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace brisko {

/// The segments by which groups are filtered: 0 all of them, the rest one type class each.
inline constexpr std::size_t kDuplicateSegments = 7;
inline constexpr int kOtherTypes = 6;

/// The titles of the segments; the first is that of the folder searched, and empty here.
inline constexpr std::array<std::string_view, kDuplicateSegments> kDuplicateTitles = {
    "", "Documents", "Videos", "Music", "Archives", "Pictures", "Others"};

/// The segment that shows the groups of a class, 1 to 6. Of Videos and Music, numbers and segments
/// stand in opposite orders.
constexpr std::size_t duplicateSegment(int fileType) {
  constexpr std::array<std::size_t, kDuplicateSegments> kSegments = {0, 1, 3, 2, 4, 5, 6};
  return kSegments[static_cast<std::size_t>(fileType)];
}

/// The class, 1 to 6, that takes a group with this extension, in any case.
int duplicateClass(std::string_view extendName);

/// The image for what belongs to a class.
const char* duplicateImage(int fileType);

}  // namespace brisko
