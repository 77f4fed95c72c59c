#pragma once

#include "FileNode.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace brisko {

/// Memory for the entries that one worker makes: blocks that only ever grow and go all at once.
/// Nothing in it moves.
class NodeArena {
 public:
  /// `count` fresh entries in a row.
  std::span<FileNode> nodes(std::size_t count);

  /// A copy of `name`, ended by a zero byte.
  const char* name(std::string_view name);

  FolderContent* folder() { return &folders_.emplace_back(); }

  /// Bytes held, names and the lists of folders included.
  std::size_t footprint() const;

  /// Calls `visit(node)` for each entry, in the order they were made.
  template <typename Visit>
  void forEach(Visit visit) {
    for (Block& block : blocks_) {
      for (std::size_t i = 0; i < block.used; ++i)
        visit(block.nodes[i]);
    }
  }

 private:
  struct Block {
    std::unique_ptr<FileNode[]> nodes;
    std::size_t size = 0;
    std::size_t used = 0;
  };

  std::vector<Block> blocks_;
  std::vector<std::unique_ptr<char[]>> names_;
  std::size_t namesLeft_ = 0;
  char* nextName_ = nullptr;
  std::size_t nameBytes_ = 0;
  std::deque<FolderContent> folders_;
};

}  // namespace brisko
