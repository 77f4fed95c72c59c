#include "DuplicatePanels.h"

#include "LocalizedString.h"
#include "MessagePanel.h"

#include <QFile>
#include <QFileDialog>

namespace brisko {
namespace {

using Style = MessagePanel::Answer::Style;

QString detail(const std::string& path, const std::string& reason) {
  return displayText(path) + QStringLiteral("\n    ") + displayText(reason);
}

}  // namespace

std::optional<std::string> chooseSearchFolder(QWidget* parent) {
  QFileDialog chooser(parent, getLocalizedString("Choose a path to search"));
  chooser.setFileMode(QFileDialog::Directory);
  chooser.setOption(QFileDialog::ShowDirsOnly);
  chooser.setLabelText(QFileDialog::Accept, getLocalizedString("Choose"));
  if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) return {};
  return QFile::encodeName(chooser.selectedFiles().constFirst()).toStdString();
}

bool askDeleteAll(QWidget* parent) {
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = getLocalizedString("Are you sure you want to delete all the duplicate files?");
  content.answers = {{getLocalizedString("Cancel"), Style::plain, 0},
                     {getLocalizedString("OK"), Style::danger, 1}};
  return MessagePanel::run(content, parent) == 1;
}

void tellFailures(QWidget* parent, const QString& title,
                  const std::vector<DuplicateFailure>& failures) {
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = title;
  content.text = getLocalizedString("They are still where they were.");
  for (const DuplicateFailure& failure : failures)
    content.details << detail(failure.path, failure.reason);
  content.answers = {{getLocalizedString("Done"), Style::primary, 0}};
  MessagePanel::run(content, parent);
}

void tellSkipped(QWidget* parent, const std::vector<SkippedFolder>& skipped) {
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = skippedText(skipped.size());
  content.text = getLocalizedString("Copies in there were not looked for.");
  for (const SkippedFolder& folder : skipped)
    content.details << detail(folder.path, folder.reason);
  content.answers = {{getLocalizedString("Done"), Style::primary, 0}};
  MessagePanel::run(content, parent);
}

QString skippedText(std::size_t count) {
  return filledIn(getLocalizedString(count == 1 ? "%@ folder in it could not be read."
                                                : "%@ folders in it could not be read."),
                  QString::number(count));
}

}  // namespace brisko
