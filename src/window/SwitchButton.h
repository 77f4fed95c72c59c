#pragma once

#include <QAbstractButton>
#include <QVariantAnimation>

namespace brisko {

/// A switch, on or off. Like the check box it never changes its own state: a click asks, and
/// whoever owns what is switched sets the state that follows.
class SwitchButton : public QAbstractButton {
  Q_OBJECT

 public:
  explicit SwitchButton(QWidget* parent = nullptr);

  /// Moves the knob there when the switch is in sight already.
  void setOn(bool isOn);
  bool isOn() const { return isChecked(); }

  QSize sizeHint() const override { return {40, 24}; }

 protected:
  void nextCheckState() override {}
  void paintEvent(QPaintEvent* event) override;

 private:
  QVariantAnimation movement_;
  qreal place_ = 0;  ///< of the knob: 0 off, 1 on
};

}  // namespace brisko
