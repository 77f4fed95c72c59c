#pragma once

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include <sys/mman.h>

namespace brisko {

/// Memory for very many small objects that go all at once: whole blocks from the system, touched as
/// they fill, and given back to it at the end instead of staying with the thread that used them.
class PageArena {
 public:
  PageArena() = default;
  PageArena(PageArena&& other) noexcept
      : blocks_(std::exchange(other.blocks_, {})), used_(std::exchange(other.used_, kBlock)) {}
  PageArena& operator=(PageArena&& other) noexcept {
    std::swap(blocks_, other.blocks_);
    std::swap(used_, other.used_);
    return *this;
  }
  PageArena(const PageArena&) = delete;
  PageArena& operator=(const PageArena&) = delete;
  ~PageArena() {
    for (char* block : blocks_)
      munmap(block, kBlock);
  }

  /// `size` bytes, at most a quarter of a block; `alignment` is a power of two.
  char* take(std::size_t size, std::size_t alignment) {
    used_ = (used_ + alignment - 1) & ~(alignment - 1);
    if (used_ + size > kBlock) addBlock();
    char* taken = blocks_.back() + used_;
    used_ += size;
    return taken;
  }

 private:
  static constexpr std::size_t kBlock = std::size_t{1} << 20;

  void addBlock() {
    void* block = mmap(nullptr, kBlock, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED) throw std::bad_alloc();
    blocks_.push_back(static_cast<char*>(block));
    used_ = 0;
  }

  std::vector<char*> blocks_;
  std::size_t used_ = kBlock;
};

}  // namespace brisko
