#pragma once

#include <QWidget>

#include <string>

class QLabel;

namespace brisko {

class ImageView;
struct Module;

/// A page's or a state's quiet centre: an image, a name and a sentence.
class ModuleIntroView : public QWidget {
  Q_OBJECT

 public:
  explicit ModuleIntroView(QWidget* parent = nullptr);

  /// `imageName` is set on a tinted tile when it is an icon, and stands by itself when it is an
  /// illustration ("ill_…").
  void show(const std::string& imageName, const QString& name, const QString& sentence);
  using QWidget::show;

  /// The module's icon, its name and what it does.
  void showModule(const Module& module);

 private:
  ImageView* imageView_;
  QLabel* nameLabel_;
  QLabel* sentenceLabel_;
};

}  // namespace brisko
