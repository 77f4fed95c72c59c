#pragma once

#include "ListFileViewController.h"
#include "PageController.h"

#include <memory>

namespace Ui {
class LagFileViewController;
}

namespace brisko {

/// The page of the Large/Old File Cleaner: the round button with its three states, the start view,
/// and the list with its map.
class LagFileViewController : public PageController, private ListFileDelegate {
  Q_OBJECT

 public:
  /// What the round button does.
  enum class Page : int { choose, scanning, results };

  LagFileViewController();
  ~LagFileViewController() override;

  /// False while removing.
  bool isCanClick() const override;
  Page indePage() const { return indePage_; }
  ListFileViewController& list() { return *list_; }

  /// The round button.
  void buttonAction();

 private:
  void showDetailPage() override;
  void changeToRemoveButton() override;
  void listFileBackButtonAction() override;
  void changeMainButtonStart(bool enabled) override;
  void toProWithValue(float percentage) override;
  void cannotShow(const QString& title, const QString& sentence) override;
  void everythingRemoved(std::size_t count, std::uint64_t freedBytes) override;
  void showStatus(const QString& line, const QString& detail) override;

  void setPage(Page page);
  void showNotice(const QString& text);
  void showPause();

  std::unique_ptr<Ui::LagFileViewController> ui_;
  Page indePage_ = Page::choose;
  std::unique_ptr<ListFileViewController> list_;
};

}  // namespace brisko
