#pragma once

#include <QAbstractButton>

#include <string>

namespace brisko {

/// A check box that shows one of the images "sel", "unsel", "halfsel" and "disable". It never
/// changes its own state: a click asks, and whoever owns the selection sets the image that follows
/// from it.
class ImageCheckBox : public QAbstractButton {
  Q_OBJECT

 public:
  explicit ImageCheckBox(QWidget* parent = nullptr);

  void setImageName(const std::string& name);
  const std::string& imageName() const { return name_; }

  /// The state that an image name stands for; unchecked for "unsel" and "disable".
  static Qt::CheckState checkState(const std::string& imageName);

  QSize sizeHint() const override { return {28, 28}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  std::string name_ = "unsel";
};

}  // namespace brisko
