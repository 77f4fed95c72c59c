#include "HiddenStart.h"

#include "DesktopEntry.h"
#include "DesktopEntryText.h"

#include <string>
#include <string_view>

namespace brisko {
namespace {

/// Programs and the word, from their manuals, with which they start in the tray or minimised.
struct Option {
  std::string_view program;
  std::string_view word;
};

constexpr Option kOptions[] = {
    {"discord", "--start-minimized"},      {"element-desktop", "--hidden"},
    {"hexchat", "--minimize=1"},           {"keepassxc", "--minimized"},
    {"nextcloud", "--background"},         {"openrgb", "--startminimized"},
    {"signal-desktop", "--start-in-tray"}, {"slack", "-u"},
    {"solaar", "--window=hide"},           {"steam", "-silent"},
    {"telegram-desktop", "-startintray"},  {"transmission-gtk", "--minimized"},
};

std::string_view optionOf(const std::string& exec) {
  const std::string program = programOf(execWords(exec));
  const std::string name = program.substr(program.rfind('/') + 1);
  for (const Option& option : kOptions) {
    if (option.program == name) return option.word;
  }
  return {};
}

/// Where the option stands as a word of its own; npos when it does not.
std::size_t placeOf(std::string_view word, const std::string& exec) {
  for (std::size_t at = exec.find(word); at != std::string::npos; at = exec.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    if (at > 0 && exec[at - 1] == ' ' && (end == exec.size() || exec[end] == ' ')) return at;
  }
  return std::string::npos;
}

}  // namespace

void startHidden(DesktopEntryText& entry, bool isHidden) {
  std::string exec = entry.value("Exec").value_or("");
  const std::string_view word = optionOf(exec);
  if (word.empty()) return;
  const std::size_t place = placeOf(word, exec);
  if (isHidden == (place != std::string::npos)) return;
  if (isHidden) {
    exec += " " + std::string(word);
  } else {
    exec.erase(place - 1, word.size() + 1);
  }
  entry.set("Exec", exec);
}

}  // namespace brisko
