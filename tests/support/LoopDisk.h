#pragma once

#include <cstdint>
#include <string>

namespace brisko::test {

/// A made disk: an empty image in a loop device of the test's own, detached with the object (what is
/// mounted of it in another name space goes with that).
class LoopDisk {
 public:
  /// Why this machine has none; empty when it has.
  static std::string missing();

  /// `image` is made, `megabytes` large, without its bytes being written.
  LoopDisk(const std::string& image, std::uint64_t megabytes, bool readOnly = false);
  ~LoopDisk();
  LoopDisk(const LoopDisk&) = delete;
  LoopDisk& operator=(const LoopDisk&) = delete;

  /// Writes a partition table, as sfdisk reads it, and makes the kernel see its partitions, which
  /// one without partition support does not do by itself. False when that cannot be had.
  bool partition(const std::string& table) const;

  bool isAttached() const;
  std::string node(int partition = 0) const;  ///< "/dev/loop3", "/dev/loop3p1"
  std::string identifier(int partition = 0) const;

 private:
  std::string image_;
  int number_ = -1;
};

/// Runs a program of the system to its end; its output goes nowhere. True when it succeeded.
bool runs(const std::string& command);

}  // namespace brisko::test
