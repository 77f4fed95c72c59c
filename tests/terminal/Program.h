#pragma once

#include <nlohmann/json.hpp>

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace brisko::test {

/// What the program printed, and how it ended.
struct Outcome {
  int status = -1;  ///< exit status, or 256 + the signal that ended it
  std::string output;
  std::string errors;

  nlohmann::json json() const { return nlohmann::json::parse(output); }
  /// Lines on standard error.
  std::size_t errorLines() const;
};

/// The real program, run from outside without a display and without a terminal, for the user "anna"
/// with nothing else in the environment.
class Program {
 public:
  Program& variable(const std::string& name, const std::string& value);
  Program& input(std::string text);
  /// As another user of the machine.
  Program& user(uid_t uid);
  /// On a terminal of 80 columns; `input` is then typed, and output and errors come as one.
  Program& terminal();
  /// Called once with the process when it has printed something to standard error.
  Program& whenItSpeaks(std::function<void(pid_t)> act);

  Outcome run(const std::vector<std::string>& arguments) const;

 private:
  std::vector<std::string> environment_ = {"USER=anna", "HOME=/nonexistent", "PATH=/usr/bin:/bin",
                                           "LC_ALL=C.UTF-8", "TERM=xterm"};
  std::string input_;
  uid_t user_ = static_cast<uid_t>(-1);
  bool terminal_ = false;
  std::function<void(pid_t)> act_;
};

}  // namespace brisko::test
