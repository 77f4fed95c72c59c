#include "NoticeWindow.h"

#include "Host.h"
#include "ImageView.h"
#include "MessagePanel.h"
#include "Theme.h"
#include "ZKLinkUrl.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brisko {
namespace {

constexpr int kTextWidth = 380;

QLabel* centredLabel(const QString& text, const char* role, const char* name) {
  auto* label = new QLabel(text);
  label->setObjectName(QLatin1String(name));
  label->setProperty("role", QLatin1String(role));
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  label->setFixedWidth(kTextWidth);
  return label;
}

}  // namespace

NoticeWindow::NoticeWindow(const Content& content, QWidget* parent)
    : PanelWindow(parent), linkKey_(content.linkKey) {
  setWindowTitle(content.title);
  setAccessibleName(content.title);
  auto* column = new QVBoxLayout(contentView());
  column->setContentsMargins(Space::huge, Space::large, Space::huge, Space::wide);
  column->setSpacing(Space::medium);
  addTexts(content, column);
  addButtons(content, column);
}

void NoticeWindow::addTexts(const Content& content, QVBoxLayout* column) {
  auto* image = new ImageView;
  image->setImageName(content.imageName);
  image->setImageSide(34);
  image->setTile(true);
  image->setTint(Theme::Token::accent);
  image->setFixedSize(64, 64);
  column->addWidget(image, 0, Qt::AlignHCenter);
  column->addWidget(centredLabel(content.title, "heading", "noticeTitle"));
  column->addWidget(centredLabel(content.text, "body", "noticeText"));
}

void NoticeWindow::addButtons(const Content& content, QVBoxLayout* column) {
  auto* row = new QHBoxLayout;
  row->setContentsMargins(0, Space::small, 0, 0);
  row->setSpacing(Space::small);
  auto* link = new QPushButton(content.linkTitle);
  link->setObjectName(QStringLiteral("linkButton"));
  link->setAutoDefault(false);
  connect(link, &QPushButton::clicked, this, &NoticeWindow::openLink);
  closeButton_ = new QPushButton(content.closeTitle);
  closeButton_->setObjectName(QStringLiteral("closeButton"));
  closeButton_->setDefault(true);
  setButtonKind(closeButton_, "primary");
  row->addStretch();
  row->addWidget(link);
  row->addWidget(closeButton_);
  row->addStretch();
  column->addLayout(row);
  closeButton_->setFocus();
}

bool NoticeWindow::openLink() {
  const auto address = ZKLinkUrl::GetUrl(linkKey_);
  return address && Host::current().workspace->openAddress(*address);
}

}  // namespace brisko
