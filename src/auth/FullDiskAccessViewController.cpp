#include "FullDiskAccessViewController.h"

#include "FullDiskAccessAuthorizer.h"
#include "LocalizedString.h"
#include "TitleBar.h"
#include "ui_FullDiskAccessViewController.h"

namespace brisko {

FullDiskAccessViewController::FullDiskAccessViewController(QWidget* parent)
    : PanelWindow(parent), aWindow(this), titleBarView(PanelWindow::titleBarView()) {
  setObjectName(QStringLiteral("FullDiskAccessViewController"));
  Ui::FullDiskAccessViewController ui;
  ui.setupUi(contentView());
  titleLabel = ui.titleLabel;
  ui.imageView->setImageName("ill_shield");
  ui.imageView->setImageSide(128);
  setWindowTitle(titleLabel->text());
  setAccessibleName(titleLabel->text());
  connect(ui.openSetViewButton, &QPushButton::clicked, this,
          &FullDiskAccessViewController::openSetView);
  connect(ui.closeButton, &QPushButton::clicked, this, &FullDiskAccessViewController::closeWindow);
  ui.openSetViewButton->setFocus();
  awakeFromNib();
}

void FullDiskAccessViewController::awakeFromNib() {
  titleBarView->setFixedHeight(TitleBar::kLowHeight);
  titleBarView->disconnect(this);
  connect(titleBarView, &TitleBar::closeRequested, this,
          &FullDiskAccessViewController::closeWindow);
  center();
}

void FullDiskAccessViewController::openSetView() {
  FullDiskAccessAuthorizer::sharedInstance().requestAuthorization();
}

void FullDiskAccessViewController::closeWindow() {
  aWindow->done(0);
}

}  // namespace brisko
