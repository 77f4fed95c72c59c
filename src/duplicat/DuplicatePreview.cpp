#include "DuplicatePreview.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "DuplicateTreeModel.h"
#include "ImageView.h"
#include "LocalizedString.h"
#include "MessagePanel.h"
#include "Theme.h"

#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace brisko {
namespace {

constexpr int kWidth = 216;
constexpr int kInner = kWidth - 2 * Space::large;
constexpr int kPictureHeight = 184;
// Further down a path only its ends matter; a path of thousands of characters must not stretch the
// page.
constexpr int kLongestPath = 160;

QString broken(const QString& path) {
  QString text = path;
  if (text.size() > kLongestPath) {
    text = text.left(kLongestPath / 2) + QChar(0x2026) + text.right(kLongestPath / 2);
  }
  // Lets a line end behind any slash.
  return text.replace(QLatin1Char('/'), QStringLiteral("/\u200b"));
}

}  // namespace

/// Shared with the reading in the background: what came too late is for nobody. Main thread only.
struct DuplicatePreview::Wanted {
  DuplicatePreview* preview = nullptr;
};

DuplicatePreview::DuplicatePreview(QWidget* parent)
    : QFrame(parent),
      pictures_(new QStackedLayout),
      iconView_(new ImageView),
      pictureView_(new QLabel),
      textView_(new QPlainTextEdit),
      revealButton_(new QPushButton(getLocalizedString("Show in File Browser"))) {
  setFixedWidth(kWidth);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(Space::large, Space::large, Space::large, Space::medium);
  column->setSpacing(Space::tiny);
  iconView_->setImageSide(64);
  iconView_->setTint(Theme::Token::accent);
  pictureView_->setObjectName(QStringLiteral("previewPicture"));
  pictureView_->setAlignment(Qt::AlignCenter);
  textView_->setObjectName(QStringLiteral("previewText"));
  textView_->setAccessibleName(getLocalizedString("Beginning of the text"));
  textView_->setReadOnly(true);
  textView_->setTabChangesFocus(true);
  textView_->setLineWrapMode(QPlainTextEdit::NoWrap);
  textView_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  for (QWidget* view : {static_cast<QWidget*>(iconView_), static_cast<QWidget*>(pictureView_),
                        static_cast<QWidget*>(textView_)}) {
    view->setFixedSize(kInner, kPictureHeight);
    pictures_->addWidget(view);
  }
  column->addLayout(pictures_);
  column->addSpacing(Space::small);
  nameLabel_ = addLabel("strong", "previewName");
  factsLabel_ = addLabel("caption", "previewFacts");
  pathLabel_ = addLabel("caption", "previewPath");
  column->addStretch();
  revealButton_->setObjectName(QStringLiteral("revealButton"));
  setButtonKind(revealButton_, "plain");
  column->addWidget(revealButton_, 0, Qt::AlignHCenter);
  connect(revealButton_, &QAbstractButton::clicked, this,
          [this] { Q_EMIT showInFinderWhenClickItems(path_); });
  show(nullptr);
}

DuplicatePreview::~DuplicatePreview() {
  if (wanted_) wanted_->preview = nullptr;
}

QLabel* DuplicatePreview::addLabel(const char* role, const char* name) {
  auto* label = new QLabel;
  label->setProperty("role", QLatin1String(role));
  label->setObjectName(QLatin1String(name));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setMaximumWidth(kInner);
  layout()->addWidget(label);
  return label;
}

void DuplicatePreview::show(const SimpleTreeNode* node) {
  const SimpleTreeNode* copy = node;
  if (node != nullptr && !node->nodeData.isLeaf) {
    copy = node->children.empty() ? nullptr : node->children.front();
  }
  // A removal asks again and again for what is shown already.
  if (copy != nullptr && copy->nodeData.name() == path_) return;
  if (wanted_) wanted_->preview = nullptr;
  path_ = copy == nullptr ? std::string() : copy->nodeData.name();
  revealButton_->setVisible(copy != nullptr);
  pictures_->setCurrentWidget(iconView_);
  if (copy == nullptr) {
    iconView_->setImageName("ic_duplicate");
    nameLabel_->setText(getLocalizedString("Nothing selected"));
    factsLabel_->setText(getLocalizedString("Select a copy to see what is in it."));
    pathLabel_->clear();
    return;
  }
  iconView_->setImageName(duplicateImage(*copy));
  nameLabel_->setText(broken(displayText(path_.substr(path_.rfind('/') + 1))));
  const QString size = QString::fromStdString(CommUti::longlongDiskSize(copy->nodeData.fileSize));
  const QString date = modificationDateText(copy->nodeData);
  factsLabel_->setText(copy->nodeData.isBundle ? size : size + QLatin1Char('\n') + date);
  pathLabel_->setText(broken(displayText(path_)));
  if (!copy->nodeData.isBundle) load(*copy);
}

void DuplicatePreview::load(const SimpleTreeNode& copy) {
  wanted_ = std::make_shared<Wanted>();
  wanted_->preview = this;
  const QSize room = (QSizeF(kInner, kPictureHeight) * devicePixelRatioF()).toSize();
  Dispatch::global([wanted = wanted_, path = path_, device = copy.nodeData.device,
                    inode = copy.nodeData.inode, room] {
    PreviewContent content = previewContent(path, device, inode, room);
    Dispatch::mainAsync([wanted, content = std::move(content)] {
      if (wanted->preview != nullptr) wanted->preview->showContent(content);
    });
  });
}

void DuplicatePreview::showContent(const PreviewContent& content) {
  if (!content.picture.isNull()) {
    QPixmap picture = QPixmap::fromImage(content.picture);
    picture.setDevicePixelRatio(devicePixelRatioF());
    pictureView_->setPixmap(picture);
    pictures_->setCurrentWidget(pictureView_);
  } else if (!content.text.isEmpty()) {
    textView_->setPlainText(content.text);
    pictures_->setCurrentWidget(textView_);
  }
}

void DuplicatePreview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(themeColor(Theme::Token::border), 1));
  painter.setBrush(themeColor(Theme::Token::card));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCardRadius, kCardRadius);
}

}  // namespace brisko
