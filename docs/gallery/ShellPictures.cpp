#include "AppDelegate.h"
#include "FullDiskAccessViewController.h"
#include "MainWindow.h"
#include "Pictures.h"
#include "TCPreferenceWindowController.h"

namespace brisko::test {

void takeShellPictures(AppDelegate& delegate, DemoRoot&) {
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
