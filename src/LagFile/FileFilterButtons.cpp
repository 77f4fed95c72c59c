#include "FileFilterButtons.h"

#include "LocalizedString.h"

#include <QMenu>
#include <QPushButton>

#include <utility>

namespace brisko {
namespace {

constexpr std::pair<const char*, std::uint64_t> kSizes[] = {{"Any size", 0},
                                                            {"Over 1 MB", 1'000'000},
                                                            {"Over 10 MB", 10'000'000},
                                                            {"Over 100 MB", 100'000'000},
                                                            {"Over 1 GB", 1'000'000'000}};
constexpr std::pair<const char*, std::uint32_t> kAges[] = {{"Any age", 0},
                                                           {"Older than 30 days", 30},
                                                           {"Older than 6 months", 183},
                                                           {"Older than 1 year", 365},
                                                           {"Older than 2 years", 730}};

}  // namespace

FileFilterButtons::FileFilterButtons(QPushButton* sizes, QPushButton* ages, QObject* parent)
    : QObject(parent) {
  sizes->setMenu(new QMenu(sizes));
  for (const auto& [label, bytes] : kSizes)
    addEntry(sizes, label, [this, bytes = bytes] { minSize_ = bytes; });
  sizes->setText(getLocalizedString(kSizes[0].first));
  sizes->setAccessibleDescription(getLocalizedString("Which sizes are listed"));
  ages->setMenu(new QMenu(ages));
  for (const auto& [label, days] : kAges)
    addEntry(ages, label, [this, days = days] { days_ = days; });
  ages->setText(getLocalizedString(kAges[0].first));
  ages->setAccessibleDescription(getLocalizedString("Which ages are listed"));
}

void FileFilterButtons::addEntry(QPushButton* button, const char* label,
                                 std::function<void()> set) {
  const QString text = getLocalizedString(label);
  connect(button->menu()->addAction(text), &QAction::triggered, this,
          [this, button, text, set = std::move(set)] {
            set();
            button->setText(text);
            Q_EMIT filterChosen();
          });
}

}  // namespace brisko
