#pragma once

#include "MessagePanel.h"

#include <cstddef>
#include <cstdint>

namespace brisko {

/// The window that asks, before anything goes, whether what is ticked is to be removed.
class MarkSureDeleteWC : public MessagePanel {
  Q_OBJECT

 public:
  /// Titles have two "%@", count and size; answers may have them. Those of copies unless set.
  struct Texts {
    const char* oneTitle = "Remove %@ file (%@)?";
    const char* manyTitle = "Remove %@ files (%@)?";
    const char* text =
        "They are removed for good and do not go to the trash. Each one is compared with another "
        "copy first, byte by byte, and stays when there is none.";
    const char* oneAnswer = "Remove %@ File";
    const char* manyAnswer = "Remove %@ Files";
  };

  /// The object names of its buttons are "answer0" (cancel) and "answer1" (continue).
  MarkSureDeleteWC(std::size_t count, std::uint64_t bytes, QWidget* parent);
  MarkSureDeleteWC(std::size_t count, std::uint64_t bytes, QWidget* parent, const Texts& texts);

  /// Shows it modally; true when the removal is to go on.
  bool run() { return exec() == 1; }
};

/// "3 files (4.20 MB)" with the words of `one` or `many`, each having two "%@": count and size.
QString removalText(std::size_t count, std::uint64_t bytes, const char* one, const char* many);

}  // namespace brisko
