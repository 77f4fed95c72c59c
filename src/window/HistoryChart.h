#pragma once

#include "Theme.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace brisko {

/// Curves of the last two minutes, one value a second, the newest at the right edge. The value
/// under the pointer is told with its age.
///
/// Draws all of itself on the ground of a card, so that a new value costs no more than its own few
/// thousand pixels.
class HistoryChart : public QWidget {
  Q_OBJECT

 public:
  enum class Kind {
    lines,  ///< each curve from the bottom, the first one behind
    stack,  ///< each on top of the one before
  };
  struct Series {
    QString name;
    Theme::Token colour;
  };
  using Formatter = std::function<QString(double)>;

  static constexpr int kValues = 120;

  explicit HistoryChart(QWidget* parent = nullptr);

  void setSeries(Kind kind, std::vector<Series> series);
  /// The value at the upper edge; 0 lets it follow the values, but not below `least`.
  void setMaximum(double maximum, double least = 1);
  /// How a value is told, at the scale and under the pointer.
  void setFormatter(Formatter formatter) { formatter_ = std::move(formatter); }
  /// Without grid and scale, for where there is little room.
  void setPlain(bool isPlain) { isPlain_ = isPlain; }

  /// The values of one series, oldest first, the newest last; what is no number is a gap.
  void setValues(std::size_t series, const std::vector<float>& values);

  /// The value at the upper edge.
  double top() const;
  /// What the pointer is told at `x`, one line a series below the age; empty where nothing is.
  QStringList toldAt(int x) const;

  QSize sizeHint() const override { return {280, 96}; }
  QSize minimumSizeHint() const override { return {60, 24}; }

  /// The smallest of 1, 2 or 5 times a power of ten that is not below `value`.
  static double roundedUp(double value);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  QRectF plot() const;
  double xOf(int age) const;
  int ageAt(int x) const;
  float valueAt(std::size_t series, int age) const;
  double heightAt(std::size_t series, int age) const;
  void paintGrid(QPainter* painter) const;
  void paintSeries(QPainter* painter, std::size_t series) const;
  void paintRun(QPainter* painter, std::size_t series, int oldest, int newest) const;
  void paintPointed(QPainter* painter) const;

  Kind kind_ = Kind::lines;
  std::vector<Series> series_;
  std::vector<std::vector<float>> values_;
  Formatter formatter_;
  double maximum_ = 1;
  double least_ = 1;
  bool isPlain_ = false;
  int pointed_ = -1;  ///< x of the pointer, -1 for none
};

}  // namespace brisko
