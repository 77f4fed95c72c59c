#pragma once

#include "DesktopEntryText.h"

#include <optional>
#include <string>
#include <string_view>

namespace brisko {

/// One autostart entry: a desktop entry, with keys of our own. "X-Brisko-Path" is what an entry
/// made here opens, "X-Brisko-Hidden" its flag, and "X-Brisko-Override" marks a file that exists
/// only to switch a shared entry.
namespace AutostartEntry {

inline constexpr const char* kPathKey = "X-Brisko-Path";
inline constexpr const char* kHiddenKey = "X-Brisko-Hidden";
inline constexpr const char* kOverrideKey = "X-Brisko-Override";
inline constexpr const char* kSuffix = ".desktop";

/// The text of the file, which may have up to 1 MiB. Nothing, with errno's value in `error`, when
/// it cannot be read.
std::optional<std::string> textOf(const std::string& file, int& error);

/// What can be read of the file; an entry without anything where that is nothing.
DesktopEntryText at(const std::string& file);

/// Whether the user, or a program for them, keeps it from starting.
bool isSwitchedOff(const DesktopEntryText& entry);
void switchOff(DesktopEntryText& entry);
void switchOn(DesktopEntryText& entry);

/// An entry that opens what lies at `path`: a copy of it where it is an application's own entry,
/// else one that starts the program or has the desktop open the file.
DesktopEntryText opening(const std::string& path, bool isHidden);

/// `bytes` with U+FFFD for each byte that belongs to no character.
std::string validUtf8(std::string_view bytes);

/// Whether the name itself, or the search path, leads to a program.
bool isProgramThere(const std::string& program);

}  // namespace AutostartEntry
}  // namespace brisko
