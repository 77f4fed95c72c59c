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

/// The class number behind each segment. Videos and Music stand in the opposite order.
inline constexpr std::array<int, kDuplicateSegments> kDuplicateClasses = {0, 1, 3, 2, 4, 5, 6};

/// The segment behind each class number.
inline constexpr std::array<std::size_t, kDuplicateSegments> kDuplicateClassSegments = {0, 1, 3, 2,
                                                                                        4, 5, 6};

/// The class, 1 to 6, that takes a group with this extension, in any case.
int duplicateClass(std::string_view extendName);

}  // namespace brisko
