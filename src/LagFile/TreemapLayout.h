#pragma once

#include "FileNode.h"

#include <cstddef>
#include <vector>

namespace brisko {

/// A tile's place, in points.
struct TreemapRect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  double area() const { return width * height; }
  bool contains(double atX, double atY) const {
    return atX >= x && atX < x + width && atY >= y && atY < y + height;
  }
};

struct TreemapTile {
  FileNode* node = nullptr;  ///< null: what is too small to be shown by itself
  TreemapRect rect;
  int depth = 0;          ///< 1 for entries of the folder laid out
  bool hasTiles = false;  ///< a folder that is divided further, by the tiles that follow it
};

/// Lays a folder out as tiles whose areas go by the sizes: each row of tiles is filled for as long
/// as that brings them nearer to squares. A folder's tile comes before those in it.
///
/// Only entries that would be large enough to be seen are looked at twice, and only in folders that
/// are, so the cost goes with the area and not with the tree. Main thread.
class TreemapLayout {
 public:
  static constexpr double kLeastArea = 20;        ///< of a tile, square points
  static constexpr double kLeastFolderSide = 22;  ///< of a folder that is divided further
  static constexpr int kMostDepth = 7;
  static constexpr double kHead = 15;  ///< height of a folder's name above its tiles
  static constexpr double kInset = 2;

  /// The tiles for what is shown of `folder`. None when it is empty.
  static std::vector<TreemapTile> layOut(FileNode& folder, TreemapRect rect);

  /// The tile that is on top at this point; null for none.
  static const TreemapTile* tileAt(const std::vector<TreemapTile>& tiles, double x, double y);
};

}  // namespace brisko
