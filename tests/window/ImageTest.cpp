#include "EmbeddedResources.h"
#include "ImageLookup.h"
#include "ImageResize.h"
#include "LocalizedString.h"
#include "LogCapture.h"
#include "ModuleTable.h"
#include "TemporaryFolder.h"
#include "TestHost.h"
#include "Theme.h"

#include <QPainter>
#include <QSvgRenderer>

#include <gtest/gtest.h>

using namespace brisko;
using namespace brisko::test;

namespace {

bool isEmpty(const QImage& image) {
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (qAlpha(image.pixel(x, y)) != 0) return false;
    }
  }
  return true;
}

std::vector<std::string> namesInUse() {
  std::vector<std::string> names = {
      "ic_systema",  "ic_appa",   "ic_email",   "ic_itunes", "ic_trash",   "ic_xcode",
      "sel",         "unsel",     "halfsel",    "disable",   "eject",      "ic_usb",
      "ic_diskos",   "ic_diska",  "logo_light", "logo_dark", "brisko",     "bg_lt",
      "bg_rt",       "ic_file",   "ic_folder",  "ic_back",   "ic_chevron", "ic_close",
      "ic_minimise", "ic_zoom",   "ic_menu",    "ic_info",   "ic_warning", "ill_clean",
      "ill_success", "ill_empty", "ill_shield"};
  for (const Module& module : moduleTable()) {
    names.emplace_back(module.icon);
    names.emplace_back(module.selectedIcon);
  }
  return names;
}

TEST(ImageLookup, FindsEveryNameInUseInEveryForm) {
  for (const std::string& name : namesInUse()) {
    const std::string base = ImageLookup::baseName(name);
    for (const char* ending : {"", "@2x", ".png", "@2x.png", ".svg"}) {
      EXPECT_TRUE(ImageLookup::exists(base + ending)) << base << ending;
    }
    EXPECT_TRUE(ImageLookup::exists(name)) << name;
  }
  EXPECT_FALSE(ImageLookup::exists("ic_nothing"));
  EXPECT_FALSE(ImageLookup::exists("../theme/light.json"));
}

TEST(ImageLookup, EveryDrawingShowsSomethingInBothThemes) {
  for (auto appearance : {Theme::Appearance::dark, Theme::Appearance::light}) {
    Theme::shared().setAppearance(appearance);
    for (const EmbeddedResource* entry = embeddedResources(); entry->name != nullptr; ++entry) {
      const std::string name = entry->name;
      if (!name.starts_with("images/")) continue;
      const QByteArray svg =
          Theme::shared().withTokens(QByteArray(entry->begin, entry->end - entry->begin));
      EXPECT_FALSE(svg.contains("var(")) << name << " uses a colour that is no token";
      EXPECT_TRUE(QSvgRenderer(svg).isValid()) << name;
      const std::string image = name.substr(7);
      EXPECT_FALSE(isEmpty(ImageLookup::pixmap(image, {24, 24}, 1).toImage())) << name;
    }
  }
}

TEST(ImageLookup, DrawsForThePixelsOfTheScreen) {
  const QPixmap twice = ImageLookup::pixmap("ic_disk", {20, 20}, 2);
  EXPECT_EQ(twice.size(), QSize(40, 40));
  EXPECT_EQ(twice.devicePixelRatio(), 2);
  // Drawn, not scaled up: a picture made of 2 × 2 blocks would survive the way down and up again.
  const QImage sharp = twice.toImage().convertToFormat(QImage::Format_ARGB32);
  const QImage blocks = sharp.scaled(20, 20).scaled(40, 40);
  EXPECT_NE(sharp, blocks);
}

TEST(ImageLookup, DarkVariantTakesTheImagesPlaceOnDark) {
  const TemporaryFolder folder;
  const auto square = [](const std::string& fill) {
    return "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 4 4'>"
           "<rect width='4' height='4' fill='" +
           fill + "'/></svg>";
  };
  folder.file("images/square.svg", square("#ff0000"));
  folder.file("images/square-dark.svg", square("#00ff00"));
  const Environment resources("BRISKO_RESOURCES", folder.path().c_str());
  const auto colour = [] {
    return ImageLookup::pixmap("square@2x.png", {4, 4}, 1).toImage().pixelColor(1, 1);
  };
  EXPECT_EQ(colour(), QColor(255, 0, 0));
  Theme::shared().setAppearance(Theme::Appearance::dark);
  EXPECT_EQ(colour(), QColor(0, 255, 0));
  Theme::shared().setAppearance(Theme::Appearance::light);
}

TEST(ImageLookup, MissingImageIsLoggedOnceAndDrawsNothing) {
  const LogCapture log;
  EXPECT_TRUE(ImageLookup::pixmap("no-such", {20, 20}, 1).isNull());
  EXPECT_TRUE(ImageLookup::icon("no-such").pixmap(20).isNull());
  EXPECT_EQ(log.count("No image named no-such"), 1);
}

TEST(ImageResize, OneIsScaledTheOtherKeepsItsContent) {
  QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::red);
  image.setPixelColor(0, 0, Qt::blue);
  const QImage scaled = get120X120BigImage(image, false, 0.5);
  EXPECT_EQ(scaled.size(), QSize(120, 120));
  EXPECT_EQ(scaled.pixelColor(119, 119), QColor(Qt::red));
  const QImage canvas = get200X200BigImage(image, false, 0);
  EXPECT_EQ(canvas.size(), QSize(200, 200));
  EXPECT_EQ(canvas.pixelColor(0, 190), QColor(Qt::blue));
  EXPECT_EQ(canvas.pixelColor(100, 100).alpha(), 0);
  EXPECT_EQ(get200X200BigImage(image, true, 0).pixelColor(0, 9), QColor(Qt::blue));
  EXPECT_TRUE(get120X120BigImage({}, false, 0).isNull());
}

TEST(Texts, HostileTextStaysText) {
  EXPECT_EQ(getLocalizedString(nullptr), "");
  EXPECT_EQ(getLocalizedString("System Status"), "System Status");
  EXPECT_EQ(filledIn("%@ of %@", "%@"), "%@ of %@");
  EXPECT_EQ(filledIn("%1 %n %@", "x"), "%1 %n x");
  EXPECT_EQ(displayText("a\nb\x1b\xff"), "a\\nb\\x1B\\xFF");
  EXPECT_EQ(getColor(255, 0, 51, 0.5).name(QColor::HexArgb), "#80ff0033");
}

}  // namespace
