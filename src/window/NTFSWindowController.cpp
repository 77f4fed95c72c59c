#include "NTFSWindowController.h"

#include "LocalizedString.h"
#include "Theme.h"
#include "TitleBar.h"
#include "WindowChrome.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brisko {
namespace {

NoticeWindow::Content content() {
  NoticeWindow::Content content;
  content.imageName = "ic_diska";
  content.title = getLocalizedString("This volume is in NTFS format");
  content.text = getLocalizedString(
      "What lies on it can often be read here but not changed or erased. Copy what you need to "
      "another volume, or attach the drive to the system that it was made on.");
  content.linkTitle = getLocalizedString("Get Support");
  content.linkKey = "SupportTeam";
  content.closeTitle = getLocalizedString("OK");
  return content;
}

// White is only to be read on a ground of its own.
void setTitleText(TitleBar* bar, const QString& text) {
  bar->setFixedHeight(TitleBar::kDefaultHeight);
  auto* label = new QLabel(text);
  label->setObjectName(QStringLiteral("titleBarText"));
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignCenter);
  label->setAttribute(Qt::WA_TransparentForMouseEvents);
  const int corner = WindowChrome::hasTranslucency() ? kCardRadius : 0;
  label->setStyleSheet(QStringLiteral("color: #ffffff; background: %1; font-weight: 600; "
                                      "border-top-left-radius: %2px; "
                                      "border-top-right-radius: %2px;")
                           .arg(themeColor(Theme::Token::accentFill).name())
                           .arg(corner));
  auto* fill = new QVBoxLayout(bar);
  fill->setContentsMargins(0, 0, 0, 0);
  fill->addWidget(label);
  bar->closeButton()->raise();
}

}  // namespace

NTFSWindowController::NTFSWindowController(QWidget* parent)
    : NoticeWindow(content(), parent), yesButton(closeButton()) {
  setObjectName(QStringLiteral("NTFSWindowController"));
  setTitleText(titleBarView(), getLocalizedString("NTFS"));
  connect(yesButton, &QPushButton::clicked, this, [this] { done(0); });
}

}  // namespace brisko
