#include "TreemapLayout.h"

#include "FileFilter.h"

#include <algorithm>
#include <span>

namespace brisko {
namespace {

constexpr double kRoomForHead = 44;  // least side of a folder's tile that has its name in it

// How far the worst tile of a row is from a square: the longer side over the shorter one, for tiles
// between `least` and `most` in area, `sum` in all, along a side of this length.
double worstShape(double least, double most, double sum, double side) {
  const double square = side * side / (sum * sum);
  return std::max(most * square, 1 / (least * square));
}

struct Part {
  FileNode* node;
  double area;
};

// Fills `rect` with the parts, largest first, row by row along its shorter side.
template <typename Place>
void squarify(std::span<const Part> parts, TreemapRect rect, Place place) {
  std::size_t first = 0;
  while (first < parts.size()) {
    const double side = std::min(rect.width, rect.height);
    double sum = parts[first].area;
    std::size_t end = first + 1;
    double shape = worstShape(sum, sum, sum, side);
    while (end < parts.size()) {
      const double next = sum + parts[end].area;
      const double changed = worstShape(parts[end].area, parts[first].area, next, side);
      if (changed > shape) break;
      shape = changed;
      sum = next;
      ++end;
    }
    const bool isColumn = rect.width >= rect.height;
    const double thickness = std::min(sum / side, isColumn ? rect.width : rect.height);
    double at = 0;
    for (std::size_t i = first; i < end; ++i) {
      const double length = side * parts[i].area / sum;
      place(parts[i].node, isColumn ? TreemapRect{rect.x, rect.y + at, thickness, length}
                                    : TreemapRect{rect.x + at, rect.y, length, thickness});
      at += length;
    }
    if (isColumn) {
      rect.x += thickness;
      rect.width -= thickness;
    } else {
      rect.y += thickness;
      rect.height -= thickness;
    }
    first = end;
  }
}

// The entries that are large enough, largest first, and last one part for all the rest.
std::vector<Part> partsOf(const FileNode& folder, const TreemapRect& rect) {
  double all = 0;
  for (const FileNode* node : folder.folder->list) {
    if (isShown(*node)) all += static_cast<double>(node->size);
  }
  std::vector<Part> parts;
  if (all <= 0) return parts;
  const double scale = rect.area() / all;
  double rest = rect.area();
  for (FileNode* node : folder.folder->list) {
    const double area = static_cast<double>(node->size) * scale;
    if (area < TreemapLayout::kLeastArea || !isShown(*node)) continue;
    parts.push_back({node, area});
    rest -= area;
  }
  std::sort(parts.begin(), parts.end(), [](const Part& one, const Part& other) {
    return standsBefore(*one.node, *other.node);
  });
  if (rest > TreemapLayout::kLeastArea / 4) parts.push_back({nullptr, rest});
  return parts;
}

bool isDivided(const TreemapTile& tile) {
  return tile.node != nullptr && tile.node->folder != nullptr && !tile.node->folder->list.empty() &&
         tile.depth < TreemapLayout::kMostDepth &&
         std::min(tile.rect.width, tile.rect.height) >= TreemapLayout::kLeastFolderSide;
}

TreemapRect innerOf(const TreemapRect& rect) {
  constexpr double kInset = TreemapLayout::kInset;
  const bool hasHead = std::min(rect.width, rect.height) >= kRoomForHead;
  const double top = hasHead ? TreemapLayout::kHead : kInset;
  return {rect.x + kInset, rect.y + top, rect.width - 2 * kInset, rect.height - top - kInset};
}

}  // namespace

std::vector<TreemapTile> TreemapLayout::layOut(FileNode& folder, TreemapRect rect) {
  std::vector<TreemapTile> tiles;
  if (folder.folder == nullptr || rect.width < 1 || rect.height < 1) return tiles;
  const auto divide = [&tiles](const FileNode& node, const TreemapRect& into, int depth) {
    const std::vector<Part> parts = partsOf(node, into);
    // From the largest to the rest, which comes last whatever its size.
    squarify(parts, into, [&](FileNode* part, const TreemapRect& at) {
      tiles.push_back({part, at, depth, false});
    });
  };
  divide(folder, rect, 1);
  // Breadth first: a tile's own tiles come after it, and deeper ones lie on top.
  for (std::size_t i = 0; i < tiles.size(); ++i) {
    const TreemapTile tile = tiles[i];
    if (!isDivided(tile)) continue;
    const std::size_t before = tiles.size();
    divide(*tile.node, innerOf(tile.rect), tile.depth + 1);
    tiles[i].hasTiles = tiles.size() > before;
  }
  return tiles;
}

const TreemapTile* TreemapLayout::tileAt(const std::vector<TreemapTile>& tiles, double x,
                                         double y) {
  for (auto tile = tiles.rbegin(); tile != tiles.rend(); ++tile) {
    if (tile->node != nullptr && tile->rect.contains(x, y)) return &*tile;
  }
  return nullptr;
}

}  // namespace brisko
