#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace brisko::test {

/// Makes trees full of what a search for duplicates has to tell apart: files of equal size that
/// differ in one byte, empty and tiny ones, bundles and copies of bundles, links, FIFOs, names in
/// odd bytes. The same seed gives the same tree.
class RandomTree {
 public:
  explicit RandomTree(std::uint32_t seed) : random_(seed) {}

  /// Some files and folders get no permissions at all.
  bool locksSome = false;

  void make(const std::string& root);

 private:
  std::uint32_t below(std::uint32_t end) { return static_cast<std::uint32_t>(random_() % end); }
  std::string name();
  std::string content();
  void fill(const std::string& folder, int depth);
  void addFile(const std::string& path);
  void addBundle(const std::string& path, std::uint32_t kind);
  void addTopLevelLinks(const std::string& root);

  std::mt19937 random_;
  int count_ = 0;
};

}  // namespace brisko::test
