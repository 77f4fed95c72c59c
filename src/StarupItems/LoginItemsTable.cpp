#include "LoginItemsTable.h"

#include "ApplicationIcon.h"
#include "EntryTable.h"
#include "FocusRing.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "StartupItemsModel.h"
#include "SystemLog.h"
#include "Theme.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>

namespace brisko {
namespace {

constexpr int kKindWidth = 132;
constexpr int kBoxWidth = 88;
constexpr int kIconSide = 24;

void drawImage(QPainter* painter, const char* name, const QRectF& cell, Theme::Token tint) {
  QRectF area(0, 0, 20, 20);
  area.moveCenter(cell.center());
  ImageLookup::paint(painter, name, area, themeColor(tint));
}

}  // namespace

void LoginItemsTableModel::reloadData(const std::vector<ASLoginStartItem>& items) {
  beginResetModel();
  items_ = items;
  endResetModel();
}

int LoginItemsTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

int LoginItemsTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count;
}

QVariant LoginItemsTableModel::data(const QModelIndex& index, int role) const {
  const ASLoginStartItem& item = items_.at(static_cast<std::size_t>(index.row()));
  const auto text = [](const std::string& bytes) {
    return QString::fromStdString(escapedForDisplay(bytes));
  };
  if (role == PathRole) return QByteArray::fromStdString(item.path);
  if (role == ImageNameRole && index.column() == name) return QString::fromStdString(item.image);
  if (role == ImageNameRole && index.column() == hide) {
    return QLatin1String(StartupItemsModel::hideImage(item));
  }
  if (role == Qt::ToolTipRole && index.column() == name) return text(item.path).toHtmlEscaped();
  if (role == Qt::AccessibleTextRole && index.column() == hide) {
    return getLocalizedString(item.bIsSelected ? "Starts hidden" : "Starts in the foreground");
  }
  if (role == Qt::AccessibleTextRole && index.column() == remove) {
    return filledIn(getLocalizedString("Remove %@"), text(item.name));
  }
  if (role == Qt::ToolTipRole && index.column() == hide) {
    return getLocalizedString("Start it without a window in front, where it can");
  }
  if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole) return {};
  if (index.column() == name) return text(item.name);
  if (index.column() == kind) return text(item.subName);
  return {};
}

QVariant LoginItemsTableModel::headerData(int section, Qt::Orientation orientation,
                                          int role) const {
  static constexpr const char* kTitles[count] = {"Name", "Kind", "Hide", "Remove"};
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole) return getLocalizedString(kTitles[section]);
  if (role == Qt::TextAlignmentRole) {
    return section >= hide ? static_cast<int>(Qt::AlignCenter)
                           : static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
  }
  return {};
}

void LoginItemsDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
  painter->save();
  const bool isSelected = (option.state & QStyle::State_Selected) != 0;
  if (isSelected) painter->fillRect(option.rect, themeColor(Theme::Token::accentSoft));
  painter->setPen(themeColor(Theme::Token::border));
  painter->setOpacity(0.6);
  painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
  painter->setOpacity(1);
  QRect area = option.rect.adjusted(Space::large, 0, -Space::small, 0);
  switch (index.column()) {
    case LoginItemsTableModel::hide:
      drawImage(painter, index.data(ImageNameRole).toString().toUtf8().constData(), option.rect,
                Theme::Token::accent);
      break;
    case LoginItemsTableModel::remove: {
      const bool isOver = (option.state & QStyle::State_MouseOver) != 0;
      drawImage(painter, "ic_trash", option.rect,
                isOver ? Theme::Token::danger : Theme::Token::textSecondary);
      break;
    }
    case LoginItemsTableModel::name: {
      const QRect place(area.left(), area.center().y() - kIconSide / 2 + 1, kIconSide, kIconSide);
      const QIcon& icon = applicationIcon(index.data(ImageNameRole).toString().toStdString());
      if (icon.isNull()) {
        ImageLookup::paint(painter, "ic_window", QRectF(place).adjusted(2, 2, -2, -2));
      } else {
        icon.paint(painter, place);
      }
      area.setLeft(place.right() + Space::medium);
      [[fallthrough]];
    }
    default:
      painter->setFont(Theme::shared().font(13));
      painter->setPen(
          themeColor(index.column() == 0 ? Theme::Token::text : Theme::Token::textSecondary));
      painter->drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideMiddle,
                                                          area.width()));
  }
  painter->restore();
}

LoginItemsTable::LoginItemsTable(QWidget* parent) : QTableView(parent) {
  setItemDelegate(new LoginItemsDelegate(this));
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(kRowHeight);
  horizontalHeader()->setFixedHeight(40);
  horizontalHeader()->setHighlightSections(false);
  setShowGrid(false);
  setFrameShape(QFrame::NoFrame);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setMouseTracking(true);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void LoginItemsTable::setItems(LoginItemsTableModel* items) {
  setModel(items);
  QHeaderView* header = horizontalHeader();
  header->setSectionResizeMode(LoginItemsTableModel::name, QHeaderView::Stretch);
  header->resizeSection(LoginItemsTableModel::kind, kKindWidth);
  header->resizeSection(LoginItemsTableModel::hide, kBoxWidth);
  header->resizeSection(LoginItemsTableModel::remove, kBoxWidth);
}

void LoginItemsTable::keyPressEvent(QKeyEvent* event) {
  const bool isPlain = event->modifiers() == Qt::NoModifier && currentIndex().isValid();
  if (isPlain && event->key() == Qt::Key_Space) {
    Q_EMIT hideRequested(currentIndex().row());
  } else if (isPlain && (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)) {
    Q_EMIT removeRequested(currentIndex().row());
  } else {
    QTableView::keyPressEvent(event);
  }
}

void LoginItemsTable::mousePressEvent(QMouseEvent* event) {
  QTableView::mousePressEvent(event);
  pressed_ =
      event->button() == Qt::LeftButton ? indexAt(event->position().toPoint()) : QModelIndex();
}

void LoginItemsTable::mouseReleaseEvent(QMouseEvent* event) {
  QTableView::mouseReleaseEvent(event);
  const QModelIndex released = indexAt(event->position().toPoint());
  const bool isClick = released.isValid() && released == pressed_;
  pressed_ = QModelIndex();
  if (!isClick) return;
  if (released.column() == LoginItemsTableModel::hide) Q_EMIT hideRequested(released.row());
  if (released.column() == LoginItemsTableModel::remove) Q_EMIT removeRequested(released.row());
}

void LoginItemsTable::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (!hasFocus() || !currentIndex().isValid()) return;
  QPainter painter(viewport());
  QRect row = visualRect(currentIndex());
  row.setLeft(0);
  row.setRight(viewport()->width() - 1);
  drawFocusRing(&painter, row, 6);
}

}  // namespace brisko
