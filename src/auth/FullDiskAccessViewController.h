#pragma once

#include "PanelWindow.h"

#include <QPointer>

class QLabel;

namespace brisko {

class TitleBar;

/// Explains why the program asks for full-disk access and leads to the setting. Always run modally
/// by whoever needs the access, and goes on when it is closed, whatever the user decided.
class FullDiskAccessViewController : public PanelWindow {
  Q_OBJECT

 public:
  explicit FullDiskAccessViewController(QWidget* parent = nullptr);

  void awakeFromNib();

  /// Ends the modal run, then closes the window.
  void closeWindow();
  /// Opens the privacy settings and leaves the window open.
  void openSetView();

  /// The object that opened it; never called.
  QObject* superDelegate() const { return superDelegate_; }
  void setSuperDelegate(QObject* delegate) { superDelegate_ = delegate; }

 private:
  QDialog* aWindow;
  QLabel* titleLabel = nullptr;
  TitleBar* titleBarView;
  QPointer<QObject> superDelegate_;
};

}  // namespace brisko
