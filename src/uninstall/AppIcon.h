#pragma once

#include <QRectF>

class QPainter;

namespace brisko {

struct AMAppItem;

/// Draws an item's icon into `rect`: the desktop's own for an application of the host, a folder's
/// or a file's for what belongs to it, and the first letter of its name on a tile for all others.
void paintAppIcon(QPainter* painter, const QRectF& rect, const AMAppItem& item);

}  // namespace brisko
