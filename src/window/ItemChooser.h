#pragma once

#include <QFileDialog>

#include <string>
#include <vector>

namespace brisko {

/// A chooser for files and folders alike: the desktops' own offer the one or the other. It stays
/// above other windows and shows nothing hidden.
class ItemChooser : public QFileDialog {
  Q_OBJECT

 public:
  struct Wanted {
    QString title;
    QString buttonText;
    std::string folder = "/";  ///< where it starts
    bool isOneOnly = false;    ///< else several at once
  };

  explicit ItemChooser(const Wanted& wanted, QWidget* parent = nullptr);

  /// The bytes of the chosen paths; none when the user cancelled.
  std::vector<std::string> choose();

 private:
  QStringList selection() const;

  QStringList chosen_;
};

}  // namespace brisko
