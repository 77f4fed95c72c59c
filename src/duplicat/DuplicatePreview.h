#pragma once

#include "PreviewContent.h"

#include <QFrame>

#include <memory>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStackedLayout;

namespace brisko {

class ImageView;
class SimpleTreeNode;

/// What the highlighted row is: a picture or the beginning of a text where it is one, else its
/// icon; and name, size, date and place. Looking into the file happens in the background.
class DuplicatePreview : public QFrame {
  Q_OBJECT

 public:
  explicit DuplicatePreview(QWidget* parent = nullptr);
  ~DuplicatePreview() override;

  /// Shows a copy, or a group by its first copy; nothing for null. The node is not kept.
  void show(const SimpleTreeNode* node);
  using QWidget::show;

  /// The copy that is shown; empty for none.
  const std::string& path() const { return path_; }

 Q_SIGNALS:
  void showInFinderWhenClickItems(const std::string& path);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Wanted;

  QLabel* addLabel(const char* role, const char* name);
  void load(const SimpleTreeNode& copy);
  void showContent(const PreviewContent& content);

  std::string path_;
  std::shared_ptr<Wanted> wanted_;
  QStackedLayout* pictures_;
  ImageView* iconView_;
  QLabel* pictureView_;
  QPlainTextEdit* textView_;
  QLabel* nameLabel_;
  QLabel* factsLabel_;
  QLabel* pathLabel_;
  QPushButton* revealButton_;
};

}  // namespace brisko
