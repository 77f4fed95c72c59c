// Runs the two scripts that change the appearance and the dock, as the system tool of this name
// does:
//
//     osascript FILE
//     osascript -e LINE [-e LINE]…
//
// Any other script is refused in one line.

#include "DesktopSettings.h"
#include "LinuxPreferences.h"
#include "RegularFile.h"
#include "StoredKeys.h"
#include "Trimmed.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstring>
#include <optional>
#include <sstream>
#include <string>

namespace {

using namespace brisko;

int refuse(const std::string& text) {
  std::fprintf(stderr, "osascript: %s\n", text.c_str());
  return 1;
}

/// A script whose one changing word says on or off.
struct Statement {
  const char* before;
  const char* after;
  const char* domain;  ///< the preference that is set
  const char* key;
};

constexpr Statement kStatements[] = {
    {"tell application \"System Events\"\ntell appearance preferences\nset dark mode to ",
     "\nend tell\nend tell\n", Preferences::kGlobalDomain, "AppleInterfaceStyle"},
    {"tell application \"System Events\"\nset autohide of dock preferences to ", "\nend tell\n",
     "com.apple.dock", "autohide"},
};

// Without indentation and empty lines.
std::string plainLines(const std::string& script) {
  std::string lines;
  std::istringstream stream(script);
  for (std::string line; std::getline(stream, line);)
    if (const auto text = trimmed(line); !text.empty()) lines.append(text) += '\n';
  return lines;
}

std::optional<bool> stateIn(const std::string& lines, const Statement& statement) {
  for (const auto& [word, isOn] :
       {std::pair{"true", true}, {"yes", true}, {"false", false}, {"no", false}})
    if (lines == std::string(statement.before) + word + statement.after) return isOn;
  return std::nullopt;
}

int execute(const Statement& statement, bool isOn) {
  const StoredKey& key = *storedKey(statement.domain, statement.key);
  std::string reason;
  if (!DesktopSettings::write(key.setting, isOn, reason)) return refuse(reason);
  LinuxPreferences preferences(userPreferencesFolder());
  preferences.setValue(statement.domain, statement.key, key.valueFor(isOn));
  return preferences.synchronize() ? 0 : refuse("the preferences cannot be written");
}

}  // namespace

int main(int argc, char** argv) {
  std::string script;
  if (argc == 2 && argv[1][0] != '-') {
    int error = 0;
    const auto content = readFile(argv[1], 1 << 20, error);
    if (!content) return refuse(fmt::format("{}: {}", argv[1], std::strerror(error)));
    script = *content;
  } else {
    for (int i = 1; i < argc; i += 2) {
      if (std::strcmp(argv[i], "-e") != 0 || i + 1 == argc)
        return refuse("usage: osascript FILE | osascript -e LINE [-e LINE]…");
      script += argv[i + 1] + std::string("\n");
    }
  }
  const std::string lines = plainLines(script);
  for (const Statement& statement : kStatements)
    if (const auto isOn = stateIn(lines, statement)) return execute(statement, *isOn);
  return refuse("only dark mode and hiding the dock can be scripted on this system");
}
