#include "AppDelegate.h"
#include "FullDiskAccessViewController.h"
#include "MainWindow.h"
#include "Pictures.h"
#include "StatusPanel.h"
#include "TCPreferenceWindowController.h"

namespace brisko::test {

void takeShellPictures(AppDelegate& delegate, DemoRoot&) {
  delegate.goToPage(0);
  save(delegate.window(), "system-status");
  delegate.goToPage(5);
  save(delegate.window(), "disk-manager");
  TCPreferenceWindowController about(delegate.window());
  about.show();
  save(&about, "about");
  about.hide();
  FullDiskAccessViewController access(delegate.window());
  access.show();
  save(&access, "full-disk-access");
  access.hide();
  StatusPanel panel;
  panel.popUp(QRect(1000, 0, 20, 20));
  save(&panel, "menu-bar-panel");
}

}  // namespace brisko::test
