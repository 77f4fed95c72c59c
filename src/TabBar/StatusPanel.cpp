#include "StatusPanel.h"

#include "ImageView.h"
#include "LocalizedString.h"
#include "MessagePanel.h"
#include "Theme.h"
#include "VolumeList.h"
#include "WindowChrome.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace brisko {

StatusPanel::StatusPanel() : QWidget(nullptr, Qt::Popup | Qt::FramelessWindowHint) {
  setObjectName(QStringLiteral("statusPanel"));
  setAccessibleName(QStringLiteral("Brisko"));
  if (WindowChrome::hasTranslucency()) setAttribute(Qt::WA_TranslucentBackground);
  setFixedWidth(340);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(Space::large, Space::large, Space::large, Space::large);
  column->setSpacing(Space::large);
  auto* head = new QHBoxLayout;
  head->setSpacing(Space::medium);
  auto* mark = new ImageView;
  mark->setImageName("brisko");
  mark->setImageSide(32);
  mark->setFixedSize(32, 32);
  auto* name = new QLabel(QStringLiteral("Brisko"));
  name->setProperty("role", QStringLiteral("subhead"));
  head->addWidget(mark);
  head->addWidget(name, 1);
  column->addLayout(head);
  volumes_ = new VolumeList;
  column->addWidget(volumes_);
  auto* open = new QPushButton(getLocalizedString("Open Brisko"));
  open->setObjectName(QStringLiteral("openMainWindowButton"));
  setButtonKind(open, "primary");
  connect(open, &QPushButton::clicked, this, [this] {
    hide();
    Q_EMIT mainWindowRequested();
  });
  column->addWidget(open);
}

void StatusPanel::popUp(const QRect& anchor) {
  volumes_->refresh();
  adjustSize();
  const QScreen* screen = QGuiApplication::screenAt(anchor.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  const QRect area = screen->availableGeometry().adjusted(8, 8, -8, -8);
  QRect frame(QPoint(0, 0), sizeHint());
  frame.moveCenter(anchor.center());
  // Below an item at the top of the screen, above one at its bottom.
  const bool isBelow = anchor.center().y() < area.center().y();
  frame.moveTop(isBelow ? anchor.bottom() + 8 : anchor.top() - 8 - frame.height());
  const auto clamp = [](int value, int low, int high) {
    return std::max(low, std::min(value, high));
  };
  frame.moveLeft(clamp(frame.left(), area.left(), area.right() - frame.width()));
  frame.moveTop(clamp(frame.top(), area.top(), area.bottom() - frame.height()));
  move(frame.topLeft());
  show();
}

void StatusPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(themeColor(Theme::Token::border), 1));
  painter.setBrush(themeColor(Theme::Token::window));
  const qreal radius = testAttribute(Qt::WA_TranslucentBackground) ? kCardRadius : 0;
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

}  // namespace brisko
