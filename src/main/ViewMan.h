#pragma once

#include <vector>

namespace brisko {

class PageController;

/// The page manager: knows all pages and shows one of them. One per process, main thread only.
class ViewMan {
 public:
  /// The shared instance, made on the first call.
  static ViewMan& returnViewMan();

  /// Starts with no pages. The pages themselves belong to the delegate that made them.
  void viewInit();

  /// Adds a page; nothing is added for null.
  void addView(PageController* page);

  /// Shows the page whose row is `index` and hides every other.
  void showView(int index);

  /// Whether the shown page may be left: false as soon as one page is busy. The index is ignored.
  bool checkCanClick(int index) const;

  const std::vector<PageController*>& viewObjs() const { return viewObjs_; }

 private:
  ViewMan() { viewInit(); }

  std::vector<PageController*> viewObjs_;
};

}  // namespace brisko
