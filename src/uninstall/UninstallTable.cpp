#include "UninstallTable.h"

#include "AMAppItem.h"
#include "AppIcon.h"
#include "CheckOutline.h"
#include "Theme.h"
#include "UninstallModel.h"
#include "UninstallTableModel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace brisko {
namespace {

using Column = UninstallColumn;

constexpr int kIconSide = 28;

class AppDelegate : public EntryDelegate {
 public:
  using EntryDelegate::EntryDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const auto column = static_cast<Column>(index.column());
    if (column == Column::uninstall) {
      return paintRowButton(painter, option, index.data(ImageNameRole).toString().toStdString());
    }
    if (column != Column::appname) return EntryDelegate::paint(painter, option, index);
    painter->save();
    paintRowGround(painter, option.rect, (option.state & QStyle::State_Selected) != 0);
    painter->setRenderHint(QPainter::Antialiasing);
    paintName(painter, option.rect, index);
    painter->restore();
  }

 private:
  static void paintName(QPainter* painter, const QRect& rect, const QModelIndex& index) {
    const auto* item = static_cast<const AMAppItem*>(
        index.data(UninstallTableModel::ItemRole).value<const void*>());
    QRect area = rect.adjusted(Space::medium, 0, -Space::small, 0);
    const QRectF icon(area.left(), area.center().y() - kIconSide / 2.0 + 0.5, kIconSide, kIconSide);
    paintAppIcon(painter, icon, *item);
    area.setLeft(area.left() + kIconSide + Space::medium);
    const QString second = index.data(UninstallTableModel::IdentifierRole).toString();
    const QRect upper = second.isEmpty() ? area : area.adjusted(0, 5, 0, -area.height() / 2);
    drawLine(painter, upper, index.data().toString(), 13, Theme::Token::text);
    drawLine(painter, area.adjusted(0, area.height() / 2 + 1, 0, -6), second, 11,
             Theme::Token::textDimmed);
  }

  static void drawLine(QPainter* painter, const QRect& area, const QString& text, int points,
                       Theme::Token ink) {
    painter->setFont(Theme::shared().font(points));
    painter->setPen(themeColor(ink));
    painter->drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      painter->fontMetrics().elidedText(text, Qt::ElideMiddle, area.width()));
  }
};

}  // namespace

UninstallTable::UninstallTable(QWidget* parent) : EntryTable(parent) {
  setItemDelegate(new AppDelegate(this));
  setMouseTracking(true);
  connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
    if (index.column() == static_cast<int>(Column::uninstall)) Q_EMIT oneAppRemove(index.row());
  });
}

void UninstallTable::setItems(UninstallTableModel* items) {
  setEntries(items, static_cast<int>(Column::appname));
  constexpr int kWidths[] = {52, 0, 116, 100, 76, 184, 52};
  for (int column = 0; column < items->columnCount(); ++column) {
    if (kWidths[column] > 0) horizontalHeader()->resizeSection(column, kWidths[column]);
  }
  horizontalHeader()->setSectionResizeMode(static_cast<int>(Column::uninstall), QHeaderView::Fixed);
}

void UninstallTable::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Delete && currentIndex().isValid()) {
    Q_EMIT oneAppRemove(currentIndex().row());
    return;
  }
  EntryTable::keyPressEvent(event);
}

void UninstallTable::mouseMoveEvent(QMouseEvent* event) {
  EntryTable::mouseMoveEvent(event);
  const QModelIndex index = indexAt(event->position().toPoint());
  const int column = index.isValid() ? index.column() : -1;
  const bool isButton = column == static_cast<int>(Column::uninstall) || column == 0;
  viewport()->setCursor(isButton ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

}  // namespace brisko
