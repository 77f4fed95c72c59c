#pragma once

#include "FileFilter.h"

#include <QObject>

#include <cstdint>
#include <functional>

class QPushButton;

namespace brisko {

/// The two buttons that say which files are listed: their menus offer sizes and ages, and each
/// button reads what was chosen. At first they let everything through.
class FileFilterButtons : public QObject {
  Q_OBJECT

 public:
  FileFilterButtons(QPushButton* sizes, QPushButton* ages, QObject* parent);

  /// What is chosen; an age is counted back from now.
  FileFilter filter() const { return FileFilter::of(minSize_, days_); }

 Q_SIGNALS:
  /// The user chose, perhaps the same again.
  void filterChosen();

 private:
  void addEntry(QPushButton* button, const char* label, std::function<void()> set);

  std::uint64_t minSize_ = 0;
  std::uint32_t days_ = 0;
};

}  // namespace brisko
