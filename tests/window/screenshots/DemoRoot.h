#pragma once

#include <string>

#include "TemporaryFolder.h"

namespace brisko::test {

/// A made system with junk in every category, always of the same sizes; its own home and user.
class DemoRoot {
 public:
  DemoRoot();

  /// Puts everything (back) in its place.
  void fill();
  /// Takes everything away but the folders of the root.
  void clear();
  /// Makes an entry another one than was scanned.
  void changeOneFile();

  const std::string& path() const { return folder_.path(); }

 private:
  TemporaryFolder folder_;
};

}  // namespace brisko::test
