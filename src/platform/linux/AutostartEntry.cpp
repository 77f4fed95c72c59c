#include "AutostartEntry.h"

#include "DesktopEntry.h"
#include "HiddenStart.h"
#include "RegularFile.h"
#include "Utf8.h"

#include <algorithm>
#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko::AutostartEntry {
namespace {

constexpr const char* kDeletedKey =
    "Hidden";  // what the standard calls an entry that counts as gone
constexpr const char* kEnabledKey = "X-GNOME-Autostart-enabled";
constexpr std::size_t kLargestEntry = 1U << 20;

bool isProgram(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::access(path.c_str(), X_OK) == 0;
}

/// Lines for a file, folder or program that has no entry of its own.
DesktopEntryText ownEntry(const std::string& path) {
  DesktopEntryText entry("[Desktop Entry]\nType=Application\n");
  entry.set("Name", path == "/" ? path : validUtf8(path.substr(path.rfind('/') + 1)));
  entry.set("Exec", (isProgram(path) ? "" : "xdg-open ") + execWord(path));
  return entry;
}

/// Whether the desktop file at `path` starts a program, and so can be an autostart entry itself.
std::optional<std::string> applicationText(const std::string& path) {
  int error = 0;
  if (!path.ends_with(kSuffix)) return std::nullopt;
  std::optional<std::string> text = textOf(path, error);
  if (!text) return std::nullopt;
  const std::optional<DesktopEntry> entry = parseDesktopEntry(*text, "");
  if (!entry || execWords(entry->exec).empty()) return std::nullopt;
  return text;
}

}  // namespace

std::optional<std::string> textOf(const std::string& file, int& error) {
  return readFile(file, kLargestEntry, error);
}

DesktopEntryText at(const std::string& file) {
  int error = 0;
  return DesktopEntryText(textOf(file, error).value_or(""));
}

bool isSwitchedOff(const DesktopEntryText& entry) {
  return entry.isTrue(kDeletedKey) || entry.value(kEnabledKey) == "false";
}

void switchOff(DesktopEntryText& entry) {
  entry.set(kDeletedKey, "true");
}

void switchOn(DesktopEntryText& entry) {
  entry.remove(kDeletedKey);
  if (entry.value(kEnabledKey)) entry.set(kEnabledKey, "true");
}

DesktopEntryText opening(const std::string& path, bool isHidden) {
  const std::optional<std::string> own = applicationText(path);
  DesktopEntryText entry = own ? DesktopEntryText(*own) : ownEntry(path);
  switchOn(entry);
  entry.set(kPathKey, path);
  entry.set(kHiddenKey, isHidden ? "true" : "false");
  if (isHidden) startHidden(entry, true);
  return entry;
}

std::string validUtf8(std::string_view bytes) {
  std::string text;
  for (std::string_view rest = bytes; !rest.empty();) {
    const std::size_t length = utf8SequenceLength(rest);
    text += length == 0 ? "\xEF\xBF\xBD" : std::string(rest.substr(0, length));
    rest.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text;
}

bool isProgramThere(const std::string& program) {
  if (program.find('/') != std::string::npos) return ::access(program.c_str(), X_OK) == 0;
  const char* path = std::getenv("PATH");
  std::string_view rest = path != nullptr ? path : "";
  while (!rest.empty()) {
    const std::size_t end = rest.find(':');
    const std::string candidate = std::string(rest.substr(0, end)) + "/" + program;
    if (::access(candidate.c_str(), X_OK) == 0) return true;
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return false;
}

}  // namespace brisko::AutostartEntry
