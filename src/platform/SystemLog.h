#pragma once

#include <fmt/format.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace brisko {

/// The system log: one line for each failure or notice, as syslog's "brisko".
///
/// A line is a single line whatever went into it: control characters and line breaks of a path or a
/// name are escaped before it is written. Usable from every thread.
class SystemLog {
 public:
  using Sink = std::function<void(std::string_view line)>;

  template <typename... Args>
  static void line(fmt::format_string<Args...> format, Args&&... args) {
    write(fmt::format(format, std::forward<Args>(args)...));
  }

  /// Writes one finished line.
  static void write(std::string_view text);

  /// Also writes every line to standard error ("--verbose").
  static void setEchoToStandardError(bool echo);

  /// Gives every line to `sink` as well, one at a time, until another sink or an empty one takes
  /// its place; none is in the old one when this returns. A sink must not log itself. Tests read
  /// the log through it. Returns the sink that was there.
  static Sink setSink(Sink sink);
};

/// `text` with control characters, DEL and bytes that are not UTF-8 written as \n, \t or \xNN, so
/// that it can be shown on one line of a terminal, a log or a label. A backslash stays as it is.
std::string escapedForDisplay(std::string_view text);

}  // namespace brisko
