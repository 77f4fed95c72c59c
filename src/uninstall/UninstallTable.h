#pragma once

#include "EntryTable.h"

namespace brisko {

class UninstallTableModel;

/// The table of installed items: a box, icon with name and identifier, facts, and a trash button in
/// each row, which the Delete key presses too.
class UninstallTable : public EntryTable {
  Q_OBJECT

 public:
  explicit UninstallTable(QWidget* parent = nullptr);

  void setItems(UninstallTableModel* items);

 Q_SIGNALS:
  /// The user pressed the trash button of the row.
  void oneAppRemove(int row);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
};

}  // namespace brisko
