#include "DiskCommandText.h"

#include "HostTools.h"
#include "SystemLog.h"
#include "VolumeName.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace brisko::DiskCommandText {
namespace {

// What stands between the quotation marks of a command.
std::string between(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    if (character == '\\' || character == '"' || character == '$' || character == '`') {
      escaped += '\\';
    }
    escaped += character;
  }
  return escaped;
}

bool isPlain(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 ||
         std::string_view("-_./:,+=@%").find(character) != std::string_view::npos;
}

// A word that a command gives without quotation marks.
std::string bare(std::string_view text) {
  if (!text.empty() && std::all_of(text.begin(), text.end(), isPlain)) return std::string(text);
  return HostTools::quoted(std::string(text));
}

template <typename Command>
std::size_t fittingCharacters(std::string_view name, std::size_t room, const Command& command) {
  std::size_t count = 0;
  std::size_t length = 0;
  while (length < name.size()) {
    length += VolumeName::characterLength(name.substr(length));
    if (!fits(command(name.substr(0, length)), room)) break;
    ++count;
  }
  return count;
}

}  // namespace

std::string list() {
  return "diskutil list -plist";
}

std::string info(std::string_view device) {
  return "diskutil info -plist \"" + between(device) + "\"";
}

std::string infoUnquoted(std::string_view device) {
  return "diskutil info -plist " + bare(device);
}

std::string apfsList(std::string_view output) {
  return "diskutil apfs list -plist > " + bare(output);
}

std::string rename(std::string_view uuid, std::string_view name) {
  return "diskutil rename " + bare(uuid) + " \"" + between(name) + "\"";
}

std::string eject(std::string_view identifier) {
  return "diskutil eject " + bare("/dev/" + std::string(identifier));
}

std::string eraseVolume(std::string_view type, std::string_view name, std::string_view device,
                        Name style) {
  const std::string word = style == Name::bare ? bare(name) : "\"" + between(name) + "\"";
  return "diskutil eraseVolume \"" + between(type) + "\" " + word + " \"" + between(device) + "\"";
}

std::string run(std::string_view command, std::string_view output) {
  return std::string(command) + " > " + bare(output);
}

bool fits(std::string_view command, std::size_t room) {
  return command.size() < room;
}

std::size_t fittingForRename(std::string_view uuid, std::string_view name) {
  return fittingCharacters(name, kRenameRoom,
                           [&](std::string_view part) { return rename(uuid, part); });
}

std::size_t fittingForErase(std::string_view type, std::string_view name, std::string_view device) {
  return fittingCharacters(name, kEraseRoom,
                           [&](std::string_view part) { return eraseVolume(type, part, device); });
}

void tooLong(std::string_view command, std::size_t room) {
  SystemLog::line("A command of {} bytes does not fit into {}: {}", command.size(), room, command);
  std::abort();
}

}  // namespace brisko::DiskCommandText
