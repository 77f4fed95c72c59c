#pragma once

#include "PreviewContent.h"

#include <QFrame>

#include <cstdint>
#include <memory>
#include <string>

class QBoxLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStackedLayout;

namespace brisko {

class ImageView;

/// What a highlighted entry is: a picture or the beginning of a text where it is one, else its
/// icon; and name, size, date and place. Looking into the file happens in the background.
class FilePreview : public QFrame {
  Q_OBJECT

 public:
  /// A column with room for a page of text, or a card with a small picture beside the texts.
  enum class Shape { column, card };

  struct Item {
    std::string path;
    std::string imageName;  ///< the icon, shown where there is nothing better
    QString facts;
    bool hasContent = false;  ///< whether to look into it
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
  };

  explicit FilePreview(QWidget* parent = nullptr, Shape shape = Shape::column);
  ~FilePreview() override;

  void showItem(const Item& item);
  /// The icon and a sentence in place of an entry.
  void showNothing(const std::string& imageName, const QString& title, const QString& sentence);

  /// The entry that is shown; empty for none.
  const std::string& path() const { return path_; }

 Q_SIGNALS:
  void showInFinderWhenClickItems(const std::string& path);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Wanted;

  void addPictures(QBoxLayout* column);
  QLabel* addLabel(QBoxLayout* column, const char* role, const char* name);
  void load(const Item& item);
  void showContent(const PreviewContent& content);
  void forget();

  Shape shape_;
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

/// The same as a card, for forms.
class FileCard : public FilePreview {
  Q_OBJECT

 public:
  explicit FileCard(QWidget* parent = nullptr) : FilePreview(parent, Shape::card) {}
};

}  // namespace brisko
