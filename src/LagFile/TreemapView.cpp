#include "TreemapView.h"

#include "CommUti.h"
#include "FocusRing.h"
#include "LargeFileKinds.h"
#include "LocalizedString.h"
#include "Theme.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

#include <cmath>
#include <limits>
#include <utility>

namespace brisko {
namespace {

constexpr double kGap = 1;
constexpr double kTileRadius = 3;
constexpr double kPlainSide = 8;  // a tile of a shorter one has neither corners nor light to see
constexpr int kLegendLine = 18;
constexpr int kLegendColumns = 4;
constexpr int kLegendLines = 2;
constexpr double kLabelWidth = 46;
constexpr double kLabelHeight = 18;

QString spoken(const FileNode& node) {
  return displayText(node._name()) + QStringLiteral(", ") +
         QString::fromStdString(CommUti::convertVolSpace(node.size));
}

}  // namespace

TreemapView::TreemapView(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(getLocalizedString("Map of the folder"));
  connect(&Theme::shared(), &Theme::changed, this, &TreemapView::contentChanged);
}

void TreemapView::setFolder(FileNode* folder) {
  folder_ = folder;
  current_ = nullptr;
  contentChanged();
}

void TreemapView::contentChanged() {
  isStale_ = true;
  // What was laid out may hold entries that are about to go.
  tiles_.clear();
  update();
}

void TreemapView::setCurrent(const FileNode* node) {
  if (current_ == node) return;
  current_ = node;
  setAccessibleDescription(node != nullptr ? spoken(*node) : QString());
  update();
}

QRectF TreemapView::mapRect() const {
  return QRectF(rect()).adjusted(0, 0, 0, -kLegendLine * kLegendLines - Space::small);
}

const std::vector<TreemapTile>& TreemapView::tiles() {
  if (std::exchange(isStale_, false)) {
    const QRectF map = mapRect();
    tiles_ = folder_ == nullptr
                 ? std::vector<TreemapTile>()
                 : TreemapLayout::layOut(*folder_, {map.x(), map.y(), map.width(), map.height()});
    draw();
  }
  return tiles_;
}

QRectF TreemapView::drawnRect(const TreemapTile& tile) {
  const TreemapRect& at = tile.rect;
  return QRectF(at.x, at.y, at.width, at.height).adjusted(kGap / 2, kGap / 2, -kGap / 2, -kGap / 2);
}

void TreemapView::draw() {
  const qreal scale = devicePixelRatioF();
  picture_ = QPixmap((QSizeF(size()) * scale).toSize());
  picture_.setDevicePixelRatio(scale);
  picture_.fill(Qt::transparent);
  QPainter painter(&picture_);
  painter.setRenderHint(QPainter::Antialiasing);
  if (tiles_.empty()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(themeColor(Theme::Token::track));
    painter.drawRoundedRect(mapRect(), kTileRadius, kTileRadius);
  }
  for (const TreemapTile& tile : tiles_)
    drawTile(&painter, tile);
  drawLegend(&painter);
}

void TreemapView::drawTile(QPainter* painter, const TreemapTile& tile) const {
  const QRectF area = drawnRect(tile);
  if (area.width() <= 0 || area.height() <= 0) return;
  const double radius = std::min({kTileRadius, area.width() / 3, area.height() / 3});
  QColor fill = tile.node == nullptr ? themeColor(Theme::Token::track)
                                     : largeFileKindColor(largeFileKind(*tile.node));
  // Deeper folders stand out from those around them.
  if (tile.node != nullptr && tile.node->_isDirectory()) {
    fill = Theme::shared().isDark() ? fill.lighter(100 + 9 * tile.depth)
                                    : fill.darker(98 + 4 * tile.depth);
  }
  if (std::min(area.width(), area.height()) < kPlainSide) {
    painter->fillRect(area, fill);
    return;
  }
  painter->setPen(Qt::NoPen);
  if (tile.node != nullptr && !tile.node->_isDirectory()) {
    QLinearGradient light(area.topLeft(), area.bottomRight());
    light.setColorAt(0, fill.lighter(108));
    light.setColorAt(1, fill.darker(106));
    painter->setBrush(light);
  } else {
    painter->setBrush(fill);
  }
  painter->drawRoundedRect(area, radius, radius);
  if (tile.node == nullptr || area.width() < kLabelWidth || area.height() < kLabelHeight) return;
  if (tile.hasTiles && area.height() < 2 * kLabelHeight) return;
  const bool isFolder = tile.node->_isDirectory();
  painter->setFont(Theme::shared().font(10, QFont::DemiBold));
  painter->setPen(isFolder ? themeColor(Theme::Token::text) : QColor(Qt::white));
  const QRectF label = area.adjusted(5, 1, -4, 0);
  painter->drawText(
      QRectF(label.left(), label.top(), label.width(), TreemapLayout::kHead - 1),
      Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
      painter->fontMetrics().elidedText(displayText(tile.node->_name()), Qt::ElideMiddle,
                                        static_cast<int>(label.width())));
}

void TreemapView::drawLegend(QPainter* painter) const {
  const double top = mapRect().bottom() + Space::small;
  const double column = static_cast<double>(width()) / kLegendColumns;
  painter->setFont(Theme::shared().font(11));
  for (std::size_t kind = 0; kind < kLargeFileKinds; ++kind) {
    const auto place = static_cast<int>(kind);
    const QRectF cell(place % kLegendColumns * column, top + place / kLegendColumns * kLegendLine,
                      column, kLegendLine);
    painter->setPen(Qt::NoPen);
    painter->setBrush(largeFileKindColor(kind));
    painter->drawRoundedRect(QRectF(cell.left(), cell.center().y() - 4, 8, 8), 2, 2);
    painter->setPen(themeColor(Theme::Token::textSecondary));
    const int room = static_cast<int>(column) - 14;
    painter->drawText(
        cell.adjusted(12, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        painter->fontMetrics().elidedText(largeFileKindTitle(kind), Qt::ElideRight, room));
  }
}

const TreemapTile* TreemapView::shownTile(const FileNode* node) {
  for (const FileNode* at = node; at != nullptr; at = at->holder) {
    for (const TreemapTile& tile : tiles()) {
      if (tile.node == at) return &tile;
    }
  }
  return nullptr;
}

void TreemapView::paintEvent(QPaintEvent*) {
  tiles();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.drawPixmap(0, 0, picture_);
  if (const TreemapTile* tile = current_ != nullptr ? shownTile(current_) : nullptr) {
    const QRectF area = drawnRect(*tile).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(themeColor(Theme::Token::window), 4));
    painter.drawRoundedRect(area, kTileRadius, kTileRadius);
    painter.setPen(QPen(themeColor(Theme::Token::accent), 2));
    painter.drawRoundedRect(area, kTileRadius, kTileRadius);
  }
  if (hasFocus()) drawFocusRing(&painter, mapRect().toRect(), 4);
}

void TreemapView::resizeEvent(QResizeEvent*) {
  contentChanged();
}

void TreemapView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) contentChanged();
}

void TreemapView::choose(FileNode* node) {
  setCurrent(node);
  Q_EMIT nodeChosen(node);
}

void TreemapView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPointF at = event->position();
  if (const TreemapTile* tile = TreemapLayout::tileAt(tiles(), at.x(), at.y())) choose(tile->node);
}

// To the nearest tile in that direction that is not divided further.
void TreemapView::keyPressEvent(QKeyEvent* event) {
  QPointF way;
  switch (event->key()) {
    case Qt::Key_Left:
      way = {-1, 0};
      break;
    case Qt::Key_Right:
      way = {1, 0};
      break;
    case Qt::Key_Up:
      way = {0, -1};
      break;
    case Qt::Key_Down:
      way = {0, 1};
      break;
    default:
      QWidget::keyPressEvent(event);
      return;
  }
  const TreemapTile* const from = current_ != nullptr ? shownTile(current_) : nullptr;
  const QPointF start = from != nullptr ? drawnRect(*from).center() : QPointF(0, 0);
  const TreemapTile* best = nullptr;
  double least = std::numeric_limits<double>::max();
  for (const TreemapTile& tile : tiles()) {
    if (tile.node == nullptr || tile.hasTiles || &tile == from) continue;
    const QPointF step = drawnRect(tile).center() - start;
    const double along = QPointF::dotProduct(step, way);
    const double across = std::abs(step.x() * way.y()) + std::abs(step.y() * way.x());
    if (along <= 0.5 || along + 3 * across >= least) continue;
    least = along + 3 * across;
    best = &tile;
  }
  if (best != nullptr) choose(best->node);
}

bool TreemapView::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const TreemapTile* tile = TreemapLayout::tileAt(tiles(), help->pos().x(), help->pos().y());
    QToolTip::showText(help->globalPos(), tile != nullptr ? toolTipText(spoken(*tile->node)) : "",
                       this);
    return true;
  }
  return QWidget::event(event);
}

}  // namespace brisko
