#pragma once

#include <QFrame>

#include <string>
#include <vector>

namespace brisko {

/// A dashed card onto which files can be dropped. It lights up while something that it takes is
/// held over it.
class DropArea : public QFrame {
  Q_OBJECT

 public:
  explicit DropArea(QWidget* parent = nullptr);

  /// A quiet one looks like any card until something is held over it.
  void setQuiet(bool isQuiet);

 Q_SIGNALS:
  /// The first local path of what was dropped, its bytes as the file system has them.
  void viewDragAction(const std::string& path);
  /// All local paths of what was dropped, at least one.
  void pathsDropped(const std::vector<std::string>& paths);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void setLit(bool isLit);

  bool isLit_ = false;
  bool isQuiet_ = false;
};

}  // namespace brisko
