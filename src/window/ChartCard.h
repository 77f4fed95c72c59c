#pragma once

#include "HistoryChart.h"

#include <optional>
#include <vector>

namespace brisko {

/// A card with a chart: what it shows and its value now above, the parts of that value below.
class ChartCard : public QWidget {
  Q_OBJECT

 public:
  struct Part {
    QString name;
    std::optional<Theme::Token> colour;  ///< of its curve; none for what has no curve
    QString value;
  };

  explicit ChartCard(QWidget* parent = nullptr);

  HistoryChart* chart() const { return chart_; }
  void setTitle(const QString& title);
  /// A remark beside the title.
  void setRemark(const QString& remark);
  /// The value that matters, and what follows it in small.
  void setValue(const QString& value, const QString& suffix = {});
  void setParts(std::vector<Part> parts);

  QString value() const { return value_; }
  const std::vector<Part>& parts() const { return parts_; }

  QSize sizeHint() const override { return {380, height_}; }
  QSize minimumSizeHint() const override { return {300, height_}; }
  void setChartHeight(int height);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QRect head() const;
  QRect foot() const;
  void describe();
  void paintHead(QPainter* painter) const;
  void paintPart(QPainter* painter, const QRect& area, const Part& part) const;

  HistoryChart* chart_;
  QString title_;
  QString remark_;
  QString value_;
  QString suffix_;
  std::vector<Part> parts_;
  int height_ = 0;
};

}  // namespace brisko
