#pragma once

#include <QAbstractButton>
#include <QVariantAnimation>

namespace brisko {

/// The round main button of a page: a disc with the word for what it does next, and around it a
/// ring that shows how far the work has come.
class RingButton : public QAbstractButton {
  Q_OBJECT

 public:
  /// What the disc looks like; the word is the button's text.
  enum class Look { filled, working };

  explicit RingButton(QWidget* parent = nullptr);

  /// Share of the work that is done, 0 to 1; the ring moves there smoothly.
  void setPercentage(double percentage);
  double percentage() const { return percentage_; }
  /// Shows the ring where it is going to.
  void finishMovement();

  void setLook(Look look);
  Look look() const { return look_; }

  /// A second, smaller line below the word, such as what and how much it is about.
  void setDetail(const QString& detail);
  QString detail() const { return detail_; }

  QSize sizeHint() const override { return {132, 132}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool hitButton(const QPoint& position) const override;

 private:
  QRectF disc() const;
  void describe();
  void paintRing(QPainter* painter) const;
  void paintDisc(QPainter* painter) const;
  void paintText(QPainter* painter) const;

  QVariantAnimation movement_;
  double percentage_ = 0;
  double shown_ = 0;
  Look look_ = Look::filled;
  QString detail_;
};

}  // namespace brisko
