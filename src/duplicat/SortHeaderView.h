#pragma once

#include "EntryTable.h"

namespace brisko {

/// A header whose titles can be pressed with keys too: Tab leads to it, left and right from title
/// to title, Space and Return press one, down goes to the rows. Sections without a title do
/// nothing.
class SortHeaderView : public CheckHeaderView {
  Q_OBJECT

 public:
  explicit SortHeaderView(QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;

 private:
  bool hasTitle(int section) const;
  void step(int by);

  int current_ = 0;  ///< the section that keys act on
};

}  // namespace brisko
