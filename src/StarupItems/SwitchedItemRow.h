#pragma once

#include <QWidget>

namespace brisko {

class SwitchButton;
struct SwitchedLoginItem;

/// Something that others set up to start, with its switch.
class SwitchedItemRow : public QWidget {
  Q_OBJECT

 public:
  explicit SwitchedItemRow(const SwitchedLoginItem& item, QWidget* parent = nullptr);

 Q_SIGNALS:
  void switchRequested(bool isOn);

 private:
  SwitchButton* switch_;
};

}  // namespace brisko
