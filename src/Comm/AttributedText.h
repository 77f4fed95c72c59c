#pragma once

#include <string>
#include <vector>

namespace brisko {

/// A text in which one part stands out: what the size line and the end screens show.
struct AttributedText {
  struct Run {
    std::string text;
    std::string colour;  ///< "#rrggbb"
    int points = 14;
    bool centred = false;
    friend bool operator==(const Run&, const Run&) = default;
  };
  std::vector<Run> runs;  ///< one after the other; font "Helvetica Light" throughout

  std::string plain() const;
};

}  // namespace brisko
