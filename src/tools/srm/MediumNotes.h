#pragma once

#include "FileExtents.h"

#include <cstdint>
#include <set>
#include <string>

namespace brisko::srm {

/// Tells, once for each reason and file system, why overwriting in place may not reach what the
/// medium holds. One line each on standard error: "srm: note: …".
class MediumNotes {
 public:
  /// Looks at the file system of an open file, and at the device below `path`.
  void look(int file, const std::string& path);

  /// What only the file itself shows: blocks that others have too, and compressed ones.
  void look(const FileExtents& extents);

 private:
  void lookAtFileSystem(std::uint64_t mount);
  void say(const std::string& note);

  std::set<std::uint64_t> mounts_;
  std::set<std::string> said_;
};

}  // namespace brisko::srm
