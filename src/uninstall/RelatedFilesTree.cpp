#include "RelatedFilesTree.h"

#include "AppIcon.h"
#include "EntryTable.h"
#include "LocalizedString.h"
#include "RelatedFilesModel.h"
#include "fileAttrbItem.h"

#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>

namespace brisko {
namespace {

using ItemRole = AMAppItem::Role;

QString bundleTag(const AMAppItem& entry) {
  const std::string_view extension = pathExtension(entry.path);
  if (extension == "app") return getLocalizedString("Application");
  if (extension == "wdgt") return getLocalizedString("Widget");
  if (entry.host) return getLocalizedString("Program");
  return getLocalizedString(extension == "desktop" ? "Menu entry" : "Plug-in");
}

QString tagOf(const AMAppItem& entry) {
  switch (entry.role) {
    case ItemRole::bundle:
      return bundleTag(entry);
    case ItemRole::relatedFile:
      return getLocalizedString("Related file");
    case ItemRole::package:
      return getLocalizedString("Package");
    case ItemRole::packageAlong:
      return getLocalizedString("Goes with it");
  }
  return {};
}

QString warningOf(const AMAppItem& entry) {
  if (!entry.sharedWith.empty()) {
    return filledIn(getLocalizedString("Also fits %@"), displayText(entry.sharedWith));
  }
  return displayText(entry.note);
}

QString spokenBox(std::string_view image) {
  if (image == "disable") return getLocalizedString("stays");
  if (image == "unsel") return getLocalizedString("not selected");
  return getLocalizedString(image == "sel" ? "selected" : "partly selected");
}

class ReviewDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return {40, RelatedFilesOutline::kRowHeight};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintRowGround(painter, option.rect, (option.state & QStyle::State_Selected) != 0);
    if (index.column() == RelatedFilesTree::CheckBox) {
      paintBox(painter, option.rect, index);
    } else if (index.column() == RelatedFilesTree::Name) {
      paintName(painter, option.rect, index);
    } else {
      painter->setFont(Theme::shared().font(12));
      painter->setPen(themeColor(Theme::Token::textSecondary));
      painter->drawText(option.rect.adjusted(0, 0, -Space::large, 0),
                        Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                        index.data().toString());
    }
    painter->restore();
  }

 private:
  static void paintName(QPainter* painter, const QRect& rect, const QModelIndex& index) {
    const bool isGroup = !index.parent().isValid();
    const auto* item =
        static_cast<const AMAppItem*>(index.data(RelatedFilesTree::ItemRole).value<const void*>());
    QRect area = rect.adjusted(Space::tiny, 0, -Space::small, 0);
    const int side = isGroup ? 26 : 22;
    if (item != nullptr) {
      paintAppIcon(painter, QRectF(area.left(), area.center().y() - side / 2.0 + 0.5, side, side),
                   *item);
    }
    area.setLeft(area.left() + side + Space::medium);
    // Tags stand beside the name, so that the place below has the whole width.
    QRect upper = area.adjusted(0, 5, 0, -area.height() / 2 + 1);
    const bool isRelated = item != nullptr && item->role == AMAppItem::Role::relatedFile;
    const QString tag = index.data(RelatedFilesTree::TagRole).toString();
    if (!tag.isEmpty()) {
      paintTag(painter, upper, tag, isRelated ? Theme::Token::textDimmed : Theme::Token::accent);
    }
    const QString warning = index.data(RelatedFilesTree::WarningRole).toString();
    if (!warning.isEmpty()) {
      painter->setFont(Theme::shared().font(11, QFont::DemiBold));
      const QString cut =
          painter->fontMetrics().elidedText(warning, Qt::ElideRight, upper.width() * 2 / 3);
      paintTag(painter, upper, cut, Theme::Token::warning);
    }
    painter->setFont(Theme::shared().font(13, isGroup ? QFont::DemiBold : QFont::Normal));
    painter->setPen(themeColor(Theme::Token::text));
    drawElided(painter, upper, index.data().toString(), Qt::ElideMiddle);
    painter->setFont(Theme::shared().font(11));
    painter->setPen(themeColor(Theme::Token::textDimmed));
    drawElided(painter, area.adjusted(0, area.height() / 2 + 1, 0, -6),
               index.data(RelatedFilesTree::PlaceRole).toString(), Qt::ElideMiddle);
  }

  static void drawElided(QPainter* painter, const QRect& area, const QString& text,
                         Qt::TextElideMode mode) {
    painter->drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      painter->fontMetrics().elidedText(text, mode, area.width()));
  }
};

}  // namespace

RelatedFilesTree::RelatedFilesTree(RelatedFilesModel& model, QObject* parent)
    : QAbstractItemModel(parent), model_(model) {
  reloadData();
}

void RelatedFilesTree::reloadData() {
  beginResetModel();
  rows_.clear();
  for (const ReviewGroup& group : model_.allRelaltedFiles())
    rows_.push_back(static_cast<int>(group.entries.size()));
  endResetModel();
}

void RelatedFilesTree::groupFilled(std::size_t group) {
  if (group >= rows_.size()) return;
  const QModelIndex at = index(static_cast<int>(group), CheckBox);
  const int rows = static_cast<int>(model_.allRelaltedFiles()[group].entries.size());
  if (rows > 0) {
    beginInsertRows(at, 0, rows - 1);
    rows_[group] = rows;
    endInsertRows();
  }
  Q_EMIT dataChanged(at, index(at.row(), count - 1));
}

void RelatedFilesTree::rowsChanged() {
  const int groups = rowCount();
  if (groups == 0) return;
  Q_EMIT dataChanged(index(0, CheckBox), index(groups - 1, count - 1));
  for (int group = 0; group < groups; ++group) {
    const QModelIndex at = index(group, CheckBox);
    if (const int rows = rowCount(at); rows > 0) {
      Q_EMIT dataChanged(index(0, CheckBox, at), index(rows - 1, count - 1, at));
    }
  }
}

int RelatedFilesTree::groupOf(const QModelIndex& index) {
  return index.internalId() == 0 ? index.row() : static_cast<int>(index.internalId()) - 1;
}

int RelatedFilesTree::entryOf(const QModelIndex& index) {
  return index.internalId() == 0 ? -1 : index.row();
}

QModelIndex RelatedFilesTree::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return createIndex(row, column,
                     parent.isValid() ? static_cast<quintptr>(parent.row() + 1) : quintptr{0});
}

QModelIndex RelatedFilesTree::parent(const QModelIndex& index) const {
  if (!index.isValid() || index.internalId() == 0) return {};
  return createIndex(groupOf(index), 0, quintptr{0});
}

int RelatedFilesTree::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(rows_.size());
  if (parent.internalId() != 0 || parent.column() > 0) return 0;
  return rows_[static_cast<std::size_t>(parent.row())];
}

int RelatedFilesTree::columnCount(const QModelIndex&) const {
  return count;
}

QVariant RelatedFilesTree::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(index.column() == Size ? Qt::AlignRight : Qt::AlignLeft);
  }
  return entryOf(index) < 0 ? groupData(index, role) : entryData(index, role);
}

QVariant RelatedFilesTree::groupData(const QModelIndex& index, int role) const {
  const auto group = static_cast<std::size_t>(index.row());
  const ReviewGroup& shown = model_.allRelaltedFiles()[group];
  switch (role) {
    case Qt::DisplayRole:
      if (index.column() == Name) return displayText(shown.title);
      if (index.column() == Size && shown.isReady) {
        return QString::fromStdString(model_.sizeText(group));
      }
      return {};
    case ImageNameRole:
      return index.column() == CheckBox ? QLatin1String(model_.boxImage(group)) : QString();
    case Qt::AccessibleTextRole:
      return index.column() == CheckBox ? spokenBox(model_.boxImage(group)) : QVariant();
    case ItemRole:
      return QVariant::fromValue(static_cast<const void*>(shown.item.get()));
    case PlaceRole: {
      if (!shown.isReady) return getLocalizedString("Looking for what belongs to it…");
      const std::size_t entries = shown.entries.size();
      return filledIn(getLocalizedString(entries == 1 ? "%@ entry" : "%@ entries"),
                      QString::number(entries));
    }
    case WarningRole:
      return shown.isRunning ? getLocalizedString("Running") : QVariant();
    default:
      return {};
  }
}

QVariant RelatedFilesTree::entryData(const QModelIndex& index, int role) const {
  const ReviewGroup& group = model_.allRelaltedFiles()[static_cast<std::size_t>(groupOf(index))];
  const AppItem& entry = group.entries[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
      if (index.column() == Name) return displayText(entry->name);
      return index.column() == Size ? QString::fromStdString(entry->size) : QString();
    case ImageNameRole:
      return index.column() == CheckBox ? QLatin1String(model_.boxImage(entry)) : QString();
    case Qt::AccessibleTextRole:
      if (index.column() == CheckBox) return spokenBox(model_.boxImage(entry));
      return index.column() == Name
                 ? QStringList{displayText(entry->name), tagOf(*entry), warningOf(*entry)}.join(
                       QStringLiteral(", "))
                 : QVariant();
    case Qt::ToolTipRole: {
      if (index.column() != Name) return {};
      const QString warning = warningOf(*entry);
      return toolTipText(displayText(entry->path) +
                         (warning.isEmpty() ? QString() : QStringLiteral(" – ") + warning));
    }
    case ItemRole:
      return QVariant::fromValue(static_cast<const void*>(entry.get()));
    case PlaceRole:
      return displayText(entry->path);
    case TagRole:
      return tagOf(*entry);
    case WarningRole:
      return warningOf(*entry);
    default:
      return {};
  }
}

QVariant RelatedFilesTree::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  if (section == Name) return getLocalizedString("Name");
  return section == Size ? getLocalizedString("Size") : QString();
}

RelatedFilesOutline::RelatedFilesOutline(QWidget* parent) : CheckOutline(parent) {
  setItemDelegate(new ReviewDelegate(this));
  setHeaderHidden(true);
}

void RelatedFilesOutline::setTree(RelatedFilesTree* tree) {
  setModel(tree);
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(RelatedFilesTree::Name, QHeaderView::Stretch);
  header()->setSectionResizeMode(RelatedFilesTree::CheckBox, QHeaderView::Fixed);
  header()->setSectionResizeMode(RelatedFilesTree::Size, QHeaderView::Fixed);
  header()->resizeSection(RelatedFilesTree::CheckBox, 52);
  header()->resizeSection(RelatedFilesTree::Size, 104);
}

}  // namespace brisko
