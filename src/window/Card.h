#pragma once

#include <QAbstractButton>
#include <QFrame>

namespace brisko {

/// A soft rounded panel that groups things.
class Card : public QFrame {
  Q_OBJECT

 public:
  explicit Card(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// A card that leads somewhere: an image, a name and a sentence, pressed as a whole.
class CardButton : public QAbstractButton {
  Q_OBJECT

 public:
  explicit CardButton(QWidget* parent = nullptr);

  void setImageName(std::string name);
  void setSentence(const QString& sentence);

  QSize sizeHint() const override { return {250, 108}; }
  QSize minimumSizeHint() const override { return {180, 96}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  std::string image_;
  QString sentence_;
};

}  // namespace brisko
