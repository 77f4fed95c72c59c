#include "DiskOutline.h"

#include "DiskTreeModel.h"
#include "ImageLookup.h"
#include "Theme.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

namespace brisko {
namespace {

constexpr int kEjectWidth = 52;
constexpr int kIndent = 22;

class DiskDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return {40, DiskOutline::kRowHeight};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintRowGround(painter, option.rect, (option.state & QStyle::State_Selected) != 0);
    const std::string image = index.data(DiskTreeModel::ImageRole).toString().toStdString();
    if (index.column() == DiskTreeModel::Name) {
      paintName(painter, option.rect, index, image);
    } else if (!image.empty()) {
      paintEject(painter, option, image);
    }
    painter->restore();
  }

 private:
  static void paintName(QPainter* painter, const QRect& rect, const QModelIndex& index,
                        const std::string& image) {
    const bool isDisk = !index.parent().isValid();
    QRect area = rect.adjusted(Space::tiny, 0, -Space::tiny, 0);
    ImageLookup::paint(painter, image, QRectF(area.left(), area.center().y() - 11.5, 24, 24));
    area.setLeft(area.left() + 24 + Space::medium);
    painter->setFont(Theme::shared().font(13, isDisk ? QFont::DemiBold : QFont::Medium));
    painter->setPen(themeColor(Theme::Token::text));
    const QRect upper(area.left(), area.top() + 8, area.width(), 18);
    painter->drawText(
        upper, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, upper.width()));
    painter->setFont(Theme::shared().font(11));
    painter->setPen(themeColor(Theme::Token::textDimmed));
    const QRect lower(area.left(), area.top() + 27, area.width(), 16);
    painter->drawText(
        lower, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        painter->fontMetrics().elidedText(index.data(DiskTreeModel::CaptionRole).toString(),
                                          Qt::ElideRight, lower.width()));
  }

  static void paintEject(QPainter* painter, const QStyleOptionViewItem& option,
                         const std::string& image) {
    QRectF ground(0, 0, 30, 30);
    ground.moveCenter(QRectF(option.rect).center());
    const bool isUnderMouse = (option.state & QStyle::State_MouseOver) != 0;
    if (isUnderMouse) {
      painter->setPen(Qt::NoPen);
      painter->setBrush(themeColor(Theme::Token::hover));
      painter->drawRoundedRect(ground, 8, 8);
    }
    ImageLookup::paint(
        painter, image, ground.adjusted(6, 6, -6, -6),
        themeColor(isUnderMouse ? Theme::Token::accent : Theme::Token::textSecondary));
  }
};

}  // namespace

DiskOutline::DiskOutline(QWidget* parent) : CheckOutline(parent) {
  setItemDelegate(new DiskDelegate(this));
  setHeaderHidden(true);
  setTreePosition(DiskTreeModel::Name);
  setIndentation(kIndent);
  setMouseTracking(true);
  connect(this, &CheckOutline::toggleRequested, this, &DiskOutline::EjectVolumes);
}

void DiskOutline::setTree(DiskTreeModel* tree) {
  setModel(tree);
  header()->setStretchLastSection(false);
  header()->setMinimumSectionSize(kEjectWidth);
  header()->setSectionResizeMode(DiskTreeModel::Name, QHeaderView::Stretch);
  header()->setSectionResizeMode(DiskTreeModel::Eject, QHeaderView::Fixed);
  header()->resizeSection(DiskTreeModel::Eject, kEjectWidth);
}

bool DiskOutline::isBox(const QModelIndex& index) const {
  return index.column() == DiskTreeModel::Eject &&
         !index.data(DiskTreeModel::ImageRole).toString().isEmpty();
}

void DiskOutline::keyPressEvent(QKeyEvent* event) {
  const bool isTab = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
  if (isLocked_ && !isTab) return;
  // Too near to what only selects elsewhere.
  if (event->key() == Qt::Key_Space) return;
  if (event->key() == Qt::Key_E && event->modifiers() == Qt::NoModifier) {
    if (isBox(currentIndex().siblingAtColumn(DiskTreeModel::Eject))) Q_EMIT EjectVolumes();
    return;
  }
  CheckOutline::keyPressEvent(event);
}

bool DiskOutline::viewportEvent(QEvent* event) {
  const bool isClick = event->type() == QEvent::MouseButtonPress ||
                       event->type() == QEvent::MouseButtonRelease ||
                       event->type() == QEvent::MouseButtonDblClick;
  return (isLocked_ && isClick) || CheckOutline::viewportEvent(event);
}

}  // namespace brisko
