#pragma once

#include "EraserRun.h"
#include "FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace brisko::srm {

/// Erases what is at one path: a file, what is no file (which is only unlinked), or a folder with
/// all that it holds, contents first.
///
/// Works as the removal does: relative to descriptors that it opened itself, through no link and
/// over no mount, at any depth with few descriptors open. Refused are the protected places.
class EraseWalk {
 public:
  EraseWalk(EraserRun& run, std::string path) : run_(run), path_(std::move(path)) {}

  /// Tells the run about each item that stays.
  void erase();

 private:
  struct Level {
    std::string name;
    FileDescriptor folder;  // closed while it lies too deep below the top of the stack
    std::uint64_t inode = 0;
    std::vector<std::string> waiting;  // folders found in it
    bool isRead = false;
    int readings = 0;  // to the end, and still something was in it
    bool keepsSomething = false;
  };

  void eraseFolder(int parent, const std::string& name);
  bool push(int parent, const std::string& name);
  void work();
  void readSome();
  void eraseEntry(int folder, const std::string& name, const std::string& path);
  void leave();
  static bool readAgain(Level& level);
  bool reopenParent();
  void keep(const std::string& path, const std::string& reason);
  std::string pathOf(const std::string& name) const;

  EraserRun& run_;
  std::string path_;
  int parent_ = -1;
  std::uint32_t deviceMajor_ = 0;
  std::uint32_t deviceMinor_ = 0;
  std::vector<Level> stack_;
  std::size_t firstOpen_ = 0;
  std::vector<char> buffer_;
};

}  // namespace brisko::srm
