#include "BriskoStyle.h"

#include <QStyleFactory>

namespace brisko {

BriskoStyle::BriskoStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

int BriskoStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* result) const {
  switch (hint) {
    case SH_ToolTip_WakeUpDelay:
      return 0;
    // Arrow keys go from row to row even while the table is only looked at.
    case SH_ItemView_ChangeHighlightOnFocus:
      return 1;
    case SH_ItemView_ShowDecorationSelected:
      return 1;
    default:
      return QProxyStyle::styleHint(hint, option, widget, result);
  }
}

int BriskoStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                             const QWidget* widget) const {
  if (metric == PM_SmallIconSize) return 18;
  return QProxyStyle::pixelMetric(metric, option, widget);
}

}  // namespace brisko
