#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace brisko {

/// What "ps" tells of a process, as it prints it.
struct ProcessFigures {
  std::string pcpu;
  std::string vsz;
  std::string etime;
};

/// Figures by process number, as text.
using ProcessList = std::map<std::string, ProcessFigures, std::less<>>;

/// Runs "ps" once. Nothing when it could not be run to its end. Blocks.
std::optional<ProcessList> readProcessList();

/// The figures in what "ps" printed: its header and one line a process, of which the first 4096
/// bytes are read. Logs the whole line of process 43951.
ProcessList processListOf(std::string_view text);

}  // namespace brisko
