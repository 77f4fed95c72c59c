#include "DiskHealthView.h"

#include "DiskHealth.h"
#include "LoadingView.h"
#include "LocalizedString.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace brisko {
namespace {

constexpr std::array<const char*, 3> kCaptions = {"Temperature", "Power-on hours", "Power cycles"};
constexpr std::array<const char*, 3> kNames = {"temperature", "powerOnHours", "powerCycles"};

QLabel* plainLabel(const QString& text, const char* role, const char* name) {
  auto* label = new QLabel(text);
  label->setObjectName(QLatin1String(name));
  label->setProperty("role", QLatin1String(role));
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

DiskHealthView::DiskHealthView(QWidget* parent)
    : QWidget(parent),
      loading_(new LoadingView),
      figures_(new QWidget),
      explanation_(plainLabel({}, "caption", "healthExplanation")) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Space::small);
  auto* head = new QHBoxLayout;
  head->setSpacing(Space::small);
  head->addWidget(plainLabel(getLocalizedString("Drive health"), "subhead", "healthTitle"));
  head->addWidget(loading_);
  head->addStretch();
  column->addLayout(head);
  auto* row = new QHBoxLayout(figures_);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Space::wide);
  for (std::size_t i = 0; i < kCaptions.size(); ++i) {
    auto* one = new QVBoxLayout;
    one->setSpacing(2);
    one->addWidget(plainLabel(getLocalizedString(kCaptions[i]), "caption", ""));
    values_[i] = plainLabel({}, "subhead", kNames[i]);
    one->addWidget(values_[i]);
    row->addLayout(one, 1);
  }
  column->addWidget(figures_);
  explanation_->setWordWrap(true);
  column->addWidget(explanation_);
}

void DiskHealthView::show(const DiskHealth& health) {
  const DiskHealth::State state = health.state();
  setVisible(state != DiskHealth::State::hidden);
  loading_->setVisible(state == DiskHealth::State::reading);
  figures_->setVisible(state == DiskHealth::State::shown);
  explanation_->setVisible(state == DiskHealth::State::silent ||
                           state == DiskHealth::State::reading);
  explanation_->setText(state == DiskHealth::State::reading
                            ? getLocalizedString("Asking the drive…")
                            : displayText(health.explanation()));
  const std::array<std::string, 3> texts = {health.temperature(), health.powerOnHours(),
                                            health.powerCycles()};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    values_[i]->setText(displayText(texts[i]));
    values_[i]->setAccessibleName(getLocalizedString(kCaptions[i]) + QLatin1Char(' ') +
                                  values_[i]->text());
  }
}

}  // namespace brisko
