#pragma once

#include <functional>
#include <string>
#include <vector>

namespace brisko {

/// The system's own programs, and the ones of ours that stand in for those this host lacks.
///
/// Command texts are the same on every host. What differs is where a program comes from: our
/// private folder goes first in the search path of everything that is started here.
class HostTools {
 public:
  /// How a program ended, and what it said.
  struct Outcome {
    int status =
        -1;  ///< exit status, 128 + the signal that ended it, -1 when it could not be started
    std::string output;
    std::string errors;
  };

  /// The private folder: BRISKO_TOOLS, else the one beside the program. Empty when neither is
  /// known.
  static std::string folder();
  /// `absolutePath` where this host has a program there, else the private folder's one of that
  /// name.
  static std::string path(const std::string& absolutePath);
  /// `text` as one word of a shell command, taken literally whatever it holds.
  static std::string quoted(const std::string& text);

  /// Gives `command` to the system shell and waits for its end. Its input is empty; its output goes
  /// where the command says, else nowhere. Returns as Outcome::status does.
  static int shell(const std::string& command);

  /// Starts a program without a shell, waits and collects what it prints, at most `limit` bytes of
  /// each stream (what is above is read and dropped). `arguments` holds the program's name or path
  /// first. `cancelled`, asked ten times a second, ends the program (SIGTERM, after 2 s SIGKILL).
  static Outcome run(const std::vector<std::string>& arguments, std::size_t limit = 16u << 20,
                     const std::function<bool()>& cancelled = nullptr);
};

}  // namespace brisko
