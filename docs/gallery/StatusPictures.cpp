#include "AppDelegate.h"
#include "DemoFigures.h"
#include "HightActionViewController.h"
#include "MainWindow.h"
#include "Pictures.h"
#include "RecordedTools.h"
#include "StatusFeed.h"
#include "StatusPanel.h"
#include "SystemStartViewController.h"

#include <QScrollArea>
#include <QScrollBar>

namespace brisko::test {
namespace {

// Two minutes, that are over at once.
void fillHistory(StatusFeed& feed, int cores = 8) {
  while (!feed.information())
    settle(20);
  settle();
  for (int second = 0; second < static_cast<int>(FigureHistory::kSeconds); ++second)
    feed.take(demoSample(second, cores));
}

}  // namespace

void takeStatusPictures(AppDelegate& delegate, DemoRoot&) {
  auto& status = static_cast<SystemStartViewController&>(*delegate.pages()[0]);
  delegate.goToPage(0);
  fillHistory(status.feed());
  saveNow(delegate.window(), "system-status");
  auto* scrollArea = status.getView()->findChild<QScrollArea*>();
  scrollArea->verticalScrollBar()->setValue(scrollArea->verticalScrollBar()->maximum());
  saveNow(delegate.window(), "system-status-below");
  scrollArea->verticalScrollBar()->setValue(0);
  fillHistory(status.feed(), 128);
  saveNow(delegate.window(), "system-status-128-cores");
  RecordedTools tools;
  tools.answer("AppleShowAllFiles", "TRUE");
  tools.answer("autohide", "0");
  tools.answer("CreateDesktop", "TRUE");
  StatusPanel panel;
  panel.popUp(QRect(1000, 0, 20, 20));
  fillHistory(panel.feed());
  while (!panel.switches().model().isIdle())
    settle(20);
  saveNow(&panel, "menu-bar-panel");
}

}  // namespace brisko::test
