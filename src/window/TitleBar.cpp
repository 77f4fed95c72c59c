#include "TitleBar.h"

#include "FocusRing.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace brisko {
namespace {

constexpr qreal kCornerRadius = 11;

struct ButtonFacts {
  const char* objectName;
  const char* accessibleName;
  const char* image;
};

const ButtonFacts& factsOf(TitleBarButton::Kind kind) {
  static constexpr ButtonFacts kFacts[] = {{"closeButton", "Close", "ic_close"},
                                           {"minimiseButton", "Minimise", "ic_minimise"},
                                           {"zoomButton", "Zoom", "ic_zoom"},
                                           {"menuButton", "Menu", "ic_menu"},
                                           {"panelButton", "Quick Panel", "ic_status"}};
  return kFacts[static_cast<int>(kind)];
}

}  // namespace

TitleBarButton::TitleBarButton(Kind kind, QWidget* parent) : QAbstractButton(parent), kind_(kind) {
  setObjectName(QLatin1String(factsOf(kind).objectName));
  setAccessibleName(getLocalizedString(factsOf(kind).accessibleName));
  setToolTip(accessibleName());
  setFocusPolicy(Qt::TabFocus);
  resize(sizeHint());
}

QSize TitleBarButton::sizeHint() const {
  return isSquare() ? QSize(26, 20) : QSize(14, 14);
}

void TitleBarButton::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void TitleBarButton::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

void TitleBarButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const bool lively = underMouse() || isDown();
  const qreal radius = isSquare() ? 6 : width() / 2.0;
  const bool warns = lively && kind_ == Kind::close;
  if (lively || !isSquare()) {
    painter.setBrush(themeColor(warns ? Theme::Token::danger : Theme::Token::pressed));
    painter.drawRoundedRect(rect(), radius, radius);
  }
  const int side = isSquare() ? 18 : 10;
  QRectF area(0, 0, side, side);
  area.moveCenter(QRectF(rect()).center());
  ImageLookup::paint(&painter, factsOf(kind_).image, area,
                     themeColor(warns ? Theme::Token::window : Theme::Token::textSecondary));
  if (hasFocus()) drawFocusRing(&painter, rect(), radius - 1);
}

TitleBar::TitleBar(unsigned buttons, QWidget* parent) : QWidget(parent) {
  setFixedHeight(kDefaultHeight);
  close_ = new TitleBarButton(TitleBarButton::Kind::close, this);
  connect(close_, &QAbstractButton::clicked, this, &TitleBar::closeRequested);
  if ((buttons & minimiseAndZoom) != 0) {
    minimise_ = new TitleBarButton(TitleBarButton::Kind::minimise, this);
    zoom_ = new TitleBarButton(TitleBarButton::Kind::zoom, this);
    connect(minimise_, &QAbstractButton::clicked, this, [this] { window()->showMinimized(); });
    connect(zoom_, &QAbstractButton::clicked, this, &TitleBar::zoom);
  }
  if ((buttons & withMenu) != 0) {
    menu_ = new TitleBarButton(TitleBarButton::Kind::menu, this);
    connect(menu_, &QAbstractButton::clicked, this, &TitleBar::menuRequested);
    panel_ = new TitleBarButton(TitleBarButton::Kind::panel, this);
    panel_->hide();
    connect(panel_, &QAbstractButton::clicked, this, &TitleBar::panelRequested);
  }
  layOutButtons();
}

void TitleBar::moveButtons(int points) {
  shift_ += points;
  layOutButtons();
}

void TitleBar::setGround(std::string left, int width, std::string right) {
  leftGround_ = std::move(left);
  leftWidth_ = width;
  rightGround_ = std::move(right);
  update();
}

void TitleBar::paintEvent(QPaintEvent*) {
  if (leftGround_.empty()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool isZoomed = window()->isMaximized() || window()->isFullScreen();
  if (!isZoomed && window()->testAttribute(Qt::WA_TranslucentBackground)) {
    // Only the window's upper corners are round: the clip reaches below the bar.
    QPainterPath corners;
    corners.addRoundedRect(QRectF(1, 1, width() - 2, height() + 40), kCornerRadius, kCornerRadius);
    painter.setClipPath(corners);
  }
  ImageLookup::paint(&painter, leftGround_, QRectF(0, 0, leftWidth_, height()));
  ImageLookup::paint(&painter, rightGround_, QRectF(leftWidth_, 0, width() - leftWidth_, height()));
  painter.setPen(themeColor(Theme::Token::border));
  painter.drawLine(QPointF(leftWidth_ - 0.5, 0), QPointF(leftWidth_ - 0.5, height()));
}

void TitleBar::layOutButtons() {
  constexpr int kTop = 8;
  int x = Space::medium;
  for (QAbstractButton* button : {close_, minimise_, zoom_}) {
    if (button == nullptr) continue;
    button->move(x, kTop + shift_);
    x += button->width() + Space::small;
  }
  if (menu_ != nullptr) {
    menu_->move(width() - Space::medium - menu_->width(), (height() - menu_->height()) / 2 + 1);
    panel_->move(menu_->x() - Space::tiny - panel_->width(), menu_->y());
  }
}

void TitleBar::resizeEvent(QResizeEvent*) {
  layOutButtons();
}

void TitleBar::zoom() {
  window()->isMaximized() ? window()->showNormal() : window()->showMaximized();
}

void TitleBar::mouseDoubleClickEvent(QMouseEvent* event) {
  if (zoom_ != nullptr && event->button() == Qt::LeftButton) zoom();
}

}  // namespace brisko
