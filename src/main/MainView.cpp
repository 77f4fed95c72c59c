#include "MainView.h"

#include "Theme.h"

#include <QPainter>

namespace brisko {
namespace {

constexpr int kCornerInset = 12;

}  // namespace

void MainView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  // Short of the window's edge, which is round and not this view's to draw.
  painter.fillRect(rect().adjusted(0, 0, -1, -kCornerInset), themeColor(Theme::Token::window));
}

}  // namespace brisko
