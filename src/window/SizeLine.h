#pragma once

#include "CommUti.h"

#include <QLabel>

namespace brisko {

/// A line of text in which a size stands out. Plain text throughout: nothing in it is markup.
class SizeLine : public QLabel {
  Q_OBJECT

 public:
  explicit SizeLine(QWidget* parent = nullptr);

  /// The run that is set larger is also drawn in the theme's text colour; colours that a text
  /// brings along are kept only where `keepsColours` is set, because they know nothing of light and
  /// dark.
  void setAttributedText(const AttributedText& text, bool keepsColours = false);
  void setPlainText(const QString& text);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  AttributedText attributed_;
  bool keepsColours_ = false;
};

}  // namespace brisko
