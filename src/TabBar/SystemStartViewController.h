#pragma once

#include "PageController.h"

#include <memory>

class QGridLayout;

namespace Ui {
class SystemStartViewController;
}

namespace brisko {

class StatusFeed;

/// System Status: what the machine is and how it is doing, live while the page is seen, and the
/// ways to all modules.
class SystemStartViewController : public PageController {
  Q_OBJECT

 public:
  SystemStartViewController();
  ~SystemStartViewController() override;

  StatusFeed& feed() const { return *feed_; }

 private:
  void prepareCharts();
  void addModuleCards(QGridLayout* grid);
  void updateSysStat();
  void showProcessor();
  void showMemory();
  void showTransfers();
  void showFacts();

  std::unique_ptr<Ui::SystemStartViewController> ui_;
  StatusFeed* feed_;
  int updates_ = 0;
};

}  // namespace brisko
