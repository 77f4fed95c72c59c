#include "LocalServer.h"
#include "PropertyList.h"
#include "UpdateWindowController.h"
#include "WindowFixture.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

namespace brisko::test {
namespace {

class UpdateWindow : public WindowFixture {
 protected:
  void serve(const std::string& homeURL, const std::string& iniURL) {
    resources_.file("StringMessage.plist", linkTable(homeURL, iniURL));
    variable_ = std::make_unique<Environment>("BRISKO_RESOURCES", resources_.path().c_str());
  }

  /// Opens the window from the menu; `inside` runs while it is modal and must close it.
  void checkUpdate(const std::function<void(UpdateWindowController*)>& inside) {
    bool wasInside = false;
    QTimer::singleShot(0, delegate->window(), [&] {
      auto* window = delegate->window()->findChild<UpdateWindowController*>();
      ASSERT_NE(window, nullptr);
      wasInside = true;
      inside(window);
    });
    find<QAction>("checkUpdateAction")->trigger();
    EXPECT_TRUE(wasInside);
  }

  static std::string shownPanel(UpdateWindowController* window) {
    std::string shown;
    for (const char* name :
         {"checkProgressView", "noNetworkView", "noUpdateView", "haveUpdateView"}) {
      if (window->findChild<QWidget*>(QLatin1String(name))->isHidden()) continue;
      EXPECT_EQ(shown, "") << "two panels are shown";
      shown = name;
    }
    return shown;
  }

  static void click(UpdateWindowController* window, const char* button) {
    QTest::mouseClick(window->findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
  }

  TemporaryFolder resources_;
  std::unique_ptr<Environment> variable_;
};

PropertyList newerDescription() {
  PropertyList remote;
  remote.set("VersionCheck", 1000);
  remote.set("Version", "9.1 <b>x</b>");
  remote.set("1", "First");
  remote.set("2", std::string(600, 'w'));
  return remote;
}

TEST_F(UpdateWindow, ShowsANewVersionAndKeepsTheResultOfTheOneCheck) {
  auto home = std::make_unique<LocalServer>(answerWith("hi"));
  auto ini = std::make_unique<LocalServer>(answerWith(newerDescription().xml()));
  serve(home->address(), ini->address());
  launch();
  checkUpdate([&](UpdateWindowController* window) {
    EXPECT_TRUE(waitUntil([&] { return shownPanel(window) == "haveUpdateView"; }));
    EXPECT_EQ(window->findChild<QLabel*>("titleLable")->text(),
              "Brisko 9.1 <b>x</b> has been released.");
    const auto* list = window->findChild<QWidget*>("showVersionScrollView");
    const auto fields = list->findChildren<QLabel*>();
    ASSERT_EQ(fields.size(), 2);
    EXPECT_EQ(fields[0]->text(), "1.First");
    EXPECT_EQ(fields[1]->y(), fields[0]->geometry().bottom() + 1);
    EXPECT_GE(list->height(), fields[1]->geometry().bottom()) << "the last line can be scrolled to";
    click(window, "downloadButton");
    EXPECT_EQ(workspace->opened, std::vector<std::string>{"https://brisko.example/get"});
    window->closeWindow();
  });
  home.reset();
  ini.reset();
  checkUpdate([&](UpdateWindowController* window) {
    EXPECT_EQ(shownPanel(window), "haveUpdateView");
    click(window, "haveClose");
    EXPECT_TRUE(window->isVisible()) << "it fades first";
  });
}

TEST_F(UpdateWindow, SaysWhenTheNetworkCannotBeReached) {
  serve("http://127.0.0.1:1/", "http://127.0.0.1:1/");
  launch();
  checkUpdate([&](UpdateWindowController* window) {
    EXPECT_TRUE(waitUntil([&] { return shownPanel(window) == "noNetworkView"; }));
    QTest::keyClick(window, Qt::Key_Escape);
  });
}

TEST_F(UpdateWindow, QuittingEndsACheckUnderWayAfterTheFade) {
  const LocalServer silent("");
  serve(silent.address(), silent.address());
  launch();
  bool wasAsked = false;
  checkUpdate([&](UpdateWindowController* window) {
    QObject::connect(window, &UpdateWindowController::terminateRequested, [&] { wasAsked = true; });
    EXPECT_EQ(shownPanel(window), "checkProgressView");
    find<QAction>("quit")->trigger();
    EXPECT_TRUE(window->isVisible());
  });
  EXPECT_TRUE(wasAsked);
  delegate.reset();  // the server waits for its visitor to leave
}

}  // namespace
}  // namespace brisko::test
