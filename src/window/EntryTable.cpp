#include "EntryTable.h"

#include "CheckOutline.h"
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

// The first column's text keeps clear of the rounded corners around the table.
int leftSpace(int column) {
  return column == 0 ? Space::large : Space::medium;
}

}  // namespace

CheckHeaderView::CheckHeaderView(QWidget* parent, bool hasBox)
    : QHeaderView(Qt::Horizontal, parent), box_(new ImageCheckBox(this)), hasBox_(hasBox) {
  // Not in the viewport, whose children move along when the header scrolls.
  box_->setObjectName(QStringLiteral("selectAllButton"));
  box_->setAccessibleName(getLocalizedString("Select all"));
  box_->setToolTip(box_->accessibleName());
  box_->setImageName("sel");
  box_->resize(box_->sizeHint());
  box_->setVisible(hasBox);
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
  if (section > 0 || !hasBox_) {
    const bool isSorted = isSortIndicatorShown() && sortIndicatorSection() == section;
    const QString title = model()->headerData(section, Qt::Horizontal).toString();
    const auto alignment =
        Qt::Alignment(model()->headerData(section, Qt::Horizontal, Qt::TextAlignmentRole).toInt());
    const bool isRight = (alignment & Qt::AlignRight) != 0;
    const bool isCentred = (alignment & Qt::AlignHCenter) != 0;
    painter->setFont(Theme::shared().font(12, QFont::DemiBold));
    painter->setPen(themeColor(isSorted ? Theme::Token::text : Theme::Token::textDimmed));
    const QRect area = isCentred ? rect : rect.adjusted(leftSpace(section), 0, -Space::large, 0);
    const int mark = isSorted ? 18 : 0;
    const QRect text = isRight ? area.adjusted(mark, 0, 0, 0) : area.adjusted(0, 0, -mark, 0);
    const Qt::Alignment side = isCentred ? Qt::AlignHCenter
                               : isRight ? Qt::AlignRight
                                         : Qt::AlignLeft;
    painter->drawText(text, static_cast<int>(side | Qt::AlignVCenter), title);
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
  paintRowGround(painter, option.rect, (option.state & QStyle::State_Selected) != 0);
  if (index.column() == checkColumn_) {
    paintBox(painter, option.rect, index);
  } else {
    paintText(painter, option.rect, index);
  }
  painter->restore();
}

void EntryDelegate::paintText(QPainter* painter, const QRect& rect,
                              const QModelIndex& index) const {
  QRect area = rect.adjusted(leftSpace(index.column()), 0, -Space::large, 0);
  const std::string image = index.data(ImageNameRole).toString().toStdString();
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
  const bool isName = index.column() == (checkColumn_ == 0 ? 1 : 0);
  const auto alignment =
      Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()) | Qt::AlignVCenter;
  painter->setFont(Theme::shared().font(13));
  painter->setPen(themeColor(isName ? Theme::Token::text : Theme::Token::textSecondary));
  const QString text = painter->fontMetrics().elidedText(index.data(Qt::DisplayRole).toString(),
                                                         Qt::ElideMiddle, area.width());
  painter->drawText(area, static_cast<int>(alignment) | Qt::TextSingleLine, text);
}

void paintRowButton(QPainter* painter, const QStyleOptionViewItem& option,
                    const std::string& imageName) {
  painter->save();
  paintRowGround(painter, option.rect, (option.state & QStyle::State_Selected) != 0);
  painter->setRenderHint(QPainter::Antialiasing);  // which would blur the ground's line
  QRectF ground(0, 0, 28, 28);
  ground.moveCenter(QRectF(option.rect).center());
  const bool isHovered = (option.state & QStyle::State_MouseOver) != 0;
  if (isHovered) {
    painter->setPen(Qt::NoPen);
    painter->setBrush(themeColor(Theme::Token::hover));
    painter->drawRoundedRect(ground, 8, 8);
  }
  ImageLookup::paint(painter, imageName, ground.adjusted(5, 5, -5, -5),
                     themeColor(isHovered ? Theme::Token::danger : Theme::Token::textSecondary));
  painter->restore();
}

EntryTable::EntryTable(QWidget* parent, int checkColumn)
    : QTableView(parent), checkColumn_(checkColumn) {
  setHorizontalHeader(new CheckHeaderView(this, checkColumn == 0));
  setItemDelegate(new EntryDelegate(this, checkColumn));
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
  const auto toggle = [this](const QModelIndex& index) {
    if (index.column() == checkColumn_) Q_EMIT toggleRequested(index);
  };
  connect(this, &QAbstractItemView::clicked, this, toggle);
  // The second of two quick clicks is a click on a box, too.
  connect(this, &QAbstractItemView::doubleClicked, this, toggle);
}

void EntryTable::setEntries(QAbstractItemModel* entries, int stretchedColumn) {
  setModel(entries);
  QHeaderView* header = horizontalHeader();
  header->setMinimumSectionSize(kCheckWidth);
  for (int column = 0; column < entries->columnCount(); ++column) {
    header->setSectionResizeMode(column, column == checkColumn_      ? QHeaderView::Fixed
                                         : column == stretchedColumn ? QHeaderView::Stretch
                                                                     : QHeaderView::Interactive);
    if (column != stretchedColumn)
      header->resizeSection(column, column == checkColumn_ ? kCheckWidth : kSizeWidth);
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
