#include "ViewMan.h"

#include "LeftViewCtl.h"
#include "PageController.h"

#include <QWidget>

#include <algorithm>

namespace brisko {
namespace {

constexpr QPoint kShownOrigin(LeftViewCtl::kWidth, 0);
constexpr QPoint kHiddenOrigin(1000, 1000);

}  // namespace

ViewMan& ViewMan::returnViewMan() {
  static auto* manager = new ViewMan;
  return *manager;
}

void ViewMan::viewInit() {
  viewObjs_.clear();
  viewObjs_.reserve(10);
}

void ViewMan::addView(PageController* page) {
  if (page != nullptr) viewObjs_.push_back(page);
}

void ViewMan::showView(int index) {
  for (PageController* page : viewObjs_) {
    const bool isShown = page->getViewID() == index;
    QWidget* window = page->getView()->window();
    if (!isShown && page->getView()->isAncestorOf(window->focusWidget())) {
      // Else the focus would go on to whatever control comes next in the window.
      window->setFocus();
    }
    page->getView()->setVisible(isShown);
    page->getView()->move(isShown ? kShownOrigin : kHiddenOrigin);
  }
}

bool ViewMan::checkCanClick(int) const {
  return std::all_of(viewObjs_.begin(), viewObjs_.end(),
                     [](const PageController* page) { return page->isCanClick(); });
}

}  // namespace brisko
