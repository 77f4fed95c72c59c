#include "AMRelatedFilesWindowController.h"
#include "AppDelegate.h"
#include "DemoApplications.h"
#include "DemoRoot.h"
#include "MainWindow.h"
#include "PageController.h"
#include "Pictures.h"
#include "RelatedFilesTree.h"
#include "UninstallViewController.h"

#include <QApplication>
#include <QLineEdit>
#include <QTimer>

#include <functional>

namespace brisko::test {
namespace {

// Acts on the next modal window of this name, once.
void onWindow(const char* name, std::function<bool(QWidget*)> act) {
  auto* poll = new QTimer(qApp);
  QObject::connect(poll, &QTimer::timeout, [poll, name, act] {
    QWidget* panel = QApplication::activeModalWidget();
    if (panel == nullptr || panel->objectName() != QLatin1String(name)) return;
    // Taking a picture lets events through.
    poll->stop();
    if (!act(panel)) return poll->start();
    poll->deleteLater();
  });
  poll->start(20);
}

void takeRemovalPictures(UninstallViewController& apps) {
  onWindow("AMRelatedFilesWindowController", [&apps](QWidget* panel) {
    if (!apps.relatedFilesWinController()->model().isComplete()) return false;
    auto* outline = panel->findChild<RelatedFilesOutline*>();
    outline->expandAll();
    outline->setCurrentIndex(outline->model()->index(2, 0, outline->model()->index(0, 0)));
    save(panel, "apps-review");
    outline->scrollToBottom();
    save(panel, "apps-review-package");
    click(panel, "uninstallButton");
    return true;
  });
  onWindow("UninstallProgressWindowController", [&apps](QWidget* panel) {
    const RelatedFilesModel& model = apps.relatedFilesWinController()->model();
    static bool isTaken = false;
    if (!model.isEnded()) {
      if (!isTaken && model.deleteCount() > 0) saveNow(panel, "apps-removing");
      isTaken = model.deleteCount() > 0;
      return false;
    }
    isTaken = false;
    save(panel, "apps-removed");
    click(panel, "okButton");
    return true;
  });
  apps.uninstallAppButtonAction();
  while (!apps.isCanClick())
    QApplication::processEvents(QEventLoop::AllEvents, 10);
}

}  // namespace

void takeApplicationPictures(AppDelegate& delegate, DemoRoot& root) {
  auto& apps = static_cast<UninstallViewController&>(*delegate.pages()[2]);
  UninstallModel& model = apps.model();
  makeDemoApplications(root.path());
  delegate.goToPage(2);
  apps.refButtonAction();
  while (model.isBusy() || !model.isMeasured())
    settle(20);
  const auto tick = [&](const char* name) {
    for (std::size_t row = 0; row < model.showListArr().size(); ++row) {
      if (model.showListArr()[row]->name == name) model.selectUninstallApp(row);
    }
  };
  while (!model.isSort())
    model.didClickTableColumn(UninstallColumn::appname);
  model.didClickTableColumn(UninstallColumn::appname);
  tick("Aurora Editor");
  tick("Sketchbook");
  save(delegate.window(), "apps-list");
  auto* field = apps.getView()->findChild<QLineEdit*>();
  const auto search = [&](const char* text) {
    field->setText(QLatin1String(text));
    Q_EMIT field->textEdited(field->text());
  };
  search("aurora");
  save(delegate.window(), "apps-search");
  search("harbour");
  save(delegate.window(), "apps-nothing-found");
  apps.closeSearchButton();
  takeRemovalPictures(apps);
}

}  // namespace brisko::test
