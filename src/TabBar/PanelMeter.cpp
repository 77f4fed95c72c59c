#include "PanelMeter.h"

#include <QPainter>

namespace brisko {

PanelMeter::PanelMeter(const QString& title, HistoryChart::Series series, QWidget* parent)
    : QWidget(parent), chart_(new HistoryChart(this)), title_(title) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAccessibleName(title);
  chart_->setPlain(true);
  chart_->setSeries(HistoryChart::Kind::lines, {std::move(series)});
}

void PanelMeter::setValue(const QString& value) {
  if (value == value_) return;
  value_ = value;
  setAccessibleDescription(value);
  update();
}

void PanelMeter::resizeEvent(QResizeEvent*) {
  constexpr int kTexts = 46;
  chart_->setGeometry(Space::medium, kTexts, width() - 2 * Space::medium,
                      height() - kTexts - Space::small);
}

void PanelMeter::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), themeColor(Theme::Token::window));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(themeColor(Theme::Token::border), 1));
  painter.setBrush(themeColor(Theme::Token::card));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCardRadius, kCardRadius);
  const QRect line(Space::medium, Space::small, width() - 2 * Space::medium, 16);
  painter.setFont(Theme::shared().font(11));
  painter.setPen(themeColor(Theme::Token::textDimmed));
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title_);
  painter.setFont(Theme::shared().font(15, QFont::DemiBold));
  painter.setPen(themeColor(Theme::Token::text));
  painter.drawText(line.translated(0, 17).adjusted(0, 0, 0, 4),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, value_);
}

}  // namespace brisko
