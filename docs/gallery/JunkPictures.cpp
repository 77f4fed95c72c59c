#include "AppDelegate.h"
#include "DemoRoot.h"
#include "Dispatch.h"
#include "FastCleanViewController.h"
#include "MainWindow.h"
#include "PageController.h"
#include "Pictures.h"
#include "RingButton.h"

namespace brisko::test {
namespace {

bool scanIsDone(FastCleanViewController& junk) {
  return junk.model().indexPage() == 2;
}

}  // namespace

void takeJunkPictures(AppDelegate& delegate, DemoRoot& root) {
  auto& junk = static_cast<FastCleanViewController&>(*delegate.pages()[1]);
  QWidget* page = junk.getView();
  delegate.goToPage(1);
  save(delegate.window(), "junk-start");
  click(page, "mainButton");
  // The scan itself ends sooner than anybody could look; its reports are let through one by one.
  Dispatch::waitForBackground();
  for (int report = 0; report < 3; ++report)
    Dispatch::runPendingFor(std::chrono::microseconds(0));
  page->findChild<RingButton*>()->finishMovement();
  saveNow(delegate.window(), "junk-scanning");
  while (!scanIsDone(junk))
    settle(5);
  save(delegate.window(), "junk-scanned");
  click(page->findChild<QWidget*>(QStringLiteral("fastTypeView0")), "detailButton");
  junk.model().selectListButton(2);
  junk.model().selectListButton(5);
  save(delegate.window(), "junk-details");
  click(page, "backToDetailButton");
  save(delegate.window(), "junk-partly-selected");
  root.changeOneFile();
  clickAndAnswer(page, "mainButton", "junk-confirm", "answer1");
  saveNow(delegate.window(), "junk-cleaning");
  while (!junk.isCanClick())
    settle(5);
  save(delegate.window(), "junk-cleaned");
  clickAndAnswer(page, "failuresButton", "junk-not-removed", "answer0");
  root.clear();
  click(page, "mainButton");
  while (!scanIsDone(junk))
    settle(5);
  save(delegate.window(), "junk-nothing-found");
  click(page, "backHomeButton");
}

}  // namespace brisko::test
