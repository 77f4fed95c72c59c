#include "ImageCheckBox.h"

#include "FocusRing.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "Theme.h"

#include <QAccessible>
#include <QPainter>

namespace brisko {
namespace {

QString spokenState(const std::string& name) {
  if (name == "sel") return getLocalizedString("selected");
  if (name == "halfsel") return getLocalizedString("partly selected");
  if (name == "disable") return getLocalizedString("nothing to select");
  return getLocalizedString("not selected");
}

}  // namespace

ImageCheckBox::ImageCheckBox(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAccessibleDescription(spokenState(name_));
}

void ImageCheckBox::setImageName(const std::string& name) {
  if (name == name_) return;
  name_ = name;
  setAccessibleDescription(spokenState(name_));
  update();
}

Qt::CheckState ImageCheckBox::checkState(const std::string& imageName) {
  if (imageName == "sel") return Qt::Checked;
  return imageName == "halfsel" ? Qt::PartiallyChecked : Qt::Unchecked;
}

void ImageCheckBox::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void ImageCheckBox::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

void ImageCheckBox::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (isEnabled() && underMouse()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(themeColor(Theme::Token::hover));
    painter.drawRoundedRect(rect(), 8, 8);
  }
  QRectF area(0, 0, 20, 20);
  area.moveCenter(QRectF(rect()).center());
  ImageLookup::paint(&painter, name_, area);
  if (hasFocus()) drawFocusRing(&painter, rect(), 7);
}

}  // namespace brisko
