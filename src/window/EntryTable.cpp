#include "EntryTable.h"

#include "FocusRing.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "Theme.h"

#include <QIcon>
#include <QKeyEvent>
#include <QPainter>

namespace brisko {
namespace {

constexpr int kCheckWidth = 52;
constexpr int kSizeWidth = 132;

}  // namespace

CheckHeaderView::CheckHeaderView(QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), box_(new ImageCheckBox(this)) {
  // Not in the viewport, whose children move along when the header scrolls.
  box_->setObjectName(QStringLiteral("selectAllButton"));
  box_->setAccessibleName(getLocalizedString("Select all"));
  box_->setToolTip(box_->accessibleName());
  box_->setImageName("sel");
  box_->resize(box_->sizeHint());
  setFixedHeight(40);
  setHighlightSections(false);
  setSectionsClickable(true);
  setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void CheckHeaderView::resizeEvent(QResizeEvent* event) {
  QHeaderView::resizeEvent(event);
  box_->move((kCheckWidth - box_->width()) / 2, (height() - box_->height()) / 2);
}

void CheckHeaderView::paintSection(QPainter* painter, const QRect& rect, int section) const {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(themeColor(Theme::Token::border));
  painter->drawLine(QPointF(rect.left(), rect.bottom() + 0.5),
                    QPointF(rect.right() + 1, rect.bottom() + 0.5));
  if (section > 0) {
    const bool isSorted = isSortIndicatorShown() && sortIndicatorSection() == section;
    const QString title = model()->headerData(section, Qt::Horizontal).toString();
    const auto alignment =
        Qt::Alignment(model()->headerData(section, Qt::Horizontal, Qt::TextAlignmentRole).toInt());
    const bool isRight = (alignment & Qt::AlignRight) != 0;
    painter->setFont(Theme::shared().font(12, QFont::DemiBold));
    painter->setPen(themeColor(isSorted ? Theme::Token::text : Theme::Token::textDimmed));
    const QRect area = rect.adjusted(Space::medium, 0, -Space::large, 0);
    const int mark = isSorted ? 18 : 0;
    const QRect text = isRight ? area.adjusted(mark, 0, 0, 0) : area.adjusted(0, 0, -mark, 0);
    painter->drawText(text, (isRight ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter, title);
    if (isSorted) {
      const int width = painter->fontMetrics().horizontalAdvance(title);
      const QPointF centre(isRight ? text.right() - width - 10 : text.left() + width + 12,
                           rect.center().y() + 1);
      const bool isAscending = sortIndicatorOrder() == Qt::AscendingOrder;
      ImageLookup::paint(painter, isAscending ? "ic_ascend" : "ic_deascend",
                         QRectF(centre - QPointF(6, 6), QSizeF(12, 12)),
                         themeColor(Theme::Token::text));
    }
  }
  painter->restore();
}

void EntryDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
  painter->save();
  const bool isSelected = (option.state & QStyle::State_Selected) != 0;
  if (isSelected) painter->fillRect(option.rect, themeColor(Theme::Token::accentSoft));
  painter->setPen(themeColor(Theme::Token::border));
  painter->setOpacity(0.6);
  painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
  painter->setOpacity(1);
  const std::string image = index.data(ImageNameRole).toString().toStdString();
  if (index.column() == 0) {
    QRectF area(0, 0, 20, 20);
    area.moveCenter(QRectF(option.rect).center());
    ImageLookup::paint(painter, image, area);
    painter->restore();
    return;
  }
  QRect area = option.rect.adjusted(Space::medium, 0, -Space::large, 0);
  const QIcon icon = index.data(Qt::DecorationRole).value<QIcon>();
  if (!image.empty() || !icon.isNull()) {
    const QRect place(area.left(), area.center().y() - 9, 20, 20);
    if (icon.isNull()) {
      ImageLookup::paint(painter, image, QRectF(place).translated(0, -0.5));
    } else {
      icon.paint(painter, place);
    }
    area.setLeft(area.left() + 20 + Space::medium);
  }
  const auto alignment =
      Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()) | Qt::AlignVCenter;
  painter->setFont(Theme::shared().font(13));
  painter->setPen(
      themeColor(index.column() == 1 ? Theme::Token::text : Theme::Token::textSecondary));
  const QString text = painter->fontMetrics().elidedText(index.data(Qt::DisplayRole).toString(),
                                                         Qt::ElideMiddle, area.width());
  painter->drawText(area, static_cast<int>(alignment) | Qt::TextSingleLine, text);
  painter->restore();
}

EntryTable::EntryTable(QWidget* parent) : QTableView(parent) {
  auto* header = new CheckHeaderView(this);
  setHorizontalHeader(header);
  setItemDelegate(new EntryDelegate(this));
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(kRowHeight);
  setShowGrid(false);
  setFrameShape(QFrame::NoFrame);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setCornerButtonEnabled(false);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void EntryTable::setEntries(QAbstractItemModel* entries, int stretchedColumn) {
  setModel(entries);
  QHeaderView* header = horizontalHeader();
  header->setMinimumSectionSize(kCheckWidth);
  for (int column = 0; column < entries->columnCount(); ++column) {
    header->setSectionResizeMode(column, column == 0                 ? QHeaderView::Fixed
                                         : column == stretchedColumn ? QHeaderView::Stretch
                                                                     : QHeaderView::Interactive);
    if (column != stretchedColumn)
      header->resizeSection(column, column == 0 ? kCheckWidth : kSizeWidth);
  }
}

ImageCheckBox* EntryTable::selectAllBox() const {
  return static_cast<CheckHeaderView*>(horizontalHeader())->checkBox();
}

void EntryTable::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
    if (currentIndex().isValid()) Q_EMIT toggleRequested(currentIndex());
    return;
  }
  QTableView::keyPressEvent(event);
}

void EntryTable::mousePressEvent(QMouseEvent* event) {
  QTableView::mousePressEvent(event);
  pressed_ =
      event->button() == Qt::LeftButton ? indexAt(event->position().toPoint()) : QModelIndex();
}

void EntryTable::mouseReleaseEvent(QMouseEvent* event) {
  QTableView::mouseReleaseEvent(event);
  const QModelIndex released = indexAt(event->position().toPoint());
  if (released.isValid() && released == pressed_ && released.column() == 0) {
    Q_EMIT toggleRequested(released);
  }
  pressed_ = QModelIndex();
}

void EntryTable::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (!hasFocus() || !currentIndex().isValid()) return;
  QPainter painter(viewport());
  QRect row = visualRect(currentIndex());
  row.setLeft(0);
  row.setRight(viewport()->width() - 1);
  drawFocusRing(&painter, row, 6);
}

}  // namespace brisko
