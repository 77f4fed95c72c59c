#pragma once

#include "Theme.h"

#include <QWidget>

#include <string>

namespace brisko {

/// Shows a named image, in the theme's colours, optionally on a rounded tinted tile.
class ImageView : public QWidget {
  Q_OBJECT

 public:
  explicit ImageView(QWidget* parent = nullptr);

  void setImageName(std::string name);
  const std::string& imageName() const { return name_; }

  void setTint(Theme::Token tint);
  /// Side of the image in points; the view itself keeps the size that its layout gives it.
  void setImageSide(int side);
  void setTile(bool tile);

  QSize sizeHint() const override { return {side_, side_}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string name_;
  Theme::Token tint_ = Theme::Token::textSecondary;
  int side_ = 24;
  bool hasTile_ = false;
};

}  // namespace brisko
