#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brisko {

/// The rules for the names of volumes.
namespace VolumeName {

inline constexpr std::string_view kFat = "MS-DOS FAT32";
inline constexpr std::size_t kFatCharacters = 11;

/// The bytes of the first character; 1 for a byte that belongs to none.
std::size_t characterLength(std::string_view text);
std::size_t characterCount(std::string_view text);

/// In capitals, whatever the user's language is.
std::string upperCase(std::string_view text);

/// What a volume of the type is called when it is to be called `name`: FAT32 takes capitals only,
/// and the first 11 of them.
std::string forType(std::string_view name, std::string_view type);

/// Whether a name was given at all: neither nothing nor a single blank.
bool isGiven(std::string_view name);

}  // namespace VolumeName
}  // namespace brisko
