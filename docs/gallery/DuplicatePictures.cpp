#include "AppDelegate.h"
#include "DemoDuplicates.h"
#include "DemoRoot.h"
#include "Dispatch.h"
#include "DuplicateOutline.h"
#include "DuplicateTreeModel.h"
#include "DuplicateViewController.h"
#include "MainWindow.h"
#include "PageController.h"
#include "Pictures.h"
#include "RingButton.h"
#include "Theme.h"

#include <QElapsedTimer>
#include <QFile>

#include <utility>

namespace brisko::test {
namespace {

void showResults(DuplicateViewController& duplicates) {
  Dispatch::waitForBackground();
  while (duplicates.model().isSearching() || !duplicates.model().bSearchFinished())
    settle(20);
}

// Both at once: the program's progress never goes back, so only its first search shows all of it.
void takeSearchPictures(AppDelegate& delegate, DuplicateViewController& duplicates) {
  DuplicateModel& model = duplicates.model();
  static bool isTaken = false;
  if (std::exchange(isTaken, true)) return;
  QElapsedTimer timer;
  timer.start();
  // The end of the search waits in the main queue meanwhile.
  while (model.progress() < 0.4F && timer.elapsed() < 2000)
    model.getPathForSreachDuplicate();
  model.getPathForSreachDuplicate();
  duplicates.getView()->findChild<RingButton*>()->finishMovement();
  for (auto appearance : {Theme::Appearance::dark, Theme::Appearance::light}) {
    Theme::shared().setAppearance(appearance);
    saveNow(delegate.window(), "duplicates-searching");
  }
}

void removeTicked(DuplicateViewController& duplicates) {
  duplicates.model().doRemoveDuplicateAction();
  while (!duplicates.isCanClick())
    settle(20);
}

}  // namespace

void takeDuplicatePictures(AppDelegate& delegate, DemoRoot& root) {
  auto& duplicates = static_cast<DuplicateViewController&>(*delegate.pages()[3]);
  QWidget* page = duplicates.getView();
  DuplicateModel& model = duplicates.model();
  const std::string pictures = root.path() + "/Users/anna/Holiday";
  makeDemoDuplicates(pictures);
  delegate.goToPage(3);
  save(delegate.window(), "duplicates-start");
  duplicates.viewDragAction(pictures);
  takeSearchPictures(delegate, duplicates);
  showResults(duplicates);
  auto* outline = page->findChild<DuplicateOutline*>();
  QAbstractItemModel& rows = *outline->model();
  model.didClickTableColumn(DuplicateColumn::FileSize);
  model.didClickTableColumn(DuplicateColumn::FileSize);
  for (int row = 0; row < 3; ++row)
    model.toggle(*static_cast<DuplicateTreeModel&>(rows).node(rows.index(row, 0)));
  // The hard links, and the three pictures.
  for (int row : {3, 4})
    outline->expand(rows.index(row, 0));
  outline->setCurrentIndex(rows.index(0, 0, rows.index(4, 0)));
  save(delegate.window(), "duplicates-found");
  model.loadValueForSegment(1);
  outline->expand(rows.index(1, 0));
  outline->setCurrentIndex(rows.index(0, 0, rows.index(1, 0)));
  save(delegate.window(), "duplicates-documents");
  model.loadValueForSegment(3);
  save(delegate.window(), "duplicates-none-of-type");
  model.loadValueForSegment(0);
  clickAndAnswer(page, "removeButton", "duplicates-confirm", "answer1");
  saveNow(delegate.window(), "duplicates-removing");
  while (!duplicates.isCanClick())
    settle(20);
  model.setAllSelectOrNoSelect(true);
  answerNext("duplicates-not-removed", "answer0");  // the hard links
  removeTicked(duplicates);
  makeDemoDuplicates(pictures);
  QFile::remove(QString::fromStdString(pictures + "/Phone/track.gpx"));
  duplicates.viewDragAction(pictures);
  showResults(duplicates);
  model.setAllSelectOrNoSelect(true);
  removeTicked(duplicates);
  save(delegate.window(), "duplicates-removed");
  duplicates.viewDragAction(pictures);
  showResults(duplicates);
  save(delegate.window(), "duplicates-nothing-found");
  click(page, "nothingButton");
}

}  // namespace brisko::test
