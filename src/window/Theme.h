#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QString>

#include <array>
#include <string>

namespace brisko {

/// Distances between and inside things, in points. There are no others.
namespace Space {
inline constexpr int tiny = 4;
inline constexpr int small = 8;
inline constexpr int medium = 12;
inline constexpr int large = 16;
inline constexpr int wide = 24;
inline constexpr int huge = 32;
}  // namespace Space

inline constexpr int kCardRadius = 12;

/// The look of the program: colours by purpose, light and dark, and the fonts.
///
/// Every colour has a name (a token) and is read from resources/theme/light.json or dark.json; the
/// same tokens fill the style sheet brisko.qss.in and the drawings. Main thread only.
class Theme : public QObject {
  Q_OBJECT

 public:
  enum class Appearance { light, dark };

  enum class Token {
    window,
    sidebar,
    card,
    cardHover,
    border,
    control,
    track,
    hover,
    pressed,
    text,
    textSecondary,
    textDimmed,
    accent,      ///< on the window's ground: texts, icons, focus rings
    accentFill,  ///< below `onAccent`: filled buttons, bars
    accentHover,
    accentPressed,
    accentSoft,
    onAccent,
    danger,
    dangerFill,
    dangerHover,
    warning,
    warningFill,
    success,
    shadow,
    count
  };

  static Theme& shared();

  /// Takes the desktop's appearance, shows the application in it and follows it from now on. The
  /// variable BRISKO_THEME ("light" or "dark") has the last word.
  void followDesktop();

  /// Shows the application in `appearance` until the desktop's changes.
  void setAppearance(Appearance appearance);

  Appearance appearance() const { return appearance_; }
  bool isDark() const { return appearance_ == Appearance::dark; }
  /// "dark" or "light", as observers of the appearance are told.
  QString appearanceName() const;

  QColor color(Token token) const { return colors_[static_cast<std::size_t>(token)]; }

  /// `text` with each "var(--TOKEN)" replaced by the token's colour.
  QByteArray withTokens(QByteArray text) const;

  /// The interface font at `points`.
  QFont font(int points, QFont::Weight weight = QFont::Normal) const;

 Q_SIGNALS:
  /// The appearance is another one, and palette and style sheet are already in place.
  void changed();

 private Q_SLOTS:
  void portalSettingChanged(const QString& space, const QString& key, const QVariant& value);

 private:
  Theme();
  void load();
  void apply();
  void askPortal();
  void takePortalValue(const QVariant& value);

  Appearance appearance_ = Appearance::light;
  Appearance desktopPalette_ = Appearance::light;
  bool isForced_ = false;
  QString family_;
  std::array<QColor, static_cast<std::size_t>(Token::count)> colors_;
};

/// The theme's colour, for short.
QColor themeColor(Theme::Token token);

}  // namespace brisko
