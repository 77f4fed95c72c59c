#include "AppDelegate.h"
#include "MainWindow.h"
#include "Pictures.h"
#include "UpdateWindowController.h"
#include "VersionCheck.h"

namespace brisko::test {

void takeUpdatePictures(AppDelegate& delegate, DemoRoot&) {
  using State = VersionResult::State;
  UpdateWindowController window(delegate.window());
  window.show();
  saveNow(&window, "update-checking");
  settle();  // the check itself, which finds no network here
  window.whatIsNewVersionDiff({State::noNetwork, {}, {}, {}});
  save(&window, "update-no-network");
  window.whatIsNewVersionDiff({State::noUpdate, {}, {}, {}});
  save(&window, "update-none");
  window.whatIsNewVersionDiff(
      {State::newVersion,
       "1.1",
       {"Duplicates of large files are found twice as fast.",
        "The Disk Manager shows the health of drives that are connected over USB, and says what it "
        "means when one of them reports trouble.",
        "Junk left by container tools is found.", "Two crashes less."},
       {}});
  save(&window, "update-new-version");
  window.hide();
}

}  // namespace brisko::test
