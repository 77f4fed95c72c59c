#pragma once

#include <string>
#include <string_view>

namespace brisko::test {

/// A folder of the running test's own. Deleted when the test passed, kept (and named) when it
/// failed.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Absolute and free of links.
  const std::string& path() const { return path_; }
  /// The path of `name` in this folder.
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  /// Makes a folder with all its parents and returns its path.
  std::string folder(std::string_view name) const;
  /// Makes a file with this content, its parents too, and returns its path.
  std::string file(std::string_view name, std::string_view content = "") const;
  /// Makes a file of `size` bytes without writing them.
  std::string sizedFile(std::string_view name, std::size_t size) const;
  /// Makes a symbolic link and returns its path.
  std::string link(std::string_view name, std::string_view target) const;

 private:
  std::string path_;
};

std::string contentOf(const std::string& path);
bool exists(const std::string& path);  ///< a link counts, dangling or not

}  // namespace brisko::test
