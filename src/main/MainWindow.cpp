#include "MainWindow.h"

#include "ImageLookup.h"
#include "LeftViewCtl.h"
#include "Theme.h"
#include "TitleBar.h"
#include "WindowChrome.h"

#include <QCloseEvent>
#include <QPainter>
#include <QScreen>

namespace brisko {

MainWindow::MainWindow()
    : chrome_(new WindowChrome(this, WindowChrome::resizable)),
      titleBar_(new TitleBar(TitleBar::minimiseAndZoom | TitleBar::withMenu, this)),
      content_(new QWidget(this)) {
  setObjectName(QStringLiteral("mainWindow"));
  content_->setObjectName(QStringLiteral("contentView"));
  // Takes the focus at first, so that no control is marked before the keyboard is used.
  setFocusPolicy(Qt::ClickFocus);
  setFocus();
  setWindowTitle(QStringLiteral("Brisko"));
  setWindowIcon(ImageLookup::icon("brisko"));
  setMinimumSize(LeftViewCtl::kWidth + 700, TitleBar::kLowHeight + 626);
  resize(LeftViewCtl::kWidth + kPageWidth, TitleBar::kLowHeight + kContentHeight);
}

void MainWindow::center() {
  QRect frame(QPoint(0, 0), size());
  frame.moveCenter(screen()->availableGeometry().center());
  move(frame.topLeft());
}

void MainWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  chrome_->paintGround(&painter);
}

void MainWindow::resizeEvent(QResizeEvent*) {
  const int top = titleBar_->height();
  titleBar_->setGeometry(0, 0, width(), top);
  content_->setGeometry(0, top, width(), height() - top);
  Q_EMIT contentResized();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  // Whoever closes the window (a key, the window list of the desktop), it goes the same way.
  event->ignore();
  Q_EMIT closeRequested();
}

}  // namespace brisko
