#include "AppDelegate.h"
#include "FullDiskAccessViewController.h"
#include "MainWindow.h"
#include "Pictures.h"
#include "TCPreferenceWindowController.h"

namespace brisko::test {

void takeShellPictures(AppDelegate& delegate, DemoRoot&) {
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
}

}  // namespace brisko::test
