#include "SwitchedItemRow.h"

#include "LocalizedString.h"
#include "LoginItems.h"
#include "SwitchButton.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>

namespace brisko {
namespace {

QLabel* label(const char* role) {
  auto* made = new QLabel;
  made->setTextFormat(Qt::PlainText);
  made->setProperty("role", QLatin1String(role));
  made->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  return made;
}

}  // namespace

SwitchedItemRow::SwitchedItemRow(QWidget* parent)
    : QWidget(parent),
      name_(label("strong")),
      origin_(label("caption")),
      switch_(new SwitchButton) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(Space::large, Space::small, Space::large, Space::small);
  auto* column = new QVBoxLayout;
  column->setSpacing(2);
  column->addWidget(name_);
  column->addWidget(origin_);
  row->addLayout(column, 1);
  row->addWidget(switch_);
  connect(switch_, &QAbstractButton::clicked, this,
          [this] { Q_EMIT switchRequested(!switch_->isOn()); });
}

void SwitchedItemRow::setItem(const SwitchedLoginItem& item) {
  const QString name = displayText(item.name);
  name_->setText(name);
  origin_->setText(getLocalizedString(item.isForEveryone ? "Set up for every user"
                                                         : "Switched off by another program"));
  switch_->setOn(item.isOn);
  switch_->setAccessibleName(filledIn(getLocalizedString("Start %@ when you log in"), name));
  setToolTip(toolTipText(displayText(item.path)));
}

}  // namespace brisko
