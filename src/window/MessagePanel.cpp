#include "MessagePanel.h"

#include "ImageView.h"
#include "LocalizedString.h"
#include "Theme.h"
#include "TitleBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

namespace brisko {
namespace {

constexpr int kTextWidth = 400;

QLabel* label(const QString& text, const char* role, const char* name) {
  auto* made = new QLabel(text);
  made->setObjectName(QLatin1String(name));
  made->setProperty("role", QLatin1String(role));
  made->setTextFormat(Qt::PlainText);
  made->setWordWrap(true);
  made->setFixedWidth(kTextWidth);
  return made;
}

}  // namespace

void setButtonKind(QPushButton* button, const char* kind) {
  button->setProperty("kind", QLatin1String(kind));
  button->style()->unpolish(button);
  button->style()->polish(button);
}

MessagePanel::MessagePanel(const Content& content, QWidget* parent)
    : PanelWindow(parent), escapeValue_(content.escapeValue) {
  setObjectName(QStringLiteral("messagePanel"));
  setAccessibleName(content.title);
  auto* column = new QVBoxLayout(contentView());
  column->setContentsMargins(Space::wide, Space::small, Space::wide, Space::wide);
  column->setSpacing(Space::large);
  addHead(content, column);
  if (!content.details.isEmpty()) addDetails(content.details, column);
  addAnswers(content.answers, column);
}

void MessagePanel::addHead(const Content& content, QVBoxLayout* column) {
  auto* row = new QHBoxLayout;
  row->setSpacing(Space::large);
  auto* image = new ImageView;
  image->setImageName(content.imageName);
  image->setImageSide(26);
  image->setTile(true);
  image->setTint(Theme::Token::accent);
  image->setFixedSize(48, 48);
  row->addWidget(image, 0, Qt::AlignTop);
  auto* texts = new QVBoxLayout;
  texts->setSpacing(Space::small);
  texts->addWidget(label(content.title, "heading", "messageTitle"));
  if (!content.text.isEmpty()) texts->addWidget(label(content.text, "body", "messageText"));
  row->addLayout(texts);
  column->addLayout(row);
}

void MessagePanel::addDetails(const QStringList& details, QVBoxLayout* column) {
  auto* list = new QPlainTextEdit(details.join(QLatin1Char('\n')));
  list->setObjectName(QStringLiteral("messageDetails"));
  list->setAccessibleName(getLocalizedString("Details"));
  list->setReadOnly(true);
  list->setTabChangesFocus(true);
  list->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  list->setFixedHeight(168);
  column->addWidget(list);
}

void MessagePanel::addAnswers(const std::vector<Answer>& answers, QVBoxLayout* column) {
  auto* row = new QHBoxLayout;
  row->setSpacing(Space::small);
  row->addStretch();
  for (const Answer& answer : answers) {
    auto* button = new QPushButton(answer.text);
    button->setObjectName(QStringLiteral("answer%1").arg(answer.value));
    button->setAutoDefault(false);
    if (answer.style == Answer::Style::primary) {
      setButtonKind(button, "primary");
      button->setDefault(true);
    } else if (answer.style == Answer::Style::danger) {
      // Never the default: Return alone must not destroy anything.
      setButtonKind(button, "danger");
    }
    connect(button, &QPushButton::clicked, this, [this, answer] { done(answer.value); });
    row->addWidget(button);
  }
  column->addLayout(row);
  // The first answer is the one that changes nothing.
  if (!answers.empty()) row->itemAt(1)->widget()->setFocus(Qt::TabFocusReason);
}

void MessagePanel::reject() {
  done(escapeValue_);
}

int MessagePanel::run(const Content& content, QWidget* parent) {
  MessagePanel panel(content, parent);
  return panel.exec();
}

}  // namespace brisko
