#include "FileFilter.h"
#include "NodeArena.h"
#include "NodeTreeOperator.h"
#include "TreemapLayout.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

namespace brisko::test {
namespace {

// A folder with these sizes in it; one of them is a folder that holds the sizes of `inner`.
class MadeFolder {
 public:
  explicit MadeFolder(const std::vector<std::uint64_t>& sizes,
                      const std::vector<std::uint64_t>& inner = {}) {
    root = arena.nodes(1).data();
    root->folder = arena.folder();
    const auto nodes = arena.nodes(sizes.size());
    fill(nodes, *root, sizes);
    if (!inner.empty()) {
      nodes[0].folder = arena.folder();
      nodes[0].folder->depth = 1;
      nodes[0].size = 0;
    }
    tree.fileInsertFatherWithRootArr(*root, nodes);
    if (!inner.empty()) {
      const auto below = arena.nodes(inner.size());
      fill(below, nodes[0], inner);
      tree.fileInsertFatherWithRootArr(nodes[0], below);
    }
    tree.settleSizes();
  }

  NodeArena arena;
  NodeTreeOperator tree{nullptr};
  FileNode* root;

 private:
  static void fill(std::span<FileNode> nodes, FileNode& holder,
                   const std::vector<std::uint64_t>& sizes) {
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      nodes[i].size = sizes[i];
      nodes[i].holder = &holder;
      nodes[i].place = static_cast<std::uint32_t>(i);
    }
  }
};

constexpr TreemapRect kRect{0, 0, 300, 200};

TEST(TreemapLayout, AreasGoBySizesAndTilesCoverTheRectangleWithoutOverlap) {
  std::mt19937 random(2);
  for (int round = 0; round < 30; ++round) {
    std::vector<std::uint64_t> sizes;
    std::uint64_t sum = 0;
    for (int i = 0; i < 60; ++i)
      sum += sizes.emplace_back(1 + random() % 1000 * (random() % 1000));
    MadeFolder folder(sizes);
    const auto tiles = TreemapLayout::layOut(*folder.root, kRect);
    double covered = 0;
    for (const TreemapTile& tile : tiles) {
      covered += tile.rect.area();
      EXPECT_GE(tile.rect.x, -1e-6);
      EXPECT_LE(tile.rect.x + tile.rect.width, kRect.width + 1e-6);
      EXPECT_LE(tile.rect.y + tile.rect.height, kRect.height + 1e-6);
      if (tile.node == nullptr) continue;
      const double share = static_cast<double>(tile.node->size) / static_cast<double>(sum);
      EXPECT_NEAR(tile.rect.area(), share * kRect.area(), 1e-3);
      EXPECT_EQ(TreemapLayout::tileAt(tiles, tile.rect.x + tile.rect.width / 2,
                                      tile.rect.y + tile.rect.height / 2),
                &tile);
    }
    EXPECT_NEAR(covered, kRect.area(), TreemapLayout::kLeastArea);
  }
}

TEST(TreemapLayout, TilesAreNearSquares) {
  const MadeFolder folder(std::vector<std::uint64_t>(24, 1000));
  for (const TreemapTile& tile : TreemapLayout::layOut(*folder.root, kRect)) {
    const double shape = tile.rect.width / tile.rect.height;
    EXPECT_LT(std::max(shape, 1 / shape), 2.0);
  }
}

TEST(TreemapLayout, AFolderIsDividedInsideItsOwnTileAndEmptyOnesMakeNone) {
  const MadeFolder folder({0, 3000, 100}, {4000, 2000, 0});
  const auto tiles = TreemapLayout::layOut(*folder.root, kRect);
  const TreemapTile& outer = tiles.front();
  ASSERT_NE(outer.node->folder, nullptr);
  EXPECT_TRUE(outer.hasTiles);
  int inside = 0;
  for (const TreemapTile& tile : tiles) {
    if (tile.depth != 2) continue;
    ++inside;
    EXPECT_TRUE(outer.rect.contains(tile.rect.x, tile.rect.y));
    EXPECT_LE(tile.rect.y + tile.rect.height, outer.rect.y + outer.rect.height);
  }
  EXPECT_EQ(inside, 2);
  const MadeFolder empty({0, 0});
  EXPECT_TRUE(TreemapLayout::layOut(*empty.root, kRect).empty());
}

// However many entries there are, only those large enough to be seen become tiles.
TEST(TreemapLayout, AHundredThousandSmallEntriesAreOneTile) {
  std::vector<std::uint64_t> sizes(100'000, 1);
  sizes.push_back(100'000);
  const MadeFolder folder(sizes);
  const auto tiles = TreemapLayout::layOut(*folder.root, kRect);
  ASSERT_EQ(tiles.size(), 2U);
  EXPECT_EQ(tiles[1].node, nullptr);
  EXPECT_NEAR(tiles[1].rect.area(), kRect.area() / 2, 1);
}

}  // namespace
}  // namespace brisko::test
