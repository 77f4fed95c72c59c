#pragma once

#include "AppDelegate.h"
#include "Dispatch.h"
#include "FakeWorkspace.h"
#include "Host.h"
#include "MainWindow.h"
#include "PageController.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace brisko::test {

/// Lets the event loop run until `done`, for at most ten seconds. False when the time was up.
inline bool waitUntil(const std::function<bool()>& done) {
  QElapsedTimer timer;
  timer.start();
  while (!done()) {
    if (timer.hasExpired(10'000)) return false;
    QTest::qWait(2);
  }
  return true;
}

/// The real window over a made system of its own, driven by object names.
class WindowFixture : public testing::Test {
 protected:
  WindowFixture() : host(root.path()) {
    auto made = std::make_unique<FakeWorkspace>();
    workspace = made.get();
    Host::current().workspace = std::move(made);
    setIntroduced("YES");
  }
  ~WindowFixture() override {
    delegate.reset();
    Dispatch::waitForBackground();
    QCoreApplication::processEvents();
  }

  /// As the process entry does it.
  void launch() {
    delegate = std::make_unique<AppDelegate>();
    delegate->applicationDidFinishLaunching();
    delegate->window()->show();
    QCoreApplication::processEvents();
  }

  /// Whether the program introduced itself to this user before; null for never.
  static void setIntroduced(PropertyList value) {
    Host::current().preferences->setValue(Preferences::kApplicationDomain, "AFristLoad",
                                          std::move(value));
  }

  template <typename Widget = QWidget>
  Widget* find(const char* name) {
    auto* found = delegate->window()->findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  void click(const char* name) { QTest::mouseClick(find(name), Qt::LeftButton); }
  QWidget* page(int index) {
    return delegate->pages().at(static_cast<std::size_t>(index))->getView();
  }
  int shownPage() {
    int shown = -1;
    for (const auto& each : delegate->pages()) {
      if (each->getView()->isHidden()) continue;
      EXPECT_EQ(shown, -1) << "two pages are shown";
      shown = each->getViewID();
    }
    return shown;
  }

  TemporaryFolder root;
  // No disk tool, and fixed files of this test's own: the Disk Manager looks as soon as it is made.
  Environment tools{"BRISKO_TOOLS", root.folder("no tools").c_str()};
  Environment runtime{"XDG_RUNTIME_DIR", root.folder("runtime").c_str()};
  TestHost host;
  FakeWorkspace* workspace = nullptr;
  std::unique_ptr<AppDelegate> delegate;
};

}  // namespace brisko::test
