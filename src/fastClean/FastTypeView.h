#pragma once

#include <QWidget>

#include <memory>

class QLabel;
class QPushButton;

namespace Ui {
class FastTypeView;
}

namespace brisko {

class FastCleanViewController;
class ImageCheckBox;
class ImageView;
class LoadingView;
struct FastTypeRow;

/// The row of one junk category.
class FastTypeView : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kHeight = 66;

  /// Box and button call `controller` with `category`.
  FastTypeView(FastCleanViewController* controller, int category, QWidget* parent = nullptr);
  ~FastTypeView() override;

  void show(const FastTypeRow& row);
  using QWidget::show;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::unique_ptr<Ui::FastTypeView> ui_;
  ImageView* iconImageView;
  QLabel* titleLabel;
  QLabel* subTitleLabel;
  ImageCheckBox* checkBox;
  QLabel* sizeLabel;
  QWidget* loadingView;
  LoadingView* loadingImageView;
  QPushButton* detailButton;
  FastCleanViewController* delegate;
  bool bSelect = false;
  int tag;
};

}  // namespace brisko
