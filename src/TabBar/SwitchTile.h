#pragma once

#include <QAbstractButton>

#include <string>

namespace brisko {

/// A button that shows what it switches: image, name and state. It never changes its own state: a
/// press asks, and whoever owns what is switched sets the state that follows.
class SwitchTile : public QAbstractButton {
  Q_OBJECT

 public:
  explicit SwitchTile(QWidget* parent = nullptr);

  /// `label` may be empty.
  void setState(bool isOn, const QString& label, std::string imageName);
  /// Whether it works here; else it is drawn faintly, and can still be pressed.
  void setWorking(bool isWorking);

  const QString& label() const { return label_; }
  const std::string& imageName() const { return imageName_; }

  QSize sizeHint() const override { return {148, 48}; }

 protected:
  void nextCheckState() override {}
  void paintEvent(QPaintEvent* event) override;

 private:
  QString label_;
  std::string imageName_;
  bool isWorking_ = true;
};

}  // namespace brisko
