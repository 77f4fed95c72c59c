#include "ImageResize.h"

#include <QPainter>

#include <cmath>

namespace brisko {
namespace {

QImage resized(const QImage& image, int side, bool scalesWhenResized, bool flipFlag) {
  if (image.isNull()) return {};
  const qreal scale = image.devicePixelRatio();
  const int pixels = static_cast<int>(std::lround(side * scale));
  QImage result(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  result.fill(Qt::transparent);
  QPainter painter(&result);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const QRect target = scalesWhenResized
                           ? QRect(0, 0, pixels, pixels)
                           : QRect(0, pixels - image.height(), image.width(), image.height());
  painter.drawImage(target, image, image.rect());
  painter.end();
  if (flipFlag) result = result.mirrored(false, true);
  result.setDevicePixelRatio(scale);
  return result;
}

}  // namespace

QImage get120X120BigImage(const QImage& image, bool flipFlag, double) {
  return resized(image, 120, true, flipFlag);
}

QImage get200X200BigImage(const QImage& image, bool flipFlag, double) {
  return resized(image, 200, false, flipFlag);
}

}  // namespace brisko
