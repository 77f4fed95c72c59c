#pragma once

#include <QProxyStyle>

namespace brisko {

/// The base below the style sheet: the same on every desktop, tool tips without delay.
class BriskoStyle : public QProxyStyle {
  Q_OBJECT

 public:
  BriskoStyle();
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
};

}  // namespace brisko
