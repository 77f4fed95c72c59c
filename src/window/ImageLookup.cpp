#include "ImageLookup.h"

#include "Resources.h"
#include "SystemLog.h"
#include "Theme.h"

#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace brisko {
namespace {

bool cutSuffix(std::string_view& name, std::string_view suffix) {
  if (!name.ends_with(suffix)) return false;
  name.remove_suffix(suffix.size());
  return true;
}

QByteArray drawing(std::string_view imageName, const QColor& tint) {
  const std::string base = ImageLookup::baseName(imageName);
  std::optional<std::string> svg;
  if (Theme::shared().isDark()) svg = Resources::image(base + "-dark");
  if (!svg) svg = Resources::image(base);
  if (!svg) return {};
  QByteArray text = Theme::shared().withTokens(QByteArray::fromStdString(*svg));
  text.replace("currentColor", tint.name().toLatin1());
  return text;
}

// Pixmaps by name, size, tint and theme. The set of images and sizes in use is small and fixed, so
// nothing is ever thrown out but on a change of theme.
QHash<QString, QPixmap>& cache() {
  static auto* pixmaps = [] {
    auto* made = new QHash<QString, QPixmap>;
    QObject::connect(&Theme::shared(), &Theme::changed, [made] { made->clear(); });
    return made;
  }();
  return *pixmaps;
}

class ImageIconEngine : public QIconEngine {
 public:
  ImageIconEngine(std::string name, QColor tint) : name_(std::move(name)), tint_(tint) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
    ImageLookup::paint(painter, name_, rect, tint_);
  }
  QPixmap scaledPixmap(const QSize& size, QIcon::Mode, QIcon::State, qreal scale) override {
    // Here `size` is in pixels already.
    return ImageLookup::pixmap(name_, (QSizeF(size) / scale).toSize(), scale, tint_);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override {
    return ImageLookup::pixmap(name_, size, 1, tint_);
  }
  QIconEngine* clone() const override { return new ImageIconEngine(*this); }

 private:
  std::string name_;
  QColor tint_;
};

}  // namespace

std::string ImageLookup::baseName(std::string_view imageName) {
  if (!cutSuffix(imageName, ".png")) cutSuffix(imageName, ".svg");
  cutSuffix(imageName, "@2x");
  return std::string(imageName);
}

bool ImageLookup::exists(std::string_view imageName) {
  return Resources::image(baseName(imageName)).has_value();
}

QSize ImageLookup::naturalSize(std::string_view imageName) {
  const QByteArray svg = drawing(imageName, Qt::black);
  return svg.isEmpty() ? QSize() : QSvgRenderer(svg).defaultSize();
}

QPixmap ImageLookup::pixmap(std::string_view imageName, QSize size, qreal scale, QColor tint) {
  if (!tint.isValid()) tint = themeColor(Theme::Token::textSecondary);
  const QString key = QStringLiteral("%1|%2x%3@%4|%5")
                          .arg(QString::fromStdString(baseName(imageName)))
                          .arg(size.width())
                          .arg(size.height())
                          .arg(scale)
                          .arg(tint.name());
  if (const auto found = cache().constFind(key); found != cache().constEnd()) return *found;
  QPixmap made;
  const QByteArray svg = drawing(imageName, tint);
  if (svg.isEmpty()) {
    SystemLog::line("No image named {}", imageName);
  } else {
    QSvgRenderer renderer(svg);
    made = QPixmap((QSizeF(size) * scale).toSize());
    made.fill(Qt::transparent);
    QPainter painter(&made);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    painter.end();
    made.setDevicePixelRatio(scale);
  }
  cache().insert(key, made);
  return made;
}

void ImageLookup::paint(QPainter* painter, std::string_view imageName, const QRectF& rect,
                        QColor tint) {
  const qreal scale = painter->device()->devicePixelRatioF();
  const QPixmap image = pixmap(imageName, rect.size().toSize(), scale, tint);
  if (image.isNull()) return;
  // On whole pixels, or the strokes would blur.
  const QPointF at(std::round(rect.x() * scale) / scale, std::round(rect.y() * scale) / scale);
  painter->drawPixmap(at, image);
}

QIcon ImageLookup::icon(std::string_view imageName, QColor tint) {
  return QIcon(new ImageIconEngine(std::string(imageName), tint));
}

}  // namespace brisko
