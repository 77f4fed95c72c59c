#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brisko {

/// Some lines on standard output that are shown again and again: on a terminal over themselves, in
/// a file or pipe one block after the other with an empty line between.
class LiveBlock {
 public:
  LiveBlock();
  /// The cursor stays on an empty line below the last block.
  ~LiveBlock();
  LiveBlock(const LiveBlock&) = delete;
  LiveBlock& operator=(const LiveBlock&) = delete;

  /// Shows `text`, lines ended by line breaks. On a terminal, what is wider or higher than it is
  /// cut off. False, and one line on standard error, when it cannot be written.
  bool show(std::string_view text);

  /// The width there is now.
  std::size_t columns() const { return outputColumns(); }
  /// Columns of the terminal on standard output; 80 where that is none.
  static std::size_t outputColumns();

  /// `line` cut to `columns` characters; colours take no room and are switched off at the end.
  static std::string cut(std::string_view line, std::size_t columns);

 private:
  bool isInPlace_;
  bool isShown_ = false;
  std::size_t lines_ = 0;  ///< of the block on the screen
};

}  // namespace brisko
