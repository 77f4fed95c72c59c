#pragma once

#include <QColor>
#include <QString>

#include <string_view>

namespace brisko {

/// The text to show for `key` in the user's language; the key itself where there is no translation,
/// and the empty text for null.
QString getLocalizedString(const char* key);

/// A device colour: red, green and blue from 0 to 255, alpha from 0 to 1.
QColor getColor(double r, double g, double b, double a);

/// What a file or volume is called, fit for one line of a label or cell: control characters, line
/// breaks and bytes that are not UTF-8 appear escaped.
QString displayText(std::string_view bytes);

/// `text` for a tool tip, which would otherwise guess by itself what is markup.
QString toolTipText(const QString& text);

/// `format` with its one "%@" replaced by `value`. Nothing in `value` is taken for a placeholder.
QString filledIn(const QString& format, const QString& value);

}  // namespace brisko
