#include "StatusPanel.h"

#include "CSMARTAttribute.h"
#include "HightActionViewController.h"
#include "ImageView.h"
#include "LocalizedString.h"
#include "MessagePanel.h"
#include "NSNotificationCenter.h"
#include "PanelMeter.h"
#include "StatusFeed.h"
#include "SystemTexts.h"
#include "Theme.h"
#include "VolumeList.h"
#include "WindowChrome.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace brisko {
namespace {

// A drive that is looked at tells once in a minute.
constexpr qint64 kTemperatureAge = 150'000;  // milliseconds

}  // namespace

StatusPanel::StatusPanel()
    : QWidget(nullptr, Qt::Popup | Qt::FramelessWindowHint),
      feed_(new StatusFeed(this)),
      volumes_(new VolumeList),
      switches_(new HightActionViewController) {
  setObjectName(QStringLiteral("statusPanel"));
  setAccessibleName(QStringLiteral("Brisko"));
  if (WindowChrome::hasTranslucency()) setAttribute(Qt::WA_TranslucentBackground);
  setFixedWidth(340);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(Space::large, Space::large, Space::large, Space::large);
  column->setSpacing(Space::large);
  addHead(column);
  addMeters(column);
  column->addWidget(volumes_);
  column->addWidget(switches_);
  auto* open = new QPushButton(getLocalizedString("Open Brisko"));
  open->setObjectName(QStringLiteral("openMainWindowButton"));
  setButtonKind(open, "primary");
  connect(open, &QPushButton::clicked, this, [this] {
    hide();
    Q_EMIT mainWindowRequested();
  });
  column->addWidget(open);
  connect(feed_, &StatusFeed::sampled, this, &StatusPanel::updateSysStat);
  token_ = NSNotificationCenter::defaultCenter().addObserver(
      CSMARTAttribute::kUpdateTemperature, [this](const NSNotification& notice) {
        toldTemperature_ = QString::fromStdString(notice.object);
        sinceTold_.start();
        showTemperatures();
      });
}

StatusPanel::~StatusPanel() {
  NSNotificationCenter::defaultCenter().removeObserver(token_);
}

void StatusPanel::addHead(QVBoxLayout* column) {
  auto* head = new QHBoxLayout;
  head->setSpacing(Space::medium);
  auto* mark = new ImageView;
  mark->setImageName("brisko");
  mark->setImageSide(32);
  mark->setFixedSize(32, 32);
  auto* name = new QLabel(QStringLiteral("Brisko"));
  name->setProperty("role", QStringLiteral("subhead"));
  temperatures_ = new QLabel;
  temperatures_->setObjectName(QStringLiteral("temperatures"));
  temperatures_->setProperty("role", QStringLiteral("caption"));
  temperatures_->setTextFormat(Qt::PlainText);
  head->addWidget(mark);
  head->addWidget(name, 1);
  head->addWidget(temperatures_);
  column->addLayout(head);
}

void StatusPanel::addMeters(QVBoxLayout* column) {
  using Token = Theme::Token;
  auto* grid = new QGridLayout;
  grid->setSpacing(Space::medium);
  const auto meter = [&](const char* title, const char* name, Token colour, int row, int place) {
    const QString text = getLocalizedString(title);
    auto* made = new PanelMeter(text, {text, colour});
    made->setObjectName(QLatin1String(name));
    grid->addWidget(made, row, place);
    return made;
  };
  processor_ = meter("Processor", "processorMeter", Token::accentFill, 0, 0);
  memory_ = meter("Memory used", "memoryMeter", Token::accentFill, 0, 1);
  received_ = meter("Network received", "receivedMeter", Token::success, 1, 0);
  sent_ = meter("Network sent", "sentMeter", Token::success, 1, 1);
  for (PanelMeter* each : {received_, sent_})
    each->chart()->setMaximum(0, StatusFeed::kLeastRateScale);
  column->addLayout(grid);
}

void StatusPanel::updateSysStat() {
  const auto shown = [](const std::string& text) { return QString::fromStdString(text); };
  const SystemHistory& history = feed_->history();
  const SystemSample& now = history.latest();
  const CpuLoad load = now.processor();
  processor_->setValue(now.cores.empty() ? getLocalizedString("No information")
                                         : shown(SystemTexts::percent(load.user + load.system)));
  processor_->chart()->setValues(0, history.processor.values());
  memory_->setValue(
      shown(SSMemoryInfo::covertMemory(static_cast<std::int64_t>(now.memory.usedMomory))));
  memory_->chart()->setMaximum(static_cast<double>(now.memory.totalMemory));
  memory_->chart()->setValues(0, history.usedMemory.values());
  received_->setValue(shown(SystemTexts::rate(now.network.in)));
  received_->chart()->setValues(0, history.networkReceived.values());
  sent_->setValue(shown(SystemTexts::rate(now.network.out)));
  sent_->chart()->setValues(0, history.networkSent.values());
  showTemperatures();
}

// Not every drive has a sensor that the system reads; the drive that is looked at tells its own.
void StatusPanel::showTemperatures() {
  QStringList texts;
  const auto add = [&](const char* format, const QString& text) {
    texts << filledIn(getLocalizedString(format), text);
  };
  const auto hottest = [this](Temperature::Kind kind) {
    const auto celsius = SystemTexts::hottest(feed_->history().latest(), kind);
    return celsius ? QString::fromStdString(SystemTexts::degrees(*celsius)) : QString();
  };
  const QString processor = hottest(Temperature::Kind::processor);
  QString drive = hottest(Temperature::Kind::drive);
  if (drive.isEmpty() && sinceTold_.isValid() && !sinceTold_.hasExpired(kTemperatureAge))
    drive = toldTemperature_ + QStringLiteral(" °C");
  if (!processor.isEmpty()) add("Processor %@", processor);
  if (!drive.isEmpty()) add("Drive %@", drive);
  temperatures_->setText(texts.join(QStringLiteral(" · ")));
}

void StatusPanel::popUp(const QRect& anchor) {
  // What does not fit on a low screen cannot be reached.
  constexpr int kHighScreen = 800;
  anchor_ = anchor;
  volumes_->setMost(screenArea().height() < kHighScreen ? 2 : 4);
  place();
  show();
}

QRect StatusPanel::screenArea() const {
  const QScreen* screen = QGuiApplication::screenAt(anchor_.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  return screen->availableGeometry().adjusted(8, 8, -8, -8);
}

void StatusPanel::place() {
  const QRect area = screenArea();
  QRect frame(QPoint(0, 0), sizeHint());
  frame.moveCenter(anchor_.center());
  // Below an item at the top of the screen, above one at its bottom.
  const bool isBelow = anchor_.center().y() < area.center().y();
  frame.moveTop(isBelow ? anchor_.bottom() + 8 : anchor_.top() - 8 - frame.height());
  const auto clamp = [](int value, int low, int high) {
    return std::max(low, std::min(value, high));
  };
  frame.moveLeft(clamp(frame.left(), area.left(), area.right() - frame.width()));
  frame.moveTop(clamp(frame.top(), area.top(), area.bottom() - frame.height()));
  setGeometry(frame);
}

bool StatusPanel::event(QEvent* event) {
  const bool isTaken = QWidget::event(event);
  // The volumes are known a moment after it was opened, and come and go.
  if (event->type() == QEvent::LayoutRequest && isVisible()) place();
  return isTaken;
}

void StatusPanel::mousePressEvent(QMouseEvent* event) {
  // The press goes on to what is below; the button that opened this would open it again.
  setAttribute(Qt::WA_NoMouseReplay, anchor_.contains(event->globalPosition().toPoint()));
  QWidget::mousePressEvent(event);
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
