#include "SystemStartViewController.h"

#include "Card.h"
#include "LocalizedString.h"
#include "ModuleTable.h"
#include "ui_SystemStartViewController.h"

#include <QGridLayout>

namespace brisko {
namespace {

constexpr int kColumns = 3;

}  // namespace

SystemStartViewController::SystemStartViewController() : PageController(0) {
  Ui::SystemStartViewController ui;
  ui.setupUi(getView());
  ui.volumeList->setColumns(2);
  addModuleCards(ui.moduleGrid);
}

void SystemStartViewController::addModuleCards(QGridLayout* grid) {
  int place = 0;
  for (const Module& module : moduleTable()) {
    if (module.index == getViewID()) continue;
    auto* card = new CardButton;
    card->setObjectName(QStringLiteral("moduleCard%1").arg(module.index));
    card->setText(getLocalizedString(module.label));
    card->setAccessibleName(card->text());
    card->setSentence(getLocalizedString(module.sentence));
    card->setImageName(module.selectedIcon);
    connect(card, &QAbstractButton::clicked, this,
            [this, index = module.index] { Q_EMIT pageRequested(index); });
    grid->addWidget(card, place / kColumns, place % kColumns);
    ++place;
  }
}

}  // namespace brisko
