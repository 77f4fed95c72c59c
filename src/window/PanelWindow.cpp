#include "PanelWindow.h"

#include "Theme.h"
#include "TitleBar.h"
#include "WindowChrome.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

namespace brisko {

PanelWindow::PanelWindow(QWidget* parent)
    : QDialog(parent),
      chrome_(new WindowChrome(this, WindowChrome::none)),
      titleBar_(new TitleBar(TitleBar::closeOnly, this)),
      content_(new QWidget) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(titleBar_);
  layout->addWidget(content_);
  connect(titleBar_, &TitleBar::closeRequested, this, &QDialog::reject);
}

void PanelWindow::center() {
  adjustSize();
  const QWidget* over = parentWidget() != nullptr && parentWidget()->window()->isVisible()
                            ? parentWidget()->window()
                            : nullptr;
  const QRect area = over != nullptr ? over->frameGeometry()
                                     : QGuiApplication::primaryScreen()->availableGeometry();
  QRect frame(QPoint(0, 0), size());
  frame.moveCenter(area.center());
  move(frame.topLeft());
}

void PanelWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  chrome_->paintGround(&painter);
}

void PanelWindow::showEvent(QShowEvent* event) {
  center();
  QDialog::showEvent(event);
}

}  // namespace brisko
