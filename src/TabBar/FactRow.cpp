#include "FactRow.h"

#include "LocalizedString.h"
#include "Theme.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <numeric>

namespace brisko {
namespace {

QFont headingFont() {
  return Theme::shared().font(11);
}

QFont textFont() {
  return Theme::shared().font(13, QFont::DemiBold);
}

}  // namespace

FactRow::FactRow(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void FactRow::setFacts(std::vector<Fact> facts) {
  std::erase_if(facts, [](const Fact& fact) { return fact.second.isEmpty(); });
  if (facts == facts_) return;
  facts_ = std::move(facts);
  QStringList texts;
  for (const Fact& fact : facts_)
    texts << fact.first + QStringLiteral(": ") + fact.second;
  setAccessibleDescription(texts.join(QStringLiteral("; ")));
  update();
}

std::vector<int> FactRow::fairWidths(std::vector<int> wanted, int room) {
  std::vector<int> ordered = wanted;
  std::sort(ordered.begin(), ordered.end());
  int left = std::max(0, room);
  int limit = 0;
  for (std::size_t i = 0; i < ordered.size(); ++i) {
    limit = left / static_cast<int>(ordered.size() - i);
    if (ordered[i] > limit) break;
    limit = ordered[i];
    left -= ordered[i];
  }
  for (int& width : wanted)
    width = std::min(width, limit);
  return wanted;
}

std::vector<QRect> FactRow::places() const {
  const QFontMetrics heading(headingFont());
  const QFontMetrics text(textFont());
  std::vector<int> widths;
  for (const Fact& fact : facts_)
    widths.push_back(
        std::max(heading.horizontalAdvance(fact.first), text.horizontalAdvance(fact.second)) + 2);
  const int gaps = std::max(0, static_cast<int>(facts_.size()) - 1);
  widths = fairWidths(widths, width() - gaps * Space::wide);
  const int taken = std::accumulate(widths.begin(), widths.end(), 0);
  const int gap =
      gaps > 0 ? std::min<int>(Space::huge + Space::large, (width() - taken) / gaps) : 0;
  std::vector<QRect> places;
  int x = 0;
  for (const int each : widths) {
    places.emplace_back(x, 0, each, height());
    x += each + gap;
  }
  return places;
}

void FactRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const auto areas = places();
  for (std::size_t i = 0; i < facts_.size(); ++i) {
    const auto line = [&](const QFont& font, Theme::Token colour, int y, const QString& text) {
      painter.setFont(font);
      painter.setPen(themeColor(colour));
      painter.drawText(QRect(areas[i].left(), y, areas[i].width(), 18),
                       Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                       QFontMetrics(font).elidedText(text, Qt::ElideRight, areas[i].width()));
    };
    line(headingFont(), Theme::Token::textDimmed, 0, facts_[i].first);
    line(textFont(), Theme::Token::text, 18, facts_[i].second);
  }
}

bool FactRow::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  auto* help = static_cast<QHelpEvent*>(event);
  const auto areas = places();
  for (std::size_t i = 0; i < areas.size(); ++i) {
    const int needed = QFontMetrics(textFont()).horizontalAdvance(facts_[i].second);
    if (areas[i].contains(help->pos()) && needed > areas[i].width())
      QToolTip::showText(help->globalPos(), toolTipText(facts_[i].second), this, areas[i]);
  }
  return true;
}

}  // namespace brisko
