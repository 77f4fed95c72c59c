#pragma once

#include <QWidget>

namespace brisko {

/// The background of the page area. Only draws.
class MainView : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace brisko
