#include "ModuleIntroView.h"

#include "ImageView.h"
#include "LocalizedString.h"
#include "ModuleTable.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace brisko {
namespace {

QLabel* centredLabel(const char* role, const char* name) {
  auto* label = new QLabel;
  label->setObjectName(QLatin1String(name));
  label->setProperty("role", QLatin1String(role));
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  return label;
}

}  // namespace

ModuleIntroView::ModuleIntroView(QWidget* parent)
    : QWidget(parent),
      imageView_(new ImageView),
      nameLabel_(centredLabel("title", "nameLabel")),
      sentenceLabel_(centredLabel("body", "sentenceLabel")) {
  imageView_->setObjectName(QStringLiteral("imageView"));
  sentenceLabel_->setFixedWidth(440);
  // In a row of its own, and not aligned: only so does its height follow from its width.
  auto* sentenceRow = new QHBoxLayout;
  sentenceRow->addStretch();
  sentenceRow->addWidget(sentenceLabel_);
  sentenceRow->addStretch();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addStretch(5);
  layout->addWidget(imageView_, 0, Qt::AlignHCenter);
  layout->addSpacing(Space::wide);
  layout->addWidget(nameLabel_);
  layout->addSpacing(Space::small);
  layout->addLayout(sentenceRow);
  layout->addStretch(6);
}

void ModuleIntroView::show(const std::string& imageName, const QString& name,
                           const QString& sentence) {
  const bool isIllustration = imageName.starts_with("ill_");
  imageView_->setImageName(imageName);
  imageView_->setTile(!isIllustration);
  imageView_->setImageSide(isIllustration ? 160 : 56);
  imageView_->setFixedSize(isIllustration ? QSize(160, 160) : QSize(104, 104));
  nameLabel_->setText(name);
  sentenceLabel_->setText(sentence);
  setAccessibleName(name);
  setAccessibleDescription(sentence);
}

void ModuleIntroView::showModule(const Module& module) {
  show(module.selectedIcon, getLocalizedString(module.label), getLocalizedString(module.sentence));
}

}  // namespace brisko
