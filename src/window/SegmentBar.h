#pragma once

#include <QWidget>

#include <vector>

namespace brisko {

/// A row of segments of which one is chosen, each with a title and a smaller second line. One stop
/// for the Tab key; the arrow keys, Home and End go from segment to segment.
class SegmentBar : public QWidget {
  Q_OBJECT

 public:
  struct Segment {
    QString title;
    QString detail;
    bool isDimmed = false;  ///< there is nothing behind it; it can be chosen all the same
  };

  explicit SegmentBar(QWidget* parent = nullptr);

  void setSegments(std::vector<Segment> segments);
  const std::vector<Segment>& segments() const { return segments_; }

  /// Shows this one as chosen, and tells nobody.
  void setCurrent(int segment);
  int current() const { return current_; }

  /// Where a segment is drawn, in the widget's coordinates.
  QRect segmentRect(int segment) const;

  QSize sizeHint() const override { return {560, 52}; }
  QSize minimumSizeHint() const override { return {420, 52}; }

 Q_SIGNALS:
  /// The user chose another segment.
  void segmentSelect(int segment);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  int segmentAt(const QPoint& position) const;
  void choose(int segment);
  void describe();
  void paintSegment(class QPainter* painter, int segment) const;

  std::vector<Segment> segments_;
  int current_ = 0;
  int hovered_ = -1;
};

}  // namespace brisko
