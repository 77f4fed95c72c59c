#pragma once

#include <QImage>

namespace brisko {

/// A copy of `image` scaled to 120 × 120 points, upside down when `flipFlag` is set. The amount
/// reflected has no effect.
QImage get120X120BigImage(const QImage& image, bool flipFlag, double amountReflected);

/// A copy of `image` on a canvas of 200 × 200 points, upside down when `flipFlag` is set. The
/// content is not scaled: it stands in the lower left corner, and what reaches beyond the canvas is
/// cut.
QImage get200X200BigImage(const QImage& image, bool flipFlag, double amountReflected);

}  // namespace brisko
