// What a desktop entry starts.

#include "DesktopEntry.h"
#include "PathNames.h"

#include <algorithm>
#include <array>

namespace brisko {
namespace {

using Strings = std::vector<std::string>;

// In quotes a backslash takes the next character's meaning away, outside it has none of its own.
// False when the quotes are never closed.
bool takeQuoted(std::string_view& rest, std::string& word) {
  while (!rest.empty()) {
    char c = rest.front();
    rest.remove_prefix(1);
    if (c == '"') return true;
    if (c == '\\') {
      if (rest.empty()) return false;
      c = rest.front();
      rest.remove_prefix(1);
    }
    word += c;
  }
  return false;
}

bool isSetting(const std::string& word) {
  const std::size_t equals = word.find('=');
  return equals != std::string::npos && equals > 0 && word.find('/') > equals;
}

}  // namespace

std::vector<std::string> execWords(std::string_view exec) {
  Strings words;
  std::string word;
  bool isWord = false;
  const auto finish = [&] {
    if (isWord) words.push_back(std::move(word));
    word.clear();
    isWord = false;
  };
  while (!exec.empty()) {
    const char c = exec.front();
    exec.remove_prefix(1);
    if (c == ' ' || c == '\t' || c == '\n') {
      finish();
    } else if (c == '"') {
      isWord = true;
      if (!takeQuoted(exec, word)) return {};
    } else if (c == '%' && !exec.empty()) {
      // What stands for files and addresses is no part of the command itself.
      if (exec.front() == '%') {
        word += '%';
        isWord = true;
      }
      exec.remove_prefix(1);
    } else {
      word += c;
      isWord = true;
    }
  }
  finish();
  return words;
}

bool isInterpreter(std::string_view name) {
  constexpr std::array<std::string_view, 24> kNames = {
      "bash",    "cmd",  "dash", "electron", "env",   "flatpak", "gjs",    "gksu",
      "java",    "ksh",  "lua",  "mono",     "node",  "perl",    "php",    "pkexec",
      "pythonw", "ruby", "sh",   "snap",     "steam", "sudo",    "wine64", "zsh"};
  if (std::find(kNames.begin(), kNames.end(), name) != kNames.end()) return true;
  // These carry a version: "python3.11".
  for (const std::string_view family : {"python", "wine", "qml"}) {
    if (!name.starts_with(family)) continue;
    const std::string_view rest = name.substr(family.size());
    if (rest.find_first_not_of("0123456789.") == std::string_view::npos) return true;
  }
  return false;
}

std::string programOf(const std::vector<std::string>& words) {
  std::size_t at = 0;
  if (at < words.size() && lastName(words[at]) == "env") {
    ++at;
    while (at < words.size() && (words[at].starts_with("-") || isSetting(words[at]))) {
      // "-u NAME" and "-C FOLDER" take the word after them.
      at += words[at] == "-u" || words[at] == "-C" ? 2 : 1;
    }
  }
  if (at >= words.size()) return "";
  if (!isInterpreter(lastName(words[at]))) return words[at];
  const auto script = std::find_if(words.begin() + static_cast<std::ptrdiff_t>(at) + 1, words.end(),
                                   [](const std::string& word) { return word.starts_with('/'); });
  return script == words.end() ? words[at] : *script;
}

}  // namespace brisko
