#include "CloseInterViewEndWindowController.h"

#include "LocalizedString.h"

#include <QLabel>
#include <QPlainTextEdit>

namespace brisko {
namespace {

MessagePanel::Content content() {
  MessagePanel::Content content;
  content.imageName = "ic_internet";
  content.title = QStringLiteral(" ");
  content.text = QStringLiteral(" ");
  content.details << QString();
  content.answers = {{getLocalizedString("Done"), MessagePanel::Answer::Style::primary, 0}};
  return content;
}

QString failureText(const BrowserFailure& failure) {
  return displayText(failure.browser) + QStringLiteral(", ") +
         getLocalizedString(failure.kind.c_str()) + QStringLiteral("\n    ") +
         displayText(failure.reason);
}

}  // namespace

CloseInterViewEndWindowController::CloseInterViewEndWindowController(QWidget* parent)
    : MessagePanel(content(), parent) {
  setObjectName(QStringLiteral("CloseInterViewEndWindowController"));
}

void CloseInterViewEndWindowController::showResult(const InternetModel& model) {
  const bool isComplete = model.failures().empty() && !model.cleaningWasStopped();
  const QString title = getLocalizedString(model.cleaningWasStopped() ? "Stopped early"
                                           : isComplete               ? "The browsers are clean"
                                                        : "Not everything could be erased");
  const auto count = model.cleaned().size();
  findChild<QLabel*>(QStringLiteral("messageTitle"))->setText(title);
  findChild<QLabel*>(QStringLiteral("messageText"))
      ->setText(filledIn(getLocalizedString(count == 1 ? "%@ kind of data was erased."
                                                       : "%@ kinds of data were erased."),
                         QString::number(count)));
  setAccessibleName(title);
  QStringList texts;
  for (const BrowserFailure& failure : model.failures())
    texts << failureText(failure);
  auto* details = findChild<QPlainTextEdit*>(QStringLiteral("messageDetails"));
  details->setPlainText(texts.join(QLatin1Char('\n')));
  details->setVisible(!texts.isEmpty());
}

}  // namespace brisko
