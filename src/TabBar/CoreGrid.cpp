#include "CoreGrid.h"

#include "LocalizedString.h"
#include "SystemTexts.h"
#include "Theme.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace brisko {
namespace {

struct Size {
  int upTo;      // cores
  int minWidth;  // points of a cell
  int height;
  int gap;
  bool hasCurves;
  bool hasFigures;
};

constexpr Size kSizes[] = {
    {16, 84, 48, 8, true, true}, {64, 40, 32, 6, false, true}, {1 << 16, 20, 20, 4, false, false}};

constexpr double kBusy = 0.9;  // from here on a core is drawn as a warning

double total(const CpuLoad& load) {
  return std::clamp(load.user + load.system, 0.0, 1.0);
}

QColor colourOf(double load) {
  return themeColor(load >= kBusy ? Theme::Token::warningFill : Theme::Token::accentFill);
}

}  // namespace

CoreLayout CoreLayout::of(int count, int width) {
  count = std::max(1, count);
  const Size& size = *std::find_if(std::begin(kSizes), std::end(kSizes) - 1,
                                   [count](const Size& each) { return count <= each.upTo; });
  const int fitting = std::max(1, (width + size.gap) / (size.minWidth + size.gap));
  CoreLayout layout;
  layout.rows = (count + fitting - 1) / fitting;
  layout.columns = (count + layout.rows - 1) / layout.rows;
  layout.cellHeight = size.height;
  layout.gap = size.gap;
  layout.hasCurves = size.hasCurves;
  layout.hasFigures = size.hasFigures;
  return layout;
}

CoreGrid::CoreGrid(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  layOut();
}

void CoreGrid::show(const SystemHistory& history) {
  const bool isOtherCount = loads_.size() != history.latest().cores.size();
  loads_ = history.latest().cores;
  histories_ = history.cores;
  if (isOtherCount) layOut();
  const auto busiest =
      std::max_element(loads_.begin(), loads_.end(),
                       [](const auto& a, const auto& b) { return total(a) < total(b); });
  QString text = getLocalizedString("No information");
  if (busiest != loads_.end()) text = told(static_cast<int>(busiest - loads_.begin()));
  setAccessibleDescription(filledIn(getLocalizedString("Busiest: %@"), text));
  update();
}

void CoreGrid::layOut() {
  layout_ = CoreLayout::of(static_cast<int>(loads_.size()), width());
  setFixedHeight(layout_.height());
}

void CoreGrid::resizeEvent(QResizeEvent*) {
  layOut();
}

QRect CoreGrid::cellRect(int core) const {
  const int column = core % layout_.columns;
  const int room = width() + layout_.gap;
  const int left = room * column / layout_.columns;
  const int right = room * (column + 1) / layout_.columns - layout_.gap;
  return {left, core / layout_.columns * (layout_.cellHeight + layout_.gap), right - left,
          layout_.cellHeight};
}

QString CoreGrid::told(int core) const {
  const CpuLoad& load = loads_[static_cast<std::size_t>(core)];
  QString text = getLocalizedString("Core %@: %@ (user %@, system %@)");
  text = filledIn(text, QString::number(core + 1));
  for (const double part : {total(load), load.user, load.system})
    text = filledIn(text, QString::fromStdString(SystemTexts::percent(part)));
  return text;
}

bool CoreGrid::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  auto* help = static_cast<QHelpEvent*>(event);
  for (int core = 0; core < static_cast<int>(loads_.size()); ++core) {
    if (cellRect(core).contains(help->pos())) {
      QToolTip::showText(help->globalPos(), toolTipText(told(core)), this, cellRect(core));
      return true;
    }
  }
  QToolTip::hideText();
  return true;
}

void CoreGrid::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(rect(), themeColor(Theme::Token::card));
  painter.setRenderHint(QPainter::Antialiasing);
  for (int core = 0; core < static_cast<int>(loads_.size()); ++core) {
    if (event->region().intersects(cellRect(core))) paintCell(&painter, core);
  }
}

void CoreGrid::paintCell(QPainter* painter, int core) const {
  const QRectF cell = cellRect(core);
  const double radius = layout_.hasCurves ? 8 : 4;
  const double load = total(loads_[static_cast<std::size_t>(core)]);
  painter->setPen(Qt::NoPen);
  painter->setBrush(themeColor(Theme::Token::track));
  painter->drawRoundedRect(cell, radius, radius);
  if (layout_.hasCurves) {
    paintCurve(painter, cell, histories_[static_cast<std::size_t>(core)].values());
  } else if (load > 0) {
    // The filled part of the same rounded shape.
    QRectF filled = cell;
    filled.setTop(cell.bottom() - std::max(2.0, cell.height() * load));
    painter->setBrush(colourOf(load));
    painter->setClipRect(filled);
    painter->drawRoundedRect(cell, radius, radius);
    painter->setClipping(false);
  }
  if (!layout_.hasFigures) return;
  const bool isOnFill = !layout_.hasCurves && load > 0.7;
  painter->setFont(Theme::shared().font(11, QFont::DemiBold));
  painter->setPen(themeColor(isOnFill ? Theme::Token::onAccent : Theme::Token::text));
  const QString figure = QString::fromStdString(SystemTexts::percent(load));
  if (!layout_.hasCurves) {
    painter->drawText(cell, Qt::AlignCenter, figure);
    return;
  }
  const QRectF line = cell.adjusted(Space::small, 5, -Space::small, 0);
  painter->drawText(line, Qt::AlignRight | Qt::AlignTop, figure);
  painter->setFont(Theme::shared().font(11));
  painter->setPen(themeColor(Theme::Token::textSecondary));
  painter->drawText(line, Qt::AlignLeft | Qt::AlignTop, QString::number(core + 1));
}

void CoreGrid::paintCurve(QPainter* painter, const QRectF& cell,
                          const std::vector<float>& values) const {
  const auto count = static_cast<int>(values.size());
  const double step = cell.width() / (FigureHistory::kSeconds - 1);
  QPainterPath shape;
  shape.addRoundedRect(cell, 8, 8);
  painter->setClipPath(shape);
  QPolygonF curve;
  const auto paintRun = [&] {
    if (curve.size() == 1) curve.prepend(curve.first() - QPointF(step, 0));
    if (curve.isEmpty()) return;
    QPolygonF ground = curve;
    ground << QPointF(curve.last().x(), cell.bottom()) << QPointF(curve.first().x(), cell.bottom());
    QColor fill = themeColor(Theme::Token::accentFill);
    painter->setPen(QPen(fill, 1.4));
    painter->setBrush(Qt::NoBrush);
    painter->drawPolyline(curve);
    fill.setAlphaF(0.22F);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    painter->drawPolygon(ground);
    curve.clear();
  };
  // The upper third is for the figures.
  const double room = cell.height() - 20;
  for (int i = 0; i < count; ++i) {
    const float value = values[static_cast<std::size_t>(i)];
    if (std::isnan(value)) {
      paintRun();
      continue;
    }
    curve << QPointF(cell.right() - step * (count - 1 - i),
                     cell.bottom() - 1 - room * std::clamp(double{value}, 0.0, 1.0));
  }
  paintRun();
  painter->setClipping(false);
}

}  // namespace brisko
