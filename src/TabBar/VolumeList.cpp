#include "VolumeList.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "Host.h"
#include "ImageView.h"
#include "LocalizedString.h"
#include "SystemTexts.h"
#include "Theme.h"
#include "UsageBar.h"

#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QVBoxLayout>

#include <algorithm>

namespace brisko {
namespace {

QLabel* plainLabel(const char* role, const char* name) {
  auto* label = new QLabel;
  label->setObjectName(QLatin1String(name));
  label->setProperty("role", QLatin1String(role));
  label->setTextFormat(Qt::PlainText);
  return label;
}

QString figures(const MountedVolume& volume) {
  const QString free = QString::fromStdString(CommUti::convertVolSpace(volume.freeBytes));
  const QString total = QString::fromStdString(CommUti::convertVolSpace(volume.totalBytes));
  return filledIn(filledIn(getLocalizedString("%@ free of %@"), free), total);
}

}  // namespace

const char* VolumeRow::imageName(const MountedVolume& volume) {
  if (volume.root == "/") return "ic_diskos";
  return volume.place == MountedVolume::Place::externalBus ||
                 volume.place == MountedVolume::Place::removable
             ? "ic_usb"
             : "ic_diska";
}

VolumeRow::VolumeRow(QWidget* parent)
    : QWidget(parent),
      imageView_(new ImageView),
      nameLabel_(plainLabel("strong", "volumeName")),
      figuresLabel_(plainLabel("caption", "volumeFigures")),
      bar_(new UsageBar) {
  imageView_->setFixedSize(40, 40);
  imageView_->setImageSide(24);
  imageView_->setTile(true);
  bar_->setFixedHeight(6);
  bar_->setObjectName(QStringLiteral("volumeBar"));
  nameLabel_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(Space::medium);
  grid->setVerticalSpacing(Space::tiny);
  grid->addWidget(imageView_, 0, 0, 2, 1);
  grid->addWidget(nameLabel_, 0, 1);
  grid->addWidget(figuresLabel_, 0, 2, Qt::AlignRight);
  grid->addWidget(bar_, 1, 1, 1, 2, Qt::AlignVCenter);
  grid->setColumnStretch(1, 1);
}

void VolumeRow::show(const MountedVolume& volume) {
  imageView_->setImageName(imageName(volume));
  const QString name = displayText(volume.name);
  nameLabel_->setText(name);
  nameLabel_->setToolTip(toolTipText(displayText(volume.root)));
  figuresLabel_->setText(figures(volume));
  bar_->setFraction(SystemTexts::usedFraction(volume.totalBytes, volume.freeBytes));
  bar_->setAccessibleName(name);
  setAccessibleName(name);
  setAccessibleDescription(figuresLabel_->text());
}

VolumeList::VolumeList(QWidget* parent)
    : QWidget(parent), grid_(new QGridLayout), moreLabel_(plainLabel("caption", "moreVolumes")) {
  grid_->setHorizontalSpacing(Space::huge);
  grid_->setVerticalSpacing(Space::large);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Space::small);
  column->addLayout(grid_);
  column->addWidget(moreLabel_);
  moreLabel_->hide();
  token_ =
      Host::current().workspace->observeVolumes([this](const MountedVolume&, bool) { refresh(); });
}

VolumeList::~VolumeList() {
  Host::current().workspace->stopObserving(token_);
}

void VolumeList::setColumns(int columns) {
  columns_ = columns;
}

void VolumeList::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  refresh();
}

void VolumeList::refresh() {
  // One look at a time, and in the background: a network volume whose server is gone can hold the
  // question up for minutes.
  looksAgain_ = isLooking_;
  if (isLooking_) return;
  isLooking_ = true;
  Dispatch::global([list = QPointer<VolumeList>(this)] {
    auto volumes = Host::current().workspace->mountedVolumes();
    Dispatch::mainAsync([list, volumes = std::move(volumes)] {
      if (!list) return;
      list->isLooking_ = false;
      list->take(volumes);
      if (list->looksAgain_) list->refresh();
    });
  });
}

void VolumeList::setRowCount(std::size_t count) {
  while (rows_.size() > count) {
    delete rows_.back();
    rows_.pop_back();
  }
  while (rows_.size() < count) {
    auto* row = new VolumeRow;
    const int index = static_cast<int>(rows_.size());
    row->setObjectName(QStringLiteral("volume%1").arg(index));
    grid_->addWidget(row, index / columns_, index % columns_);
    rows_.push_back(row);
  }
  // A column without a volume leaves its room to the others.
  for (int column = 0; column < columns_; ++column)
    grid_->setColumnStretch(column, column < static_cast<int>(count) ? 1 : 0);
}

void VolumeList::take(const std::vector<MountedVolume>& volumes) {
  setRowCount(std::min(volumes.size(), most_));
  for (std::size_t i = 0; i < rows_.size(); ++i)
    rows_[i]->show(volumes[i]);
  const std::size_t more = volumes.size() - rows_.size();
  moreLabel_->setVisible(more > 0);
  moreLabel_->setText(more == 1
                          ? getLocalizedString("1 more volume")
                          : filledIn(getLocalizedString("%@ more volumes"), QString::number(more)));
  updateGeometry();
}

}  // namespace brisko
