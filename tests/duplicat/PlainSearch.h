#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <vector>

namespace brisko::test {

/// The search for duplicates as its procedure is worded, step after step on one thread and with no
/// regard to speed: what the fast one is held against.
class PlainSearch {
 public:
  struct File {
    std::string path;
    std::uint64_t size = 0;
    std::uint64_t md5 = 0;
    std::uint64_t md5_1k = 0;

    friend bool operator==(const File&, const File&) = default;
  };

  bool searchesHidden = true;
  std::uint64_t limit = 0;

  bool run(const std::string& root);

  std::vector<File> candidates;
  std::vector<std::string> bundles;
  std::vector<File> copies;
  std::vector<std::vector<std::string>> bundleGroups;

  /// The digest, by the plain table.
  static std::uint64_t crc(const void* bytes, std::size_t length,
                           std::uint64_t start = 0xFFFFFFFFFFFFFFFF);

 private:
  struct Reader {
    std::vector<unsigned char> buffer = std::vector<unsigned char>(4096);
    void firstKilobyte(File& file, bool readsLinks);
    static bool whole(File& file, bool readsLinks);
  };
  struct Bundle {
    std::string path;
    std::vector<File> files;
    std::uint64_t size = 0;
  };

  void select(const std::vector<std::string>& paths);
  bool divertToBundle(const std::string& path, std::uint64_t ownSize);
  void compareBundles();
  static bool same(Bundle a, Bundle b);
  void group();
};

}  // namespace brisko::test
