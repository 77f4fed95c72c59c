#include "FormatTypeViewController.h"

#include "DiskFormat.h"
#include "MakeSureFormatViewController.h"
#include "MessagePanel.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace brisko {

FormatTypeViewController::FormatTypeViewController(MakeSureFormatViewController* panel)
    : QWidget(panel, Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint),
      delegate(panel) {
  setObjectName(QStringLiteral("formatTypeMenu"));
  setAttribute(Qt::WA_DeleteOnClose);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(6, 6, 6, 6);
  column->setSpacing(2);
  view_1 = addItem(0);
  view_2 = addItem(1);
  view_4 = addItem(2);
  view_1->setFocus();
}

QPushButton* FormatTypeViewController::addItem(int identifier) {
  auto* item =
      new QPushButton(QLatin1String(DiskFormat::kTypes[static_cast<std::size_t>(identifier)]));
  item->setObjectName(QStringLiteral("formatType%1").arg(identifier));
  item->setAutoDefault(false);
  setButtonKind(item, "plain");
  item->installEventFilter(this);
  connect(item, &QPushButton::clicked, this, [this, identifier] { selectSortType(identifier); });
  layout()->addWidget(item);
  return item;
}

void FormatTypeViewController::popUp(const QWidget* button) {
  setFixedWidth(button->width());
  adjustSize();
  move(button->mapToGlobal(QPoint(0, button->height() + Space::tiny)));
  show();
}

void FormatTypeViewController::selectSortType(int identifier) {
  delegate->selectFormatbyType(identifier);
}

bool FormatTypeViewController::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Enter) delegate->mouseEixtView(false);
  if (event->type() == QEvent::Leave) delegate->mouseEixtView(true);
  return QWidget::eventFilter(watched, event);
}

void FormatTypeViewController::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), themeColor(Theme::Token::card));
  painter.setPen(themeColor(Theme::Token::control));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void FormatTypeViewController::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Down:
      focusNextChild();
      return;
    case Qt::Key_Up:
      focusPreviousChild();
      return;
    case Qt::Key_Escape:
      close();
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (auto* item = qobject_cast<QPushButton*>(focusWidget())) item->click();
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace brisko
