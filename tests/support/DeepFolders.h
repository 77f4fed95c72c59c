#pragma once

#include <functional>
#include <string>

namespace brisko::test {

/// A chain of folders named "d" in a folder, deeper than paths can say. Taken away again, with the
/// files of each level, when it goes.
class DeepFolders {
 public:
  /// `fill` is called with a descriptor of each of the `depth` folders.
  DeepFolders(const std::string& folder, int depth,
              const std::function<void(int descriptor)>& fill);
  ~DeepFolders();
  DeepFolders(const DeepFolders&) = delete;
  DeepFolders& operator=(const DeepFolders&) = delete;

 private:
  std::string folder_;
};

}  // namespace brisko::test
