#include "FormatEndViewController.h"

#include "FormatPanelWindow.h"
#include "LocalizedString.h"
#include "ui_FormatEndViewController.h"

namespace brisko {

FormatEndViewController::FormatEndViewController(QWidget* parent)
    : QWidget(parent), ui_(std::make_unique<Ui::FormatEndViewController>()) {
  ui_->setupUi(this);
  closeButton = ui_->closeButton;
  connect(closeButton, &QPushButton::clicked, this, [this] { superDelegate->done(0); });
}

FormatEndViewController::~FormatEndViewController() = default;

void FormatEndViewController::showEnd(const FormatPlan& plan, const DiskCommandEnd& end) {
  const bool isDone = end.status == 0;
  const bool isDetached = plan.way == FormatPlan::Way::reformat;
  ui_->imageView->setImageName(isDone ? "ill_success" : "ic_warning");
  ui_->imageView->setImageSide(isDone ? 120 : 56);
  ui_->imageView->setTint(isDone ? Theme::Token::accent : Theme::Token::danger);
  QString title = getLocalizedString("Format completed");
  QString text = filledIn(
      filledIn(getLocalizedString("The volume is now called '%@' and holds a new %@ file system."),
               displayText(plan.name)),
      displayText(plan.type));
  if (!isDone) {
    title = getLocalizedString("The volume was not formatted");
    const std::string reason = end.errors.substr(0, end.errors.find('\n'));
    text = reason.empty() ? getLocalizedString("The system's disk tool gave no reason.")
                          : displayText(reason);
  } else if (isDetached) {
    title = getLocalizedString("Format started");
    text =
        getLocalizedString("The system goes on by itself; the volume comes back when it is done.");
  }
  ui_->titleLabel->setText(title);
  closeButton->setFocus();
  ui_->textLabel->setText(text);
  if (superDelegate != nullptr) superDelegate->setAccessibleName(title);
}

}  // namespace brisko
