#include "Terminal.h"

#include "Commands.h"
#include "Dispatch.h"
#include "Host.h"
#include "Interruption.h"
#include "Output.h"
#include "SystemLog.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

struct CommandRow {
  std::unique_ptr<Command> command;
  CLI::App* app = nullptr;
};

/// The whole command line: what every command takes, and one part per command.
class CommandLine {
 public:
  CommandLine() {
    app_.name("brisko");
    app_.set_version_flag("--version", "brisko " BRISKO_VERSION);
    app_.set_help_flag("-h,--help", "Print this help and exit");
    app_.add_flag("--json", global_.json, "One JSON document on standard output");
    app_.add_flag("--yes", global_.yes, "Do not ask before removing");
    app_.add_flag("--dry-run", global_.dryRun, "Show what would be removed, remove nothing");
    app_.add_flag("--verbose", global_.verbose, "System-log lines on standard error too");
    app_.add_option("--root", global_.root, "Let this folder stand for \"/\"")->type_name("DIR");
    app_.require_subcommand(0, 1);
    for (auto& command : makeCommands()) {
      CLI::App* part = app_.add_subcommand(command->name(), command->summary());
      part->fallthrough();
      command->declare(*part);
      rows_.push_back({std::move(command), part});
    }
  }

  /// Nothing when the command is to be run; else the exit status.
  std::optional<int> parse(int argc, char** argv) {
    try {
      app_.parse(argc, argv);
    } catch (const CLI::Success& success) {
      return app_.exit(success);
    } catch (const CLI::ExtrasError&) {
      return wrongUsage(fmt::format("\"{}\" is not understood; see --help", firstExtra()));
    } catch (const CLI::ParseError& error) {
      return wrongUsage(error.what());
    }
    return std::nullopt;
  }

  /// The command that was given; null for none.
  Command* command() const {
    for (const CommandRow& row : rows_) {
      if (row.app->parsed()) return row.command.get();
    }
    return nullptr;
  }

  Command* command(std::string_view name) const {
    const auto row = std::find_if(rows_.begin(), rows_.end(), [&](const CommandRow& one) {
      return one.command->name() == name;
    });
    return row == rows_.end() ? nullptr : row->command.get();
  }

  const GlobalOptions& global() const { return global_; }

  static int wrongUsage(std::string_view text) {
    writeError(text);
    return kWrongUsage;
  }

 private:
  std::string firstExtra() const {
    const std::vector<std::string> extras = app_.remaining(true);
    return extras.empty() ? "" : extras.front();
  }

  CLI::App app_{
      "Finds what only takes space on this machine, shows it, and removes it.\n"
      "Without a command the window opens."};
  GlobalOptions global_;
  std::vector<CommandRow> rows_;
};

// The folder that stands for "/", absolute and free of links; empty for the running system.
std::string canonicalRoot(const GlobalOptions& global) {
  std::string given = global.root;
  if (given.empty()) {
    const char* variable = std::getenv("BRISKO_ROOT");
    if (variable == nullptr || *variable == '\0') return "";
    given = variable;
  }
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(given.c_str(), nullptr),
                                                         &std::free);
  if (!real) throw WrongUsage(fmt::format("--root {}: {}", given, std::strerror(errno)));
  struct stat status;
  if (::stat(real.get(), &status) != 0 || !S_ISDIR(status.st_mode)) {
    throw WrongUsage(fmt::format("--root {}: not a folder", given));
  }
  return std::strcmp(real.get(), "/") == 0 ? "" : real.get();
}

int runCommand(Command& command, const GlobalOptions& global) {
  Interruption::watch();
  const int status = command.execute(global);
  // Background work that an interrupt left behind must not meet the end of the process.
  if (status == kInterrupted) {
    std::fflush(nullptr);
    ::_exit(status);
  }
  return status;
}

}  // namespace

int runTerminal(int argc, char** argv, const WindowEntry& openWindow) {
  std::setlocale(LC_CTYPE, "");
  CommandLine line;
  if (const auto status = line.parse(argc, argv)) return *status;
  const GlobalOptions& global = line.global();
  try {
    Command* command = line.command();
    if (command == nullptr && openWindow && (global.json || global.yes || global.dryRun)) {
      return CommandLine::wrongUsage("--json, --yes and --dry-run need a command; see --help");
    }
    Dispatch::attachMainThread();
    Host::install(makeHost({canonicalRoot(global)}));
    SystemLog::setEchoToStandardError(global.verbose);
    if (command == nullptr && openWindow) {
      char verbose[] = "--verbose";
      char* arguments[] = {argv[0], global.verbose ? verbose : nullptr, nullptr};
      return openWindow(global.verbose ? 2 : 1, arguments);
    }
    if (command == nullptr) {
      writeError("no command and no display: this is what \"brisko junk\" says");
      command = line.command("junk");
    }
    return runCommand(*command, global);
  } catch (const WrongUsage& wrong) {
    return CommandLine::wrongUsage(wrong.what());
  }
}

}  // namespace brisko
