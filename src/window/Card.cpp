#include "Card.h"

#include "FocusRing.h"
#include "ImageLookup.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace brisko {
namespace {

void paintGround(QPainter* painter, const QRect& rect, Theme::Token fill, Theme::Token line) {
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(QPen(themeColor(line), 1));
  painter->setBrush(themeColor(fill));
  painter->drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), kCardRadius, kCardRadius);
}

}  // namespace

Card::Card(QWidget* parent) : QFrame(parent) {}

void Card::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintGround(&painter, rect(), Theme::Token::card, Theme::Token::border);
}

CardButton::CardButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void CardButton::setImageName(std::string name) {
  image_ = std::move(name);
  update();
}

void CardButton::setSentence(const QString& sentence) {
  sentence_ = sentence;
  setAccessibleDescription(sentence);
  update();
}

void CardButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QAbstractButton::keyPressEvent(event);
}

void CardButton::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void CardButton::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

void CardButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const bool lively = underMouse() || isDown();
  paintGround(&painter, rect(), lively ? Theme::Token::cardHover : Theme::Token::card,
              lively ? Theme::Token::accent : Theme::Token::border);

  const QRectF tile(Space::large, Space::large, 40, 40);
  painter.setPen(Qt::NoPen);
  painter.setBrush(themeColor(Theme::Token::accentSoft));
  painter.drawRoundedRect(tile, 11, 11);
  ImageLookup::paint(&painter, image_, tile.adjusted(8, 8, -8, -8));

  const qreal left = tile.right() + Space::medium;
  const qreal width = this->width() - left - Space::large;
  painter.setPen(themeColor(Theme::Token::text));
  painter.setFont(Theme::shared().font(14, QFont::DemiBold));
  painter.drawText(QRectF(left, Space::large, width, 20), Qt::AlignLeft | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(text(), Qt::ElideRight, int(width)));
  painter.setPen(themeColor(Theme::Token::textSecondary));
  painter.setFont(Theme::shared().font(12));
  painter.drawText(QRectF(left, Space::large + 24, width, height() - Space::large - 28.0),
                   Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, sentence_);
  if (hasFocus()) drawFocusRing(&painter, rect(), kCardRadius);
}

}  // namespace brisko
