#pragma once

#include "TemporaryFolder.h"
#include "TestHost.h"

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace brisko::test {

/// Programs in place of the private tools, which write down how they were called: each call a line
/// of the name and the arguments, with one blank for each run of blanks, tabs and line breaks.
class RecordedTools {
 public:
  RecordedTools() : tools_("BRISKO_TOOLS", folder_.path().c_str()) {
    for (const char* name : {"defaults", "osascript", "open", "nshift", "killall", "dbus-send"})
      script(name, "");
  }

  const std::string& folder() const { return folder_.path(); }

  /// What the tool does besides.
  void script(const std::string& name, const std::string& body) {
    const std::string path = folder_ / name;
    std::ofstream(path) << "#!/bin/sh\nprintf '%s\\n' \"$(echo " << name
                        << " \"$*\" | tr -s '\\t\\n ' '   ')\" >> '" << folder_.path()
                        << "/calls'\n"
                        << body << "\n";
    ::chmod(path.c_str(), 0755);
  }
  /// `defaults` answers a reading by what is set here.
  void answer(const std::string& key, const std::string& text) {
    cases_ += "*read*" + key + ") echo '" + text + "';;\n";
    script("defaults", "case \"$*\" in\n" + cases_ + "esac");
  }
  /// The tool refuses everything.
  void refuse(const std::string& name, const std::string& reason) {
    script(name, "echo '" + name + ": " + reason + "' >&2; exit 1");
  }

  /// The calls since the last question.
  std::vector<std::string> calls() {
    std::ifstream file(folder_ / "calls");
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
      while (line.ends_with(' '))
        line.pop_back();
      lines.push_back(line);
    }
    std::ofstream(folder_ / "calls", std::ios::trunc);
    return lines;
  }

 private:
  TemporaryFolder folder_;
  Environment tools_;
  std::string cases_;
};

}  // namespace brisko::test
