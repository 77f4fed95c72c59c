#include "SizeLine.h"

#include "LocalizedString.h"
#include "Theme.h"

#include <QPainter>

#include <cmath>

namespace brisko {
namespace {

constexpr int kBodyPoints = 14;

bool standsOut(const AttributedText::Run& run) {
  return run.points > kBodyPoints;
}

QFont fontOf(const AttributedText::Run& run) {
  return Theme::shared().font(run.points, standsOut(run) ? QFont::DemiBold : QFont::Normal);
}

}  // namespace

SizeLine::SizeLine(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

void SizeLine::setAttributedText(const AttributedText& text, bool keepsColours) {
  attributed_ = text;
  keepsColours_ = keepsColours;
  // The label's own text is what assistive tools and tests read.
  setText(displayText(text.plain()));
  updateGeometry();
  update();
}

void SizeLine::setPlainText(const QString& text) {
  AttributedText plain;
  plain.runs.push_back({text.toStdString(), {}, kBodyPoints, false});
  setAttributedText(plain);
}

QSize SizeLine::sizeHint() const {
  qreal width = 0;
  for (const auto& run : attributed_.runs) {
    width += QFontMetricsF(fontOf(run)).horizontalAdvance(displayText(run.text));
  }
  return {static_cast<int>(std::ceil(width)) + 2, 28};
}

void SizeLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const qreal needed = sizeHint().width();
  qreal x = alignment() & Qt::AlignHCenter ? std::max(0.0, (width() - needed) / 2) : 0;
  const qreal baseline = height() / 2.0 + 6;
  for (const auto& run : attributed_.runs) {
    const QString text = displayText(run.text);
    painter.setFont(fontOf(run));
    painter.setPen(
        keepsColours_ && !run.colour.empty()
            ? QColor(QString::fromStdString(run.colour))
            : themeColor(standsOut(run) ? Theme::Token::text : Theme::Token::textSecondary));
    painter.drawText(QPointF(x, baseline), text);
    x += QFontMetricsF(painter.font()).horizontalAdvance(text);
  }
}

}  // namespace brisko
