#include "LogCapture.h"
#include "Theme.h"

#include <QApplication>
#include <QPalette>

#include <gtest/gtest.h>

#include <cmath>

using namespace brisko;
using namespace brisko::test;
using Token = Theme::Token;

namespace {

double luminance(const QColor& color) {
  const auto part = [](double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

double contrast(Token ink, Token ground) {
  const double a = luminance(themeColor(ink)) + 0.05;
  const double b = luminance(themeColor(ground)) + 0.05;
  return a > b ? a / b : b / a;
}

TEST(Theme, TextsAreReadableOnEveryGroundTheyStandOn) {
  for (auto appearance : {Theme::Appearance::dark, Theme::Appearance::light}) {
    Theme::shared().setAppearance(appearance);
    const std::string name = Theme::shared().appearanceName().toStdString();
    for (Token ground : {Token::window, Token::sidebar, Token::card, Token::cardHover}) {
      EXPECT_GE(contrast(Token::text, ground), 7) << name;
      EXPECT_GE(contrast(Token::textSecondary, ground), 4.5) << name;
      EXPECT_GE(contrast(Token::textDimmed, ground), 4) << name << static_cast<int>(ground);
      EXPECT_GE(contrast(Token::accent, ground), 4.5) << name << static_cast<int>(ground);
    }
    EXPECT_GE(contrast(Token::accent, Token::accentSoft), 4.5) << name;
    EXPECT_GE(contrast(Token::text, Token::accentSoft), 7) << name;
    EXPECT_GE(contrast(Token::onAccent, Token::accentFill), 4.2) << name;
    EXPECT_GE(contrast(Token::onAccent, Token::dangerFill), 4.2) << name;
    EXPECT_GE(contrast(Token::control, Token::card), 2) << name;
  }
}

TEST(Theme, BothTablesAreCompleteAndTheSheetIsFilledIn) {
  const LogCapture log;
  for (auto appearance : {Theme::Appearance::dark, Theme::Appearance::light}) {
    Theme::shared().setAppearance(appearance);
    EXPECT_FALSE(qApp->styleSheet().isEmpty());
    EXPECT_FALSE(qApp->styleSheet().section("*/", 1).contains('@'));
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), themeColor(Token::window));
  }
  EXPECT_TRUE(log.lines().empty()) << log.lines().front();
}

TEST(Theme, ChangeIsToldOnceAndOnlyWhenThereIsOne) {
  int told = 0;
  const auto connection = QObject::connect(&Theme::shared(), &Theme::changed, [&told] { ++told; });
  Theme::shared().setAppearance(Theme::Appearance::light);
  EXPECT_EQ(told, 0);
  Theme::shared().setAppearance(Theme::Appearance::dark);
  EXPECT_EQ(told, 1);
  EXPECT_EQ(Theme::shared().appearanceName(), "dark");
  Theme::shared().setAppearance(Theme::Appearance::light);
  QObject::disconnect(connection);
}

}  // namespace
