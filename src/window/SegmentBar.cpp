#include "SegmentBar.h"

#include "FocusRing.h"
#include "LocalizedString.h"
#include "Theme.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace brisko {
namespace {

constexpr int kInset = 4;
constexpr int kRadius = 9;

}  // namespace

SegmentBar::SegmentBar(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SegmentBar::setSegments(std::vector<Segment> segments) {
  segments_ = std::move(segments);
  current_ = std::clamp(current_, 0, std::max(0, static_cast<int>(segments_.size()) - 1));
  describe();
  update();
}

void SegmentBar::setCurrent(int segment) {
  if (segment < 0 || segment >= static_cast<int>(segments_.size())) return;
  current_ = segment;
  describe();
  update();
}

void SegmentBar::describe() {
  if (segments_.empty()) return;
  const Segment& chosen = segments_[static_cast<std::size_t>(current_)];
  setAccessibleDescription(chosen.title + QStringLiteral(", ") + chosen.detail);
}

QRect SegmentBar::segmentRect(int segment) const {
  const int count = std::max(1, static_cast<int>(segments_.size()));
  const int room = width() - 2 * kInset;
  const int left = kInset + room * segment / count;
  return {left, kInset, kInset + room * (segment + 1) / count - left, height() - 2 * kInset};
}

int SegmentBar::segmentAt(const QPoint& position) const {
  for (int i = 0; i < static_cast<int>(segments_.size()); ++i) {
    if (segmentRect(i).contains(position)) return i;
  }
  return -1;
}

void SegmentBar::choose(int segment) {
  const int last = static_cast<int>(segments_.size()) - 1;
  segment = std::clamp(segment, 0, std::max(0, last));
  if (segment == current_ || last < 0) return;
  setCurrent(segment);
  Q_EMIT segmentSelect(segment);
}

void SegmentBar::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const int segment = segmentAt(event->position().toPoint());
  if (segment >= 0) choose(segment);
}

void SegmentBar::mouseMoveEvent(QMouseEvent* event) {
  hovered_ = segmentAt(event->position().toPoint());
  update();
}

void SegmentBar::leaveEvent(QEvent*) {
  hovered_ = -1;
  update();
}

void SegmentBar::keyPressEvent(QKeyEvent* event) {
  const int forward = layoutDirection() == Qt::RightToLeft ? -1 : 1;
  switch (event->key()) {
    case Qt::Key_Right:
      return choose(current_ + forward);
    case Qt::Key_Left:
      return choose(current_ - forward);
    case Qt::Key_Home:
      return choose(0);
    case Qt::Key_End:
      return choose(static_cast<int>(segments_.size()) - 1);
    default:
      QWidget::keyPressEvent(event);
  }
}

bool SegmentBar::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  auto* help = static_cast<QHelpEvent*>(event);
  const int segment = segmentAt(help->pos());
  if (segment < 0) return true;
  // Titles are cut off when they are long.
  QToolTip::showText(help->globalPos(),
                     toolTipText(segments_[static_cast<std::size_t>(segment)].title), this);
  return true;
}

void SegmentBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(themeColor(Theme::Token::track));
  painter.drawRoundedRect(rect(), kCardRadius, kCardRadius);
  for (int i = 0; i < static_cast<int>(segments_.size()); ++i)
    paintSegment(&painter, i);
  if (hasFocus()) drawFocusRing(&painter, segmentRect(current_), kRadius);
}

void SegmentBar::paintSegment(QPainter* painter, int segment) const {
  const Segment& shown = segments_[static_cast<std::size_t>(segment)];
  const QRect area = segmentRect(segment);
  const bool isCurrent = segment == current_;
  if (isCurrent || segment == hovered_) {
    painter->setPen(isCurrent ? QPen(themeColor(Theme::Token::border), 1) : QPen(Qt::NoPen));
    painter->setBrush(themeColor(isCurrent ? Theme::Token::card : Theme::Token::hover));
    painter->drawRoundedRect(QRectF(area).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
  }
  const QRect text = area.adjusted(Space::small, 6, -Space::small, -6);
  painter->setFont(Theme::shared().font(12, QFont::DemiBold));
  painter->setPen(themeColor(isCurrent        ? Theme::Token::accent
                             : shown.isDimmed ? Theme::Token::textDimmed
                                              : Theme::Token::text));
  const QString title =
      painter->fontMetrics().elidedText(shown.title, Qt::ElideMiddle, text.width());
  painter->drawText(text, Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine, title);
  painter->setFont(Theme::shared().font(11));
  painter->setPen(themeColor(isCurrent ? Theme::Token::textSecondary : Theme::Token::textDimmed));
  painter->drawText(text, Qt::AlignHCenter | Qt::AlignBottom | Qt::TextSingleLine, shown.detail);
}

}  // namespace brisko
