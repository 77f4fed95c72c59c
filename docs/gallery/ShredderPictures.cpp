#include "AppDelegate.h"
#include "DemoRoot.h"
#include "FileShareController.h"
#include "MainWindow.h"
#include "PageController.h"
#include "Pictures.h"
#include "ShredProgressWindowController.h"

#include <QApplication>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace brisko::test {
namespace {

// Things to erase, one of them with a second name elsewhere.
void makePapers(const std::string& papers) {
  namespace fs = std::filesystem;
  fs::remove_all(papers);
  for (const char* name : {"Old contracts/2019/Lease.pdf", "Old contracts/2019/Bank.pdf",
                           "Old contracts/Letters.odt", "Payroll 2021.ods", "Passport scan.png",
                           "Tax return \"draft\n2\".pdf", "Shared list.txt"}) {
    const fs::path path = papers + "/" + name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary)
        << std::string(180'000 + 7'000 * path.string().size(), 'x');
  }
  std::ofstream(papers + "/Disk image.iso", std::ios::binary) << std::string(96'000'000, 'x');
  fs::create_hard_link(papers + "/Shared list.txt", papers + "/Another name.txt");
}

void waitForRun(FileShareController& shredder) {
  while (!shredder.isCanClick())
    settle(20);
}

// Takes the picture of the run's end and closes its window.
void closeRun(FileShareController& shredder, const char* picture, const char* button) {
  waitForRun(shredder);
  save(shredder.progressWindow(), picture);
  click(shredder.progressWindow(), button);
  settle();
}

}  // namespace

void takeShredderPictures(AppDelegate& delegate, DemoRoot& root) {
  auto& shredder = static_cast<FileShareController&>(*delegate.pages()[9]);
  QWidget* page = shredder.getView();
  const std::string papers = root.path() + "/Users/anna/Papers";
  const auto add = [&](std::vector<std::string> names) {
    for (std::string& name : names)
      name = papers + "/" + name;
    shredder.viewDragAction(names);
  };
  makePapers(papers);
  delegate.goToPage(9);
  save(delegate.window(), "shredder-start");
  add({"Old contracts", "Payroll 2021.ods", "Passport scan.png", "Tax return \"draft\n2\".pdf"});
  shredder.model().toggle(2);
  save(delegate.window(), "shredder-list");
  answerNext("shredder-confirm", "answer1");
  click(page, "eraseButton");
  while (shredder.progressWindow() == nullptr)
    settle(5);
  closeRun(shredder, "shredder-erased", "successButton");
  save(delegate.window(), "shredder-outcome");
  answerNext("shredder-not-added", "answer0");
  shredder.viewDragAction({"/etc"});
  click(page, "emptyListButton");
  add({"Passport scan.png", "Shared list.txt", "Disk image.iso"});
  shredder.model().setEraserTimes(35);
  shredder.model().toggle(2);
  answerNext(nullptr, "answer1");
  click(page, "eraseButton");
  while (shredder.progressWindow() == nullptr)
    settle(5);
  closeRun(shredder, "shredder-failed", "failButton");
  save(delegate.window(), "shredder-not-all-erased");
  shredder.model().setAllSelectOrNoSelect(true);
  answerNext(nullptr, "answer1");
  click(page, "eraseButton");
  while (shredder.progressWindow() == nullptr)
    QApplication::processEvents(QEventLoop::AllEvents, 10);
  saveNow(shredder.progressWindow(), "shredder-erasing");
  click(shredder.progressWindow(), "cancelButton");
  closeRun(shredder, "shredder-cancelled", "failButton");
  shredder.model().setEraserTimes(1);
  shredder.model().emptyListButtonAction();
}

}  // namespace brisko::test
