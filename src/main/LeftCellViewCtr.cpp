#include "LeftCellViewCtr.h"

#include "ImageView.h"
#include "LeftViewCtl.h"
#include "Theme.h"
#include "ViewMan.h"
#include "ui_LeftCellView.h"

#include <QLabel>

namespace brisko {

LeftCellViewCtr::LeftCellViewCtr(QObject* parent)
    : QObject(parent), ui_(std::make_unique<Ui::LeftCellView>()), view_(new LeftCellView) {
  ui_->setupUi(view_);
  iconImageView = ui_->iconImageView;
  nameLabel = ui_->nameLabel;
  selectBgImageView = ui_->selectBgImageView;
  for (QWidget* part : {static_cast<QWidget*>(nameLabel), selectBgImageView}) {
    part->setAttribute(Qt::WA_TransparentForMouseEvents);
  }
  iconImageView->setImageSide(20);
}

LeftCellViewCtr::~LeftCellViewCtr() = default;

void LeftCellViewCtr::setItem(const std::shared_ptr<LeftCellItem>& item) {
  dictItem = item;
  view_->dictItem = item;
  view_->delegate = this;
  view_->setObjectName(QStringLiteral("cell%1").arg(item->CellID));
  view_->setAccessibleName(item->CellName);
  nameLabel->setText(item->CellName);
}

void LeftCellViewCtr::refreshCellView() {
  const bool isSelected = dictItem->CellSelected;
  selectBgImageView->setVisible(isSelected);
  iconImageView->setImageName(isSelected ? dictItem->CellSelIcon : dictItem->CellIcon);
  nameLabel->setFont(Theme::shared().font(13, isSelected ? QFont::DemiBold : QFont::Medium));
  const QColor ink = themeColor(isSelected ? Theme::Token::accent : Theme::Token::textSecondary);
  nameLabel->setStyleSheet(QStringLiteral("color: %1").arg(ink.name()));
  view_->setChecked(isSelected);
  view_->update();
}

void LeftCellViewCtr::mouseDown(QMouseEvent*) {
  // A press by an assistive tool has already flipped the cell; what is selected decides.
  view_->setChecked(dictItem->CellSelected);
  if (!ViewMan::returnViewMan().checkCanClick(dictItem->CellID)) return;
  if (delegate != nullptr) delegate->selectCellView(dictItem);
}

}  // namespace brisko
