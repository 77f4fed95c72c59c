#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brisko {

/// The command lines of the disk tool. Each has a fixed room, its end mark included; one that does
/// not fit is never cut and never run.
///
/// Texts of plain characters stand in the commands as they are. What a shell would take for its own
/// is escaped, so that a volume named "$(reboot)" is called just that.
namespace DiskCommandText {

inline constexpr std::size_t kListRoom = 64;
inline constexpr std::size_t kInfoRoom = 128;
inline constexpr std::size_t kRenameRoom = 128;
inline constexpr std::size_t kEraseRoom = 128;
inline constexpr std::size_t kEjectRoom = 64;
inline constexpr std::size_t kRunRoom = 2048;

std::string list();                                 ///< "diskutil list -plist"
std::string info(std::string_view device);          ///< "diskutil info -plist \"DEVICE\""
std::string infoUnquoted(std::string_view device);  ///< the same without the quotation marks
std::string apfsList(std::string_view output);      ///< "diskutil apfs list -plist > OUTPUT"
std::string rename(std::string_view uuid, std::string_view name);
std::string eject(std::string_view identifier);  ///< "diskutil eject /dev/IDENTIFIER"
/// A name that is ours and not the user's stands bare in it.
enum class Name { quoted, bare };
std::string eraseVolume(std::string_view type, std::string_view name, std::string_view device,
                        Name style = Name::quoted);
std::string run(std::string_view command, std::string_view output);  ///< "COMMAND > OUTPUT"

bool fits(std::string_view command, std::size_t room);

/// How many characters of `name` fit into a rename of `uuid`, and into an erase.
std::size_t fittingForRename(std::string_view uuid, std::string_view name);
std::size_t fittingForErase(std::string_view type, std::string_view name, std::string_view device);

/// Logs the length of the command and its room, and ends the process. For callers that had to look
/// whether it fits and did not.
[[noreturn]] void tooLong(std::string_view command, std::size_t room);

}  // namespace DiskCommandText
}  // namespace brisko
