#pragma once

#include "PanelWindow.h"

#include <string>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace brisko {

/// A small modal window that says one thing: an image, a title, a text, a button that leads to a
/// page in the browser, and one that closes it.
class NoticeWindow : public PanelWindow {
  Q_OBJECT

 public:
  struct Content {
    std::string imageName;
    QString title;
    QString text;
    QString linkTitle;
    std::string linkKey;  ///< key of the link table
    QString closeTitle;
  };

  NoticeWindow(const Content& content, QWidget* parent);

  QPushButton* closeButton() const { return closeButton_; }

  /// Opens the page under the link key in the browser. False when there is no such link, or nothing
  /// to open it with.
  bool openLink();

 private:
  void addTexts(const Content& content, QVBoxLayout* column);
  void addButtons(const Content& content, QVBoxLayout* column);

  std::string linkKey_;
  QPushButton* closeButton_ = nullptr;
};

}  // namespace brisko
