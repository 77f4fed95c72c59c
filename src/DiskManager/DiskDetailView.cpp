#include "DiskDetailView.h"

#include "LocalizedString.h"
#include "Theme.h"
#include "UsageBar.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace brisko {
namespace {

constexpr int kRows = 4;
constexpr int kLines = 2;

QLabel* plainLabel(const char* role, const QString& name) {
  auto* label = new QLabel;
  label->setObjectName(name);
  label->setProperty("role", QLatin1String(role));
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

DiskDetailView::DiskDetailView(QWidget* parent)
    : QWidget(parent),
      usageCaption_(plainLabel("caption", QStringLiteral("usageCaption"))),
      usageValue_(plainLabel("strong", QStringLiteral("usageValue"))),
      bar_(new UsageBar),
      freeCaption_(plainLabel("caption", QStringLiteral("freeCaption"))),
      freeValue_(plainLabel("strong", QStringLiteral("freeValue"))) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Space::large);
  column->addLayout(makeUsage());
  column->addLayout(makeValues());
}

QLayout* DiskDetailView::makeUsage() {
  bar_->setObjectName(QStringLiteral("usageBar"));
  bar_->setFixedHeight(8);
  freeCaption_->setText(getLocalizedString("Free"));
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(Space::small);
  grid->setVerticalSpacing(Space::small);
  grid->addWidget(usageCaption_, 0, 0);
  grid->addWidget(usageValue_, 0, 1);
  grid->addWidget(freeCaption_, 0, 3);
  grid->addWidget(freeValue_, 0, 4);
  grid->addWidget(bar_, 1, 0, 1, 5);
  grid->setColumnStretch(2, 1);
  return grid;
}

QLayout* DiskDetailView::makeValues() {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(Space::wide);
  grid->setVerticalSpacing(2);
  for (int i = 0; i < 2 * kRows; ++i) {
    const int row = i % kRows * 3;
    captions_.push_back(plainLabel("caption", QStringLiteral("caption%1").arg(i)));
    values_.push_back(plainLabel("strong", QStringLiteral("value%1").arg(i)));
    // A long value takes a second line rather than pushing its column wide.
    values_.back()->setWordWrap(true);
    values_.back()->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    values_.back()->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    values_.back()->setTextInteractionFlags(Qt::TextSelectableByMouse);
    captions_.back()->setBuddy(values_.back());
    grid->addWidget(captions_.back(), row, i / kRows);
    grid->addWidget(values_.back(), row + 1, i / kRows);
    if (i + 1 < kRows) grid->setRowMinimumHeight(row + kLines, Space::small);
  }
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 1);
  return grid;
}

void DiskDetailView::show(const DiskDetail& detail) {
  usageCaption_->setText(getLocalizedString(detail.usageCaption.c_str()));
  usageValue_->setText(displayText(detail.usageValue));
  bar_->setFraction(detail.usagePercent / 100.0);
  bar_->setWarnsWhenFull(detail.freeSpaceShown);
  bar_->setAccessibleName(usageCaption_->text() + QLatin1Char(' ') + usageValue_->text());
  freeCaption_->setVisible(detail.freeSpaceShown);
  freeValue_->setVisible(detail.freeSpaceShown);
  freeValue_->setText(displayText(detail.freeSpace));
  for (int i = 0; i < 2 * kRows; ++i) {
    const auto& column = i < kRows ? detail.left : detail.right;
    const DiskDetailRow& row = column[static_cast<std::size_t>(i % kRows)];
    const auto at = static_cast<std::size_t>(i);
    captions_[at]->setText(getLocalizedString(row.caption.c_str()));
    values_[at]->setText(displayText(row.value));
    values_[at]->setToolTip(toolTipText(values_[at]->text()));
    values_[at]->setAccessibleName(captions_[at]->text() + QLatin1Char(' ') + values_[at]->text());
  }
}

}  // namespace brisko
