#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace brisko {

/// How standard output looks: plain in files and pipes, with colour on a terminal unless NO_COLOR
/// or a dumb terminal says otherwise.
class Style {
 public:
  explicit Style(bool colour) : colour_(colour) {}
  static Style ofStandardOutput();

  std::string bold(std::string_view text) const { return wrapped("1", text); }
  std::string dim(std::string_view text) const { return wrapped("2", text); }
  std::string accent(std::string_view text) const { return wrapped("36", text); }
  std::string warning(std::string_view text) const { return wrapped("33", text); }

 private:
  std::string wrapped(const char* code, std::string_view text) const;
  bool colour_;
};

/// `text` with blanks before or after it to `columns` terminal columns; longer text stays whole.
std::string rightAligned(std::string_view text, std::size_t columns);
std::string leftAligned(std::string_view text, std::size_t columns);

/// "1 item", "2 items".
std::string counted(std::size_t count, std::string_view singular);

/// Writes to standard output. False, and one line on standard error, when it cannot be written.
bool writeOut(std::string_view text);
/// Writes "brisko: TEXT", as one line whatever it holds, to standard error.
void writeError(std::string_view text);

/// Whether what stands on standard output can be written over: it is a terminal, and no dumb one.
bool canRedraw();

/// One line on standard error that is written over itself; nothing when that is no terminal.
class ProgressLine {
 public:
  ProgressLine();
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  bool isDue() const;  ///< at most ten times a second
  /// Shows `what` and as much of the end of `path` as fits.
  void show(std::string_view what, std::string_view path);
  void clear();

 private:
  bool isTerminal_;
  bool isShown_ = false;
  std::chrono::steady_clock::time_point lastShown_;
};

/// Asks on standard error and reads standard input. True only for "y" or "yes".
bool confirm(const std::string& question);
/// Asks on standard error and returns the line that was typed, without its end.
std::string ask(const std::string& question);
/// Whether a question can be asked: both ends are a terminal.
bool canConfirm();

}  // namespace brisko
