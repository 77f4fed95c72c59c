#include "TCPreferenceWindowController.h"

#include "LocalizedString.h"
#include "ui_TCPreferenceWindowController.h"

namespace brisko {

TCPreferenceWindowController::TCPreferenceWindowController(QWidget* parent) : PanelWindow(parent) {
  setObjectName(QStringLiteral("TCPreferenceWindowController"));
  setWindowTitle(getLocalizedString("About Brisko"));
  Ui::TCPreferenceWindowController ui;
  ui.setupUi(contentView());
  ui.markView->setImageName("brisko");
  ui.markView->setImageSide(96);
  ui.versionLabel->setText(
      filledIn(getLocalizedString("Version %@"), QStringLiteral(BRISKO_VERSION)));
  ui.purposeLabel->setText(
      getLocalizedString("Finds what only takes space, shows it, and removes what you choose."));
  ui.licenceLabel->setText(
      getLocalizedString("Free software. The licence comes with the program."));
  connect(ui.closeButton, &QPushButton::clicked, this, &QDialog::accept);
  ui.closeButton->setFocus();
}

}  // namespace brisko
