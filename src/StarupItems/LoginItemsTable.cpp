#include "LoginItemsTable.h"

#include "ApplicationIcon.h"
#include "LocalizedString.h"
#include "StartupItemsModel.h"

#include <QKeyEvent>

namespace brisko {
namespace {

using Column = LoginItemsTableModel::Column;

constexpr int kButtonWidth = 88;

class LoginItemsDelegate : public EntryDelegate {
 public:
  using EntryDelegate::EntryDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    if (index.column() != Column::remove) return EntryDelegate::paint(painter, option, index);
    paintRowButton(painter, option, "ic_trash");
  }
};

}  // namespace

void LoginItemsTableModel::reloadData(const std::vector<ASLoginStartItem>& items) {
  beginResetModel();
  items_ = items;
  endResetModel();
}

std::string LoginItemsTableModel::path(int row) const {
  const auto at = static_cast<std::size_t>(row);
  return at < items_.size() ? items_[at].path : "";
}

int LoginItemsTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

int LoginItemsTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count;
}

QVariant LoginItemsTableModel::text(const ASLoginStartItem& item, int column) const {
  if (column == name) return displayText(item.name);
  return column == kind ? QVariant(displayText(item.subName)) : QVariant();
}

QVariant LoginItemsTableModel::accessibleText(const ASLoginStartItem& item, int column) const {
  if (column == hide) {
    return getLocalizedString(item.bIsSelected ? "Starts hidden" : "Starts in the foreground");
  }
  if (column == remove) return filledIn(getLocalizedString("Remove %@"), displayText(item.name));
  return text(item, column);
}

QVariant LoginItemsTableModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const ASLoginStartItem& item = items_[static_cast<std::size_t>(index.row())];
  const int column = index.column();
  switch (role) {
    case Qt::DisplayRole:
      return text(item, column);
    case Qt::AccessibleTextRole:
      return accessibleText(item, column);
    case Qt::DecorationRole:
      return column == name ? QVariant(applicationIcon(item.image)) : QVariant();
    case ImageNameRole:
      if (column == name) return QStringLiteral("ic_window");
      return column == hide ? QVariant(QLatin1String(StartupItemsModel::hideImage(item)))
                            : QVariant();
    case Qt::ToolTipRole:
      if (column == name) return toolTipText(displayText(item.path));
      if (column != hide) return {};
      return getLocalizedString("Start it without a window in front, where it can");
    default:
      return {};
  }
}

QVariant LoginItemsTableModel::headerData(int section, Qt::Orientation orientation,
                                          int role) const {
  static constexpr const char* kTitles[count] = {"Name", "Kind", "Hide", "Remove"};
  if (orientation != Qt::Horizontal || section < 0 || section >= count) return {};
  if (role == Qt::DisplayRole) return getLocalizedString(kTitles[section]);
  if (role != Qt::TextAlignmentRole) return {};
  return static_cast<int>(section >= hide ? Qt::AlignHCenter : Qt::AlignLeft);
}

LoginItemsTable::LoginItemsTable(QWidget* parent) : EntryTable(parent, Column::hide) {
  setItemDelegate(new LoginItemsDelegate(this, Column::hide));
  setMouseTracking(true);
  connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
    if (index.column() == Column::remove) Q_EMIT removeRequested(index.row());
  });
}

void LoginItemsTable::setItems(LoginItemsTableModel* items) {
  setEntries(items, Column::name);
  for (const Column button : {Column::hide, Column::remove}) {
    horizontalHeader()->setSectionResizeMode(button, QHeaderView::Fixed);
    horizontalHeader()->resizeSection(button, kButtonWidth);
  }
}

void LoginItemsTable::keyPressEvent(QKeyEvent* event) {
  const bool isDelete = event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace;
  if (!isDelete || event->modifiers() != Qt::NoModifier || !currentIndex().isValid()) {
    EntryTable::keyPressEvent(event);
    return;
  }
  // A key that is held down takes one row, not all of them.
  if (!event->isAutoRepeat()) Q_EMIT removeRequested(currentIndex().row());
}

}  // namespace brisko
