#pragma once

#include <QAbstractButton>
#include <QWidget>

#include <string>

class QLabel;

namespace brisko {

/// One of the round buttons at the left of a title bar, or one of the square ones at its right.
class TitleBarButton : public QAbstractButton {
  Q_OBJECT

 public:
  enum class Kind { close, minimise, zoom, menu, panel };

  TitleBarButton(Kind kind, QWidget* parent);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  bool isSquare() const { return kind_ == Kind::menu || kind_ == Kind::panel; }

  Kind kind_;
};

/// The program's own title bar: the window's buttons at the left, the title in the middle, and
/// where the window has one, its menu at the right. Beside that may stand a button for the panel
/// with the machine's figures; it is hidden until somebody shows it.
class TitleBar : public QWidget {
  Q_OBJECT

 public:
  enum Button : unsigned { closeOnly = 0U, minimiseAndZoom = 1U, withMenu = 2U };

  static constexpr int kDefaultHeight = 28;
  static constexpr int kLowHeight = 22;

  TitleBar(unsigned buttons, QWidget* parent);

  /// Moves the window's buttons by `points`, negative upwards, from where they stand in a bar of
  /// the default height.
  void moveButtons(int points);

  /// The images that lie under everything: `left`, `width` points wide, and `right` over the rest.
  void setGround(std::string left, int width, std::string right);

  QAbstractButton* closeButton() const { return close_; }
  QAbstractButton* menuButton() const { return menu_; }
  QAbstractButton* panelButton() const { return panel_; }

 Q_SIGNALS:
  void closeRequested();
  void menuRequested();
  void panelRequested();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void layOutButtons();
  void zoom();

  QAbstractButton* close_ = nullptr;
  QAbstractButton* minimise_ = nullptr;
  QAbstractButton* zoom_ = nullptr;
  QAbstractButton* menu_ = nullptr;
  QAbstractButton* panel_ = nullptr;
  int shift_ = 0;
  std::string leftGround_;
  std::string rightGround_;
  int leftWidth_ = 0;
};

}  // namespace brisko
