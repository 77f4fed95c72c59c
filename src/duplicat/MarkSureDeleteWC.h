#pragma once

#include "MessagePanel.h"

#include <cstddef>
#include <cstdint>

namespace brisko {

/// The window that asks, before anything goes, whether the ticked copies are to be removed.
class MarkSureDeleteWC : public MessagePanel {
  Q_OBJECT

 public:
  /// The object names of its buttons are "answer0" (cancel) and "answer1" (continue).
  MarkSureDeleteWC(std::size_t count, std::uint64_t bytes, QWidget* parent);

  /// Shows it modally; true when the removal is to go on.
  bool run() { return exec() == 1; }
};

/// "3 files (4.20 MB)" with the words of `one` or `many`, each having two "%@": count and size.
QString removalText(std::size_t count, std::uint64_t bytes, const char* one, const char* many);

}  // namespace brisko
