#include "FastTypeView.h"

#include "FastCleanModel.h"
#include "FastCleanViewController.h"
#include "LocalizedString.h"
#include "Theme.h"
#include "ui_FastTypeView.h"

#include <QPainter>

namespace brisko {

FastTypeView::FastTypeView(FastCleanViewController* controller, int category, QWidget* parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::FastTypeView>()),
      delegate(controller),
      tag(category) {
  ui_->setupUi(this);
  setObjectName(QStringLiteral("fastTypeView%1").arg(category));
  setFixedHeight(kHeight);
  iconImageView = ui_->iconImageView;
  titleLabel = ui_->titleLabel;
  subTitleLabel = ui_->subTitleLabel;
  checkBox = ui_->checkBox;
  sizeLabel = ui_->sizeLabel;
  loadingView = ui_->loadingView;
  loadingImageView = ui_->loadingImageView;
  detailButton = ui_->detailButton;
  iconImageView->setTile(true);
  iconImageView->setImageSide(24);
  // What is hidden keeps its place, so that nothing moves while rows change their state.
  for (QWidget* part :
       {static_cast<QWidget*>(checkBox), loadingView, static_cast<QWidget*>(detailButton)}) {
    QSizePolicy policy = part->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    part->setSizePolicy(policy);
  }
  connect(checkBox, &QAbstractButton::clicked, this,
          [this] { delegate->checkBoxButtonAction(tag); });
  connect(detailButton, &QAbstractButton::clicked, this,
          [this] { delegate->detailButtonAction(tag); });
}

FastTypeView::~FastTypeView() = default;

void FastTypeView::show(const FastTypeRow& row) {
  bSelect = row.bSelect;
  const QString title = getLocalizedString(row.title.c_str());
  iconImageView->setImageName(row.icon);
  titleLabel->setText(title);
  subTitleLabel->setText(getLocalizedString(row.subTitle.c_str()));
  checkBox->setAccessibleName(title);
  checkBox->setImageName(row.checkBoxImage.empty() ? "unsel" : row.checkBoxImage);
  checkBox->setEnabled(row.checkBoxEnabled);
  checkBox->setVisible(row.checkBoxShown);
  loadingView->setVisible(row.loadingShown);
  sizeLabel->setText(QString::fromStdString(row.size));
  sizeLabel->setProperty("role",
                         row.sizeIsDimmed ? QStringLiteral("caption") : QStringLiteral("strong"));
  sizeLabel->setFont(Theme::shared().font(13, row.sizeIsDimmed ? QFont::Normal : QFont::DemiBold));
  sizeLabel->setStyleSheet(
      QStringLiteral("color: %1")
          .arg(
              themeColor(row.sizeIsDimmed ? Theme::Token::textDimmed : Theme::Token::text).name()));
  detailButton->setVisible(row.detailButtonShown);
  detailButton->setEnabled(row.detailButtonEnabled);
  detailButton->setAccessibleName(filledIn(getLocalizedString("Details of %@"), title));
}

void FastTypeView::paintEvent(QPaintEvent*) {
  if (tag == 0) return;
  QPainter painter(this);
  painter.setPen(themeColor(Theme::Token::border));
  painter.drawLine(QPointF(Space::large, 0.5), QPointF(width() - Space::large, 0.5));
}

}  // namespace brisko
