#include "MakeSureFormatViewController.h"

#include "DiskFormat.h"
#include "DiskViewController.h"
#include "Dispatch.h"
#include "FormatPanelWindow.h"
#include "FormatTypeViewController.h"
#include "LocalizedString.h"
#include "MessagePanel.h"
#include "ui_MakeSureFormatViewController.h"

namespace brisko {
namespace {

// Between two rows the mouse is over neither.
constexpr int kLeavingDelay = 400;  // milliseconds

}  // namespace

MakeSureFormatViewController::MakeSureFormatViewController(DiskViewController* page)
    : delegate(page), ui_(std::make_unique<Ui::MakeSureFormatViewController>()) {
  ui_->setupUi(this);
  okButton = ui_->okButton;
  noButton = ui_->noButton;
  nameTextFiled = ui_->nameTextFiled;
  typeLabel = ui_->typeLabel;
  typeSelectBut = ui_->typeSelectBut;
  ui_->imageView->setImageName("ic_warning");
  ui_->imageView->setImageSide(26);
  ui_->imageView->setTile(true);
  ui_->imageView->setTint(Theme::Token::danger);
  ui_->openImageV->setImageName("ic_chevron_down");
  ui_->openImageV->setImageSide(16);
  for (QWidget* inside : {static_cast<QWidget*>(typeLabel), static_cast<QWidget*>(ui_->openImageV)})
    inside->setAttribute(Qt::WA_TransparentForMouseEvents);
  ui_->formatView->hide();
  ui_->errorLabel->hide();
  leaving_.setSingleShot(true);
  leaving_.setInterval(kLeavingDelay);
  connect(&leaving_, &QTimer::timeout, this, &MakeSureFormatViewController::closeMenu);
  connect(okButton, &QPushButton::clicked, this, &MakeSureFormatViewController::okButtonAction);
  connect(noButton, &QPushButton::clicked, this, &MakeSureFormatViewController::noButtonAction);
  connect(typeSelectBut, &QPushButton::clicked, this,
          &MakeSureFormatViewController::openMenuAction);
  connect(nameTextFiled, &QLineEdit::textChanged, ui_->errorLabel, &QWidget::hide);
}

MakeSureFormatViewController::~MakeSureFormatViewController() = default;

void MakeSureFormatViewController::setName(const std::string& volumeName, const std::string& type) {
  const FormatQuestion question = DiskFormat::question(volumeName, type);
  ui_->nameLabel->setText(displayText(question.title));
  ui_->nodeLabel->setText(displayText(question.text));
  nameTextFiled->setText(QString::fromStdString(question.name));
  nameTextFiled->setReadOnly(true);
  typeLabel->setText(displayText(question.type));
  typeLabel->setEnabled(!question.typeIsFixed);
  typeSelectBut->setEnabled(!question.typeIsFixed);
  typeSelectBut->setAccessibleName(getLocalizedString("File system") + QLatin1Char(' ') +
                                   typeLabel->text());
  ui_->openImageV->setVisible(!question.typeIsFixed);
  if (superDelegate != nullptr) superDelegate->setAccessibleName(ui_->nameLabel->text());
  noButton->setFocus();
  Dispatch::global([panel = QPointer<MakeSureFormatViewController>(this)] {
    Dispatch::mainAsync([panel] {
      if (panel) panel->chengTextStart();
    });
  });
}

void MakeSureFormatViewController::chengTextStart() {
  nameTextFiled->setReadOnly(false);
}

void MakeSureFormatViewController::okButtonAction() {
  const std::string name = nameTextFiled->text().toStdString();
  const std::string type = typeLabel->text().toStdString();
  const std::string refusal = delegate->formatRefusal(name, type);
  if (!refusal.empty()) {
    ui_->errorLabel->setText(QString::fromStdString(refusal));
    ui_->errorLabel->show();
    return;
  }
  closeMenu();
  ui_->makeSureView->hide();
  ui_->formatView->show();
  ui_->formatView->setFocus();
  superDelegate->setClosable(false);
  delegate->makeSureToFormatSelectVolumeWithName(name, type);
}

void MakeSureFormatViewController::closeWindow() {
  closeMenu();
  superDelegate->setClosable(true);
  superDelegate->done(0);
}

void MakeSureFormatViewController::openMenuAction() {
  if (isPopSortWin_) return;
  isPopSortWin_ = true;
  menu_ = new FormatTypeViewController(this);
  menu_->popUp(typeSelectBut);
  connect(menu_, &QObject::destroyed, this, [this] { isPopSortWin_ = false; });
}

void MakeSureFormatViewController::selectFormatbyType(int row) {
  if (row >= 0 && row < static_cast<int>(DiskFormat::kTypes.size())) {
    typeLabel->setText(QLatin1String(DiskFormat::kTypes[static_cast<std::size_t>(row)]));
    typeSelectBut->setAccessibleName(getLocalizedString("File system") + QLatin1Char(' ') +
                                     typeLabel->text());
    ui_->errorLabel->hide();
  }
  closeMenu();
  typeSelectBut->setFocus();
}

void MakeSureFormatViewController::mouseEixtView(bool hasLeft) {
  if (hasLeft) {
    leaving_.start();
  } else {
    leaving_.stop();
  }
}

void MakeSureFormatViewController::closeMenu() {
  leaving_.stop();
  if (menu_) menu_->close();
}

}  // namespace brisko
