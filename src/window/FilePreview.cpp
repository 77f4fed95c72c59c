#include "FilePreview.h"

#include "Dispatch.h"
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
constexpr int kCardPicture = 64;
constexpr int kCardHeight = 128;
// Further down a path only its ends matter; a path of thousands of characters must not stretch the
// page.
constexpr int kLongestPath = 160;
constexpr int kLongestInCard = 76;

QString broken(const QString& path, int longest) {
  QString text = path;
  if (text.size() > longest) {
    text = text.left(longest / 2) + QChar(0x2026) + text.right(longest / 2);
  }
  // Lets a line end behind any slash.
  return text.replace(QLatin1Char('/'), QStringLiteral("/\u200b"));
}

}  // namespace

/// Shared with the reading in the background: what came too late is for nobody. Main thread only.
struct FilePreview::Wanted {
  FilePreview* preview = nullptr;
};

FilePreview::FilePreview(QWidget* parent, Shape shape)
    : QFrame(parent),
      shape_(shape),
      pictures_(new QStackedLayout),
      iconView_(new ImageView),
      pictureView_(new QLabel),
      textView_(new QPlainTextEdit),
      revealButton_(new QPushButton(getLocalizedString("Show in File Browser"))) {
  const bool isCard = shape == Shape::card;
  auto* outer = new QBoxLayout(isCard ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this);
  outer->setContentsMargins(Space::large, isCard ? Space::medium : Space::large, Space::large,
                            Space::medium);
  outer->setSpacing(isCard ? Space::medium : Space::tiny);
  if (isCard) {
    setFixedHeight(kCardHeight);
  } else {
    setFixedWidth(kWidth);
  }
  addPictures(outer);
  QBoxLayout* column = outer;
  if (isCard) {
    column = new QVBoxLayout;
    column->setSpacing(Space::tiny);
    outer->addLayout(column, 1);
  } else {
    column->addSpacing(Space::small);
  }
  nameLabel_ = addLabel(column, "strong", "previewName");
  factsLabel_ = addLabel(column, "caption", "previewFacts");
  pathLabel_ = addLabel(column, "caption", "previewPath");
  column->addStretch();
  revealButton_->setObjectName(QStringLiteral("revealButton"));
  setButtonKind(revealButton_, "plain");
  column->addWidget(revealButton_, 0, isCard ? Qt::AlignLeft : Qt::AlignHCenter);
  connect(revealButton_, &QAbstractButton::clicked, this,
          [this] { Q_EMIT showInFinderWhenClickItems(path_); });
  revealButton_->hide();
}

FilePreview::~FilePreview() {
  forget();
}

void FilePreview::addPictures(QBoxLayout* column) {
  const bool isCard = shape_ == Shape::card;
  iconView_->setImageSide(isCard ? 40 : 64);
  iconView_->setTint(Theme::Token::accent);
  pictureView_->setObjectName(QStringLiteral("previewPicture"));
  pictureView_->setAlignment(Qt::AlignCenter);
  textView_->setObjectName(QStringLiteral("previewText"));
  textView_->setAccessibleName(getLocalizedString("Beginning of the text"));
  textView_->setReadOnly(true);
  textView_->setTabChangesFocus(true);
  textView_->setLineWrapMode(QPlainTextEdit::NoWrap);
  textView_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const QSize room = isCard ? QSize(kCardPicture, kCardPicture) : QSize(kInner, kPictureHeight);
  for (QWidget* view : {static_cast<QWidget*>(iconView_), static_cast<QWidget*>(pictureView_),
                        static_cast<QWidget*>(textView_)}) {
    view->setFixedSize(room);
    pictures_->addWidget(view);
  }
  auto* frame = new QWidget;
  frame->setFixedSize(room);
  frame->setLayout(pictures_);
  column->addWidget(frame, 0, isCard ? Qt::AlignTop : Qt::Alignment());
}

QLabel* FilePreview::addLabel(QBoxLayout* column, const char* role, const char* name) {
  auto* label = new QLabel;
  label->setProperty("role", QLatin1String(role));
  label->setObjectName(QLatin1String(name));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  if (shape_ == Shape::column) label->setMaximumWidth(kInner);
  column->addWidget(label);
  return label;
}

void FilePreview::forget() {
  if (wanted_) wanted_->preview = nullptr;
}

void FilePreview::showNothing(const std::string& imageName, const QString& title,
                              const QString& sentence) {
  forget();
  path_.clear();
  revealButton_->hide();
  pictures_->setCurrentWidget(iconView_);
  iconView_->setImageName(imageName);
  nameLabel_->setText(title);
  factsLabel_->setText(sentence);
  pathLabel_->clear();
}

void FilePreview::showItem(const Item& item) {
  // A removal asks again and again for what is shown already.
  if (item.path == path_) return;
  forget();
  path_ = item.path;
  revealButton_->show();
  pictures_->setCurrentWidget(iconView_);
  iconView_->setImageName(item.imageName);
  const int longest = shape_ == Shape::card ? kLongestInCard : kLongestPath;
  nameLabel_->setText(broken(displayText(path_.substr(path_.rfind('/') + 1)),
                             shape_ == Shape::card ? longest / 2 : longest));
  factsLabel_->setText(item.facts);
  pathLabel_->setText(broken(displayText(path_), longest));
  pathLabel_->setVisible(shape_ == Shape::column);
  nameLabel_->setToolTip(toolTipText(displayText(path_)));
  pathLabel_->setToolTip(toolTipText(displayText(path_)));
  if (item.hasContent) load(item);
}

void FilePreview::load(const Item& item) {
  wanted_ = std::make_shared<Wanted>();
  wanted_->preview = this;
  const QSize room = (QSizeF(pictureView_->size()) * devicePixelRatioF()).toSize();
  Dispatch::global(
      [wanted = wanted_, path = path_, device = item.device, inode = item.inode, room] {
        PreviewContent content = previewContent(path, device, inode, room);
        Dispatch::mainAsync([wanted, content = std::move(content)] {
          if (wanted->preview != nullptr) wanted->preview->showContent(content);
        });
      });
}

void FilePreview::showContent(const PreviewContent& content) {
  if (!content.picture.isNull()) {
    QPixmap picture = QPixmap::fromImage(content.picture);
    picture.setDevicePixelRatio(devicePixelRatioF());
    pictureView_->setPixmap(picture);
    pictures_->setCurrentWidget(pictureView_);
  } else if (!content.text.isEmpty() && shape_ == Shape::column) {
    // A card has no room for text that could be read.
    textView_->setPlainText(content.text);
    pictures_->setCurrentWidget(textView_);
  }
}

void FilePreview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(themeColor(Theme::Token::border), 1));
  painter.setBrush(themeColor(Theme::Token::card));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCardRadius, kCardRadius);
}

}  // namespace brisko
