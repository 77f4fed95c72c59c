#include "SwitchTile.h"

#include "FocusRing.h"
#include "ImageLookup.h"
#include "Theme.h"

#include <QPainter>

#include <utility>

namespace brisko {
namespace {

using Token = Theme::Token;

constexpr int kImageSide = 22;
constexpr int kTextLeft = Space::medium + kImageSide + 10;

}  // namespace

SwitchTile::SwitchTile(QWidget* parent) : QAbstractButton(parent) {
  setCheckable(true);
  setCursor(Qt::PointingHandCursor);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setFixedHeight(sizeHint().height());
}

void SwitchTile::setState(bool isOn, const QString& label, std::string imageName) {
  setChecked(isOn);
  label_ = label;
  imageName_ = std::move(imageName);
  update();
}

void SwitchTile::setWorking(bool isWorking) {
  isWorking_ = isWorking;
  update();
}

void SwitchTile::paintEvent(QPaintEvent*) {
  const bool isOn = isChecked();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const Token ground = isOn ? (isDown() ? Token::accentPressed
                                        : (underMouse() ? Token::accentHover : Token::accentFill))
                            : (isDown() || underMouse() ? Token::cardHover : Token::card);
  painter.setPen(isOn ? QPen(Qt::NoPen) : QPen(themeColor(Token::border), 1));
  painter.setBrush(themeColor(ground));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 10, 10);

  const QColor strong =
      themeColor(isOn ? Token::onAccent : (isWorking_ ? Token::text : Token::textDimmed));
  const QColor weak =
      themeColor(isOn ? Token::onAccent : (isWorking_ ? Token::textSecondary : Token::textDimmed));
  ImageLookup::paint(&painter, imageName_,
                     QRectF(Space::medium, (height() - kImageSide) / 2.0, kImageSide, kImageSide),
                     weak);

  const bool hasLabel = !label_.isEmpty();
  QRect line(kTextLeft, hasLabel ? 7 : (height() - 18) / 2, width() - kTextLeft - Space::small, 18);
  painter.setFont(Theme::shared().font(13, QFont::Medium));
  painter.setPen(strong);
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(text(), Qt::ElideRight, line.width()));
  painter.setFont(Theme::shared().font(11));
  painter.setPen(weak);
  if (hasLabel) painter.drawText(line.translated(0, 17), Qt::AlignLeft | Qt::AlignVCenter, label_);
  if (hasFocus()) drawFocusRing(&painter, rect(), 10);
}

}  // namespace brisko
