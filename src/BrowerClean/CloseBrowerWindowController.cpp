#include "CloseBrowerWindowController.h"

#include "LocalizedString.h"

#include <QLabel>

namespace brisko {
namespace {

constexpr int kClose = 1;

MessagePanel::Content content() {
  MessagePanel::Content content;
  content.imageName = "ic_internet";
  content.title = getLocalizedString("A browser is still open");
  content.text = QStringLiteral(" ");
  content.answers = {
      {getLocalizedString("Cancel"), MessagePanel::Answer::Style::plain, 0},
      {getLocalizedString("Close Browser"), MessagePanel::Answer::Style::danger, kClose}};
  return content;
}

}  // namespace

CloseBrowerWindowController::CloseBrowerWindowController(CloseBrowerDelegate* delegate,
                                                         QWidget* parent)
    : MessagePanel(content(), parent) {
  setObjectName(QStringLiteral("CloseBrowerWindowController"));
  connect(this, &QDialog::finished, this, [delegate](int answer) {
    if (answer == kClose) delegate->closeBrowerButtonAction();
  });
}

void CloseBrowerWindowController::changeNodeLabelWithStr(const std::string& text) {
  findChild<QLabel*>(QStringLiteral("messageText"))->setText(displayText(text));
}

}  // namespace brisko
