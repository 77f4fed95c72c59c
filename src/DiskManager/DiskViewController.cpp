#include "DiskViewController.h"

#include "DiskOutline.h"
#include "DiskTreeModel.h"
#include "FormatEndViewController.h"
#include "FormatPanelWindow.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "MakeSureFormatViewController.h"
#include "MessagePanel.h"
#include "NSNotificationCenter.h"
#include "VolumeName.h"
#include "ui_DiskViewController.h"

#include <QShortcut>
#include <QTimer>

#include <utility>

namespace brisko {
namespace {

constexpr int kEndPanelDelay = 1000;  // milliseconds

}  // namespace

DiskViewController::DiskViewController()
    : PageController(5),
      ui_(std::make_unique<Ui::DiskViewController>()),
      tree_(new DiskTreeModel(this)) {
  ui_->setupUi(getView());
  getView()->setFocusPolicy(Qt::ClickFocus);
  ui_->outline->setTree(tree_);
  ui_->outline->setAccessibleName(getLocalizedString("Disks and volumes"));
  ui_->imageView->setImageSide(32);
  ui_->imageView->setTile(true);
  ui_->nothingView->show("ill_empty", getLocalizedString("No disks were found"), {});
  connectControls();
  model_.setListener(this);
  selectionChanged();
  busyChanged();
  watchVolumes();
  getDiskInfo();
}

DiskViewController::~DiskViewController() {
  for (const int token : observers_)
    NSNotificationCenter::defaultCenter().removeObserver(token);
  model_.setListener(nullptr);
}

void DiskViewController::watchVolumes() {
  watchMu = std::make_unique<WatchMountUnmount>();
  const auto look = [this](const NSNotification&) { getDiskInfo(); };
  auto& center = NSNotificationCenter::defaultCenter();
  observers_ = {center.addObserver(WatchMountUnmount::kMount, look),
                center.addObserver(WatchMountUnmount::kUnmount, look)};
}

void DiskViewController::connectControls() {
  const auto onClick = [this](QAbstractButton* button, void (DiskViewController::*action)()) {
    connect(button, &QAbstractButton::clicked, this, action);
  };
  onClick(ui_->refreshButton, &DiskViewController::getDiskInfo);
  onClick(ui_->lookAgainButton, &DiskViewController::getDiskInfo);
  onClick(ui_->ejectButton, &DiskViewController::EjectVolumes);
  onClick(ui_->renameButton, &DiskViewController::renamButtonAction);
  onClick(ui_->renameOkButton, &DiskViewController::okButtonAction);
  onClick(ui_->renameCancelButton, &DiskViewController::renameCancelButtonAction);
  onClick(ui_->formatButton, &DiskViewController::formatButtonAction);
  connect(ui_->renameField, &QLineEdit::returnPressed, this, &DiskViewController::okButtonAction);
  connect(ui_->renameField, &QLineEdit::textChanged, ui_->renameErrorLabel, &QWidget::hide);
  auto* escape = new QShortcut(Qt::Key_Escape, ui_->renameView);
  escape->setContext(Qt::WidgetWithChildrenShortcut);
  connect(escape, &QShortcut::activated, this, &DiskViewController::renameCancelButtonAction);
  ui_->ejectButton->setIcon(ImageLookup::icon("eject"));
  ui_->ejectButton->setIconSize(QSize(18, 18));
  connect(ui_->outline, &DiskOutline::EjectVolumes, this, &DiskViewController::EjectVolumes);
  connect(ui_->outline, &DiskOutline::currentRowChanged, this, [this](const QModelIndex& index) {
    if (!isFillingTree_ && index.isValid()) model_.shouldSelectItem(tree_->node(index));
  });
}

// What the model says.

void DiskViewController::treeChanged() {
  isFillingTree_ = true;
  tree_->reloadData(model_.allDiskArr());
  ui_->outline->expandAll();
  isFillingTree_ = false;
  showContent();
}

void DiskViewController::selectionChanged() {
  isFillingTree_ = true;
  ui_->outline->setCurrentIndex(tree_->indexOf(model_.selectVolumes()));
  isFillingTree_ = false;
  // A mount somewhere looks at everything anew; who is typing a name goes on.
  const DiskNode& node = model_.selectVolumes();
  const bool isSame = renaming_ && node && node->diskId == renaming_->diskId &&
                      node->diskUUID == renaming_->diskUUID && model_.offers().rename;
  if (!isSame) showRenameView(nullptr);
  setDetailViewValue();
}

void DiskViewController::setDetailViewValue() {
  const auto detail = model_.detail();
  ui_->detailViews->setCurrentWidget(detail ? ui_->detailPage : ui_->hintPage);
  if (!detail) return;
  ui_->imageView->setImageName(detail->imageName);
  ui_->titleLabel->setText(displayText(detail->title));
  ui_->titleLabel->setToolTip(toolTipText(ui_->titleLabel->text()));
  ui_->subtitleLabel->setText(displayText(detail->subtitle).simplified());
  ui_->detailView->show(*detail);
  ui_->ejectButton->setVisible(detail->ejectShown);
  checkNTFS();
}

void DiskViewController::checkNTFS() {
  const auto detail = model_.detail();
  const DiskOffers offers = model_.offers();
  ui_->renameButton->setVisible(offers.rename);
  ui_->renameButton->setEnabled(detail && detail->renameAllowed && model_.isCanClick());
  ui_->formatButton->setVisible(offers.format);
  ui_->formatButton->setEnabled(model_.isCanClick());
  ui_->ejectButton->setEnabled(model_.isCanClick());
}

void DiskViewController::healthChanged() {
  ui_->healthView->show(model_.health());
}

void DiskViewController::busyChanged() {
  ui_->outline->setLocked(!model_.isCanClick());
  ui_->loadingView->setVisible(model_.isScan() || !model_.isCanClick());
  ui_->refreshButton->setEnabled(!model_.isScan() && model_.isCanClick());
  ui_->lookAgainButton->setEnabled(!model_.isScan());
  checkNTFS();
  showContent();
}

void DiskViewController::showContent() {
  const bool isEmpty = model_.allDiskArr().empty() && model_.wasScanned() && !model_.isScan();
  ui_->views->setCurrentWidget(isEmpty ? ui_->nothingPage : ui_->disksPage);
  const QString complaints = QString::fromStdString(model_.complaints());
  if (isEmpty) {
    ui_->nothingView->show("ill_empty", getLocalizedString("No disks were found"),
                           displayText(model_.complaints()).isEmpty()
                               ? getLocalizedString("Nothing that holds files is attached.")
                               : complaints.section(QLatin1Char('\n'), 0, 0));
  }
  QStringList lines;
  for (const QString& line : complaints.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
    lines << displayText(line.toStdString());
  ui_->complaintsLabel->setText(lines.join(QLatin1Char('\n')));
  ui_->complaintsLabel->setVisible(!lines.isEmpty());
}

void DiskViewController::operationFailed(const std::string& what, const std::string& reason) {
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = displayText(what);
  content.text = reason.empty() ? getLocalizedString("The system's disk tool gave no reason.")
                                : displayText(reason.substr(0, reason.find('\n')));
  content.answers = {{getLocalizedString("Done"), MessagePanel::Answer::Style::primary, 0}};
  MessagePanel::run(content, getView());
}

// Rename.

void DiskViewController::showRenameView(const DiskNode& node) {
  renaming_ = node;
  ui_->renameView->setVisible(node != nullptr);
  ui_->titleLabel->setVisible(node == nullptr);
  ui_->renameErrorLabel->hide();
}

void DiskViewController::renamButtonAction() {
  if (model_.isFormat() || !model_.selectVolumes()) return;
  ui_->renameField->setText(QString::fromStdString(model_.selectVolumes()->volumeName));
  showRenameView(model_.selectVolumes());
  ui_->renameField->selectAll();
  ui_->renameField->setFocus();
}

void DiskViewController::okButtonAction() {
  const std::string name = ui_->renameField->text().toStdString();
  if (!VolumeName::isGiven(name)) return;
  const std::string refusal = model_.renameRefusal(name);
  if (!refusal.empty()) {
    ui_->renameErrorLabel->setText(QString::fromStdString(refusal));
    ui_->renameErrorLabel->show();
    return;
  }
  if (model_.rename(name)) {
    showRenameView(nullptr);
    ui_->outline->setFocus();
  }
}

void DiskViewController::renameCancelButtonAction() {
  showRenameView(nullptr);
  ui_->renameButton->setFocus();
}

// Format.

void DiskViewController::formatButtonAction() {
  if (!model_.beginFormat()) return;
  const DiskNode volume = model_.formatVolume();
  formatPanel_ = std::make_unique<FormatPanelWindow>(getView());
  makeSureFormatVC = new MakeSureFormatViewController(this);
  formatPanel_->host(makeSureFormatVC);
  makeSureFormatVC->superDelegate = formatPanel_.get();
  makeSureFormatVC->setName(volume->volumeName, volume->diskType);
  formatPanel_->exec();
  makeSureFormatVC = nullptr;
  // The panel is still on the stack of its own button's signal.
  formatPanel_.release()->deleteLater();
  model_.endFormat();
}

std::string DiskViewController::formatRefusal(const std::string& name,
                                              const std::string& type) const {
  const DiskNode& volume = model_.formatVolume();
  return volume ? DiskFormat::refusal(DiskFormat::plan(*volume, name, type)) : "";
}

void DiskViewController::makeSureToFormatSelectVolumeWithName(const std::string& name,
                                                              const std::string& type) {
  model_.makeSureToFormatSelectVolumeWithName(name, type);
}

void DiskViewController::formatEnded(const FormatPlan& plan, const DiskCommandEnd& end) {
  lastPlan_ = plan;
  lastEnd_ = end;
  isEndDue_ = true;
  if (makeSureFormatVC != nullptr) makeSureFormatVC->closeWindow();
  QTimer::singleShot(kEndPanelDelay, this, &DiskViewController::showFormatEndWindow);
}

void DiskViewController::reformatFailed(const FormatPlan& plan, const DiskCommandEnd& end) {
  lastEnd_ = end;
  if (formatEndVC != nullptr) {
    formatEndVC->showEnd(plan, end);
  } else if (!isEndDue_) {
    operationFailed("\"" + plan.name + "\" could not be formatted.", end.errors);
  }
}

void DiskViewController::showFormatEndWindow() {
  isEndDue_ = false;
  formatEndPanel_ = std::make_unique<FormatPanelWindow>(getView());
  formatEndVC = new FormatEndViewController;
  formatEndPanel_->host(formatEndVC);
  formatEndVC->superDelegate = formatEndPanel_.get();
  formatEndVC->showEnd(lastPlan_, lastEnd_);
  formatEndPanel_->exec();
  formatEndVC = nullptr;
  formatEndPanel_.release()->deleteLater();
  // A volume that was not mounted before and is not now gives no notice of its own.
  model_.lookAgain();
}

}  // namespace brisko
