#include "ChartCard.h"

#include <QPainter>

#include <algorithm>

namespace brisko {
namespace {

constexpr int kHead = 24;
constexpr int kFoot = 34;
constexpr int kDot = 8;

}  // namespace

ChartCard::ChartCard(QWidget* parent) : QWidget(parent), chart_(new HistoryChart(this)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setChartHeight(92);
}

void ChartCard::setChartHeight(int height) {
  height_ = Space::medium + kHead + Space::small + height + Space::medium + kFoot + Space::medium;
  updateGeometry();
}

void ChartCard::setTitle(const QString& title) {
  title_ = title;
  describe();
  update(head());
}

void ChartCard::setValue(const QString& value, const QString& remark) {
  if (value == value_ && remark == remark_) return;
  value_ = value;
  remark_ = remark;
  describe();
  update(head());
}

void ChartCard::setParts(std::vector<Part> parts) {
  const auto isSame = [](const Part& a, const Part& b) {
    return a.name == b.name && a.colour == b.colour && a.value == b.value;
  };
  if (std::equal(parts.begin(), parts.end(), parts_.begin(), parts_.end(), isSame)) return;
  parts_ = std::move(parts);
  describe();
  update(foot());
}

// What is drawn, as a text for assistive tools.
void ChartCard::describe() {
  QStringList texts;
  texts << (remark_.isEmpty() ? value_ : value_ + QLatin1Char(' ') + remark_);
  for (const Part& part : parts_)
    texts << part.name + QLatin1Char(' ') + part.value;
  setAccessibleName(title_);
  setAccessibleDescription(texts.join(QStringLiteral(", ")));
}

QRect ChartCard::head() const {
  return {Space::large, Space::medium, width() - 2 * Space::large, kHead};
}

QRect ChartCard::foot() const {
  return {Space::large, height() - Space::medium - kFoot, width() - 2 * Space::large, kFoot};
}

void ChartCard::resizeEvent(QResizeEvent*) {
  const int top = head().bottom() + 1 + Space::small;
  chart_->setGeometry(Space::large, top, width() - 2 * Space::large,
                      foot().top() - Space::medium - top);
}

void ChartCard::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), themeColor(Theme::Token::window));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(themeColor(Theme::Token::border), 1));
  painter.setBrush(themeColor(Theme::Token::card));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCardRadius, kCardRadius);
  if (event->region().intersects(head())) paintHead(&painter);
  if (!event->region().intersects(foot())) return;
  const int count = static_cast<int>(parts_.size());
  for (int i = 0; i < count; ++i) {
    const int left = foot().width() * i / count;
    const QRect area(foot().left() + left, foot().top(), foot().width() * (i + 1) / count - left,
                     kFoot);
    paintPart(&painter, area, parts_[static_cast<std::size_t>(i)]);
  }
}

void ChartCard::paintHead(QPainter* painter) const {
  const QRect area = head();
  const QFont valueFont = Theme::shared().font(18, QFont::DemiBold);
  const QFont titleFont = Theme::shared().font(14, QFont::DemiBold);
  const QFont remarkFont = Theme::shared().font(12);
  painter->setFont(titleFont);
  painter->setPen(themeColor(Theme::Token::text));
  painter->drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title_);
  painter->setFont(valueFont);
  painter->drawText(area, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, value_);
  if (remark_.isEmpty()) return;
  const int taken = QFontMetrics(valueFont).horizontalAdvance(value_) + Space::small;
  const int begun = QFontMetrics(titleFont).horizontalAdvance(title_) + Space::large;
  const QRect room = area.adjusted(begun, 2, -taken, 0);
  painter->setFont(remarkFont);
  painter->setPen(themeColor(Theme::Token::textDimmed));
  painter->drawText(
      room, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
      QFontMetrics(remarkFont).elidedText(remark_, Qt::ElideRight, std::max(0, room.width())));
}

void ChartCard::paintPart(QPainter* painter, const QRect& area, const Part& part) const {
  int left = area.left();
  if (part.colour) {
    painter->setPen(Qt::NoPen);
    painter->setBrush(themeColor(*part.colour));
    painter->drawEllipse(QRectF(left, area.top() + 4, kDot, kDot));
    left += kDot + 6;
  }
  const auto line = [&](const QFont& font, Theme::Token colour, int x, int y, const QString& text) {
    const QRect room(x, area.top() + y, area.right() - x - Space::tiny, 17);
    painter->setFont(font);
    painter->setPen(themeColor(colour));
    painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      QFontMetrics(font).elidedText(text, Qt::ElideRight, room.width()));
  };
  line(Theme::shared().font(11), Theme::Token::textDimmed, left, 0, part.name);
  line(Theme::shared().font(13, QFont::DemiBold), Theme::Token::text, area.left(), 17, part.value);
}

}  // namespace brisko
