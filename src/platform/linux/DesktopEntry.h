#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// A desktop entry of the type "Application": what makes a program appear in the desktop's menus.
/// Texts are valid UTF-8 without control characters.
struct DesktopEntry {
  std::string id;                     ///< without ".desktop"; folders in it joined by "-"
  std::string path;                   ///< the file
  std::vector<std::string> shadowed;  ///< files with the same id in folders that come later

  std::string name;  ///< in the wanted language, else the one without; never empty
  std::string icon;  ///< a name of the icon theme or an absolute path
  std::string exec;  ///< as written, for execWords()
  std::string tryExec;
  std::string windowClass;  ///< StartupWMClass
  std::string flatpak;      ///< X-Flatpak: the id of the Flatpak that exported it
  std::string snap;         ///< X-SnapInstanceName: the snap that it belongs to
  std::string version;      ///< X-AppImage-Version
  bool noDisplay = false;
  bool hidden = false;  ///< as good as deleted
  std::vector<std::string> onlyShowIn;
  std::vector<std::string> notShowIn;
};

/// The entry in `text`, in the language of `locale` ("de_AT.UTF-8@euro"). Nothing for what is no
/// application, has no name, or holds a NUL byte. Sets neither id nor path.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale);

/// The words of an Exec line, quotes and field codes ("%U") resolved. Empty for a broken one.
std::vector<std::string> execWords(std::string_view exec);

/// The program that the words start, without "env" and its settings, or the script that they give
/// an interpreter; as written, so a bare name is to be looked up in the search path. Empty when
/// that cannot be told.
std::string programOf(const std::vector<std::string>& words);

/// Whether a program of this name (no folder) runs others and so identifies none of them.
bool isInterpreter(std::string_view name);

/// Whether the menus of a desktop show it. `desktops` is XDG_CURRENT_DESKTOP ("ubuntu:GNOME"); in
/// an unknown one (empty) everything that is displayed at all is shown.
bool isShownIn(const DesktopEntry& entry, std::string_view desktops);

}  // namespace brisko
