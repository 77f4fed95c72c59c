#include "MarkSureDeleteWC.h"

#include "CommUti.h"
#include "LocalizedString.h"

namespace brisko {
namespace {

MessagePanel::Content question(std::size_t count, std::uint64_t bytes) {
  using Style = MessagePanel::Answer::Style;
  MessagePanel::Content content;
  content.imageName = "ic_trash";
  content.title = removalText(count, bytes, "Remove %@ file (%@)?", "Remove %@ files (%@)?");
  content.text = getLocalizedString(
      "They are removed for good and do not go to the trash. Each one is compared with another "
      "copy first, byte by byte, and stays when there is none.");
  content.answers = {
      {getLocalizedString("Cancel"), Style::plain, 0},
      {removalText(count, bytes, "Remove %@ File", "Remove %@ Files"), Style::danger, 1}};
  return content;
}

}  // namespace

QString removalText(std::size_t count, std::uint64_t bytes, const char* one, const char* many) {
  const QString text = getLocalizedString(count == 1 ? one : many);
  return filledIn(filledIn(text, QString::number(count)),
                  QString::fromStdString(CommUti::longlongDiskSize(bytes)));
}

MarkSureDeleteWC::MarkSureDeleteWC(std::size_t count, std::uint64_t bytes, QWidget* parent)
    : MessagePanel(question(count, bytes), parent) {}

}  // namespace brisko
