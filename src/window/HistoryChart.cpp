#include "HistoryChart.h"

#include "LocalizedString.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <limits>

namespace brisko {
namespace {

constexpr double kLineWidth = 1.6;
constexpr int kGridSeconds = 30;
constexpr int kGridRows = 4;

QColor withAlpha(QColor colour, double alpha) {
  colour.setAlphaF(static_cast<float>(alpha));
  return colour;
}

}  // namespace

HistoryChart::HistoryChart(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void HistoryChart::setSeries(Kind kind, std::vector<Series> series) {
  kind_ = kind;
  series_ = std::move(series);
  values_.assign(series_.size(), {});
  update();
}

void HistoryChart::setMaximum(double maximum, double least) {
  maximum_ = maximum;
  least_ = least;
  update();
}

void HistoryChart::setValues(std::size_t series, const std::vector<float>& values) {
  values_.at(series) = values;
  update();
}

double HistoryChart::roundedUp(double value) {
  if (!(value > 0) || !std::isfinite(value)) return 1;
  const double power = std::pow(10, std::floor(std::log10(value)));
  for (const double step : {1.0, 2.0, 5.0}) {
    // A hair of tolerance: 0.2 is not quite twice 0.1.
    if (value <= step * power * (1 + 1e-9)) return step * power;
  }
  return 10 * power;
}

double HistoryChart::top() const {
  if (maximum_ > 0) return maximum_;
  double highest = least_;
  for (int age = 0; age < kValues; ++age) {
    double sum = 0;
    for (std::size_t i = 0; i < series_.size(); ++i) {
      const double value = valueAt(i, age);
      if (std::isnan(value)) continue;
      sum = kind_ == Kind::stack ? sum + value : std::max(sum, value);
    }
    highest = std::max(highest, sum);
  }
  return roundedUp(highest);
}

QRectF HistoryChart::plot() const {
  // Half a line is kept free, so that a curve at an edge is not cut.
  return QRectF(rect()).adjusted(0, kLineWidth, 0, -kLineWidth / 2);
}

double HistoryChart::xOf(int age) const {
  const QRectF area = plot();
  return area.right() - area.width() * age / (kValues - 1);
}

int HistoryChart::ageAt(int x) const {
  const QRectF area = plot();
  const double share = (area.right() - x) / std::max(1.0, area.width());
  return std::clamp(static_cast<int>(std::lround(share * (kValues - 1))), 0, kValues - 1);
}

float HistoryChart::valueAt(std::size_t series, int age) const {
  const auto& values = values_[series];
  const auto count = static_cast<int>(values.size());
  return age < count ? values[static_cast<std::size_t>(count - 1 - age)]
                     : std::numeric_limits<float>::quiet_NaN();
}

// Where the curve runs, in the chart's unit: on the ones below it in a stack.
double HistoryChart::heightAt(std::size_t series, int age) const {
  double height = valueAt(series, age);
  if (kind_ == Kind::stack) {
    for (std::size_t below = 0; below < series; ++below)
      height += valueAt(below, age);
  }
  return height;
}

void HistoryChart::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), themeColor(Theme::Token::card));
  if (!isPlain_) paintGrid(&painter);
  painter.setRenderHint(QPainter::Antialiasing);
  for (std::size_t i = 0; i < series_.size(); ++i) {
    // The highest of a stack first, so that each lower one covers what is its own.
    paintSeries(&painter, kind_ == Kind::stack ? series_.size() - 1 - i : i);
  }
  if (!isPlain_) {
    painter.setFont(Theme::shared().font(10));
    painter.setPen(themeColor(Theme::Token::textDimmed));
    if (formatter_) painter.drawText(QPointF(2, plot().top() + 11), formatter_(top()));
  }
  if (pointed_ >= 0) paintPointed(&painter);
}

void HistoryChart::paintGrid(QPainter* painter) const {
  const QRectF area = plot();
  painter->setPen(QPen(themeColor(Theme::Token::track), 1));
  for (int row = 0; row <= kGridRows; ++row) {
    const double y = std::round(area.top() + area.height() * row / kGridRows) - 0.5;
    painter->drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
  }
  for (int age = kGridSeconds; age < kValues; age += kGridSeconds) {
    const double x = std::round(xOf(age)) - 0.5;
    painter->drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
  }
}

void HistoryChart::paintSeries(QPainter* painter, std::size_t series) const {
  // Runs between two gaps, from the oldest to the newest.
  int oldest = -1;
  for (int age = kValues - 1; age >= -1; --age) {
    const bool isValue = age >= 0 && !std::isnan(heightAt(series, age));
    if (isValue && oldest < 0) oldest = age;
    if (isValue || oldest < 0) continue;
    paintRun(painter, series, oldest, age + 1);
    oldest = -1;
  }
}

void HistoryChart::paintRun(QPainter* painter, std::size_t series, int oldest, int newest) const {
  const QRectF area = plot();
  const double scale = area.height() / top();
  QPolygonF curve;
  curve.reserve(oldest - newest + 3);
  for (int age = oldest; age >= newest; --age) {
    const double height = std::clamp(heightAt(series, age) * scale, 0.0, area.height());
    curve << QPointF(xOf(age), area.bottom() - height);
  }
  // A single value is drawn as wide as a second.
  if (oldest == newest) curve.prepend(curve.first() - QPointF(area.width() / kValues, 0));
  QPolygonF ground = curve;
  ground << QPointF(curve.last().x(), area.bottom()) << QPointF(curve.first().x(), area.bottom());
  const QColor colour = themeColor(series_[series].colour);
  painter->setPen(Qt::NoPen);
  if (kind_ == Kind::stack) {
    painter->setBrush(themeColor(Theme::Token::card));
    painter->drawPolygon(ground);
    painter->setBrush(withAlpha(colour, 0.32));
  } else {
    QLinearGradient fading(area.topLeft(), area.bottomLeft());
    fading.setColorAt(0, withAlpha(colour, 0.34));
    fading.setColorAt(1, withAlpha(colour, 0.06));
    painter->setBrush(fading);
  }
  painter->drawPolygon(ground);
  painter->setPen(QPen(colour, kLineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter->setBrush(Qt::NoBrush);
  painter->drawPolyline(curve);
}

QStringList HistoryChart::toldAt(int x) const {
  const int age = ageAt(x);
  QStringList lines;
  for (std::size_t i = 0; i < series_.size(); ++i) {
    const float value = valueAt(i, age);
    if (std::isnan(value)) continue;
    const QString text = formatter_ ? formatter_(value) : QString::number(value);
    lines << series_[i].name + QStringLiteral("  ") + text;
  }
  if (lines.isEmpty()) return lines;
  lines.prepend(age == 0 ? getLocalizedString("Now")
                         : filledIn(getLocalizedString("%@ s ago"), QString::number(age)));
  return lines;
}

void HistoryChart::paintPointed(QPainter* painter) const {
  const QStringList lines = toldAt(pointed_);
  if (lines.isEmpty()) return;
  const QRectF area = plot();
  const double x = xOf(ageAt(pointed_));
  painter->setPen(QPen(themeColor(Theme::Token::control), 1));
  painter->drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));

  painter->setFont(Theme::shared().font(11));
  const QFontMetricsF metrics(painter->font());
  constexpr double kLine = 15;
  double width = 0;
  for (const QString& line : lines)
    width = std::max(width, metrics.horizontalAdvance(line));
  QRectF bubble(x + Space::small, area.top() + 2, width + 2 * Space::small,
                kLine * static_cast<double>(lines.size()) + Space::small);
  if (bubble.right() > area.right()) bubble.moveRight(x - Space::small);
  if (bubble.left() < area.left()) bubble.moveLeft(area.left());
  painter->setPen(QPen(themeColor(Theme::Token::border), 1));
  painter->setBrush(themeColor(Theme::Token::window));
  painter->drawRoundedRect(bubble.adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
  for (qsizetype i = 0; i < lines.size(); ++i) {
    painter->setPen(themeColor(i == 0 ? Theme::Token::textDimmed : Theme::Token::text));
    painter->drawText(
        QRectF(bubble.left() + Space::small,
               bubble.top() + Space::tiny + kLine * static_cast<double>(i), width + 1, kLine),
        Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, lines[i]);
  }
}

void HistoryChart::mouseMoveEvent(QMouseEvent* event) {
  pointed_ = event->position().toPoint().x();
  update();
}

void HistoryChart::leaveEvent(QEvent*) {
  pointed_ = -1;
  update();
}

}  // namespace brisko
