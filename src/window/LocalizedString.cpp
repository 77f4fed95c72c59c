#include "LocalizedString.h"

#include "SystemLog.h"

#include <QCoreApplication>

namespace brisko {

QString getLocalizedString(const char* key) {
  if (key == nullptr) return {};
  return QCoreApplication::translate("Localizable", key);
}

QColor getColor(double r, double g, double b, double a) {
  return QColor::fromRgbF(static_cast<float>(r / 255), static_cast<float>(g / 255),
                          static_cast<float>(b / 255), static_cast<float>(a));
}

QString displayText(std::string_view bytes) {
  return QString::fromStdString(escapedForDisplay(bytes));
}

QString toolTipText(const QString& text) {
  // Markup is folded into a narrow block; a short text stays on its line.
  constexpr qsizetype kOneLine = 90;
  const bool isShort = text.size() <= kOneLine;
  return (isShort ? QStringLiteral("<qt><nobr>%1</nobr></qt>") : QStringLiteral("<qt>%1</qt>"))
      .arg(text.toHtmlEscaped());
}

QString filledIn(const QString& format, const QString& value) {
  const auto at = format.indexOf(QLatin1String("%@"));
  if (at < 0) return format;
  return QString(format).replace(at, 2, value);
}

}  // namespace brisko
