#include "ImageView.h"

#include "ImageLookup.h"

#include <QPainter>

namespace brisko {

ImageView::ImageView(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void ImageView::setImageName(std::string name) {
  name_ = std::move(name);
  update();
}

void ImageView::setTint(Theme::Token tint) {
  tint_ = tint;
  update();
}

void ImageView::setImageSide(int side) {
  side_ = side;
  updateGeometry();
  update();
}

void ImageView::setTile(bool tile) {
  hasTile_ = tile;
  update();
}

void ImageView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (hasTile_) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(themeColor(Theme::Token::accentSoft));
    const qreal radius = std::min(width(), height()) * 0.28;
    painter.drawRoundedRect(rect(), radius, radius);
  }
  if (name_.empty()) return;
  QRectF area(0, 0, side_, side_);
  area.moveCenter(QRectF(rect()).center());
  ImageLookup::paint(&painter, name_, area, themeColor(tint_));
}

}  // namespace brisko
