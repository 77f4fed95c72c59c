#pragma once

#include "TreemapLayout.h"

#include <QPixmap>
#include <QWidget>

#include <vector>

namespace brisko {

/// The map of a folder: a tile for each entry that is large enough to be seen, as large as its
/// share, coloured by kind, with a legend. Folders are framed and named, and what is in them lies
/// in them.
///
/// Tiles are laid out and drawn once for a state of the tree, at most every 100 ms while it grows;
/// in between a picture is shown. A click, or the arrow keys, highlight an entry.
class TreemapView : public QWidget {
  Q_OBJECT

 public:
  explicit TreemapView(QWidget* parent = nullptr);

  /// The folder that is shown, or null.
  void setFolder(FileNode* folder);
  /// Its content, or what the filter shows of it, is another.
  void contentChanged();
  /// Highlights the entry, or where it is too small to be seen, the nearest folder above it.
  void setCurrent(const FileNode* node);
  const FileNode* current() const { return current_; }

  const std::vector<TreemapTile>& tiles();
  /// Where a tile is drawn, in the widget's coordinates.
  static QRectF drawnRect(const TreemapTile& tile);

  QSize sizeHint() const override { return {280, 300}; }
  QSize minimumSizeHint() const override { return {200, 160}; }

 Q_SIGNALS:
  /// The user chose this entry in the map.
  void nodeChosen(FileNode* node);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  QRectF mapRect() const;
  void draw();
  void drawTile(QPainter* painter, const TreemapTile& tile) const;
  void drawLegend(QPainter* painter) const;
  const TreemapTile* shownTile(const FileNode* node);
  void choose(FileNode* node);

  FileNode* folder_ = nullptr;
  const FileNode* current_ = nullptr;
  std::vector<TreemapTile> tiles_;
  bool isStale_ = true;
  QPixmap picture_;
};

}  // namespace brisko
