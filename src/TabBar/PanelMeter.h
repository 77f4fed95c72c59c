#pragma once

#include "HistoryChart.h"

namespace brisko {

/// A small tile with one figure and its curve.
class PanelMeter : public QWidget {
  Q_OBJECT

 public:
  PanelMeter(const QString& title, HistoryChart::Series series, QWidget* parent = nullptr);

  void setValue(const QString& value);
  QString value() const { return value_; }
  HistoryChart* chart() const { return chart_; }

  QSize sizeHint() const override { return {148, 84}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  HistoryChart* chart_;
  QString title_;
  QString value_;
};

}  // namespace brisko
