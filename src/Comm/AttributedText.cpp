#include "AttributedText.h"

#include "CommUti.h"
#include "SystemLog.h"

namespace brisko {

std::string AttributedText::plain() const {
  std::string text;
  for (const Run& run : runs)
    text += run.text;
  return text;
}

AttributedText CommUti::setStringFontWithMainStr(const std::string& main,
                                                 const std::string& mainColour,
                                                 const std::string& change,
                                                 const std::string& changeColour) {
  constexpr int kMainPoints = 14;
  constexpr int kChangePoints = 18;
  const std::size_t at = change.empty() ? std::string::npos : main.find(change);
  if (at == std::string::npos) {
    SystemLog::line("Failed _2");
    return {{{main, mainColour, kMainPoints, false}}};
  }
  AttributedText text;
  const auto add = [&text](AttributedText::Run run) {
    if (!run.text.empty()) text.runs.push_back(std::move(run));
  };
  add({main.substr(0, at), mainColour, kMainPoints, false});
  add({change, changeColour, kChangePoints, true});
  add({main.substr(at + change.size()), mainColour, kMainPoints, false});
  return text;
}

}  // namespace brisko
