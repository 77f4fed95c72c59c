#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brisko::test {

/// A made system with junk in every category, always of the same sizes, with a home and user of its
/// own. It always lies at the same place, because paths are in the pictures; made anew, and gone
/// with the object.
class DemoRoot {
 public:
  DemoRoot();
  ~DemoRoot();
  DemoRoot(const DemoRoot&) = delete;
  DemoRoot& operator=(const DemoRoot&) = delete;

  /// Puts everything (back) in its place.
  void fill();
  /// Takes everything away but the folders of the root.
  void clear();
  /// Makes an entry another one than was scanned.
  void changeOneFile();

  /// Makes one more file, of `size` bytes.
  void makeFile(std::string_view name, std::size_t size) const;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace brisko::test
