#include "UpdateWindowController.h"

#include "Dispatch.h"
#include "Host.h"
#include "ImageView.h"
#include "LocalizedString.h"
#include "MessagePanel.h"
#include "Theme.h"
#include "TitleBar.h"
#include "ZKLinkUrl.h"
#include "ui_UpdateVersionXib.h"

#include <QFontMetrics>
#include <QLabel>
#include <QPointer>
#include <QPropertyAnimation>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace brisko {
namespace {

constexpr int kTitleBarHeight = 40;
constexpr int kFadeTime = 180;  // milliseconds

// The list of what is new, in points.
constexpr int kListWidth = 430;
constexpr int kLeastListHeight = 150;
constexpr int kNoteWidth = 380;
constexpr int kNotePoints = 14;
constexpr int kLeastNoteHeight = 25;
// Heights are reckoned by a smaller font in a narrower column than the notes are shown in.
constexpr int kMeasurePoints = 10;
constexpr int kMeasureWidth = 200;
constexpr int kLeastMeasuredHeight = 30;

int heightIn(const QFont& font, const QString& text, int width) {
  return QFontMetrics(font)
      .boundingRect(QRect(0, 0, width, 1 << 20), Qt::TextWordWrap | Qt::TextWrapAnywhere, text)
      .height();
}

QFont noteFont() {
  return Theme::shared().font(kNotePoints, QFont::Light);
}

}  // namespace

UpdateWindowController::UpdateWindowController(QWidget* parent)
    : PanelWindow(parent), ui_(std::make_unique<Ui::UpdateVersionXib>()) {
  setObjectName(QStringLiteral("UpdateVersionXib"));
  setWindowTitle(getLocalizedString("Check for Updates"));
  ui_->setupUi(contentView());
  titleBarView()->setFixedHeight(kTitleBarHeight);
  disconnect(titleBarView(), &TitleBar::closeRequested, this, nullptr);
  connect(titleBarView(), &TitleBar::closeRequested, this, &UpdateWindowController::closeWindow);
  for (QPushButton* button : {ui_->proClose, ui_->noNetClose, ui_->noUpdateClose, ui_->haveClose}) {
    connect(button, &QPushButton::clicked, this, &UpdateWindowController::windowShouldClose);
  }
  connect(ui_->downloadButton, &QPushButton::clicked, this,
          &UpdateWindowController::updateClickHereAction);
  setImages();
  ui_->currentLabel->setText(
      filledIn(getLocalizedString("You have version %@."), QStringLiteral(BRISKO_VERSION)));
  fade_ = new QPropertyAnimation(this, "windowOpacity", this);
  fade_->setDuration(kFadeTime);
  connect(fade_, &QPropertyAnimation::finished, this, &UpdateWindowController::animationDidStop);
  showOnly(ui_->checkProgressView);
  getVersionChange();
}

UpdateWindowController::~UpdateWindowController() {
  *stop_ = true;
}

void UpdateWindowController::setImages() {
  const struct {
    ImageView* view;
    const char* image;
    int side;
  } images[] = {{ui_->checkingImage, "ic_search", 48},
                {ui_->noNetworkImage, "ic_internet", 48},
                {ui_->noUpdateImage, "ill_success", 104},
                {ui_->haveUpdateImage, "brisko", 88}};
  for (const auto& each : images) {
    each.view->setImageName(each.image);
    each.view->setImageSide(each.side);
    each.view->setTint(Theme::Token::accent);
  }
}

void UpdateWindowController::showEvent(QShowEvent* event) {
  PanelWindow::showEvent(event);
  fade_->stop();
  setWindowOpacity(0);
  fade_->setStartValue(0.0);
  fade_->setEndValue(1.0);
  fade_->start();
}

void UpdateWindowController::getVersionChange() {
  Dispatch::global([stop = stop_, window = QPointer(this)] {
    const VersionResult result = VersionCheck::getVersionChange([&] { return stop->load(); });
    Dispatch::mainAsync([result, window] {
      if (window) window->whatIsNewVersionDiff(result);
    });
  });
}

void UpdateWindowController::showOnly(QWidget* panel) {
  for (QWidget* each :
       {ui_->checkProgressView, ui_->noNetworkView, ui_->noUpdateView, ui_->haveUpdateView}) {
    each->setVisible(each == panel);
  }
  panel->setFocus();
  if (isVisible()) center();
}

void UpdateWindowController::whatIsNewVersionDiff(const VersionResult& result) {
  switch (result.state) {
    case VersionResult::State::noNetwork:
      return showOnly(ui_->noNetworkView);
    case VersionResult::State::noUpdate:
      return showOnly(ui_->noUpdateView);
    case VersionResult::State::newVersion:
      break;
  }
  ui_->titleLable->setText(displayText(result.titleText()));
  ui_->versionLabel->setText(displayText(result.versionText()));
  addNotes(result);
  showOnly(ui_->haveUpdateView);
  ui_->changeValueScrollView->verticalScrollBar()->setValue(0);
}

void UpdateWindowController::addNotes(const VersionResult& result) {
  QWidget* list = ui_->showVersionScrollView;
  int reckoned = 0;
  int top = 0;
  for (std::size_t index = 0; index < result.notes.size(); ++index) {
    const QString note = QString::fromStdString(result.notes[index]);
    QLabel* field = noteField(QString::fromStdString(result.noteText(index)), note);
    const int measured = heightForStringDrawing(note, kMeasurePoints, kMeasureWidth);
    // What the other font's height leaves out of a note would not be seen.
    const int needed = heightIn(field->font(), field->text(), kNoteWidth);
    const int height = std::max({kLeastNoteHeight, measured, needed});
    field->setGeometry(0, top, kNoteWidth, height);
    top += height;
    reckoned += std::max(kLeastMeasuredHeight, measured);
  }
  list->setFixedSize(kListWidth, std::max({kLeastListHeight, reckoned, top}));
}

QLabel* UpdateWindowController::noteField(const QString& text, const QString& note) {
  auto* field = new QLabel(ui_->showVersionScrollView);
  field->setTextFormat(Qt::PlainText);
  field->setText(text);
  field->setWordWrap(true);
  field->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  field->setFont(noteFont());
  field->setToolTip(toolTipText(note));
  field->show();
  return field;
}

int UpdateWindowController::heightForStringDrawing(const QString& text, int points, int width) {
  return heightIn(Theme::shared().font(points), text, width);
}

void UpdateWindowController::updateClickHereAction() {
  const auto address = ZKLinkUrl::GetUrl("UpdateURL");
  if (address && !address->empty()) Host::current().workspace->openAddress(*address);
}

void UpdateWindowController::closeWindow() {
  fade_->stop();
  done(QDialog::Rejected);
}

bool UpdateWindowController::windowShouldClose() {
  fade_->stop();
  fade_->setStartValue(windowOpacity());
  fade_->setEndValue(0.0);
  fade_->start();
  return false;
}

void UpdateWindowController::reject() {
  windowShouldClose();
}

void UpdateWindowController::animationDidStop() {
  if (fade_->endValue().toDouble() != 0) return;
  closeWindow();
  if (shuttingDown) Q_EMIT terminateRequested();
}

bool UpdateWindowController::applicationShouldTerminate() {
  if (shuttingDown || !isVisible()) return true;
  shuttingDown = true;
  windowShouldClose();
  return false;
}

}  // namespace brisko
