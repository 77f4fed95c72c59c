#pragma once

#include "SystemHistory.h"

#include <QWidget>

#include <vector>

namespace brisko {

/// How the cells of so many cores are arranged.
struct CoreLayout {
  int columns = 1;
  int rows = 1;
  int cellHeight = 0;       ///< points
  int gap = 0;              ///< points between two cells
  bool hasCurves = false;   ///< each cell shows two minutes, else only the load of now
  bool hasFigures = false;  ///< each cell shows its load as a figure

  int height() const { return rows * cellHeight + (rows - 1) * gap; }

  /// For `count` cores, at least one, in `width` points: rows as even as can be.
  static CoreLayout of(int count, int width);
};

/// The load of every core, each in a cell of its own: a curve where there are few of them, a bar
/// where there are many.
class CoreGrid : public QWidget {
  Q_OBJECT

 public:
  explicit CoreGrid(QWidget* parent = nullptr);

  void show(const SystemHistory& history);
  using QWidget::show;

  QRect cellRect(int core) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void layOut();
  void paintCell(QPainter* painter, int core) const;
  void paintCurve(QPainter* painter, const QRectF& cell, const std::vector<float>& values) const;
  QString told(int core) const;

  std::vector<CpuLoad> loads_;
  std::vector<FigureHistory> histories_;
  CoreLayout layout_;
};

}  // namespace brisko
