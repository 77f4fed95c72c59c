#pragma once

#include <QWidget>

class QLabel;

namespace brisko {

class SwitchButton;
struct SwitchedLoginItem;

/// Something that others set up to start, with its switch.
class SwitchedItemRow : public QWidget {
  Q_OBJECT

 public:
  explicit SwitchedItemRow(QWidget* parent = nullptr);

  void setItem(const SwitchedLoginItem& item);

 Q_SIGNALS:
  void switchRequested(bool isOn);

 private:
  QLabel* name_;
  QLabel* origin_;
  SwitchButton* switch_;
};

}  // namespace brisko
