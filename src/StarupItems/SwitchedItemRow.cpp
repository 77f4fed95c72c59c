#include "SwitchedItemRow.h"

#include "LocalizedString.h"
#include "LoginItems.h"
#include "SwitchButton.h"
#include "SystemLog.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>

namespace brisko {
namespace {

QLabel* label(const QString& text, const char* role) {
  auto* made = new QLabel;
  made->setTextFormat(Qt::PlainText);
  made->setText(text);
  made->setProperty("role", QLatin1String(role));
  made->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  return made;
}

}  // namespace

SwitchedItemRow::SwitchedItemRow(const SwitchedLoginItem& item, QWidget* parent)
    : QWidget(parent), switch_(new SwitchButton) {
  const QString name = QString::fromStdString(escapedForDisplay(item.name));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(Space::large, Space::small, Space::large, Space::small);
  auto* column = new QVBoxLayout;
  column->setSpacing(2);
  column->addWidget(label(name, "strong"));
  column->addWidget(
      label(getLocalizedString(item.isForEveryone ? "Set up for every user"
                                                  : "Switched off by another program"),
            "caption"));
  row->addLayout(column, 1);
  row->addWidget(switch_);
  switch_->setOn(item.isOn);
  switch_->setAccessibleName(filledIn(getLocalizedString("Start %@ when you log in"), name));
  setToolTip(QString::fromStdString(escapedForDisplay(item.path)).toHtmlEscaped());
  connect(switch_, &QAbstractButton::clicked, this,
          [this] { Q_EMIT switchRequested(!switch_->isOn()); });
}

}  // namespace brisko
