#include "HightActionViewController.h"

#include "LocalizedString.h"
#include "MessagePanel.h"
#include "SwitchTile.h"
#include "Theme.h"

#include <QGridLayout>

namespace brisko {
namespace {

// What the switch does, or why it cannot. A reason is a text of one of our tools, else of the
// system.
QString toolTipOf(const QuickActionsModel::Row& row) {
  if (row.state.reason.empty()) return getLocalizedString(row.action->toolTip);
  return filledIn(getLocalizedString(QuickActions::kNotPossible),
                  getLocalizedString(row.state.reason.c_str()));
}

}  // namespace

HightActionViewController::HightActionViewController(QWidget* parent) : QWidget(parent) {
  using Self = HightActionViewController;
  constexpr void (Self::*kButtons[])() = {
      &Self::but_1Actton, &Self::but_2Actton, &Self::but_3Actton, &Self::but_4Actton,
      &Self::but_5Actton, &Self::but_6Actton, &Self::but_7Action, &Self::but_8Action};
  constexpr int kColumns = 2;
  setObjectName(QStringLiteral("switches"));
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(Space::small);
  for (const QuickAction& action : QuickActions::all()) {
    const int place = action.index - 1;
    auto* tile = new SwitchTile;
    tile->setObjectName(QStringLiteral("switch%1").arg(action.index));
    tile->setText(getLocalizedString(action.title));
    tile->setAccessibleName(tile->text());
    connect(tile, &SwitchTile::clicked, this, kButtons[place]);
    grid->addWidget(tile, place / kColumns, place % kColumns);
    tiles_.at(static_cast<std::size_t>(place)) = tile;
    update(action.index);
  }
  model_.setListener([this](int index) { update(index); });
  connect(&Theme::shared(), &Theme::changed, this, [this] {
    if (isVisible()) model_.refresh(QuickActions::kDarkMode);
  });
}

HightActionViewController::~HightActionViewController() = default;

void HightActionViewController::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  model_.load();
}

void HightActionViewController::update(int index) {
  const QuickActionsModel::Row& row = model_.row(index);
  SwitchTile* tile = tiles_.at(static_cast<std::size_t>(index - 1));
  const QString label = *row.label() != '\0' ? getLocalizedString(row.label()) : QString();
  tile->setState(row.state.isOn, label, row.icon());
  tile->setWorking(row.state.reason.empty());
  const QString toolTip = toolTipOf(row);
  tile->setToolTip(toolTipText(toolTip));
  tile->setAccessibleDescription(label.isEmpty() ? toolTip
                                                 : label + QStringLiteral(". ") + toolTip);
}

}  // namespace brisko
