#include "LagFileViewController.h"

#include "ImageLookup.h"
#include "LocalizedString.h"
#include "MarkSureDeleteWC.h"
#include "ModuleTable.h"
#include "ui_LagFileViewController.h"

namespace brisko {
namespace {

constexpr int kMainButtonSide = 112;

}  // namespace

LagFileViewController::LagFileViewController()
    : PageController(4), ui_(std::make_unique<Ui::LagFileViewController>()) {
  ui_->setupUi(getView());
  getView()->setFocusPolicy(Qt::ClickFocus);
  list_ =
      std::make_unique<ListFileViewController>(ui_->listView, static_cast<ListFileDelegate*>(this));
  ui_->startView->showModule(moduleTable()[4]);
  ui_->startView->show(moduleTable()[4].selectedIcon, getLocalizedString(moduleTable()[4].label),
                       getLocalizedString("Drop a folder here, or add one, to see what fills it."));
  ui_->mainButton->setFixedSize(kMainButtonSide, kMainButtonSide);
  // Both sides share the room that is left.
  for (QWidget* side : {ui_->statusArea, ui_->balance})
    side->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  ui_->pauseButton->setIconSize(QSize(18, 18));
  connect(ui_->mainButton, &QAbstractButton::clicked, this, &LagFileViewController::buttonAction);
  connect(ui_->pauseButton, &QAbstractButton::clicked, this, [this] {
    list_->pauseButtonAction();
    showPause();
  });
  connect(ui_->dropArea, &DropArea::viewDragAction, this,
          [this](const std::string& path) { list_->showFolder(path); });
  setPage(Page::choose);
}

LagFileViewController::~LagFileViewController() = default;

bool LagFileViewController::isCanClick() const {
  return !list_->isRemoving();
}

void LagFileViewController::buttonAction() {
  switch (indePage_) {
    case Page::choose:
      return list_->selectFileButtonAction();
    case Page::scanning:
      return list_->stopScanButtonAction();
    case Page::results:
      return list_->deleteFiles();
  }
}

void LagFileViewController::setPage(Page page) {
  indePage_ = page;
  const bool isStart = page == Page::choose;
  const bool isScanning = page == Page::scanning;
  ui_->views->setCurrentWidget(isStart ? ui_->firstView : ui_->listView);
  ui_->mainButton->setText(getLocalizedString(isStart ? "Add" : isScanning ? "Stop" : "Remove"));
  ui_->mainButton->setLook(isScanning ? RingButton::Look::working : RingButton::Look::filled);
  ui_->mainButton->setEnabled(page != Page::results);
  // Empty on both sides of it, the button stands in the middle.
  ui_->selectionLabel->setVisible(!isStart);
  ui_->pathLabel->setVisible(!isStart);
  ui_->balance->setVisible(isStart);
  ui_->pauseButton->setVisible(isScanning);
  showNotice(QString());
  showPause();
}

void LagFileViewController::showPause() {
  const bool isPaused = list_->isPaused();
  ui_->pauseButton->setIcon(ImageLookup::icon(isPaused ? "btn_start" : "btn_pause"));
  ui_->pauseButton->setText(getLocalizedString(isPaused ? "Continue" : "Pause"));
}

void LagFileViewController::showDetailPage() {
  setPage(Page::scanning);
}

void LagFileViewController::changeToRemoveButton() {
  setPage(Page::results);
}

void LagFileViewController::listFileBackButtonAction() {
  setPage(Page::choose);
  ui_->mainButton->setPercentage(0);
  if (getView()->isVisible()) ui_->mainButton->setFocus();
}

void LagFileViewController::changeMainButtonStart(bool enabled) {
  ui_->mainButton->setEnabled(enabled);
}

void LagFileViewController::toProWithValue(float percentage) {
  ui_->mainButton->setPercentage(static_cast<double>(percentage) / 100);
  if (percentage >= 100) ui_->mainButton->setLook(RingButton::Look::filled);
}

void LagFileViewController::showNotice(const QString& text) {
  ui_->noticeLabel->setText(text);
  ui_->noticeLabel->setVisible(!text.isEmpty());
}

void LagFileViewController::cannotShow(const QString& title, const QString& sentence) {
  showNotice(sentence.isEmpty() ? title : title + QLatin1Char(' ') + sentence);
}

void LagFileViewController::everythingRemoved(std::size_t count, std::uint64_t freedBytes) {
  showNotice(removalText(count, freedBytes, "Everything is gone: %@ item removed, %@ freed.",
                         "Everything is gone: %@ items removed, %@ freed."));
}

void LagFileViewController::showStatus(const QString& line, const QString& detail) {
  ui_->selectionLabel->setText(line);
  QLabel* label = ui_->pathLabel;
  label->setText(label->fontMetrics().elidedText(detail, Qt::ElideMiddle, label->width()));
}

}  // namespace brisko
