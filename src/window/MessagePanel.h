#pragma once

#include "PanelWindow.h"

#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// A message with its answers, in place of the toolkit's grey box.
class MessagePanel : public PanelWindow {
  Q_OBJECT

 public:
  struct Answer {
    enum class Style { plain, primary, danger };
    QString text;
    Style style = Style::plain;
    int value = 0;  ///< what `run` returns for it
  };
  struct Content {
    std::string imageName = "ic_info";
    QString title;
    QString text;                 ///< plain text, wrapped
    QStringList details;          ///< shown as a list that scrolls; plain text
    std::vector<Answer> answers;  ///< the first has the focus: it should change nothing
    int escapeValue = 0;          ///< what Escape and the close button return
  };

  explicit MessagePanel(const Content& content, QWidget* parent = nullptr);

  /// Shows it modally over `parent` and returns the chosen answer's value.
  static int run(const Content& content, QWidget* parent);

  void reject() override;

 private:
  void addHead(const Content& content, class QVBoxLayout* column);
  void addDetails(const QStringList& details, class QVBoxLayout* column);
  void addAnswers(const std::vector<Answer>& answers, class QVBoxLayout* column);

  int escapeValue_;
};

/// Sets the "kind" that the style sheet draws a push button by: "primary", "danger" or "plain".
void setButtonKind(class QPushButton* button, const char* kind);

}  // namespace brisko
