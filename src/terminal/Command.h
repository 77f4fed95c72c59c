#pragma once

#include <stdexcept>
#include <string>

namespace CLI {
class App;
}

namespace brisko {

enum ExitStatus : int {
  kDone = 0,
  kNotDone = 1,  ///< something asked for could not be done
  kWrongUsage = 2,
  kInterrupted = 130,
};

/// What every command takes.
struct GlobalOptions {
  bool json = false;     ///< one document on standard output and nothing else there
  bool yes = false;      ///< do not ask before removing
  bool dryRun = false;   ///< show what would be removed, remove nothing
  bool verbose = false;  ///< system-log lines on standard error too
  std::string root;      ///< as given; "" for none
};

/// Thrown by a command before it has touched anything: its text is the one line that is shown.
class WrongUsage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One command of the command line. A new one is a file pair with a class derived from this, and
/// one row in Commands.cpp; the help is made from what the class says of itself.
class Command {
 public:
  virtual ~Command() = default;

  virtual const char* name() const = 0;
  virtual const char* summary() const = 0;  ///< one sentence for the help

  /// Adds the command's own options and arguments to its part of the command line.
  virtual void declare(CLI::App& app) = 0;

  /// Does it, on the main thread, and returns the exit status.
  virtual int execute(const GlobalOptions& global) = 0;
};

}  // namespace brisko
