#include "BrowserProfiles.h"
#include "EntryTable.h"
#include "FakeInstalledApplications.h"
#include "ImageCheckBox.h"
#include "InternetViewController.h"
#include "RingButton.h"
#include "WindowFixture.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>

namespace brisko::test {
namespace {

using Page = InternetModel::Page;

class InternetPage : public WindowFixture {
 protected:
  InternetPage() {
    auto made = std::make_unique<FakeInstalledApplications>();
    for (const auto& [id, name] : {std::pair("firefox", "Firefox"), {"chromium", "Chromium"}}) {
      InstalledApplication application;
      application.desktopID = id;
      application.name = name;
      application.kind = InstalledApplication::Kind::package;
      made->applications.push_back(application);
    }
    installed = made.get();
    Host::current().installedApplications = std::move(made);
    makeHistory(profile + "History", 3);
    makeLogins(profile + "Login Data", 2);
  }

  InternetModel& model() {
    return static_cast<InternetViewController&>(*delegate->pages()[8]).model();
  }
  template <typename Widget>
  Widget* on(const char* name) {
    auto* found = page(8)->findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  void press(const char* name) { QTest::mouseClick(on<QWidget>(name), Qt::LeftButton); }
  bool waitFor(Page wanted) {
    return waitUntil([&] { return model().indePage() == wanted; });
  }
  void scan() {
    delegate->goToPage(8);
    press("mainButton");
    ASSERT_TRUE(waitFor(Page::scanned));
  }
  /// Answers the modal windows that come up, in this order, and keeps what they said.
  void answer(std::vector<const char*> buttons) {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, qApp, [this, poll, buttons]() mutable {
      QWidget* panel = QApplication::activeModalWidget();
      if (panel == nullptr) return;
      const char* button = buttons.front();
      auto* pressed = panel->findChild<QWidget*>(QLatin1String(button));
      const bool isQuit = qstrcmp(button, "quit") == 0;
      if (pressed == nullptr && !isQuit) return;  // the one before is still fading out
      QString said;
      for (const QLabel* label : panel->findChildren<QLabel*>())
        said += label->text() + u'\n';
      for (const auto* details : panel->findChildren<QPlainTextEdit*>())
        said += details->isVisibleTo(panel) ? details->toPlainText() : QString();
      texts << said;
      buttons.erase(buttons.begin());
      if (buttons.empty()) poll->deleteLater();
      isQuit ? find<QAction>("quit")->trigger() : QTest::mouseClick(pressed, Qt::LeftButton);
    });
    poll->start(20);
  }
  void clickBox(EntryTable* table, int row) {
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                      table->visualRect(table->model()->index(row, 0)).center());
  }
  QString shownName() {
    return on<QWidget>("subBroScrollView")->findChild<QLabel*>(QStringLiteral("nameLabel"))->text();
  }
  QString cell(const char* table, int row, int column) {
    return on<EntryTable>(table)->model()->index(row, column).data().toString();
  }

  FakeInstalledApplications* installed = nullptr;
  const std::string profile = root / "Users/anna/.config/chromium/Default/";
  QStringList texts;
};

TEST_F(InternetPage, ScansShowsBothTablesAndErasesWhatIsTicked) {
  launch();
  EXPECT_EQ(on<RingButton>("mainButton")->text(), "Scan");
  scan();
  auto* left = on<EntryTable>("leftTableView");
  auto* right = on<EntryTable>("rightTableView");
  ASSERT_EQ(left->model()->rowCount(), 2);
  EXPECT_EQ(shownName(), "Firefox");
  QTest::keyClick(left, Qt::Key_Down);
  EXPECT_EQ(shownName(), "Chromium");
  EXPECT_EQ(cell("rightTableView", 0, 1), "Browsing History");
  EXPECT_EQ(cell("rightTableView", 0, 2), "3 Items");
  clickBox(right, 0);
  QTest::mouseDClick(right->viewport(), Qt::LeftButton, {},
                     right->visualRect(right->model()->index(0, 0)).center());
  EXPECT_EQ(model().browserArr()[1]->isSelect, 1) << "the second of two quick clicks counts";
  clickBox(right, 0);
  EXPECT_EQ(model().browserArr()[1]->isSelect, 2);
  EXPECT_EQ(right->selectAllBox()->imageName(), "halfsel");
  QTest::keyClick(right, Qt::Key_Space);
  EXPECT_EQ(model().browserArr()[1]->isSelect, 1);
  clickBox(left, 0);
  EXPECT_EQ(model().browserArr()[0]->isSelect, 0);
  answer({"answer0"});
  press("mainButton");
  EXPECT_EQ(rowsIn(profile + "History", "urls"), 3) << "it was not confirmed";
  answer({"answer1", "answer0"});
  press("mainButton");
  ASSERT_TRUE(waitFor(Page::scanned));
  ASSERT_TRUE(waitUntil([&] { return texts.size() == 3; }));
  EXPECT_TRUE(texts[1].contains("2 saved passwords of Chromium will be lost"));
  EXPECT_TRUE(texts[1].contains("Chromium, Browsing History: 3 Items"));
  EXPECT_TRUE(texts[2].contains("6 kinds of data were erased."));
  EXPECT_EQ(rowsIn(profile + "History", "urls"), 0);
  EXPECT_EQ(rowsIn(profile + "Login Data", "logins"), 0);
  EXPECT_EQ(cell("rightTableView", 0, 2), "0 byte") << "the first browser is shown again";
  EXPECT_FALSE(on<RingButton>("mainButton")->isEnabled());
  press("backHomeButton");
  EXPECT_EQ(on<QStackedWidget>("views")->currentWidget()->objectName(), "startPage");
}

TEST_F(InternetPage, AsksToCloseBrowsersAndNamesWhatCouldNotBeErased) {
  launch();
  delegate->goToPage(8);
  workspace->applications = {{"firefox", "Firefox", "", "", 1}};
  answer({"answer0"});
  press("mainButton");
  EXPECT_EQ(model().indePage(), Page::start);
  EXPECT_TRUE(texts[0].contains("Please close your Firefox browser to start clean!"));
  workspace->applications.clear();
  scan();
  OtherConnection other(profile + "Login Data");
  other.run("BEGIN EXCLUSIVE");
  answer({"answer1", "answer0"});
  press("mainButton");
  EXPECT_FALSE(delegate->pages()[8]->isCanClick());
  ASSERT_TRUE(waitUntil([&] { return texts.size() == 3; }));
  EXPECT_TRUE(texts[2].contains("Chromium, Save Password"));
  EXPECT_TRUE(texts[2].contains("Login Data: it is in use by another program"));
  other.run("ROLLBACK");
  EXPECT_EQ(rowsIn(profile + "Login Data", "logins"), 2);
  EXPECT_EQ(model().browserArr()[1]->chrArr[4]->size, "2 Items") << "what it was when it was read";
  EXPECT_EQ(rowsIn(profile + "History", "urls"), 0) << "the others go on";
}

TEST_F(InternetPage, WhoQuitsAtTheNoticeOfProtectedFilesHasNothingErased) {
  root.folder("Applications/Safari.app");
  launch();
  scan();
  answer({"answer1", "quit", "answer0"});
  press("mainButton");
  ASSERT_TRUE(waitUntil([&] { return texts.size() == 3; }));
  EXPECT_TRUE(texts[1].contains("The system protects these files"));
  EXPECT_TRUE(texts[2].contains("Stopped early"));
  EXPECT_EQ(rowsIn(profile + "History", "urls"), 3);
}

TEST_F(InternetPage, SaysThatThereIsNoBrowser) {
  installed->applications.clear();
  launch();
  scan();
  EXPECT_TRUE(on<QWidget>("nothingView")->isVisible());
  EXPECT_FALSE(on<QWidget>("tables")->isVisible());
  EXPECT_FALSE(on<RingButton>("mainButton")->isEnabled());
}

}  // namespace
}  // namespace brisko::test
