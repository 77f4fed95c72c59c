#include "Theme.h"

#include "BriskoStyle.h"
#include "Resources.h"
#include "SystemLog.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEventLoop>
#include <QFile>
#include <QFontDatabase>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPalette>
#include <QTimer>

#include <memory>

namespace brisko {
namespace {

constexpr std::array<const char*, static_cast<std::size_t>(Theme::Token::count)> kTokenNames = {
    "window",        "sidebar",    "card",        "cardHover",  "border",
    "control",       "track",      "hover",       "pressed",    "text",
    "textSecondary", "textDimmed", "accent",      "accentFill", "accentHover",
    "accentPressed", "accentSoft", "onAccent",    "danger",     "dangerFill",
    "dangerHover",   "warning",    "warningFill", "success",    "shadow"};

constexpr const char* kPortalService = "org.freedesktop.portal.Desktop";
constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* kPortalInterface = "org.freedesktop.portal.Settings";
constexpr const char* kAppearanceSpace = "org.freedesktop.appearance";
constexpr const char* kColorScheme = "color-scheme";

// "#rrggbb" or "#rrggbbaa", alpha last as designers write it.
QColor parsedColor(const QString& text) {
  if (text.size() != 9) return QColor(text);
  QColor color(text.left(7));
  color.setAlpha(text.mid(7).toInt(nullptr, 16));
  return color;
}

QString styleSheetColor(const QColor& color) {
  if (color.alpha() == 255) return color.name();
  return QStringLiteral("rgba(%1,%2,%3,%4)")
      .arg(color.red())
      .arg(color.green())
      .arg(color.blue())
      .arg(color.alpha());
}

QString interfaceFamily() {
  for (const char* family : {"Inter", "Inter Variable"}) {
    if (QFontDatabase::hasFamily(QLatin1String(family))) return QLatin1String(family);
  }
  return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
}

// Looked for before QtDBus is asked, because without a bus it would try to start one.
bool sessionBusExists() {
  if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) return true;
  const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
  return !runtime.isEmpty() && QFile::exists(QFile::decodeName(runtime + "/bus"));
}

}  // namespace

Theme& Theme::shared() {
  // Never destroyed: widgets ask for colours until the very last.
  static auto* theme = new Theme;
  return *theme;
}

Theme::Theme() {
  family_ = interfaceFamily();
  const QPalette desktop = QGuiApplication::palette();
  const int ground = desktop.color(QPalette::Window).lightness();
  desktopPalette_ = ground < desktop.color(QPalette::WindowText).lightness() ? Appearance::dark
                                                                             : Appearance::light;
  load();
}

void Theme::followDesktop() {
  appearance_ = desktopPalette_;
  const QByteArray forced = qgetenv("BRISKO_THEME").toLower();
  isForced_ = forced == "light" || forced == "dark";
  if (isForced_) {
    appearance_ = forced == "dark" ? Appearance::dark : Appearance::light;
  } else if (sessionBusExists()) {
    askPortal();
  }
  load();
  apply();
}

void Theme::setAppearance(Appearance appearance) {
  if (appearance == appearance_) return;
  appearance_ = appearance;
  load();
  apply();
  Q_EMIT changed();
}

QString Theme::appearanceName() const {
  return isDark() ? QStringLiteral("dark") : QStringLiteral("light");
}

void Theme::load() {
  const std::string name = isDark() ? "theme/dark.json" : "theme/light.json";
  const auto text = Resources::find(name);
  const auto json = QJsonDocument::fromJson(QByteArray::fromStdString(text.value_or("")));
  for (std::size_t i = 0; i < colors_.size(); ++i) {
    const QColor color = parsedColor(json.object().value(QLatin1String(kTokenNames[i])).toString());
    if (!color.isValid()) SystemLog::line("{}: no colour {}", name, kTokenNames[i]);
    colors_[i] = color.isValid() ? color : QColor(Qt::gray);
  }
}

void Theme::apply() {
  QPalette palette;
  palette.setColor(QPalette::Window, color(Token::window));
  palette.setColor(QPalette::Base, color(Token::card));
  palette.setColor(QPalette::AlternateBase, color(Token::cardHover));
  palette.setColor(QPalette::Button, color(Token::card));
  palette.setColor(QPalette::Highlight, color(Token::accentFill));
  palette.setColor(QPalette::HighlightedText, color(Token::onAccent));
  palette.setColor(QPalette::Link, color(Token::accent));
  palette.setColor(QPalette::ToolTipBase, color(Token::card));
  palette.setColor(QPalette::PlaceholderText, color(Token::textDimmed));
  palette.setColor(QPalette::Mid, color(Token::border));
  for (auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, color(Token::text));
    palette.setColor(QPalette::Disabled, role, color(Token::control));
  }
  QApplication::setPalette(palette);
  QApplication::setFont(font(13));

  QString sheet = QString::fromStdString(Resources::find("theme/brisko.qss.in").value_or(""));
  for (std::size_t i = 0; i < colors_.size(); ++i) {
    sheet.replace(QLatin1Char('@') + QLatin1String(kTokenNames[i]) + QLatin1Char('@'),
                  styleSheetColor(colors_[i]));
  }
  qApp->setStyleSheet(sheet);
}

QByteArray Theme::withTokens(QByteArray text) const {
  if (!text.contains("var(")) return text;
  for (std::size_t i = 0; i < colors_.size(); ++i) {
    text.replace(QByteArray("var(--") + kTokenNames[i] + ")", colors_[i].name().toLatin1());
  }
  return text;
}

QFont Theme::font(int points, QFont::Weight weight) const {
  QFont font(family_);
  font.setPixelSize(points);
  font.setWeight(weight);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

void Theme::askPortal() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.connect(QLatin1String(kPortalService), QLatin1String(kPortalPath),
              QLatin1String(kPortalInterface), QStringLiteral("SettingChanged"), this,
              SLOT(portalSettingChanged(QString, QString, QVariant)));
  QDBusMessage call =
      QDBusMessage::createMethodCall(QLatin1String(kPortalService), QLatin1String(kPortalPath),
                                     QLatin1String(kPortalInterface), QStringLiteral("Read"));
  call << QLatin1String(kAppearanceSpace) << QLatin1String(kColorScheme);
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  QEventLoop wait;
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    watcher->deleteLater();
    if (!reply.isError()) takePortalValue(reply.value().variant());
  });
  connect(watcher, &QDBusPendingCallWatcher::finished, &wait, &QEventLoop::quit);
  // A portal that runs answers within a few milliseconds and saves a frame in the wrong colours.
  // One that must be started first is not worth holding the window back for: its answer comes
  // later.
  QTimer::singleShot(60, &wait, &QEventLoop::quit);
  wait.exec(QEventLoop::ExcludeUserInputEvents);
}

void Theme::portalSettingChanged(const QString& space, const QString& key, const QVariant& value) {
  if (space != QLatin1String(kAppearanceSpace) || key != QLatin1String(kColorScheme)) return;
  takePortalValue(value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value);
}

void Theme::takePortalValue(const QVariant& value) {
  if (isForced_) return;
  QVariant inner = value;
  while (inner.canConvert<QDBusVariant>())
    inner = inner.value<QDBusVariant>().variant();
  constexpr uint kPreferDark = 1;
  constexpr uint kPreferLight = 2;
  const uint scheme = inner.toUInt();
  setAppearance(scheme == kPreferDark    ? Appearance::dark
                : scheme == kPreferLight ? Appearance::light
                                         : desktopPalette_);
}

QColor themeColor(Theme::Token token) {
  return Theme::shared().color(token);
}

}  // namespace brisko
