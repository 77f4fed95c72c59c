#include "NodeArena.h"

#include <algorithm>
#include <cstring>

namespace brisko {
namespace {

// The first block is small, so that a small folder costs little.
constexpr std::size_t kFirstNodes = 256;
constexpr std::size_t kMostNodes = 8192;
constexpr std::size_t kNameBlock = 64 * 1024;

}  // namespace

std::span<FileNode> NodeArena::nodes(std::size_t count) {
  if (blocks_.empty() || blocks_.back().size - blocks_.back().used < count) {
    const std::size_t last = blocks_.empty() ? kFirstNodes / 2 : blocks_.back().size;
    const std::size_t size = std::max(count, std::min(last * 2, kMostNodes));
    blocks_.push_back({std::make_unique<FileNode[]>(size), size, 0});
  }
  Block& block = blocks_.back();
  const std::span<FileNode> made(block.nodes.get() + block.used, count);
  block.used += count;
  return made;
}

const char* NodeArena::name(std::string_view name) {
  const std::size_t needed = name.size() + 1;
  if (needed > namesLeft_) {
    const std::size_t size = std::max(needed, names_.empty() ? kNameBlock / 16 : kNameBlock);
    names_.push_back(std::make_unique_for_overwrite<char[]>(size));
    nextName_ = names_.back().get();
    namesLeft_ = size;
    nameBytes_ += size;
  }
  char* const copy = nextName_;
  std::memcpy(copy, name.data(), name.size());
  copy[name.size()] = '\0';
  nextName_ += needed;
  namesLeft_ -= needed;
  return copy;
}

std::size_t NodeArena::footprint() const {
  std::size_t bytes = nameBytes_;
  for (const Block& block : blocks_)
    bytes += block.size * sizeof(FileNode);
  for (const FolderContent& folder : folders_)
    bytes += sizeof folder + folder.list.capacity() * sizeof(FileNode*);
  return bytes;
}

}  // namespace brisko
