#include "MarkSureDeleteWC.h"

#include "CommUti.h"
#include "LocalizedString.h"

namespace brisko {
namespace {

MessagePanel::Content question(std::size_t count, std::uint64_t bytes,
                               const MarkSureDeleteWC::Texts& texts) {
  using Style = MessagePanel::Answer::Style;
  MessagePanel::Content content;
  content.imageName = "ic_trash";
  content.title = removalText(count, bytes, texts.oneTitle, texts.manyTitle);
  content.text = getLocalizedString(texts.text);
  content.answers = {
      {getLocalizedString("Cancel"), Style::plain, 0},
      {removalText(count, bytes, texts.oneAnswer, texts.manyAnswer), Style::danger, 1}};
  return content;
}

}  // namespace

QString removalText(std::size_t count, std::uint64_t bytes, const char* one, const char* many) {
  const QString text = getLocalizedString(count == 1 ? one : many);
  return filledIn(filledIn(text, QString::number(count)),
                  QString::fromStdString(CommUti::longlongDiskSize(bytes)));
}

MarkSureDeleteWC::MarkSureDeleteWC(std::size_t count, std::uint64_t bytes, QWidget* parent)
    : MarkSureDeleteWC(count, bytes, parent, Texts()) {}

MarkSureDeleteWC::MarkSureDeleteWC(std::size_t count, std::uint64_t bytes, QWidget* parent,
                                   const Texts& texts)
    : MessagePanel(question(count, bytes, texts), parent) {}

}  // namespace brisko
