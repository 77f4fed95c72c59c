#include "FakePowerAssertion.h"
#include "HightActionViewController.h"
#include "RecordedTools.h"
#include "StatusPanel.h"
#include "SwitchTile.h"
#include "Theme.h"
#include "WindowFixture.h"

#include <QTranslator>

using namespace brisko;
using namespace brisko::test;

namespace {

/// A language in which every text of ours begins with a mark.
struct MarkedLanguage : QTranslator {
  MarkedLanguage() { QCoreApplication::installTranslator(this); }
  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* text, const char*, int) const override {
    return qstrcmp(context, "Localizable") == 0 ? u'~' + QString::fromUtf8(text) : QString();
  }
};

class SwitchGrid : public WindowFixture {
 protected:
  SwitchGrid() {
    auto made = std::make_unique<FakePowerAssertion>();
    power = made.get();
    Host::current().powerAssertion = std::move(made);
    tools.answer("CreateDesktop", "FALSE");
    tools.answer("autohide", "0");
    tools.refuse("nshift", "this desktop has no night light");
  }
  ~SwitchGrid() override { Dispatch::waitForBackground(); }

  SwitchTile* tile(int index) {
    return panel.findChild<SwitchTile*>(QStringLiteral("switch%1").arg(index));
  }
  bool becomesIdle() {
    return waitUntil([this] { return panel.switches().model().isIdle(); });
  }
  void press(int index) {
    QTest::mouseClick(tile(index), Qt::LeftButton);
    EXPECT_TRUE(becomesIdle());
  }

  RecordedTools tools;
  FakePowerAssertion* power = nullptr;
  StatusPanel panel;
};

TEST_F(SwitchGrid, ShowsWhatTheSystemSaysAndWhatAPressCameTo) {
  panel.popUp(QRect(100, 0, 20, 20));
  ASSERT_TRUE(becomesIdle());
  EXPECT_TRUE(tile(1)->isChecked());
  EXPECT_EQ(tile(1)->label(), "Active");
  EXPECT_EQ(tile(1)->imageName(), "ic_hide_desktop");
  EXPECT_EQ(tile(8)->label(), "Disabled");
  EXPECT_EQ(tile(4)->label(), "");

  press(5);
  EXPECT_EQ(tile(5)->label(), "Active");
  EXPECT_EQ(power->held.size(), 1U);
  press(5);
  EXPECT_TRUE(power->held.empty());
  EXPECT_EQ(tile(5)->imageName(), "ic_awake");

  tile(8)->setFocus();
  QTest::keyClick(tile(8), Qt::Key_Space);
  ASSERT_TRUE(becomesIdle());
  EXPECT_EQ(tile(8)->label(), "Active");

  EXPECT_EQ(tile(4)->accessibleDescription(), "Starts the screen saver now");
  const MarkedLanguage language;
  press(7);
  EXPECT_EQ(tile(7)->label(), "~Disabled");
  const char* reason = "~Not possible here: ~this desktop has no night light.";
  EXPECT_TRUE(tile(7)->toolTip().contains(reason)) << tile(7)->toolTip().toStdString();
  EXPECT_EQ(tile(7)->accessibleDescription(), QStringLiteral("~Disabled. ") + reason);
}

TEST_F(SwitchGrid, AppearanceChangedElsewhereIsReadAgain) {
  panel.popUp(QRect(100, 0, 20, 20));
  ASSERT_TRUE(becomesIdle());
  EXPECT_FALSE(tile(2)->isChecked());
  Host::current().preferences->setValue(Preferences::kGlobalDomain, "AppleInterfaceStyle", "Dark");
  const auto before = Theme::shared().appearance();
  Theme::shared().setAppearance(Theme::Appearance::dark);
  Theme::shared().setAppearance(Theme::Appearance::light);
  EXPECT_TRUE(waitUntil([this] { return tile(2)->isChecked(); }));
  EXPECT_EQ(tile(2)->imageName(), "ic_dark");
  Theme::shared().setAppearance(before);
}

}  // namespace
