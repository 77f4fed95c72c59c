#pragma once

#include <QFileDialog>

#include <string>
#include <vector>

namespace brisko {

/// A chooser for files and folders alike, several at once: the desktops' own offer the one or the
/// other. Its button reads "Add"; it stays above other windows and shows nothing hidden.
class ItemChooser : public QFileDialog {
  Q_OBJECT

 public:
  explicit ItemChooser(QWidget* parent = nullptr);

  /// The bytes of the chosen paths; none when the user cancelled.
  std::vector<std::string> choose();

 private:
  QStringList selection() const;

  QStringList chosen_;
};

}  // namespace brisko
