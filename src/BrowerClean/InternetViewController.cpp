#include "InternetViewController.h"

#include "APFSScanWindowController.h"
#include "ApplicationIcon.h"
#include "BrowerTableModel.h"
#include "CloseInterViewEndWindowController.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "ModuleTable.h"
#include "RingButton.h"
#include "Theme.h"
#include "ui_InternetViewController.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QTimerEvent>

namespace brisko {
namespace {

constexpr int kProgressInterval = 100;  // milliseconds
constexpr int kHeadIconSide = 28;

using Page = InternetModel::Page;

}  // namespace

InternetViewController::InternetViewController()
    : PageController(8),
      ui_(std::make_unique<Ui::InternetViewController>()),
      browsers_(new BrowerTableModel(BrowerTableModel::Level::browsers, this)),
      kinds_(new BrowerTableModel(BrowerTableModel::Level::kinds, this)) {
  ui_->setupUi(getView());
  getView()->setFocusPolicy(Qt::ClickFocus);
  mainButton = ui_->mainButton;
  leftTableView = ui_->leftTableView;
  rightTableView = ui_->rightTableView;
  ui_->startView->showModule(moduleTable()[8]);
  ui_->nothingView->show("ill_empty", getLocalizedString("No browser was found"),
                         getLocalizedString("None of the browsers that can be cleaned is "
                                            "installed for you."));
  setUpTables();
  connectControls();
  model_.setCloseQuestion([this](const std::string& text) { return askToClose(text); });
  model_.setAccessNotice([this] { showAccessNotice(); });
  model_.setListener(this);
  pageChanged();
}

InternetViewController::~InternetViewController() {
  model_.setListener(nullptr);
}

void InternetViewController::setUpTables() {
  leftTableView->setEntries(browsers_, BrowerTableModel::name);
  leftTableView->horizontalHeader()->hide();
  leftTableView->setAccessibleName(getLocalizedString("Browsers"));
  rightTableView->setEntries(kinds_, BrowerTableModel::name);
  rightTableView->setAccessibleName(getLocalizedString("Data of the browser"));
  connect(leftTableView, &EntryTable::toggleRequested, this,
          [this](const QModelIndex& index) { selectBrower(index, *browsers_); });
  connect(rightTableView, &EntryTable::toggleRequested, this,
          [this](const QModelIndex& index) { selectBrower(index, *kinds_); });
  connect(rightTableView->selectAllBox(), &QAbstractButton::clicked, this,
          [this] { model_.selectBrower(model_.selectedBrower()); });
  connect(leftTableView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) {
            if (!current.isValid()) return;
            model_.setBroSelectIndex(static_cast<std::size_t>(current.row()));
            changeDetail();
          });
}

void InternetViewController::connectControls() {
  ui_->backHomeButton->setIcon(ImageLookup::icon("ic_back"));
  ui_->backHomeButton->setIconSize(QSize(18, 18));
  connect(mainButton, &QAbstractButton::clicked, this, &InternetViewController::buttonAction);
  connect(ui_->backHomeButton, &QAbstractButton::clicked, this,
          &InternetViewController::backHomeButtonAction);
  connect(ui_->stopButton, &QAbstractButton::clicked, this, [this] {
    if (model_.indePage() == Page::cleaning) {
      ui_->stopButton->setEnabled(false);
      model_.stopCleaning();
    } else {
      model_.backHomeButtonAction();
    }
  });
}

void InternetViewController::selectBrower(const QModelIndex& index, const BrowerTableModel& rows) {
  model_.selectBrower(rows.row(index.row()));
}

void InternetViewController::buttonAction() {
  if (model_.indePage() == Page::scanned && !userConfirmsCleaning()) return;
  model_.buttonAction();
}

void InternetViewController::backHomeButtonAction() {
  model_.backHomeButtonAction();
}

// What the model says.

void InternetViewController::pageChanged() {
  const bool isAtWork = model_.indePage() == Page::scanning || model_.indePage() == Page::cleaning;
  QWidget* shown = ui_->startPage;
  if (isAtWork) {
    ui_->scanNodeView->setText(getLocalizedString(model_.indePage() == Page::scanning
                                                      ? "Looking at what your browsers keep…"
                                                      : "Erasing what you ticked…"));
    shown = ui_->loadBgView;
  } else if (model_.indePage() == Page::scanned) {
    shown = ui_->detailBGView;
  }
  if (isAtWork && !aTimer.isActive()) {
    aTimer.start(kProgressInterval, this);
    ui_->stopButton->setEnabled(true);
  }
  if (!isAtWork) aTimer.stop();
  const bool isEmpty = model_.browserArr().empty();
  ui_->nothingView->setVisible(isEmpty);
  ui_->tables->setVisible(!isEmpty);
  QWidget* before = ui_->views->currentWidget();
  if (before != shown && before->isAncestorOf(before->window()->focusWidget())) {
    getView()->setFocus();
  }
  ui_->views->setCurrentWidget(shown);
  showMainButton();
}

void InternetViewController::showMainButton() {
  const InternetButton& button = model_.mainButton();
  const QString title = getLocalizedString(button.title.c_str());
  const bool isAtWork = model_.indePage() == Page::scanning || model_.indePage() == Page::cleaning;
  mainButton->setText(title);
  mainButton->setAccessibleName(title);
  // The page holds the focus while the button cannot, instead of whatever comes next.
  const QWidget* window = getView()->window();
  if (!button.enabled && window->focusWidget() == mainButton) getView()->setFocus();
  mainButton->setEnabled(button.enabled);
  if (button.enabled && window->focusWidget() == getView()) mainButton->setFocus();
  mainButton->setLook(isAtWork ? RingButton::Look::working : RingButton::Look::filled);
  mainButton->setPercentage(button.percentage);
  const bool isClean = model_.indePage() == Page::scanned && button.enabled;
  mainButton->setDetail(isClean ? planText("%@ kind", "%@ kinds") : QString());
}

void InternetViewController::progressChanged() {
  mainButton->setPercentage(model_.mainButton().percentage);
}

void InternetViewController::timerEvent(QTimerEvent*) {
  model_.raiseProgress();
}

void InternetViewController::browsersChanged() {
  const auto selected = static_cast<int>(model_.broSelectIndex());
  browsers_->reloadData(model_.browserArr());
  if (browsers_->rowCount() > 0) {
    leftTableView->setCurrentIndex(browsers_->index(selected, BrowerTableModel::name));
  }
  changeDetail();
}

void InternetViewController::selectionChanged() {
  browsers_->rowsChanged();
  kinds_->rowsChanged();
  const auto browser = model_.selectedBrower();
  if (browser) {
    rightTableView->selectAllBox()->setImageName(InternetModel::boxImage(*browser));
  }
}

void InternetViewController::changeDetail() {
  const auto browser = model_.selectedBrower();
  if (!browser) {
    kinds_->reloadData({});
    return;
  }
  ui_->nameLabel->setText(displayText(browser->name));
  const QIcon& icon = applicationIcon(browser->iconImage);
  const QPixmap image =
      icon.isNull() ? ImageLookup::pixmap("ic_internet", QSize(kHeadIconSide, kHeadIconSide),
                                          getView()->devicePixelRatioF())
                    : icon.pixmap(kHeadIconSide, kHeadIconSide);
  ui_->iconImageView->setPixmap(image);
  kinds_->reloadData(browser->chrArr);
  if (!browser->chrArr.empty()) {
    rightTableView->setCurrentIndex(kinds_->index(0, BrowerTableModel::name));
  }
  rightTableView->selectAllBox()->setImageName(InternetModel::boxImage(*browser));
  QStringList reasons;
  for (const auto& kind : browser->chrArr) {
    for (const std::string& reason : kind->reasons)
      reasons << displayText(reason);
  }
  reasons.removeDuplicates();
  ui_->nodeLabel->setText(reasons.join(QLatin1Char('\n')));
  ui_->nodeLabel->setVisible(!reasons.isEmpty());
}

// Windows.

QString InternetViewController::planText(const char* one, const char* many) const {
  const auto count = model_.plan().size();
  return filledIn(getLocalizedString(count == 1 ? one : many), QString::number(count));
}

bool InternetViewController::userConfirmsCleaning() {
  constexpr int kErase = 1;
  MessagePanel::Content content;
  content.imageName = "ic_trash";
  content.title = planText("Erase %@ kind of data?", "Erase %@ kinds of data?");
  content.text = getLocalizedString(
      "It is erased for good. Sites will not know you any more where cookies go, and ask you to "
      "log in again.");
  for (const auto& kind : model_.plan()) {
    const auto browser = kind->parObj.lock();
    content.details << displayText(browser ? browser->name : "") + QStringLiteral(", ") +
                           getLocalizedString(kind->name.c_str()) + QStringLiteral(": ") +
                           QString::fromStdString(kind->size);
  }
  const auto losses = model_.losses();
  if (!losses.empty()) {
    content.imageName = "ic_warning";
    QStringList texts;
    for (const std::string& loss : losses)
      texts << displayText(loss);
    content.text = texts.join(QLatin1Char('\n')) + QStringLiteral("\n\n") + content.text;
  }
  content.answers = {
      {getLocalizedString("Cancel"), MessagePanel::Answer::Style::plain, 0},
      {planText("Erase %@ Kind", "Erase %@ Kinds"), MessagePanel::Answer::Style::danger, kErase}};
  return MessagePanel::run(content, getView()) == kErase;
}

bool InternetViewController::askToClose(const std::string& text) {
  if (closeBroWC == nullptr) closeBroWC = new CloseBrowerWindowController(this, getView());
  isClose_ = false;
  closeBroWC->changeNodeLabelWithStr(text);
  closeBroWC->exec();
  return isClose_;
}

void InternetViewController::showAccessNotice() {
  APFSScanWindowController window(getView());
  window.exec();
  // Who quits the program does not wait for what was not begun yet.
  if (window.isShuttingDown()) model_.stopCleaning();
  getView()->window()->activateWindow();
}

void InternetViewController::cleaningEnded() {
  if (endWindow_ == nullptr) endWindow_ = new CloseInterViewEndWindowController(getView());
  endWindow_->showResult(model_);
  endWindow_->exec();
}

}  // namespace brisko
