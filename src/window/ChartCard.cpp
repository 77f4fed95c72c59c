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

void ChartCard::setRemark(const QString& remark) {
  if (remark == remark_) return;
  remark_ = remark;
  describe();
  update(head());
}

void ChartCard::setValue(const QString& value, const QString& suffix) {
  if (value == value_ && suffix == suffix_) return;
  value_ = value;
  suffix_ = suffix;
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
  texts << (suffix_.isEmpty() ? value_ : value_ + QLatin1Char(' ') + suffix_);
  if (!remark_.isEmpty()) texts << remark_;
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
  const QFont small = Theme::shared().font(12);
  // All on one line of writing, from both ends; the remark has what is left between them.
  constexpr int kBaseline = 19;
  const auto drawn = [&](int x, const QFont& font, Theme::Token colour, const QString& text) {
    painter->setFont(font);
    painter->setPen(themeColor(colour));
    painter->drawText(QPoint(x, area.top() + kBaseline), text);
  };
  const auto widthOf = [](const QFont& font, const QString& text) {
    return QFontMetrics(font).horizontalAdvance(text);
  };
  const QFont titleFont = Theme::shared().font(14, QFont::DemiBold);
  const QFont valueFont = Theme::shared().font(18, QFont::DemiBold);
  drawn(area.left(), titleFont, Theme::Token::text, title_);
  int right = area.right() + 1;
  if (!suffix_.isEmpty()) {
    right -= widthOf(small, suffix_);
    drawn(right, small, Theme::Token::textDimmed, suffix_);
    right -= 6;
  }
  right -= widthOf(valueFont, value_);
  drawn(right, valueFont, Theme::Token::text, value_);
  const int left = area.left() + widthOf(titleFont, title_) + Space::medium;
  const int room = std::max(0, right - Space::medium - left);
  drawn(left, small, Theme::Token::textDimmed,
        QFontMetrics(small).elidedText(remark_, Qt::ElideRight, room));
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
